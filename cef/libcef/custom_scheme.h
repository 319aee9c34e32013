// A scheme registered through CefApp::OnRegisterCustomSchemes.

#ifndef CEF_LIBCEF_CUSTOM_SCHEME_H_
#define CEF_LIBCEF_CUSTOM_SCHEME_H_

#include <string>

namespace cefengine {

struct CustomScheme {
  std::string name;  // lower case
  int options = 0;   // cef_scheme_options_t bits
};

}  // namespace cefengine

#endif  // CEF_LIBCEF_CUSTOM_SCHEME_H_
