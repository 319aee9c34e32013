#include "fakes.h"

#include "engine/cef_manager.h"
#include "handlers/request_handler.h"

#include <QByteArray>
#include <QSignalSpy>
#include <QUrl>

#include <gtest/gtest.h>

#include <functional>

namespace
{
class RequestHandlerTest : public ::testing::Test
{
protected:
    bool browse(const std::string& url)
    {
        CefRefPtr<FakeFrame> frame = new FakeFrame("https://a.test/", false);
        return handler->OnBeforeBrowse(browser.get(), frame.get(), new FakeRequest(url), true, false);
    }

    CefRefPtr<RequestHandler> handler = new RequestHandler();
    CefRefPtr<TestBrowser> browser = new TestBrowser(1, false);
    QSignalSpy clicked{handler.get(), &RequestHandler::linkClicked};
    QSignalSpy terminated{handler.get(), &RequestHandler::renderProcessTerminated};
};

TEST_F(RequestHandlerTest, CustomSchemeIsReportedAndCancelled)
{
    // The allow list would refuse the scheme; it must not be asked.
    EXPECT_TRUE(browse("torvex://open?doc=1"));
    ASSERT_EQ(clicked.size(), 1);
    EXPECT_EQ(clicked[0][0].toUrl(), QUrl("torvex://open?doc=1"));
}

TEST_F(RequestHandlerTest, RefusedNavigationIsCancelledSilently)
{
    // The word further on in the URL does not make it the custom scheme.
    EXPECT_TRUE(browse("https://torvex.test/"));
    EXPECT_TRUE(browse("https://example.test/"));
    EXPECT_EQ(clicked.size(), 0);
}

TEST_F(RequestHandlerTest, AllowedNavigationIsReportedAndProceeds)
{
    EXPECT_FALSE(browse("http://localhost:8080/page"));
    EXPECT_FALSE(browse("http://localhost:8080/redirected"));
    ASSERT_EQ(clicked.size(), 2);
    EXPECT_EQ(clicked[1][0].toUrl(), QUrl("http://localhost:8080/redirected"));
}

TEST_F(RequestHandlerTest, NewTabNavigationIsAlwaysCancelled)
{
    CefRefPtr<FakeFrame> frame = new FakeFrame("http://localhost/", true);
    EXPECT_TRUE(handler->OnOpenURLFromTab(browser.get(), frame.get(), "http://localhost/x",
                                          CEF_WOD_NEW_FOREGROUND_TAB, true));
}

TEST_F(RequestHandlerTest, TerminationMapsOneToOneUpToOutOfMemory)
{
    for (cef_termination_status_t status : {TS_ABNORMAL_TERMINATION, TS_PROCESS_WAS_KILLED, TS_PROCESS_CRASHED,
                                            TS_PROCESS_OOM, TS_LAUNCH_FAILED, TS_INTEGRITY_FAILURE})
        handler->OnRenderProcessTerminated(browser.get(), status, 9, "gone");
    ASSERT_EQ(terminated.size(), 4);
    EXPECT_EQ(terminated[0][0].value<QCefDataTypes::TerminationReason>(), QCefDataTypes::AbnormalTermination);
    EXPECT_EQ(terminated[1][0].value<QCefDataTypes::TerminationReason>(), QCefDataTypes::ProcessWasKilled);
    EXPECT_EQ(terminated[2][0].value<QCefDataTypes::TerminationReason>(), QCefDataTypes::ProcessCrashed);
    EXPECT_EQ(terminated[3][0].value<QCefDataTypes::TerminationReason>(), QCefDataTypes::ProcessOutOfMemory);
}

// The verifier of the process's global settings delegates to the current test's function; the
// settings are taken once per process.
std::function<bool(const QByteArray&)> verifier;

class CertificateTest : public RequestHandlerTest
{
protected:
    static void SetUpTestSuite()
    {
        QCefGlobalSettings settings;
        settings.certificateVerifier = [](const QByteArray& pem) { return verifier(pem); };
        CCefManager::getInstance().initialize(settings);
    }

    void TearDown() override { qunsetenv("BROVIA_INSECURE_LOCALHOST"); }

    bool certificateError()
    {
        return handler->OnCertificateError(browser.get(), ERR_CERT_AUTHORITY_INVALID, "https://self.test/",
                                           new FakeSSLInfo("-----BEGIN CERTIFICATE-----"), callback.get());
    }

    CefRefPtr<CountingCallback> callback = new CountingCallback();
    std::vector<QByteArray> verified;
};

TEST_F(CertificateTest, VerifierDecidesUnlessTheInsecureOptionIsOn)
{
    bool answer = false;
    verifier = [&](const QByteArray& pem) {
        verified.push_back(pem);
        return answer;
    };
    EXPECT_FALSE(certificateError());
    EXPECT_EQ(verified, std::vector<QByteArray>{"-----BEGIN CERTIFICATE-----"});
    EXPECT_EQ(callback->continued, 0);

    answer = true;
    EXPECT_TRUE(certificateError());
    EXPECT_EQ(callback->continued, 1);

    answer = false;
    qputenv("BROVIA_INSECURE_LOCALHOST", "1");
    EXPECT_TRUE(certificateError());
    EXPECT_EQ(verified.size(), 2u);
    EXPECT_EQ(callback->continued, 2);
}
} // namespace
