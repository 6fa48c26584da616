// The menus of the basket window as they stand at a moment: the command table plus what has been
// changed at run time. It says which entries are in view; the window only copies them.
//
//   MenuModel menus;
//   menus.SetState(Command::mnuDateiLRU1, {.visible = true});
//   for (const MenuEntry& entry : menus.Visible(Command::mnuDatei)) ...
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "basket/commands/commands.h"

namespace demovex {

struct MenuEntry {
    Command id = Command::kNone;
    MenuKind kind = MenuKind::kItem;
    std::wstring text;  // caption, a tab and the shortcut's name when there is one
    bool enabled = true;
    bool checked = false;
    friend bool operator==(const MenuEntry&, const MenuEntry&) = default;
};

class MenuModel {
  public:
    // Starts with the table's captions and states.
    MenuModel();

    // All raise 5 for an id that is not in the table.
    void SetState(Command id, const MenuItemState& state);
    const MenuItemState& State(Command id) const;
    void SetCaption(Command id, std::wstring_view caption);
    const std::wstring& Caption(Command id) const;

    // The entries below `parent` (kNone: the menu bar) that are in view, from top to bottom. A
    // separator stands only between two other entries, and never beside another separator.
    std::vector<MenuEntry> Visible(Command parent) const;

  private:
    struct Row {
        std::wstring caption;
        MenuItemState state;
    };
    std::size_t Index(Command id) const;
    std::vector<Row> rows_;  // parallel to CommandTable()
};

}  // namespace demovex
