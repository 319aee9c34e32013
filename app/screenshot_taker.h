#pragma once

#include <QElapsedTimer>
#include <QObject>
#include <QString>
#include <QTimer>

class DemoWindow;

// Saves a picture of the window once its page has loaded and a frame of the page's current size
// has been painted in the view, then quits the application with 0; with 1 after a failed load
// or when nothing arrives in time. Qt main thread.
class ScreenshotTaker : public QObject
{
    Q_OBJECT

public:
    ScreenshotTaker(DemoWindow* window, const QString& fileName, int timeoutMs);

private:
    void onPageLoaded(bool ok);
    void poll();
    void finish(int exitCode, const QString& message);

    DemoWindow* m_window;
    QString m_fileName;
    int m_timeoutMs;
    bool m_loaded = false;
    int m_settledPolls = 0;
    QElapsedTimer m_clock;
    QTimer m_poll;
};
