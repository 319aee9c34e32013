#include "app/tour_guide.h"

#include "app/demo_window.h"
#include "host/view_interface/iqcef_view_impl.h"

#include <QApplication>
#include <QCoreApplication>
#include <QDialog>
#include <QDir>
#include <QMouseEvent>
#include <QPainter>
#include <QPixmap>
#include <QWidget>

#include <chrono>
#include <cstdio>

namespace
{
constexpr int kPollMs = 50;
// Polls in a row with a frame of the view's size, and the least time after a step's action,
// before its picture is taken: the page's answer has to be painted too, and the first frames
// after a resize can be blank until the page's clock paints again.
constexpr int kSettledPolls = 4;
constexpr int kLeastStepMs = 1200;

QWidget* floatingWidget()
{
    if (QWidget* popup = QApplication::activePopupWidget())
        return popup;
    return QApplication::activeModalWidget();
}

void closeFloating()
{
    if (QWidget* popup = QApplication::activePopupWidget())
        popup->close();
    if (auto* dialog = qobject_cast<QDialog*>(QApplication::activeModalWidget()))
        dialog->reject();
}

void rightClick(QWidget* widget, const QPoint& point)
{
    const QPoint global = widget->mapToGlobal(point);
    QMouseEvent press(QEvent::MouseButtonPress, point, global, Qt::RightButton, Qt::RightButton, Qt::NoModifier);
    QCoreApplication::sendEvent(widget, &press);
    QMouseEvent release(QEvent::MouseButtonRelease, point, global, Qt::RightButton, Qt::NoButton, Qt::NoModifier);
    QCoreApplication::sendEvent(widget, &release);
}
} // namespace

TourGuide::TourGuide(DemoWindow* window, const QString& folder, int stepTimeoutMs)
    : QObject(window)
    , m_window(window)
    , m_folder(folder)
    , m_stepTimeoutMs(stepTimeoutMs)
{
    connect(window, &DemoWindow::pageLoaded, this, [this](bool ok) {
        if (ok)
            m_loaded = true;
        else if (m_index < 0)
            finish(1, QStringLiteral("the demo page failed to load"));
    });
    connect(window, &DemoWindow::hostScriptFinished, this, [this] { m_scriptDone = true; });
    connect(window, &DemoWindow::pageCalledHost, this, [this] { m_hostCalled = true; });
    connect(window, &DemoWindow::matchesFound, this, [this](int, int, bool final) { m_findDone = m_findDone || final; });
    connect(window, &DemoWindow::downloadProgressed, this, [this](qint64 sent, qint64 total) {
        m_downloadSent = sent;
        m_downloadTotal = total;
    });
    addSteps();
    m_poll.setInterval(kPollMs);
    connect(&m_poll, &QTimer::timeout, this, &TourGuide::poll);
    m_poll.start();
    m_stepClock.start();
}

void TourGuide::addSteps()
{
    IQCefViewImpl* view = m_window->view();
    auto script = [view](const char* text) { view->runJavaScript(QString::fromLatin1(text), [](const QVariant&) {}); };
    m_steps = {
        {QStringLiteral("page"), [] {}, [] { return true; }},
        {QStringLiteral("host-runs-script"), [this] { m_window->runHostScript(); }, [this] { return m_scriptDone; }},
        {QStringLiteral("page-calls-host"), [script] { script("callHost()"); }, [this] { return m_hostCalled; }},
        {QStringLiteral("find"), [this] { m_window->openFind(QStringLiteral("brovia")); }, [this] { return m_findDone; }},
        {QStringLiteral("zoom"),
         [this] {
             m_window->closeFind();
             m_window->zoomIn();
             m_window->zoomIn();
         },
         [] { return true; }},
        {QStringLiteral("context-menu"),
         [this, view] {
             m_window->resetZoom();
             rightClick(view, QPoint(view->width() / 2, view->height() / 2));
         },
         [] { return QApplication::activePopupWidget() != nullptr; }, true},
        {QStringLiteral("script-dialog"),
         [script] {
             closeFloating();
             // From a timer, so that the script's own answer does not wait for the dialog.
             script("setTimeout(() => document.getElementById('promptButton').click(), 0)");
         },
         [] { return QApplication::activeModalWidget() != nullptr; }, true},
        {QStringLiteral("download"),
         [script] {
             closeFloating();
             script("document.getElementById('download').click()");
         },
         [this] { return QApplication::activeModalWidget() != nullptr || m_downloadSent * 4 > m_downloadTotal; }, true},
    };
}

void TourGuide::poll()
{
    if (m_index < 0)
    {
        if (m_loaded)
            begin(0);
        else if (m_stepClock.elapsed() > m_stepTimeoutMs)
            finish(1, QStringLiteral("the demo page did not load in %1 ms").arg(m_stepTimeoutMs));
        return;
    }
    const Step& step = m_steps.at(m_index);
    const IQCefViewImpl* view = m_window->view();
    const bool ready = step.ready();
    if (ready && view->getRenderedImageSize() == view->size())
        ++m_settledPolls;
    else
        m_settledPolls = 0;
    if (m_settledPolls < kSettledPolls || m_stepClock.elapsed() < kLeastStepMs)
    {
        if (m_stepClock.elapsed() <= m_stepTimeoutMs)
            return;
        if (!step.optional)
        {
            finish(1, QStringLiteral("the step \"%1\" %2 in %3 ms")
                          .arg(step.name, ready ? QStringLiteral("got no frame of the view's size")
                                                : QStringLiteral("saw nothing"))
                          .arg(m_stepTimeoutMs));
            return;
        }
        std::fprintf(stderr, "brovia-demo: the step \"%s\" saw nothing and was left out\n", qPrintable(step.name));
    }
    else if (!capture(step.name))
    {
        return;
    }
    if (m_index + 1 < m_steps.size())
        begin(m_index + 1);
    else
        finish(0, QString());
}

void TourGuide::begin(int index)
{
    m_index = index;
    m_settledPolls = 0;
    m_stepClock.restart();
    m_steps.at(index).act();
}

bool TourGuide::capture(const QString& name)
{
    QWidget* floating = floatingWidget();
    // The page as it is now, not a frame on its way; blocks the Qt main thread for up to a second.
    // Not while a page's dialog is open: the page cannot answer then, and the expired wait would
    // leave the view without a picture.
    if (!floating)
        m_window->view()->repaintSync(std::chrono::seconds(1));
    QPixmap picture = m_window->grab();
    if (floating)
    {
        QPainter painter(&picture);
        painter.drawPixmap(floating->mapToGlobal(QPoint()) - m_window->mapToGlobal(QPoint()), floating->grab());
    }
    const QString file = QDir(m_folder).filePath(QStringLiteral("%1-%2.png").arg(++m_saved, 2, 10, QLatin1Char('0')).arg(name));
    if (!picture.save(file, "PNG"))
    {
        finish(1, QStringLiteral("could not write %1").arg(file));
        return false;
    }
    std::printf("%s\n", qPrintable(file));
    std::fflush(stdout);
    return true;
}

void TourGuide::finish(int exitCode, const QString& message)
{
    m_poll.stop();
    closeFloating();
    if (!message.isEmpty())
        std::fprintf(stderr, "brovia-demo: %s\n", qPrintable(message));
    QCoreApplication::exit(exitCode);
}
