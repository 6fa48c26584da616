// A real basket window for tests: real controls and real input in a message loop like a host's, on
// an article master in memory and recording services.
//
//   BasketWindowFixture basket;
//   basket.Link(L"4711");
//   basket.Type(L"3");
//   basket.Press(VK_DOWN);
//   EXPECT_EQ(basket.Cell(1, column::kMenge), L"3");
//
// Keys are pressed with SendInput and reach whatever has the focus. The loop is a bare GetMessage,
// TranslateMessage, DispatchMessage, or that of a framework: one that offers every key to the
// host's accelerators first, one that calls IsDialogMessage with the root of the focused window, or
// one that does both. The host's accelerators are keys that a basket uses itself, and two that it
// does not (F5 and Ctrl+T).
#pragma once

#include <windows.h>

#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "basket/rows/columns.h"
#include "basket/window/basket_window_win.h"
#include "basket/window/ids.h"
#include "grid/flex_grid.h"
#include "platform/text_win.h"
#include "tests/support/basket_fixture.h"
#include "tests/support/message_pump_win.h"

namespace demovex {

enum class HostLoop { kBare, kAccelerators, kDialogOfFocus, kBoth };
inline constexpr HostLoop kHostLoops[] = {HostLoop::kBare, HostLoop::kAccelerators,
                                          HostLoop::kDialogOfFocus, HostLoop::kBoth};

inline std::string HostLoopName(HostLoop loop) {
    static const char* const names[] = {"Bare", "Accelerators", "DialogOfFocus", "Both"};
    return names[static_cast<int>(loop)];
}

// A host's own window, with a text box that takes Tab and arrows in a dialog's manner, and with
// accelerators.
class HostWindow {
  public:
    HostWindow() : accelerators(MakeAccelerators()) {
        WNDCLASSW info{};
        info.lpfnWndProc = &HostWindow::Procedure;
        info.cbWndExtra = DLGWINDOWEXTRA;
        info.hInstance = GetModuleHandleW(nullptr);
        info.lpszClassName = L"DemoVexTest.Host";
        info.hbrBackground = GetSysColorBrush(COLOR_BTNFACE);
        RegisterClassW(&info);  // fails harmlessly the second time
        handle = CreateWindowExW(WS_EX_CONTROLPARENT, info.lpszClassName, L"Host",
                                 WS_OVERLAPPEDWINDOW | WS_VISIBLE, 5, 5, 220, 120, nullptr, nullptr,
                                 info.hInstance, nullptr);
        SetWindowLongPtrW(handle, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(this));
        text = CreateWindowExW(0, L"EDIT", L"", WS_CHILD | WS_VISIBLE | WS_TABSTOP | WS_BORDER, 10,
                               10, 150, 24, handle, nullptr, info.hInstance, nullptr);
    }
    ~HostWindow() {
        DestroyWindow(handle);
        DestroyAcceleratorTable(accelerators);
    }
    HostWindow(const HostWindow&) = delete;
    HostWindow& operator=(const HostWindow&) = delete;

    // The command of an accelerator of the host.
    static WORD CommandOf(WORD key, bool ctrl) {
        return static_cast<WORD>(1000 + key + (ctrl ? 256 : 0));
    }

    HACCEL accelerators;
    HWND handle;
    HWND text;
    std::vector<WORD> commands;  // that accelerators gave to the host

  private:
    static LRESULT CALLBACK Procedure(HWND window, UINT message, WPARAM wparam, LPARAM lparam) {
        auto* host = reinterpret_cast<HostWindow*>(GetWindowLongPtrW(window, GWLP_USERDATA));
        if (host != nullptr && message == WM_COMMAND && HIWORD(wparam) == 1) {
            host->commands.push_back(LOWORD(wparam));
            return 0;
        }
        return DefDlgProcW(window, message, wparam, lparam);
    }
    static HACCEL MakeAccelerators() {
        std::vector<ACCEL> table;
        for (const char key : {'A', 'C', 'V', 'X', 'Y', 'Z', 'O', 'S', 'T'}) {
            const auto code = static_cast<WORD>(key);
            table.push_back({FVIRTKEY | FCONTROL, code, CommandOf(code, true)});
        }
        for (const WORD key : {VK_DELETE, VK_F2, VK_TAB, VK_RETURN, VK_ESCAPE, VK_LEFT, VK_RIGHT,
                               VK_UP, VK_DOWN, VK_F5}) {
            table.push_back({FVIRTKEY, key, CommandOf(key, false)});
        }
        return CreateAcceleratorTableW(table.data(), static_cast<int>(table.size()));
    }
};

class BasketWindowFixture : public FakeServices {
  public:
    static constexpr std::wstring_view kFolder = L"C:\\Basket";

