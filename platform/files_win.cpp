#include "platform/files_win.h"

#include <windows.h>

#include <algorithm>
#include <limits>

#include "base/error.h"
#include "platform/open_file_win.h"
#include "platform/output_file_win.h"
#include "platform/path_win.h"
#include "platform/shared_reader_win.h"
#include "platform/system_error_win.h"

namespace demovex {
namespace {

// The largest piece asked of the system at once.
constexpr std::size_t kPiece = 16u * 1024 * 1024;

struct FindCloser {
    using pointer = HANDLE;
    void operator()(HANDLE search) const noexcept { FindClose(search); }
};

[[noreturn]] void RaiseAccessError() {
    RaiseRuntimeError(runtime_error::kPathFileAccessError);
}

DWORD AttributesOf(HANDLE file) noexcept {
    FILE_BASIC_INFO basics{};
    return GetFileInformationByHandleEx(file, FileBasicInfo, &basics, sizeof basics)
               ? basics.FileAttributes
               : 0;
}

// The path under which a file in the folder of `path` is open when no link leads elsewhere.
std::wstring FinalPathInItsFolder(const std::wstring& path) {
    const std::size_t separator = path.find_last_of(L'\\');
    if (separator == std::wstring::npos) return {};
    const UniqueHandle folder = TryOpen(path.substr(0, separator + 1), FILE_READ_ATTRIBUTES,
                                        kShareAll, OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS);
    std::wstring final_path = folder ? FinalPath(folder.get()) : std::wstring();
    if (final_path.empty()) return {};
    if (final_path.back() != L'\\') final_path += L'\\';
    return final_path + path.substr(separator + 1);
}

bool SamePath(const std::wstring& a, const std::wstring& b) noexcept {
    return CompareStringOrdinal(a.c_str(), static_cast<int>(a.size()), b.c_str(),
                                static_cast<int>(b.size()), TRUE) == CSTR_EQUAL;
}

}  // namespace

bool WinFileSystem::Exists(std::wstring_view path) const noexcept {
    try {
        if (path.empty()) return false;
        const NoSystemDialogs quiet;
        std::wstring search(path);
        // a folder's name with a separator behind asks for what is in the folder
        if (search.back() == L'\\' || search.back() == L'/') search += L'*';
        WIN32_FIND_DATAW found;
        const HANDLE handle = FindFirstFileW(SystemPath(search).c_str(), &found);
        if (handle == INVALID_HANDLE_VALUE) return false;
        const std::unique_ptr<HANDLE, FindCloser> closer(handle);
        return true;
    } catch (...) {  // every error means "no"
        return false;
    }
}

std::wstring WinFileSystem::Absolute(std::wstring_view path) const {
    std::wstring given(path);
    if (given.empty() || given.find(L'\0') != std::wstring::npos) return given;
    std::wstring full(MAX_PATH, L'\0');
    for (;;) {
        const DWORD length =
            GetFullPathNameW(given.c_str(), static_cast<DWORD>(full.size()), full.data(), nullptr);
        if (length == 0) return given;
        if (length < full.size()) {
            full.resize(length);
            return full;
        }
        if (length <= full.size()) return given;
        full.resize(length);
    }
}

std::optional<FileStamp> WinFileSystem::Stamp(std::wstring_view path) const noexcept {
    try {
        const NoSystemDialogs quiet;
        const UniqueHandle file =
            TryOpen(SystemPath(path), FILE_READ_ATTRIBUTES, kShareAll, OPEN_EXISTING, 0);
        if (!file) return std::nullopt;
        RequireDiskFile(file.get());
        return StampOf(file.get());
    } catch (...) {  // nothing that could be told from anything else
        return std::nullopt;
    }
}

std::string WinFileSystem::ReadWhole(std::wstring_view path) {
    const NoSystemDialogs quiet;
    const UniqueHandle file = OpenDiskFile(path, GENERIC_READ, kShareAll, OPEN_EXISTING);
    LARGE_INTEGER size;
    if (!GetFileSizeEx(file.get(), &size)) RaiseFileError(GetLastError());
    if (size.QuadPart > std::numeric_limits<std::int32_t>::max()) {
        RaiseRuntimeError(runtime_error::kOutOfMemory);
    }
    std::string bytes(static_cast<std::size_t>(size.QuadPart), '\0');
    std::size_t have = 0;
    while (have < bytes.size()) {
        DWORD got = 0;
        const DWORD piece = static_cast<DWORD>(std::min(bytes.size() - have, kPiece));
        if (!ReadFile(file.get(), bytes.data() + have, piece, &got, nullptr)) {
            RaiseFileError(GetLastError());
        }
        if (got == 0) break;  // shorter than it was a moment ago
        have += got;
    }
    bytes.resize(have);
    return bytes;
}

std::wstring WinFileSystem::ResolveTarget(std::wstring_view path) {
    const NoSystemDialogs quiet;
    std::wstring full = Absolute(path);
    const std::wstring name = SystemPath(full);
    const UniqueHandle file =
        TryOpen(name, FILE_READ_ATTRIBUTES, kShareAll, OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS);
    const DWORD named = GetFileAttributesW(name.c_str());  // of a link itself
    const bool may_be_link =
        named != INVALID_FILE_ATTRIBUTES && (named & FILE_ATTRIBUTE_REPARSE_POINT) != 0;
    if (!file) {
        if (may_be_link) RaiseAccessError();
        return full;  // missing, or whoever writes there hears why it cannot be done
    }
    const DWORD attributes = AttributesOf(file.get());
    RequireDiskFile(file.get());
    if ((attributes & FILE_ATTRIBUTE_READONLY) != 0) RaiseAccessError();
    std::wstring final_path = FinalPath(file.get());
    if (!final_path.empty()) return final_path;
    if (may_be_link) RaiseAccessError();
    return full;
}

std::unique_ptr<IReplacementFile> WinFileSystem::CreateReplacement(std::wstring_view path,
                                                                   std::wstring_view target) {
    const NoSystemDialogs quiet;
    return std::make_unique<WinReplacementFile>(path, target);
}

std::unique_ptr<IOutputFile> WinFileSystem::OpenAppend(std::wstring_view path) {
    const NoSystemDialogs quiet;
    UniqueHandle file = OpenDiskFile(path, GENERIC_WRITE, FILE_SHARE_READ, OPEN_ALWAYS);
    // a superuser beneath Wine could write all the same
    if ((AttributesOf(file.get()) & FILE_ATTRIBUTE_READONLY) != 0) RaiseAccessError();
    return std::make_unique<WinOutputFile>(std::move(file));
}

void WinFileSystem::Delete(std::wstring_view path) {
    const NoSystemDialogs quiet;
    const std::wstring name = SystemPath(path);
    const UniqueHandle file = TryOpen(name, DELETE | FILE_READ_ATTRIBUTES, 0, OPEN_EXISTING,
                                      FILE_FLAG_OPEN_REPARSE_POINT);
    if (!file) RaiseFileError(GetLastError());
    RequireDiskFile(file.get());
    BY_HANDLE_FILE_INFORMATION information{};
    constexpr DWORD kNotOrdinary = FILE_ATTRIBUTE_REPARSE_POINT | FILE_ATTRIBUTE_READONLY;
    if (!GetFileInformationByHandle(file.get(), &information) ||
        (information.dwFileAttributes & kNotOrdinary) != 0 || information.nNumberOfLinks > 1) {
        RaiseAccessError();
    }
    // Not every link is one to the system: those of another system's disk are followed, and what is
    // open then is the file at the other end.
    const std::wstring expected = FinalPathInItsFolder(Absolute(name));
    const std::wstring opened = FinalPath(file.get());
    if (!expected.empty() && !opened.empty() && !SamePath(expected, opened)) RaiseAccessError();
    FILE_DISPOSITION_INFO gone{TRUE};
    if (!SetFileInformationByHandle(file.get(), FileDispositionInfo, &gone, sizeof gone)) {
        RaiseFileError(GetLastError());
    }
}

std::unique_ptr<IRandomReader> WinFileSystem::OpenShared(std::wstring_view path) {
    const NoSystemDialogs quiet;
    return std::make_unique<WinSharedReader>(
        OpenDiskFile(path, GENERIC_READ, kShareAll, OPEN_EXISTING, FILE_FLAG_RANDOM_ACCESS),
        policy_);
}

std::unique_ptr<IRandomReader> WinFileSystem::OpenRenamed(std::wstring_view path,
                                                          const FileStamp& stamp) {
    const NoSystemDialogs quiet;
    const std::wstring full = Absolute(path);
    const UniqueHandle folder =
        TryOpen(SystemPath(full.substr(0, full.find_last_of(L'\\') + 1)), FILE_READ_ATTRIBUTES,
                kShareAll, OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS);
    if (!folder) return nullptr;
    FILE_ID_DESCRIPTOR id{};
    id.dwSize = sizeof id;
    id.Type = FileIdType;
    id.FileId.QuadPart = static_cast<LONGLONG>(stamp.file);
    UniqueHandle file =
        OwnFile(OpenFileById(folder.get(), &id, GENERIC_READ, kShareAll, nullptr, 0));
    if (!file || GetFileType(file.get()) != FILE_TYPE_DISK) return nullptr;
    const std::optional<FileStamp> found = StampOf(file.get());
    if (!found || *found != stamp) return nullptr;
    return std::make_unique<WinSharedReader>(std::move(file), policy_);
}

}  // namespace demovex
