// The scale factor of one view: CEF's logical pixels are the view's pixels
// divided by it. It starts at the factor of the settings and follows the
// logical DPI of the view's screen from there: moving the view to a screen of
// twice the DPI, or the desktop's DPI setting doubling, doubles it. Qt's own
// device pixel ratio is deliberately ignored: the view paints frames
// unscaled, one frame pixel per widget pixel, so Qt's scaling already applies.
//
// Threads: created, given views and destroyed on the Qt main thread, which
// also follows the screen and keeps the latest screen factor in an atomic.
// forceUpdate() only reads that atomic, so the CEF UI thread may call it
// without waiting on the Qt main thread.

#pragma once

#include <QObject>
#include <QPointer>

#include <atomic>
#include <mutex>

#include "include/cef_base.h"

class QScreen;
class QWidget;

class DpiWatcher : public QObject, public virtual CefBaseRefCounted {
  Q_OBJECT

 public:
  // |deviceScaleFactor| from the settings; a value that is not a positive
  // finite number counts as 1.0. Qt main thread.
  DpiWatcher(QWidget* view, float deviceScaleFactor);

  // Device (widget) pixels to logical pixels and back, rounded to the nearest
  // integer, halves away from zero. Both are the identity at 1.0. Any thread.
  int deviceToLogical(int value) const;
  int logicalToDevice(int value) const;

  // Takes over the latest factor of the view's screen, and raises dpiChanged
  // if it differs. Any thread; RenderHandler calls it on the CEF UI thread.
  void forceUpdate();

  // Watches |view| instead; null stops watching and keeps the last factor.
  // Qt main thread.
  void setView(QWidget* view);

  void AddRef() const override;
  // The last release deletes the watcher on its own thread, or later through
  // the event loop when it happens on another thread.
  bool Release() const override;
  bool HasOneRef() const override;
  bool HasAtLeastOneRef() const override;

  // The current factor. Written by forceUpdate only, read on any thread.
  std::atomic<float> m_deviceScaleFactor;

 signals:
  // Raised by forceUpdate, on the thread that called it.
  void dpiChanged(float deviceScaleFactor);

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  ~DpiWatcher() override;

  // Finds the view's screen, follows its DPI and refreshes the factor. Qt
  // main thread.
  void trackScreen();
  // Without a view nothing changes the factor any more. Qt main thread.
  void stopTrackingScreen();
  // Recomputes the screen factor from the tracked screen. Qt main thread.
  void refreshScreenFactor();

  const float m_settingsFactor;
  // Logical DPI at which the settings factor applies: the primary screen's
  // when the watcher was made; 0 if there was none.
  const qreal m_baseDpi;
  QPointer<QWidget> m_view;
  QPointer<QScreen> m_screen;
  QMetaObject::Connection m_viewConnection;
  QMetaObject::Connection m_screenConnection;
  // The factor that forceUpdate takes over, written on the Qt main thread.
  std::atomic<float> m_screenFactor;
  // Makes forceUpdate's compare and store one step, so that a change is
  // announced once.
  std::mutex m_updateMutex;
  CefRefCount m_refCount;
};
