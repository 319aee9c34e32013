// Results of CefBrowserHost::Find.

#ifndef CEF_INCLUDE_CEF_FIND_HANDLER_H_
#define CEF_INCLUDE_CEF_FIND_HANDLER_H_
#pragma once

#include "include/cef_base.h"
#include "include/cef_browser.h"

// Called on the UI thread.
class CefFindHandler : public virtual CefBaseRefCounted {
 public:
  // |count| matches so far; |activeMatchOrdinal| is the 1-based index of the
  // current one and |selectionRect| its place in view coordinates. Several
  // calls may come per search; the last has |finalUpdate| set.
  virtual void OnFindResult(CefRefPtr<CefBrowser> browser,
                            int identifier,
                            int count,
                            const CefRect& selectionRect,
                            int activeMatchOrdinal,
                            bool finalUpdate) {}
};

#endif  // CEF_INCLUDE_CEF_FIND_HANDLER_H_
