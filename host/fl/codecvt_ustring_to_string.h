#pragma once

#include <string>

class QTextCodec;

namespace fl::i18n
{
// Converts UTF-16 text to a named encoding ("UTF-8", "ISO-8859-1", ...). Any thread: conversions
// keep no state between calls.
class codecvt_ustring_to_string
{
public:
    // Throws std::invalid_argument for an encoding this system does not know. With `substitute`,
    // characters the encoding cannot hold become its replacement character; without it,
    // do_convert throws std::range_error on them.
    codecvt_ustring_to_string(const std::string& encoding, bool substitute);

    std::string do_convert(const char16_t* text, unsigned long length) const;

private:
    QTextCodec* m_codec; // owned by Qt
    bool m_substitute;
};
} // namespace fl::i18n
