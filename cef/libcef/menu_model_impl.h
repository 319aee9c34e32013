// CefMenuModel as a plain list of items, for the context menus the engine
// builds and hands to the client.

#ifndef CEF_LIBCEF_MENU_MODEL_IMPL_H_
#define CEF_LIBCEF_MENU_MODEL_IMPL_H_

#include <array>
#include <optional>
#include <vector>

#include "include/cef_menu_model.h"
#include "include/cef_menu_model_delegate.h"

namespace cefengine {

// Used on the engine UI thread, as CEF requires; nothing here locks.
class MenuModelImpl : public CefMenuModel {
 public:
  MenuModelImpl(CefRefPtr<CefMenuModelDelegate> delegate, bool is_sub_menu);

  CefRefPtr<CefMenuModelDelegate> delegate() const { return delegate_; }

  bool IsSubMenu() override;
  bool Clear() override;
  size_t GetCount() override;
  bool AddSeparator() override;
  bool AddItem(int command_id, const CefString& label) override;
  bool AddCheckItem(int command_id, const CefString& label) override;
  bool AddRadioItem(int command_id,
                    const CefString& label,
                    int group_id) override;
  CefRefPtr<CefMenuModel> AddSubMenu(int command_id,
                                     const CefString& label) override;
  bool InsertSeparatorAt(size_t index) override;
  bool InsertItemAt(size_t index,
                    int command_id,
                    const CefString& label) override;
  bool InsertCheckItemAt(size_t index,
                         int command_id,
                         const CefString& label) override;
  bool InsertRadioItemAt(size_t index,
                         int command_id,
                         const CefString& label,
                         int group_id) override;
  CefRefPtr<CefMenuModel> InsertSubMenuAt(size_t index,
                                          int command_id,
                                          const CefString& label) override;
  bool Remove(int command_id) override;
  bool RemoveAt(size_t index) override;
  int GetIndexOf(int command_id) override;
  int GetCommandIdAt(size_t index) override;
  bool SetCommandIdAt(size_t index, int command_id) override;
  CefString GetLabel(int command_id) override;
  CefString GetLabelAt(size_t index) override;
  bool SetLabel(int command_id, const CefString& label) override;
  bool SetLabelAt(size_t index, const CefString& label) override;
  MenuItemType GetType(int command_id) override;
  MenuItemType GetTypeAt(size_t index) override;
  int GetGroupId(int command_id) override;
  int GetGroupIdAt(size_t index) override;
  bool SetGroupId(int command_id, int group_id) override;
  bool SetGroupIdAt(size_t index, int group_id) override;
  CefRefPtr<CefMenuModel> GetSubMenu(int command_id) override;
  CefRefPtr<CefMenuModel> GetSubMenuAt(size_t index) override;
  bool IsVisible(int command_id) override;
  bool IsVisibleAt(size_t index) override;
  bool SetVisible(int command_id, bool visible) override;
  bool SetVisibleAt(size_t index, bool visible) override;
  bool IsEnabled(int command_id) override;
  bool IsEnabledAt(size_t index) override;
  bool SetEnabled(int command_id, bool enabled) override;
  bool SetEnabledAt(size_t index, bool enabled) override;
  bool IsChecked(int command_id) override;
  bool IsCheckedAt(size_t index) override;
  bool SetChecked(int command_id, bool checked) override;
  bool SetCheckedAt(size_t index, bool checked) override;
  bool HasAccelerator(int command_id) override;
  bool HasAcceleratorAt(size_t index) override;
  bool SetAccelerator(int command_id,
                      int key_code,
                      bool shift_pressed,
                      bool ctrl_pressed,
                      bool alt_pressed) override;
  bool SetAcceleratorAt(size_t index,
                        int key_code,
                        bool shift_pressed,
                        bool ctrl_pressed,
                        bool alt_pressed) override;
  bool RemoveAccelerator(int command_id) override;
  bool RemoveAcceleratorAt(size_t index) override;
  bool GetAccelerator(int command_id,
                      int& key_code,
                      bool& shift_pressed,
                      bool& ctrl_pressed,
                      bool& alt_pressed) override;
  bool GetAcceleratorAt(size_t index,
                        int& key_code,
                        bool& shift_pressed,
                        bool& ctrl_pressed,
                        bool& alt_pressed) override;
  bool SetColor(int command_id,
                cef_menu_color_type_t color_type,
                cef_color_t color) override;
  bool SetColorAt(int index,
                  cef_menu_color_type_t color_type,
                  cef_color_t color) override;
  bool GetColor(int command_id,
                cef_menu_color_type_t color_type,
                cef_color_t& color) override;
  bool GetColorAt(int index,
                  cef_menu_color_type_t color_type,
                  cef_color_t& color) override;
  bool SetFontList(int command_id, const CefString& font_list) override;
  bool SetFontListAt(int index, const CefString& font_list) override;

 private:
  struct Accelerator {
    int key_code = 0;
    bool shift = false;
    bool ctrl = false;
    bool alt = false;
  };
  using Colors = std::array<cef_color_t, CEF_MENU_COLOR_COUNT>;
  struct Item {
    cef_menu_item_type_t type = MENUITEMTYPE_NONE;
    int command_id = -1;
    CefString label;
    int group_id = -1;
    bool visible = true;
    bool enabled = true;
    bool checked = false;
    std::optional<Accelerator> accelerator;
    CefRefPtr<MenuModelImpl> sub_menu;
    Colors colors{};
    CefString font_list;
  };

  bool Insert(size_t index, Item item);
  // Null for a bad index or an unknown command.
  Item* At(size_t index);
  Item* Find(int command_id);
  // -1 addresses the whole menu's defaults.
  Colors* ColorsAt(int index);

  const CefRefPtr<CefMenuModelDelegate> delegate_;
  const bool is_sub_menu_;
  std::vector<Item> items_;
  Colors default_colors_{};
  CefString default_font_list_;

  IMPLEMENT_REFCOUNTING(MenuModelImpl);
};

}  // namespace cefengine

#endif  // CEF_LIBCEF_MENU_MODEL_IMPL_H_
