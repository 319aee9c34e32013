#include "host/settings/settings_root.h"

#include "host/settings/settings.h"

#include <map>
#include <mutex>

namespace settings::in_torvex
{
namespace
{
struct RootRegistry
{
    std::mutex mutex;
    // A present entry with a null root marks a detached context.
    std::map<txutil::contextmgr::TxrID, std::shared_ptr<core::Settings>> roots;
};

RootRegistry& registry()
{
    static RootRegistry instance;
    return instance;
}
} // namespace

std::shared_ptr<core::Settings> getSettingsRoot(const txutil::contextmgr::TxrID& id)
{
    RootRegistry& r = registry();
    std::lock_guard<std::mutex> lock(r.mutex);
    const auto found = r.roots.find(id);
    if (found != r.roots.end())
        return found->second;
    return r.roots.emplace(id, core::Settings::createRoot()).first->second;
}

void setSettingsRoot(const txutil::contextmgr::TxrID& id, std::shared_ptr<core::Settings> root)
{
    RootRegistry& r = registry();
    std::lock_guard<std::mutex> lock(r.mutex);
    r.roots[id] = std::move(root);
}
} // namespace settings::in_torvex
