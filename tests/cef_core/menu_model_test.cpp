#include "include/cef_menu_model.h"
#include "include/cef_menu_model_delegate.h"

#include <gtest/gtest.h>

namespace {

class Delegate : public CefMenuModelDelegate {
 public:
  void ExecuteCommand(CefRefPtr<CefMenuModel>, int, cef_event_flags_t) override {}
  IMPLEMENT_REFCOUNTING(Delegate);
};

}  // namespace

TEST(MenuModelTest, ItemsByIndexAndCommandWithTheirStates) {
  EXPECT_EQ(CefMenuModel::CreateMenuModel(nullptr), nullptr);
  CefRefPtr<CefMenuModel> menu = CefMenuModel::CreateMenuModel(new Delegate);
  ASSERT_TRUE(menu);
  EXPECT_FALSE(menu->IsSubMenu());
  EXPECT_TRUE(menu->AddItem(1, "one"));
  EXPECT_TRUE(menu->AddSeparator());
  EXPECT_TRUE(menu->AddRadioItem(3, "three", 7));
  EXPECT_TRUE(menu->InsertItemAt(0, 10, "first"));
  EXPECT_FALSE(menu->InsertItemAt(9, 11, "beyond the end"));
  CefRefPtr<CefMenuModel> sub = menu->AddSubMenu(4, "more");
  ASSERT_TRUE(sub && sub->IsSubMenu());
  EXPECT_EQ(menu->GetSubMenu(4), sub);

  EXPECT_EQ(menu->GetCount(), 5u);
  EXPECT_EQ(menu->GetIndexOf(1), 1);
  EXPECT_EQ(menu->GetIndexOf(99), -1);
  EXPECT_EQ(menu->GetCommandIdAt(2), -1);  // the separator
  EXPECT_EQ(menu->GetTypeAt(2), MENUITEMTYPE_SEPARATOR);
  EXPECT_EQ(menu->GetGroupId(3), 7);
  EXPECT_EQ(menu->GetLabelAt(99).ToString(), "");

  // Only check and radio items carry a check mark.
  EXPECT_FALSE(menu->SetChecked(1, true));
  EXPECT_TRUE(menu->SetChecked(3, true));
  EXPECT_TRUE(menu->IsChecked(3));
  EXPECT_TRUE(menu->SetEnabled(1, false));
  EXPECT_FALSE(menu->IsEnabledAt(1));
  EXPECT_TRUE(menu->IsVisible(1));

  int key = 0;
  bool shift = false, ctrl = false, alt = false;
  EXPECT_FALSE(menu->GetAccelerator(1, key, shift, ctrl, alt));
  EXPECT_TRUE(menu->SetAccelerator(1, 67, false, true, false));
  EXPECT_TRUE(menu->GetAcceleratorAt(1, key, shift, ctrl, alt));
  EXPECT_EQ(key, 67);
  EXPECT_TRUE(ctrl && !shift && !alt);
  EXPECT_TRUE(menu->RemoveAccelerator(1));
  EXPECT_FALSE(menu->HasAccelerator(1));

  cef_color_t color = 1;
  EXPECT_TRUE(menu->SetColor(-1, CEF_MENU_COLOR_TEXT, 0xff102030));
  EXPECT_TRUE(menu->GetColorAt(-1, CEF_MENU_COLOR_TEXT, color));
  EXPECT_EQ(color, 0xff102030u);
  EXPECT_TRUE(menu->GetColor(1, CEF_MENU_COLOR_TEXT, color));
  EXPECT_EQ(color, 0u);
  EXPECT_FALSE(menu->SetColor(99, CEF_MENU_COLOR_TEXT, 1));

  EXPECT_TRUE(menu->Remove(10));
  EXPECT_FALSE(menu->Remove(10));
  EXPECT_EQ(menu->GetIndexOf(1), 0);
  EXPECT_TRUE(menu->Clear());
  EXPECT_EQ(menu->GetCount(), 0u);
}
