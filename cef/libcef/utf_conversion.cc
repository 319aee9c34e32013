#include "libcef/utf_conversion.h"

#include <algorithm>
#include <climits>

#include <QString>
#include <QStringView>
#include <QTextCodec>
#include <QVector>

namespace cefengine {
namespace {

// Qt holds at most INT_MAX units in a QString; a longer input is refused.
bool Fits(size_t len) {
  return len <= size_t(INT_MAX);
}

// Malformed sequences, a truncated one at the end included, become U+FFFD;
// a byte order mark stays text.
QString FromUtf8(const char* src, size_t len, bool* ok) {
  static QTextCodec* const utf8 = QTextCodec::codecForMib(106);
  QTextCodec::ConverterState state(QTextCodec::IgnoreHeader);
  QString text = utf8->toUnicode(src, int(len), &state);
  *ok = state.invalidChars == 0 && state.remainingChars == 0;
  if (state.remainingChars > 0)
    text.append(QChar::ReplacementCharacter);
  return text;
}

// Lone surrogates become U+FFFD.
QString FromUtf16(const char16_t* src, size_t len, bool* ok) {
  QString text(reinterpret_cast<const QChar*>(src), int(len));
  *ok = QStringView(text).isValidUtf16();
  if (!*ok) {
    const QVector<uint> points = text.toUcs4();
    text = QString::fromUcs4(points.constData(), points.size());
  }
  return text;
}

// Qt takes any number as a code point: surrogates and values above U+10FFFF
// are turned into U+FFFD here.
QString FromWide(const wchar_t* src, size_t len, bool* ok) {
  QVector<uint> points(static_cast<int>(len));
  *ok = true;
  std::transform(src, src + len, points.begin(), [ok](wchar_t unit) {
    const uint point = uint(unit);
    if (QChar::isSurrogate(point) || point > QChar::LastValidCodePoint) {
      *ok = false;
      return uint(QChar::ReplacementCharacter);
    }
    return point;
  });
  return QString::fromUcs4(points.constData(), points.size());
}

void ToUtf8(const QString& text, std::string* out) {
  const QByteArray bytes = text.toUtf8();
  out->assign(bytes.constData(), size_t(bytes.size()));
}

void ToUtf16(const QString& text, std::u16string* out) {
  out->assign(reinterpret_cast<const char16_t*>(text.utf16()),
              size_t(text.size()));
}

void ToWide(const QString& text, std::wstring* out) {
  const QVector<uint> points = text.toUcs4();
  out->assign(points.begin(), points.end());
}

template <typename In, typename Out, typename From, typename To>
bool Convert(const In* src, size_t len, Out* out, From from, To to) {
  out->clear();
  if (!Fits(len))
    return false;
  bool ok = true;
  to(from(src, len, &ok), out);
  return ok;
}

}  // namespace

bool Utf8ToUtf16(const char* src, size_t len, std::u16string* out) {
  return Convert(src, len, out, FromUtf8, ToUtf16);
}

bool Utf16ToUtf8(const char16_t* src, size_t len, std::string* out) {
  return Convert(src, len, out, FromUtf16, ToUtf8);
}

bool WideToUtf8(const wchar_t* src, size_t len, std::string* out) {
  return Convert(src, len, out, FromWide, ToUtf8);
}

bool Utf8ToWide(const char* src, size_t len, std::wstring* out) {
  return Convert(src, len, out, FromUtf8, ToWide);
}

bool WideToUtf16(const wchar_t* src, size_t len, std::u16string* out) {
  return Convert(src, len, out, FromWide, ToUtf16);
}

bool Utf16ToWide(const char16_t* src, size_t len, std::wstring* out) {
  return Convert(src, len, out, FromUtf16, ToWide);
}

}  // namespace cefengine
