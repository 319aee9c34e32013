// The render process's half of the library's process messages, played by the
// engine: scripts evaluated in the page, focus changes reported. It speaks the
// library's message classes, which both sides share.

#ifndef CEF_RENDER_SIDE_RENDER_SIDE_AGENT_H_
#define CEF_RENDER_SIDE_RENDER_SIDE_AGENT_H_

#include <QJsonValue>

#include "include/cef_values.h"
#include "libcef/browser/render_side.h"

namespace cefengine {

// Engine UI thread, one per browser.
class RenderSideAgent : public RenderSide {
 public:
  void OnAttached(BrowserImpl* browser) override;
  bool OnPageEvent(BrowserImpl* browser,
                   const QString& method,
                   const QJsonObject& params) override;
  void OnProcessMessage(BrowserImpl* browser,
                        CefRefPtr<CefFrame> frame,
                        CefRefPtr<CefProcessMessage> message) override;

  // A script's value as the host reads it: objects and arrays as
  // dictionaries and lists, whole numbers within int as ints.
  static CefRefPtr<CefValue> ToCefValue(const QJsonValue& value);

 private:
  void RunJavaScript(BrowserImpl* browser,
                     CefRefPtr<CefFrame> frame,
                     CefRefPtr<CefProcessMessage> message);
  void RepaintSync(BrowserImpl* browser,
                   CefRefPtr<CefFrame> frame,
                   CefRefPtr<CefProcessMessage> message);
  void ReportFocus(BrowserImpl* browser, bool editable);
};

}  // namespace cefengine

#endif  // CEF_RENDER_SIDE_RENDER_SIDE_AGENT_H_
