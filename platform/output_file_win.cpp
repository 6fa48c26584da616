#include "platform/output_file_win.h"

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <vector>

#include "base/error.h"
#include "platform/file_traits_win.h"
#include "platform/open_file_win.h"
#include "platform/path_win.h"
#include "platform/system_error_win.h"

namespace demovex {
namespace {

// The largest piece handed to the system at once.
constexpr std::size_t kPiece = 16u * 1024 * 1024;

// The target for reading what makes it the user's file, with as many rights as are to be had.
UniqueHandle OpenForTraits(const std::wstring& target) noexcept {
    for (const DWORD access : {DWORD{GENERIC_READ}, DWORD{FILE_READ_ATTRIBUTES | READ_CONTROL},
                               DWORD{FILE_READ_ATTRIBUTES}}) {
        if (auto file = TryOpen(target, access, kShareAll, OPEN_EXISTING, 0)) return file;
    }
    return {};
}

UniqueHandle Create(std::wstring_view path, std::wstring_view target) {
    const std::wstring name = SystemPath(path);
    UniqueHandle old = target.empty() ? UniqueHandle() : OpenForTraits(SystemPath(target));
    DWORD flags = FILE_ATTRIBUTE_NORMAL;
    FILE_BASIC_INFO basics{};
    if (old && GetFileInformationByHandleEx(old.get(), FileBasicInfo, &basics, sizeof basics) &&
        (basics.FileAttributes & FILE_ATTRIBUTE_ENCRYPTED) != 0) {
        // from the first byte on; where it cannot be had, nothing is written in the clear
        flags = FILE_ATTRIBUTE_ENCRYPTED;
    }
    constexpr DWORD kNeeded = GENERIC_WRITE | FILE_READ_ATTRIBUTES | DELETE;
    UniqueHandle file =
        TryOpen(name, kNeeded | READ_CONTROL | WRITE_DAC, FILE_SHARE_READ, CREATE_NEW, flags);
    if (!file && GetLastError() == ERROR_ACCESS_DENIED) {
        // a share may let nobody change rights; the file has those that the folder gives then
        file = TryOpen(name, kNeeded, FILE_SHARE_READ, CREATE_NEW, flags);
    }
    if (!file) RaiseFileError(GetLastError());
    RequireDiskFile(file.get());
    if (old) CopyFileAccess(old.get(), file.get());
    return file;
}

// Renames an open file over `target`; the system's error code, 0 for none.
DWORD RenameOver(HANDLE file, const std::wstring& target) {
    const std::size_t bytes = target.size() * sizeof(wchar_t);
    std::vector<std::byte> buffer(sizeof(FILE_RENAME_INFO) + bytes);
    auto* const info = reinterpret_cast<FILE_RENAME_INFO*>(buffer.data());
    info->ReplaceIfExists = TRUE;
    info->FileNameLength = static_cast<DWORD>(bytes);
    std::memcpy(info->FileName, target.data(), bytes);
    return SetFileInformationByHandle(file, FileRenameInfo, info, static_cast<DWORD>(buffer.size()))
               ? 0
               : GetLastError();
}

// After a refused rename: whether somebody has the target open.
bool IsInUse(const std::wstring& path) noexcept {
    if (TryOpen(path, GENERIC_READ | DELETE, 0, OPEN_EXISTING, 0)) return false;
    const DWORD code = GetLastError();
    return code == ERROR_SHARING_VIOLATION || code == ERROR_LOCK_VIOLATION;
}

}  // namespace

OpenOutput::OpenOutput(UniqueHandle file) : file_(std::move(file)) {
    const LARGE_INTEGER none{};
    if (!SetFilePointerEx(file_.get(), none, &end_, FILE_END)) RaiseFileError(GetLastError());
}

void OpenOutput::Write(std::string_view bytes) {
    const NoSystemDialogs quiet;
    const LARGE_INTEGER begin = end_;
    for (std::size_t at = 0; at < bytes.size();) {
        const DWORD piece = static_cast<DWORD>(std::min(bytes.size() - at, kPiece));
        DWORD written = 0;
        const bool ok = WriteFile(file_.get(), bytes.data() + at, piece, &written, nullptr);
        if (!ok || written == 0) {
            const DWORD code = ok ? ERROR_DISK_FULL : GetLastError();
            TakeBack(begin);
            RaiseFileError(code);
        }
        at += written;
        end_.QuadPart += written;
    }
}

void OpenOutput::TakeBack(LARGE_INTEGER begin) {
    if (SetFilePointerEx(file_.get(), begin, nullptr, FILE_BEGIN)) SetEndOfFile(file_.get());
    end_ = begin;
}

void OpenOutput::Flush() {
    const NoSystemDialogs quiet;
    if (FlushFileBuffers(file_.get())) return;
    const DWORD code = GetLastError();
    // file systems without such an operation have nothing to wait for
    if (code == ERROR_INVALID_FUNCTION || code == ERROR_NOT_SUPPORTED) return;
    RaiseFileError(code);
}

void OpenOutput::Close() {
    // a network drive may tell only now that something was not written
    if (HANDLE file = file_.release(); file != nullptr && !CloseHandle(file)) {
        RaiseFileError(GetLastError());
    }
}

WinReplacementFile::WinReplacementFile(std::wstring_view path, std::wstring_view target)
    : file_(Create(path, target)) {}

std::optional<FileStamp> WinReplacementFile::TakePlaceOf(std::wstring_view target) {
    const NoSystemDialogs quiet;
    const std::wstring to = SystemPath(target);
    if (const UniqueHandle old = OpenForTraits(to)) CopyFileTraits(old.get(), file_.get());
    if (const DWORD code = RenameOver(file_.get(), to)) {
        // the system says "access denied" both for missing rights and for a target that is open
        if (code == ERROR_ACCESS_DENIED && IsInUse(to)) {
            RaiseRuntimeError(runtime_error::kPermissionDenied);
        }
        RaiseFileError(code);
    }
    // From here on the save has succeeded, whatever else fails. The new name is on the disk when
    // this returns, as far as the system can say.
    FlushFileBuffers(file_.get());
    // Asked for by name, as it will be asked for again, and while nobody else can write the file.
    std::optional<FileStamp> stamp;
    if (const UniqueHandle now = TryOpen(to, FILE_READ_ATTRIBUTES, kShareAll, OPEN_EXISTING, 0)) {
        stamp = StampOf(now.get());
    }
    const std::optional<FileStamp> own = StampOf(file_.get());
    if (stamp && own && !IsSameFile(*stamp, *own)) stamp.reset();
    try {
        file_.Close();
    } catch (...) {  // all was flushed before
    }
    return stamp;
}

void WinReplacementFile::Discard() noexcept {
    FILE_DISPOSITION_INFO gone{TRUE};
    SetFileInformationByHandle(file_.get(), FileDispositionInfo, &gone, sizeof gone);
    try {
        file_.Close();
    } catch (...) {  // it was to go anyway
    }
}

}  // namespace demovex
