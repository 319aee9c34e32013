// The default script context of each frame of a page, in the session that
// serves the frame, as the Runtime domain reports them.

#ifndef CEF_LIBCEF_BROWSER_SCRIPT_CONTEXTS_H_
#define CEF_LIBCEF_BROWSER_SCRIPT_CONTEXTS_H_

#include <map>

#include <QJsonObject>
#include <QString>

namespace cefengine {

// Engine UI thread only. Owned by its page's PageEvents.
class ScriptContexts {
 public:
  ScriptContexts() = default;
  ScriptContexts(const ScriptContexts&) = delete;
  ScriptContexts& operator=(const ScriptContexts&) = delete;

  // Runtime.executionContextCreated, executionContextDestroyed and
  // executionContextsCleared of |session_id| (empty: the page's own).
  void OnCreated(const QJsonObject& params, const QString& session_id);
  void OnDestroyed(const QJsonObject& params, const QString& session_id);
  void OnCleared(const QString& session_id);

  // The frame's context id; 0 when none is known.
  int ContextFor(const QString& frame_id) const;
  // The frame whose context |context_id| of |session_id| is; empty when
  // none is known.
  QString FrameOf(int context_id, const QString& session_id) const;

  void ForgetFrame(const QString& frame_id);
  void Clear();

 private:
  struct Context {
    QString session_id;
    int id = 0;
  };
  std::map<QString, Context> contexts_;  // by frame
};

}  // namespace cefengine

#endif  // CEF_LIBCEF_BROWSER_SCRIPT_CONTEXTS_H_
