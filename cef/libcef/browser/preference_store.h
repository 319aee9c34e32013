// Preferences kept in memory: what CefPreferenceManager reads and writes
// until Chromium's own preferences are reachable. Thread-safe.

#ifndef CEF_LIBCEF_BROWSER_PREFERENCE_STORE_H_
#define CEF_LIBCEF_BROWSER_PREFERENCE_STORE_H_

#include <map>
#include <mutex>
#include <string>

#include "include/cef_values.h"

namespace cefengine {

class PreferenceStore {
 public:
  bool Has(const std::string& name) const;
  // A copy, or null.
  CefRefPtr<CefValue> Get(const std::string& name) const;
  // Copies of every value.
  CefRefPtr<CefDictionaryValue> GetAll() const;
  // Any name may be set; a null or invalid |value| removes it. False with
  // |error| for an empty name.
  bool Set(const std::string& name,
           CefRefPtr<CefValue> value,
           std::string* error);

 private:
  mutable std::mutex mutex_;
  std::map<std::string, CefRefPtr<CefValue>> values_;
};

}  // namespace cefengine

#endif  // CEF_LIBCEF_BROWSER_PREFERENCE_STORE_H_
