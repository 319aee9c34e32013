// Where the render process's half of the process messages plugs in. CEF runs
// a client's render-process code next to the page; here the engine carries
// that side itself, over the page's protocol session, and the browser core
// only routes to it.

#ifndef CEF_LIBCEF_BROWSER_RENDER_SIDE_H_
#define CEF_LIBCEF_BROWSER_RENDER_SIDE_H_

#include <functional>
#include <memory>

#include "include/cef_frame.h"
#include "include/cef_process_message.h"
#include "libcef/browser/page_hook.h"

namespace cefengine {

class BrowserImpl;

// One per browser, owned by it. Engine UI thread.
class RenderSide : public PageHook {
 public:
  // A message the client sent to the render process through |frame|; at
  // once, while the client's send is still running. It must answer later
  // only (SendToBrowserProcess from a protocol reply or event).
  virtual void OnProcessMessage(BrowserImpl* browser,
                                CefRefPtr<CefFrame> frame,
                                CefRefPtr<CefProcessMessage> message) {}
};

using RenderSideFactory =
    std::function<std::unique_ptr<RenderSide>(BrowserImpl* browser)>;

// For browsers created afterwards; a static registrar is fine. Any thread.
void SetRenderSideFactory(RenderSideFactory factory);
RenderSideFactory GetRenderSideFactory();

// Hands |message| to the client of |browser| through
// CefClient::OnProcessMessageReceived, as from the render process, on the
// engine UI thread and never re-entrantly: at once when called there outside
// a delivery, else queued. Any thread.
void SendToBrowserProcess(CefRefPtr<BrowserImpl> browser,
                          CefRefPtr<CefFrame> frame,
                          CefRefPtr<CefProcessMessage> message);

}  // namespace cefengine

#endif  // CEF_LIBCEF_BROWSER_RENDER_SIDE_H_
