// The system's error codes as run-time errors.
#pragma once

#include <windows.h>

#include <cstdint>

namespace demovex {

// The run-time error for a failed file operation:
//
//   53 file not found       ERROR_FILE_NOT_FOUND
//   76 path not found       PATH_NOT_FOUND, INVALID_DRIVE, BAD_NETPATH, BAD_NET_NAME, REM_NOT_LIST,
//                           NO_NET_OR_BAD_PATH, NETWORK_UNREACHABLE, HOST_UNREACHABLE, DIRECTORY
//   70 permission denied    SHARING_VIOLATION, LOCK_VIOLATION, USER_MAPPED_FILE (in use by another
//                           program), WRITE_PROTECT (the whole medium)
//   75 path/file access     ACCESS_DENIED (read-only file, a folder, no rights), FILE_EXISTS,
//                           ALREADY_EXISTS, FILENAME_EXCED_RANGE, and every code not listed here
//   61 disk full            DISK_FULL, HANDLE_DISK_FULL, DISK_QUOTA_EXCEEDED, FILE_TOO_LARGE
//   57 device I/O error     the device or connection failed or went away
//   52 bad file name        INVALID_NAME, BAD_PATHNAME
//   67 too many files       TOO_MANY_OPEN_FILES
//   7  out of memory        NOT_ENOUGH_MEMORY, OUTOFMEMORY, NO_SYSTEM_RESOURCES, COMMITMENT_LIMIT
std::int32_t RuntimeErrorOfFile(DWORD code) noexcept;

// Raises RuntimeErrorOfFile(code) with its standard description.
[[noreturn]] void RaiseFileError(DWORD code);

}  // namespace demovex