    // `others` stand in for the recording services; they outlive the fixture.
    explicit BasketWindowFixture(HostLoop host_loop = HostLoop::kBare, int dpi = 0,
                                 bool show = true, Services* others = nullptr)
        : services(Over(text, files, std::wstring(kFolder))),
          owner(std::make_shared<FakeBasketOwner>()),
          loop_(host_loop) {
        files.AddFolder(std::wstring(kFolder));
        files.Put(std::wstring(kFolder) + L"\\artikel.db", ArticleFile(TestArticles()));
        window = BasketWindow::Create(GetModuleHandleW(nullptr), owner, {},
                                      {others != nullptr ? others : &services, dpi});
        if (!show) return;
        window->Initialize();
        window->Show();
        PumpUntil([this] { return GetActiveWindow() == Handle(); });
        Pump();
    }
    ~BasketWindowFixture() {
        if (HWND handle = Handle()) DestroyWindow(handle);
        PumpMessages();
    }
    BasketWindowFixture(const BasketWindowFixture&) = delete;
    BasketWindowFixture& operator=(const BasketWindowFixture&) = delete;

    // --- the host
    bool Link(const std::wstring& nr, const std::wstring& katalog = L"",
              const std::wstring& url = L"") {
        bool has_info = false;
        const bool result = window->Form()->AddArtikel(nr, katalog, url, has_info, 1, true);
        Pump();
        return result;
    }
    // Handles everything that is queued, as the host's loop does.
    void Pump() {
        MSG message;
        const auto take = [&] {
            taking = true;
            const BOOL taken = PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE);
            taking = false;
            return taken;
        };
        while (take()) Handle(message);
    }

    // --- the user
    // Presses and releases a key while `modifiers` are held down, and handles what comes of it.
    void Press(WORD key, const std::vector<WORD>& modifiers = {}) {
        std::vector<INPUT> input;
        for (const WORD modifier : modifiers) input.push_back(KeyInput(modifier, 0));
        input.push_back(KeyInput(key, 0));
        input.push_back(KeyInput(key, KEYEVENTF_KEYUP));
        for (auto it = modifiers.rbegin(); it != modifiers.rend(); ++it) {
            input.push_back(KeyInput(*it, KEYEVENTF_KEYUP));
        }
        SendAndPump(input);
    }
    // Presses several keys before any of them is handled; those that a menu's own loop takes are
    // not waited for.
    void PressAtOnce(const std::vector<std::pair<WORD, bool>>& keys) {
        std::vector<INPUT> input;
        for (const auto& [key, down] : keys) {
            input.push_back(KeyInput(key, down ? 0 : KEYEVENTF_KEYUP));
        }
        SendInput(static_cast<UINT>(input.size()), input.data(), sizeof(INPUT));
        Pump();
    }
    // Types characters as a keyboard does that has them all (no key codes of their own).
    void Type(std::wstring_view typed) {
        for (const wchar_t character : typed) {
            if ((character >= L'0' && character <= L'9') ||
                (character >= L'A' && character <= L'Z')) {
                const bool letter = character >= L'A';
                Press(static_cast<WORD>(character),
                      letter ? std::vector<WORD>{VK_SHIFT} : std::vector<WORD>{});
                continue;
            }
            INPUT down{}, up{};
            down.type = up.type = INPUT_KEYBOARD;
            down.ki.wScan = up.ki.wScan = character;
            down.ki.dwFlags = KEYEVENTF_UNICODE;
            up.ki.dwFlags = KEYEVENTF_UNICODE | KEYEVENTF_KEYUP;
            SendAndPump({down, up});
        }
    }
    // Presses and releases the left button at a place of a window's client area.
    void ClickAt(HWND target, int x, int y) {
        POINT at{x, y};
        ClientToScreen(target, &at);
        SetCursorPos(at.x, at.y);
        INPUT down{}, up{};
        down.type = up.type = INPUT_MOUSE;
        down.mi.dwFlags = MOUSEEVENTF_LEFTDOWN;
        up.mi.dwFlags = MOUSEEVENTF_LEFTUP;
        released_ = false;
        INPUT both[] = {down, up};
        SendInput(2, both, sizeof(INPUT));
        PumpWhile([this] { return !released_; });
    }
    void ClickCell(std::int32_t row, std::int32_t col) {
        const PixelRect cell = Grid().CellRect(row, col);
        ClickAt(Child(child_id::kListe), (cell.left + cell.right) / 2,
                (cell.top + cell.bottom) / 2);
    }

