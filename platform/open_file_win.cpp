#include "platform/open_file_win.h"

#include "base/error.h"
#include "platform/path_win.h"
#include "platform/system_error_win.h"

namespace demovex {

UniqueHandle TryOpen(const std::wstring& path, DWORD access, DWORD share, DWORD disposition,
                     DWORD flags) noexcept {
    return OwnFile(CreateFileW(path.c_str(), access, share, nullptr, disposition,
                               flags | SECURITY_SQOS_PRESENT | SECURITY_IDENTIFICATION, nullptr));
}

UniqueHandle OpenDiskFile(std::wstring_view path, DWORD access, DWORD share, DWORD disposition,
                          DWORD flags) {
    UniqueHandle file = TryOpen(SystemPath(path), access, share, disposition, flags);
    if (!file) RaiseFileError(GetLastError());
    RequireDiskFile(file.get());
    return file;
}

void RequireDiskFile(HANDLE file) {
    // "con", "com1" and pipes would wait for somebody; a whole disk says that it is one but knows
    // no file
    BY_HANDLE_FILE_INFORMATION information;
    if (GetFileType(file) != FILE_TYPE_DISK || !GetFileInformationByHandle(file, &information) ||
        (information.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0) {
        RaiseRuntimeError(runtime_error::kPathFileAccessError);
    }
}

std::optional<FileStamp> StampOf(HANDLE file) noexcept {
    BY_HANDLE_FILE_INFORMATION information;
    if (!GetFileInformationByHandle(file, &information)) return std::nullopt;
    const auto both = [](DWORD high, DWORD low) { return (std::uint64_t{high} << 32) | low; };
    return FileStamp{.length = both(information.nFileSizeHigh, information.nFileSizeLow),
                     .written = both(information.ftLastWriteTime.dwHighDateTime,
                                     information.ftLastWriteTime.dwLowDateTime),
                     .volume = information.dwVolumeSerialNumber,
                     .file = both(information.nFileIndexHigh, information.nFileIndexLow)};
}

std::wstring FinalPath(HANDLE file) {
    std::wstring path(512, L'\0');
    for (;;) {
        const DWORD length = GetFinalPathNameByHandleW(
            file, path.data(), static_cast<DWORD>(path.size()), VOLUME_NAME_DOS);
        if (length == 0) return {};
        if (length < path.size()) {
            path.resize(length);
            return path;
        }
        path.resize(length + 1u);  // it may have grown since, so this is no promise
    }
}

}  // namespace demovex
