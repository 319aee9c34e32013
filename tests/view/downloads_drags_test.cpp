#include "view_harness.h"

#include <QApplication>
#include <QDir>
#include <QDrag>
#include <QFile>
#include <QFileDialog>
#include <QMimeData>
#include <QMouseEvent>
#include <QProcess>
#include <QSignalSpy>
#include <QTcpServer>
#include <QTcpSocket>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>

#include <gtest/gtest.h>

#include "support/engine_downloads.h"
#include "support/private_x_server.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <memory>

namespace
{
const QByteArray kReport = QByteArray("quarterly numbers, all of them\n").repeated(2000);

// A loopback HTTP server: a page of download links, a file to download and one that never ends.
class DownloadServer
{
public:
    DownloadServer()
    {
        m_server.listen(QHostAddress::LocalHost);
        QObject::connect(&m_server, &QTcpServer::newConnection, [this] {
            while (QTcpSocket* socket = m_server.nextPendingConnection())
            {
                QObject::connect(socket, &QTcpSocket::readyRead, socket, [socket] { answer(socket); });
                QObject::connect(socket, &QTcpSocket::disconnected, socket, &QObject::deleteLater);
            }
        });
    }

    QUrl url(const QString& path) const
    {
        return QUrl(QStringLiteral("http://127.0.0.1:%1%2").arg(m_server.serverPort()).arg(path));
    }

private:
    static void answer(QTcpSocket* socket)
    {
        QByteArray request = socket->property("request").toByteArray() + socket->readAll();
        socket->setProperty("request", request);
        if (!request.contains("\r\n\r\n"))
            return;
        const QByteArray path = request.split(' ').value(1);
        if (path == "/")
        {
            const QByteArray page = "<html><body style='margin:0'>"
                                    "<a href='/report' style='position:absolute;left:10px;top:10px'>report</a>"
                                    "<a href='/endless' style='position:absolute;left:10px;top:50px'>endless</a>"
                                    "</body></html>";
            socket->write("HTTP/1.1 200 OK\r\nContent-Type: text/html\r\nContent-Length: " +
                          QByteArray::number(page.size()) + "\r\nConnection: close\r\n\r\n" + page);
            socket->disconnectFromHost();
        }
        else if (path == "/report")
        {
            socket->write("HTTP/1.1 200 OK\r\nContent-Type: text/plain\r\n"
                          "Content-Disposition: attachment; filename=\"report.txt\"\r\nContent-Length: " +
                          QByteArray::number(kReport.size()) + "\r\nConnection: close\r\n\r\n" + kReport);
            socket->disconnectFromHost();
        }
        else if (path == "/endless")
        {
            socket->write("HTTP/1.1 200 OK\r\nContent-Type: application/octet-stream\r\n"
                          "Content-Disposition: attachment; filename=\"endless.bin\"\r\n"
                          "Content-Length: 100000000\r\n\r\n" +
                          QByteArray(64 * 1024, 'x'));
        }
        else
        {
            socket->write("HTTP/1.1 404 Not Found\r\nContent-Length: 0\r\nConnection: close\r\n\r\n");
            socket->disconnectFromHost();
        }
    }

    QTcpServer m_server;
};
} // namespace

