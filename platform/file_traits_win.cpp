#include "platform/file_traits_win.h"

#include <winioctl.h>

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <memory>
#include <new>
#include <vector>

namespace demovex {
namespace {

// Attributes and time of creation in one call; the time of writing is the new content's own.
void CopyBasics(HANDLE from, HANDLE to) noexcept {
    constexpr DWORD kCopied = FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_SYSTEM |
                              FILE_ATTRIBUTE_ARCHIVE | FILE_ATTRIBUTE_NOT_CONTENT_INDEXED;
    FILE_BASIC_INFO old{}, now{};
    if (!GetFileInformationByHandleEx(from, FileBasicInfo, &old, sizeof old) ||
        !GetFileInformationByHandleEx(to, FileBasicInfo, &now, sizeof now)) {
        return;
    }
    FILE_BASIC_INFO wanted{};  // a member that is zero leaves what it stands for alone
    wanted.CreationTime = old.CreationTime;
    if ((old.FileAttributes & kCopied) != (now.FileAttributes & kCopied)) {
        wanted.FileAttributes = old.FileAttributes & kCopied;
        if (wanted.FileAttributes == 0) wanted.FileAttributes = FILE_ATTRIBUTE_NORMAL;
    }
    SetFileInformationByHandle(to, FileBasicInfo, &wanted, sizeof wanted);

    const DWORD compressed = old.FileAttributes & FILE_ATTRIBUTE_COMPRESSED;
    if (compressed != (now.FileAttributes & FILE_ATTRIBUTE_COMPRESSED)) {
        USHORT format = compressed != 0 ? COMPRESSION_FORMAT_DEFAULT : COMPRESSION_FORMAT_NONE;
        DWORD unused = 0;
        DeviceIoControl(to, FSCTL_SET_COMPRESSION, &format, sizeof format, nullptr, 0, &unused,
                        nullptr);
    }
}

// The access list of an open file with its control bits; empty when it cannot be read.
std::vector<std::byte> AccessListOf(HANDLE file) {
    DWORD needed = 0;
    GetKernelObjectSecurity(file, DACL_SECURITY_INFORMATION, nullptr, 0, &needed);
    std::vector<std::byte> descriptor(needed);
    if (needed == 0 || !GetKernelObjectSecurity(file, DACL_SECURITY_INFORMATION, descriptor.data(),
                                                needed, &needed)) {
        descriptor.clear();
    }
    return descriptor;
}

bool SameAccess(void* a, void* b) noexcept {
    SECURITY_DESCRIPTOR_CONTROL controls[2] = {};
    PACL lists[2] = {};
    BOOL present[2] = {}, by_default = FALSE;
    DWORD revision = 0;
    void* const both[] = {a, b};
    for (int i = 0; i < 2; ++i) {
        if (!GetSecurityDescriptorControl(both[i], &controls[i], &revision) ||
            !GetSecurityDescriptorDacl(both[i], &present[i], &lists[i], &by_default)) {
            return false;
        }
    }
    if (((controls[0] ^ controls[1]) & SE_DACL_PROTECTED) != 0 || present[0] != present[1]) {
        return false;
    }
    if (lists[0] == nullptr || lists[1] == nullptr) return lists[0] == lists[1];
    return lists[0]->AclSize == lists[1]->AclSize &&
           std::memcmp(lists[0], lists[1], lists[0]->AclSize) == 0;
}

// Entry by entry as it stands, what was inherited from another folder included: recomputing it
// could let somebody in. A list that is the same already is left alone, since a file system that
// knows fewer rights than the list (a share on another system) makes something else of every list
// that is set.
void CopyAccess(HANDLE from, HANDLE to) {
    std::vector<std::byte> wanted = AccessListOf(from), now = AccessListOf(to);
    if (wanted.empty() || (!now.empty() && SameAccess(wanted.data(), now.data()))) return;
    // without the request the system drops the mark that says which entries were inherited
    auto* const header = reinterpret_cast<SECURITY_DESCRIPTOR_RELATIVE*>(wanted.data());
    if ((header->Control & SE_DACL_AUTO_INHERITED) != 0) {
        header->Control |= SE_DACL_AUTO_INHERIT_REQ;
    }
    SetKernelObjectSecurity(to, DACL_SECURITY_INFORMATION, wanted.data());
}

bool HasNamedStreams(HANDLE file) {
    std::vector<std::byte> list(64 * 1024);
    if (!GetFileInformationByHandleEx(file, FileStreamInfo, list.data(),
                                      static_cast<DWORD>(list.size()))) {
        return GetLastError() == ERROR_MORE_DATA;
    }
    return reinterpret_cast<const FILE_STREAM_INFO*>(list.data())->NextEntryOffset != 0;
}

// Reads a file as a backup does, stream by stream.
class BackupReader {
  public:
    explicit BackupReader(HANDLE file) noexcept : file_(file) {}
    ~BackupReader() {
        DWORD unused = 0;
        BackupRead(file_, nullptr, 0, &unused, TRUE, FALSE, &context_);
    }
    BackupReader(const BackupReader&) = delete;
    BackupReader& operator=(const BackupReader&) = delete;

