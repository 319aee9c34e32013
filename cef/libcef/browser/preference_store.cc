#include "libcef/browser/preference_store.h"

#include "include/cef_preference.h"
#include "include/cef_base.h"

namespace cefengine {

bool PreferenceStore::Has(const std::string& name) const {
  std::lock_guard<std::mutex> lock(mutex_);
  return values_.count(name) > 0;
}

CefRefPtr<CefValue> PreferenceStore::Get(const std::string& name) const {
  std::lock_guard<std::mutex> lock(mutex_);
  auto it = values_.find(name);
  return it == values_.end() ? nullptr : it->second->Copy();
}

CefRefPtr<CefDictionaryValue> PreferenceStore::GetAll() const {
  CefRefPtr<CefDictionaryValue> all = CefDictionaryValue::Create();
  std::lock_guard<std::mutex> lock(mutex_);
  for (const auto& [name, value] : values_) {
    all->SetValue(name, value->Copy());
  }
  return all;
}

bool PreferenceStore::Set(const std::string& name,
                          CefRefPtr<CefValue> value,
                          std::string* error) {
  if (name.empty()) {
    *error = "a preference needs a name";
    return false;
  }
  std::lock_guard<std::mutex> lock(mutex_);
  if (!value || !value->IsValid() || value->GetType() == VTYPE_INVALID) {
    values_.erase(name);
  } else {
    values_[name] = value->Copy();
  }
  return true;
}

namespace {

// The global preferences: a store of their own.
class GlobalPreferenceManager : public CefPreferenceManager {
 public:
  bool HasPreference(const CefString& name) override {
    return store_.Has(name.ToString());
  }
  CefRefPtr<CefValue> GetPreference(const CefString& name) override {
    return store_.Get(name.ToString());
  }
  CefRefPtr<CefDictionaryValue> GetAllPreferences(
      bool include_defaults) override {
    return store_.GetAll();
  }
  bool CanSetPreference(const CefString& name) override {
    return !name.empty();
  }
  bool SetPreference(const CefString& name,
                     CefRefPtr<CefValue> value,
                     CefString& error) override {
    std::string why;
    const bool ok = store_.Set(name.ToString(), value, &why);
    error = why;
    return ok;
  }

 private:
  PreferenceStore store_;
  IMPLEMENT_REFCOUNTING(GlobalPreferenceManager);
};

}  // namespace

}  // namespace cefengine

CefRefPtr<CefPreferenceManager>
CefPreferenceManager::GetGlobalPreferenceManager() {
  static CefPreferenceManager* const manager = [] {
    CefPreferenceManager* created = new cefengine::GlobalPreferenceManager;
    created->AddRef();  // lives as long as the process
    return created;
  }();
  return manager;
}
