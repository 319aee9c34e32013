#pragma once

#include <QMainWindow>
#include <QUrl>

class IQCefViewImpl;
class QAction;
class QLabel;
class QLineEdit;

// A small browser window around one view: address field, history buttons, reload or stop, a load
// indicator, and the page's title as the window's title. Qt main thread.
class DemoWindow : public QMainWindow
{
    Q_OBJECT

public:
    explicit DemoWindow(QWidget* parent = nullptr);

    IQCefViewImpl* view() const { return m_view; }

    // Opens the bundled demo page.
    void openDemoPage();
    void open(const QUrl& url);

Q_SIGNALS:
    // A main-frame load ended; ok is false for a failed load.
    void pageLoaded(bool ok);

private:
    void onLoadStateChanged(const QString& url, bool isLoading, bool canGoBack, bool canGoForward);
    void onAddressEntered();

    IQCefViewImpl* m_view = nullptr;
    QLineEdit* m_address = nullptr;
    QAction* m_back = nullptr;
    QAction* m_forward = nullptr;
    QAction* m_reloadOrStop = nullptr;
    QLabel* m_status = nullptr;
    bool m_loading = false;
};
