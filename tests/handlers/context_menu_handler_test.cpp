#include "handlers/context_menu_handler.h"

#include "include/cef_menu_model.h"
#include "include/cef_menu_model_delegate.h"

#include <QAction>
#include <QSignalSpy>
#include <QWidget>

#include <gtest/gtest.h>

#include <memory>

namespace
{
class NoDelegate : public CefMenuModelDelegate
{
public:
    void ExecuteCommand(CefRefPtr<CefMenuModel>, int, cef_event_flags_t) override {}
    IMPLEMENT_REFCOUNTING(NoDelegate);
};

class Params : public CefContextMenuParams
{
public:
    int GetXCoord() override { return 12; }
    int GetYCoord() override { return 34; }
    TypeFlags GetTypeFlags() override { return CM_TYPEFLAG_PAGE; }
    CefString GetLinkUrl() override { return {}; }
    CefString GetUnfilteredLinkUrl() override { return {}; }
    CefString GetSourceUrl() override { return {}; }
    bool HasImageContents() override { return false; }
    CefString GetTitleText() override { return {}; }
    CefString GetPageUrl() override { return {}; }
    CefString GetFrameUrl() override { return {}; }
    CefString GetFrameCharset() override { return {}; }
    MediaType GetMediaType() override { return CM_MEDIATYPE_NONE; }
    MediaStateFlags GetMediaStateFlags() override { return CM_MEDIAFLAG_NONE; }
    CefString GetSelectionText() override { return {}; }
    CefString GetMisspelledWord() override { return {}; }
    bool GetDictionarySuggestions(std::vector<CefString>&) override { return false; }
    bool IsEditable() override { return false; }
    bool IsSpellCheckEnabled() override { return false; }
    EditStateFlags GetEditStateFlags() override { return CM_EDITFLAG_NONE; }
    bool IsCustomMenu() override { return false; }
    IMPLEMENT_REFCOUNTING(Params);
};

class Callback : public CefRunContextMenuCallback
{
public:
    void Continue(int command_id, cef_event_flags_t) override { commands.push_back(command_id); }
    void Cancel() override { ++cancels; }
    std::vector<int> commands;
    int cancels = 0;
    IMPLEMENT_REFCOUNTING(Callback);
};

CefRefPtr<CefMenuModel> pageMenu()
{
    CefRefPtr<CefMenuModel> model = CefMenuModel::CreateMenuModel(new NoDelegate);
    model->AddItem(MENU_ID_BACK, "Back");
    model->AddSeparator();
    model->AddCheckItem(MENU_ID_SPELLCHECK_SUGGESTION_0, "Check");
    model->SetChecked(MENU_ID_SPELLCHECK_SUGGESTION_0, true);
    model->AddItem(MENU_ID_COPY, "Copy");
    model->SetEnabled(MENU_ID_COPY, false);
    model->SetAccelerator(MENU_ID_COPY, 65, true, true, false);
    return model;
}
} // namespace

TEST(ContextMenuHandler, TheTwoSwitchesDecideWhetherAMenuExistsAndWhetherItInspects)
{
    QWidget view;
    CefRefPtr<ContextMenuHandler> handler = new ContextMenuHandler(&view);
    CefRefPtr<CefMenuModel> model = pageMenu();
    handler->setInspectEnabled(true);
    handler->OnBeforeContextMenu(nullptr, nullptr, new Params, model);
    EXPECT_EQ(model->GetCount(), 0u);

    model = pageMenu();
    handler->setContextMenuEnabled(true);
    handler->setInspectEnabled(false);
    handler->OnBeforeContextMenu(nullptr, nullptr, new Params, model);
    EXPECT_EQ(model->GetCount(), 4u);

    handler->setInspectEnabled(true);
    handler->OnBeforeContextMenu(nullptr, nullptr, new Params, model);
    ASSERT_EQ(model->GetCount(), 5u);
    EXPECT_EQ(model->GetCommandIdAt(4), ContextMenuHandler::kInspectCommandId);
    EXPECT_EQ(model->GetLabelAt(4).ToString(), "Inspect");

    QSignalSpy inspect(handler.get(), &ContextMenuHandler::showDevTools);
    EXPECT_FALSE(handler->OnContextMenuCommand(nullptr, nullptr, new Params, MENU_ID_COPY, EVENTFLAG_NONE));
    EXPECT_TRUE(handler->OnContextMenuCommand(nullptr, nullptr, new Params, ContextMenuHandler::kInspectCommandId,
                                              EVENTFLAG_NONE));
    ASSERT_EQ(inspect.size(), 1);
    EXPECT_EQ(inspect.at(0).at(0).toPoint(), QPoint(12, 34));
}

TEST(ContextMenuHandler, RunCopiesTheModelAndTheChosenCommandContinuesOnce)
{
    QWidget view;
    CefRefPtr<ContextMenuHandler> handler = new ContextMenuHandler(&view);
    QSignalSpy requested(handler.get(), &ContextMenuHandler::cefContextMenuRequested);
    CefRefPtr<Callback> callback = new Callback;
    ASSERT_TRUE(handler->RunContextMenu(nullptr, nullptr, new Params, pageMenu(), callback));
    ASSERT_EQ(requested.size(), 1);
    const auto state = requested.at(0).at(0).value<ContextMenuHandler::MenuModelState>();
    EXPECT_EQ(requested.at(0).at(1).toPoint(), QPoint(12, 34));
    ASSERT_EQ(state.count, 4);
    EXPECT_EQ(state.types, (std::vector<cef_menu_item_type_t>{MENUITEMTYPE_COMMAND, MENUITEMTYPE_SEPARATOR,
                                                              MENUITEMTYPE_CHECK, MENUITEMTYPE_COMMAND}));
    EXPECT_EQ(state.commandIds[3], MENU_ID_COPY);
    EXPECT_EQ(state.labels[0].ToString(), "Back");
    EXPECT_EQ(state.checked, (std::vector<bool>{false, false, true, false}));
    EXPECT_EQ(state.enabled, (std::vector<bool>{true, true, true, false}));
    EXPECT_EQ(state.acceleratorValid, (std::vector<bool>{false, false, false, true}));
    EXPECT_EQ(state.accelerators[3], 65 + 0x6000000);

    QAction action;
    action.setData(MENU_ID_COPY);
    handler->onActionTriggered(&action);
    handler->onActionTriggered(&action);
    EXPECT_EQ(callback->commands, std::vector<int>{MENU_ID_COPY});
    EXPECT_EQ(callback->cancels, 0);

    // A dying view runs no menu and keeps no callback.
    handler->setView(nullptr);
    CefRefPtr<Callback> late = new Callback;
    EXPECT_FALSE(handler->RunContextMenu(nullptr, nullptr, new Params, pageMenu(), late));
    handler->onActionTriggered(&action);
    EXPECT_TRUE(late->commands.empty());
}
