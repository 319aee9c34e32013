// Answer to an HTTP authentication challenge.

#ifndef CEF_INCLUDE_CEF_AUTH_CALLBACK_H_
#define CEF_INCLUDE_CEF_AUTH_CALLBACK_H_
#pragma once

#include "include/cef_base.h"

class CefAuthCallback : public virtual CefBaseRefCounted {
 public:
  virtual void Continue(const CefString& username,
                        const CefString& password) = 0;
  // Gives up the authentication.
  virtual void Cancel() = 0;
};

#endif  // CEF_INCLUDE_CEF_AUTH_CALLBACK_H_
