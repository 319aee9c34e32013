#include "libcef/browser/render_observer.h"

#include <mutex>
#include <utility>

namespace cefengine {

namespace {

std::mutex& FactoryMutex() {
  static std::mutex mutex;
  return mutex;
}

// Function-local, so that a registrar running during static initialisation
// finds it constructed.
RenderObserverFactory& Factory() {
  static RenderObserverFactory factory;
  return factory;
}

}  // namespace

void SetRenderObserverFactory(RenderObserverFactory factory) {
  std::lock_guard<std::mutex> lock(FactoryMutex());
  Factory() = std::move(factory);
}

RenderObserverFactory GetRenderObserverFactory() {
  std::lock_guard<std::mutex> lock(FactoryMutex());
  return Factory();
}

}  // namespace cefengine
