// One entry of a browser's navigation history.

#ifndef CEF_INCLUDE_CEF_NAVIGATION_ENTRY_H_
#define CEF_INCLUDE_CEF_NAVIGATION_ENTRY_H_
#pragma once

#include "include/cef_base.h"

class CefSSLStatus;

class CefNavigationEntry : public virtual CefBaseRefCounted {
 public:
  typedef cef_transition_type_t TransitionType;

  // False once the entry no longer describes a live history item.
  virtual bool IsValid() = 0;
  // The URL as it stands now (after redirects).
  virtual CefString GetURL() = 0;
  // The URL as it should be shown to the user.
  virtual CefString GetDisplayURL() = 0;
  // The URL that was first requested.
  virtual CefString GetOriginalURL() = 0;
  virtual CefString GetTitle() = 0;
  virtual TransitionType GetTransitionType() = 0;
  virtual bool HasPostData() = 0;
  // Zero while the load has not finished.
  virtual CefBaseTime GetCompletionTime() = 0;
  // Zero if no response was received.
  virtual int GetHttpStatusCode() = 0;
  virtual CefRefPtr<CefSSLStatus> GetSSLStatus() = 0;
};

#endif  // CEF_INCLUDE_CEF_NAVIGATION_ENTRY_H_
