#include "host/view_support/dpi_watcher.h"

#include <QCoreApplication>
#include <QEvent>
#include <QGuiApplication>
#include <QScreen>
#include <QThread>
#include <QWidget>

#include <climits>
#include <cmath>

namespace {

float sanitizedFactor(float factor) {
  return std::isfinite(factor) && factor > 0.0f ? factor : 1.0f;
}

qreal primaryScreenDpi() {
  const QScreen* screen = QGuiApplication::primaryScreen();
  return screen ? screen->logicalDotsPerInch() : 0.0;
}

// Saturates instead of overflowing: a small factor may push a large value
// beyond int.
int roundToInt(double value) {
  if (value >= static_cast<double>(INT_MAX))
    return INT_MAX;
  if (value <= static_cast<double>(INT_MIN))
    return INT_MIN;
  return static_cast<int>(std::lround(value));
}

}  // namespace

DpiWatcher::DpiWatcher(QWidget* view, float deviceScaleFactor)
    : m_deviceScaleFactor(sanitizedFactor(deviceScaleFactor)),
      m_settingsFactor(sanitizedFactor(deviceScaleFactor)),
      m_baseDpi(primaryScreenDpi()),
      m_screenFactor(sanitizedFactor(deviceScaleFactor)) {
  setView(view);
}

DpiWatcher::~DpiWatcher() {
  if (m_view)
    m_view->removeEventFilter(this);
}

int DpiWatcher::deviceToLogical(int value) const {
  return roundToInt(static_cast<double>(value) / m_deviceScaleFactor.load());
}

int DpiWatcher::logicalToDevice(int value) const {
  return roundToInt(static_cast<double>(value) * m_deviceScaleFactor.load());
}

void DpiWatcher::forceUpdate() {
  const float factor = m_screenFactor.load();
  {
    std::lock_guard<std::mutex> lock(m_updateMutex);
    if (factor == m_deviceScaleFactor.load())
      return;
    m_deviceScaleFactor.store(factor);
  }
  emit dpiChanged(factor);
}

void DpiWatcher::setView(QWidget* view) {
  if (m_view == view)
    return;
  if (m_view) {
    m_view->removeEventFilter(this);
    disconnect(m_viewConnection);
  }
  m_view = view;
  if (m_view) {
    m_view->installEventFilter(this);
    m_viewConnection = connect(m_view, &QObject::destroyed, this,
                               [this] { stopTrackingScreen(); });
    trackScreen();
  } else {
    stopTrackingScreen();
  }
}

bool DpiWatcher::eventFilter(QObject* watched, QEvent* event) {
  switch (event->type()) {
    case QEvent::Show:
    case QEvent::ParentChange:
    case QEvent::ScreenChangeInternal:
      trackScreen();
      break;
    default:
      break;
  }
  return QObject::eventFilter(watched, event);
}

void DpiWatcher::stopTrackingScreen() {
  disconnect(m_screenConnection);
  m_screen = nullptr;
}

void DpiWatcher::trackScreen() {
  if (!m_view)
    return;
  QScreen* screen = m_view->screen();
  if (screen != m_screen) {
    disconnect(m_screenConnection);
    m_screen = screen;
    if (screen) {
      m_screenConnection =
          connect(screen, &QScreen::logicalDotsPerInchChanged, this, [this] {
            refreshScreenFactor();
          });
    }
  }
  refreshScreenFactor();
}

void DpiWatcher::refreshScreenFactor() {
  if (!m_screen || m_baseDpi <= 0.0)
    return;
  const qreal dpi = m_screen->logicalDotsPerInch();
  if (dpi > 0.0)
    m_screenFactor.store(
        static_cast<float>(m_settingsFactor * (dpi / m_baseDpi)));
  forceUpdate();
}

void DpiWatcher::AddRef() const {
  m_refCount.AddRef();
}

bool DpiWatcher::Release() const {
  if (!m_refCount.Release())
    return false;
  auto* self = const_cast<DpiWatcher*>(this);
  // A QObject must die on its own thread while its event loop may still
  // deliver to it.
  if (QCoreApplication::instance() && QThread::currentThread() != thread())
    self->deleteLater();
  else
    delete self;
  return true;
}

bool DpiWatcher::HasOneRef() const {
  return m_refCount.HasOneRef();
}

bool DpiWatcher::HasAtLeastOneRef() const {
  return m_refCount.HasAtLeastOneRef();
}
