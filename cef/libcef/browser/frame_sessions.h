// The out-of-process frames of one page. With site isolation Chromium keeps a
// cross-site frame in a renderer of its own, reached through a session of its
// own that the page's auto-attach opens: its events join the page's, and
// commands about its frames go to it.

#ifndef CEF_LIBCEF_BROWSER_FRAME_SESSIONS_H_
#define CEF_LIBCEF_BROWSER_FRAME_SESSIONS_H_

#include <map>
#include <vector>

#include <QJsonObject>
#include <QString>

namespace cefengine {

class BrowserImpl;

// Engine UI thread only. Owned by its browser.
class FrameSessions {
 public:
  // What a page's session and each frame's session send to attach the
  // frames below them.
  static QJsonObject AutoAttachParams();

  explicit FrameSessions(BrowserImpl* browser);
  FrameSessions(const FrameSessions&) = delete;
  FrameSessions& operator=(const FrameSessions&) = delete;

  // Target.attachedToTarget of an iframe target: sets its session up like
  // the page's and lets it run.
  void OnAttached(const QJsonObject& params);
  // Target.detachedFromTarget; false when |session_id| is none of ours.
  bool OnDetached(const QString& session_id);
  bool Owns(const QString& session_id) const;
  // An event of frame session |session_id|: frames it names live there.
  void NoteEvent(const QString& session_id,
                 const QString& method,
                 const QJsonObject& params);
  // The session serving |frame_id|; empty for the page's own.
  QString SessionFor(const QString& frame_id) const;
  // The page went: every frame session with it.
  void Clear();

 private:
  BrowserImpl* const browser_;
  std::map<QString, QString> root_frames_;  // session -> its frame
  std::map<QString, QString> sessions_;     // frame -> session
};

}  // namespace cefengine

#endif  // CEF_LIBCEF_BROWSER_FRAME_SESSIONS_H_
