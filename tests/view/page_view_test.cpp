#include "view_harness.h"

#include "host/log/record_capture.h"

#include <QDir>
#include <QFile>
#include <QFocusEvent>
#include <QSignalSpy>
#include <QTest>
#include <QTcpServer>
#include <QUrl>

#include <gtest/gtest.h>

#include <csignal>
#include <cstdlib>
#include <fstream>

namespace
{
// Four boxes of known colours at known CSS pixels, on a background of its own.
const QString kSwatches = QStringLiteral(
    "<html><body style='margin:0;background:#123456'>"
    "<div style='position:absolute;left:10px;top:10px;width:40px;height:40px;background:#ff0000'></div>"
    "<div style='position:absolute;left:60px;top:10px;width:40px;height:40px;background:#00ff00'></div>"
    "<div style='position:absolute;left:110px;top:10px;width:40px;height:40px;background:#0000ff'></div>"
    "<div style='position:absolute;left:160px;top:10px;width:40px;height:40px;background:#fedcba'></div>"
    "</body></html>");

// Samples the middle of each box, in device pixels.
bool swatchesAt(const QImage& frame, int scale)
{
    const auto at = [&](int cssX, int cssY) { return frame.pixel(cssX * scale, cssY * scale); };
    return sameColor(at(30, 30), QColor(0xff, 0x00, 0x00)) && sameColor(at(80, 30), QColor(0x00, 0xff, 0x00)) &&
           sameColor(at(130, 30), QColor(0x00, 0x00, 0xff)) && sameColor(at(180, 30), QColor(0xfe, 0xdc, 0xba)) &&
           sameColor(at(30, 70), QColor(0x12, 0x34, 0x56)) && sameColor(at(5, 5), QColor(0x12, 0x34, 0x56));
}
} // namespace

TEST(PageView, ShowsExactColoursAtTheirPixels)
{
    startEngine();
    auto view = makeView(400, 300);
    view->load(htmlPage(kSwatches));
    EXPECT_TRUE(waitForFrame(view.get(), [](const QImage& frame) { return swatchesAt(frame, 1); }));
}

void showColoursAtScaleTwo()
{
    startEngine(2.0f);
    auto view = makeView(500, 300);
    view->load(htmlPage(kSwatches));
    const bool shown = waitForFrame(view.get(), [](const QImage& frame) { return swatchesAt(frame, 2); });
    std::exit(shown ? 0 : 1);
}

TEST(PageView, ShowsExactColoursAtScaleTwo)
{
    EXPECT_EXIT(showColoursAtScaleTwo(), ::testing::ExitedWithCode(0), "");
}

TEST(PageView, ResizeRepaintsAtTheNewSizeUnscaled)
{
    startEngine();
    auto view = makeView(320, 240);
    // A small box pinned to the bottom-right corner of the page.
    view->load(htmlPage(QStringLiteral(
        "<html><body style='margin:0;background:#0000ff'>"
        "<div style='position:fixed;right:0;bottom:0;width:20px;height:20px;background:#ff0000'></div>"
        "</body></html>")));
    ASSERT_TRUE(waitForFrame(view.get(), [](const QImage& f) { return sameColor(f.pixel(310, 230), Qt::red); }));

    view->resize(480, 360);
    ASSERT_TRUE(waitForFrame(view.get(), [](const QImage& f) { return sameColor(f.pixel(470, 350), Qt::red); }));
    const QImage frame = grabView(view.get());
    // Where the box was, the page's background: the old frame is not stretched over the new size.
    EXPECT_TRUE(sameColor(frame.pixel(310, 230), Qt::blue));
    EXPECT_EQ(view->getRenderedImageSize(), QSize(480, 360));
}

TEST(PageView, SetHtmlShowsItsPageHidesItsUrlAndRemovesItsFilesWithTheView)
{
    startEngine();
    auto view = makeView(300, 200);
    QSignalSpy urls(view.get(), &IQCefViewImpl::urlChanged);
    QSignalSpy titles(view.get(), &IQCefViewImpl::titleChanged);
    view->setHtml(QStringLiteral("<html><head><title>Grüße</title></head>"
                                 "<body style='background:#00ff00'>hello</body></html>"));
    ASSERT_TRUE(waitForFrame(view.get(), [](const QImage& f) { return sameColor(f.pixel(150, 150), Qt::green); }));
    ASSERT_TRUE(waitUntil([&] { return !titles.isEmpty() && titles.last().at(0).toString() == "Grüße"; }));
    ASSERT_FALSE(urls.isEmpty());
    EXPECT_TRUE(urls.last().at(0).toUrl().isEmpty());

    // url() still gives the file's URL; the file lives as long as the view.
    const QString file = view->url().toLocalFile();
    ASSERT_FALSE(file.isEmpty());
    EXPECT_TRUE(file.endsWith(".html"));
    EXPECT_TRUE(QFile::exists(file));
    view->setHtml(QStringLiteral("<p>second</p>"));
    view.reset();
    EXPECT_FALSE(QFile::exists(file));
}

