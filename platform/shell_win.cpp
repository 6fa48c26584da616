#include "platform/shell_win.h"

#include <shellapi.h>

#include <string>

namespace demovex {

int WinShell::Open(std::wstring_view address) {
    const std::wstring file(address);
    const HINSTANCE result =
        ShellExecuteW(CurrentOwner(owner_), L"open", file.c_str(), nullptr, nullptr, SW_SHOW);
    // no instance at all: a small number in a pointer's clothes
    return static_cast<int>(reinterpret_cast<INT_PTR>(result));
}

}  // namespace demovex