TEST(Downloads, ALinkDownloadsToTheChosenFileAndACancelledOneLeavesNothing)
{
    startEngine();
    DownloadServer server;
    auto view = makeView(300, 200);
    ASSERT_TRUE(loadAndWait(view.get(), server.url(QStringLiteral("/"))));
    QTemporaryDir folder;

    const QString chosen = folder.filePath(QStringLiteral("saved report.txt"));
    bool saveDialog = false;
    QString suggested;
    answerNextDialog([&](QWidget* dialog) {
        auto* files = qobject_cast<QFileDialog*>(dialog);
        ASSERT_NE(files, nullptr);
        saveDialog = files->acceptMode() == QFileDialog::AcceptSave;
        suggested = files->selectedFiles().value(0);
        files->selectFile(chosen);
        QMetaObject::invokeMethod(files, "accept", Qt::DirectConnection);
    });
    QTest::mouseClick(view.get(), Qt::LeftButton, Qt::NoModifier, QPoint(20, 18));
    ASSERT_TRUE(waitUntil([&] { return QFileInfo(chosen).size() == kReport.size(); }));
    EXPECT_TRUE(saveDialog);
    EXPECT_TRUE(suggested.endsWith(QStringLiteral("report.txt")));
    QFile saved(chosen);
    ASSERT_TRUE(saved.open(QIODevice::ReadOnly));
    EXPECT_EQ(saved.readAll(), kReport);
    EXPECT_TRUE(waitUntil([&] { return brovia_test::engineDownloadFiles().isEmpty(); }, 5000));

    // The page stays where it was.
    EXPECT_EQ(view->runJavaScriptSync(QStringLiteral("location.pathname"), std::chrono::milliseconds(5000)).toString(),
              QStringLiteral("/"));

    // A download whose save dialog is cancelled stops, and no file stays anywhere.
    bool rejected = false;
    bool begun = false;
    answerNextDialog([&](QWidget* dialog) {
        auto* files = qobject_cast<QFileDialog*>(dialog);
        ASSERT_NE(files, nullptr);
        // Chromium goes on downloading while the user decides.
        begun = waitUntil([] { return !brovia_test::engineDownloadFiles().isEmpty(); }, 5000);
        files->reject();
        rejected = true;
    });
    QTest::mouseClick(view.get(), Qt::LeftButton, Qt::NoModifier, QPoint(20, 58));
    ASSERT_TRUE(waitUntil([&] { return rejected; }));
    EXPECT_TRUE(begun);
    waitUntil([] { return false; }, 1000);
    EXPECT_TRUE(waitUntil([&] { return brovia_test::engineDownloadFiles().isEmpty(); }, 10000));
    EXPECT_EQ(QDir(folder.path()).entryList(QDir::Files), QStringList{QStringLiteral("saved report.txt")});
}

