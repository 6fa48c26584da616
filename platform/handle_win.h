// Owners of kernel handles.
#pragma once

#include <windows.h>

#include <memory>

namespace demovex {

struct HandleClose {
    using pointer = HANDLE;
    void operator()(HANDLE handle) const noexcept { CloseHandle(handle); }
};

// A kernel handle; none is null. Wrap what CreateFile returned in OwnFile, since its "none" is
// INVALID_HANDLE_VALUE.
using UniqueHandle = std::unique_ptr<HANDLE, HandleClose>;

inline UniqueHandle OwnFile(HANDLE handle) noexcept {
    return UniqueHandle(handle == INVALID_HANDLE_VALUE ? nullptr : handle);
}

}  // namespace demovex
