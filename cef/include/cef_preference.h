// Chromium preferences, global or per request context.

#ifndef CEF_INCLUDE_CEF_PREFERENCE_H_
#define CEF_INCLUDE_CEF_PREFERENCE_H_
#pragma once

#include <vector>

#include "include/cef_base.h"
#include "include/cef_values.h"

// Lets an application declare its own preferences at start-up.
class CefPreferenceRegistrar : public CefBaseScoped {
 public:
  virtual bool AddPreference(const CefString& name,
                             CefRefPtr<CefValue> default_value) = 0;
};

// Reading and writing preferences. Call on the browser-process UI thread
// unless noted.
class CefPreferenceManager : public virtual CefBaseRefCounted {
 public:
  // The preferences shared by all request contexts. Any thread.
  static CefRefPtr<CefPreferenceManager> GetGlobalPreferenceManager();

  virtual bool HasPreference(const CefString& name) = 0;
  // A copy of the value, or null if there is no such preference.
  virtual CefRefPtr<CefValue> GetPreference(const CefString& name) = 0;
  // A copy of all preferences, defaults too if |include_defaults|.
  virtual CefRefPtr<CefDictionaryValue> GetAllPreferences(
      bool include_defaults) = 0;
  // False if the preference is unknown or managed by policy.
  virtual bool CanSetPreference(const CefString& name) = 0;
  // A null |value| restores the default. On failure |error| says why.
  virtual bool SetPreference(const CefString& name,
                             CefRefPtr<CefValue> value,
                             CefString& error) = 0;
};

#endif  // CEF_INCLUDE_CEF_PREFERENCE_H_
