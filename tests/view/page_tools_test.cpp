#include "view_harness.h"

#include "include/internal/cef_types.h"

#include <QMenu>
#include <QSignalSpy>
#include <QTest>

#include <gtest/gtest.h>

TEST(PageTools, FindReportsMatchesAndARightClickOpensTheEnginesMenu)
{
    startEngine();
    auto view = makeView(300, 200);
    QSignalSpy results(view.get(), &IQCefViewImpl::searchResultsReady);
    QSignalSpy loads(view.get(), &IQCefViewImpl::loadStarted);
    ASSERT_TRUE(loadAndWait(view.get(), htmlPage(QStringLiteral("<p>apple pie, apple tart, apple juice</p>"))));

    view->find(0, QStringLiteral("apple"), true, false, false);
    ASSERT_TRUE(waitUntil([&] { return !results.isEmpty(); }));
    EXPECT_EQ(results.last().at(1).toInt(), 3);
    EXPECT_EQ(results.last().at(3).toInt(), 1);
    view->find(0, QStringLiteral("apple"), true, false, true);
    ASSERT_TRUE(waitUntil([&] { return results.size() == 2; }));
    EXPECT_EQ(results.last().at(3).toInt(), 2);
    view->find(0, QString(), true, false, false);

    // Without the switch the page gets no menu; with it, the engine's items, and Reload reloads.
    QTest::mouseClick(view.get(), Qt::RightButton, Qt::NoModifier, QPoint(150, 150));
    waitUntil([] { return false; }, 300);
    EXPECT_EQ(view->findChild<QMenu*>(), nullptr);
    view->setContextMenuEnabled(true);
    QTest::mouseClick(view.get(), Qt::RightButton, Qt::NoModifier, QPoint(150, 150));
    QMenu* menu = nullptr;
    ASSERT_TRUE(waitUntil([&] { return (menu = view->findChild<QMenu*>()) != nullptr; }));
    QAction* reload = nullptr;
    for (QAction* action : menu->actions())
        if (action->data().toInt() == MENU_ID_RELOAD)
            reload = action;
    ASSERT_NE(reload, nullptr);
    const int loadsBefore = loads.size();
    reload->trigger();
    menu->hide();
    EXPECT_TRUE(waitUntil([&] { return loads.size() > loadsBefore; }));
}
