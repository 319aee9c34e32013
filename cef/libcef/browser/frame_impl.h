// One frame of a browser's page, named by Chromium's frame id.

#ifndef CEF_LIBCEF_BROWSER_FRAME_IMPL_H_
#define CEF_LIBCEF_BROWSER_FRAME_IMPL_H_

#include <mutex>
#include <string>

#include <QString>

#include "include/cef_frame.h"

namespace cefengine {

class BrowserImpl;

class FrameImpl : public CefFrame {
 public:
  FrameImpl(CefRefPtr<BrowserImpl> browser,
            const QString& id,
            const QString& parent_id);

  // Empty for the main frame of a browser whose page is not made yet. Any
  // thread.
  QString id() const;
  const QString& parent_id() const { return parent_id_; }
  // The page came: the main frame the client already has takes its id.
  // Engine UI thread.
  void TakeId(const QString& id);

  // Engine UI thread, from the page's events.
  void SetCommitted(const std::string& url, const std::string& name);
  void SetUrl(const std::string& url);
  // The frame (or its browser) is gone; it keeps answering with its last
  // values.
  void Invalidate();

  bool IsValid() override;
  void Undo() override;
  void Redo() override;
  void Cut() override;
  void Copy() override;
  void Paste() override;
  void Delete() override;
  void SelectAll() override;
  void ViewSource() override;
  void GetSource(CefRefPtr<CefStringVisitor> visitor) override;
  void GetText(CefRefPtr<CefStringVisitor> visitor) override;
  void LoadRequest(CefRefPtr<CefRequest> request) override;
  void LoadURL(const CefString& url) override;
  void ExecuteJavaScript(const CefString& code,
                         const CefString& script_url,
                         int start_line) override;
  bool IsMain() override;
  bool IsFocused() override;
  CefString GetName() override;
  CefString GetIdentifier() override;
  CefRefPtr<CefFrame> GetParent() override;
  CefString GetURL() override;
  CefRefPtr<CefBrowser> GetBrowser() override;
  CefRefPtr<CefV8Context> GetV8Context() override;
  void VisitDOM(CefRefPtr<CefDOMVisitor> visitor) override;
  CefRefPtr<CefURLRequest> CreateURLRequest(
      CefRefPtr<CefRequest> request,
      CefRefPtr<CefURLRequestClient> client) override;
  void SendProcessMessage(CefProcessId target_process,
                          CefRefPtr<CefProcessMessage> message) override;

 private:
  // An editing command of the renderer, on whatever has the focus.
  void Edit(const char* command);
  void Visit(const char* script_file, CefRefPtr<CefStringVisitor> visitor);

  const QString parent_id_;
  // The browser drops its frames when it closes, which ends the cycle.
  const CefRefPtr<BrowserImpl> browser_;
  mutable std::mutex mutex_;
  QString id_;
  std::string url_;
  std::string name_;
  bool valid_ = true;
  IMPLEMENT_REFCOUNTING(FrameImpl);
};

}  // namespace cefengine

#endif  // CEF_LIBCEF_BROWSER_FRAME_IMPL_H_
