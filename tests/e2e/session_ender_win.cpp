// Ends the session of another process as the system does: asks each of its windows and one of this
// program's own, and then tells all of them whether the session ends.
//
//   session_ender PROCESS refuse|agree [critical]
//
// "refuse": this program's window refuses, so the end is cancelled. Ends with the number of the
// other process' windows that refused, and 100 more when the session ended.
#include <windows.h>

#include <cstdlib>
#include <cstring>
#include <vector>

namespace {

bool refuses = false;

LRESULT CALLBACK Procedure(HWND window, UINT message, WPARAM wparam, LPARAM lparam) {
    if (message == WM_QUERYENDSESSION) return refuses ? FALSE : TRUE;
    return DefWindowProcW(window, message, wparam, lparam);
}

struct Search {
    DWORD process;
    std::vector<HWND> windows;
};

BOOL CALLBACK Collect(HWND window, LPARAM data) {
    auto& search = *reinterpret_cast<Search*>(data);
    DWORD process = 0;
    GetWindowThreadProcessId(window, &process);
    if (process == search.process) search.windows.push_back(window);
    return TRUE;
}

// A window that does not answer counts as one that agrees.
bool Agrees(HWND window, LPARAM reasons) {
    DWORD_PTR answer = TRUE;
    SendMessageTimeoutW(window, WM_QUERYENDSESSION, 0, reasons, SMTO_ABORTIFHUNG, 20'000, &answer);
    return answer != FALSE;
}

}  // namespace

int main(int argc, char** argv) {
    if (argc < 3) return 99;
    refuses = std::strcmp(argv[2], "refuse") == 0;
    const LPARAM reasons = argc > 3 ? static_cast<LPARAM>(ENDSESSION_CRITICAL) : 0;
    WNDCLASSW info{};
    info.lpfnWndProc = &Procedure;
    info.hInstance = GetModuleHandleW(nullptr);
    info.lpszClassName = L"DemoVexTest.SessionEnder";
    RegisterClassW(&info);
    const HWND own = CreateWindowExW(0, info.lpszClassName, L"", WS_OVERLAPPEDWINDOW, 0, 0, 50, 50,
                                     nullptr, nullptr, info.hInstance, nullptr);
    Search search{static_cast<DWORD>(std::strtoul(argv[1], nullptr, 10)), {}};
    EnumWindows(&Collect, reinterpret_cast<LPARAM>(&search));

    int refused = 0;
    for (HWND window : search.windows) refused += Agrees(window, reasons) ? 0 : 1;
    const bool ends = (refused == 0 || reasons != 0) && Agrees(own, reasons);
    for (HWND window : search.windows) {
        DWORD_PTR answer = 0;
        SendMessageTimeoutW(window, WM_ENDSESSION, ends, reasons, SMTO_ABORTIFHUNG, 20'000,
                            &answer);
    }
    return refused + (ends ? 100 : 0);
}
