// The navigation gate of one browser: every navigation of every frame goes
// through CefRequestHandler::OnBeforeBrowse (and, when it would open
// elsewhere, OnOpenURLFromTab), every request Chromium pauses through the
// client's resource handlers and the scheme handler factories, and every
// certificate error through OnCertificateError.
//
// Chromium pauses http, https and file documents (Fetch); those are decided
// before they start, redirects included. Navigations it does not pause
// (data:, about:, unknown schemes) are decided before the engine asks for
// them (CefFrame::LoadURL), when the page asks for them
// (Page.frameRequestedNavigation), or else when they start (history, a
// browser's first address); a cancelled one under way is stopped with
// Page.stopLoading, which stops the whole page's loading, and may be too
// late for a document as quick as a data: URL.

#ifndef CEF_LIBCEF_NETWORK_NAVIGATION_GATE_H_
#define CEF_LIBCEF_NETWORK_NAVIGATION_GATE_H_

#include <map>
#include <memory>
#include <set>

#include <QJsonObject>
#include <QString>

#include "include/cef_frame.h"
#include "libcef/browser/navigation_policy.h"
#include "libcef/network/certificate_error_handler.h"
#include "libcef/network/load_error_overrides.h"
#include "libcef/network/request_impl.h"

namespace cefengine {

// Engine UI thread only.
class NavigationGate : public NavigationPolicy {
 public:
  NavigationGate() = default;

  void OnAttached(BrowserImpl* browser) override;
  void OnFrameSessionAttached(BrowserImpl* browser,
                              const QString& session_id) override;
  bool OnPageEvent(BrowserImpl* browser,
                   const QString& method,
                   const QJsonObject& params) override;
  bool OnNavigate(BrowserImpl* browser,
                  const QString& frame_id,
                  const QString& url) override;
  QString OnLoadFailed(BrowserImpl* browser,
                       const QString& loader_id,
                       const QString& error_text) override;

 private:
  // A document request as Network.requestWillBeSent showed it.
  struct Document {
    QString url;
    bool user_gesture = false;
    bool paused = false;  // a later pause is a redirect
    QString reason;       // of the page's request, if it asked
  };
  // What the page last asked of a frame (Page.frameRequestedNavigation).
  struct Request {
    QString url;
    QString reason;
    bool decided = false;   // by the gate, at the request
    bool reported = false;  // with an error the gate told the client
  };

  // Pauses the requests of the frames |session_id| serves.
  static void Intercept(BrowserImpl* browser, const QString& session_id);
  void OnRequestPaused(BrowserImpl* browser, const QJsonObject& params);
  // A CORS preflight to a custom scheme's stand-in address: allowed.
  static bool IsPreflight(const QJsonObject& network_request);
  void AnswerPreflight(BrowserImpl* browser,
                       const QString& fetch_id,
                       const QJsonObject& network_request);
  void OnDocumentPaused(BrowserImpl* browser, const QJsonObject& params);
  void OnFrameRequestedNavigation(BrowserImpl* browser,
                                  const QJsonObject& params);
  void OnFrameStartedNavigating(BrowserImpl* browser,
                                const QJsonObject& params);
  enum class Verdict { kProceed, kCancelled, kUnknownScheme };
  // A navigation Chromium does not pause: asks the client and tells it the
  // error its navigation ends with, if any.
  Verdict JudgeUnpausable(BrowserImpl* browser,
                          const QString& frame_id,
                          const QString& url,
                          const QString& reason,
                          bool user_gesture);
  // As JudgeUnpausable, for a navigation already under way, which is
  // stopped when cancelled. True when the client was told an error.
  bool DecideUnderWay(BrowserImpl* browser,
                      const QString& frame_id,
                      const QString& url,
                      const QString& reason,
                      bool user_gesture);
  // OnBeforeBrowse; true cancels.
  bool Browse(BrowserImpl* browser,
              CefRefPtr<CefFrame> frame,
              CefRefPtr<CefRequestImpl> request,
              bool user_gesture,
              bool is_redirect);
  void ReportLoadError(BrowserImpl* browser,
                       CefRefPtr<CefFrame> frame,
                       const QString& url,
                       const char* error_name);
  // The frame, or a stand-in for one the browser does not know yet.
  CefRefPtr<CefFrame> FrameFor(BrowserImpl* browser, const QString& frame_id);
  QString LoaderFor(const QString& url) const;

  const std::shared_ptr<LoadErrorOverrides> overrides_ =
      std::make_shared<LoadErrorOverrides>();
  std::unique_ptr<CertificateErrorHandler> certificates_;
  std::map<QString, Document> documents_;  // by request (= loader) id
  std::map<QString, Request> requests_;    // by frame
  std::map<QString, QString> parents_;     // frame -> parent frame
};

}  // namespace cefengine

#endif  // CEF_LIBCEF_NETWORK_NAVIGATION_GATE_H_