namespace
{
// In a child: starts the engine and shows |html| in a new view; exits 2 if the page never loads.
std::unique_ptr<IQCefViewImpl> showPageOrExit(const QString& html)
{
    startEngine();
    auto view = makeView(300, 200);
    if (!loadAndWait(view.get(), htmlPage(html)))
        std::exit(2);
    return view;
}

// Runs in a child on the X server: exits 0 if the page's drag became a QDrag carrying the page's
// text, and the cancelled drag ended in the page.
void dragOutOfThePage()
{
    auto view = showPageOrExit(QStringLiteral(
        "<div id='source' draggable='true' style='position:absolute;left:10px;top:10px;"
        "width:100px;height:40px;background:#f80'"
        " ondragstart=\"event.dataTransfer.setData('text/plain', 'dragged words')\""
        " ondragend=\"document.title = 'ended ' + event.dataTransfer.dropEffect\">"
        "</div>"));
    QSignalSpy titles(view.get(), &IQCefViewImpl::titleChanged);

    // Inside the drag's own event loop: what it carries, then the user's Escape.
    QString carried;
    QTimer watch;
    QObject::connect(&watch, &QTimer::timeout, [&] {
        if (auto* drag = view->findChild<QDrag*>())
        {
            carried = drag->mimeData()->text();
            QDrag::cancel();
        }
    });
    watch.start(50);
    QTest::mousePress(view.get(), Qt::LeftButton, Qt::NoModifier, QPoint(30, 30));
    for (int step = 1; step <= 10; ++step)
    {
        const QPoint at(30 + step * 5, 30 + step * 3);
        QMouseEvent move(QEvent::MouseMove, at, view->mapToGlobal(at), Qt::NoButton, Qt::LeftButton, Qt::NoModifier);
        QCoreApplication::sendEvent(view.get(), &move);
        waitUntil([] { return false; }, 30);
    }
    const bool ended = waitUntil([&] { return !titles.isEmpty() && titles.last().at(0).toString() == "ended none"; });
    fprintf(stderr, "carried '%s', page drag ended: %d\n", qPrintable(carried), ended);
    std::exit(carried == QStringLiteral("dragged words") && ended ? 0 : 1);
}
// Runs in a child on the X server: exits 0 if a drag dropped on another element of the same page
// brought that element the dragged text, and the drag ended in the page as a move.
void dropInsideThePage()
{
    auto view = showPageOrExit(QStringLiteral(
        "<div id='source' draggable='true' style='position:absolute;left:10px;top:10px;"
        "width:100px;height:40px;background:#f80'"
        " ondragstart=\"event.dataTransfer.setData('text/plain', 'moved words');"
        "event.dataTransfer.effectAllowed = 'move'\""
        " ondragend=\"document.title += ', ended ' + event.dataTransfer.dropEffect\"></div>"
        "<div id='target' style='position:absolute;left:150px;top:100px;width:120px;height:80px;"
        "background:#08f' ondragover='event.preventDefault()'"
        " ondrop=\"event.preventDefault();"
        "document.title = 'dropped ' + event.dataTransfer.getData('text/plain')\"></div>"));
    QSignalSpy titles(view.get(), &IQCefViewImpl::titleChanged);

    // Inside the drag's own event loop: the pointer travels to the target and lets go there. The
    // drag reads the pointer from the events it filters, whichever object they are sent to.
    QWidget* widget = view.get();
    QTimer steps;
    int step = 0;
    bool dragged = false;
    QObject::connect(&steps, &QTimer::timeout, [&] {
        if (!view->findChild<QDrag*>())
            return;
        dragged = true;
        const QPoint at = QPoint(60, 40) + (QPoint(210, 140) - QPoint(60, 40)) * std::min(step, 10) / 10;
        ++step;
        if (step <= 14)
        {
            QMouseEvent move(QEvent::MouseMove, at, widget->mapToGlobal(at), Qt::NoButton, Qt::LeftButton,
                             Qt::NoModifier);
            QCoreApplication::sendEvent(widget, &move);
            return;
        }
        QMouseEvent release(QEvent::MouseButtonRelease, at, widget->mapToGlobal(at), Qt::LeftButton, Qt::NoButton,
                            Qt::NoModifier);
        QCoreApplication::sendEvent(widget, &release);
        steps.stop();
    });
    steps.start(100);
    QTest::mousePress(widget, Qt::LeftButton, Qt::NoModifier, QPoint(30, 30));
    for (int move = 1; move <= 10 && !dragged; ++move)
    {
        const QPoint at(30 + move * 3, 30 + move);
        QMouseEvent event(QEvent::MouseMove, at, widget->mapToGlobal(at), Qt::NoButton, Qt::LeftButton,
                          Qt::NoModifier);
        QCoreApplication::sendEvent(widget, &event);
        waitUntil([] { return false; }, 30);
    }
    const QString expected = QStringLiteral("dropped moved words, ended move");
    const bool dropped =
        waitUntil([&] { return !titles.isEmpty() && titles.last().at(0).toString() == expected; });
    fprintf(stderr, "dragged %d, last title '%s'\n", dragged,
            titles.isEmpty() ? "" : qPrintable(titles.last().at(0).toString()));
    std::exit(dragged && dropped ? 0 : 1);
}

// Runs |scenario| in a child that uses a private X server of its own, as QDrag needs one.
void runOnPrivateXServer(void (*scenario)())
{
    // The child re-executes the test: it finds the server running and must not start one of its
    // own, which would outlive it.
    std::unique_ptr<brovia_test::PrivateXServer> server;
    const QByteArray display = qgetenv("DISPLAY");
    if (!qEnvironmentVariableIsSet("BROVIA_TEST_QPA"))
    {
        server = std::make_unique<brovia_test::PrivateXServer>();
        ASSERT_FALSE(server->display().isEmpty()) << "Xvfb did not start";
        qputenv("BROVIA_TEST_QPA", "xcb");
        qputenv("DISPLAY", server->display().toLatin1());
    }
    EXPECT_EXIT(scenario(), ::testing::ExitedWithCode(0), "");
    if (!server)
        return;
    qunsetenv("BROVIA_TEST_QPA");
    if (display.isEmpty())
        qunsetenv("DISPLAY");
    else
        qputenv("DISPLAY", display);
}
} // namespace

TEST(Drags, ADragFromThePageRunsAsAQDragAndEndsInThePage)
{
    runOnPrivateXServer(dragOutOfThePage);
}

TEST(Drags, ADragDroppedOnTheSamePageBringsItsData)
{
    runOnPrivateXServer(dropInsideThePage);
}
