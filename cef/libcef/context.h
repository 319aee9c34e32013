// The engine's process-wide state: what CefInitialize was given and found,
// the threads, and the global registries. For engine code only.

#ifndef CEF_LIBCEF_CONTEXT_H_
#define CEF_LIBCEF_CONTEXT_H_

#include <atomic>
#include <functional>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "include/cef_app.h"
#include "libcef/custom_scheme.h"
#include "libcef/engine_threads.h"
#include "libcef/scheme_handler_registry.h"

namespace cefengine {

class Context {
 public:
  // The one context of the process; never destroyed, so that task runners and
  // late callers never see it go.
  static Context* Get();

  Context(const Context&) = delete;
  Context& operator=(const Context&) = delete;

  // CefInitialize. One attempt per process; false on any later call, also
  // after a failed first one or after Shutdown. Finds Chromium, builds the
  // global command line, runs the application's start-up hooks and starts the
  // threads: the UI thread is the engine's own with
  // multi_threaded_message_loop, else the calling thread. external_message_pump
  // counts only without multi_threaded_message_loop.
  bool Initialize(const CefMainArgs& args,
                  const CefSettings& settings,
                  CefRefPtr<CefApp> app);

  // CefShutdown. On the thread that called Initialize; blocks until the
  // engine threads have ended. Like CEF, runs no task afterwards: a task that
  // is running finishes, queued ones (delayed or not) are destroyed unrun on
  // their own thread, later posts fail. Then releases the application. No
  // effect without a successful Initialize.
  void Shutdown();

  // CefDoMessageLoopWork, CefRunMessageLoop, CefQuitMessageLoop.
  void DoMessageLoopWork();
  void RunMessageLoop();
  void QuitMessageLoop();

  // CefGetExitCode: 0, or CEF_RESULT_CODE_MISSING_DATA once Initialize found
  // no Chromium.
  int exit_code() const { return exit_code_; }

  // Between a successful Initialize and Shutdown. Any thread.
  bool IsInitialized() const;

  // The values below are set by a successful Initialize and keep them after
  // Shutdown; read them only once IsInitialized() has been true.
  const CefSettings& settings() const { return settings_; }
  // Absolute path of the Chromium executable to launch.
  const std::string& chromium_path() const { return chromium_path_; }
  // Schemes registered by CefApp::OnRegisterCustomSchemes, in order.
  const std::vector<CustomScheme>& custom_schemes() const {
    return custom_schemes_;
  }

  // The application and its browser-process handler; null before Initialize
  // and after Shutdown, or when the application has none. Any thread.
  CefRefPtr<CefApp> app() const;
  CefRefPtr<CefBrowserProcessHandler> browser_process_handler() const;

  // Runs |hook| during Shutdown, on the thread calling it, once the engine
  // threads have ended (so no engine task runs beside it); later hooks run
  // first. Hooks added after Shutdown never run. Any thread.
  void AddShutdownHook(std::function<void()> hook);

  EngineThreads& threads() { return threads_; }
  SchemeHandlerRegistry& scheme_handlers() { return scheme_handlers_; }

 private:
  enum class State { kNew, kInitialized, kFailed, kShutDown };

  Context() = default;

  // The UI loop is the host's to run: not multi-threaded, on the main thread.
  bool CanRunUiLoop(const char* caller) const;

  std::mutex lifecycle_mutex_;  // serialises Initialize and Shutdown
  std::atomic<State> state_{State::kNew};
  std::atomic<int> exit_code_{0};
  std::thread::id main_thread_;
  bool external_pump_ = false;

  CefSettings settings_;
  std::string chromium_path_;
  std::vector<CustomScheme> custom_schemes_;

  mutable std::mutex app_mutex_;
  CefRefPtr<CefApp> app_;
  CefRefPtr<CefBrowserProcessHandler> handler_;

  std::mutex hooks_mutex_;
  std::vector<std::function<void()>> shutdown_hooks_;

  EngineThreads threads_;
  SchemeHandlerRegistry scheme_handlers_;
};

}  // namespace cefengine

#endif  // CEF_LIBCEF_CONTEXT_H_
