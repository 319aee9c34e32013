#include "handlers/cef_client_message_handler.h"

#include <QSignalSpy>

#include <gtest/gtest.h>

namespace
{
CefRefPtr<brovia::CefClientMessage> call(const std::string& method, CefRefPtr<CefListValue> args)
{
    CefRefPtr<brovia::CefClientMessage> message = new brovia::CefClientMessage();
    if (!method.empty())
        message->method = method;
    message->args = args ? args : CefListValue::Create();
    return message;
}

// [[value]], the shape of the one-argument methods.
CefRefPtr<CefListValue> wrapped(CefRefPtr<CefValue> value)
{
    CefRefPtr<CefListValue> inner = CefListValue::Create();
    inner->SetValue(0, value);
    CefRefPtr<CefListValue> outer = CefListValue::Create();
    outer->SetList(0, inner);
    return outer;
}

CefRefPtr<CefValue> integer(int number)
{
    CefRefPtr<CefValue> value = CefValue::Create();
    value->SetInt(number);
    return value;
}

CefRefPtr<CefValue> text(const std::string& string)
{
    CefRefPtr<CefValue> value = CefValue::Create();
    value->SetString(string);
    return value;
}
} // namespace

TEST(CefClientMessageHandler, KnownMethodsCheckTheirShapeAndTheRestGoToTheHost)
{
    CefRefPtr<CefClientMessageHandler> handler = new CefClientMessageHandler();
    QSignalSpy unhandled(handler.get(), &CefClientMessageHandler::unhandled);
    QSignalSpy errors(handler.get(), &CefClientMessageHandler::error);
    QSignalSpy zoom(handler.get(), &CefClientMessageHandler::setZoomLevel);
    QSignalSpy change(handler.get(), &CefClientMessageHandler::changeZoomLevel);
    QSignalSpy titles(handler.get(), &CefClientMessageHandler::titleChanged);
    QSignalSpy open(handler.get(), qOverload<QPoint>(&CefClientMessageHandler::showDevTools));

    handler->handleMessage(nullptr, call("setZoomLevel", wrapped(integer(150))));
    handler->handleMessage(nullptr, call("changeZoomLevel", wrapped(integer(-50))));
    ASSERT_EQ(zoom.size(), 1);
    EXPECT_EQ(zoom.at(0).at(0).toDouble(), 1.5);
    ASSERT_EQ(change.size(), 1);
    EXPECT_EQ(change.at(0).at(0).toDouble(), -0.5);

    // A bare integer, or a double, is no zoom value.
    CefRefPtr<CefListValue> bare = CefListValue::Create();
    bare->SetInt(0, 150);
    handler->handleMessage(nullptr, call("setZoomLevel", bare));
    CefRefPtr<CefValue> half = CefValue::Create();
    half->SetDouble(1.0);
    handler->handleMessage(nullptr, call("setZoomLevel", wrapped(half)));
    ASSERT_EQ(errors.size(), 2);
    EXPECT_EQ(errors.at(0).at(0).toString(),
              "The first argument to setZoomLevel must be a list with one Integer zoom value.");
    EXPECT_EQ(zoom.size(), 1);

    handler->handleMessage(nullptr, call("setTitle", wrapped(text("Hello"))));
    ASSERT_EQ(titles.size(), 1);
    EXPECT_EQ(titles.at(0).at(0).toString(), "Hello");
    CefRefPtr<CefListValue> two = wrapped(text("a"));
    two->GetList(0)->SetString(1, "b");
    handler->handleMessage(nullptr, call("setTitle", two));
    EXPECT_EQ(errors.last().at(0).toString(),
              "The first argument to setTitle must be a string containing the new title.");
    handler->handleMessage(nullptr, call("setDownloadLocation", bare));
    EXPECT_EQ(errors.last().at(0).toString(),
              "The first argument to setDownloadPath must be a string containing the download path.");

    handler->handleMessage(nullptr, call("openDevTools", bare));
    ASSERT_EQ(open.size(), 1);
    EXPECT_EQ(open.at(0).at(0).toPoint(), QPoint(0, 0));

    const int errorsBefore = errors.size();
    handler->handleMessage(nullptr, call("enable-dragndrop", bare));
    handler->handleMessage(nullptr, call("SetTitle", wrapped(text("x"))));
    handler->handleMessage(nullptr, call("", bare));
    EXPECT_EQ(errors.size(), errorsBefore);
    ASSERT_EQ(unhandled.size(), 2);
    EXPECT_EQ(unhandled.at(0).at(0).toString(), "SetTitle");
    EXPECT_TRUE(unhandled.at(1).at(0).toString().isEmpty());
    EXPECT_EQ(unhandled.at(1).at(1).toList(), QVariantList{150});
}

TEST(CefClientMessageHandler, PageFileDialogsCheckTheirArgumentsBeforeAnyDialog)
{
    CefRefPtr<CefClientMessageHandler> handler = new CefClientMessageHandler();
    QSignalSpy errors(handler.get(), &CefClientMessageHandler::error);

    CefRefPtr<CefListValue> types = CefListValue::Create();
    CefRefPtr<CefListValue> filters = CefListValue::Create();
    filters->SetString(0, ".txt");
    filters->SetInt(1, 5);
    types->SetList(0, filters);
    types->SetString(1, "Title");
    types->SetString(2, "/tmp");
    handler->handleMessage(nullptr, call("openFileTypes", types));
    ASSERT_EQ(errors.size(), 1);
    EXPECT_EQ(errors.at(0).at(0).toString(), "All file type filters must be strings.");

    CefRefPtr<CefListValue> twoFolders = wrapped(text("/tmp"));
    twoFolders->GetList(0)->SetString(1, "/var");
    twoFolders->SetString(1, "Title");
    handler->handleMessage(nullptr, call("openFile", twoFolders));
    EXPECT_EQ(errors.last().at(0).toString(),
              "The first argument to openFile is a list with the first element a string containing the initial folder.");
    handler->handleMessage(nullptr, call("saveFileTypes", wrapped(text("x"))));
    EXPECT_EQ(errors.last().at(0).toString(),
              "saveFileTypes takes three arguments, a list of file types, the title, and the initial directory.");
}
