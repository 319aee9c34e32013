// A handle for something registered with the engine; dropping the last
// reference undoes the registration.

#ifndef CEF_INCLUDE_CEF_REGISTRATION_H_
#define CEF_INCLUDE_CEF_REGISTRATION_H_
#pragma once

#include "include/cef_base.h"

class CefRegistration : public virtual CefBaseRefCounted {};

#endif  // CEF_INCLUDE_CEF_REGISTRATION_H_
