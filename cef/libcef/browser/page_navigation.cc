#include "libcef/browser/page_navigation.h"

#include <QJsonObject>

#include "libcef/browser/browser_impl.h"
#include "libcef/browser/navigation_entry_impl.h"
#include "libcef/browser/navigation_policy.h"
#include "libcef/browser/page_connection.h"
#include "libcef/browser/page_events.h"
#include "libcef/browser/page_recovery.h"
#include "libcef/browser/script_dialogs.h"
#include "libcef/browser/ui_task.h"

namespace cefengine {

PageNavigation::PageNavigation(BrowserImpl* browser) : browser_(browser) {}

void PageNavigation::Navigate(const QString& frame_id, const std::string& url) {
  CefRefPtr<BrowserImpl> self(browser_);
  RunOnUiThread([self, frame_id, url] {
    if (frame_id.isEmpty() && self->connection()->IsGone()) {
      self->recovery()->Revive(url);
      return;
    }
    const QString target_url = QString::fromStdString(url);
    if (self->navigation_policy() &&
        self->navigation_policy()->OnNavigate(self.get(), frame_id,
                                              target_url)) {
      return;
    }
    self->script_dialogs()->BeforeLeaving(false);
    QJsonObject params{{"url", target_url}};
    if (frame_id.isEmpty()) {
      self->page_events()->ExpectTransition(TT_EXPLICIT);
    } else {
      params.insert(QStringLiteral("frameId"), frame_id);
    }
    self->SendSessionCommand(
        self->SessionForFrame(frame_id), QStringLiteral("Page.navigate"),
        params,
        [self, frame_id, target_url](const QJsonObject& result,
                                     const QJsonObject& error) {
          if (!self->IsValid()) {
            return;
          }
          self->page_events()->Push(
              QStringLiteral("Brovia.navigated"),
              QJsonObject{{"url", target_url},
                          {"frameId", frame_id},
                          {"result", result},
                          {"error", error}});
        });
  });
}

void PageNavigation::GoToOffset(int offset) {
  CefRefPtr<BrowserImpl> self(browser_);
  RunOnUiThread([self, this, offset] {
    QJsonObject entry;
    {
      std::lock_guard<std::mutex> lock(mutex_);
      const int index = history_index_ + offset;
      if (history_index_ < 0 || index < 0 || index >= history_.size()) {
        return;
      }
      entry = history_.at(index).toObject();
    }
    self->script_dialogs()->BeforeLeaving(false);
    self->page_events()->ExpectTransition(static_cast<cef_transition_type_t>(
        TransitionFromProtocol(
            entry.value(QLatin1String("transitionType")).toString()) |
        TT_FORWARD_BACK_FLAG));
    self->SendPageCommand(
        QStringLiteral("Page.navigateToHistoryEntry"),
        QJsonObject{{"entryId", entry.value(QLatin1String("id")).toInt()}});
  });
}

void PageNavigation::Reload(bool ignore_cache) {
  CefRefPtr<BrowserImpl> self(browser_);
  RunOnUiThread([self, ignore_cache] {
    if (self->recovery()->ReviveAtCurrentUrl()) {
      return;
    }
    self->script_dialogs()->BeforeLeaving(true);
    self->page_events()->ExpectTransition(TT_RELOAD);
    self->SendPageCommand(QStringLiteral("Page.reload"),
                          QJsonObject{{"ignoreCache", ignore_cache}});
  });
}

void PageNavigation::StopLoad() {
  browser_->SendPageCommand(QStringLiteral("Page.stopLoading"), {});
}

bool PageNavigation::CanGoBack() const {
  bool back = false;
  bool forward = false;
  HistoryState(&back, &forward);
  return back;
}

bool PageNavigation::CanGoForward() const {
  bool back = false;
  bool forward = false;
  HistoryState(&back, &forward);
  return forward;
}

bool PageNavigation::IsLoading() const {
  std::lock_guard<std::mutex> lock(mutex_);
  return loading_;
}

bool PageNavigation::HasDocument() const {
  std::lock_guard<std::mutex> lock(mutex_);
  return has_document_;
}

void PageNavigation::VisitEntries(CefRefPtr<CefNavigationEntryVisitor> visitor,
                                  bool current_only) const {
  if (!visitor) {
    return;
  }
  QJsonArray entries;
  int current = -1;
  int status = 0;
  {
    std::lock_guard<std::mutex> lock(mutex_);
    entries = history_;
    current = history_index_;
    status = document_status_;
  }
  const int total = entries.size();
  for (int index = 0; index < total; ++index) {
    if (current_only && index != current) {
      continue;
    }
    CefRefPtr<CefNavigationEntry> entry = new NavigationEntryImpl(
        entries.at(index).toObject(), index == current ? status : 0);
    if (!visitor->Visit(entry, index == current, index, total)) {
      break;
    }
  }
}

CefRefPtr<CefNavigationEntry> PageNavigation::VisibleEntry() const {
  std::lock_guard<std::mutex> lock(mutex_);
  if (history_index_ < 0 || history_index_ >= history_.size()) {
    return nullptr;
  }
  return new NavigationEntryImpl(history_.at(history_index_).toObject(),
                                 document_status_);
}

void PageNavigation::SetLoadState(bool loading) {
  std::lock_guard<std::mutex> lock(mutex_);
  loading_ = loading;
}

void PageNavigation::SetHistory(const QJsonArray& entries, int current_index) {
  std::lock_guard<std::mutex> lock(mutex_);
  history_ = entries;
  history_index_ = current_index;
  has_document_ = true;
}

bool PageNavigation::HistoryState(bool* can_go_back,
                                  bool* can_go_forward) const {
  std::lock_guard<std::mutex> lock(mutex_);
  *can_go_back = history_index_ > 0;
  *can_go_forward =
      history_index_ >= 0 && history_index_ + 1 < history_.size();
  return history_index_ >= 0;
}

void PageNavigation::SetDocumentStatus(int http_status) {
  std::lock_guard<std::mutex> lock(mutex_);
  document_status_ = http_status;
}

}  // namespace cefengine
