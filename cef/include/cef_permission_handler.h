// Permission requests of pages: camera and microphone, and the other
// prompts (geolocation, notifications, ...).

#ifndef CEF_INCLUDE_CEF_PERMISSION_HANDLER_H_
#define CEF_INCLUDE_CEF_PERMISSION_HANDLER_H_
#pragma once

#include <cstdint>

#include "include/cef_base.h"
#include "include/cef_browser.h"

// Answers a media access request. |allowed_permissions| is a combination of
// cef_media_access_permission_types_t and must be a subset of the request.
class CefMediaAccessCallback : public virtual CefBaseRefCounted {
 public:
  virtual void Continue(uint32_t allowed_permissions) = 0;
  virtual void Cancel() = 0;
};

// Answers a permission prompt.
class CefPermissionPromptCallback : public virtual CefBaseRefCounted {
 public:
  virtual void Continue(cef_permission_request_result_t result) = 0;
};

// Called on the UI thread.
class CefPermissionHandler : public virtual CefBaseRefCounted {
 public:
  // The page asks for camera or microphone access (|requested_permissions|
  // of cef_media_access_permission_types_t). True if the client answers
  // |callback|; false denies.
  virtual bool OnRequestMediaAccessPermission(
      CefRefPtr<CefBrowser> browser,
      CefRefPtr<CefFrame> frame,
      const CefString& requesting_origin,
      uint32_t requested_permissions,
      CefRefPtr<CefMediaAccessCallback> callback) {
    return false;
  }

  // A prompt for |requested_permissions| (cef_permission_request_types_t).
  // True if the client answers |callback|; false for the default handling.
  virtual bool OnShowPermissionPrompt(
      CefRefPtr<CefBrowser> browser,
      uint64_t prompt_id,
      const CefString& requesting_origin,
      uint32_t requested_permissions,
      CefRefPtr<CefPermissionPromptCallback> callback) {
    return false;
  }

  // The prompt |prompt_id| is over with |result|, whoever decided it.
  virtual void OnDismissPermissionPrompt(
      CefRefPtr<CefBrowser> browser,
      uint64_t prompt_id,
      cef_permission_request_result_t result) {}
};

#endif  // CEF_INCLUDE_CEF_PERMISSION_HANDLER_H_