TEST(PageView, LoadSignalsArriveInOrderAndAFailedLoadIsLogged)
{
    startEngine();
    auto view = makeView(300, 200);
    QStringList order;
    QObject::connect(view.get(), &IQCefViewImpl::loadStarted, [&](const QString&) { order << "started"; });
    QObject::connect(view.get(), &IQCefViewImpl::loadFinished,
                     [&](const QString&, bool ok) { order << (ok ? "finished" : "failed"); });
    QObject::connect(view.get(), &IQCefViewImpl::loadStateChanged,
                     [&](const QString&, bool loading, bool, bool) { order << (loading ? "loading" : "idle"); });
    view->load(htmlPage(QStringLiteral("<p>one</p>")));
    ASSERT_TRUE(waitUntil([&] { return order.contains("idle") && order.contains("finished"); }));
    EXPECT_LT(order.indexOf("loading"), order.indexOf("started"));
    EXPECT_LT(order.indexOf("started"), order.indexOf("finished"));

    // A port where nothing listens: the load fails, and one record says so.
    QTcpServer probe;
    ASSERT_TRUE(probe.listen(QHostAddress::LocalHost));
    const QString refused = QStringLiteral("http://127.0.0.1:%1/").arg(probe.serverPort());
    probe.close();
    foundation::log::record_capture capture;
    order.clear();
    view->load(QUrl(refused));
    ASSERT_TRUE(waitUntil([&] { return order.contains("failed"); }));
    bool logged = false;
    for (const auto& record : capture.records())
    {
        if (record.channel == "brovia::browser" && record.severity == 0x200 &&
            record.message == "Failed to load URL: " + refused.toStdString() + "; Error: ERR_CONNECTION_REFUSED (-102)")
            logged = true;
    }
    EXPECT_TRUE(logged);
}

// Views still alive when the application quits: the engine and its Chromium go with the process.
void quitWithViewsAlive(const std::string& pidFile)
{
    startEngine();
    auto first = makeView(200, 100);
    auto second = makeView(200, 100);
    first->load(htmlPage(QStringLiteral("<p>one</p>")));
    second->load(htmlPage(QStringLiteral("<p>two</p>")));
    waitUntil([&] { return first->getRenderedImageSize().isValid() && second->getRenderedImageSize().isValid(); });

    // Remember this process's children, for the parent to check after the exit.
    std::ofstream out(pidFile);
    for (const QString& entry : QDir(QStringLiteral("/proc")).entryList(QDir::Dirs))
    {
        QFile stat(QStringLiteral("/proc/%1/stat").arg(entry));
        if (!stat.open(QIODevice::ReadOnly))
            continue;
        const QList<QByteArray> fields = stat.readAll().split(' ');
        if (fields.size() > 3 && fields.at(3).toLongLong() == QCoreApplication::applicationPid())
            out << entry.toStdString() << "\n";
    }
    out.close();
    first->setFocus();
    QMetaObject::invokeMethod(qApp, &QCoreApplication::quit, Qt::QueuedConnection);
    qApp->exec();
    // The engine is down; the widgets still get what a host's teardown sends them.
    QFocusEvent focusOut(QEvent::FocusOut, Qt::ActiveWindowFocusReason);
    QCoreApplication::sendEvent(first.get(), &focusOut);
    first->resize(300, 150);
    QTest::keyClick(first.get(), Qt::Key_A);
    first->hide();
    first.reset();
    second.reset();
    std::exit(0);
}

TEST(PageView, QuittingWithViewsAliveLeavesNoChromium)
{
    // One per frame source: the test runs once with each, maybe at the same time.
    const std::string pidFile =
        QDir::temp()
            .filePath(QStringLiteral("brovia-view-children-%1.txt")
                          .arg(QString::fromLocal8Bit(qgetenv("BROVIA_FRAME_SOURCE"))))
            .toStdString();
    EXPECT_EXIT(quitWithViewsAlive(pidFile), ::testing::ExitedWithCode(0), "");
    std::ifstream in(pidFile);
    std::vector<pid_t> children;
    for (long pid = 0; in >> pid;)
        children.push_back(static_cast<pid_t>(pid));
    EXPECT_FALSE(children.empty());
    EXPECT_TRUE(waitUntil(
        [&] {
            for (pid_t pid : children)
            {
                if (::kill(pid, 0) == 0)
                    return false;
            }
            return true;
        },
        10000));
    std::remove(pidFile.c_str());
}
