#include "libcef/scheme_handler_registry.h"

#include <algorithm>
#include <cctype>

#include "libcef/context.h"

namespace cefengine {

namespace {

std::string ToLower(std::string text) {
  std::transform(text.begin(), text.end(), text.begin(), [](char c) {
    return static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
  });
  return text;
}

}  // namespace

void SchemeHandlerRegistry::Register(
    const std::string& scheme,
    const std::string& domain,
    CefRefPtr<CefSchemeHandlerFactory> factory) {
  Key key(ToLower(scheme), ToLower(domain));
  CefRefPtr<CefSchemeHandlerFactory> replaced;
  {
    std::lock_guard<std::mutex> lock(mutex_);
    auto it = factories_.find(key);
    if (it != factories_.end()) {
      replaced = std::move(it->second);
      factories_.erase(it);
    }
    if (factory) {
      factories_.emplace(std::move(key), std::move(factory));
    }
  }
  // |replaced| is released outside the lock: its destructor may call back.
}

void SchemeHandlerRegistry::Clear() {
  std::map<Key, CefRefPtr<CefSchemeHandlerFactory>> cleared;
  {
    std::lock_guard<std::mutex> lock(mutex_);
    cleared.swap(factories_);
  }
}

CefRefPtr<CefSchemeHandlerFactory> SchemeHandlerRegistry::Find(
    const std::string& scheme,
    const std::string& domain) const {
  const std::string lower_scheme = ToLower(scheme);
  std::lock_guard<std::mutex> lock(mutex_);
  auto it = factories_.find(Key(lower_scheme, ToLower(domain)));
  if (it == factories_.end()) {
    it = factories_.find(Key(lower_scheme, std::string()));
  }
  return it == factories_.end() ? nullptr : it->second;
}

}  // namespace cefengine

bool CefRegisterSchemeHandlerFactory(
    const CefString& scheme_name,
    const CefString& domain_name,
    CefRefPtr<CefSchemeHandlerFactory> factory) {
  cefengine::Context* context = cefengine::Context::Get();
  if (!context->IsInitialized() || scheme_name.empty()) {
    return false;
  }
  context->scheme_handlers().Register(scheme_name.ToString(),
                                      domain_name.ToString(), factory);
  return true;
}

bool CefClearSchemeHandlerFactories() {
  cefengine::Context* context = cefengine::Context::Get();
  if (!context->IsInitialized()) {
    return false;
  }
  context->scheme_handlers().Clear();
  return true;
}
