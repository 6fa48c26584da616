#include "platform/files_win.h"

#include <windows.h>

#include <aclapi.h>

#include <algorithm>
#include <limits>
#include <vector>

#include "base/error.h"
#include "platform/handle_win.h"
#include "platform/path_win.h"
#include "platform/shared_reader_win.h"
#include "platform/system_error_win.h"

namespace demovex {
namespace {

constexpr DWORD kShareAll = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
// The largest piece handed to the system at once.
constexpr std::size_t kPiece = 16u * 1024 * 1024;

UniqueHandle Open(std::wstring_view path, DWORD access, DWORD share, DWORD disposition) {
    UniqueHandle file = OwnFile(CreateFileW(SystemPath(path).c_str(), access, share, nullptr,
                                            disposition, FILE_ATTRIBUTE_NORMAL, nullptr));
    if (!file) RaiseFileError(GetLastError());
    // "con", "com1" and pipes would wait for somebody
    if (GetFileType(file.get()) != FILE_TYPE_DISK) {
        RaiseRuntimeError(runtime_error::kPathFileAccessError);
    }
    return file;
}

class WinOutputFile : public IOutputFile {
  public:
    explicit WinOutputFile(UniqueHandle file) : file_(std::move(file)) {
        const LARGE_INTEGER none{};
        if (!SetFilePointerEx(file_.get(), none, &end_, FILE_END)) RaiseFileError(GetLastError());
    }

