#include "basket/window/key_hook_win.h"

#include <string_view>

#include "basket/commands/keys.h"
#include "basket/window/ids.h"

// Where this module lies. The name is the linker's own.
extern "C" const IMAGE_DOS_HEADER __ImageBase;  // NOLINT(bugprone-reserved-identifier)

namespace demovex {
namespace {

// A basket window of this module; another copy of the component minds its own.
bool IsBasketWindow(HWND window) noexcept {
    wchar_t name[64] = L"";
    GetClassNameW(window, name, 64);
    return std::wstring_view(name) == kBasketWindowClass &&
           GetWindowLongPtrW(window, GWLP_HINSTANCE) == reinterpret_cast<LONG_PTR>(&__ImageBase);
}

// A menu or a window being moved takes the keys for itself.
bool KeysAreTaken() noexcept {
    GUITHREADINFO info{};
    info.cbSize = sizeof info;
    return GetGUIThreadInfo(GetCurrentThreadId(), &info) &&
           (info.flags & (GUI_INMENUMODE | GUI_INMOVESIZE | GUI_POPUPMENUMODE)) != 0;
}

// AltGr comes as Ctrl and Alt together, but types its character.
int KeyState() noexcept {
    const int shift = ShiftState();
    constexpr int both = shift_state::kCtrl | shift_state::kAlt;
    if ((shift & both) != both || !IsDown(VK_RMENU)) return shift;
    return (shift & ~both) | shift_state::kAltGr;
}

bool MeansSomething(const MSG& message) noexcept {
    switch (message.message) {
        case WM_KEYDOWN:
        case WM_SYSKEYDOWN:
            return message.wParam <= 0xFF &&
                   IsBasketKey(static_cast<int>(message.wParam), KeyState());
        case WM_CHAR:
            return IsBasketCharacter(static_cast<wchar_t>(message.wParam));
        case WM_SYSCHAR:
            return IsBasketAltCharacter(static_cast<wchar_t>(message.wParam));
        default:
            return false;
    }
}

void TurnKey(MSG& message) noexcept {
    if (!MeansSomething(message)) return;
    HWND window = GetAncestor(message.hwnd, GA_ROOT);
    if (window == nullptr || window != GetActiveWindow() || !IsWindowEnabled(window)) return;
    const HWND focus = GetFocus();
    if (focus != window && !IsChild(window, focus)) return;
    if (!IsBasketWindow(window) || KeysAreTaken()) return;
    message.hwnd = window;
    message.message += window_message::kKey - WM_KEYFIRST;
}

LRESULT CALLBACK MessageHook(int code, WPARAM removed, LPARAM lparam) noexcept {
    if (code == HC_ACTION && (removed & PM_REMOVE) != 0) TurnKey(*reinterpret_cast<MSG*>(lparam));
    return CallNextHookEx(nullptr, code, removed, lparam);
}

}  // namespace

UniqueHook InstallKeyHook() {
    UniqueHook hook(SetWindowsHookExW(WH_GETMESSAGE, &MessageHook, nullptr, GetCurrentThreadId()));
    if (!hook) RaiseRuntimeError(runtime_error::kOutOfMemory);
    return hook;
}

bool IsTurnedKey(UINT message) noexcept {
    return message >= window_message::kKey &&
           message <= window_message::kKey + (WM_SYSCHAR - WM_KEYFIRST);
}

MSG TurnedBack(HWND target, UINT message, WPARAM wparam, LPARAM lparam) noexcept {
    MSG key{};
    key.hwnd = target;
    key.message = message - window_message::kKey + WM_KEYFIRST;
    key.wParam = wparam;
    key.lParam = lparam;
    key.time = static_cast<DWORD>(GetMessageTime());
    const auto place = static_cast<DWORD>(GetMessagePos());
    key.pt = {static_cast<short>(LOWORD(place)), static_cast<short>(HIWORD(place))};
    return key;
}

Command ShortcutOf(const MSG& key) noexcept {
    if (key.message != WM_KEYDOWN || key.wParam < 'A' || key.wParam > 'Z') return Command::kNone;
    if (KeyState() != shift_state::kCtrl) return Command::kNone;
    return CommandForShortcut(static_cast<wchar_t>(key.wParam));
}

}  // namespace demovex
