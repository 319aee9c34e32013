// Conversions between UTF-8, UTF-16 and UTF-32 (wchar_t on Linux), done by
// Qt. Invalid input (bad bytes, lone surrogates, values above U+10FFFF)
// becomes U+FFFD and makes the conversion return false; the output is complete
// either way. An input longer than Qt's strings hold gives false and nothing.

#ifndef CEF_LIBCEF_UTF_CONVERSION_H_
#define CEF_LIBCEF_UTF_CONVERSION_H_

#include <cstddef>
#include <string>

namespace cefengine {

bool Utf8ToUtf16(const char* src, size_t len, std::u16string* out);
bool Utf16ToUtf8(const char16_t* src, size_t len, std::string* out);
bool WideToUtf8(const wchar_t* src, size_t len, std::string* out);
bool Utf8ToWide(const char* src, size_t len, std::wstring* out);
bool WideToUtf16(const wchar_t* src, size_t len, std::u16string* out);
bool Utf16ToWide(const char16_t* src, size_t len, std::wstring* out);

inline std::string Utf16ToUtf8(const std::u16string& s) {
  std::string out;
  Utf16ToUtf8(s.data(), s.size(), &out);
  return out;
}

inline std::u16string Utf8ToUtf16(const std::string& s) {
  std::u16string out;
  Utf8ToUtf16(s.data(), s.size(), &out);
  return out;
}

}  // namespace cefengine

#endif  // CEF_LIBCEF_UTF_CONVERSION_H_
