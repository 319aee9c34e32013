#pragma once

#include "host/view_interface/iqcef_view_impl.h"

#include <QColor>
#include <QImage>
#include <QString>

#include <functional>
#include <memory>

#include <QByteArray>

class QWidget;

// Starts the engine for the views of this process, once, with the given device scale factor and
// certificate verifier.
void startEngine(float deviceScaleFactor = 1.0f,
                 std::function<bool(const QByteArray&)> certificateVerifier = nullptr);

// A top-level view of the given size under the offscreen platform, shown.
std::unique_ptr<IQCefViewImpl> makeView(int width, int height);

// Runs the Qt event loop until `done` holds or `timeoutMs` passed; whether it held.
bool waitUntil(const std::function<bool()>& done, int timeoutMs = 15000);

// Waits until the view shows a frame of its own size in which `check` holds.
bool waitForFrame(IQCefViewImpl* view, const std::function<bool(const QImage&)>& check, int timeoutMs = 15000);

// The view as the screen shows it.
QImage grabView(IQCefViewImpl* view);

bool sameColor(QRgb pixel, const QColor& expected);

// A page from inline HTML, as a data: URL.
QUrl htmlPage(const QString& html);

// Loads url and waits (15 s at most) until it has finished loading and a frame of the view's size
// has arrived: a frame alone may still be the blank page before it.
bool loadAndWait(IQCefViewImpl* view, const QUrl& url);

// Answers the next modal dialog the way the user would.
void answerNextDialog(std::function<void(QWidget*)> answer);
