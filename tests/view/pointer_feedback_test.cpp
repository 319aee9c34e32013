#include "view_harness.h"

#include <QBuffer>
#include <QCoreApplication>
#include <QMenu>
#include <QMouseEvent>
#include <QTest>

#include <gtest/gtest.h>

namespace
{
// An 8 by 6 cursor image as a data URL.
QString cursorImage()
{
    QImage image(8, 6, QImage::Format_ARGB32);
    image.fill(QColor(200, 10, 10));
    QByteArray png;
    QBuffer buffer(&png);
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, "PNG");
    return QStringLiteral("data:image/png;base64,") + QString::fromLatin1(png.toBase64());
}

QString feedbackPage()
{
    return QStringLiteral(
               "<html><body style='margin:0;font:16px sans-serif'>"
               "<a href='#x' style='position:absolute;left:10px;top:10px'>link</a>"
               "<input id='field' style='position:absolute;left:10px;top:50px;width:200px'>"
               "<p style='position:absolute;left:10px;top:90px;margin:0'>plain words</p>"
               "<div style='position:absolute;left:10px;top:130px;width:50px;height:30px;"
               "cursor:url(\"%1\") 3 4, pointer'></div>"
               "<div title='Tip here' style='position:absolute;left:100px;top:130px;width:50px;"
               "height:30px;background:#ccc'></div>"
               "<div id='quiet' style='position:absolute;left:200px;top:130px;width:50px;height:30px'></div>"
               "<script>document.addEventListener('contextmenu', e => {"
               "  if (e.target.id === 'quiet') e.preventDefault(); });</script>"
               "</body></html>")
        .arg(cursorImage());
}

void moveTo(IQCefViewImpl* view, QPoint point)
{
    QMouseEvent move(QEvent::MouseMove, point, view->mapToGlobal(point), Qt::NoButton, Qt::NoButton,
                     Qt::NoModifier);
    QCoreApplication::sendEvent(view, &move);
}

bool cursorBecomes(IQCefViewImpl* view, QPoint point, Qt::CursorShape shape)
{
    moveTo(view, point);
    return waitUntil([&] { return view->cursor().shape() == shape; }, 5000);
}
} // namespace

TEST(PointerFeedback, TheViewShowsThePagesCursorsAndTooltips)
{
    startEngine();
    auto view = makeView(300, 200);
    ASSERT_TRUE(loadAndWait(view.get(), htmlPage(feedbackPage())));

    EXPECT_TRUE(cursorBecomes(view.get(), QPoint(20, 18), Qt::PointingHandCursor));
    EXPECT_TRUE(cursorBecomes(view.get(), QPoint(250, 190), Qt::ArrowCursor));
    EXPECT_TRUE(cursorBecomes(view.get(), QPoint(60, 60), Qt::IBeamCursor));
    EXPECT_TRUE(cursorBecomes(view.get(), QPoint(250, 190), Qt::ArrowCursor));
    EXPECT_TRUE(cursorBecomes(view.get(), QPoint(25, 98), Qt::IBeamCursor));

    // A CSS cursor image arrives as a bitmap cursor with its hot spot.
    ASSERT_TRUE(cursorBecomes(view.get(), QPoint(30, 140), Qt::BitmapCursor));
    EXPECT_EQ(view->cursor().pixmap().size(), QSize(8, 6));
    EXPECT_EQ(view->cursor().hotSpot(), QPoint(3, 4));
    EXPECT_EQ(view->cursor().pixmap().toImage().pixelColor(4, 3), QColor(200, 10, 10));

    // A title shows after a moment, and goes when the pointer leaves its element.
    moveTo(view.get(), QPoint(120, 140));
    EXPECT_TRUE(waitUntil([&] { return view->toolTip() == QStringLiteral("Tip here"); }, 5000));
    moveTo(view.get(), QPoint(250, 190));
    EXPECT_TRUE(waitUntil([&] { return view->toolTip().isEmpty(); }, 5000));
}

TEST(PointerFeedback, TheCaretRectangleFollowsTyping)
{
    startEngine();
    auto view = makeView(300, 200);
    ASSERT_TRUE(loadAndWait(view.get(), htmlPage(feedbackPage())));
    view->setFocus();
    QTest::mouseClick(view.get(), Qt::LeftButton, Qt::NoModifier, QPoint(60, 60));
    ASSERT_TRUE(waitUntil([&] {
        return view->runJavaScriptSync(QStringLiteral("document.activeElement.id"), std::chrono::milliseconds(5000))
                   .toString() == QStringLiteral("field");
    }));
    const auto caret = [&] { return view->inputMethodQuery(Qt::ImCursorRectangle).toRect(); };
    ASSERT_TRUE(waitUntil([&] { return caret().x() > 10; }));
    const QRect empty = caret();
    // The field's box in the view: its text line lies inside it.
    EXPECT_LT(empty.x(), 20);
    EXPECT_GT(empty.y(), 50);
    EXPECT_LT(empty.bottom(), 80);

    QTest::keyClicks(view.get(), QStringLiteral("wwww"));
    ASSERT_TRUE(waitUntil([&] { return caret().x() > empty.x() + 20; }));
    const QRect typed = caret();
    EXPECT_EQ(typed.y(), empty.y());
    QTest::keyClick(view.get(), Qt::Key_Home);
    EXPECT_TRUE(waitUntil([&] { return caret().x() == empty.x(); }));
}

TEST(PointerFeedback, AContextMenuThePageCancelsNeverOpens)
{
    startEngine();
    auto view = makeView(300, 200);
    ASSERT_TRUE(loadAndWait(view.get(), htmlPage(feedbackPage())));
    view->setContextMenuEnabled(true);

    QTest::mouseClick(view.get(), Qt::RightButton, Qt::NoModifier, QPoint(220, 140));
    waitUntil([] { return false; }, 700);
    EXPECT_EQ(view->findChild<QMenu*>(), nullptr);

    QTest::mouseClick(view.get(), Qt::RightButton, Qt::NoModifier, QPoint(250, 190));
    QMenu* menu = nullptr;
    ASSERT_TRUE(waitUntil([&] { return (menu = view->findChild<QMenu*>()) != nullptr; }));
    menu->hide();
}
