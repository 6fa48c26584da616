// Commands of the system beneath Wine, run from a Windows test program: what another system on the
// network would do to our files. Elsewhere they are not available, and tests that need them skip.
#pragma once

#include <windows.h>

#include <string>

#include "tests/support/wait_until.h"

namespace demovex {

inline bool HasUnixCommands() {
    return GetProcAddress(GetModuleHandleW(L"kernel32"), "wine_get_unix_file_name") != nullptr;
}

// The path as the system beneath knows it.
inline std::string UnixPath(const std::wstring& path) {
    using GetName = char*(__cdecl*)(const wchar_t*);
    const auto get = reinterpret_cast<GetName>(reinterpret_cast<void*>(
        GetProcAddress(GetModuleHandleW(L"kernel32"), "wine_get_unix_file_name")));
    char* name = get != nullptr ? get(path.c_str()) : nullptr;
    const std::string result = name != nullptr ? name : "";
    if (name != nullptr) HeapFree(GetProcessHeap(), 0, name);
    return result;
}

// Starts a shell command there (no double quotes in it). Wait for its effect, not for its end.
inline bool StartUnix(const std::string& command) {
    std::wstring line = L"Z:\\bin\\sh -c \"" + std::wstring(command.begin(), command.end()) + L"\"";
    STARTUPINFOW start{};
    start.cb = sizeof start;
    PROCESS_INFORMATION process{};
    // such a program has no handles: what stands in `process` then is not to be closed, and may be
    // the number of a handle that is somebody else's
    return CreateProcessW(nullptr, line.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr,
                          &start, &process) != FALSE;
}

// Runs a shell command there in the folder `folder` and waits until it is through; false when it is
// not in time. It may use the file "done" of that folder for nothing else.
inline bool RunUnix(const std::wstring& folder, const std::string& command) {
    const std::wstring done = folder + L"\\done";
    const bool started =
        StartUnix("cd '" + UnixPath(folder) + "' && { " + command + "; } ; echo > done");
    return started &&
           WaitUntil([&] { return GetFileAttributesW(done.c_str()) != INVALID_FILE_ATTRIBUTES; }) &&
           DeleteFileW(done.c_str());
}

}  // namespace demovex
