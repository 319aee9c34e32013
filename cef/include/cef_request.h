// An HTTP request and its upload body.

#ifndef CEF_INCLUDE_CEF_REQUEST_H_
#define CEF_INCLUDE_CEF_REQUEST_H_
#pragma once

#include <cstdint>
#include <map>
#include <vector>

#include "include/cef_base.h"

class CefPostData;
class CefPostDataElement;

// May be used on any thread. Objects the engine hands to a handler for
// reading only refuse changes (IsReadOnly()).
class CefRequest : public virtual CefBaseRefCounted {
 public:
  typedef std::multimap<CefString, CefString> HeaderMap;
  typedef cef_referrer_policy_t ReferrerPolicy;
  typedef cef_resource_type_t ResourceType;
  typedef cef_transition_type_t TransitionType;

  static CefRefPtr<CefRequest> Create();

  virtual bool IsReadOnly() = 0;

  virtual CefString GetURL() = 0;
  virtual void SetURL(const CefString& url) = 0;

  // "GET" unless post data is set, then "POST".
  virtual CefString GetMethod() = 0;
  virtual void SetMethod(const CefString& method) = 0;

  // The referrer goes through these rather than a "Referer" header.
  virtual void SetReferrer(const CefString& referrer_url,
                           ReferrerPolicy policy) = 0;
  virtual CefString GetReferrerURL() = 0;
  virtual ReferrerPolicy GetReferrerPolicy() = 0;

  virtual CefRefPtr<CefPostData> GetPostData() = 0;
  virtual void SetPostData(CefRefPtr<CefPostData> postData) = 0;

  virtual void GetHeaderMap(HeaderMap& headerMap) = 0;
  // Replaces all headers; "Referer" entries are ignored.
  virtual void SetHeaderMap(const HeaderMap& headerMap) = 0;

  // Case-insensitive; the first value when a header repeats.
  virtual CefString GetHeaderByName(const CefString& name) = 0;
  // With |overwrite| replaces existing values, otherwise leaves them.
  // Cannot set "Referer".
  virtual void SetHeaderByName(const CefString& name,
                               const CefString& value,
                               bool overwrite) = 0;

  // Sets everything at once.
  virtual void Set(const CefString& url,
                   const CefString& method,
                   CefRefPtr<CefPostData> postData,
                   const HeaderMap& headerMap) = 0;

  // cef_urlrequest_flags_t combination, for CefURLRequest.
  virtual int GetFlags() = 0;
  virtual void SetFlags(int flags) = 0;

  virtual CefString GetFirstPartyForCookies() = 0;
  virtual void SetFirstPartyForCookies(const CefString& url) = 0;

  // Browser process only.
  virtual ResourceType GetResourceType() = 0;
  virtual TransitionType GetTransitionType() = 0;

  // Globally unique, for following one request across handler calls; 0
  // when none was assigned.
  virtual uint64_t GetIdentifier() = 0;
};

// The body of a request: a list of elements.
class CefPostData : public virtual CefBaseRefCounted {
 public:
  typedef std::vector<CefRefPtr<CefPostDataElement>> ElementVector;

  static CefRefPtr<CefPostData> Create();

  virtual bool IsReadOnly() = 0;
  // True when the body has parts this object does not represent (e.g.
  // multi-part file uploads).
  virtual bool HasExcludedElements() = 0;

  virtual size_t GetElementCount() = 0;
  virtual void GetElements(ElementVector& elements) = 0;
  // True if |element| was present.
  virtual bool RemoveElement(CefRefPtr<CefPostDataElement> element) = 0;
  virtual bool AddElement(CefRefPtr<CefPostDataElement> element) = 0;
  virtual void RemoveElements() = 0;
};

// One part of a request body: bytes or the contents of a file.
class CefPostDataElement : public virtual CefBaseRefCounted {
 public:
  typedef cef_postdataelement_type_t Type;

  static CefRefPtr<CefPostDataElement> Create();

  virtual bool IsReadOnly() = 0;

  virtual void SetToEmpty() = 0;
  virtual void SetToFile(const CefString& fileName) = 0;
  // Copies |size| bytes from |bytes|.
  virtual void SetToBytes(size_t size, const void* bytes) = 0;

  virtual Type GetType() = 0;
  virtual CefString GetFile() = 0;
  virtual size_t GetBytesCount() = 0;
  // Copies up to |size| bytes into |bytes|; returns the number copied.
  virtual size_t GetBytes(size_t size, void* bytes) = 0;
};

#endif  // CEF_INCLUDE_CEF_REQUEST_H_
