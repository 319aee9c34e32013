#pragma once

#include <QElapsedTimer>
#include <QObject>
#include <QString>
#include <QTimer>
#include <QVector>

#include <functional>

class DemoWindow;

// Drives the demo window through its features once the demo page has loaded and saves a picture
// after each step into a folder (01-page.png, 02-...), popups and dialogs drawn over the window.
// Quits the application with 0 at the end, with 1 when a step sees nothing in time. Qt main thread.
class TourGuide : public QObject
{
    Q_OBJECT

public:
    TourGuide(DemoWindow* window, const QString& folder, int stepTimeoutMs);

private:
    struct Step
    {
        QString name;
        std::function<void()> act;
        // True once what the step shows is there.
        std::function<bool()> ready;
        // A step the engine may not offer is skipped when nothing comes.
        bool optional = false;
    };

    void addSteps();
    void poll();
    void begin(int index);
    bool capture(const QString& name);
    void finish(int exitCode, const QString& message);

    DemoWindow* m_window;
    QString m_folder;
    int m_stepTimeoutMs;
    QVector<Step> m_steps;
    int m_index = -1;
    int m_saved = 0;
    int m_settledPolls = 0;
    QElapsedTimer m_stepClock;
    QTimer m_poll;

    bool m_loaded = false;
    bool m_scriptDone = false;
    bool m_hostCalled = false;
    bool m_findDone = false;
    qint64 m_downloadSent = 0;
    qint64 m_downloadTotal = 0;
};
