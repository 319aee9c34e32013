#include "client/browser_client.h"
#include "handlers/js_dialog_handler.h"

#include "include/cef_process_message.h"

#include <QApplication>
#include <QMetaObject>
#include <QWidget>

#include <gtest/gtest.h>

#include <memory>

using namespace std::chrono_literals;

namespace
{
// What the engine queues for a client from its UI thread; any of it may arrive after cleanup.
void deliverQueuedCommands(BrowserClient* client)
{
    QMetaObject::invokeMethod(client, "onSetZoomLevel", Qt::QueuedConnection, Q_ARG(double, 1.5));
    QMetaObject::invokeMethod(client, "onChangeZoomLevel", Qt::QueuedConnection, Q_ARG(double, 0.5));
    QMetaObject::invokeMethod(client, "onShowDevTools", Qt::QueuedConnection, Q_ARG(QPoint, QPoint(1, 1)));
    QMetaObject::invokeMethod(client, "onShowDevTools", Qt::QueuedConnection);
    QMetaObject::invokeMethod(client, "onHideDevTools", Qt::QueuedConnection);
    QMetaObject::invokeMethod(client, "onSetDownloadLocation", Qt::QueuedConnection, Q_ARG(QString, "/tmp"));
    QMetaObject::invokeMethod(client, "onMessageError", Qt::QueuedConnection, Q_ARG(QString, "bad"));
    QMetaObject::invokeMethod(client, "onDragFinished", Qt::QueuedConnection,
                              Q_ARG(Qt::DropAction, Qt::IgnoreAction));
    QApplication::processEvents();
}

void everyCommandIsANoOp(BrowserClient* client)
{
    EXPECT_FALSE(client->GetBrowser());
    EXPECT_EQ(client->GetBrowserId(), 0);
    EXPECT_EQ(client->GetZoomLevel(), 0.0);
    client->SetZoomLevel(1.0);
    client->ChangeZoomLevel(1.0);
    client->ShowInspector(QPoint(0, 0));
    client->ClearBrowsingData();
    EXPECT_TRUE(client->RepaintSync(5000ms).isNull());
    EXPECT_TRUE(client->RepaintSync2(0, 0, 0, QRect(0, 0, 5, 5), false, 5000ms).isNull());
    deliverQueuedCommands(client);
}
} // namespace

TEST(BrowserClientWithoutBrowser, CommandsBeforeTheBrowserAndAfterCleanupDoNothing)
{
    auto view = std::make_unique<QWidget>();
    CefRefPtr<BrowserClient> client = new BrowserClient(view.get());
    everyCommandIsANoOp(client.get());

    deliverQueuedCommands(client.get());
    client->cleanup();
    view.reset();
    everyCommandIsANoOp(client.get());
    EXPECT_FALSE(client->GetLifeSpanHandler());
    CefRefPtr<CefProcessMessage> message = CefProcessMessage::Create("cefclient");
    EXPECT_TRUE(client->OnProcessMessageReceived(nullptr, nullptr, PID_RENDERER, message));
    client->cleanup();
}

TEST(ScriptDialogWithoutView, ARequestThatArrivesAfterTheViewWentIsNotShown)
{
    auto view = std::make_unique<QWidget>();
    CefRefPtr<JSDialogHandler> handler = new JSDialogHandler(view.get());
    view.reset();
    // No dialog opens, which would block this test in its event loop; no answer reaches the engine.
    QMetaObject::invokeMethod(handler.get(), "showDefaultDialog", Qt::QueuedConnection,
                              Q_ARG(QString, "http://page/"), Q_ARG(QCefDataTypes::JSDialogType, QCefDataTypes::Confirm),
                              Q_ARG(QString, "sure?"), Q_ARG(QString, QString()));
    QApplication::processEvents();
    EXPECT_EQ(QApplication::activeModalWidget(), nullptr);
    handler->continueDialog(true, QStringLiteral("unasked"));
}
