// Collects the custom schemes of CefApp::OnRegisterCustomSchemes.

#ifndef CEF_LIBCEF_SCHEME_REGISTRAR_IMPL_H_
#define CEF_LIBCEF_SCHEME_REGISTRAR_IMPL_H_

#include <vector>

#include "include/cef_scheme.h"
#include "libcef/custom_scheme.h"

namespace cefengine {

// Lives on the stack of CefInitialize, for the duration of the callback.
class SchemeRegistrarImpl : public CefSchemeRegistrar {
 public:
  // Refuses names that are not valid URL schemes, built-in schemes and
  // duplicates (names compare without case).
  bool AddCustomScheme(const CefString& scheme_name, int options) override;

  const std::vector<CustomScheme>& schemes() const { return schemes_; }

 private:
  std::vector<CustomScheme> schemes_;
};

}  // namespace cefengine

#endif  // CEF_LIBCEF_SCHEME_REGISTRAR_IMPL_H_
