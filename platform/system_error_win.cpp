#include "platform/system_error_win.h"

#include "base/error.h"

namespace demovex {
namespace {

// Codes that the compiler's headers lack.
constexpr DWORD kNoSuchDevice = 433;
constexpr DWORD kDiskQuotaExceeded = 1295;

}  // namespace

std::int32_t RuntimeErrorOfFile(DWORD code) noexcept {
    switch (code) {
        case ERROR_FILE_NOT_FOUND:
            return runtime_error::kFileNotFound;
        case ERROR_PATH_NOT_FOUND:
        case ERROR_INVALID_DRIVE:
        case ERROR_BAD_NETPATH:
        case ERROR_BAD_NET_NAME:
        case ERROR_REM_NOT_LIST:
        case ERROR_NO_NET_OR_BAD_PATH:
        case ERROR_NETWORK_UNREACHABLE:
        case ERROR_HOST_UNREACHABLE:
        case ERROR_DIRECTORY:
            return runtime_error::kPathNotFound;
        case ERROR_SHARING_VIOLATION:
        case ERROR_LOCK_VIOLATION:
        case ERROR_USER_MAPPED_FILE:
        case ERROR_WRITE_PROTECT:
            return runtime_error::kPermissionDenied;
        case ERROR_DISK_FULL:
        case ERROR_HANDLE_DISK_FULL:
        case kDiskQuotaExceeded:
        case ERROR_FILE_TOO_LARGE:
            return runtime_error::kDiskFull;
        case ERROR_NOT_READY:
        case ERROR_CRC:
        case ERROR_SEEK:
        case ERROR_SECTOR_NOT_FOUND:
        case ERROR_WRITE_FAULT:
        case ERROR_READ_FAULT:
        case ERROR_GEN_FAILURE:
        case ERROR_HANDLE_EOF:
        case ERROR_DEV_NOT_EXIST:
        case ERROR_UNEXP_NET_ERR:
        case ERROR_NETNAME_DELETED:
        case ERROR_FILE_INVALID:
        case ERROR_IO_DEVICE:
        case ERROR_DEVICE_NOT_CONNECTED:
        case kNoSuchDevice:
        case ERROR_CONNECTION_ABORTED:
        case ERROR_SEM_TIMEOUT:
            return runtime_error::kDeviceIoError;
        case ERROR_INVALID_NAME:
        case ERROR_BAD_PATHNAME:
            return runtime_error::kBadFileName;
        case ERROR_TOO_MANY_OPEN_FILES:
            return runtime_error::kTooManyFiles;
        case ERROR_NOT_ENOUGH_MEMORY:
        case ERROR_OUTOFMEMORY:
        case ERROR_NO_SYSTEM_RESOURCES:
        case ERROR_COMMITMENT_LIMIT:
            return runtime_error::kOutOfMemory;
        default:
            return runtime_error::kPathFileAccessError;
    }
}

void RaiseFileError(DWORD code) {
    RaiseRuntimeError(RuntimeErrorOfFile(code));
}

}  // namespace demovex
