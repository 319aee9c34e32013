#include "view_harness.h"

#include <QElapsedTimer>
#include <QSignalSpy>
#include <QVariantList>
#include <QVariantMap>

#include <gtest/gtest.h>

using namespace std::chrono_literals;

TEST(PageAccess, ScriptsGiveTheirValuesBothWaysAndTheSourceComesBack)
{
    startEngine();
    auto view = makeView(300, 200);

    // Before the first load there is no browser: answers come at once.
    EXPECT_FALSE(view->runJavaScriptSync(QStringLiteral("1 + 1"), 5000ms).isValid());
    bool calledAtOnce = false;
    view->runJavaScript(QStringLiteral("1"), [&](const QVariant& value) {
        calledAtOnce = value.isValid() && value.toString().isNull();
    });
    EXPECT_TRUE(calledAtOnce);
    EXPECT_TRUE(view->html().isNull());

    ASSERT_TRUE(loadAndWait(view.get(), htmlPage(QStringLiteral("<html><head><title>T</title></head>"
                                                                "<body><p id='p'>para</p></body></html>"))));

    EXPECT_EQ(view->runJavaScriptSync(QStringLiteral("6 * 7"), 10000ms), QVariant(42));
    EXPECT_EQ(view->runJavaScriptSync(QStringLiteral("document.getElementById('p').textContent"), 10000ms),
              QVariant(QStringLiteral("para")));
    const QVariant object = view->runJavaScriptSync(QStringLiteral("({list: [1, 'two', true], half: 0.5})"), 10000ms);
    const QVariantMap map = object.toMap();
    EXPECT_EQ(map.value("list").toList(), (QVariantList{1, QStringLiteral("two"), true}));
    EXPECT_EQ(map.value("half").toDouble(), 0.5);
    // A script that throws still answers, with nothing.
    EXPECT_FALSE(view->runJavaScriptSync(QStringLiteral("throw new Error('x')"), 10000ms).isValid());
    // Nor is a host's script a click: after all of them the page has never seen a user's activation.
    EXPECT_EQ(view->runJavaScriptSync(QStringLiteral("navigator.userActivation.hasBeenActive"), 10000ms),
              QVariant(false));

    // Two scripts in flight, each answered in its own callback.
    QVariant first;
    QVariant second;
    view->runJavaScript(QStringLiteral("'one'"), [&](const QVariant& value) { first = value; });
    view->runJavaScript(QStringLiteral("'two'"), [&](const QVariant& value) { second = value; });
    EXPECT_TRUE(waitUntil([&] { return first.isValid() && second.isValid(); }));
    EXPECT_EQ(first, QVariant(QStringLiteral("one")));
    EXPECT_EQ(second, QVariant(QStringLiteral("two")));

    // A wait that gives up returns at once and leaves nothing behind for the late answer. The
    // script is slow on purpose: a quick one may be answered before the wait even looks.
    EXPECT_FALSE(view->runJavaScriptSync(
                         QStringLiteral("(() => { const end = Date.now() + 100; while (Date.now() < end); "
                                        "return 'late'; })()"),
                         0ms)
                     .isValid());
    waitUntil([] { return false; }, 300);

    const QString source = view->html();
    EXPECT_TRUE(source.contains(QStringLiteral("<p id=\"p\">para</p>"))) << source.toStdString();
}

TEST(PageAccess, AScriptRightAfterTheFirstLoadWaitsForThePage)
{
    startEngine();
    auto view = makeView(300, 200);
    // load() returns once the browser exists, while Chromium may still be making the page: the
    // script waits for it rather than getting lost.
    view->load(htmlPage(QStringLiteral("<p>x</p>")));
    EXPECT_EQ(view->runJavaScriptSync(QStringLiteral("6 * 7"), 20000ms), QVariant(42));
}

TEST(PageAccess, APageCallsHostMethodsByName)
{
    startEngine();
    auto view = makeView(300, 200);
    QSignalSpy calls(view.get(), &IQCefViewImpl::receivedCefClientMessage);
    QSignalSpy titles(view.get(), &IQCefViewImpl::titleChanged);
    QSignalSpy console(view.get(), &IQCefViewImpl::javaScriptConsoleMessage);
    ASSERT_TRUE(loadAndWait(view.get(), htmlPage(QStringLiteral("<p>calls</p>"))));

    view->runJavaScript(QStringLiteral("cefclient('hostMethod', [1, 'two'], true); "
                                       "cefclient('setTitle', ['From the page']); "
                                       "cefclient('setTitle', 'bare'); "
                                       "cefclient('setZoomLevel', [150])"),
                        [](const QVariant&) {});
    ASSERT_TRUE(waitUntil([&] { return !calls.isEmpty(); }));
    EXPECT_EQ(calls.at(0).at(0).toString(), "hostMethod");
    EXPECT_EQ(calls.at(0).at(1).toList(), (QVariantList{QVariantList{1, QStringLiteral("two")}, true}));
    EXPECT_TRUE(waitUntil([&] {
        return !titles.isEmpty() && titles.last().at(0).toString() == QStringLiteral("From the page");
    }));
    // A malformed call becomes a warning in the page's console.
    EXPECT_TRUE(waitUntil([&] {
        for (const auto& message : console)
            if (message.at(0).toString().contains(QStringLiteral("must be an array")))
                return true;
        return false;
    }));
    EXPECT_TRUE(waitUntil([&] { return view->zoomLevel() == 1.5; }));
}