    // --- what is to be seen
    HWND Handle() const { return window->Handle(); }
    HWND Child(int id) const { return GetDlgItem(Handle(), id); }
    HWND Background() const { return Child(child_id::kIPBackground); }
    // The text box in view.
    HWND Text() const {
        for (HWND child = GetWindow(Background(), GW_CHILD); child != nullptr;
             child = GetWindow(child, GW_HWNDNEXT)) {
            if (GetDlgCtrlID(child) == child_id::kIPText &&
                (GetWindowLongW(child, GWL_STYLE) & WS_VISIBLE) != 0) {
                return child;
            }
        }
        return nullptr;
    }
    bool EditorOpen() const { return IsWindowVisible(Background()) != 0; }
    const FlexGrid& Grid() const { return dynamic_cast<const FlexGrid&>(window->Liste()); }
    FlexGrid& Grid() { return dynamic_cast<FlexGrid&>(window->Liste()); }
    std::wstring Cell(std::int32_t row, std::int32_t col) const {
        return std::wstring(Grid().TextMatrix(row, col));
    }
    std::int32_t Lines() const { return Grid().Rows() - 2; }
    std::string AsText() const { return DumpGrid(Grid()); }
    static std::wstring TextOf(HWND window) {
        std::wstring result(static_cast<std::size_t>(GetWindowTextLengthW(window)), L'\0');
        GetWindowTextW(window, result.data(), static_cast<int>(result.size()) + 1);
        return result;
    }

    HostWindow host;
    WinTextService text;
    MemoryFiles files;
    Services services;
    std::shared_ptr<FakeBasketOwner> owner;
    std::shared_ptr<BasketWindow> window;
    std::vector<MSG> keys_seen;  // every key and character that the loop has seen
    bool taking = false;         // a message is being taken from the queue

  private:
    static INPUT KeyInput(WORD key, DWORD flags) {
        INPUT input{};
        input.type = INPUT_KEYBOARD;
        input.ki.wVk = key;
        input.ki.wScan = static_cast<WORD>(MapVirtualKeyW(key, MAPVK_VK_TO_VSC));
        input.ki.dwFlags = flags;
        const bool extended = (key >= VK_PRIOR && key <= VK_DOWN) || key == VK_DELETE ||
                              key == VK_INSERT || key == VK_RMENU || key == VK_APPS;
        if (extended) input.ki.dwFlags |= KEYEVENTF_EXTENDEDKEY;
        return input;
    }
    void SendAndPump(std::vector<INPUT> input) {
        ups_ = 0;
        int expected = 0;
        for (const INPUT& one : input) expected += (one.ki.dwFlags & KEYEVENTF_KEYUP) != 0;
        SendInput(static_cast<UINT>(input.size()), input.data(), sizeof(INPUT));
        PumpWhile([&] { return ups_ < expected; });
    }
    // Handles messages while `waiting` holds, at most two seconds, and then what is left.
    void PumpWhile(const std::function<bool()>& waiting) {
        const ULONGLONG deadline = GetTickCount64() + 2000;
        Pump();
        while (waiting() && GetTickCount64() < deadline) {
            MsgWaitForMultipleObjects(0, nullptr, FALSE, 10, QS_ALLINPUT);
            Pump();
        }
        Pump();
    }
    void Handle(MSG& message) {
        if (message.message == WM_KEYUP || message.message == WM_SYSKEYUP) ++ups_;
        if (message.message == WM_LBUTTONUP) released_ = true;
        if (message.message == WM_KEYDOWN || message.message == WM_SYSKEYDOWN ||
            message.message == WM_CHAR || message.message == WM_SYSCHAR) {
            keys_seen.push_back(message);
        }
        const bool accelerators = loop_ == HostLoop::kAccelerators || loop_ == HostLoop::kBoth;
        if (accelerators && TranslateAcceleratorW(host.handle, host.accelerators, &message)) return;
        const bool dialogs = loop_ == HostLoop::kDialogOfFocus || loop_ == HostLoop::kBoth;
        if (dialogs && IsDialogMessageW(GetAncestor(GetFocus(), GA_ROOT), &message)) return;
        TranslateMessage(&message);
        DispatchMessageW(&message);
    }

    HostLoop loop_;
    int ups_ = 0;
    bool released_ = false;
};

}  // namespace demovex
