#pragma once

#include "host/context/txr_id.h"

#include <memory>

namespace settings::core
{
class Settings;
}

namespace settings::in_torvex
{
// The root of the settings tree of a context. A context gets an empty root on first use, unless
// a root was set for it with setSettingsRoot, a null one included. Any thread.
std::shared_ptr<core::Settings> getSettingsRoot(const txutil::contextmgr::TxrID& id);

// Attaches `root` to the context; null detaches it, so that getSettingsRoot gives null until a
// root is set again. Any thread.
void setSettingsRoot(const txutil::contextmgr::TxrID& id, std::shared_ptr<core::Settings> root);
} // namespace settings::in_torvex
