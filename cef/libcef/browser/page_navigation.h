// Where a browser's page goes and has been: LoadURL, back and forward,
// reload and stop, and the history and load state its events report, kept
// for callers on any thread.

#ifndef CEF_LIBCEF_BROWSER_PAGE_NAVIGATION_H_
#define CEF_LIBCEF_BROWSER_PAGE_NAVIGATION_H_

#include <mutex>
#include <string>

#include <QJsonArray>
#include <QString>

#include "include/cef_browser.h"
#include "include/cef_navigation_entry.h"

namespace cefengine {

class BrowserImpl;

// Any thread. Owned by its browser.
class PageNavigation {
 public:
  explicit PageNavigation(BrowserImpl* browser);
  PageNavigation(const PageNavigation&) = delete;
  PageNavigation& operator=(const PageNavigation&) = delete;

  // Page.navigate in |frame_id| (empty: the main frame, which also brings
  // back a page whose Chromium went).
  void Navigate(const QString& frame_id, const std::string& url);
  // The history entry |offset| steps from the current one, if there is one.
  void GoToOffset(int offset);
  void Reload(bool ignore_cache);
  void StopLoad();

  bool CanGoBack() const;
  bool CanGoForward() const;
  bool IsLoading() const;
  bool HasDocument() const;
  void VisitEntries(CefRefPtr<CefNavigationEntryVisitor> visitor,
                    bool current_only) const;
  CefRefPtr<CefNavigationEntry> VisibleEntry() const;

  // What the page's events tell.
  void SetLoadState(bool loading);
  void SetHistory(const QJsonArray& entries, int current_index);
  // False while no history is known.
  bool HistoryState(bool* can_go_back, bool* can_go_forward) const;
  // The main frame's document's HTTP status, 0 for none.
  void SetDocumentStatus(int http_status);

 private:
  BrowserImpl* const browser_;
  mutable std::mutex mutex_;
  // Guarded by |mutex_|.
  bool loading_ = false;
  bool has_document_ = false;
  int document_status_ = 0;
  QJsonArray history_;
  int history_index_ = -1;
};

}  // namespace cefengine

#endif  // CEF_LIBCEF_BROWSER_PAGE_NAVIGATION_H_
