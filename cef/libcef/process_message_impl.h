// CefProcessMessage: a name and an argument list owned by the message.

#ifndef CEF_LIBCEF_PROCESS_MESSAGE_IMPL_H_
#define CEF_LIBCEF_PROCESS_MESSAGE_IMPL_H_

#include <memory>
#include <string>

#include "include/cef_process_message.h"
#include "libcef/value_store.h"

namespace cefengine {

class ProcessMessageImpl : public CefProcessMessage {
 public:
  ProcessMessageImpl(std::u16string name, std::shared_ptr<ListNode> arguments);
  ~ProcessMessageImpl() override;

  // The engine delivers a read-only copy of each message it sends, so that
  // the receiver cannot change the sender's arguments (nor the reverse).
  // Returns nullptr for a null message.
  static CefRefPtr<CefProcessMessage> CopyForDelivery(
      CefRefPtr<CefProcessMessage> message);

  bool IsValid() override;
  bool IsReadOnly() override;
  CefRefPtr<CefProcessMessage> Copy() override;
  CefString GetName() override;
  CefRefPtr<CefListValue> GetArgumentList() override;
  CefRefPtr<CefSharedMemoryRegion> GetSharedMemoryRegion() override;

 private:
  const std::u16string name_;
  // Always owned by this message; invalidated when it goes away.
  const std::shared_ptr<ListNode> arguments_;

  IMPLEMENT_REFCOUNTING(ProcessMessageImpl);
};

}  // namespace cefengine

#endif  // CEF_LIBCEF_PROCESS_MESSAGE_IMPL_H_
