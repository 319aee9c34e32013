// Global scheme handler factories (CefRegisterSchemeHandlerFactory).

#ifndef CEF_LIBCEF_SCHEME_HANDLER_REGISTRY_H_
#define CEF_LIBCEF_SCHEME_HANDLER_REGISTRY_H_

#include <map>
#include <mutex>
#include <string>
#include <utility>

#include "include/cef_scheme.h"

namespace cefengine {

// Factories by lower-case scheme and host; an empty host matches any host.
// Thread-safe.
class SchemeHandlerRegistry {
 public:
  // A null |factory| removes the entry.
  void Register(const std::string& scheme,
                const std::string& domain,
                CefRefPtr<CefSchemeHandlerFactory> factory);
  void Clear();

  // The factory for |domain| under |scheme|, else the scheme's catch-all one,
  // else null.
  CefRefPtr<CefSchemeHandlerFactory> Find(const std::string& scheme,
                                          const std::string& domain) const;

 private:
  using Key = std::pair<std::string, std::string>;

  mutable std::mutex mutex_;
  std::map<Key, CefRefPtr<CefSchemeHandlerFactory>> factories_;
};

}  // namespace cefengine

#endif  // CEF_LIBCEF_SCHEME_HANDLER_REGISTRY_H_
