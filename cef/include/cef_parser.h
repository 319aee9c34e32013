// URL, MIME, base64 and JSON helpers. Any thread.

#ifndef CEF_INCLUDE_CEF_PARSER_H_
#define CEF_INCLUDE_CEF_PARSER_H_
#pragma once

#include <vector>

#include "include/cef_base.h"
#include "include/cef_values.h"

// Resolves |relative_url| against |base_url|. False if the result is not a
// valid URL.
bool CefResolveURL(const CefString& base_url,
                   const CefString& relative_url,
                   CefString& resolved_url);

// Splits |url| into |parts|. False if it is not a valid URL.
bool CefParseURL(const CefString& url, CefURLParts& parts);

// Joins |parts| (spec or at least scheme and host/path). False if that
// gives no valid URL.
bool CefCreateURL(const CefURLParts& parts, CefString& url);

// |origin_url| shortened for showing to users in security contexts
// (scheme, host and port only where they matter).
CefString CefFormatUrlForSecurityDisplay(const CefString& origin_url);

// MIME type of a file extension (without the dot); empty if unknown.
CefString CefGetMimeType(const CefString& extension);

// Extensions (without the dot) that map to |mime_type|; appended.
void CefGetExtensionsForMimeType(const CefString& mime_type,
                                 std::vector<CefString>& extensions);

CefString CefBase64Encode(const void* data, size_t data_size);

// Null if |data| is not valid base64.
CefRefPtr<CefBinaryValue> CefBase64Decode(const CefString& data);

// Percent-encodes |text| for use in a URL; |use_plus| writes spaces as '+'.
CefString CefURIEncode(const CefString& text, bool use_plus);

// Undoes percent-encoding as far as |unescape_rule| allows.
// With |convert_to_utf8| the decoded bytes are read as UTF-8 when they
// are valid UTF-8.
CefString CefURIDecode(const CefString& text,
                       bool convert_to_utf8,
                       cef_uri_unescape_rule_t unescape_rule);

// Parses JSON; null on malformed input.
CefRefPtr<CefValue> CefParseJSON(const CefString& json_string,
                                 cef_json_parser_options_t options);

// Same for |json_size| bytes of UTF-8 at |json|.
CefRefPtr<CefValue> CefParseJSON(const void* json,
                                 size_t json_size,
                                 cef_json_parser_options_t options);

// Same, reporting the reason of a failure in |error_msg_out|.
CefRefPtr<CefValue> CefParseJSONAndReturnError(
    const CefString& json_string,
    cef_json_parser_options_t options,
    CefString& error_msg_out);

// Serializes |node|; empty on failure.
CefString CefWriteJSON(CefRefPtr<CefValue> node,
                       cef_json_writer_options_t options);

#endif  // CEF_INCLUDE_CEF_PARSER_H_
