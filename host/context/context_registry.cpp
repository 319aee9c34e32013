#include "host/context/context_registry.h"

namespace txutil::contextmgr
{
TxrID ContextRegistry::getTxrID()
{
    // 0 stays free as the "no context" value of a default-constructed TxrID.
    return TxrID(1);
}
} // namespace txutil::contextmgr
