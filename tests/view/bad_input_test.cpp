#include "view_harness.h"

#include "support/test_servers.h"

#include <QApplication>
#include <QFile>
#include <QSignalSpy>

#include <gtest/gtest.h>

#include <cstdlib>
#include <map>

using namespace std::chrono_literals;

namespace
{
// The default settings leave the verifier empty: a certificate the engine refuses stays refused.
int loadWithoutVerifier()
{
    brovia_test::HttpsServer server;
    if (!server.running())
        return 3;
    startEngine(1.0f, nullptr);
    auto view = makeView(300, 200);
    QSignalSpy finished(view.get(), &IQCefViewImpl::loadFinished);
    view->load(QUrl(QString::fromStdString(server.Url("/"))));
    if (!waitUntil([&] { return !finished.isEmpty(); }))
        return 4;
    return finished.last().at(1).toBool() ? 5 : 0;
}

void exitAfterLoadingWithoutVerifier()
{
    std::exit(loadWithoutVerifier());
}

int nestingDepth(QVariant value)
{
    int depth = 0;
    while (value.type() == QVariant::List && value.toList().size() == 1)
    {
        value = value.toList().first();
        ++depth;
    }
    return depth;
}

// Every known method of the page protocol with argument shapes none of them takes.
const char kMalformedKnownCalls[] = R"JS(
  const known = ['setZoomLevel', 'changeZoomLevel', 'setTitle', 'setDownloadLocation', 'openFolder',
                 'openFile', 'saveFile', 'openFileTypes', 'saveFileTypes', 'openMultipleFileTypes'];
  const shapes = [undefined, null, 0, -1, 1.5, 2 ** 53, 'x', '', [], [[]], [[1, 2]], [['a', 'b']],
                  [[null]], [[1.5]], {a: 1}, [{}], [[{}]], [[[1]]], true];
  for (const method of known) for (const shape of shapes) cefclient(method, shape);
)JS";

// Calls for the host: odd names, a huge string, deep nesting, a flood; and raw calls of the
// binding that no cefclient call would make.
const char kHostileCalls[] = R"JS(
  const deep = (n) => { let v = 'core'; for (let i = 0; i < n; ++i) v = [v]; return v; };
  cefclient('hostile', deep(1000));
  cefclient('deeper', deep(5000));
  cefclient('huge', 'x'.repeat(4 * 1024 * 1024));
  cefclient('', 1);
  cefclient('setzoomlevel', [150]);
  const raw = window.__broviaCefClient;
  raw('garbage'); raw('{"method": 5}'); raw('[]'); raw('{"method": "wild", "args": {"a": 1}, "id": 1e308}');
  for (let i = 0; i < 3000; ++i) cefclient('flood', i);
  cefclient('last');
)JS";
} // namespace

TEST(BadInput, AnEmptyCertificateVerifierRefusesTheCertificate)
{
    EXPECT_EXIT(exitAfterLoadingWithoutVerifier(), ::testing::ExitedWithCode(0), "");
}

TEST(BadInput, ARepaintWatchRectangleReachingPastTheFrameIsClipped)
{
    startEngine();
    auto view = makeView(200, 100);
    ASSERT_TRUE(loadAndWait(view.get(), htmlPage(QStringLiteral("<body style='margin:0;background:#ff0000'>"))));
    ASSERT_TRUE(waitForFrame(view.get(), [](const QImage& f) { return sameColor(f.pixel(50, 50), Qt::red); }));
    // The marker is on the screen already: each watch answers from the last frame.
    EXPECT_EQ(view->repaintSync2(10, 10, 255, QRect(150, 50, 4000, 4000), false, 5000ms).size(), QSize(50, 50));
    EXPECT_EQ(view->repaintSync2(10, 10, 255, QRect(-20, -30, 40, 40), false, 5000ms).size(), QSize(20, 10));
    EXPECT_TRUE(view->repaintSync2(10, 10, 255, QRect(500, 500, 10, 10), false, 300ms).isNull());
}

TEST(BadInput, SetHtmlWritesAFileOnlyItsUserCanRead)
{
    startEngine();
    auto view = makeView(200, 100);
    view->setHtml(QStringLiteral("<body style='margin:0;background:#00ff00'>private</body>"));
    ASSERT_TRUE(waitForFrame(view.get(), [](const QImage& f) { return sameColor(f.pixel(50, 50), Qt::green); }));
    const QString path = view->url().toLocalFile();
    ASSERT_TRUE(QFile::exists(path)) << path.toStdString();
    EXPECT_EQ(QFile::permissions(path) & ~(QFile::ReadUser | QFile::WriteUser),
              QFile::ReadOwner | QFile::WriteOwner);
    view.reset();
    EXPECT_FALSE(QFile::exists(path));
}

TEST(PageCalls, MalformedHostileAndFloodingCallsWarnOrReachTheHostAndNothingElse)
{
    startEngine();
    auto view = makeView(300, 200);
    ASSERT_TRUE(loadAndWait(view.get(), htmlPage(QStringLiteral("<title>calm</title><p>calls</p>"))));
    QSignalSpy titles(view.get(), &IQCefViewImpl::titleChanged);
    int warnings = 0;
    QObject::connect(view.get(), &IQCefViewImpl::javaScriptConsoleMessage, [&](const QString& message) {
        if (message.startsWith(QLatin1String("The first argument to")) ||
            message.contains(QLatin1String("takes three arguments")))
            ++warnings;
    });
    std::map<QString, QVariantList> lastCall;
    std::map<QString, int> callCount;
    bool floodInOrder = true;
    QObject::connect(view.get(), &IQCefViewImpl::receivedCefClientMessage,
                     [&](const QString& method, const QVariantList& args) {
                         if (method == QLatin1String("flood") &&
                             (args.size() != 1 || args.first().toInt() != callCount[method]))
                             floodInOrder = false;
                         ++callCount[method];
                         lastCall[method] = args;
                     });

    view->runJavaScript(QString::fromLatin1(kMalformedKnownCalls), [](const QVariant&) {});
    EXPECT_TRUE(waitUntil([&] { return warnings >= 190; }, 30000)) << warnings;
    view->runJavaScript(QString::fromLatin1(kHostileCalls), [](const QVariant&) {});
    ASSERT_TRUE(waitUntil([&] { return callCount.count(QStringLiteral("last")) > 0; }, 60000));
    waitUntil([] { return false; }, 500);

    EXPECT_EQ(warnings, 190);
    EXPECT_EQ(callCount[QStringLiteral("flood")], 3000);
    EXPECT_TRUE(floodInOrder);
    EXPECT_EQ(nestingDepth(lastCall[QStringLiteral("hostile")].value(0)), 1000);
    EXPECT_EQ(callCount.count(QStringLiteral("deeper")), 0u);
    EXPECT_EQ(lastCall[QStringLiteral("huge")].value(0).toString().size(), 4 * 1024 * 1024);
    EXPECT_EQ(lastCall[QString()], QVariantList{1});
    EXPECT_EQ(lastCall[QStringLiteral("setzoomlevel")], QVariantList{QVariantList{150}});
    EXPECT_EQ(lastCall[QStringLiteral("wild")], QVariantList());

    // Nothing else: no zoom, no title, no dialog, and the page still answers.
    EXPECT_EQ(view->zoomLevel(), 0.0);
    EXPECT_TRUE(titles.isEmpty());
    EXPECT_EQ(QApplication::activeModalWidget(), nullptr);
    EXPECT_EQ(view->runJavaScriptSync(QStringLiteral("6 * 7"), 10000ms), QVariant(42));
}
