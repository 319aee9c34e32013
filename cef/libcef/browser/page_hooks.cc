#include "libcef/browser/page_hooks.h"

#include "libcef/browser/browser_impl.h"
#include "libcef/browser/navigation_policy.h"
#include "libcef/browser/render_observer.h"
#include "libcef/browser/render_side.h"

namespace cefengine {

PageHooks::PageHooks(BrowserImpl* browser) : browser_(browser) {}

PageHooks::~PageHooks() = default;

void PageHooks::Attach() {
  if (NavigationPolicyFactory factory = GetNavigationPolicyFactory()) {
    navigation_policy_ = factory(browser_);
  }
  if (navigation_policy_) {
    navigation_policy_->OnAttached(browser_);
  }
  if (RenderSideFactory factory = GetRenderSideFactory()) {
    render_side_ = factory(browser_);
  }
  if (render_side_) {
    render_side_->OnAttached(browser_);
  }
  attached_before_ = true;
  std::vector<std::function<void(RenderSide*)>> waiting;
  waiting.swap(waiting_);
  for (const auto& delivery : waiting) {
    if (render_side_) {
      delivery(render_side_.get());
    }
  }
  if (RenderObserverFactory factory = GetRenderObserverFactory()) {
    render_observer_ = factory(browser_);
  }
  if (render_observer_) {
    render_observer_->OnAttached(browser_);
  }
}

void PageHooks::Detach() {
  waiting_.clear();
  if (navigation_policy_) {
    navigation_policy_->OnDetached(browser_);
    navigation_policy_.reset();
  }
  if (render_side_) {
    render_side_->OnDetached(browser_);
    render_side_.reset();
  }
  if (render_observer_) {
    render_observer_->OnDetached(browser_);
    render_observer_.reset();
  }
}

void PageHooks::Release() {
  waiting_.clear();
  navigation_policy_.reset();
  render_side_.reset();
  render_observer_.reset();
}

void PageHooks::ToRenderSide(std::function<void(RenderSide*)> delivery) {
  if (render_side_) {
    delivery(render_side_.get());
  } else if (!attached_before_) {
    waiting_.push_back(std::move(delivery));
  }
}

bool PageHooks::TakeEvent(const QString& method, const QJsonObject& params) {
  return (navigation_policy_ &&
          navigation_policy_->OnPageEvent(browser_, method, params)) ||
         (render_side_ && render_side_->OnPageEvent(browser_, method, params));
}

}  // namespace cefengine
