#include "libcef/utf_conversion.h"

namespace cefengine {
namespace {

constexpr char32_t kReplacement = 0xFFFD;

bool IsValidCodePoint(char32_t cp) {
  return cp < 0xD800 || (cp >= 0xE000 && cp <= 0x10FFFF);
}

// Reads one code point from UTF-8 at |*pos|, advancing |*pos|. A malformed
// sequence yields U+FFFD and consumes the bytes read up to the fault (at
// least one).
char32_t NextUtf8(const unsigned char* s, size_t len, size_t* pos, bool* ok) {
  unsigned char lead = s[(*pos)++];
  if (lead < 0x80) {
    return lead;
  }
  int trail;
  char32_t cp;
  char32_t min;
  if (lead >= 0xC2 && lead <= 0xDF) {
    trail = 1;
    cp = lead & 0x1F;
    min = 0x80;
  } else if (lead >= 0xE0 && lead <= 0xEF) {
    trail = 2;
    cp = lead & 0x0F;
    min = 0x800;
  } else if (lead >= 0xF0 && lead <= 0xF4) {
    trail = 3;
    cp = lead & 0x07;
    min = 0x10000;
  } else {
    *ok = false;
    return kReplacement;
  }
  for (int i = 0; i < trail; ++i) {
    if (*pos >= len || (s[*pos] & 0xC0) != 0x80) {
      *ok = false;
      return kReplacement;
    }
    cp = (cp << 6) | (s[(*pos)++] & 0x3F);
  }
  if (cp < min || !IsValidCodePoint(cp)) {
    *ok = false;
    return kReplacement;
  }
  return cp;
}

char32_t NextUtf16(const char16_t* s, size_t len, size_t* pos, bool* ok) {
  char32_t unit = s[(*pos)++];
  if (unit < 0xD800 || unit > 0xDFFF) {
    return unit;
  }
  if (unit <= 0xDBFF && *pos < len && s[*pos] >= 0xDC00 && s[*pos] <= 0xDFFF) {
    char32_t low = s[(*pos)++];
    return 0x10000 + ((unit - 0xD800) << 10) + (low - 0xDC00);
  }
  *ok = false;
  return kReplacement;
}

char32_t NextWide(const wchar_t* s, size_t len, size_t* pos, bool* ok) {
  char32_t cp = static_cast<char32_t>(s[(*pos)++]);
  if (!IsValidCodePoint(cp)) {
    *ok = false;
    return kReplacement;
  }
  return cp;
}

void AppendUtf8(char32_t cp, std::string* out) {
  if (cp < 0x80) {
    out->push_back(static_cast<char>(cp));
  } else if (cp < 0x800) {
    out->push_back(static_cast<char>(0xC0 | (cp >> 6)));
    out->push_back(static_cast<char>(0x80 | (cp & 0x3F)));
  } else if (cp < 0x10000) {
    out->push_back(static_cast<char>(0xE0 | (cp >> 12)));
    out->push_back(static_cast<char>(0x80 | ((cp >> 6) & 0x3F)));
    out->push_back(static_cast<char>(0x80 | (cp & 0x3F)));
  } else {
    out->push_back(static_cast<char>(0xF0 | (cp >> 18)));
    out->push_back(static_cast<char>(0x80 | ((cp >> 12) & 0x3F)));
    out->push_back(static_cast<char>(0x80 | ((cp >> 6) & 0x3F)));
    out->push_back(static_cast<char>(0x80 | (cp & 0x3F)));
  }
}

void AppendUtf16(char32_t cp, std::u16string* out) {
  if (cp < 0x10000) {
    out->push_back(static_cast<char16_t>(cp));
  } else {
    cp -= 0x10000;
    out->push_back(static_cast<char16_t>(0xD800 + (cp >> 10)));
    out->push_back(static_cast<char16_t>(0xDC00 + (cp & 0x3FF)));
  }
}

void AppendWide(char32_t cp, std::wstring* out) {
  out->push_back(static_cast<wchar_t>(cp));
}

template <typename In, typename Out, typename Next, typename Append>
bool Convert(const In* src, size_t len, Out* out, Next next, Append append) {
  out->clear();
  out->reserve(len);
  bool ok = true;
  size_t pos = 0;
  while (pos < len) {
    append(next(src, len, &pos, &ok), out);
  }
  return ok;
}

const unsigned char* Bytes(const char* s) {
  return reinterpret_cast<const unsigned char*>(s);
}

}  // namespace

bool Utf8ToUtf16(const char* src, size_t len, std::u16string* out) {
  return Convert(Bytes(src), len, out, NextUtf8, AppendUtf16);
}

bool Utf16ToUtf8(const char16_t* src, size_t len, std::string* out) {
  return Convert(src, len, out, NextUtf16, AppendUtf8);
}

bool WideToUtf8(const wchar_t* src, size_t len, std::string* out) {
  return Convert(src, len, out, NextWide, AppendUtf8);
}

bool Utf8ToWide(const char* src, size_t len, std::wstring* out) {
  return Convert(Bytes(src), len, out, NextUtf8, AppendWide);
}

bool WideToUtf16(const wchar_t* src, size_t len, std::u16string* out) {
  return Convert(src, len, out, NextWide, AppendUtf16);
}

bool Utf16ToWide(const char16_t* src, size_t len, std::wstring* out) {
  return Convert(src, len, out, NextUtf16, AppendWide);
}

}  // namespace cefengine
