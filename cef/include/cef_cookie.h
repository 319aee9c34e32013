// Cookie stores of request contexts.

#ifndef CEF_INCLUDE_CEF_COOKIE_H_
#define CEF_INCLUDE_CEF_COOKIE_H_
#pragma once

#include <vector>

#include "include/cef_base.h"
#include "include/cef_callback.h"

class CefCookieVisitor;
class CefSetCookieCallback;
class CefDeleteCookiesCallback;

// Methods may be called on any thread; results and visits come on the UI
// thread. Methods return false when the store cannot be reached.
class CefCookieManager : public virtual CefBaseRefCounted {
 public:
  // The store of the global request context. |callback| (may be null) runs
  // once the store is ready.
  static CefRefPtr<CefCookieManager> GetGlobalManager(
      CefRefPtr<CefCompletionCallback> callback);

  virtual bool VisitAllCookies(CefRefPtr<CefCookieVisitor> visitor) = 0;

  // The cookies that would go with a request to |url|.
  virtual bool VisitUrlCookies(const CefString& url,
                               bool includeHttpOnly,
                               CefRefPtr<CefCookieVisitor> visitor) = 0;

  // Stores |cookie| for |url|; the cookie's fields are checked as for a
  // Set-Cookie header. False if they are invalid.
  virtual bool SetCookie(const CefString& url,
                         const CefCookie& cookie,
                         CefRefPtr<CefSetCookieCallback> callback) = 0;

  // Deletes the cookies of |url| named |cookie_name|. An empty
  // |cookie_name| deletes all host cookies of |url|; an empty |url| deletes
  // every cookie.
  virtual bool DeleteCookies(const CefString& url,
                             const CefString& cookie_name,
                             CefRefPtr<CefDeleteCookiesCallback> callback) = 0;

  // Writes the store to disk.
  virtual bool FlushStore(CefRefPtr<CefCompletionCallback> callback) = 0;
};

// Walks cookies. Called on the UI thread.
class CefCookieVisitor : public virtual CefBaseRefCounted {
 public:
  // |count| is the cookie's 0-based index among |total|. Setting
  // |deleteCookie| removes it; false stops the walk.
  virtual bool Visit(const CefCookie& cookie,
                     int count,
                     int total,
                     bool& deleteCookie) = 0;
};

class CefSetCookieCallback : public virtual CefBaseRefCounted {
 public:
  virtual void OnComplete(bool success) = 0;
};

class CefDeleteCookiesCallback : public virtual CefBaseRefCounted {
 public:
  virtual void OnComplete(int num_deleted) = 0;
};

#endif  // CEF_INCLUDE_CEF_COOKIE_H_
