#pragma once

#include "handlers/context_menu_handler.h"

#include "host/view_interface/iqcef_view_impl.h"
#include "host/view_interface/qcef_view_settings.h"
#include "host/view_support/mouse_click_counter.h"

#include "include/cef_browser.h"

#include <QCursor>
#include <QImage>
#include <QPointer>
#include <QRect>
#include <QVector>

#include <deque>
#include <memory>
#include <utility>
#include <vector>

class BrowserClient;
class QCefWindow;
class QTemporaryFile;

// The widget the host embeds: shows the page's frames, follows the widget's size and scale, and
// carries navigation to the browser. The browser comes with the first load. Qt main thread only.
class QCefViewImpl : public IQCefViewImpl
{
    Q_OBJECT

public:
    QCefViewImpl(QWidget* parent, const QCefViewSettings& settings);
    ~QCefViewImpl() override;

    void load(const QUrl& url) override;
    void setHtml(const QString& html) override;
    QString html() override;
    void setUrl(const QUrl& url) override;
    QUrl url() const override;
    void setZoomLevel(double level) override;
    double zoomLevel() override;
    bool canGoBack() const override;
    bool canGoForward() const override;
    void runJavaScript(const QString& script, std::function<void(const QVariant&)> callback) override;
    QVariant runJavaScriptSync(const QString& cmd, std::chrono::milliseconds timeout) override;
    void repaintSync(std::chrono::milliseconds timeout) override;
    QImage repaintSync2(int x, int y, int red, const QRect& rect, bool dropFrame,
                        std::chrono::milliseconds timeout) override;
    void showDevTools() override;
    void clearBrowsingData() override;
    void setContextMenuEnabled(bool enabled) override;
    void setInspectEnabled(bool enabled) override;
    void setClipboardAccessEnabled(bool enabled) override;
    void setStoredFlag(bool value) override;
    void setNavigationFlags(int flags) override;
    void setKeyboardFlag(int value) override;
    void setCachePath(const QString& path) override;
    void setPaintFlag(bool enabled) override;
    void find(int identifier, const QString& text, bool forward, bool matchCase, bool findNext) override;
    void setJSDialogHandledByHost(bool handled) override;
    void continueJSDialog(bool success, const QString& userInput) override;
    void setViewPortMinimumSizeSync(const QSize& size) override;
    void setViewPortMinimumSize(const QSize& size) override;
    void setDirtyRectHandlingDisabled(bool disabled) override;
    QSize getRenderedImageSize() const override;
    void setPrintDialogEnabled(bool enabled) override;
    QString cachePath() override;
    void disableEvents() override;

    QVariant inputMethodQuery(Qt::InputMethodQuery query) const override;

public Q_SLOTS:
    void back() override;
    void forward() override;
    void reload() override;
    void stop() override;

protected Q_SLOTS:
    void onViewUpdated(QImage image, QVector<QRect> dirtyRects);
    void onCursorChanged(QCursor cursor);
    void onImeRectChanged(QRect rect);
    void onDpiChanged(float deviceScaleFactor);
    void onTooltipChanged(QString text);
    void onUrlChanged(QUrl url);
    void onFocusLost(bool focusNext);
    void onCefContextMenuRequested(ContextMenuHandler::MenuModelState state, QPoint point);
    void onCefPrintDialogRequested(int browserId);

protected:
    bool event(QEvent* e) override;
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;

    // Input goes to the page; see qcef_view_impl_input.cpp. Qt main thread.
    void keyPressEvent(QKeyEvent* event) override;
    void keyReleaseEvent(QKeyEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void enterEvent(QEvent* event) override;
    void leaveEvent(QEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    void inputMethodEvent(QInputMethodEvent* event) override;
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dragMoveEvent(QDragMoveEvent* event) override;
    void dragLeaveEvent(QDragLeaveEvent* event) override;
    void dropEvent(QDropEvent* event) override;

public:
    // Qt main thread: shows the file dialog the page or the engine asked for, and answers it.
    void onCefFileDialogRequested(int mode, const QString& default_file_path, const QString& fileFilter);

private:
    void initializeBrowserClient(const QUrl& url);
    void connectBrowserClient();
    // The browser, or null without client or browser and once the client is cleaned up.
    CefRefPtr<CefBrowser> liveBrowser() const;
    // The browser's host, or null without client or browser.
    CefRefPtr<CefBrowserHost> browserHost() const;
    // The browser when the view has a client and the client a browser; else null, and input is
    // dropped.
    CefRefPtr<CefBrowser> inputBrowser() const;
    // Widget pixels to the engine's logical pixels, rounding as qRound does.
    QPoint logicalPoint(const QPointF& position) const;
    // Whether a key goes to the page, and whether it counts as consumed, by the keyboard mode.
    bool shouldForwardKey(QKeyEvent* event) const;
    bool shouldAcceptKey(QKeyEvent* event) const;
    // Sets the widget's minimum and tells the engine; false without a browser, changing nothing.
    bool applyViewPortMinimumSize(const QSize& size);

    int m_renderingMode;
    int m_keyboardMode;
    QString m_cachePath;
    CefRefPtr<BrowserClient> m_client;
    QPointer<QCefWindow> m_window;
    bool m_eventsEnabled = true;
    std::deque<QImage> m_repaintImages;
    std::vector<std::pair<QRect, QImage>> m_pendingUpdates;
    QRect m_imeRect;
    MouseClickCounter m_clickCounter;
    bool m_printDialogEnabled = false;
    bool m_clipboardAccessEnabled = false;
    bool m_storedFlag = false;
    bool m_paintFlag = false;
    bool m_dirtyRectHandlingDisabled = false;
    int m_navigationFlags = 4;
    int m_keyboardFlag = 0;
    std::vector<QString> m_tempHtmlFiles;
    // The files behind m_tempHtmlFiles, open; each removes its file when it goes.
    std::vector<std::unique_ptr<QTemporaryFile>> m_tempHtmlStore;

    friend class QCefViewImplTestAccess;
};
