#include <QMouseEvent>
#include <QWheelEvent>

#include <gtest/gtest.h>

#include "fake_browser.h"
#include "host/view_support/mouse_click_event.h"
#include "host/view_support/mouse_move_event.h"
#include "host/view_support/mouse_wheel_event.h"

namespace {

QMouseEvent mouse(QEvent::Type type,
                  Qt::MouseButton button,
                  Qt::MouseButtons buttons,
                  Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
  // The widget position differs from the logical point on purpose: the
  // events must send the point they are given.
  return QMouseEvent(type, QPointF(300, 200), button, buttons, modifiers);
}

}  // namespace

TEST(MouseClickEvent, PressAndReleaseOfEachButton) {
  CefRefPtr<FakeBrowser> browser = new FakeBrowser();
  QMouseEvent leftDown =
      mouse(QEvent::MouseButtonPress, Qt::LeftButton, Qt::LeftButton,
            Qt::ShiftModifier);
  MouseClickEvent(MouseEvent::Type::Press, browser.get(), QPoint(150, 100),
                  &leftDown, 2)
      .send();
  QMouseEvent rightUp =
      mouse(QEvent::MouseButtonRelease, Qt::RightButton, Qt::NoButton);
  MouseClickEvent(MouseEvent::Type::Release, browser.get(), QPoint(-3, 7),
                  &rightUp, 1)
      .send();
  QMouseEvent middleDown = mouse(QEvent::MouseButtonPress, Qt::MiddleButton,
                                 Qt::MiddleButton | Qt::LeftButton);
  MouseClickEvent(MouseEvent::Type::Press, browser.get(), QPoint(0, 0),
                  &middleDown, 1)
      .send();

  const std::vector<MouseClick>& clicks = browser->host->clicks;
  ASSERT_EQ(clicks.size(), 3u);
  EXPECT_EQ(clicks[0].event.x, 150);
  EXPECT_EQ(clicks[0].event.y, 100);
  EXPECT_EQ(clicks[0].button, MBT_LEFT);
  EXPECT_FALSE(clicks[0].mouseUp);
  EXPECT_EQ(clicks[0].clickCount, 2);
  EXPECT_EQ(clicks[0].event.modifiers,
            static_cast<uint32_t>(EVENTFLAG_SHIFT_DOWN |
                                  EVENTFLAG_LEFT_MOUSE_BUTTON));

  EXPECT_EQ(clicks[1].event.x, -3);
  EXPECT_EQ(clicks[1].button, MBT_RIGHT);
  EXPECT_TRUE(clicks[1].mouseUp);
  EXPECT_EQ(clicks[1].event.modifiers, 0u);

  EXPECT_EQ(clicks[2].button, MBT_MIDDLE);
  EXPECT_EQ(clicks[2].event.modifiers,
            static_cast<uint32_t>(EVENTFLAG_MIDDLE_MOUSE_BUTTON |
                                  EVENTFLAG_LEFT_MOUSE_BUTTON));
}

TEST(MouseClickEvent, ButtonsUnknownToCefAreNotSent) {
  CefRefPtr<FakeBrowser> browser = new FakeBrowser();
  QMouseEvent back = mouse(QEvent::MouseButtonPress, Qt::BackButton,
                           Qt::BackButton);
  MouseClickEvent(MouseEvent::Type::Press, browser.get(), QPoint(1, 1), &back,
                  1)
      .send();
  EXPECT_TRUE(browser->host->clicks.empty());
}

TEST(MouseMoveEvent, MoveEnterAndLeave) {
  CefRefPtr<FakeBrowser> browser = new FakeBrowser();
  QMouseEvent move = mouse(QEvent::MouseMove, Qt::NoButton, Qt::LeftButton);
  MouseMoveEvent(MouseEvent::Type::Move, browser.get(), QPoint(10, 20), &move)
      .send();
  MouseMoveEvent(MouseEvent::Type::Enter, browser.get(), QPoint(11, 21), &move)
      .send();
  MouseMoveEvent(MouseEvent::Type::Leave, browser.get(), QPoint(-5, 400),
                 &move)
      .send();

  const std::vector<MouseMove>& moves = browser->host->moves;
  ASSERT_EQ(moves.size(), 3u);
  EXPECT_FALSE(moves[0].mouseLeave);
  EXPECT_EQ(moves[0].event.x, 10);
  EXPECT_EQ(moves[0].event.y, 20);
  EXPECT_EQ(moves[0].event.modifiers,
            static_cast<uint32_t>(EVENTFLAG_LEFT_MOUSE_BUTTON));
  EXPECT_FALSE(moves[1].mouseLeave);
  EXPECT_TRUE(moves[2].mouseLeave);
  EXPECT_EQ(moves[2].event.x, -5);
  EXPECT_EQ(moves[2].event.y, 400);
}

TEST(MouseWheelEvent, AngleDeltaOrPixelDelta) {
  CefRefPtr<FakeBrowser> browser = new FakeBrowser();
  QWheelEvent notch(QPointF(300, 200), QPointF(300, 200), QPoint(),
                    QPoint(0, -120), Qt::NoButton, Qt::ControlModifier,
                    Qt::NoScrollPhase, false);
  MouseWheelEvent(browser.get(), QPoint(150, 100), &notch).send();
  QWheelEvent touchpad(QPointF(0, 0), QPointF(0, 0), QPoint(7, 3), QPoint(),
                       Qt::NoButton, Qt::NoModifier, Qt::ScrollUpdate, false);
  MouseWheelEvent(browser.get(), QPoint(0, 0), &touchpad).send();

  const std::vector<MouseWheel>& wheels = browser->host->wheels;
  ASSERT_EQ(wheels.size(), 2u);
  EXPECT_EQ(wheels[0].event.x, 150);
  EXPECT_EQ(wheels[0].event.y, 100);
  EXPECT_EQ(wheels[0].deltaX, 0);
  EXPECT_EQ(wheels[0].deltaY, -120);
  EXPECT_EQ(wheels[0].event.modifiers,
            static_cast<uint32_t>(EVENTFLAG_CONTROL_DOWN));
  EXPECT_EQ(wheels[1].deltaX, 7);
  EXPECT_EQ(wheels[1].deltaY, 3);
}
