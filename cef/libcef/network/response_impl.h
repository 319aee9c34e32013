// A response as a resource handler describes it.

#ifndef CEF_LIBCEF_NETWORK_RESPONSE_IMPL_H_
#define CEF_LIBCEF_NETWORK_RESPONSE_IMPL_H_

#include <mutex>

#include "include/cef_response.h"

namespace cefengine {

// Any thread. The engine hands out none read-only.
class CefResponseImpl : public CefResponse {
 public:
  CefResponseImpl() = default;

  bool IsReadOnly() override;
  cef_errorcode_t GetError() override;
  void SetError(cef_errorcode_t error) override;
  int GetStatus() override;
  void SetStatus(int status) override;
  CefString GetStatusText() override;
  void SetStatusText(const CefString& statusText) override;
  CefString GetMimeType() override;
  void SetMimeType(const CefString& mimeType) override;
  CefString GetCharset() override;
  void SetCharset(const CefString& charset) override;
  CefString GetHeaderByName(const CefString& name) override;
  void SetHeaderByName(const CefString& name,
                       const CefString& value,
                       bool overwrite) override;
  void GetHeaderMap(HeaderMap& headerMap) override;
  void SetHeaderMap(const HeaderMap& headerMap) override;
  CefString GetURL() override;
  void SetURL(const CefString& url) override;

 private:
  std::mutex mutex_;
  cef_errorcode_t error_ = ERR_NONE;
  int status_ = 0;
  CefString status_text_;
  CefString mime_type_;
  CefString charset_;
  HeaderMap headers_;
  CefString url_;
  IMPLEMENT_REFCOUNTING(CefResponseImpl);
};

}  // namespace cefengine

#endif  // CEF_LIBCEF_NETWORK_RESPONSE_IMPL_H_
