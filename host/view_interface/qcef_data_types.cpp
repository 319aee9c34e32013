#include "host/view_interface/qcef_data_types.h"

#include <QtGlobal>

namespace
{
// At library load, so that string-based queued connections find the types by name.
void registerDataTypes()
{
    qRegisterMetaType<QCefDataTypes::TerminationReason>("QCefDataTypes::TerminationReason");
    qRegisterMetaType<QCefDataTypes::JSDialogType>("QCefDataTypes::JSDialogType");
}
} // namespace

Q_CONSTRUCTOR_FUNCTION(registerDataTypes)
