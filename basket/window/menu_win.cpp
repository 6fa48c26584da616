#include "basket/window/menu_win.h"

#include <algorithm>

namespace demovex {
namespace {

// Takes all entries out and leaves the menus below them alive.
void Clear(HMENU menu) noexcept {
    while (GetMenuItemCount(menu) > 0 && RemoveMenu(menu, 0, MF_BYPOSITION)) {
    }
}

}  // namespace

WindowMenu::WindowMenu(HWND window) : window_(window), bar_(CreateMenu()) {
    for (const CommandRow& row : CommandTable()) {
        if (row.kind != MenuKind::kTop && row.kind != MenuKind::kSubmenu) continue;
        popups_.push_back({row.id, UniqueMenu(CreatePopupMenu())});
        if (!popups_.back().menu) RaiseRuntimeError(runtime_error::kOutOfMemory);
    }
    for (const Owned& owned : popups_) Fill(owned.menu.get(), owned.id);
    Fill(bar_.get(), Command::kNone);
    if (!SetMenu(window_, bar_.get())) RaiseRuntimeError(runtime_error::kOutOfMemory);
}

WindowMenu::~WindowMenu() {
    SetMenu(window_, nullptr);
    Clear(bar_.get());
    for (const Owned& owned : popups_) Clear(owned.menu.get());
}

HMENU WindowMenu::Popup(Command id) const noexcept {
    const auto found = std::ranges::find(popups_, id, &Owned::id);
    return found == popups_.end() ? nullptr : found->menu.get();
}

void WindowMenu::Fill(HMENU menu, Command parent) {
    Clear(menu);
    UINT position = 0;
    for (const MenuEntry& entry : model_.Visible(parent)) {
        MENUITEMINFOW info{};
        info.cbSize = sizeof info;
        info.fMask = MIIM_ID | MIIM_FTYPE | MIIM_STATE;
        info.wID = static_cast<UINT>(entry.id);
        std::wstring text = entry.text;
        if (entry.kind == MenuKind::kSeparator) {
            info.fType = MFT_SEPARATOR;
        } else {
            info.fMask |= MIIM_STRING;
            info.dwTypeData = text.data();
        }
        info.fState = static_cast<UINT>((entry.enabled ? MFS_ENABLED : MFS_DISABLED) |
                                        (entry.checked ? MFS_CHECKED : MFS_UNCHECKED));
        if (HMENU below = Popup(entry.id)) {
            info.fMask |= MIIM_SUBMENU;
            info.hSubMenu = below;
        }
        if (!InsertMenuItemW(menu, position++, TRUE, &info)) {
            RaiseRuntimeError(runtime_error::kOutOfMemory);
        }
    }
}

void WindowMenu::Refresh(Command id) {
    const Command parent = FindCommand(id).parent;
    if (parent == Command::kNone) {
        Fill(bar_.get(), parent);
        DrawMenuBar(window_);
    } else {
        Fill(Popup(parent), parent);
    }
}

void WindowMenu::SetState(Command id, const MenuItemState& state) {
    model_.SetState(id, state);
    Refresh(id);
}

void WindowMenu::SetCaption(Command id, std::wstring_view caption) {
    model_.SetCaption(id, caption);
    Refresh(id);
}

Command WindowMenu::TopOf(HMENU menu) const noexcept {
    for (const Owned& owned : popups_) {
        if (owned.menu.get() == menu && FindCommand(owned.id).kind == MenuKind::kTop) {
            return owned.id;
        }
    }
    return Command::kNone;
}

void WindowMenu::PopupContext(POINT at, Command bold) {
    HMENU menu = Popup(Command::mnuContext);
    SetMenuDefaultItem(menu, static_cast<UINT>(bold), FALSE);
    TrackPopupMenuEx(menu, TPM_LEFTALIGN | TPM_TOPALIGN | TPM_RIGHTBUTTON, at.x, at.y, window_,
                     nullptr);
}

}  // namespace demovex
