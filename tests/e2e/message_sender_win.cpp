// Sends messages of every kind to the component's windows in another process, as any program of the
// same user may.
//
//   message_sender PROCESS COUNT SEED
//
// Half are sent and half are posted. Left out is what a window answers with a loop of its own
// (menus, dialogs, dragging) or by going, as a user would expect it to. Ends with 0 when it has
// sent them all, with 1 when there is no window left to send to.
// clang-format off
#include <windows.h>
#include <commdlg.h>
#include <dde.h>
// clang-format on

#include <algorithm>
#include <cstdlib>
#include <random>
#include <string_view>
#include <vector>

namespace {

struct Search {
    DWORD process;
    std::vector<HWND> windows;
};

BOOL CALLBACK CollectChild(HWND window, LPARAM data) {
    auto& search = *reinterpret_cast<Search*>(data);
    wchar_t name[64] = L"";
    GetClassNameW(window, name, 64);
    // what is in it of the system's own controls follows whatever it is sent
    if (std::wstring_view(name).starts_with(L"DemoVexClient.")) search.windows.push_back(window);
    return TRUE;
}

BOOL CALLBACK Collect(HWND window, LPARAM data) {
    auto& search = *reinterpret_cast<Search*>(data);
    DWORD process = 0;
    GetWindowThreadProcessId(window, &process);
    if (process != search.process) return TRUE;
    CollectChild(window, data);
    EnumChildWindows(window, &CollectChild, data);
    return TRUE;
}

bool LeftOut(UINT message) {
    constexpr UINT kSystemMenu = 0x0313;  // WM_POPUPSYSTEMMENU
    static const UINT left_out[] = {WM_CLOSE,
                                    WM_QUIT,
                                    WM_SYSCOMMAND,
                                    WM_QUERYENDSESSION,
                                    WM_ENDSESSION,
                                    WM_CONTEXTMENU,
                                    WM_COMMAND,
                                    WM_HELP,
                                    WM_KEYDOWN,
                                    WM_CHAR,
                                    WM_SYSKEYDOWN,
                                    WM_SYSKEYUP,
                                    WM_SYSCHAR,
                                    WM_LBUTTONDOWN,
                                    WM_LBUTTONDBLCLK,
                                    WM_RBUTTONDOWN,
                                    WM_RBUTTONUP,
                                    WM_NCLBUTTONDOWN,
                                    WM_NCLBUTTONDBLCLK,
                                    WM_NCRBUTTONDOWN,
                                    WM_NCRBUTTONUP,
                                    kSystemMenu,
                                    RegisterWindowMessageW(HELPMSGSTRINGW)};
    // what a conversation of this kind hands over is unpacked by the sender's side of the system
    if (message >= WM_DDE_FIRST && message <= WM_DDE_LAST) return true;
    return std::find(std::begin(left_out), std::end(left_out), message) != std::end(left_out);
}

// Whether the system takes the second parameter for a number, however it arrives.
bool TakesANumber(UINT message) {
    return (message >= WM_MOUSEFIRST && message <= WM_MOUSELAST) || message == WM_SIZE ||
           message == WM_MOVE || message == WM_NCHITTEST || message == WM_HSCROLL ||
           message == WM_VSCROLL || message == WM_SETFOCUS || message == WM_KILLFOCUS ||
           message == WM_ACTIVATE || message == WM_NCPAINT || message == WM_PAINT ||
           message >= WM_USER;
}

}  // namespace

int main(int argc, char** argv) {
    if (argc < 4) return 99;
    Search search{static_cast<DWORD>(std::strtoul(argv[1], nullptr, 10)), {}};
    EnumWindows(&Collect, reinterpret_cast<LPARAM>(&search));
    if (search.windows.empty()) return 1;
    std::mt19937 random(static_cast<unsigned>(std::strtoul(argv[3], nullptr, 10)));
    static char zeros[4096];  // what the system reads of this program for some messages
    const auto parameter = [&]() -> LPARAM {
        switch (random() % 6) {
            case 0:
                return 0;
            case 1:
                return 16;  // no pointer of anybody's
            case 2:
                return -1;
            case 3:
                return static_cast<LPARAM>(random() % 256);
            default:
                return static_cast<LPARAM>(random());
        }
    };
    long left = std::strtol(argv[2], nullptr, 10);
    while (left > 0) {
        // most of them are the system's, some a program's own, some registered by name
        const unsigned kind = random() % 8;
        const UINT message = kind < 5   ? random() % WM_USER
                             : kind < 7 ? WM_USER + random() % 0xBC00
                                        : 0xC000 + random() % 0x4000;
        if (LeftOut(message)) continue;
        --left;
        HWND window = search.windows[random() % search.windows.size()];
        const auto wparam = static_cast<WPARAM>(parameter());
        // (a timer's message would have the system call what its parameter points to)
        const LPARAM lparam = message == WM_TIMER     ? 0
                              : TakesANumber(message) ? parameter()
                              : random() % 2 == 0     ? reinterpret_cast<LPARAM>(&zeros[0])
                                                      : 0;
        if (random() % 2 == 0) {
            DWORD_PTR answer = 0;
            // as many items as the zeros are: the system carries them over before anybody sees them
            SendMessageTimeoutW(window, message, lparam != 0 ? wparam % 1024 : wparam, lparam,
                                SMTO_ABORTIFHUNG, 5000, &answer);
        } else {
            PostMessageW(window, message, wparam, lparam);
        }
    }
    return IsWindow(search.windows.front()) ? 0 : 1;
}
