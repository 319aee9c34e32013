#include "libcef/network/load_error_overrides.h"

namespace cefengine {

void LoadErrorOverrides::Set(const QString& loader_id,
                             const QString& error_text) {
  if (loader_id.isEmpty()) {
    return;
  }
  std::lock_guard<std::mutex> lock(mutex_);
  by_loader_[loader_id] = error_text;
}

bool LoadErrorOverrides::Take(const QString& loader_id, QString* error_text) {
  std::lock_guard<std::mutex> lock(mutex_);
  auto it = by_loader_.find(loader_id);
  if (it == by_loader_.end()) {
    return false;
  }
  *error_text = it->second;
  by_loader_.erase(it);
  return true;
}

}  // namespace cefengine
