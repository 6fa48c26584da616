// Opening files whose paths come from outside, and asking open files who they are.
#pragma once

#include <windows.h>

#include <optional>
#include <string>
#include <string_view>

#include "platform/files.h"
#include "platform/handle_win.h"

namespace demovex {

inline constexpr DWORD kShareAll = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;

// Opens what `path` leads to, as CreateFile does with these arguments (`flags` may hold attributes,
// too). A path may be a pipe of somebody who waits for callers: he learns who we are and cannot act
// in our name. Null with the system's error code on a failure.
UniqueHandle TryOpen(const std::wstring& path, DWORD access, DWORD share, DWORD disposition,
                     DWORD flags) noexcept;

// The same for a file on a disk; raises the error of opening, 75 for a folder, a device or a pipe.
UniqueHandle OpenDiskFile(std::wstring_view path, DWORD access, DWORD share, DWORD disposition,
                          DWORD flags = FILE_ATTRIBUTE_NORMAL);

// Raises 75 for an open file that is none on a disk.
void RequireDiskFile(HANDLE file);

std::optional<FileStamp> StampOf(HANDLE file) noexcept;
inline bool IsSameFile(const FileStamp& a, const FileStamp& b) noexcept {
    return a.volume == b.volume && a.file == b.file;
}

// The full path of an open file or folder with all links followed, with the prefix that turns off
// tidying ("\\?\C:\..."); empty where the system cannot tell.
std::wstring FinalPath(HANDLE file);

}  // namespace demovex
