// How the gate corrects the load errors Chromium reports for documents:
// the real cause of an abort (a refused certificate), or silence for a
// failure the gate has told the client itself.

#ifndef CEF_LIBCEF_NETWORK_LOAD_ERROR_OVERRIDES_H_
#define CEF_LIBCEF_NETWORK_LOAD_ERROR_OVERRIDES_H_

#include <map>
#include <mutex>

#include <QString>

namespace cefengine {

// Thread-safe: the deciding callbacks may run on any thread.
class LoadErrorOverrides {
 public:
  // The failure of |loader_id| is to be told as |error_text|
  // ("net::ERR_CERT_AUTHORITY_INVALID"); empty: not at all.
  void Set(const QString& loader_id, const QString& error_text);
  // The override of |loader_id|, forgotten once read; false when none.
  bool Take(const QString& loader_id, QString* error_text);

 private:
  std::mutex mutex_;
  std::map<QString, QString> by_loader_;
};

}  // namespace cefengine

#endif  // CEF_LIBCEF_NETWORK_LOAD_ERROR_OVERRIDES_H_
