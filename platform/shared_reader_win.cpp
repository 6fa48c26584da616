#include "platform/shared_reader_win.h"

#include <algorithm>
#include <cwchar>
#include <limits>

#include "base/error.h"
#include "platform/path_win.h"
#include "platform/system_error_win.h"

namespace demovex {
namespace {

constexpr std::uint64_t kWindow = 4 * 1024 * 1024;
constexpr std::size_t kWindowsKept = 16;
// Views overlap by this much, so that a record always lies in one view; longer reads are direct.
constexpr std::uint64_t kOverlap = 64 * 1024;
constexpr std::size_t kLongestMappedRead = 4096;

// Whether the file lies on a fixed disk of this machine, whatever path led to it: only there other
// programs' writes show in a mapped view at once, and nobody else can cut the file off.
bool OnFixedDisk(HANDLE file) {
    std::wstring path(512, L'\0');
    DWORD length = GetFinalPathNameByHandleW(file, path.data(), static_cast<DWORD>(path.size()),
                                             VOLUME_NAME_DOS);
    if (length >= path.size()) {
        path.resize(length + 1u);
        length = GetFinalPathNameByHandleW(file, path.data(), static_cast<DWORD>(path.size()),
                                           VOLUME_NAME_DOS);
    }
    if (length == 0 || length >= path.size()) return false;
    path.resize(length);
    // "\\?\C:\folder\file"; a network path begins with "\\?\UNC\"
    if (path.substr(0, 4) != L"\\\\?\\" || path.size() < 7 || path[5] != L':') return false;
    return GetDriveTypeW(path.substr(4, 3).c_str()) == DRIVE_FIXED;
}

std::uint64_t AddressSpaceShare() {
    MEMORYSTATUSEX status{};
    status.dwLength = sizeof status;
    if (!GlobalMemoryStatusEx(&status)) return 0;
    return status.ullAvailVirtual / 3;
}

}  // namespace

WinSharedReader::WinSharedReader(std::wstring_view path, SharedReadPolicy policy)
    : policy_(policy) {
    file_ = OwnFile(CreateFileW(SystemPath(path).c_str(), GENERIC_READ,
                                FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                                OPEN_EXISTING, FILE_FLAG_RANDOM_ACCESS, nullptr));
    if (!file_) RaiseFileError(GetLastError());
    LARGE_INTEGER size;
    if (GetFileType(file_.get()) != FILE_TYPE_DISK) {
        RaiseRuntimeError(runtime_error::kPathFileAccessError);
    }
    if (!GetFileSizeEx(file_.get(), &size)) RaiseFileError(GetLastError());
    size_ = static_cast<std::uint64_t>(size.QuadPart);
}

int WinSharedReader::mapped_views() const {
    return static_cast<int>(views_.size());
}

std::string_view WinSharedReader::Read(std::uint64_t offset, std::size_t length) {
    if (length > size_ || offset > size_ - length) RaiseRuntimeError(runtime_error::kDeviceIoError);
    // room for an odd length and for the terminator of the copy
    if (buffer_.size() < length / 2 + 2) buffer_.resize(length / 2 + 2);
    if (length != 0 && !CopyFromMap(offset, length)) ReadDirectly(offset, length);
    return {reinterpret_cast<const char*>(buffer_.data()), length};
}

// False when the bytes could not be had from the map beyond doubt.
bool WinSharedReader::CopyFromMap(std::uint64_t offset, std::size_t length) {
    if (!policy_.map || length > kLongestMappedRead) return false;
    const View* view = ViewFor(offset, length);
    if (view == nullptr) return false;
    const std::size_t units = (length + 1) / 2;
    if (offset + units * 2 > view->end) return false;
    // The one function of the system that copies under its own protection: a fault makes it return
    // null (its documentation says so). It stops at a zero unit, and bytes behind the end of a file
    // that has become shorter read as zeros; both are doubt.
    const char* source = static_cast<const char*>(view->address.get()) + (offset - view->begin);
    if (lstrcpynW(buffer_.data(), reinterpret_cast<const wchar_t*>(source),
                  static_cast<int>(units + 1)) == nullptr) {
        return false;
    }
    return std::wmemchr(buffer_.data(), L'\0', units) == nullptr &&
           reinterpret_cast<const char*>(buffer_.data())[length - 1] != '\0';
}

void WinSharedReader::ReadDirectly(std::uint64_t offset, std::size_t length) {
    const NoSystemDialogs quiet;
    ++direct_reads_;
    LARGE_INTEGER place;
    place.QuadPart = static_cast<LONGLONG>(offset);
    if (!SetFilePointerEx(file_.get(), place, nullptr, FILE_BEGIN)) {
        RaiseRuntimeError(runtime_error::kDeviceIoError);
    }
    char* to = reinterpret_cast<char*>(buffer_.data());
    while (length > 0) {
        const DWORD part = static_cast<DWORD>(std::min<std::size_t>(length, 1u << 30));
        DWORD got = 0;
        if (!ReadFile(file_.get(), to, part, &got, nullptr)) {
            RaiseRuntimeError(GetLastError() == ERROR_LOCK_VIOLATION
                                  ? runtime_error::kPermissionDenied
                                  : runtime_error::kDeviceIoError);
        }
        if (got == 0) RaiseRuntimeError(runtime_error::kDeviceIoError);  // the file has shrunk
        to += got;
        length -= got;
    }
}

bool WinSharedReader::CreateSection() {
    if (section_tried_) return section_ != nullptr;
    section_tried_ = true;
    if (!OnFixedDisk(file_.get())) return false;
    section_.reset(CreateFileMappingW(file_.get(), nullptr, PAGE_READONLY, 0, 0, nullptr));
    if (!section_) return false;
    const std::uint64_t limit =
        policy_.whole_limit != 0 ? policy_.whole_limit : AddressSpaceShare();
    window_ = size_ <= limit ? size_ : kWindow;
    views_.reserve(kWindowsKept);
    return true;
}

const WinSharedReader::View* WinSharedReader::ViewFor(std::uint64_t offset, std::size_t length) {
    ++clock_;
    for (View& view : views_) {
        if (offset >= view.begin && offset + length <= view.end) {
            view.used = clock_;
            return &view;
        }
    }
    if (!CreateSection()) return nullptr;
    for (;;) {
        View view;
        view.begin = offset / window_ * window_;
        view.end = std::min(size_, view.begin + window_ + kOverlap);
        view.used = clock_;
        const std::uint64_t bytes = view.end - view.begin;
        if (bytes <= std::numeric_limits<SIZE_T>::max()) {
            view.address.reset(MapViewOfFile(
                section_.get(), FILE_MAP_READ, static_cast<DWORD>(view.begin >> 32),
                static_cast<DWORD>(view.begin & 0xFFFFFFFFu), static_cast<SIZE_T>(bytes)));
        }
        if (view.address) {
            const auto oldest =
                std::min_element(views_.begin(), views_.end(),
                                 [](const View& a, const View& b) { return a.used < b.used; });
            if (views_.size() < kWindowsKept) {
                views_.push_back(std::move(view));
                return &views_.back();
            }
            *oldest = std::move(view);
            return &*oldest;
        }
        // no room for the whole file in one piece: by windows; not even for one: without the map
        if (window_ <= kWindow) {
            views_.clear();
            policy_.map = false;
            return nullptr;
        }
        window_ = kWindow;
    }
}

}  // namespace demovex
