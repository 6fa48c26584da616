#include "basket/window_keys_win.h"

#include <string_view>

#include "basket/commands.h"
#include "basket/window_ids.h"

namespace demovex {
namespace {

LRESULT CALLBACK MessageHook(int code, WPARAM removed, LPARAM lparam) noexcept {
    if (code == HC_ACTION && (removed & PM_REMOVE) != 0) {
        TurnShortcut(*reinterpret_cast<MSG*>(lparam));
    }
    return CallNextHookEx(nullptr, code, removed, lparam);
}

bool Down(int key) noexcept {
    return GetKeyState(key) < 0;
}

bool IsBasketWindow(HWND window) noexcept {
    wchar_t name[64] = L"";
    GetClassNameW(window, name, 64);
    return std::wstring_view(name) == kBasketWindowClass;
}

// A menu or a window being moved takes the keys for itself.
bool KeysAreTaken() noexcept {
    GUITHREADINFO info{};
    info.cbSize = sizeof info;
    return GetGUIThreadInfo(GetCurrentThreadId(), &info) &&
           (info.flags & (GUI_INMENUMODE | GUI_INMOVESIZE | GUI_POPUPMENUMODE)) != 0;
}

}  // namespace

UniqueHook InstallShortcutHook() {
    UniqueHook hook(SetWindowsHookExW(WH_GETMESSAGE, &MessageHook, nullptr, GetCurrentThreadId()));
    if (!hook) RaiseRuntimeError(runtime_error::kOutOfMemory);
    return hook;
}

bool TurnShortcut(MSG& message) noexcept {
    if (message.message != WM_KEYDOWN || message.wParam < 'A' || message.wParam > 'Z') return false;
    // AltGr is Ctrl and Alt together and types its character
    if (!Down(VK_CONTROL) || Down(VK_MENU) || Down(VK_SHIFT)) return false;
    const Command command = CommandForShortcut(static_cast<wchar_t>(message.wParam));
    if (command == Command::kNone) return false;
    HWND window = GetAncestor(message.hwnd, GA_ROOT);
    if (window == nullptr || window != GetActiveWindow() || !IsWindowEnabled(window)) return false;
    const HWND focus = GetFocus();
    if (focus != window && !IsChild(window, focus)) return false;
    if (!IsBasketWindow(window) || KeysAreTaken()) return false;
    message.hwnd = window;
    message.message = WM_COMMAND;
    message.wParam = MAKEWPARAM(static_cast<WORD>(command), 1);  // 1: from an accelerator
    message.lParam = 0;
    return true;
}

}  // namespace demovex
