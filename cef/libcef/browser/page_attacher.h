// How a browser gets its page: a target made in its Chromium (started if
// need be), attached to over the DevTools protocol, and every domain the
// engine uses set up before the page's own commands go out.

#ifndef CEF_LIBCEF_BROWSER_PAGE_ATTACHER_H_
#define CEF_LIBCEF_BROWSER_PAGE_ATTACHER_H_

#include <string>

#include <QJsonObject>
#include <QString>

namespace cefengine {

class BrowserImpl;

// Engine UI thread only. Owned by its browser.
class PageAttacher {
 public:
  explicit PageAttacher(BrowserImpl* browser);
  PageAttacher(const PageAttacher&) = delete;
  PageAttacher& operator=(const PageAttacher&) = delete;

  // Makes the page target, in a Chromium started if need be, and loads
  // |url| (none when empty) once it is attached. With |sync| it blocks
  // until the target exists and the client had OnAfterCreated; without, the
  // client has OnAfterCreated at once. False when Chromium cannot serve it.
  bool Start(bool sync, const std::string& url);
  // A popup Chromium opened and attached for the opener's page.
  void AttachPopup(const QString& target_id, const QString& session_id);

  // Chromium's target id, also the main frame's id; empty before the
  // target exists.
  const QString& target_id() const { return target_id_; }
  // OnAfterCreated was called.
  bool after_created() const { return after_created_; }
  // Emulation.setUserAgentOverride's parameters for this page's frames.
  QJsonObject UserAgentOverride() const;

 private:
  // Once Chromium runs: asks it for the page. False if it cannot.
  bool CreateTarget(bool sync);
  // Target creation failed: a browser the client already has waits for the
  // next try, any other ends.
  void OnCreateFailed();
  // The page target is this browser's: routes and the main frame.
  void RegisterTarget(const QString& target_id);
  // A target of our own making: waits for Chromium to attach it.
  void OnTargetCreated(const QString& target_id);
  void Attach(const QString& session_id);
  // Every domain answered: sends what waited and tells the client, unless
  // it knows already.
  void FinishAttach();
  // OnAfterCreated to the client, once; and to the render observer once the
  // page has one.
  void NotifyAfterCreated();

  BrowserImpl* const browser_;
  QString target_id_;
  bool after_created_ = false;
  // The render observer had OnAfterCreated.
  bool observer_told_ = false;
};

}  // namespace cefengine

#endif  // CEF_LIBCEF_BROWSER_PAGE_ATTACHER_H_