    void Write(std::string_view bytes) override {
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

    void Flush() override {
        const NoSystemDialogs quiet;
        if (FlushFileBuffers(file_.get())) return;
        const DWORD code = GetLastError();
        // file systems without such an operation have nothing to wait for
        if (code == ERROR_INVALID_FUNCTION || code == ERROR_NOT_SUPPORTED) return;
        RaiseFileError(code);
    }

    void Close() override {
        // a network drive may tell only now that something was not written
        if (HANDLE file = file_.release(); file != nullptr && !CloseHandle(file)) {
            RaiseFileError(GetLastError());
        }
    }

  private:
    // After a failed write: a part of a line is worse than none.
    void TakeBack(LARGE_INTEGER begin) {
        if (SetFilePointerEx(file_.get(), begin, nullptr, FILE_BEGIN)) SetEndOfFile(file_.get());
        end_ = begin;
    }

    UniqueHandle file_;
    LARGE_INTEGER end_{};
};

struct FindCloser {
    using pointer = HANDLE;
    void operator()(HANDLE search) const noexcept { FindClose(search); }
};

struct LocalFreer {
    void operator()(void* memory) const noexcept { LocalFree(memory); }
};

// Gives `to` what makes `from` the user's file beyond its content. What the system refuses to copy
// is not worth failing a save for.
void CopyIdentity(const std::wstring& from, DWORD attributes, const std::wstring& to) {
    {
        const UniqueHandle source = OwnFile(CreateFileW(
            from.c_str(), FILE_READ_ATTRIBUTES, kShareAll, nullptr, OPEN_EXISTING, 0, nullptr));
        const UniqueHandle target = OwnFile(CreateFileW(
            to.c_str(), FILE_WRITE_ATTRIBUTES, kShareAll, nullptr, OPEN_EXISTING, 0, nullptr));
        FILETIME created;
        if (source && target && GetFileTime(source.get(), &created, nullptr, nullptr)) {
            SetFileTime(target.get(), &created, nullptr, nullptr);
        }
    }
    constexpr DWORD kCopied = FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_SYSTEM |
                              FILE_ATTRIBUTE_ARCHIVE | FILE_ATTRIBUTE_NOT_CONTENT_INDEXED;
    const DWORD wanted = attributes & kCopied;
    SetFileAttributesW(to.c_str(), wanted != 0 ? wanted : FILE_ATTRIBUTE_NORMAL);
    std::wstring from_name = from, to_name = to;
    PACL rights = nullptr;
    PSECURITY_DESCRIPTOR descriptor = nullptr;
    if (GetNamedSecurityInfoW(from_name.data(), SE_FILE_OBJECT, DACL_SECURITY_INFORMATION, nullptr,
                              nullptr, &rights, nullptr, &descriptor) == ERROR_SUCCESS) {
        const std::unique_ptr<void, LocalFreer> owner(descriptor);
        SECURITY_DESCRIPTOR_CONTROL control = 0;
        DWORD revision = 0;
        if (GetSecurityDescriptorControl(descriptor, &control, &revision)) {
            // what the folder bequeaths comes by itself, unless the file was cut off from that
            const SECURITY_INFORMATION inheritance = (control & SE_DACL_PROTECTED) != 0
                                                         ? PROTECTED_DACL_SECURITY_INFORMATION
                                                         : UNPROTECTED_DACL_SECURITY_INFORMATION;
            SetNamedSecurityInfoW(to_name.data(), SE_FILE_OBJECT,
                                  DACL_SECURITY_INFORMATION | inheritance, nullptr, nullptr, rights,
                                  nullptr);
        }
    }
}

// After a refused rename: whether somebody has the target open.
bool IsInUse(const std::wstring& path) {
    const UniqueHandle file = OwnFile(
        CreateFileW(path.c_str(), GENERIC_READ | DELETE, 0, nullptr, OPEN_EXISTING, 0, nullptr));
    if (file) return false;
    const DWORD code = GetLastError();
    return code == ERROR_SHARING_VIOLATION || code == ERROR_LOCK_VIOLATION;
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

std::string WinFileSystem::ReadWhole(std::wstring_view path) {
    const NoSystemDialogs quiet;
    const UniqueHandle file = Open(path, GENERIC_READ, kShareAll, OPEN_EXISTING);
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

std::unique_ptr<IOutputFile> WinFileSystem::CreateNew(std::wstring_view path) {
    const NoSystemDialogs quiet;
    return std::make_unique<WinOutputFile>(Open(path, GENERIC_WRITE, FILE_SHARE_READ, CREATE_NEW));
}

std::unique_ptr<IOutputFile> WinFileSystem::OpenAppend(std::wstring_view path) {
    const NoSystemDialogs quiet;
    // a superuser beneath Wine could write all the same
    const DWORD attributes = GetFileAttributesW(SystemPath(path).c_str());
    if (attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_READONLY) != 0) {
        RaiseRuntimeError(runtime_error::kPathFileAccessError);
    }
    return std::make_unique<WinOutputFile>(Open(path, GENERIC_WRITE, FILE_SHARE_READ, OPEN_ALWAYS));
}

void WinFileSystem::Replace(std::wstring_view replacement, std::wstring_view target) {
    const NoSystemDialogs quiet;
    const std::wstring from = SystemPath(replacement), to = SystemPath(target);
    const DWORD attributes = GetFileAttributesW(to.c_str());
    if (attributes != INVALID_FILE_ATTRIBUTES) {
        if ((attributes & (FILE_ATTRIBUTE_READONLY | FILE_ATTRIBUTE_DIRECTORY)) != 0) {
            RaiseRuntimeError(runtime_error::kPathFileAccessError);
        }
        CopyIdentity(to, attributes, from);
    }
    if (MoveFileExW(from.c_str(), to.c_str(), MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH)) {
        return;
    }
    const DWORD code = GetLastError();
    // the system says "access denied" both for missing rights and for a target that is open
    if (code == ERROR_ACCESS_DENIED && IsInUse(to)) {
        RaiseRuntimeError(runtime_error::kPermissionDenied);
    }
    RaiseFileError(code);
}

void WinFileSystem::Delete(std::wstring_view path) {
    const NoSystemDialogs quiet;
    if (!DeleteFileW(SystemPath(path).c_str())) RaiseFileError(GetLastError());
}

std::unique_ptr<IRandomReader> WinFileSystem::OpenShared(std::wstring_view path) {
    const NoSystemDialogs quiet;
    return std::make_unique<WinSharedReader>(path, policy_);
}

}  // namespace demovex
