// The render process's half of the process messages, played by the engine:
// scripts evaluated in the page, focus changes reported. It speaks the message
// classes of the host's view-support library, which both sides share.

#ifndef CEF_RENDER_SIDE_RENDER_SIDE_AGENT_H_
#define CEF_RENDER_SIDE_RENDER_SIDE_AGENT_H_

#include <cstdint>
#include <map>

#include <QJsonValue>

#include "include/cef_values.h"
#include "libcef/browser/render_side.h"

namespace cefengine {

// Engine UI thread, one per browser.
class RenderSideAgent : public RenderSide {
 public:
  void OnAttached(BrowserImpl* browser) override;
  void OnFrameSessionAttached(BrowserImpl* browser,
                              const QString& session_id) override;
  bool OnPageEvent(BrowserImpl* browser,
                   const QString& method,
                   const QJsonObject& params) override;
  void OnProcessMessage(BrowserImpl* browser,
                        CefRefPtr<CefFrame> frame,
                        CefRefPtr<CefProcessMessage> message) override;

  // A script's value as the host reads it: objects and arrays as
  // dictionaries and lists, whole numbers within int as ints.
  static CefRefPtr<CefValue> ToCefValue(const QJsonValue& value);
  // The other way, for answers to the page.
  static QJsonValue ToJson(CefRefPtr<CefValue> value);

 private:
  // The bindings and scripts of the page's session, or a frame's.
  static void Install(BrowserImpl* browser, const QString& session_id);
  void RunJavaScript(BrowserImpl* browser,
                     CefRefPtr<CefFrame> frame,
                     CefRefPtr<CefProcessMessage> message);
  void RepaintSync(BrowserImpl* browser,
                   CefRefPtr<CefFrame> frame,
                   CefRefPtr<CefProcessMessage> message);
  void ReportFocus(BrowserImpl* browser, bool editable);
  // A page's call of a host method, and the host's answer to it.
  void ForwardCall(BrowserImpl* browser, const QJsonObject& params);
  void AnswerCall(BrowserImpl* browser, CefRefPtr<CefProcessMessage> message);

  // Each unanswered call by the engine's number: the page context it came
  // from (in the frame session it names, empty for the page's own) and the
  // page's own number for it.
  struct PendingCall {
    QString session_id;
    int context = 0;
    int64_t page_id = 0;
  };
  std::map<int64_t, PendingCall> pending_calls_;
  int64_t next_call_ = 1;
};

}  // namespace cefengine

#endif  // CEF_RENDER_SIDE_RENDER_SIDE_AGENT_H_
