// Turns one page's protocol events into CEF's handler calls, in order: load
// state, frames, addresses, titles, crashes; console messages and popups
// through parts of its own, script dialogs and the like through the
// browser's.

#ifndef CEF_LIBCEF_BROWSER_PAGE_EVENTS_H_
#define CEF_LIBCEF_BROWSER_PAGE_EVENTS_H_

#include <deque>
#include <functional>
#include <map>
#include <optional>
#include <set>
#include <utility>

#include <QJsonObject>
#include <QString>

#include "include/internal/cef_ptr.h"
#include "include/internal/cef_types.h"
#include "libcef/browser/console_messages.h"
#include "libcef/browser/popup_opener.h"
#include "libcef/browser/script_contexts.h"

namespace cefengine {

class BrowserImpl;
class FrameImpl;

// Engine UI thread only. Owned by its browser.
class PageEvents {
 public:
  // The binding the title watcher reports through.
  static constexpr char kTitleBinding[] = "__broviaTitle";
  // A script for every new document that reports the main frame's title
  // whenever it changes.
  static QString TitleWatcherScript();
  // The binding and script that tell when Tab moves the focus out of the
  // page: "1" past the last element, "0" before the first.
  static constexpr char kTakeFocusBinding[] = "__broviaTakeFocus";
  static QString TakeFocusWatcherScript();

  explicit PageEvents(BrowserImpl* browser);
  ~PageEvents();
  PageEvents(const PageEvents&) = delete;
  PageEvents& operator=(const PageEvents&) = delete;

  // One event of the page's session or about its target, in arrival order;
  // also the engine's own "Brovia.navigated" {url, frameId, result, error}
  // for Page.navigate replies. |session_id| names the out-of-process
  // frame's session it came from, empty for the page's own.
  void Push(const QString& method,
            const QJsonObject& params,
            const QString& session_id = QString());

  // The next main-frame document comes from the browser's own request.
  void ExpectTransition(cef_transition_type_t type);

  // The default script context of a frame, in the session serving the
  // frame; 0 when none is known.
  int ContextFor(const QString& frame_id) const;

  // Forgets queued events: the browser closed.
  void Clear();
  // Forgets the page altogether, for a new one in its place; answers to
  // commands of the old page are ignored.
  void Reset();

 private:
  struct Event {
    QString method;
    QJsonObject params;
    QString session_id;
  };
  struct Commit {
    QString loader_id;
    bool error_page = false;
    bool ended = false;
  };

  void Drain();
  void Handle(const QString& method, const QJsonObject& params);
  // Holds back later events until |method| answered and |then| ran.
  void Await(const QString& method,
             const QJsonObject& params,
             std::function<void(const QJsonObject& result,
                                const QJsonObject& error)> then);
  // Asks for the history, then runs |then| (may be empty).
  void RefreshHistory(std::function<void()> then, int attempt = 0);

  void OnFrameNavigated(const QJsonObject& params);

  void OnFrameRequestedNavigation(const QJsonObject& params);
  void OnSameDocumentNavigation(const QJsonObject& params);
  void OnFrameStartedLoading(const QString& frame_id);
  void OnFrameStoppedLoading(const QString& frame_id);
  void OnFrameDetached(const QString& frame_id);
  void OnNavigateReply(const QJsonObject& params);
  void OnLoadingFailed(const QJsonObject& params);
  void ReportLoadError(const QString& frame_id,
                       const QString& error_text,
                       const QString& url,
                       const QString& loader_id);
  // Tab moved the focus out of the page.
  void OnTakeFocus(bool next);
  void OnTitle(const QString& page_title);
  void OnCrashed(const QJsonObject& params);
  void UpdateLoading(bool loading);

  BrowserImpl* const browser_;
  ScriptContexts contexts_;
  ConsoleMessages console_;
  PopupOpener popups_;
  int generation_ = 0;
  std::deque<Event> queue_;
  // The session of the event being handled.
  QString session_id_;
  bool waiting_ = false;
  bool draining_ = false;

  std::set<QString> loading_frames_;
  bool loading_ = false;
  std::map<QString, Commit> commits_;                   // by frame
  std::map<QString, int> status_by_loader_;             // http(s) documents
  std::map<QString, std::pair<QString, QString>> document_requests_;
  std::set<QString> reported_loaders_;                  // errors told once
  static constexpr int kHistoryAttempts = 5;
  static constexpr int kHistoryRetryDelayMs = 50;

  // The next main-frame commit's transition, as the browser asked for it,
  // else as the page asked for it.
  std::optional<cef_transition_type_t> expected_transition_;
  std::optional<cef_transition_type_t> requested_transition_;
  bool has_committed_ = false;
  bool history_seen_ = false;
  int blank_entry_id_ = -1;
  bool blank_dropped_ = false;
  bool crashed_ = false;
  QString title_;
};

}  // namespace cefengine

#endif  // CEF_LIBCEF_BROWSER_PAGE_EVENTS_H_
