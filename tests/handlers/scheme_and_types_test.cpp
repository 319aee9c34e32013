#include "fakes.h"

#include "handlers/request_handler.h"
#include "handlers/torvex_scheme_handler.h"
#include "handlers/torvex_scheme_handler_factory.h"
#include "host/view_interface/qcef_data_types.h"

#include <QCoreApplication>
#include <QMetaType>

#include <gtest/gtest.h>

namespace
{
TEST(TorvexScheme, EveryRequestEndsCancelledWithoutABody)
{
    CefRefPtr<TorvexSchemeHandlerFactory> factory = new TorvexSchemeHandlerFactory();
    CefRefPtr<CefResourceHandler> handler = factory->Create(nullptr, nullptr, "torvex", new FakeRequest("torvex://x"));
    ASSERT_TRUE(handler);
    EXPECT_NE(handler.get(), factory->Create(nullptr, nullptr, "torvex", nullptr).get());

    // Open declines, so the engine falls back to ProcessRequest, which cancels.
    bool handleRequest = true;
    CefRefPtr<CountingCallback> callback = new CountingCallback();
    EXPECT_FALSE(handler->Open(new FakeRequest("torvex://x"), handleRequest, callback.get()));
    EXPECT_FALSE(handleRequest);
    EXPECT_FALSE(handler->ProcessRequest(new FakeRequest("torvex://x"), callback.get()));
    EXPECT_EQ(callback->continued + callback->cancelled, 0);
}

TEST(DataTypes, EnumsTravelThroughQueuedSignalsByTheirFullNames)
{
    EXPECT_EQ(QMetaType::type("QCefDataTypes::TerminationReason"),
              qMetaTypeId<QCefDataTypes::TerminationReason>());
    EXPECT_EQ(QMetaType::type("QCefDataTypes::JSDialogType"), qMetaTypeId<QCefDataTypes::JSDialogType>());
    EXPECT_EQ(qRegisterMetaType<QCefDataTypes::JSDialogType>("QCefDataTypes::JSDialogType"),
              qMetaTypeId<QCefDataTypes::JSDialogType>());

    CefRefPtr<RequestHandler> handler = new RequestHandler();
    QObject receiver;
    QList<QCefDataTypes::TerminationReason> received;
    // Queued by name: the connection is refused if the argument type isn't registered under it.
    const QMetaObject::Connection byName =
        QObject::connect(handler.get(), SIGNAL(renderProcessTerminated(QCefDataTypes::TerminationReason)),
                         &receiver, SLOT(deleteLater()), Qt::QueuedConnection);
    EXPECT_TRUE(byName);
    QObject::disconnect(byName);
    QObject::connect(
        handler.get(), &RequestHandler::renderProcessTerminated, &receiver,
        [&](QCefDataTypes::TerminationReason reason) { received.append(reason); }, Qt::QueuedConnection);
    handler->OnRenderProcessTerminated(nullptr, TS_PROCESS_CRASHED, 0, CefString());
    EXPECT_TRUE(received.isEmpty());
    QCoreApplication::processEvents();
    EXPECT_EQ(received, QList<QCefDataTypes::TerminationReason>{QCefDataTypes::ProcessCrashed});
}
} // namespace
