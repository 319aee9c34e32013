#include "engine_access.h"

#include "include/base/cef_bind.h"
#include "include/base/cef_callback.h"
#include "include/cef_app.h"
#include "include/cef_task.h"
#include "include/wrapper/cef_closure_task.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QTimer>

#include <gtest/gtest.h>

#include <atomic>
#include <cstdlib>
#include <thread>

namespace
{
int state(const CefRefPtr<MessagePump>& pump)
{
    return MessagePumpTestAccess::state(*pump);
}
const QTimer& timer(const CefRefPtr<MessagePump>& pump)
{
    return MessagePumpTestAccess::timer(*pump);
}
void processPostedEvents()
{
    QCoreApplication::sendPostedEvents();
    QCoreApplication::processEvents();
}
} // namespace

TEST(MessagePump, ImmediateRequestsQueueAPassAndPositiveOnesArmTheTimer)
{
    CefRefPtr<MessagePump> pump = new MessagePump(100);
    pump->doWork(); // state 0: ignored, nothing scheduled
    EXPECT_EQ(state(pump), 0);
    processPostedEvents();
    EXPECT_FALSE(timer(pump).isActive());

    pump->scheduleWork(0);
    EXPECT_EQ(state(pump), 1);
    EXPECT_FALSE(timer(pump).isActive());
    processPostedEvents(); // the queued pass runs and re-arms with the longest delay
    EXPECT_TRUE(timer(pump).isActive());
    EXPECT_EQ(timer(pump).interval(), 100);

    CefRefPtr<MessagePump> negative = new MessagePump(100);
    negative->scheduleWork(-1);
    EXPECT_FALSE(timer(negative).isActive());
    processPostedEvents();
    EXPECT_TRUE(timer(negative).isActive());

    CefRefPtr<MessagePump> soon = new MessagePump(100);
    soon->scheduleWork(1);
    EXPECT_TRUE(timer(soon).isActive());
    EXPECT_EQ(timer(soon).interval(), 1);
    soon->scheduleWork(0); // a pending timer is neither shortened nor replaced
    EXPECT_EQ(timer(soon).interval(), 1);

    CefRefPtr<MessagePump> capped = new MessagePump(100);
    capped->scheduleWork(101);
    EXPECT_EQ(timer(capped).interval(), 100);
}

TEST(MessagePump, StoppedPumpStaysStopped)
{
    CefRefPtr<MessagePump> pump = new MessagePump(50);
    pump->scheduleWork(10);
    pump->stop();
    EXPECT_EQ(state(pump), 3);
    EXPECT_FALSE(timer(pump).isActive());
    pump->scheduleWork(0);
    pump->doWork();
    processPostedEvents();
    EXPECT_EQ(state(pump), 3);
    EXPECT_FALSE(timer(pump).isActive());
}

TEST(MessagePump, ApplicationStartsOnePumpAndStopsIt)
{
    CefRefPtr<BrowserApp> app = new BrowserApp();
    app->stopMessagePump(); // without a pump: nothing
    app->startMessagePump();
    MessagePump* first = BrowserAppTestAccess::pump(*app);
    ASSERT_NE(first, nullptr);
    app->startMessagePump();
    EXPECT_EQ(BrowserAppTestAccess::pump(*app), first);
    app->stopMessagePump();
    EXPECT_EQ(MessagePumpTestAccess::state(*first), 3);
}

// An engine started with an external pump runs its UI work inside the Qt event loop of the
// thread that started it, driven by the engine's own pump requests.
void runEngineWithExternalPump()
{
    CefRefPtr<BrowserApp> app = new BrowserApp();
    app->startMessagePump();
    CefSettings settings;
    settings.no_sandbox = 1;
    settings.windowless_rendering_enabled = 1;
    settings.multi_threaded_message_loop = 0;
    settings.external_message_pump = 1;
    char program[] = "";
    char* argv[] = {program, nullptr};
    CefMainArgs args(1, argv);
    if (!CefInitialize(args, settings, app.get(), nullptr))
        std::exit(2);

    const std::thread::id mainThread = std::this_thread::get_id();
    std::atomic<bool> ranOnMain{false};
    std::thread poster([&] {
        CefPostTask(TID_UI, base::BindOnce(
                                [](std::atomic<bool>* flag, std::thread::id main) {
                                    *flag = std::this_thread::get_id() == main;
                                },
                                &ranOnMain, mainThread));
    });
    poster.join();

    QElapsedTimer clock;
    clock.start();
    while (!ranOnMain && clock.elapsed() < 10000)
        QCoreApplication::processEvents(QEventLoop::AllEvents, 50);

    const bool ok = ranOnMain && BrowserAppTestAccess::initValue(*app) == 2;
    app->stopMessagePump();
    CefShutdown();
    std::exit(ok ? 0 : 1);
}

TEST(MessagePump, DrivesAnEngineWithExternalPump)
{
    EXPECT_EXIT(runEngineWithExternalPump(), ::testing::ExitedWithCode(0), "");
}
