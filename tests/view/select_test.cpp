#include "view_harness.h"

#include "libcef/osr/frame_source_choice.h"

#include <QTest>

#include <gtest/gtest.h>

using namespace std::chrono_literals;

namespace
{
// A drop-down on a background of its own colour.
const QString kPage = QStringLiteral(
    "<html><body style='margin:0;background:#336699'>"
    "<select id='s' style='position:absolute;left:20px;top:20px;width:120px;font-size:16px'>"
    "<option>one</option><option>two</option><option>three</option></select>"
    "</body></html>");

const QColor kBackground(0x33, 0x66, 0x99);

QString value(IQCefViewImpl* view)
{
    return view->runJavaScriptSync(QStringLiteral("s.value"), 5000ms).toString();
}

// The lowest row below the control, at x, that is not the page's background: the list's bottom.
int listBottom(const QImage& frame, int x, int top)
{
    int bottom = -1;
    for (int y = top; y < frame.height(); ++y)
    {
        if (!sameColor(frame.pixel(x, y), kBackground))
            bottom = y;
    }
    return bottom;
}
} // namespace

// A real <select>: the list opens as the engine's popup, over the page in the view; a click on an
// option and the keys Up and Enter pick values, Escape closes it.
TEST(ViewSelect, TheListOpensInTheViewAndTakesTheMouseAndTheKeys)
{
    startEngine();
    if (!cefengine::FrameSourceChoice::Get(std::string()).x11)
        GTEST_SKIP() << "drop-down lists need the X frame source";
    auto view = makeView(300, 200);
    ASSERT_TRUE(loadAndWait(view.get(), htmlPage(kPage)));
    ASSERT_TRUE(waitForFrame(view.get(), [](const QImage& f) { return sameColor(f.pixel(80, 90), kBackground); }));
    EXPECT_EQ(value(view.get()), QStringLiteral("one"));

    // Open: below the control the list covers the background.
    QTest::mouseClick(view.get(), Qt::LeftButton, Qt::NoModifier, QPoint(60, 30));
    ASSERT_TRUE(waitForFrame(view.get(), [](const QImage& f) { return !sameColor(f.pixel(60, 60), kBackground); }));
    // Let the list settle at its size, then click its last option.
    QTest::qWait(200);
    const int bottom = listBottom(grabView(view.get()), 60, 45);
    ASSERT_GT(bottom, 60);
    QTest::mouseMove(view.get(), QPoint(60, bottom - 6));
    QTest::mouseClick(view.get(), Qt::LeftButton, Qt::NoModifier, QPoint(60, bottom - 6));
    EXPECT_TRUE(waitUntil([&] { return value(view.get()) == QStringLiteral("three"); }, 10000));
    // Closed: the page shows again where the list was.
    EXPECT_TRUE(waitForFrame(view.get(), [](const QImage& f) { return sameColor(f.pixel(60, 60), kBackground); }));

    // Open again, one up and Enter.
    QTest::mouseClick(view.get(), Qt::LeftButton, Qt::NoModifier, QPoint(60, 30));
    ASSERT_TRUE(waitForFrame(view.get(), [](const QImage& f) { return !sameColor(f.pixel(60, 60), kBackground); }));
    QTest::keyClick(view.get(), Qt::Key_Up);
    QTest::keyClick(view.get(), Qt::Key_Return);
    EXPECT_TRUE(waitUntil([&] { return value(view.get()) == QStringLiteral("two"); }, 10000));
    EXPECT_TRUE(waitForFrame(view.get(), [](const QImage& f) { return sameColor(f.pixel(60, 60), kBackground); }));

    // Escape closes it and keeps the value.
    QTest::mouseClick(view.get(), Qt::LeftButton, Qt::NoModifier, QPoint(60, 30));
    ASSERT_TRUE(waitForFrame(view.get(), [](const QImage& f) { return !sameColor(f.pixel(60, 60), kBackground); }));
    QTest::keyClick(view.get(), Qt::Key_Escape);
    EXPECT_TRUE(waitForFrame(view.get(), [](const QImage& f) { return sameColor(f.pixel(60, 60), kBackground); }));
    EXPECT_EQ(value(view.get()), QStringLiteral("two"));
}
