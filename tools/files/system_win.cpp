// Files and the console by Windows' means.
#include <windows.h>

#include <shellapi.h>

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <memory>
#include <stdexcept>

#include "platform/handle_win.h"
#include "platform/path_win.h"
#include "tools/encodings.h"
#include "tools/files.h"

namespace demovex::tools {
namespace {

// How long a reader may keep an article master from being replaced, and how often it is tried:
// open baskets let go of it when they are idle.
constexpr DWORD kPatience = 10'000, kPause = 100;

[[noreturn]] void Fail(const std::string& path, DWORD code) {
    wchar_t text[512] = L"";
    DWORD length = FormatMessageW(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS,
                                  nullptr, code, 0, text, 512, nullptr);
    while (length > 0 && text[length - 1] <= L' ') --length;
    const std::string reason =
        length > 0 ? ToUtf8(std::wstring_view(text, length)) : "error " + std::to_string(code);
    throw std::runtime_error(path + ": " + reason);
}

// Whether `path`, once it was refused, is refused because somebody has it open.
bool IsOpenElsewhere(DWORD code) {
    return code == ERROR_SHARING_VIOLATION || code == ERROR_LOCK_VIOLATION ||
           code == ERROR_USER_MAPPED_FILE || code == ERROR_ACCESS_DENIED ||
           code == ERROR_UNABLE_TO_REMOVE_REPLACED || code == ERROR_UNABLE_TO_MOVE_REPLACEMENT ||
           code == ERROR_UNABLE_TO_MOVE_REPLACEMENT_2;
}

// Takes an open file's place, as systems from Windows 10 on can.
bool RenameOverOpenFile(const std::wstring& from, const std::wstring& to) {
    constexpr DWORD kReplace = 1, kPosix = 2;  // FILE_RENAME_FLAG_...
    constexpr auto kRenameInfoEx = static_cast<FILE_INFO_BY_HANDLE_CLASS>(22);
    struct RenameInfo {
        DWORD flags;
        HANDLE root;
        DWORD name_bytes;
        wchar_t name[1];
    };
    const UniqueHandle file = OwnFile(CreateFileW(
        from.c_str(), DELETE | SYNCHRONIZE, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
        nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr));
    if (!file) return false;
    wchar_t full[32768];
    const DWORD length = GetFullPathNameW(to.c_str(), 32768, full, nullptr);
    if (length == 0 || length >= 32768) return false;
    const std::size_t bytes = sizeof(RenameInfo) + length * sizeof(wchar_t);
    const std::unique_ptr<std::byte[]> memory(new std::byte[bytes]());
    auto* info = reinterpret_cast<RenameInfo*>(memory.get());
    info->flags = kReplace | kPosix;
    info->name_bytes = static_cast<DWORD>(length * sizeof(wchar_t));
    std::memcpy(info->name, full, info->name_bytes);
    return SetFileInformationByHandle(file.get(), kRenameInfoEx, info, static_cast<DWORD>(bytes)) !=
           FALSE;
}

// Puts `from` in the place of `to`; the code of the last failure, 0 when it stands there.
DWORD TryReplace(const std::wstring& from, const std::wstring& to, const std::wstring& aside) {
    if (GetFileAttributesW(to.c_str()) != INVALID_FILE_ATTRIBUTES && RenameOverOpenFile(from, to)) {
        return 0;
    }
    if (MoveFileExW(from.c_str(), to.c_str(), MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH)) {
        return 0;
    }
    const DWORD code = GetLastError();
    // older systems do not replace an open file, but let it be renamed
    DeleteFileW(aside.c_str());
    return ReplaceFileW(to.c_str(), from.c_str(), aside.c_str(), 0, nullptr, nullptr) ? 0 : code;
}

}  // namespace

std::string ReadFile(const std::string& path) {
    const std::wstring wide = FromUtf8(path);
    const NoSystemDialogs quiet;
    const UniqueHandle file =
        OwnFile(CreateFileW(SystemPath(wide).c_str(), GENERIC_READ,
                            FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                            OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr));
    if (!file) Fail(path, GetLastError());
    LARGE_INTEGER size{};
    std::string bytes;
    if (GetFileSizeEx(file.get(), &size)) bytes.reserve(static_cast<std::size_t>(size.QuadPart));
    const std::unique_ptr<char[]> block(new char[1 << 20]);
    for (;;) {
        DWORD got = 0;
        if (!::ReadFile(file.get(), block.get(), 1 << 20, &got, nullptr)) {
            Fail(path, GetLastError());
        }
        if (got == 0) return bytes;
        bytes.append(block.get(), got);
    }
}

void PlaceFile(const std::string& path, std::string_view bytes) {
    const std::wstring target = SystemPath(FromUtf8(path));
    const NoSystemDialogs quiet;
    const DWORD attributes = GetFileAttributesW(target.c_str());
    if (attributes != INVALID_FILE_ATTRIBUTES &&
        (attributes & (FILE_ATTRIBUTE_READONLY | FILE_ATTRIBUTE_DIRECTORY)) != 0) {
        const bool folder = (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
        throw std::runtime_error(path + (folder ? ": is a folder" : ": is read-only"));
    }
    const std::wstring temporary = target + L"." + std::to_wstring(GetCurrentProcessId()) + L".neu";
    UniqueHandle file = OwnFile(CreateFileW(temporary.c_str(), GENERIC_WRITE, 0, nullptr,
                                            CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr));
    if (!file) Fail(path, GetLastError());
    DWORD failure = 0;
    while (failure == 0 && !bytes.empty()) {
        const DWORD piece = static_cast<DWORD>(std::min<std::size_t>(bytes.size(), 1u << 24));
        DWORD written = 0;
        if (!WriteFile(file.get(), bytes.data(), piece, &written, nullptr)) {
            failure = GetLastError();
        } else if (written == 0) {
            failure = ERROR_DISK_FULL;
        }
        bytes.remove_prefix(written);
    }
    if (failure == 0 && !FlushFileBuffers(file.get())) failure = GetLastError();
    file.reset();
    const std::wstring aside = target + L".alt";
    const ULONGLONG begun = GetTickCount64();
    while (failure == 0) {
        const DWORD code = TryReplace(temporary, target, aside);
        if (code == 0) {
            // this run's, or an earlier one's; where a reader has it still, the next run does it
            DeleteFileW(aside.c_str());
            return;
        }
        if (!IsOpenElsewhere(code) || GetTickCount64() - begun > kPatience) {
            failure = code;
        } else {
            Sleep(kPause);
        }
    }
    DeleteFileW(temporary.c_str());
    Fail(path, failure);
}

std::vector<std::string> Arguments(int /*argc*/, char** /*argv*/) {
    std::vector<std::string> arguments;
    int count = 0;
    wchar_t** words = CommandLineToArgvW(GetCommandLineW(), &count);
    for (int i = 1; words != nullptr && i < count; ++i) arguments.push_back(ToUtf8(words[i]));
    LocalFree(words);
    return arguments;
}

ConsoleInUtf8::ConsoleInUtf8() : before_(GetConsoleOutputCP()) {
    if (before_ != 0) SetConsoleOutputCP(CP_UTF8);
}

ConsoleInUtf8::~ConsoleInUtf8() {
    if (before_ != 0) SetConsoleOutputCP(before_);
}

bool ErrorOutputIsTerminal() {
    DWORD mode = 0;
    return GetConsoleMode(GetStdHandle(STD_ERROR_HANDLE), &mode) != FALSE;
}

}  // namespace demovex::tools
