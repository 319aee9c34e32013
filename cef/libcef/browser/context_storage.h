// What request contexts with the same cache path share: one Chromium (and
// with it cookies, cache and storage), preferences and scheme factories.

#ifndef CEF_LIBCEF_BROWSER_CONTEXT_STORAGE_H_
#define CEF_LIBCEF_BROWSER_CONTEXT_STORAGE_H_

#include <memory>
#include <string>

#include "libcef/browser/chromium_instance.h"
#include "libcef/browser/preference_store.h"
#include "libcef/scheme_handler_registry.h"

namespace cefengine {

struct ContextStorage {
  explicit ContextStorage(const std::string& path)
      : cache_path(path), chromium(std::make_shared<ChromiumInstance>(path)) {}

  // Absolute and clean; empty for a temporary profile.
  const std::string cache_path;
  const std::shared_ptr<ChromiumInstance> chromium;
  PreferenceStore preferences;
  SchemeHandlerRegistry scheme_handlers;
};

}  // namespace cefengine

#endif  // CEF_LIBCEF_BROWSER_CONTEXT_STORAGE_H_
