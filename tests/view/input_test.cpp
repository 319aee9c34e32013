#include "view_harness.h"

#include "view/view_impl_service.h"
#include "host/view_interface/qcef_view_settings.h"

#include <QApplication>
#include <QKeyEvent>
#include <QLineEdit>
#include <QVBoxLayout>
#include <QSignalSpy>
#include <QTest>

#include <gtest/gtest.h>

namespace
{
// A box that turns green when clicked, and a field that shows what was typed in the title.
const QString kPage = QStringLiteral(
    "<html><body style='margin:0;background:#0000ff'>"
    "<div id='box' style='position:absolute;left:20px;top:20px;width:60px;height:40px;background:#ff0000'"
    " onclick=\"this.style.background='#00ff00'; field.focus()\"></div>"
    "<input id='field' style='position:absolute;left:20px;top:100px' oninput='document.title = this.value'>"
    "</body></html>");
} // namespace

TEST(ViewInput, ClicksAndKeysReachThePageAndZoomKeysStayWithTheHost)
{
    startEngine();
    auto view = makeView(300, 200);
    QSignalSpy titles(view.get(), &IQCefViewImpl::titleChanged);
    view->load(htmlPage(kPage));
    ASSERT_TRUE(waitForFrame(view.get(), [](const QImage& f) { return sameColor(f.pixel(50, 40), Qt::red); }));

    QTest::mouseClick(view.get(), Qt::LeftButton, Qt::NoModifier, QPoint(50, 40));
    ASSERT_TRUE(waitForFrame(view.get(), [](const QImage& f) { return sameColor(f.pixel(50, 40), Qt::green); }));

    QTest::keyClicks(view.get(), QStringLiteral("hi"));
    EXPECT_TRUE(waitUntil([&] { return !titles.isEmpty() && titles.last().at(0).toString() == "hi"; }));

    // Ctrl+= asks the host to zoom and is left to the host's shortcuts; the view zooms nothing.
    QSignalSpy zoomIn(view.get(), &IQCefViewImpl::zoomInRequested);
    QKeyEvent zoomKey(QEvent::KeyPress, Qt::Key_Equal, Qt::ControlModifier, QStringLiteral("="));
    QCoreApplication::sendEvent(view.get(), &zoomKey);
    EXPECT_EQ(zoomIn.size(), 1);
    EXPECT_FALSE(zoomKey.isAccepted());
    EXPECT_EQ(view->zoomLevel(), 0.0);

    QSignalSpy search(view.get(), &IQCefViewImpl::searchTriggered);
    QKeyEvent find(QEvent::KeyPress, Qt::Key_F, Qt::ControlModifier, QStringLiteral("f"));
    QCoreApplication::sendEvent(view.get(), &find);
    EXPECT_EQ(search.size(), 1);

    // The host answers a zoom request: the page grows, the frame keeps its size.
    view->setZoomLevel(100.0);
    EXPECT_DOUBLE_EQ(view->zoomLevel(), 8.827469119589406);
    EXPECT_TRUE(waitForFrame(view.get(), [](const QImage& f) { return sameColor(f.pixel(150, 150), Qt::green); }));
    view->setZoomLevel(0.0);
    EXPECT_TRUE(waitForFrame(view.get(), [](const QImage& f) { return sameColor(f.pixel(150, 150), Qt::blue); }));
}

TEST(ViewInput, TabPastThePageHandsTheFocusToTheNextWidget)
{
    startEngine();
    QWidget window;
    auto* layout = new QVBoxLayout(&window);
    IQCefViewImpl* view = QCefViewImplService::create(&window, QCefViewSettings());
    auto* after = new QLineEdit(&window);
    layout->addWidget(view);
    layout->addWidget(after);
    window.resize(300, 260);
    window.show();
    QApplication::setActiveWindow(&window);
    ASSERT_TRUE(loadAndWait(view, htmlPage(QStringLiteral("<input id='only' autofocus>"))));
    view->setFocus();
    ASSERT_TRUE(waitUntil([&] { return view->hasFocus(); }));
    ASSERT_TRUE(waitUntil([&] {
        return view->runJavaScriptSync(QStringLiteral("document.activeElement.id"), std::chrono::milliseconds(5000))
                   .toString() == QStringLiteral("only");
    }));

    QTest::keyClick(view, Qt::Key_Tab);
    EXPECT_TRUE(waitUntil([&] { return after->hasFocus(); }));
}
