// A snapshot of one history entry, from Page.getNavigationHistory.

#ifndef CEF_LIBCEF_BROWSER_NAVIGATION_ENTRY_IMPL_H_
#define CEF_LIBCEF_BROWSER_NAVIGATION_ENTRY_IMPL_H_

#include <QJsonObject>
#include <QString>

#include "include/cef_navigation_entry.h"
#include "include/cef_ssl_status.h"

namespace cefengine {

// The protocol's TransitionType ("link", "typed", "address_bar", ...) as
// CEF's; unknown names count as links.
cef_transition_type_t TransitionFromProtocol(const QString& name);

class NavigationEntryImpl : public CefNavigationEntry {
 public:
  // |entry| is one NavigationEntry of the protocol; |http_status| is known
  // only for the current entry (0 otherwise).
  NavigationEntryImpl(const QJsonObject& entry, int http_status);

  bool IsValid() override { return true; }
  CefString GetURL() override;
  CefString GetDisplayURL() override;
  CefString GetOriginalURL() override;
  CefString GetTitle() override;
  TransitionType GetTransitionType() override;
  bool HasPostData() override { return false; }
  CefBaseTime GetCompletionTime() override { return CefBaseTime(); }
  int GetHttpStatusCode() override { return http_status_; }
  CefRefPtr<CefSSLStatus> GetSSLStatus() override { return nullptr; }

 private:
  const QJsonObject entry_;
  const int http_status_;
  IMPLEMENT_REFCOUNTING(NavigationEntryImpl);
};

}  // namespace cefengine

#endif  // CEF_LIBCEF_BROWSER_NAVIGATION_ENTRY_IMPL_H_
