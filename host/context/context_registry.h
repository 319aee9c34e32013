#pragma once

#include "host/context/txr_id.h"

namespace txutil::contextmgr
{
// Knows the host runtime context the caller runs in. This host has one context per process,
// so every thread gets the same identifier.
class ContextRegistry
{
public:
    ContextRegistry() = delete;

    // Any thread.
    static TxrID getTxrID();
};
} // namespace txutil::contextmgr
