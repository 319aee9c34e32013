#include "fakes.h"

#include "engine/life_span_handler.h"

#include "include/base/cef_callback.h"
#include "include/cef_app.h"
#include "include/wrapper/cef_closure_task.h"

#include <gtest/gtest.h>

#include <chrono>
#include <cstdlib>
#include <functional>
#include <future>

namespace
{
using Entries = std::vector<std::string>;

// Runs the statements in a fresh process with the engine running on its own UI thread; the test
// fails when an expectation in that process fails or it dies.
#define WITH_ENGINE(...)                                                                                   \
    EXPECT_EXIT(                                                                                           \
        {                                                                                                  \
            CefSettings settings;                                                                          \
            settings.multi_threaded_message_loop = true;                                                   \
            settings.no_sandbox = true;                                                                    \
            if (!CefInitialize(CefMainArgs(0, nullptr), settings, nullptr, nullptr))                       \
                std::exit(2);                                                                              \
            __VA_ARGS__;                                                                                   \
            CefShutdown();                                                                                 \
            std::exit(::testing::Test::HasFailure() ? 1 : 0);                                             \
        },                                                                                                 \
        ::testing::ExitedWithCode(0), "")

// Runs `task` on the engine UI thread and waits for it.
void onUiThread(std::function<void()> task)
{
    std::promise<void> done;
    ASSERT_TRUE(CefPostTask(TID_UI, base::BindOnce(
                                        [](std::function<void()>* task, std::promise<void>* done) {
                                            (*task)();
                                            done->set_value();
                                        },
                                        &task, &done)));
    ASSERT_EQ(done.get_future().wait_for(std::chrono::seconds(20)), std::future_status::ready);
}

TEST(LifeSpanHandler, FirstBrowserIsTheMainOneAndItsCloseClearsIt)
{
    CefRefPtr<LifeSpanHandler> handler = new LifeSpanHandler();
    EXPECT_FALSE(handler->getBrowser());

    CefRefPtr<TestBrowser> main = new TestBrowser(7, false);
    CefRefPtr<TestBrowser> other = new TestBrowser(8, false);
    handler->OnAfterCreated(main.get());
    handler->OnAfterCreated(other.get());
    EXPECT_EQ(handler->getBrowser().get(), main.get());
    EXPECT_EQ(handler->getBrowserId(), 7);

    // Only the main browser's close sets the flag; CEF always goes on with its own close.
    EXPECT_FALSE(handler->DoClose(main.get()));
    EXPECT_TRUE(handler->getIsClosing());

    // A browser that is neither main nor a known popup changes nothing.
    handler->OnBeforeClose(other.get());
    EXPECT_EQ(handler->getBrowser().get(), main.get());

    handler->OnBeforeClose(main.get());
    EXPECT_FALSE(handler->getBrowser());

    // With the main browser gone the next one to arrive is the main one, whatever its kind.
    CefRefPtr<TestBrowser> popup = new TestBrowser(9, true);
    handler->OnAfterCreated(popup.get());
    EXPECT_EQ(handler->getBrowser().get(), popup.get());
    EXPECT_EQ(handler->getBrowserId(), 9);
}

TEST(LifeSpanHandler, PopupRequestNavigatesTheRequestingFrame)
{
    CefRefPtr<LifeSpanHandler> handler = new LifeSpanHandler();
    CefRefPtr<TestBrowser> browser = new TestBrowser(1, false);
    CefRefPtr<FakeFrame> frame = new FakeFrame("https://a.test/", false);
    CefWindowInfo windowInfo;
    CefRefPtr<CefClient> client;
    CefBrowserSettings settings;
    CefRefPtr<CefDictionaryValue> extra;
    bool noScript = false;
    EXPECT_TRUE(handler->OnBeforePopup(browser.get(), frame.get(), "https://b.test/x", "_blank",
                                       CEF_WOD_NEW_FOREGROUND_TAB, true, CefPopupFeatures(), windowInfo, client,
                                       settings, extra, &noScript));
    EXPECT_EQ(frame->loaded, Entries{"https://b.test/x"});
}

TEST(LifeSpanHandler, ClosesPopupsThenMainBrowserOnTheEngineUiThread)
{
    WITH_ENGINE({
        HostLog log;
        CefRefPtr<LifeSpanHandler> handler = new LifeSpanHandler();
        CefRefPtr<TestBrowser> main = new TestBrowser(1, false, &log, "main");
        CefRefPtr<TestBrowser> first = new TestBrowser(2, true, &log, "first");
        CefRefPtr<TestBrowser> second = new TestBrowser(3, true, &log, "second");
        CefRefPtr<TestBrowser> stranger = new TestBrowser(4, true, &log, "stranger");
        onUiThread([&] {
            handler->OnAfterCreated(main.get());
            handler->OnAfterCreated(first.get());
            handler->OnAfterCreated(second.get());
        });
        // The popups' focus was posted behind the creation; this flushes it.
        onUiThread([] {});
        EXPECT_EQ(log.entries(), (Entries{"first focus ui", "second focus ui"}));

        // An unknown popup's close leaves the list alone; a known one leaves it.
        onUiThread([&] {
            handler->OnBeforeClose(stranger.get());
            handler->OnBeforeClose(first.get());
        });

        // From another thread the close is posted: hold the UI thread so that it can't have run.
        std::promise<void> release;
        std::shared_future<void> released = release.get_future().share();
        ASSERT_TRUE(CefPostTask(TID_UI, base::BindOnce([](std::shared_future<void> wait) { wait.wait(); },
                                                       released)));
        handler->closeAllBrowsers(false);
        EXPECT_EQ(log.entries().size(), 2u);
        release.set_value();
        onUiThread([] {});
        EXPECT_EQ(log.entries(), (Entries{"first focus ui", "second focus ui", "second close ui", "main close ui"}));

        // The main browser's end forces the remaining popups and itself closed, and drops it.
        onUiThread([&] { handler->OnBeforeClose(main.get()); });
        const Entries entries = log.entries();
        EXPECT_EQ(Entries(entries.begin() + 4, entries.end()),
                  (Entries{"second close force ui", "main close force ui"}));
        EXPECT_FALSE(handler->getBrowser());

        // Without a main browser only the popups are closed.
        handler->closeAllBrowsers(true);
        onUiThread([] {});
        EXPECT_EQ(log.entries().back(), "second close force ui");
        EXPECT_EQ(log.entries().size(), 7u);
    });
}
} // namespace
