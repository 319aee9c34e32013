#include "libcef/process_message_impl.h"

#include "libcef/list_value_impl.h"

namespace cefengine {

ProcessMessageImpl::ProcessMessageImpl(std::u16string name,
                                       std::shared_ptr<ListNode> arguments)
    : name_(std::move(name)), arguments_(std::move(arguments)) {
  arguments_->owned = true;
}

ProcessMessageImpl::~ProcessMessageImpl() {
  InvalidateTree(arguments_.get());
}

CefRefPtr<CefProcessMessage> ProcessMessageImpl::CopyForDelivery(
    CefRefPtr<CefProcessMessage> message) {
  if (!message) {
    return nullptr;
  }
  auto* impl = static_cast<ProcessMessageImpl*>(message.get());
  auto arguments = CopyList(*impl->arguments_);
  MarkTreeReadOnly(arguments.get());
  return new ProcessMessageImpl(impl->name_, std::move(arguments));
}

bool ProcessMessageImpl::IsValid() {
  return true;
}

bool ProcessMessageImpl::IsReadOnly() {
  return arguments_->read_only;
}

CefRefPtr<CefProcessMessage> ProcessMessageImpl::Copy() {
  return new ProcessMessageImpl(name_, CopyList(*arguments_));
}

CefString ProcessMessageImpl::GetName() {
  return CefString(name_);
}

CefRefPtr<CefListValue> ProcessMessageImpl::GetArgumentList() {
  return new ListValueImpl(arguments_);
}

CefRefPtr<CefSharedMemoryRegion> ProcessMessageImpl::GetSharedMemoryRegion() {
  return nullptr;
}

}  // namespace cefengine

CefRefPtr<CefProcessMessage> CefProcessMessage::Create(const CefString& name) {
  return new cefengine::ProcessMessageImpl(
      name.ToString16(), std::make_shared<cefengine::ListNode>());
}
