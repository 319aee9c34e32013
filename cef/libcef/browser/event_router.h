// Where the protocol events of a browser's page go: the page's session, its
// out-of-process frames' sessions and target events about it arrive here;
// frame sessions have their look, the page hooks may take an event, and the
// rest go to PageEvents in order.

#ifndef CEF_LIBCEF_BROWSER_EVENT_ROUTER_H_
#define CEF_LIBCEF_BROWSER_EVENT_ROUTER_H_

#include <QJsonObject>
#include <QString>

namespace cefengine {

class BrowserImpl;

// Engine UI thread only. Owned by its browser.
class EventRouter {
 public:
  explicit EventRouter(BrowserImpl* browser);
  EventRouter(const EventRouter&) = delete;
  EventRouter& operator=(const EventRouter&) = delete;

  // An event of the page's session (|session_id|), of one of its frames'
  // sessions, or a target event about it (no session).
  void OnProtocolEvent(const QString& method,
                       const QJsonObject& params,
                       const QString& session_id);
  // The frame session whose event is being handled, empty for the page's
  // own.
  const QString& event_session() const { return event_session_; }

 private:
  // An event, after the frame sessions had their look.
  void Dispatch(const QString& method, const QJsonObject& params);

  BrowserImpl* const browser_;
  QString event_session_;
};

}  // namespace cefengine

#endif  // CEF_LIBCEF_BROWSER_EVENT_ROUTER_H_
