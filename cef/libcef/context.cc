#include "libcef/context.h"

#include <string>
#include <utility>
#include <vector>

#include "include/base/cef_bind.h"
#include "include/base/cef_callback.h"
#include "include/base/cef_logging.h"
#include "include/wrapper/cef_closure_task.h"
#include "libcef/chromium_locator.h"
#include "libcef/command_line_impl.h"
#include "libcef/scheme_registrar_impl.h"

namespace cefengine {

namespace {

void PublishGlobalCommandLine(CefRefPtr<CefCommandLine> command_line) {
  std::vector<CefString> tokens;
  command_line->GetArgv(tokens);
  std::vector<std::string> argv_storage;
  for (const CefString& token : tokens) {
    argv_storage.push_back(token.ToString());
  }
  std::vector<const char*> argv;
  for (const std::string& token : argv_storage) {
    argv.push_back(token.c_str());
  }
  SetGlobalCommandLine(static_cast<int>(argv.size()), argv.data());
}

}  // namespace

Context* Context::Get() {
  static Context* const context = new Context();
  return context;
}

bool Context::Initialize(const CefMainArgs& args,
                         const CefSettings& settings,
                         CefRefPtr<CefApp> app) {
  std::lock_guard<std::mutex> lock(lifecycle_mutex_);
  if (state_ != State::kNew) {
    LOG(ERROR) << "CefInitialize: the engine can be initialised only once per "
                  "process";
    return false;
  }

  const std::string configured =
      CefString(&settings.browser_subprocess_path).ToString();
  std::string chromium = ChromiumLocator::ForThisSystem().Locate(configured);
  if (chromium.empty()) {
    if (configured.empty()) {
      LOG(ERROR) << "CefInitialize: no Chromium executable found (set "
                    "CefSettings.browser_subprocess_path or install "
                    "chromium-headless-shell)";
    } else {
      LOG(ERROR) << "CefInitialize: CefSettings.browser_subprocess_path \""
                 << configured << "\" is not an executable file";
    }
    state_ = State::kFailed;
    exit_code_ = CEF_RESULT_CODE_MISSING_DATA;
    return false;
  }

  // The application edits a writable copy, which then becomes the global,
  // read-only command line.
  CefRefPtr<CefCommandLine> command_line = CefCommandLine::CreateCommandLine();
  command_line->InitFromArgv(args.argc, args.argv);
  CefRefPtr<CefBrowserProcessHandler> handler;
  if (app) {
    app->OnBeforeCommandLineProcessing(CefString(), command_line);
    SchemeRegistrarImpl registrar;
    app->OnRegisterCustomSchemes(&registrar);
    custom_schemes_ = registrar.schemes();
    handler = app->GetBrowserProcessHandler();
  }

  PublishGlobalCommandLine(command_line);

  settings_ = settings;
  chromium_path_ = std::move(chromium);
  main_thread_ = std::this_thread::get_id();
  external_pump_ = !settings.multi_threaded_message_loop &&
                   settings.external_message_pump && handler;
  {
    std::lock_guard<std::mutex> app_lock(app_mutex_);
    app_ = app;
    handler_ = handler;
  }

  TaskQueue::PostObserver pump_observer;
  if (external_pump_) {
    pump_observer = [handler](int64_t delay_ms) {
      handler->OnScheduleMessagePumpWork(delay_ms);
    };
  }
  threads_.Start(settings.multi_threaded_message_loop != 0,
                 std::move(pump_observer));
  state_ = State::kInitialized;

  if (handler) {
    CefPostTask(TID_UI,
                base::BindOnce(&CefBrowserProcessHandler::OnContextInitialized,
                               handler));
  }
  return true;
}

void Context::Shutdown() {
  std::lock_guard<std::mutex> lock(lifecycle_mutex_);
  if (state_ != State::kInitialized) {
    return;
  }
  if (std::this_thread::get_id() != main_thread_) {
    LOG(ERROR) << "CefShutdown: must be called on the thread that called "
                  "CefInitialize; ignored";
    return;
  }
  state_ = State::kShutDown;
  // No task runs after this; queued ones are destroyed unrun.
  threads_.Stop();
  std::vector<std::function<void()>> hooks;
  {
    std::lock_guard<std::mutex> hooks_lock(hooks_mutex_);
    hooks.swap(shutdown_hooks_);
  }
  for (auto hook = hooks.rbegin(); hook != hooks.rend(); ++hook) {
    (*hook)();
  }
  scheme_handlers_.Clear();

  CefRefPtr<CefApp> app;
  CefRefPtr<CefBrowserProcessHandler> handler;
  {
    std::lock_guard<std::mutex> app_lock(app_mutex_);
    app.swap(app_);
    handler.swap(handler_);
  }
  // Released here, outside the lock, on the main thread.
}

void Context::AddShutdownHook(std::function<void()> hook) {
  std::lock_guard<std::mutex> lock(hooks_mutex_);
  shutdown_hooks_.push_back(std::move(hook));
}

bool Context::IsInitialized() const {
  return state_ == State::kInitialized;
}

CefRefPtr<CefApp> Context::app() const {
  std::lock_guard<std::mutex> lock(app_mutex_);
  return app_;
}

CefRefPtr<CefBrowserProcessHandler> Context::browser_process_handler() const {
  std::lock_guard<std::mutex> lock(app_mutex_);
  return handler_;
}

bool Context::CanRunUiLoop(const char* caller) const {
  if (!IsInitialized()) {
    return false;
  }
  if (threads_.own_ui_thread()) {
    LOG(ERROR) << caller
               << ": not available with multi_threaded_message_loop; ignored";
    return false;
  }
  if (std::this_thread::get_id() != main_thread_) {
    LOG(ERROR) << caller
               << ": must be called on the thread that called CefInitialize; "
                  "ignored";
    return false;
  }
  return true;
}

void Context::DoMessageLoopWork() {
  if (!CanRunUiLoop("CefDoMessageLoopWork")) {
    return;
  }
  TaskQueue& queue = threads_.ui_queue();
  queue.RunDueTasks();
  // Ask again for what is left, so that a delayed task is not forgotten by a
  // pump that dropped the first request.
  if (external_pump_ && IsInitialized()) {
    CefRefPtr<CefBrowserProcessHandler> handler = browser_process_handler();
    std::optional<int64_t> delay = queue.DelayToNextTask();
    if (handler && delay) {
      handler->OnScheduleMessagePumpWork(*delay);
    }
  }
}

void Context::RunMessageLoop() {
  if (CanRunUiLoop("CefRunMessageLoop")) {
    threads_.ui_queue().Run();
  }
}

void Context::QuitMessageLoop() {
  if (IsInitialized()) {
    threads_.ui_queue().Quit();
  }
}

}  // namespace cefengine
