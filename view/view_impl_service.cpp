#include "view/view_impl_service.h"

#include "view/qcef_view_impl.h"

IQCefViewImpl* QCefViewImplService::create(QWidget* parent, const QCefViewSettings& settings)
{
    return new QCefViewImpl(parent, settings);
}
