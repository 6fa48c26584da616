// The menu bar and the context menu of the basket window, copied from a MenuModel. Menu ids are the
// values of Command.
#pragma once

#include <string_view>
#include <vector>

#include "basket/commands/menu_model.h"
#include "basket/window/handles_win.h"

namespace demovex {

class WindowMenu {
  public:
    // Makes the menus and gives the bar to `window`, which outlives this object. Raises 7.
    explicit WindowMenu(HWND window);
    ~WindowMenu();
    WindowMenu(const WindowMenu&) = delete;
    WindowMenu& operator=(const WindowMenu&) = delete;

    // Change an entry and the menu that holds it. Raise 5 for an id that is not in the table.
    void SetState(Command id, const MenuItemState& state);
    void SetCaption(Command id, std::wstring_view caption);

    // The top-level menu behind a handle that is being opened, kNone for any other.
    Command TopOf(HMENU menu) const noexcept;

    // Shows the context menu at a point of the screen with the entry `bold` in bold, and returns
    // when it has closed; a choice arrives at the window as WM_COMMAND later.
    void PopupContext(POINT at, Command bold);

    // The menu of a top-level or submenu entry, whether in view or not; null for any other.
    HMENU Popup(Command id) const noexcept;

  private:
    struct Owned {
        Command id;
        UniqueMenu menu;
    };
    void Fill(HMENU menu, Command parent);
    void Refresh(Command id);

    HWND window_;
    MenuModel model_;
    UniqueMenu bar_;
    std::vector<Owned> popups_;
};

}  // namespace demovex
