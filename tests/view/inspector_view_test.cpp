#include "view_harness.h"
#include "view_access.h"

#include "handlers/context_menu_handler.h"

#include <QFile>
#include <QMenu>
#include <QProcess>
#include <QTest>

#include <gtest/gtest.h>

#include "support/private_x_server.h"

namespace
{
// The names of the top-level windows on the current display.
QString windowNames()
{
    QProcess list;
    list.start(QStringLiteral("xwininfo"), {QStringLiteral("-root"), QStringLiteral("-tree")});
    list.waitForFinished(5000);
    return QString::fromLocal8Bit(list.readAllStandardOutput());
}

// Points DISPLAY at a private X server for the scope, where the inspector's window can open.
class InspectorDisplay
{
public:
    InspectorDisplay() : m_display(qgetenv("DISPLAY")), m_hadDisplay(qEnvironmentVariableIsSet("DISPLAY"))
    {
        if (!m_server.display().isEmpty())
            qputenv("DISPLAY", m_server.display().toLatin1());
    }
    ~InspectorDisplay()
    {
        if (m_hadDisplay)
            qputenv("DISPLAY", m_display);
        else
            qunsetenv("DISPLAY");
    }
    bool running() const { return !m_server.display().isEmpty(); }

private:
    brovia_test::PrivateXServer m_server;
    QByteArray m_display;
    bool m_hadDisplay;
};

// Starts the engine and shows |html| in a new view; null if the page did not load.
std::unique_ptr<IQCefViewImpl> showPage(const QString& html)
{
    startEngine();
    auto view = makeView(300, 200);
    return loadAndWait(view.get(), htmlPage(html)) ? std::move(view) : nullptr;
}
} // namespace

// The inspector opens a full Chromium's window: on a display of the test's own.
class Inspector : public ::testing::Test
{
protected:
    void SetUp() override
    {
        if (!QFile::exists(QStringLiteral("/usr/lib/chromium/chromium")))
            GTEST_SKIP() << "no full Chromium";
        ASSERT_TRUE(m_display.running()) << "Xvfb did not start";
    }

private:
    InspectorDisplay m_display;
};

TEST_F(Inspector, APageOpensAndClosesTheInspectorWindow)
{
    auto view = showPage(QStringLiteral("<title>inspected</title><p>page</p>"));
    ASSERT_TRUE(view);

    view->runJavaScript(QStringLiteral("cefclient('openDevTools')"), [](const QVariant&) {});
    // The front end names its window after the page it reached.
    EXPECT_TRUE(waitUntil([] { return windowNames().contains(QLatin1String("\"DevTools - data:")); }, 20000))
        << windowNames().toStdString();
    view->runJavaScript(QStringLiteral("cefclient('closeDevTools')"), [](const QVariant&) {});
    EXPECT_TRUE(waitUntil([] { return !windowNames().contains(QLatin1String("DevTools")); }, 20000));
}

TEST_F(Inspector, TheContextMenusInspectItemOpensItAndTheViewKeepsItsOwnBrowser)
{
    auto view = showPage(QStringLiteral("<title>by menu</title><p>page</p>"));
    ASSERT_TRUE(view);
    view->setContextMenuEnabled(true);
    view->setInspectEnabled(true);
    BrowserClient* client = QCefViewImplTestAccess::client(static_cast<QCefViewImpl*>(view.get()));
    ASSERT_NE(client, nullptr);
    const CefRefPtr<CefBrowser> main = client->GetBrowser();
    ASSERT_TRUE(main);

    QTest::mouseClick(view.get(), Qt::RightButton, Qt::NoModifier, QPoint(150, 150));
    QMenu* menu = nullptr;
    ASSERT_TRUE(waitUntil([&] { return (menu = view->findChild<QMenu*>()) != nullptr; }));
    QAction* inspect = nullptr;
    for (QAction* action : menu->actions())
        if (action->data().toInt() == ContextMenuHandler::kInspectCommandId)
            inspect = action;
    ASSERT_NE(inspect, nullptr);
    inspect->trigger();
    menu->hide();
    EXPECT_TRUE(waitUntil([] { return windowNames().contains(QLatin1String("\"DevTools - data:")); }, 20000))
        << windowNames().toStdString();
    EXPECT_TRUE(main->GetHost()->HasDevTools());

    // The inspector came to the view's handlers as a popup: its own browser stays the one it uses.
    CefRefPtr<CefBrowser> held = client->GetBrowser();
    ASSERT_TRUE(held);
    EXPECT_TRUE(held->IsSame(main));
    EXPECT_FALSE(held->IsPopup());
    EXPECT_EQ(client->GetBrowserId(), main->GetIdentifier());
    EXPECT_EQ(view->runJavaScriptSync(QStringLiteral("document.title"), std::chrono::milliseconds(5000)).toString(),
              QStringLiteral("by menu"));

    // The view going takes the inspector along.
    held = nullptr;
    view.reset();
    EXPECT_TRUE(waitUntil([] { return !windowNames().contains(QLatin1String("DevTools")); }, 20000));
    EXPECT_TRUE(waitUntil([&] { return !main->IsValid(); }));
}
