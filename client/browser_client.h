#pragma once

#include <QObject>

#include <atomic>

// The hub of one view: owns the engine callback handlers, forwards their signals to the view and
// carries the view's commands to the browser.
class BrowserClient : public QObject
{
    Q_OBJECT

public:
    BrowserClient() = default;

    // Qt main thread: the single orderly teardown, called by the view's destructor and by the
    // engine manager when the application quits. A second call does nothing more.
    void cleanup();

    bool isCleanedUp() const { return m_cleanedUp; }

private:
    std::atomic<bool> m_cleanedUp{false};
};
