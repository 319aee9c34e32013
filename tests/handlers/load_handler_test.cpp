#include "fakes.h"

#include "handlers/load_handler.h"
#include "host/log/record_capture.h"

#include <QSignalSpy>

#include <gtest/gtest.h>

namespace
{
class LoadHandlerTest : public ::testing::Test
{
protected:
    // Messages of the library's "brovia::browser" channel at error severity.
    std::vector<std::string> errors() const
    {
        std::vector<std::string> messages;
        for (const foundation::log::captured_record& record : capture.records())
        {
            if (record.channel == "brovia::browser" && record.severity == 0x200)
                messages.push_back(record.message);
        }
        return messages;
    }

    foundation::log::record_capture capture;
    CefRefPtr<LoadHandler> handler = new LoadHandler();
    CefRefPtr<TestBrowser> browser = new TestBrowser(1, false);
    QSignalSpy started{handler.get(), &LoadHandler::loadStarted};
    QSignalSpy finished{handler.get(), &LoadHandler::loadFinished};
    QSignalSpy stateChanged{handler.get(), &LoadHandler::loadStateChanged};
};

TEST_F(LoadHandlerTest, MainFrameAloneReportsStartAndStatusBelow400AsOk)
{
    CefRefPtr<FakeFrame> main = new FakeFrame("https://a.test/", true);
    handler->OnLoadStart(browser.get(), main.get(), TT_LINK);
    handler->OnLoadEnd(browser.get(), main.get(), 399);
    handler->OnLoadEnd(browser.get(), main.get(), 404);
    handler->OnLoadEnd(browser.get(), main.get(), 0);
    CefRefPtr<FakeFrame> sub = new FakeFrame("https://ads.test/", false);
    handler->OnLoadStart(browser.get(), sub.get(), TT_LINK);
    handler->OnLoadEnd(browser.get(), sub.get(), 200);

    ASSERT_EQ(started.size(), 1);
    EXPECT_EQ(started[0][0].toString(), "https://a.test/");
    ASSERT_EQ(finished.size(), 3);
    EXPECT_EQ(finished[0], (QVariantList{"https://a.test/", true}));
    EXPECT_EQ(finished[1], (QVariantList{"https://a.test/", false}));
    EXPECT_EQ(finished[2], (QVariantList{"https://a.test/", true}));
}

TEST_F(LoadHandlerTest, CustomSchemeEndIsSilent)
{
    CefRefPtr<FakeFrame> frame = new FakeFrame("torvex://open/doc", true);
    handler->OnLoadError(browser.get(), frame.get(), ERR_UNKNOWN_URL_SCHEME, "net::ERR_UNKNOWN_URL_SCHEME",
                         "torvex://open/doc");
    EXPECT_EQ(finished.size(), 0);
    EXPECT_TRUE(errors().empty());
}

TEST_F(LoadHandlerTest, UnknownSchemeElsewhereIsLoggedAndFails)
{
    // The word further on in the URL does not count.
    CefRefPtr<FakeFrame> frame = new FakeFrame("https://torvex.test/page", true);
    handler->OnLoadError(browser.get(), frame.get(), ERR_UNKNOWN_URL_SCHEME, "net::ERR_UNKNOWN_URL_SCHEME",
                         "foo://bar");
    EXPECT_EQ(errors(), std::vector<std::string>{
                            "Failed to load URL: foo://bar; Error: net::ERR_UNKNOWN_URL_SCHEME (-302)"});
    ASSERT_EQ(finished.size(), 1);
    EXPECT_EQ(finished[0], (QVariantList{"https://torvex.test/page", false}));
}

TEST_F(LoadHandlerTest, AbortIsNotLoggedButFails)
{
    CefRefPtr<FakeFrame> frame = new FakeFrame("https://a.test/", true);
    handler->OnLoadError(browser.get(), frame.get(), ERR_ABORTED, "net::ERR_ABORTED", "https://a.test/");
    EXPECT_TRUE(errors().empty());
    ASSERT_EQ(finished.size(), 1);
    EXPECT_EQ(finished[0], (QVariantList{"https://a.test/", false}));
}

TEST_F(LoadHandlerTest, FailedSubFrameReportsItsOwnUrlAndEmptyPartsStayEmpty)
{
    CefRefPtr<FakeFrame> sub = new FakeFrame("https://sub.test/", false);
    handler->OnLoadError(browser.get(), sub.get(), ERR_NAME_NOT_RESOLVED, CefString(), "https://gone.test/");
    EXPECT_EQ(errors(), std::vector<std::string>{"Failed to load URL: https://gone.test/; Error:  (-105)"});
    ASSERT_EQ(finished.size(), 1);
    EXPECT_EQ(finished[0], (QVariantList{"https://sub.test/", false}));
}
} // namespace
