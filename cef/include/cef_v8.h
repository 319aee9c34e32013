// Script contexts of the render process. Declared as far as the browser
// side needs the types; the render side owns the rest.

#ifndef CEF_INCLUDE_CEF_V8_H_
#define CEF_INCLUDE_CEF_V8_H_
#pragma once

#include "include/cef_base.h"

// A V8 context of one frame. Render process only.
class CefV8Context : public virtual CefBaseRefCounted {
 public:
  // False once the context has been released.
  virtual bool IsValid() = 0;
};

#endif  // CEF_INCLUDE_CEF_V8_H_
