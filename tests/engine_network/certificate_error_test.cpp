// Certificate errors of a loopback HTTPS server with a self-signed
// certificate, decided by the client with the server's certificate in hand.

#include "network_test_support.h"
#include "support/test_servers.h"

namespace engine_network_test {
namespace {

TEST(CertificateErrors, ClientSeesTheServersCertificateAndDecides) {
  if (!ChromiumAvailable()) GTEST_SKIP() << "no Chromium installed";
  RunInFreshProcess([] {
    brovia_test::HttpsServer server;
    ASSERT_TRUE(server.running());
    ASSERT_TRUE(StartEngine());
    CefRefPtr<NetworkClient> client = new NetworkClient;
    client->certificate_action = NetworkClient::CertificateAction::kCancel;
    const std::string url = server.Url("/");
    CefRefPtr<CefBrowser> browser = OpenBrowser(client, url);
    ASSERT_TRUE(browser);
    // Cancelled later from another thread: the load fails with the error.
    ASSERT_TRUE(client->recorder.WaitFor("cert -202 " + url));
    ASSERT_TRUE(client->recorder.WaitFor("load-error -202 " + url));
    EXPECT_EQ(client->certificate_pem, server.certificate_pem().toStdString());
    EXPECT_EQ(client->certificate_subject, "brovia.test");
    EXPECT_EQ(client->certificate_status, CERT_STATUS_AUTHORITY_INVALID);

    // Refused outright, it fails the same way.
    client->certificate_action = NetworkClient::CertificateAction::kRefuse;
    browser->GetMainFrame()->LoadURL(server.Url("/?refused"));
    ASSERT_TRUE(client->recorder.WaitFor("load-error -202 " + server.Url("/?refused")));

    client->certificate_action = NetworkClient::CertificateAction::kContinue;
    browser->GetMainFrame()->LoadURL(server.Url("/?continued"));
    ASSERT_TRUE(client->recorder.WaitFor("load-end 200 " + server.Url("/?continued")));
    EXPECT_EQ(client->recorder.Matching("load-error").size(), 2u);
    StopEngine(client);
  });
}

}  // namespace
}  // namespace engine_network_test