    bool Read(void* to, DWORD length) noexcept {
        auto* at = static_cast<BYTE*>(to);
        while (length > 0) {
            DWORD got = 0;
            if (!BackupRead(file_, at, length, &got, FALSE, FALSE, &context_) || got == 0) {
                return false;
            }
            at += got;
            length -= got;
        }
        return true;
    }
    bool Skip(LARGE_INTEGER bytes) noexcept {
        DWORD low = 0, high = 0;
        if (bytes.QuadPart <= 0) return true;
        return BackupSeek(file_, bytes.LowPart, static_cast<DWORD>(bytes.HighPart), &low, &high,
                          &context_) &&
               low == bytes.LowPart && high == static_cast<DWORD>(bytes.HighPart);
    }

  private:
    HANDLE file_;
    void* context_ = nullptr;
};

class BackupWriter {
  public:
    explicit BackupWriter(HANDLE file) noexcept : file_(file) {}
    ~BackupWriter() {
        DWORD unused = 0;
        BackupWrite(file_, nullptr, 0, &unused, TRUE, FALSE, &context_);
    }
    BackupWriter(const BackupWriter&) = delete;
    BackupWriter& operator=(const BackupWriter&) = delete;

    bool Write(void* from, DWORD length) noexcept {
        DWORD written = 0;
        return BackupWrite(file_, static_cast<BYTE*>(from), length, &written, FALSE, FALSE,
                           &context_) &&
               written == length;
    }

  private:
    HANDLE file_;
    void* context_ = nullptr;
};

// Named streams by the backup functions, which need no name to open one: where a file came from
// ("Zone.Identifier"), what other programs keep beside it.
void CopyNamedStreams(HANDLE from, HANDLE to) {
    if (!HasNamedStreams(from)) return;
    constexpr DWORD kHeader = offsetof(WIN32_STREAM_ID, cStreamName);
    constexpr std::size_t kLongestName = 64 * 1024;
    std::vector<std::byte> buffer(kHeader + kLongestName);
    BackupReader reader(from);
    BackupWriter writer(to);
    while (reader.Read(buffer.data(), kHeader)) {
        WIN32_STREAM_ID header;
        std::memcpy(&header, buffer.data(), kHeader);
        if (header.dwStreamNameSize > kLongestName ||
            !reader.Read(buffer.data() + kHeader, header.dwStreamNameSize)) {
            return;
        }
        if (header.dwStreamId != BACKUP_ALTERNATE_DATA) {
            if (!reader.Skip(header.Size)) return;
            continue;
        }
        if (!writer.Write(buffer.data(), kHeader + header.dwStreamNameSize)) return;
        for (LONGLONG left = header.Size.QuadPart; left > 0;) {
            const auto piece =
                static_cast<DWORD>(std::min<LONGLONG>(left, static_cast<LONGLONG>(buffer.size())));
            if (!reader.Read(buffer.data(), piece) || !writer.Write(buffer.data(), piece)) return;
            left -= piece;
        }
    }
}

}  // namespace

void CopyFileAccess(HANDLE from, HANDLE to) noexcept {
    try {
        CopyAccess(from, to);
    } catch (const std::bad_alloc&) {
        // as if the system had refused
    }
}

void CopyFileTraits(HANDLE from, HANDLE to) noexcept {
    try {
        CopyNamedStreams(from, to);
        CopyAccess(from, to);
        CopyBasics(from, to);
    } catch (const std::bad_alloc&) {
        // as if the system had refused
    }
}

}  // namespace demovex
