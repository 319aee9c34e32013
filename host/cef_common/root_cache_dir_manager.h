#pragma once

#include "host/cef_common/cef_common_data.h"

#include <mutex>
#include <string>

namespace cef_common
{
// Owner of the engine's cache root: BROVIA_CACHE_ROOT if set, otherwise "brovia" in the
// application's cache directory (~/.cache/<organisation>/<application>/brovia). The path is
// fixed by the first call that can make the directory; every call makes it again if it has gone.
// Any thread.
class CefCommonData::RootCacheDirManager
{
public:
    RootCacheDirManager() = default;

    // The absolute cache root. Empty, and logged, if the directory cannot be made; the next call
    // tries again, reading the options afresh if no directory was made before.
    std::u16string cacheRootPath();

private:
    std::mutex m_mutex;
    std::u16string m_path;
};
} // namespace cef_common
