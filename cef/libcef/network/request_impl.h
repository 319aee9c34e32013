// A request as handlers see it: address, method, headers, referrer, body,
// and what the engine knows about why it is made.

#ifndef CEF_LIBCEF_NETWORK_REQUEST_IMPL_H_
#define CEF_LIBCEF_NETWORK_REQUEST_IMPL_H_

#include <cstdint>
#include <mutex>

#include "include/cef_request.h"

namespace cefengine {

// Any thread. Changes to a read-only request are ignored.
class CefRequestImpl : public CefRequest {
 public:
  CefRequestImpl() = default;

  // A fresh identifier, unique in the process, for requests the engine sees.
  static uint64_t NextIdentifier();

  // Makes the request and its body read-only, or writable again.
  void SetReadOnly(bool read_only);
  // What the engine knows of a request it intercepted; not for clients.
  void SetEngineDetails(ResourceType resource_type,
                        TransitionType transition_type,
                        uint64_t identifier);

  bool IsReadOnly() override;
  CefString GetURL() override;
  void SetURL(const CefString& url) override;
  CefString GetMethod() override;
  void SetMethod(const CefString& method) override;
  void SetReferrer(const CefString& referrer_url,
                   ReferrerPolicy policy) override;
  CefString GetReferrerURL() override;
  ReferrerPolicy GetReferrerPolicy() override;
  CefRefPtr<CefPostData> GetPostData() override;
  void SetPostData(CefRefPtr<CefPostData> postData) override;
  void GetHeaderMap(HeaderMap& headerMap) override;
  void SetHeaderMap(const HeaderMap& headerMap) override;
  CefString GetHeaderByName(const CefString& name) override;
  void SetHeaderByName(const CefString& name,
                       const CefString& value,
                       bool overwrite) override;
  void Set(const CefString& url,
           const CefString& method,
           CefRefPtr<CefPostData> postData,
           const HeaderMap& headerMap) override;
  int GetFlags() override;
  void SetFlags(int flags) override;
  CefString GetFirstPartyForCookies() override;
  void SetFirstPartyForCookies(const CefString& url) override;
  ResourceType GetResourceType() override;
  TransitionType GetTransitionType() override;
  uint64_t GetIdentifier() override;

 private:
  // Under |mutex_|.
  void SetHeaderMapLocked(const HeaderMap& headerMap);

  std::mutex mutex_;
  bool read_only_ = false;
  CefString url_;
  CefString method_;  // empty: GET, or POST with a body
  CefString referrer_url_;
  ReferrerPolicy referrer_policy_ = REFERRER_POLICY_DEFAULT;
  CefRefPtr<CefPostData> post_data_;
  HeaderMap headers_;
  int flags_ = UR_FLAG_NONE;
  CefString first_party_for_cookies_;
  ResourceType resource_type_ = RT_SUB_RESOURCE;
  TransitionType transition_type_ = TT_EXPLICIT;
  uint64_t identifier_ = 0;
  IMPLEMENT_REFCOUNTING(CefRequestImpl);
};

}  // namespace cefengine

#endif  // CEF_LIBCEF_NETWORK_REQUEST_IMPL_H_
