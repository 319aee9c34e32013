#include "view_harness.h"

#include "host/cef_common/allow_list.h"
#include "host/log/record_capture.h"
#include "support/test_servers.h"

#include <memory>
#include <QSignalSpy>
#include <QUrl>

#include <gtest/gtest.h>

#include <cstdlib>

namespace
{
// A page that says through its background that it is the page, and follows its link by itself
// shortly after it has loaded.
QUrl linkPage(const QString& href)
{
    return htmlPage(QStringLiteral("<html><body style='margin:0;background:#00ff00'"
                                   " onload=\"setTimeout(() => document.getElementById('link').click(), 300)\">"
                                   "<a id='link' href='%1'>go</a></body></html>")
                        .arg(href));
}

bool showsLinkPage(IQCefViewImpl* view)
{
    return waitForFrame(view, [](const QImage& f) { return sameColor(f.pixel(100, 100), Qt::green); });
}

bool hasLinkClicked(const QSignalSpy& spy, const QString& url)
{
    for (const QList<QVariant>& arguments : spy)
    {
        if (arguments.at(0).toUrl().toString() == url)
            return true;
    }
    return false;
}
} // namespace

TEST(NavigationPolicy, HostSchemeLinkArrivesAsLinkClickedAndGoesNowhere)
{
    startEngine();
    auto view = makeView(300, 200);
    QSignalSpy links(view.get(), &IQCefViewImpl::linkClicked);
    foundation::log::record_capture capture;
    view->load(linkPage(QStringLiteral("torvex:showAbout")));
    ASSERT_TRUE(showsLinkPage(view.get()));
    const QUrl page = view->url();

    ASSERT_TRUE(waitUntil([&] { return hasLinkClicked(links, QStringLiteral("torvex:showAbout")); }));
    waitUntil([] { return false; }, 300);
    EXPECT_EQ(view->url(), page);
    EXPECT_TRUE(capture.records().empty());
}

TEST(NavigationPolicy, RefusedNavigationIsCancelledSilently)
{
    startEngine();
    auto view = makeView(300, 200);
    const QString refused = QStringLiteral("http://refused.brovia.invalid/");
    QSignalSpy links(view.get(), &IQCefViewImpl::linkClicked);
    foundation::log::record_capture capture;
    view->load(linkPage(refused));
    ASSERT_TRUE(showsLinkPage(view.get()));
    const QUrl page = view->url();

    // The page follows its link, then the host asks for the same address itself.
    waitUntil([] { return false; }, 600);
    view->load(QUrl(refused));
    waitUntil([] { return false; }, 600);
    EXPECT_FALSE(hasLinkClicked(links, refused));
    EXPECT_EQ(view->url(), page);
    EXPECT_TRUE(capture.records().empty());
    EXPECT_TRUE(showsLinkPage(view.get()));
}

TEST(NavigationPolicy, NavigationBitAddsTheHostItNavigatesTo)
{
    startEngine();
    auto view = makeView(300, 200);
    view->load(linkPage(QStringLiteral("#")));
    ASSERT_TRUE(waitUntil([&] { return view->getRenderedImageSize().isValid(); }));

    view->load(QUrl(QStringLiteral("http://www.first.brovia.invalid:8080/page")));
    EXPECT_FALSE(cef_common::isURLAllowed("http://first.brovia.invalid/", false));

    view->setNavigationFlags(4 | 8);
    view->load(QUrl(QStringLiteral("http://www.second.brovia.invalid:8080/page")));
    // Any subdomain and port of the site, with the "www." dropped.
    EXPECT_TRUE(cef_common::isURLAllowed("http://second.brovia.invalid/", false));
    EXPECT_TRUE(cef_common::isURLAllowed("http://docs.second.brovia.invalid:1234/a", false));
    EXPECT_FALSE(cef_common::isURLAllowed("https://second.brovia.invalid/", false));
}

// The host's verifier decides on a certificate that the engine refuses: here, the self-signed one
// of a loopback server, which it compares with what the server really holds.
int verifyCertificate(bool accept)
{
    brovia_test::HttpsServer server;
    if (!server.running())
        return 3;
    // The engine may still ask (for a late sub-resource) after this function returned.
    auto seen = std::make_shared<QByteArray>();
    startEngine(1.0f, [seen, accept](const QByteArray& pem) {
        *seen = pem;
        return accept;
    });
    auto view = makeView(300, 200);
    QSignalSpy finished(view.get(), &IQCefViewImpl::loadFinished);
    view->load(QUrl(QString::fromStdString(server.Url("/"))));
    if (!waitUntil([&] { return !finished.isEmpty(); }))
        return 4;
    if (seen->trimmed() != server.certificate_pem().trimmed())
        return 5;
    return finished.last().at(1).toBool() == accept ? 0 : 6;
}

// The server and the view go before the exit: the server's process would otherwise keep the
// death test's pipe open.
void exitAfterVerifying(bool accept)
{
    std::exit(verifyCertificate(accept));
}

TEST(NavigationPolicy, CertificateVerifierDecidesOnASelfSignedServer)
{
    EXPECT_EXIT(exitAfterVerifying(true), ::testing::ExitedWithCode(0), "");
    EXPECT_EXIT(exitAfterVerifying(false), ::testing::ExitedWithCode(0), "");
}
