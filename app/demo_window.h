#pragma once

#include <QMainWindow>
#include <QUrl>
#include <QVariant>

class DemoServer;
class FindBar;
class IQCefViewImpl;
class QAction;
class QLabel;
class QLineEdit;
class QProgressBar;

// A small browser window around one view that shows what the library does: navigation, zoom,
// find, printing, the inspector, downloads with progress, the page's context menu, script and
// file dialogs, and calls both ways between page and host. Qt main thread.
class DemoWindow : public QMainWindow
{
    Q_OBJECT

public:
    explicit DemoWindow(QWidget* parent = nullptr);

    IQCefViewImpl* view() const { return m_view; }

    // Opens the bundled demo page, served from the loopback interface.
    void openDemoPage();
    void open(const QUrl& url);

    void zoomIn();
    void zoomOut();
    void resetZoom();
    // Opens the find bar; a non-empty text is searched at once.
    void openFind(const QString& text = QString());
    void closeFind();
    // Writes into the demo page and reads back from it.
    void runHostScript();

Q_SIGNALS:
    // A main-frame load ended; ok is false for a failed load.
    void pageLoaded(bool ok);
    void hostScriptFinished(const QVariant& result);
    void pageCalledHost(const QString& method);
    // The page's report on a find; final is true for the last report of a search.
    void matchesFound(int count, int index, bool final);
    void downloadProgressed(qint64 sent, qint64 total);

private:
    void buildToolBars();
    void onLoadStateChanged(const QString& url, bool isLoading, bool canGoBack, bool canGoForward);
    void onAddressEntered();
    void onPageMessage(const QString& method, const QList<QVariant>& args);
    void onDownloadProgress(const QString& fileName, qint64 sent, qint64 total);
    void onDownloadFinished(const QString& fileName, bool ok);
    void setZoom(double level);

    IQCefViewImpl* m_view = nullptr;
    FindBar* m_findBar = nullptr;
    DemoServer* m_server = nullptr;
    QLineEdit* m_address = nullptr;
    QAction* m_back = nullptr;
    QAction* m_forward = nullptr;
    QAction* m_reloadOrStop = nullptr;
    QAction* m_zoomReset = nullptr;
    QLabel* m_status = nullptr;
    QProgressBar* m_download = nullptr;
    bool m_loading = false;
    bool m_browserMade = false;
    // The view's zoom as this window last set it; kept here since reading it back blocks.
    double m_zoomLevel = 0.0;
};
