// The basket window and the user's keys: those that the hook kept from the host's loop, and what
// reaches the grid or the window itself.
#include "basket/window/impl_win.h"
#include "basket/window/key_hook_win.h"

namespace demovex {

// What the host's loop would have done with the key, for the control that has the focus.
void BasketWindowImpl::OnTurnedKey(UINT message, WPARAM wparam, LPARAM lparam) {
    const HWND focus = GetFocus();
    const bool inside = focus != nullptr && IsChild(window_, focus);
    const MSG key = TurnedBack(inside ? focus : window_, message, wparam, lparam);
    const Command command = ShortcutOf(key);
    if (command != Command::kNone) {
        OnCommand(MAKEWPARAM(static_cast<WORD>(command), 1), 0);  // 1: as from an accelerator
        return;
    }
    TranslateMessage(&key);
    DispatchMessageW(&key);
}

bool BasketWindowImpl::KeyPressed(int key, int shift) {
    int code = key;
    Forward([&](TestLibForm& form) { form.Liste_KeyDown(code, shift); });
    return code == 0;
}

bool BasketWindowImpl::CharacterTyped(wchar_t character) {
    int code = character;
    Forward([&](TestLibForm& form) { form.Liste_KeyPress(code); });
    return code == 0;
}

void BasketWindowImpl::UserActed() {
    Forward([](TestLibForm& form) { form.Liste_Acted(); });
}

}  // namespace demovex
