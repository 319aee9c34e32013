#include "libcef/scheme_registrar_impl.h"

#include <algorithm>
#include <cctype>
#include <string>

namespace cefengine {

namespace {

// Schemes that Chromium handles itself; a custom registration cannot take them.
constexpr const char* kBuiltInSchemes[] = {
    "about",  "blob",        "chrome",    "chrome-devtools", "chrome-error",
    "chrome-extension", "chrome-untrusted", "content", "data", "devtools",
    "file",   "filesystem",  "ftp",       "http",            "https",
    "javascript", "view-source", "ws",    "wss"};

// RFC 3986: a letter, then letters, digits, "+", "-" or ".".
bool IsValidSchemeName(const std::string& name) {
  if (name.empty() || !std::isalpha(static_cast<unsigned char>(name[0]))) {
    return false;
  }
  return std::all_of(name.begin(), name.end(), [](char c) {
    return std::isalnum(static_cast<unsigned char>(c)) || c == '+' ||
           c == '-' || c == '.';
  });
}

}  // namespace

bool SchemeRegistrarImpl::AddCustomScheme(const CefString& scheme_name,
                                          int options) {
  std::string name = scheme_name.ToString();
  std::transform(name.begin(), name.end(), name.begin(), [](char c) {
    return static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
  });
  if (!IsValidSchemeName(name) ||
      std::find(std::begin(kBuiltInSchemes), std::end(kBuiltInSchemes), name) !=
          std::end(kBuiltInSchemes) ||
      std::any_of(schemes_.begin(), schemes_.end(),
                  [&](const CustomScheme& s) { return s.name == name; })) {
    return false;
  }
  schemes_.push_back(CustomScheme{name, options});
  return true;
}

}  // namespace cefengine
