#include "view_harness.h"

#include <gtest/gtest.h>

using namespace std::chrono_literals;

TEST(RepaintSync, TheViewShowsThePageAsItIsNowAndAWatchWaitsForItsMarker)
{
    startEngine();
    auto view = makeView(200, 100);
    EXPECT_TRUE(view->repaintSync2(0, 0, 0, QRect(0, 0, 1, 1), false, 100ms).isNull());
    view->load(htmlPage(QStringLiteral("<body style='margin:0;background:#ff0000'></body>")));
    ASSERT_TRUE(waitForFrame(view.get(), [](const QImage& f) { return sameColor(f.pixel(50, 50), Qt::red); }));

    // The frame that comes back shows what the page did before, without the event loop running.
    // Whole-frame painting, since a pending whole-widget update would win over the synchronous
    // frame otherwise.
    view->setDirtyRectHandlingDisabled(true);
    view->runJavaScriptSync(QStringLiteral("document.body.style.background = '#0000ff'"), 10000ms);
    view->repaintSync(10000ms);
    EXPECT_TRUE(sameColor(grabView(view.get()).pixel(50, 50), Qt::blue));

    // The page paints a marker a little later; the watch returns the part of that frame.
    view->runJavaScript(QStringLiteral("setTimeout(() => document.body.style.background = '#4d0000', 200)"),
                        [](const QVariant&) {});
    const QImage marked = view->repaintSync2(10, 10, 0x4d, QRect(0, 0, 20, 20), true, 10000ms);
    ASSERT_EQ(marked.size(), QSize(20, 20));
    EXPECT_EQ(qRed(marked.pixel(10, 10)), 0x4d);

    // Round trips given up at once: their late answers meet the next round trip, which still works.
    view->repaintSync(0ms);
    view->repaintSync(0ms);
    view->repaintSync(10000ms);
    EXPECT_TRUE(sameColor(grabView(view.get()).pixel(50, 50), QColor(0x4d, 0, 0)));

    // A marker that never comes: the wait ends at its time, and frames flow again.
    EXPECT_TRUE(view->repaintSync2(10, 10, 0x11, QRect(0, 0, 20, 20), true, 300ms).isNull());
    view->runJavaScript(QStringLiteral("document.body.style.background = '#00ff00'"), [](const QVariant&) {});
    EXPECT_TRUE(waitForFrame(view.get(), [](const QImage& f) { return sameColor(f.pixel(50, 50), Qt::green); }));
}
