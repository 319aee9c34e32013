// The view's calls that read the page or run script in it. Qt main thread; the waits block it
// without pumping, and the engine's UI thread fulfils them.

#include "view/qcef_view_impl.h"

#include "client/browser_client.h"
#include "client/multi_threaded_future.h"
#include "client/run_java_script_callback.h"
#include "host/instrument/instrument.h"
#include "host/view_support/conversions.h"
#include "view/string_visitor.h"

#include "include/cef_browser.h"

QString QCefViewImpl::html()
{
    // One look: the browser may close between two.
    CefRefPtr<CefBrowser> browser = liveBrowser();
    if (!browser)
        return QString();
    CefRefPtr<Future<QString>> future = new MultiThreadedFuture<QString>();
    {
        // The engine holds the only reference: a request it drops ends the wait with a null string.
        CefRefPtr<StringVisitor> visitor =
            new StringVisitor([&future](const QString& source) { future->set(source); });
        browser->GetMainFrame()->GetSource(visitor);
    }
    // No limit: the engine answers every request, also for a page that went.
    return future->get(std::chrono::milliseconds(-1));
}

void QCefViewImpl::runJavaScript(const QString& script, std::function<void(const QVariant&)> callback)
{
    CefRefPtr<RunJavaScriptCallback> waiter = new RunJavaScriptCallback();
    waiter->setMode(RunJavaScriptCallback::DeliverOnMainThread);
    waiter->setCallback(callback);
    if (liveBrowser())
    {
        m_client->RunJavaScript(script, waiter);
        return;
    }
    // The only failure notice an asynchronous caller gets.
    callback(QVariant(QString()));
}

QVariant QCefViewImpl::runJavaScriptSync(const QString& cmd, std::chrono::milliseconds timeout)
{
    BROVIA_INSTRUMENT_CONTEXT("runJavaScriptSync", "cmd", cmd.toStdString());
    QVariant result;
    if (!liveBrowser())
        return result;
    CefRefPtr<Future<QVariant>> future = new MultiThreadedFuture<QVariant>();
    CefRefPtr<RunJavaScriptCallback> callback = new RunJavaScriptCallback();
    callback->setMode(RunJavaScriptCallback::DeliverOnAnyThread);
    callback->setCallback([&future](const QVariant& value) { future->set(value); });
    m_client->RunJavaScript(cmd, callback);
    result = future->get(timeout);
    // Always: a late result must find no function that refers to this stack frame.
    callback->cancel();
    return result;
}

void QCefViewImpl::find(int, const QString& text, bool forward, bool matchCase, bool findNext)
{
    CefRefPtr<CefBrowser> browser = liveBrowser();
    if (!browser)
        return;
    CefRefPtr<CefBrowserHost> host = browser->GetHost();
    if (text.isEmpty())
        host->StopFinding(true);
    else
        host->Find(Conversions::convertString(text), forward, matchCase, findNext);
}
