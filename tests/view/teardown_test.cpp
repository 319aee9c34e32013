#include "view_harness.h"

#include "host/view_interface/qcef_view_settings.h"
#include "view/view_impl_service.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QSignalSpy>
#include <QTcpServer>
#include <QThread>
#include <QTimer>

#include <gtest/gtest.h>

#include <cstdlib>
#include <memory>

using namespace std::chrono_literals;

namespace
{
// Calls every command of the view that talks to the browser; none may crash or wait long, and
// the ones with a result give their default when there is no browser.
bool everyCommandIsQuiet(IQCefViewImpl* view)
{
    QElapsedTimer clock;
    clock.start();
    view->setZoomLevel(2.0);
    bool quiet = view->zoomLevel() == 0.0;
    view->showDevTools();
    view->clearBrowsingData();
    view->repaintSync(2000ms);
    quiet = quiet && view->repaintSync2(0, 0, 0, QRect(0, 0, 10, 10), false, 2000ms).isNull();
    quiet = quiet && view->html().isNull();
    view->find(1, QStringLiteral("x"), true, false, false);
    quiet = quiet && !view->runJavaScriptSync(QStringLiteral("1"), 2000ms).isValid();
    view->load(htmlPage(QStringLiteral("<p>late</p>")));
    view->reload();
    return quiet && view->url().isEmpty() && clock.elapsed() < 1000;
}

// A host's main window that keeps the zoom level when it goes, as hosts do in their destructor.
class MainWindow : public QWidget
{
public:
    MainWindow()
        : view(QCefViewImplService::create(this, QCefViewSettings()))
    {
        view->resize(300, 200);
    }
    ~MainWindow() override { savedQuietly = everyCommandIsQuiet(view); }

    IQCefViewImpl* view;
    static bool savedQuietly;
};
bool MainWindow::savedQuietly = false;

// Quits while one view shows its page and another still waits for a server that never answers.
void quitThenTearDown()
{
    startEngine();
    QTcpServer silent;
    if (!silent.listen(QHostAddress::LocalHost))
        std::exit(2);
    auto window = std::make_unique<MainWindow>();
    window->resize(300, 200);
    window->show();
    if (!loadAndWait(window->view, htmlPage(QStringLiteral("<p>zoomed</p>"))))
        std::exit(3);
    window->view->setZoomLevel(1.0);
    auto loading = makeView(200, 100);
    loading->load(QUrl(QStringLiteral("http://127.0.0.1:%1/").arg(silent.serverPort())));
    QMetaObject::invokeMethod(qApp, &QCoreApplication::quit, Qt::QueuedConnection);
    qApp->exec();
    // The engine has cleaned up every view on aboutToQuit; the host's windows go after that.
    const bool loadingQuiet = everyCommandIsQuiet(loading.get());
    loading.reset();
    window.reset();
    std::exit(MainWindow::savedQuietly && loadingQuiet ? 0 : 4);
}

// A page that keeps asking for zoom and the inspector, for as long as it lives: some 700 calls a
// second, more than a loaded machine's Qt main thread keeps up with while it sleeps.
const QString kBusyPage = QStringLiteral(
    "<html><body style='margin:0;background:#336699'><script>"
    "setInterval(() => { cefclient('setZoomLevel', [150]); cefclient('changeZoomLevel', [-10]);"
    " cefclient('openDevTools'); cefclient('closeDevTools'); cefclient('setTitle', ['t' + Date.now()]);"
    " cefclient('ping', 1, 'two', [3]); cefclient('setDownloadLocation', ['/tmp']); }, 10);"
    "</script></body></html>");
} // namespace

TEST(Teardown, AHostThatSavesTheZoomInItsWindowsDestructorAfterQuittingIsServedQuietly)
{
    EXPECT_EXIT(quitThenTearDown(), ::testing::ExitedWithCode(0), "");
}

TEST(Teardown, CommandsAndDialogsQueuedForAViewThatWentDoNothing)
{
    startEngine();
    for (int round = 0; round < 3; ++round)
    {
        auto view = makeView(300, 200);
        ASSERT_TRUE(loadAndWait(view.get(), htmlPage(kBusyPage)));
        view->runJavaScript(QStringLiteral("setTimeout(() => alert('late'), 20)"), [](const QVariant&) {});
        // The page's calls and its dialog pile up in the queue of the busy Qt main thread...
        QThread::msleep(400);
        // ...and meet a view that is gone, and a client that is cleaned up.
        view.reset();
        waitUntil([] { return QApplication::activeModalWidget() != nullptr; }, 500);
        EXPECT_EQ(QApplication::activeModalWidget(), nullptr);
    }
}

TEST(Teardown, ViewsComeAndGoWhilePagesCallTheHostRunScriptsZoomAndRepaint)
{
    startEngine();
    QElapsedTimer clock;
    clock.start();
    int calls = 0;
    for (int round = 0; round < 8 && clock.elapsed() < 60000; ++round)
    {
        auto view = makeView(200 + round * 10, 150);
        QObject::connect(view.get(), &IQCefViewImpl::receivedCefClientMessage, [&] { ++calls; });
        view->load(htmlPage(kBusyPage));
        switch (round % 4)
        {
        case 0:
            // Gone mid-load.
            break;
        case 1:
            view->runJavaScript(QStringLiteral("document.title"), [](const QVariant&) {});
            view->runJavaScriptSync(QStringLiteral("1 + 1"), 200ms);
            view->setZoomLevel(view->zoomLevel() + 0.5);
            break;
        case 2:
            waitUntil([&] { return view->getRenderedImageSize().isValid(); }, 5000);
            view->repaintSync(300ms);
            view->repaintSync2(5, 5, 0x33, QRect(-10, -10, 5000, 5000), false, 300ms);
            view->resize(260, 120);
            break;
        default:
            waitUntil([] { return false; }, 300);
            view->html();
            break;
        }
        view.reset();
        waitUntil([] { return false; }, 50);
    }
    EXPECT_GT(calls, 0);
    // The last browsers finish closing before the process ends.
    waitUntil([] { return false; }, 1500);
}
