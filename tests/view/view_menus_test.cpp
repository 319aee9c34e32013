#include "view_harness.h"
#include "view_access.h"

#include <QActionGroup>
#include <QMenu>

#include <gtest/gtest.h>

namespace
{
void addItem(ContextMenuHandler::MenuModelState& state, cef_menu_item_type_t type, const char* label, int command,
             int group = -1, bool visible = true)
{
    ++state.count;
    state.types.push_back(type);
    state.labels.push_back(label);
    state.checked.push_back(type == MENUITEMTYPE_CHECK);
    state.commandIds.push_back(command);
    state.groupIds.push_back(group);
    state.enabled.push_back(command != 3);
    state.visible.push_back(visible);
    state.hasAccelerator.push_back(command == 1);
    state.acceleratorValid.push_back(command == 1);
    state.accelerators.push_back(command == 1 ? 0x43 + 0x4000000 : 0);
}
} // namespace

TEST(ViewMenus, TheContextMenuIsBuiltFromTheEnginesModel)
{
    startEngine();
    auto view = makeView(200, 100);
    ASSERT_TRUE(loadAndWait(view.get(), htmlPage(QStringLiteral("<p>menu</p>"))));

    ContextMenuHandler::MenuModelState state;
    addItem(state, MENUITEMTYPE_COMMAND, "Copy", 1);
    addItem(state, MENUITEMTYPE_SEPARATOR, "", -1);
    addItem(state, MENUITEMTYPE_CHECK, "Spelling", 3, 7);
    addItem(state, MENUITEMTYPE_CHECK, "Grammar", 4, 7);
    addItem(state, MENUITEMTYPE_RADIO, "Small", 5, 8);
    addItem(state, MENUITEMTYPE_RADIO, "Large", 6, 8, false);
    addItem(state, MENUITEMTYPE_SUBMENU, "More", 9);
    QCefViewImplTestAccess::requestMenu(static_cast<QCefViewImpl*>(view.get()), state, QPoint(10, 10));

    auto* menu = view->findChild<QMenu*>();
    ASSERT_NE(menu, nullptr);
    const QList<QAction*> actions = menu->actions();
    ASSERT_EQ(actions.size(), 6);  // the sub-menu is left out, the hidden item is not
    EXPECT_EQ(actions[0]->shortcut(), QKeySequence(Qt::CTRL + Qt::Key_C));
    EXPECT_EQ(actions[0]->data().toInt(), 1);
    EXPECT_TRUE(actions[1]->isSeparator());
    EXPECT_FALSE(actions[2]->isEnabled());
    EXPECT_TRUE(actions[2]->isChecked());
    ASSERT_NE(actions[2]->actionGroup(), nullptr);
    EXPECT_EQ(actions[2]->actionGroup(), actions[3]->actionGroup());
    EXPECT_FALSE(actions[2]->actionGroup()->isExclusive());
    ASSERT_NE(actions[4]->actionGroup(), nullptr);
    EXPECT_TRUE(actions[4]->actionGroup()->isExclusive());
    EXPECT_FALSE(actions[5]->isVisible());
    menu->hide();
}
