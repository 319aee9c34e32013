// Casting of media to other devices. Declared as far as the engine needs
// the type.

#ifndef CEF_INCLUDE_CEF_MEDIA_ROUTER_H_
#define CEF_INCLUDE_CEF_MEDIA_ROUTER_H_
#pragma once

#include "include/cef_base.h"

class CefMediaRouter : public virtual CefBaseRefCounted {
 public:
  // Make the observers hear of the current sinks and routes again.
  virtual void NotifyCurrentSinks() = 0;
  virtual void NotifyCurrentRoutes() = 0;
};

#endif  // CEF_INCLUDE_CEF_MEDIA_ROUTER_H_
