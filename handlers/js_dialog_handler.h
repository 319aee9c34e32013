#pragma once

#include "host/view_interface/qcef_data_types.h"

#include "include/cef_jsdialog_handler.h"

#include <QObject>
#include <QPointer>
#include <QString>
#include <QWidget>

#include <mutex>

// The page's alert, confirm and prompt for one browser, as a Qt signal. By default the handler
// answers its own signal with a modal Qt dialog; a host that takes over answers through the view.
// The engine calls it on its UI thread; the dialogs run on the Qt main thread.
class JSDialogHandler : public QObject, public CefJSDialogHandler
{
    Q_OBJECT

public:
    explicit JSDialogHandler(QWidget* view);

    // Engine UI thread. Always true: the page waits for continueDialog.
    bool OnJSDialog(CefRefPtr<CefBrowser> browser, const CefString& origin_url, JSDialogType dialog_type,
                    const CefString& message_text, const CefString& default_prompt_text,
                    CefRefPtr<CefJSDialogCallback> callback, bool& suppress_message) override;
    // False: leaving a page never asks through this class.
    bool OnBeforeUnloadDialog(CefRefPtr<CefBrowser> browser, const CefString& message_text, bool is_reload,
                              CefRefPtr<CefJSDialogCallback> callback) override;
    void OnResetDialogState(CefRefPtr<CefBrowser> browser) override;

    // Qt main thread: the host answers the dialogs from now on; there is no way back.
    void setHandledByHost(bool handled);
    // Any thread: the answer to the dialog that was requested last; nothing without one.
    void continueDialog(bool success, const QString& userInput);
    // Qt main thread: the parent of the built-in dialogs; null at clean-up, after which a dialog
    // still on its way is answered as cancelled without being shown.
    void setView(QWidget* view);
    // Hands the stored answer to the engine on its UI thread.
    void runCallback();

public Q_SLOTS:
    // Qt main thread: the built-in dialog, modal over the view.
    void showDefaultDialog(const QString& orginalUrl, QCefDataTypes::JSDialogType type, const QString& messageText,
                           const QString& defaultPromptText);

Q_SIGNALS:
    void jsDialogRequested(QString orginalUrl, QCefDataTypes::JSDialogType type, QString messageText,
                           QString defaultPromptText);

private:
    QPointer<QWidget> m_view;
    CefRefPtr<CefJSDialogCallback> m_callback;
    // The answer is written on the Qt main thread and read on the engine UI thread.
    std::mutex m_answerMutex;
    bool m_success = false;
    QString m_userInput;

    IMPLEMENT_REFCOUNTING(JSDialogHandler);
};
