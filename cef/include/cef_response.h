// An HTTP response: status, headers and MIME type; the body travels apart.

#ifndef CEF_INCLUDE_CEF_RESPONSE_H_
#define CEF_INCLUDE_CEF_RESPONSE_H_
#pragma once

#include <map>

#include "include/cef_base.h"

// May be used on any thread. Objects the engine hands to a handler for
// reading only refuse changes (IsReadOnly()).
class CefResponse : public virtual CefBaseRefCounted {
 public:
  typedef std::multimap<CefString, CefString> HeaderMap;

  static CefRefPtr<CefResponse> Create();

  virtual bool IsReadOnly() = 0;

  // A network error instead of a response; ERR_NONE otherwise.
  virtual cef_errorcode_t GetError() = 0;
  virtual void SetError(cef_errorcode_t error) = 0;

  virtual int GetStatus() = 0;
  virtual void SetStatus(int status) = 0;
  virtual CefString GetStatusText() = 0;
  virtual void SetStatusText(const CefString& statusText) = 0;

  virtual CefString GetMimeType() = 0;
  virtual void SetMimeType(const CefString& mimeType) = 0;
  virtual CefString GetCharset() = 0;
  virtual void SetCharset(const CefString& charset) = 0;

  // Case-insensitive; the first value when a header repeats.
  virtual CefString GetHeaderByName(const CefString& name) = 0;
  // With |overwrite| replaces an existing header, otherwise leaves it.
  virtual void SetHeaderByName(const CefString& name,
                               const CefString& value,
                               bool overwrite) = 0;
  virtual void GetHeaderMap(HeaderMap& headerMap) = 0;
  virtual void SetHeaderMap(const HeaderMap& headerMap) = 0;

  // The URL that produced the response.
  virtual CefString GetURL() = 0;
  virtual void SetURL(const CefString& url) = 0;
};

#endif  // CEF_INCLUDE_CEF_RESPONSE_H_
