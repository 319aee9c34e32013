// The frame road inside the library at 1920x1080: from RenderHandler::OnPaint (what the engine
// calls on its UI thread) through the client's signal to the view's onViewUpdated and on to its
// paintEvent, for a frame whose whole area changed. Printed next to two memcpy of the frame, the
// two deep copies that the road is built around. Goal: the road within 1.5 times those copies.
// The time to the end of paintEvent adds Qt's own copy of the frame into the backing store.
//
// A real view with a real browser is needed, since the view drops frames without one; the page is
// static, so that no frame of the engine interferes with the ones sent here.

#include "client/browser_client.h"
#include "engine/global_service.h"
#include "host/instrument/controls.h"
#include "host/instrument/listener.h"
#include "host/instrument/listeners.h"
#include "host/view_interface/iqcef_view_impl.h"
#include "host/view_interface/qcef_view_settings.h"
#include "render/render_handler.h"
#include "view/qcef_view_impl.h"
#include "view/view_impl_service.h"

#include "include/cef_browser.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QUrl>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstring>
#include <vector>

#include <sys/resource.h>

class QCefViewImplTestAccess
{
public:
    static CefRefPtr<BrowserClient> client(QCefViewImpl* view) { return view->m_client; }
};

namespace
{
constexpr int kWidth = 1920;
constexpr int kHeight = 1080;
constexpr int kRounds = 300;

double nowMs()
{
    return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now().time_since_epoch()).count();
}

// Notes when paintEvent begins.
class PaintStart : public instrument::Listener
{
public:
    double at = 0;
    void onStart(const instrument::ControlElement& control, const instrument::ContextSet&, instrument::EventId,
                 std::optional<unsigned long>) override
    {
        const std::string& name = control.name();
        if (name.size() >= 10 && name.compare(name.size() - 10, 10, "paintEvent") == 0)
            at = nowMs();
    }
    void onStop(const instrument::ControlElement&, const instrument::ContextSet&, instrument::EventId,
                std::optional<unsigned long>) override
    {
    }
};

long minorFaults()
{
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    return usage.ru_minflt;
}

double median(std::vector<double> values)
{
    std::sort(values.begin(), values.end());
    return values[values.size() / 2];
}
} // namespace

int main(int argc, char** argv)
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    QCefGlobalService::initialize(QCefGlobalSettings());
    QCefGlobalService::startup();
    if (!QCefGlobalService::s_started)
    {
        std::fprintf(stderr, "bench_frame_road: the engine did not start\n");
        return 1;
    }

    auto* view = static_cast<QCefViewImpl*>(QCefViewImplService::create(nullptr, QCefViewSettings()));
    view->resize(kWidth, kHeight);
    view->show();
    view->load(QUrl(QStringLiteral("data:text/html,<body style='background:%23336699'></body>")));
    QElapsedTimer clock;
    clock.start();
    while (view->getRenderedImageSize() != QSize(kWidth, kHeight) && clock.elapsed() < 20000)
        QCoreApplication::processEvents(QEventLoop::AllEvents, 20);
    if (view->getRenderedImageSize() != QSize(kWidth, kHeight))
    {
        std::fprintf(stderr, "bench_frame_road: no frame of %dx%d arrived\n", kWidth, kHeight);
        return 1;
    }
    // Let the engine settle: a static page sends nothing more.
    clock.restart();
    while (clock.elapsed() < 500)
        QCoreApplication::processEvents(QEventLoop::AllEvents, 20);

    CefRefPtr<BrowserClient> client = QCefViewImplTestAccess::client(view);
    CefRefPtr<CefBrowser> browser = client->GetBrowser();
    CefRefPtr<RenderHandler> renderHandler = client->renderHandler();
    std::vector<unsigned char> buffer(static_cast<size_t>(kWidth) * kHeight * 4);
    std::vector<unsigned char> copyA(buffer.size());
    std::vector<unsigned char> copyB(buffer.size());
    const CefRenderHandler::RectList whole{CefRect(0, 0, kWidth, kHeight)};

    PaintStart paintStart;
    instrument::controls.setAllEnabled(true);
    instrument::listeners.add(&paintStart);
    std::vector<double> road;
    std::vector<double> painted;
    std::vector<double> onPaint;
    std::vector<double> faults;
    std::vector<double> copies;
    for (int round = 0; round < kRounds; ++round)
    {
        // A different frame each round, as a page that changes everywhere would send.
        std::memset(buffer.data(), round & 0xff, buffer.size());

        const long faultsBefore = minorFaults();
        const double start = nowMs();
        // Here the engine thread is the main thread: the signals run as direct calls, so the
        // measured time is the library's own work without the queue between the threads.
        renderHandler->OnPaint(browser, PET_VIEW, whole, buffer.data(), kWidth, kHeight);
        const double updated = nowMs();
        view->repaint();
        const double shown = nowMs();
        faults.push_back(static_cast<double>(minorFaults() - faultsBefore));
        road.push_back(paintStart.at - start);
        painted.push_back(shown - start);
        onPaint.push_back(updated - start);

        const double copyStart = nowMs();
        std::memcpy(copyA.data(), buffer.data(), buffer.size());
        std::memcpy(copyB.data(), copyA.data(), buffer.size());
        copies.push_back(nowMs() - copyStart);
    }

    const double roadMs = median(road);
    const double copiesMs = median(copies);
    std::printf("frame road at %dx%d, median of %d rounds:\n", kWidth, kHeight, kRounds);
    std::printf("  OnPaint to end of onViewUpdated: %.3f ms\n", median(onPaint));
    std::printf("  OnPaint to paintEvent:           %.3f ms\n", roadMs);
    std::printf("  OnPaint to end of paintEvent:    %.3f ms (with Qt's copy into the backing store)\n",
                median(painted));
    std::printf("  two memcpy of the frame:         %.3f ms\n", copiesMs);
    std::printf("  road / two copies:               %.2f (goal: at most 1.50)\n", roadMs / copiesMs);
    // Each frame is a fresh 8 MB allocation; when the C library maps new pages for every one,
    // the first touch of each page costs more than the copies themselves.
    std::printf("  page faults per frame:           %.0f\n", median(faults));
    instrument::listeners.remove(&paintStart);

    delete view;
    return 0;
}
