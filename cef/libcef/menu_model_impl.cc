#include "libcef/menu_model_impl.h"

#include <utility>

namespace cefengine {

MenuModelImpl::MenuModelImpl(CefRefPtr<CefMenuModelDelegate> delegate,
                             bool is_sub_menu)
    : delegate_(std::move(delegate)), is_sub_menu_(is_sub_menu) {}

bool MenuModelImpl::IsSubMenu() {
  return is_sub_menu_;
}

bool MenuModelImpl::Clear() {
  items_.clear();
  return true;
}

size_t MenuModelImpl::GetCount() {
  return items_.size();
}

bool MenuModelImpl::Insert(size_t index, Item item) {
  if (index > items_.size()) {
    return false;
  }
  items_.insert(items_.begin() + static_cast<std::ptrdiff_t>(index),
                std::move(item));
  return true;
}

MenuModelImpl::Item* MenuModelImpl::At(size_t index) {
  return index < items_.size() ? &items_[index] : nullptr;
}

MenuModelImpl::Item* MenuModelImpl::Find(int command_id) {
  const int index = GetIndexOf(command_id);
  return index < 0 ? nullptr : &items_[static_cast<size_t>(index)];
}

MenuModelImpl::Colors* MenuModelImpl::ColorsAt(int index) {
  if (index == -1) {
    return &default_colors_;
  }
  Item* item = index < 0 ? nullptr : At(static_cast<size_t>(index));
  return item ? &item->colors : nullptr;
}

bool MenuModelImpl::AddSeparator() {
  return InsertSeparatorAt(items_.size());
}

bool MenuModelImpl::AddItem(int command_id, const CefString& label) {
  return InsertItemAt(items_.size(), command_id, label);
}

bool MenuModelImpl::AddCheckItem(int command_id, const CefString& label) {
  return InsertCheckItemAt(items_.size(), command_id, label);
}

bool MenuModelImpl::AddRadioItem(int command_id,
                                 const CefString& label,
                                 int group_id) {
  return InsertRadioItemAt(items_.size(), command_id, label, group_id);
}

CefRefPtr<CefMenuModel> MenuModelImpl::AddSubMenu(int command_id,
                                                  const CefString& label) {
  return InsertSubMenuAt(items_.size(), command_id, label);
}

bool MenuModelImpl::InsertSeparatorAt(size_t index) {
  Item item;
  item.type = MENUITEMTYPE_SEPARATOR;
  return Insert(index, std::move(item));
}

bool MenuModelImpl::InsertItemAt(size_t index,
                                 int command_id,
                                 const CefString& label) {
  Item item;
  item.type = MENUITEMTYPE_COMMAND;
  item.command_id = command_id;
  item.label = label;
  return Insert(index, std::move(item));
}

bool MenuModelImpl::InsertCheckItemAt(size_t index,
                                      int command_id,
                                      const CefString& label) {
  Item item;
  item.type = MENUITEMTYPE_CHECK;
  item.command_id = command_id;
  item.label = label;
  return Insert(index, std::move(item));
}

bool MenuModelImpl::InsertRadioItemAt(size_t index,
                                      int command_id,
                                      const CefString& label,
                                      int group_id) {
  Item item;
  item.type = MENUITEMTYPE_RADIO;
  item.command_id = command_id;
  item.label = label;
  item.group_id = group_id;
  return Insert(index, std::move(item));
}

CefRefPtr<CefMenuModel> MenuModelImpl::InsertSubMenuAt(
    size_t index,
    int command_id,
    const CefString& label) {
  Item item;
  item.type = MENUITEMTYPE_SUBMENU;
  item.command_id = command_id;
  item.label = label;
  item.sub_menu = new MenuModelImpl(delegate_, true);
  CefRefPtr<CefMenuModel> sub_menu = item.sub_menu;
  return Insert(index, std::move(item)) ? sub_menu : nullptr;
}

bool MenuModelImpl::Remove(int command_id) {
  const int index = GetIndexOf(command_id);
  return index >= 0 && RemoveAt(static_cast<size_t>(index));
}

bool MenuModelImpl::RemoveAt(size_t index) {
  if (index >= items_.size()) {
    return false;
  }
  items_.erase(items_.begin() + static_cast<std::ptrdiff_t>(index));
  return true;
}

int MenuModelImpl::GetIndexOf(int command_id) {
  for (size_t i = 0; i < items_.size(); ++i) {
    if (items_[i].type != MENUITEMTYPE_SEPARATOR &&
        items_[i].command_id == command_id) {
      return static_cast<int>(i);
    }
  }
  return -1;
}

int MenuModelImpl::GetCommandIdAt(size_t index) {
  Item* item = At(index);
  return item ? item->command_id : -1;
}

bool MenuModelImpl::SetCommandIdAt(size_t index, int command_id) {
  Item* item = At(index);
  if (!item || item->type == MENUITEMTYPE_SEPARATOR) {
    return false;
  }
  item->command_id = command_id;
  return true;
}

CefString MenuModelImpl::GetLabel(int command_id) {
  Item* item = Find(command_id);
  return item ? item->label : CefString();
}

CefString MenuModelImpl::GetLabelAt(size_t index) {
  Item* item = At(index);
  return item ? item->label : CefString();
}

bool MenuModelImpl::SetLabel(int command_id, const CefString& label) {
  const int index = GetIndexOf(command_id);
  return index >= 0 && SetLabelAt(static_cast<size_t>(index), label);
}

bool MenuModelImpl::SetLabelAt(size_t index, const CefString& label) {
  Item* item = At(index);
  if (!item || item->type == MENUITEMTYPE_SEPARATOR) {
    return false;
  }
  item->label = label;
  return true;
}

CefMenuModel::MenuItemType MenuModelImpl::GetType(int command_id) {
  Item* item = Find(command_id);
  return item ? item->type : MENUITEMTYPE_NONE;
}

CefMenuModel::MenuItemType MenuModelImpl::GetTypeAt(size_t index) {
  Item* item = At(index);
  return item ? item->type : MENUITEMTYPE_NONE;
}

int MenuModelImpl::GetGroupId(int command_id) {
  Item* item = Find(command_id);
  return item ? item->group_id : -1;
}

int MenuModelImpl::GetGroupIdAt(size_t index) {
  Item* item = At(index);
  return item ? item->group_id : -1;
}

bool MenuModelImpl::SetGroupId(int command_id, int group_id) {
  Item* item = Find(command_id);
  if (!item) {
    return false;
  }
  item->group_id = group_id;
  return true;
}

bool MenuModelImpl::SetGroupIdAt(size_t index, int group_id) {
  Item* item = At(index);
  if (!item) {
    return false;
  }
  item->group_id = group_id;
  return true;
}

CefRefPtr<CefMenuModel> MenuModelImpl::GetSubMenu(int command_id) {
  Item* item = Find(command_id);
  return item ? item->sub_menu : nullptr;
}

CefRefPtr<CefMenuModel> MenuModelImpl::GetSubMenuAt(size_t index) {
  Item* item = At(index);
  return item ? item->sub_menu : nullptr;
}

bool MenuModelImpl::IsVisible(int command_id) {
  Item* item = Find(command_id);
  return item && item->visible;
}

bool MenuModelImpl::IsVisibleAt(size_t index) {
  Item* item = At(index);
  return item && item->visible;
}

bool MenuModelImpl::SetVisible(int command_id, bool visible) {
  Item* item = Find(command_id);
  if (!item) {
    return false;
  }
  item->visible = visible;
  return true;
}

bool MenuModelImpl::SetVisibleAt(size_t index, bool visible) {
  Item* item = At(index);
  if (!item) {
    return false;
  }
  item->visible = visible;
  return true;
}

bool MenuModelImpl::IsEnabled(int command_id) {
  Item* item = Find(command_id);
  return item && item->enabled;
}

bool MenuModelImpl::IsEnabledAt(size_t index) {
  Item* item = At(index);
  return item && item->enabled;
}

bool MenuModelImpl::SetEnabled(int command_id, bool enabled) {
  Item* item = Find(command_id);
  if (!item) {
    return false;
  }
  item->enabled = enabled;
  return true;
}

bool MenuModelImpl::SetEnabledAt(size_t index, bool enabled) {
  Item* item = At(index);
  if (!item) {
    return false;
  }
  item->enabled = enabled;
  return true;
}

bool MenuModelImpl::IsChecked(int command_id) {
  Item* item = Find(command_id);
  return item && item->checked;
}

bool MenuModelImpl::IsCheckedAt(size_t index) {
  Item* item = At(index);
  return item && item->checked;
}

bool MenuModelImpl::SetChecked(int command_id, bool checked) {
  const int index = GetIndexOf(command_id);
  return index >= 0 && SetCheckedAt(static_cast<size_t>(index), checked);
}

bool MenuModelImpl::SetCheckedAt(size_t index, bool checked) {
  Item* item = At(index);
  if (!item || (item->type != MENUITEMTYPE_CHECK &&
                item->type != MENUITEMTYPE_RADIO)) {
    return false;
  }
  item->checked = checked;
  return true;
}

bool MenuModelImpl::HasAccelerator(int command_id) {
  Item* item = Find(command_id);
  return item && item->accelerator.has_value();
}

bool MenuModelImpl::HasAcceleratorAt(size_t index) {
  Item* item = At(index);
  return item && item->accelerator.has_value();
}

bool MenuModelImpl::SetAccelerator(int command_id,
                                   int key_code,
                                   bool shift_pressed,
                                   bool ctrl_pressed,
                                   bool alt_pressed) {
  const int index = GetIndexOf(command_id);
  return index >= 0 &&
         SetAcceleratorAt(static_cast<size_t>(index), key_code, shift_pressed,
                          ctrl_pressed, alt_pressed);
}

bool MenuModelImpl::SetAcceleratorAt(size_t index,
                                     int key_code,
                                     bool shift_pressed,
                                     bool ctrl_pressed,
                                     bool alt_pressed) {
  Item* item = At(index);
  if (!item || item->type == MENUITEMTYPE_SEPARATOR) {
    return false;
  }
  item->accelerator =
      Accelerator{key_code, shift_pressed, ctrl_pressed, alt_pressed};
  return true;
}

bool MenuModelImpl::RemoveAccelerator(int command_id) {
  const int index = GetIndexOf(command_id);
  return index >= 0 && RemoveAcceleratorAt(static_cast<size_t>(index));
}

bool MenuModelImpl::RemoveAcceleratorAt(size_t index) {
  Item* item = At(index);
  if (!item) {
    return false;
  }
  item->accelerator.reset();
  return true;
}

bool MenuModelImpl::GetAccelerator(int command_id,
                                   int& key_code,
                                   bool& shift_pressed,
                                   bool& ctrl_pressed,
                                   bool& alt_pressed) {
  const int index = GetIndexOf(command_id);
  return index >= 0 &&
         GetAcceleratorAt(static_cast<size_t>(index), key_code, shift_pressed,
                          ctrl_pressed, alt_pressed);
}

bool MenuModelImpl::GetAcceleratorAt(size_t index,
                                     int& key_code,
                                     bool& shift_pressed,
                                     bool& ctrl_pressed,
                                     bool& alt_pressed) {
  Item* item = At(index);
  if (!item || !item->accelerator) {
    return false;
  }
  key_code = item->accelerator->key_code;
  shift_pressed = item->accelerator->shift;
  ctrl_pressed = item->accelerator->ctrl;
  alt_pressed = item->accelerator->alt;
  return true;
}

bool MenuModelImpl::SetColor(int command_id,
                             cef_menu_color_type_t color_type,
                             cef_color_t color) {
  const int index = command_id == -1 ? -1 : GetIndexOf(command_id);
  return (command_id == -1 || index >= 0) &&
         SetColorAt(index, color_type, color);
}

bool MenuModelImpl::SetColorAt(int index,
                               cef_menu_color_type_t color_type,
                               cef_color_t color) {
  Colors* colors = ColorsAt(index);
  if (!colors || color_type < 0 || color_type >= CEF_MENU_COLOR_COUNT) {
    return false;
  }
  (*colors)[color_type] = color;
  return true;
}

bool MenuModelImpl::GetColor(int command_id,
                             cef_menu_color_type_t color_type,
                             cef_color_t& color) {
  const int index = command_id == -1 ? -1 : GetIndexOf(command_id);
  return (command_id == -1 || index >= 0) &&
         GetColorAt(index, color_type, color);
}

bool MenuModelImpl::GetColorAt(int index,
                               cef_menu_color_type_t color_type,
                               cef_color_t& color) {
  Colors* colors = ColorsAt(index);
  if (!colors || color_type < 0 || color_type >= CEF_MENU_COLOR_COUNT) {
    return false;
  }
  color = (*colors)[color_type];
  return true;
}

bool MenuModelImpl::SetFontList(int command_id, const CefString& font_list) {
  if (command_id == -1) {
    default_font_list_ = font_list;
    return true;
  }
  Item* item = Find(command_id);
  if (!item) {
    return false;
  }
  item->font_list = font_list;
  return true;
}

bool MenuModelImpl::SetFontListAt(int index, const CefString& font_list) {
  if (index == -1) {
    default_font_list_ = font_list;
    return true;
  }
  Item* item = index < 0 ? nullptr : At(static_cast<size_t>(index));
  if (!item) {
    return false;
  }
  item->font_list = font_list;
  return true;
}

}  // namespace cefengine

CefRefPtr<CefMenuModel> CefMenuModel::CreateMenuModel(
    CefRefPtr<CefMenuModelDelegate> delegate) {
  // CEF refuses a menu without a delegate.
  if (!delegate) {
    return nullptr;
  }
  return new cefengine::MenuModelImpl(delegate, false);
}
