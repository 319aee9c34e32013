#include <QCoreApplication>
#include <QGuiApplication>
#include <QPointer>
#include <QScreen>
#include <QSignalSpy>
#include <QWidget>

#include <cmath>
#include <limits>
#include <thread>

#include <gtest/gtest.h>

#include "host/view_support/dpi_watcher.h"

// Qt's platform interface (a private API of QtGui, whose header Debian does not
// ship) is the only way to change a screen's DPI on the offscreen platform.
class QWindowSystemInterface {
 public:
  static void handleScreenLogicalDotsPerInchChange(QScreen* screen,
                                                   qreal dpiX,
                                                   qreal dpiY);
  static bool flushWindowSystemEvents(QEventLoop::ProcessEventsFlags flags);
};

namespace {

void setScreenDpi(qreal dpi) {
  QWindowSystemInterface::handleScreenLogicalDotsPerInchChange(
      QGuiApplication::primaryScreen(), dpi, dpi);
  QWindowSystemInterface::flushWindowSystemEvents(QEventLoop::AllEvents);
}

// Restores the screen's DPI whatever the test did.
class DpiWatcherTest : public testing::Test {
 protected:
  void TearDown() override { setScreenDpi(m_dpi); }

  const qreal m_dpi = QGuiApplication::primaryScreen()->logicalDotsPerInch();
};

}  // namespace

TEST_F(DpiWatcherTest, IdentityAtOne) {
  CefRefPtr<DpiWatcher> watcher = new DpiWatcher(nullptr, 1.0f);
  for (int value : {0, 1, 299, 301, -17, 1 << 30}) {
    EXPECT_EQ(watcher->deviceToLogical(value), value);
    EXPECT_EQ(watcher->logicalToDevice(value), value);
  }
}

TEST_F(DpiWatcherTest, ScalesAndRoundsToNearest) {
  CefRefPtr<DpiWatcher> watcher = new DpiWatcher(nullptr, 2.0f);
  EXPECT_FLOAT_EQ(watcher->m_deviceScaleFactor, 2.0f);
  EXPECT_EQ(watcher->deviceToLogical(300), 150);
  EXPECT_EQ(watcher->deviceToLogical(301), 151);
  EXPECT_EQ(watcher->deviceToLogical(-301), -151);
  EXPECT_EQ(watcher->logicalToDevice(151), 302);

  CefRefPtr<DpiWatcher> fractional = new DpiWatcher(nullptr, 1.5f);
  EXPECT_EQ(fractional->deviceToLogical(301), 201);
  EXPECT_EQ(fractional->logicalToDevice(201), 302);
  EXPECT_EQ(fractional->logicalToDevice(std::numeric_limits<int>::max()),
            std::numeric_limits<int>::max());
}

TEST_F(DpiWatcherTest, UnusableSettingsFactorMeansOne) {
  for (float bad : {0.0f, -2.0f, std::nanf(""),
                    std::numeric_limits<float>::infinity()}) {
    CefRefPtr<DpiWatcher> watcher = new DpiWatcher(nullptr, bad);
    EXPECT_FLOAT_EQ(watcher->m_deviceScaleFactor, 1.0f);
    EXPECT_EQ(watcher->deviceToLogical(300), 300);
  }
}

TEST_F(DpiWatcherTest, FollowsTheScreenFromTheSettingsFactor) {
  QWidget view;
  view.resize(200, 100);
  view.show();
  CefRefPtr<DpiWatcher> watcher = new DpiWatcher(&view, 1.5f);
  QSignalSpy changes(watcher.get(), &DpiWatcher::dpiChanged);
  watcher->forceUpdate();
  EXPECT_FLOAT_EQ(watcher->m_deviceScaleFactor, 1.5f);
  EXPECT_EQ(changes.count(), 0);

  setScreenDpi(m_dpi * 2);
  ASSERT_EQ(changes.count(), 1);
  EXPECT_FLOAT_EQ(changes.at(0).at(0).toFloat(), 3.0f);
  EXPECT_FLOAT_EQ(watcher->m_deviceScaleFactor, 3.0f);
  EXPECT_EQ(watcher->deviceToLogical(300), 100);
  watcher->forceUpdate();
  EXPECT_EQ(changes.count(), 1);  // announced once
}

TEST_F(DpiWatcherTest, WithoutViewKeepsTheLastFactor) {
  auto view = std::make_unique<QWidget>();
  view->show();
  CefRefPtr<DpiWatcher> watcher = new DpiWatcher(view.get(), 1.0f);
  setScreenDpi(m_dpi * 2);
  ASSERT_FLOAT_EQ(watcher->m_deviceScaleFactor, 2.0f);

  watcher->setView(nullptr);
  setScreenDpi(m_dpi);
  watcher->forceUpdate();
  EXPECT_FLOAT_EQ(watcher->m_deviceScaleFactor, 2.0f);

  // A view destroyed while watched is as good as none.
  watcher->setView(view.get());
  EXPECT_FLOAT_EQ(watcher->m_deviceScaleFactor, 1.0f);
  view.reset();
  setScreenDpi(m_dpi * 3);
  watcher->forceUpdate();
  EXPECT_FLOAT_EQ(watcher->m_deviceScaleFactor, 1.0f);
}

TEST_F(DpiWatcherTest, LastReleaseOnAnotherThreadDeletesOnItsOwn) {
  CefRefPtr<DpiWatcher> watcher = new DpiWatcher(nullptr, 1.0f);
  QPointer<DpiWatcher> alive(watcher.get());
  std::thread([held = std::move(watcher)]() mutable { held = nullptr; }).join();
  EXPECT_TRUE(alive);
  QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
  EXPECT_FALSE(alive);
}
