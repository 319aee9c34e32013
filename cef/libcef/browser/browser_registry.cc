#include "libcef/browser/browser_registry.h"

#include <utility>
#include <vector>

#include <QString>

#include "include/cef_command_line.h"
#include "libcef/browser/browser_impl.h"
#include "libcef/browser/chromium_instance.h"
#include "libcef/browser/context_storage.h"
#include "libcef/browser/request_context_impl.h"
#include "libcef/context.h"
#include "libcef/osr/x_server.h"

namespace cefengine {

BrowserRegistry& BrowserRegistry::Get() {
  static BrowserRegistry* const registry = new BrowserRegistry();
  return *registry;
}

void BrowserRegistry::AddBrowser(CefRefPtr<BrowserImpl> browser) {
  std::lock_guard<std::mutex> lock(mutex_);
  browsers_[browser->GetIdentifier()] = browser;
}

void BrowserRegistry::RemoveBrowser(int id) {
  CefRefPtr<BrowserImpl> removed;
  std::lock_guard<std::mutex> lock(mutex_);
  auto it = browsers_.find(id);
  if (it != browsers_.end()) {
    removed = it->second;
    browsers_.erase(it);
  }
}

std::shared_ptr<ContextStorage> BrowserRegistry::StorageFor(
    const std::string& cache_path) {
  std::lock_guard<std::mutex> lock(mutex_);
  if (!hooked_) {
    hooked_ = true;
    Context::Get()->AddShutdownHook([this] { Shutdown(); });
  }
  std::shared_ptr<ContextStorage>& storage = storages_[cache_path];
  if (!storage) {
    storage = std::make_shared<ContextStorage>(cache_path);
  }
  return storage;
}

CefRefPtr<RequestContextImpl> BrowserRegistry::GlobalContext() {
  if (!Context::Get()->IsInitialized()) {
    return nullptr;
  }
  {
    std::lock_guard<std::mutex> lock(mutex_);
    if (global_context_) {
      return global_context_;
    }
  }
  CefRefPtr<RequestContextImpl> created = RequestContextImpl::CreateGlobal();
  std::lock_guard<std::mutex> lock(mutex_);
  if (!global_context_) {
    global_context_ = created;
  }
  return global_context_;
}

namespace {

// The factor an application forces on its pages, if any: the one the first
// browser most likely paints at.
float ForcedScaleFactor() {
  CefRefPtr<CefCommandLine> command_line =
      CefCommandLine::GetGlobalCommandLine();
  if (!command_line ||
      !command_line->HasSwitch("force-device-scale-factor")) {
    return 1;
  }
  bool ok = false;
  const float scale =
      QString::fromStdString(
          command_line->GetSwitchValue("force-device-scale-factor").ToString())
          .toFloat(&ok);
  return ok && scale > 0 ? scale : 1;
}

}  // namespace

void BrowserRegistry::StartEarly() {
  CefRefPtr<RequestContextImpl> global = GlobalContext();
  if (!global) {
    return;
  }
  std::shared_ptr<ChromiumInstance> chromium = global->storage()->chromium;
  {
    std::lock_guard<std::mutex> lock(mutex_);
    early_ = chromium;
  }
  chromium->StartInBackground(ForcedScaleFactor());
}

void BrowserRegistry::SettleEarlyStart(const ChromiumInstance* starting) {
  std::shared_ptr<ChromiumInstance> early;
  {
    std::lock_guard<std::mutex> lock(mutex_);
    early = early_.lock();
    if (!early || early.get() == starting) {
      return;
    }
    early_.reset();
  }
  early->StopIfUnused();
}

void BrowserRegistry::Shutdown() {
  std::map<int, CefRefPtr<BrowserImpl>> browsers;
  std::map<std::string, std::shared_ptr<ContextStorage>> storages;
  CefRefPtr<RequestContextImpl> global_context;
  {
    std::lock_guard<std::mutex> lock(mutex_);
    browsers.swap(browsers_);
    storages.swap(storages_);
    global_context.swap(global_context_);
  }
  for (auto& [path, storage] : storages) {
    storage->chromium->Shutdown();
  }
  // Chromium is gone: its X server (if the X frame source ran) goes too.
  XServer::ShutdownIfRunning();
  // Browsers still open now were never closed by the application; they go
  // without OnBeforeClose, as Chromium has.
  for (auto& [id, browser] : browsers) {
    browser->ReleaseAfterShutdown();
  }
}

}  // namespace cefengine
