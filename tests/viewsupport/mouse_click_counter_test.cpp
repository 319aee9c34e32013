#include <QGuiApplication>
#include <QMouseEvent>
#include <QStyleHints>

#include <gtest/gtest.h>

#include "host/view_support/mouse_click_counter.h"

namespace {

class MouseClickCounterTest : public testing::Test {
 protected:
  // Feeds a press at |ms| and |position| and returns the count it leaves.
  int press(unsigned long ms,
            QPointF position = QPointF(100, 100),
            Qt::MouseButton button = Qt::LeftButton,
            QEvent::Type type = QEvent::MouseButtonPress) {
    QMouseEvent event(type, position, position, position, button, button,
                      Qt::NoModifier);
    event.setTimestamp(ms);
    m_counter.update(&event);
    return m_counter.m_count;
  }

  MouseClickCounter m_counter;
  const unsigned long m_interval = static_cast<unsigned long>(
      QGuiApplication::styleHints()->mouseDoubleClickInterval());
  const int m_distance = QGuiApplication::styleHints()->mouseDoubleClickDistance();
};

}  // namespace

TEST_F(MouseClickCounterTest, CountsQuickPressesInPlace) {
  EXPECT_EQ(press(1000), 1);
  // Qt's double click event stands for the second press.
  EXPECT_EQ(press(1000 + m_interval / 2, QPointF(100, 100), Qt::LeftButton,
                  QEvent::MouseButtonDblClick),
            2);
  EXPECT_EQ(press(1000 + m_interval, QPointF(100 + m_distance, 100)), 3);
}

TEST_F(MouseClickCounterTest, OtherEventsChangeNothing) {
  press(1000);
  QMouseEvent release(QEvent::MouseButtonRelease, QPointF(100, 100),
                      Qt::LeftButton, Qt::NoButton, Qt::NoModifier);
  m_counter.update(&release);
  QKeyEvent key(QEvent::KeyPress, Qt::Key_A, Qt::NoModifier);
  m_counter.update(&key);
  EXPECT_EQ(press(1001), 2);
}

TEST_F(MouseClickCounterTest, StartsAgainWhenTooLateTooFarOrAnotherButton) {
  press(1000);
  EXPECT_EQ(press(1000 + m_interval + 1), 1);
  EXPECT_EQ(press(1000 + m_interval + 2, QPointF(100, 101 + m_distance)), 1);
  EXPECT_EQ(press(1000 + m_interval + 3, QPointF(100, 101 + m_distance),
                  Qt::RightButton),
            1);
  // Time running backwards is not a quick press.
  EXPECT_EQ(press(5, QPointF(100, 101 + m_distance), Qt::RightButton), 1);
}
