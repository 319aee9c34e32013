#include "host/fl/codecvt_ustring_to_string.h"

#include <QTextCodec>

#include <limits>
#include <stdexcept>

namespace fl::i18n
{
codecvt_ustring_to_string::codecvt_ustring_to_string(const std::string& encoding, bool substitute)
    : m_codec(QTextCodec::codecForName(QByteArray::fromStdString(encoding)))
    , m_substitute(substitute)
{
    if (!m_codec)
        throw std::invalid_argument("unknown text encoding: " + encoding);
}

std::string codecvt_ustring_to_string::do_convert(const char16_t* text, unsigned long length) const
{
    if (length == 0)
        return std::string();
    if (length > static_cast<unsigned long>(std::numeric_limits<int>::max()))
        throw std::length_error("text too long to convert");
    QTextCodec::ConverterState state(QTextCodec::IgnoreHeader);
    const QByteArray bytes =
        m_codec->fromUnicode(reinterpret_cast<const QChar*>(text), static_cast<int>(length), &state);
    if (state.invalidChars > 0 && !m_substitute)
        throw std::range_error("text cannot be represented in " + m_codec->name().toStdString());
    return bytes.toStdString();
}
} // namespace fl::i18n
