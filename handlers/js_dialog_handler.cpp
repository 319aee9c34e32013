#include "handlers/js_dialog_handler.h"

#include "host/view_support/conversions.h"

#include "include/base/cef_bind.h"
#include "include/base/cef_callback.h"
#include "include/cef_task.h"
#include "include/wrapper/cef_closure_task.h"

#include <QCoreApplication>
#include <QInputDialog>
#include <QLineEdit>
#include <QMessageBox>

JSDialogHandler::JSDialogHandler(QWidget* view)
    : m_view(view)
{
    connect(this, &JSDialogHandler::jsDialogRequested, this, &JSDialogHandler::showDefaultDialog);
}

bool JSDialogHandler::OnJSDialog(CefRefPtr<CefBrowser> browser, const CefString& origin_url,
                                 JSDialogType dialog_type, const CefString& message_text,
                                 const CefString& default_prompt_text, CefRefPtr<CefJSDialogCallback> callback,
                                 bool& suppress_message)
{
    m_callback = callback;
    QCefDataTypes::JSDialogType type = QCefDataTypes::Alert;
    if (dialog_type == JSDIALOGTYPE_CONFIRM)
        type = QCefDataTypes::Confirm;
    else if (dialog_type == JSDIALOGTYPE_PROMPT)
        type = QCefDataTypes::Prompt;
    Q_EMIT jsDialogRequested(Conversions::convertString(origin_url), type, Conversions::convertString(message_text),
                             Conversions::convertString(default_prompt_text));
    return true;
}

bool JSDialogHandler::OnBeforeUnloadDialog(CefRefPtr<CefBrowser> browser, const CefString& message_text,
                                           bool is_reload, CefRefPtr<CefJSDialogCallback> callback)
{
    return false;
}

void JSDialogHandler::OnResetDialogState(CefRefPtr<CefBrowser> browser) {}

void JSDialogHandler::setHandledByHost(bool handled)
{
    if (handled)
        disconnect(this, &JSDialogHandler::jsDialogRequested, this, &JSDialogHandler::showDefaultDialog);
}

void JSDialogHandler::continueDialog(bool success, const QString& userInput)
{
    {
        std::lock_guard<std::mutex> lock(m_answerMutex);
        m_success = success;
        m_userInput = userInput;
    }
    runCallback();
}

void JSDialogHandler::runCallback()
{
    if (!CefCurrentlyOn(TID_UI))
    {
        // The task reads the members when it runs.
        CefPostTask(TID_UI, base::BindOnce(&JSDialogHandler::runCallback, CefRefPtr<JSDialogHandler>(this)));
        return;
    }
    bool success = false;
    QString userInput;
    {
        std::lock_guard<std::mutex> lock(m_answerMutex);
        success = m_success;
        userInput = m_userInput;
    }
    // An answer without a request has nobody to go to.
    if (m_callback)
        m_callback->Continue(success, Conversions::convertString(userInput));
}

void JSDialogHandler::setView(QWidget* view)
{
    m_view = view;
}

void JSDialogHandler::showDefaultDialog(const QString& orginalUrl, QCefDataTypes::JSDialogType type,
                                        const QString& messageText, const QString& defaultPromptText)
{
    // A request that was on its way when the view went: the page is not left waiting.
    if (!m_view)
    {
        continueDialog(false, QString());
        return;
    }
    // The client, and with it this handler, may lose its last other holder during the nested
    // event loop of the dialog; the view may be destroyed then too, taking its child dialog.
    CefRefPtr<JSDialogHandler> self(this);
    bool answer = false;
    QString text;
    if (type == QCefDataTypes::Prompt)
    {
        QPointer<QInputDialog> dialog = new QInputDialog(m_view);
        dialog->setModal(true);
        dialog->setWindowFlag(Qt::FramelessWindowHint, true);
        dialog->setLabelText(messageText);
        dialog->setTextEchoMode(QLineEdit::Normal);
        dialog->setStyleSheet(QStringLiteral("QInputDialog{border: 0.5px solid black; background-color:white}"));
        const int result = dialog->exec();
        if (dialog)
        {
            answer = result == QDialog::Accepted;
            // Also after a cancel; the page's default text is not offered.
            text = dialog->textValue();
            delete dialog;
        }
    }
    else
    {
        QPointer<QMessageBox> box = new QMessageBox(m_view);
        box->setModal(true);
        box->setWindowFlag(Qt::FramelessWindowHint, true);
        box->setText(messageText);
        box->setStyleSheet(QStringLiteral("QMessageBox{border: 0.5px solid black; background-color:white}"));
        if (type == QCefDataTypes::Confirm)
            box->setStandardButtons(QMessageBox::Ok | QMessageBox::Cancel);
        else
            box->setStandardButtons(QMessageBox::Ok);
        box->setDefaultButton(QMessageBox::Ok);
        const int result = box->exec();
        if (box)
        {
            answer = result == QMessageBox::Ok;
            delete box;
        }
    }
    continueDialog(answer, text);
    // Let go through the event loop: this object must not die inside its own slot.
    QMetaObject::invokeMethod(
        QCoreApplication::instance(), [self] {}, Qt::QueuedConnection);
}
