// How a browser closes, as in CEF: a non-forced close first asks the page's
// beforeunload handlers, then the client's DoClose, which may leave the end
// to the application's next close request; a page that goes by itself
// closes its browser too.

#ifndef CEF_LIBCEF_BROWSER_BROWSER_CLOSER_H_
#define CEF_LIBCEF_BROWSER_BROWSER_CLOSER_H_

namespace cefengine {

class BrowserImpl;

// Engine UI thread unless said otherwise. Owned by its browser.
class BrowserCloser {
 public:
  explicit BrowserCloser(BrowserImpl* browser);
  BrowserCloser(const BrowserCloser&) = delete;
  BrowserCloser& operator=(const BrowserCloser&) = delete;

  // CefBrowserHost::CloseBrowser. Any thread.
  void CloseBrowser(bool force_close);
  // CefBrowserHost::TryCloseBrowser: true when the browser is closed now.
  bool TryCloseBrowser();
  // A beforeunload dialog ended: a non-forced close goes on or, denied,
  // is called off.
  void OnUnloadAnswered(bool allowed);
  // The page's target went away by itself (window.close(), closed outside).
  void OnTargetGone();
  // A new page was asked for in place of one that went.
  void OnPageRevived() { target_gone_ = false; }
  // The browser ended: no close is under way any more.
  void OnDestroyed() { asking_unload_ = false; }

  // A close was decided, or the page is being asked.
  bool closing() const { return closing_; }
  bool asking_unload() const { return asking_unload_; }

 private:
  void Close(bool force);
  // Page.close, which runs the handlers and closes the target if they
  // allow it; false when the page cannot be asked.
  bool AskUnload();
  // Sends Page.close for |request| until the page answers.
  void SendUnloadRequest(int request);
  // Closes anyway when the page neither answers nor goes in time, unless
  // the client is still deciding.
  void WatchUnload();

  BrowserImpl* const browser_;
  bool closing_ = false;
  // DoClose answered true: the next close request finishes the job.
  bool close_deferred_ = false;
  // Page.close was sent and the page's verdict is awaited; the number tells
  // one request's timeout from the next.
  bool asking_unload_ = false;
  int unload_request_ = 0;
  bool target_gone_ = false;
};

}  // namespace cefengine

#endif  // CEF_LIBCEF_BROWSER_BROWSER_CLOSER_H_
