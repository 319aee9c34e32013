#include "view_access.h"
#include "view_harness.h"

#include <QCoreApplication>
#include <QDrag>
#include <QFile>
#include <QMimeData>
#include <QPixmap>
#include <QProcess>
#include <QTimer>

#include <gtest/gtest.h>

#include <cstdlib>

namespace
{
// A drag out of the view, as the engine hands it to the Qt main thread.
void startDrag(IQCefViewImpl* view)
{
    RenderHandler* handler = QCefViewImplTestAccess::renderHandler(static_cast<QCefViewImpl*>(view));
    auto* mime = new QMimeData();
    mime->setText(QStringLiteral("dragged"));
    QMetaObject::invokeMethod(handler, "StartDragging", Qt::QueuedConnection, Q_ARG(QMimeData*, mime),
                              Q_ARG(Qt::DropActions, Qt::CopyAction), Q_ARG(QPixmap, QPixmap()),
                              Q_ARG(QPoint, QPoint(0, 0)));
}

// The drag's QDrag is the view's child while it runs.
bool dragging(IQCefViewImpl* view)
{
    return view->findChild<QDrag*>(QString(), Qt::FindDirectChildrenOnly) != nullptr;
}

// An X server of its own for the child; the offscreen platform ends every drag at once.
class VirtualDisplay
{
public:
    VirtualDisplay()
    {
        for (int number = 170; number < 200; ++number)
        {
            if (QFile::exists(QStringLiteral("/tmp/.X%1-lock").arg(number)))
                continue;
            m_server.start(QStringLiteral("Xvfb"), {QStringLiteral(":%1").arg(number), QStringLiteral("-nolisten"),
                                                    QStringLiteral("tcp"), QStringLiteral("-screen"),
                                                    QStringLiteral("0"), QStringLiteral("800x600x24")});
            if (!m_server.waitForStarted(5000))
                return;
            if (waitUntil([&] { return QFile::exists(QStringLiteral("/tmp/.X11-unix/X%1").arg(number)); }, 5000))
            {
                m_display = QStringLiteral(":%1").arg(number);
                return;
            }
            m_server.kill();
            m_server.waitForFinished(5000);
        }
    }
    ~VirtualDisplay()
    {
        m_server.terminate();
        if (!m_server.waitForFinished(5000))
            m_server.kill();
        m_server.waitForFinished(5000);
    }
    QString display() const { return m_display; }

private:
    QProcess m_server;
    QString m_display;
};
} // namespace

// Runs in the child only, under the X platform. A drag runs a nested event loop: the view is
// destroyed inside it, then a second drag is ended by quitting the application.
TEST(DragOutChild, DISABLED_TheViewGoesOrTheApplicationQuitsDuringADrag)
{
    startEngine();
    auto view = makeView(300, 200);
    ASSERT_TRUE(loadAndWait(view.get(), htmlPage(QStringLiteral("<p>drag me</p>"))));
    bool destroyed = false;
    bool wasDragging = false;
    QTimer::singleShot(500, [&] {
        wasDragging = dragging(view.get());
        view.reset();
        destroyed = true;
    });
    startDrag(view.get());
    ASSERT_TRUE(waitUntil([&] { return destroyed; }, 20000));
    EXPECT_TRUE(wasDragging);

    auto second = makeView(300, 200);
    ASSERT_TRUE(loadAndWait(second.get(), htmlPage(QStringLiteral("<p>drag me too</p>"))));
    startDrag(second.get());
    QTimer::singleShot(500, [&] {
        wasDragging = dragging(second.get());
        QCoreApplication::quit();
    });
    qApp->exec();
    EXPECT_TRUE(wasDragging);
    second.reset();
}

TEST(DragOut, DestroyingTheViewOrQuittingDuringADragEndsTheDrag)
{
    VirtualDisplay display;
    ASSERT_FALSE(display.display().isEmpty());
    QProcess child;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("BROVIA_TEST_QPA"), QStringLiteral("xcb"));
    environment.insert(QStringLiteral("DISPLAY"), display.display());
    // The X platform's plugins keep an allocation that leak checking finds in an unloaded module,
    // past any suppression by name; the scenario's own memory is checked for errors all the same.
    environment.insert(QStringLiteral("ASAN_OPTIONS"), QStringLiteral("detect_leaks=0"));
    child.setProcessEnvironment(environment);
    child.setProcessChannelMode(QProcess::ForwardedChannels);
    child.start(QCoreApplication::applicationFilePath(),
                {QStringLiteral("--gtest_also_run_disabled_tests"),
                 QStringLiteral("--gtest_filter=DragOutChild.DISABLED_TheViewGoesOrTheApplicationQuitsDuringADrag")});
    ASSERT_TRUE(child.waitForStarted(10000));
    const bool finished = child.waitForFinished(90000);
    if (!finished)
    {
        child.kill();
        child.waitForFinished(5000);
    }
    EXPECT_TRUE(finished);
    EXPECT_EQ(child.exitStatus(), QProcess::NormalExit);
    EXPECT_EQ(child.exitCode(), 0);
}
