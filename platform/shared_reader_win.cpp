#include "platform/shared_reader_win.h"

#include <algorithm>
#include <limits>

#include "base/error.h"
#include "platform/open_file_win.h"
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
    const std::wstring path = FinalPath(file);
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

WinSharedReader::WinSharedReader(UniqueHandle file, SharedReadPolicy policy)
    : file_(std::move(file)), policy_(policy) {
    LARGE_INTEGER size;
    if (!GetFileSizeEx(file_.get(), &size)) RaiseFileError(GetLastError());
    size_ = static_cast<std::uint64_t>(size.QuadPart);
}

WinSharedReader::WinSharedReader(std::wstring_view path, SharedReadPolicy policy)
    : WinSharedReader(
          OpenDiskFile(path, GENERIC_READ, kShareAll, OPEN_EXISTING, FILE_FLAG_RANDOM_ACCESS),
          policy) {}

std::optional<FileStamp> WinSharedReader::Stamp() const noexcept {
    return StampOf(file_.get());
}

int WinSharedReader::mapped_views() const {
    return static_cast<int>(views_.size());
}

std::string_view WinSharedReader::Read(std::uint64_t offset, std::size_t length) {
    if (length > size_ || offset > size_ - length) RaiseRuntimeError(runtime_error::kDeviceIoError);
    if (buffer_.size() < length) buffer_.resize(length);
    if (length != 0 && !CopyFromMap(offset, length)) ReadDirectly(offset, length);
    return {buffer_.data(), length};
}

// False when the bytes could not be had from the map beyond doubt.
bool WinSharedReader::CopyFromMap(std::uint64_t offset, std::size_t length) {
    if (!policy_.map || length > kLongestMappedRead) return false;
    if (policy_.reads_before_mapping > 0) {
        --policy_.reads_before_mapping;
        return false;
    }
    const View* view = ViewFor(offset, length);
    if (view == nullptr) return false;
    if (view->map->Copy(static_cast<std::size_t>(offset - view->begin), length, buffer_.data())) {
        return true;
    }
    if (view->map->lost()) StopMapping();
    return false;
}

void WinSharedReader::StopMapping() noexcept {
    views_.clear();
    section_.reset();
    policy_.map = false;
}

void WinSharedReader::ReadDirectly(std::uint64_t offset, std::size_t length) {
    const NoSystemDialogs quiet;
    ++direct_reads_;
    LARGE_INTEGER place;
    place.QuadPart = static_cast<LONGLONG>(offset);
    if (!SetFilePointerEx(file_.get(), place, nullptr, FILE_BEGIN)) {
        RaiseRuntimeError(runtime_error::kDeviceIoError);
    }
    char* to = buffer_.data();
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
    if (section_tried_) return static_cast<bool>(section_);
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
            view.map = MappedView::Map(section_.get(), view.begin, static_cast<std::size_t>(bytes));
        }
        if (view.map) {
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
            StopMapping();
            return nullptr;
        }
        window_ = kWindow;
    }
}

}  // namespace demovex
