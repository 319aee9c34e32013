#include "view_harness.h"

#include <QFile>
#include <QProcess>

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
} // namespace

TEST(Inspector, APageOpensAndClosesTheInspectorWindow)
{
    if (!QFile::exists(QStringLiteral("/usr/lib/chromium/chromium")))
        GTEST_SKIP() << "no full Chromium";
    brovia_test::PrivateXServer server;
    ASSERT_FALSE(server.display().isEmpty()) << "Xvfb did not start";
    const QByteArray display = qgetenv("DISPLAY");
    qputenv("DISPLAY", server.display().toLatin1());
    startEngine();
    auto view = makeView(300, 200);
    ASSERT_TRUE(loadAndWait(view.get(), htmlPage(QStringLiteral("<title>inspected</title><p>page</p>"))));

    view->runJavaScript(QStringLiteral("cefclient('openDevTools')"), [](const QVariant&) {});
    // The front end names its window after the page it reached.
    EXPECT_TRUE(waitUntil([] { return windowNames().contains(QLatin1String("\"DevTools - data:")); }, 20000))
        << windowNames().toStdString();
    view->runJavaScript(QStringLiteral("cefclient('closeDevTools')"), [](const QVariant&) {});
    EXPECT_TRUE(waitUntil([] { return !windowNames().contains(QLatin1String("DevTools")); }, 20000));
    qputenv("DISPLAY", display);
}
