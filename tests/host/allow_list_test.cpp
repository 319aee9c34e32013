#include "host/cef_common/allow_list.h"
#include "host/log/record_capture.h"
#include "host/log/severity.h"

#include <gtest/gtest.h>

using cef_common::addHostsToAllowList;
using cef_common::isURLAllowed;

TEST(AllowList, StartsWithLocalPagesAndLoopback)
{
    for (const char* url : {"about:blank", "data:text/html,<p>x</p>", "file:///tmp/a%20b.html", "http://localhost/",
                            "https://127.0.0.1:8443/a?b", "http://127.12.0.9", "http://[::1]:8080/"})
        EXPECT_TRUE(isURLAllowed(url, false)) << url;
    for (const char* url : {"https://example.com/", "http://localhost.evil.test/", "http://127.0.0.1.evil.test/",
                            "http://localhost@evil.test/", "about:settings", "ftp://localhost/"})
        EXPECT_FALSE(isURLAllowed(url, false)) << url;
}

TEST(AllowList, RefusesMalformedUrls)
{
    // Each would pass the default list if it parsed.
    EXPECT_FALSE(isURLAllowed("", false));
    for (const char* url : {"http://127.0.0.1:99999/", "http://localhost:65536/x", "file://ho st/x", "file://[::1/x"})
        EXPECT_FALSE(isURLAllowed(url, false)) << url;
}

TEST(AllowList, AddedPatternMatchesFromTheStartOfTheUrl)
{
    addHostsToAllowList({R"(https://([\w-]*.)?added.test(:\d{1,5})?/)"});
    EXPECT_TRUE(isURLAllowed("https://added.test/", false));
    EXPECT_TRUE(isURLAllowed("https://WWW.Added.test:8443/path", false));
    EXPECT_FALSE(isURLAllowed("http://added.test/", false));
    EXPECT_FALSE(isURLAllowed("https://other.test/?https://added.test/", false));
}

TEST(AllowList, SkipsInvalidAndEmptyPatterns)
{
    foundation::log::record_capture capture;
    addHostsToAllowList({"https://(broken.test", "", R"(https://valid\.test/)"});
    EXPECT_TRUE(isURLAllowed("https://valid.test/", false));
    EXPECT_FALSE(isURLAllowed("https://broken.test/", false));
    EXPECT_FALSE(isURLAllowed("https://anything.test/", false));

    const auto records = capture.records();
    ASSERT_EQ(records.size(), 1u);
    EXPECT_EQ(records[0].channel, "brovia::host");
    EXPECT_EQ(records[0].severity, foundation::log::severity::warning);
    EXPECT_NE(records[0].message.find("https://(broken.test"), std::string::npos);
}

TEST(AllowList, LogsRefusalOnlyWhenAsked)
{
    foundation::log::record_capture capture;
    EXPECT_FALSE(isURLAllowed("https://quiet.test/", false));
    EXPECT_TRUE(capture.records().empty());
    EXPECT_FALSE(isURLAllowed("https://loud.test/", true));
    ASSERT_EQ(capture.records().size(), 1u);
    EXPECT_NE(capture.records()[0].message.find("https://loud.test/"), std::string::npos);
}
