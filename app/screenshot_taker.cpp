#include "app/screenshot_taker.h"

#include "app/demo_window.h"
#include "host/view_interface/iqcef_view_impl.h"

#include <QCoreApplication>
#include <QPixmap>

#include <chrono>
#include <cstdio>

namespace
{
// Polls in a row that must see a frame of the view's size before the picture is taken, so that
// the paint of that frame has reached the widget. The first frames after a resize can be blank
// until the page paints again: a little over a second lets a page's own timers do so.
constexpr int kSettledPolls = 24;
} // namespace

ScreenshotTaker::ScreenshotTaker(DemoWindow* window, const QString& fileName, int timeoutMs)
    : QObject(window)
    , m_window(window)
    , m_fileName(fileName)
    , m_timeoutMs(timeoutMs)
{
    connect(window, &DemoWindow::pageLoaded, this, &ScreenshotTaker::onPageLoaded);
    m_poll.setInterval(50);
    connect(&m_poll, &QTimer::timeout, this, &ScreenshotTaker::poll);
    m_poll.start();
    m_clock.start();
}

void ScreenshotTaker::onPageLoaded(bool ok)
{
    if (!ok)
    {
        finish(1, QStringLiteral("the page failed to load"));
        return;
    }
    m_loaded = true;
}

void ScreenshotTaker::poll()
{
    if (m_clock.elapsed() > m_timeoutMs)
    {
        finish(1, m_loaded ? QStringLiteral("the page loaded but no frame was painted in %1 ms").arg(m_timeoutMs)
                           : QStringLiteral("the page did not load in %1 ms").arg(m_timeoutMs));
        return;
    }
    if (!m_loaded)
        return;
    IQCefViewImpl* view = m_window->view();
    if (view->getRenderedImageSize() != view->size())
    {
        m_settledPolls = 0;
        return;
    }
    if (++m_settledPolls < kSettledPolls)
        return;
    // The page as it is now, not a frame on its way. Blocks the Qt main thread for up to a second.
    view->repaintSync(std::chrono::seconds(1));
    const QPixmap picture = m_window->grab();
    if (!picture.save(m_fileName, "PNG"))
    {
        finish(1, QStringLiteral("could not write %1").arg(m_fileName));
        return;
    }
    finish(0, QString());
}

void ScreenshotTaker::finish(int exitCode, const QString& message)
{
    m_poll.stop();
    if (!message.isEmpty())
        std::fprintf(stderr, "brovia-demo: %s\n", qPrintable(message));
    QCoreApplication::exit(exitCode);
}
