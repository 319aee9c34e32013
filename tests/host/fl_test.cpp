#include "host/fl/basic_ofstream.h"
#include "host/fl/codecvt_ustring_to_string.h"
#include "host/fl/i18n.h"

#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <stdexcept>

TEST(I18n, EnvironmentRoundTripKeepsNonAscii)
{
    const std::u16string value = u"Z\u00fcrich \u2713 \U0001F600";
    ASSERT_TRUE(fl::i18n::setenv(u"BROVIA_TEST_I18N", value, 1, false));
    EXPECT_EQ(fl::i18n::getenv("BROVIA_TEST_I18N"), value);

    EXPECT_TRUE(fl::i18n::setenv(u"BROVIA_TEST_I18N", u"other", 0, false));
    EXPECT_EQ(fl::i18n::getenv("BROVIA_TEST_I18N"), value);

    EXPECT_TRUE(fl::i18n::unsetenv("BROVIA_TEST_I18N"));
    EXPECT_EQ(fl::i18n::getenv("BROVIA_TEST_I18N"), u"");
    EXPECT_FALSE(fl::i18n::setenv(u"BAD=NAME", u"x", 1, false));
}

TEST(I18n, ConvertsToUtf8AndNamedEncodings)
{
    EXPECT_EQ(fl::i18n::to_string(u"Z\u00fcrich"), "Z\xc3\xbcrich");

    const std::u16string text = u"\u00e9\u20ac";
    const fl::i18n::codecvt_ustring_to_string utf8("UTF-8", true);
    EXPECT_EQ(utf8.do_convert(text.data(), text.size()), "\xc3\xa9\xe2\x82\xac");
    EXPECT_EQ(utf8.do_convert(text.data(), 1), "\xc3\xa9");

    // Latin-1 holds the e acute but not the euro sign.
    const fl::i18n::codecvt_ustring_to_string strict("ISO-8859-1", false);
    EXPECT_THROW(strict.do_convert(text.data(), text.size()), std::range_error);
    EXPECT_EQ(strict.do_convert(text.data(), 1), "\xe9");
    const fl::i18n::codecvt_ustring_to_string lenient("ISO-8859-1", true);
    EXPECT_EQ(lenient.do_convert(text.data(), text.size()), "\xe9?");

    EXPECT_THROW(fl::i18n::codecvt_ustring_to_string("no-such-encoding", true), std::invalid_argument);
}

TEST(Filesystem, StreamOpensUtf16Path)
{
    QTemporaryDir dir;
    ASSERT_TRUE(dir.isValid());
    const QString path = dir.filePath(QStringLiteral("s\u00e9ite \u6587.html"));
    {
        fl::filesystem::basic_ofstream<char> out(path.toStdU16String());
        ASSERT_TRUE(out.is_open());
        out << "<p>hi</p>" << std::endl;
    }
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    EXPECT_EQ(file.readAll(), QByteArray("<p>hi</p>\n"));

    fl::filesystem::basic_ofstream<char> missing(dir.filePath(QStringLiteral("no/such/dir")).toStdU16String());
    EXPECT_FALSE(missing.is_open());
}
