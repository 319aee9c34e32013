#include "libcef/browser/script_contexts.h"

#include <iterator>

#include "libcef/browser/protocol_fields.h"

namespace cefengine {

void ScriptContexts::OnCreated(const QJsonObject& params,
                               const QString& session_id) {
  const QJsonObject context = Obj(params, "context");
  const QJsonObject aux = Obj(context, "auxData");
  if (aux.value(QLatin1String("isDefault")).toBool()) {
    contexts_[Str(aux, "frameId")] =
        Context{session_id, context.value(QLatin1String("id")).toInt()};
  }
}

void ScriptContexts::OnDestroyed(const QJsonObject& params,
                                 const QString& session_id) {
  const int id = params.value(QLatin1String("executionContextId")).toInt();
  for (auto it = contexts_.begin(); it != contexts_.end();) {
    it = it->second.id == id && it->second.session_id == session_id
             ? contexts_.erase(it)
             : std::next(it);
  }
}

void ScriptContexts::OnCleared(const QString& session_id) {
  for (auto it = contexts_.begin(); it != contexts_.end();) {
    it = it->second.session_id == session_id ? contexts_.erase(it)
                                             : std::next(it);
  }
}

int ScriptContexts::ContextFor(const QString& frame_id) const {
  auto it = contexts_.find(frame_id);
  return it == contexts_.end() ? 0 : it->second.id;
}

QString ScriptContexts::FrameOf(int context_id,
                                const QString& session_id) const {
  for (const auto& [frame_id, context] : contexts_) {
    if (context.id == context_id && context.session_id == session_id) {
      return frame_id;
    }
  }
  return QString();
}

void ScriptContexts::ForgetFrame(const QString& frame_id) {
  contexts_.erase(frame_id);
}

void ScriptContexts::Clear() {
  contexts_.clear();
}

}  // namespace cefengine
