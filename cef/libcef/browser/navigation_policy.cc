#include "libcef/browser/navigation_policy.h"

#include <mutex>
#include <utility>

namespace cefengine {

namespace {

std::mutex& FactoryMutex() {
  static std::mutex mutex;
  return mutex;
}

NavigationPolicyFactory& Factory() {
  static NavigationPolicyFactory factory;
  return factory;
}

}  // namespace

void SetNavigationPolicyFactory(NavigationPolicyFactory factory) {
  std::lock_guard<std::mutex> lock(FactoryMutex());
  Factory() = std::move(factory);
}

NavigationPolicyFactory GetNavigationPolicyFactory() {
  std::lock_guard<std::mutex> lock(FactoryMutex());
  return Factory();
}

}  // namespace cefengine
