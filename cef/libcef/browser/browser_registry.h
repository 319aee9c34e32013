// The engine's browsers and storages, and their end at CefShutdown.

#ifndef CEF_LIBCEF_BROWSER_BROWSER_REGISTRY_H_
#define CEF_LIBCEF_BROWSER_BROWSER_REGISTRY_H_

#include <atomic>
#include <map>
#include <memory>
#include <mutex>
#include <string>

#include "include/internal/cef_ptr.h"

namespace cefengine {

class BrowserImpl;
class ChromiumInstance;
class RequestContextImpl;
struct ContextStorage;

class BrowserRegistry {
 public:
  static BrowserRegistry& Get();

  // Identifiers count up from 1. Any thread.
  int NextBrowserId() { return ++last_browser_id_; }

  // Keeps a browser alive from creation until OnBeforeClose, as CEF does,
  // whatever the client holds. Engine UI thread.
  void AddBrowser(CefRefPtr<BrowserImpl> browser);
  void RemoveBrowser(int id);

  // The storage of |cache_path| (absolute, clean; empty = temporary), made
  // on first use. Any thread.
  std::shared_ptr<ContextStorage> StorageFor(const std::string& cache_path);

  // The global request context, made on first use; null unless the engine
  // runs. Any thread.
  CefRefPtr<RequestContextImpl> GlobalContext();

  // True for the first caller only: one Chromium may listen on the port.
  // Given back by a Chromium that goes unused.
  bool ClaimRemoteDebugging() { return !remote_debugging_claimed_.exchange(true); }
  void ReleaseRemoteDebugging() { remote_debugging_claimed_ = false; }

  // CefInitialize: starts the global context's Chromium in the background,
  // so that the first browser need not wait for it. Any thread.
  void StartEarly();
  // Called by each Chromium about to start: when the first one is another
  // than the one started early, and no browser took that one yet, it is
  // stopped, which gives its resources and the debugging port to the
  // storage that is used. Blocks the caller (a start thread) while that
  // Chromium still starts or stops.
  void SettleEarlyStart(const ChromiumInstance* starting);

 private:
  BrowserRegistry() = default;

  // CefShutdown, once the engine threads ended: stops every Chromium and
  // drops what is left.
  void Shutdown();

  std::mutex mutex_;
  bool hooked_ = false;
  std::map<int, CefRefPtr<BrowserImpl>> browsers_;
  std::map<std::string, std::shared_ptr<ContextStorage>> storages_;
  CefRefPtr<RequestContextImpl> global_context_;
  std::atomic<int> last_browser_id_{0};
  std::atomic<bool> remote_debugging_claimed_{false};
  // The Chromium StartEarly started, until the first start elsewhere.
  std::weak_ptr<ChromiumInstance> early_;
};

}  // namespace cefengine

#endif  // CEF_LIBCEF_BROWSER_BROWSER_REGISTRY_H_
