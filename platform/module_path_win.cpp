#include "platform/module_path_win.h"

#include "base/error.h"

namespace demovex {

std::wstring ModulePath(HINSTANCE module) {
    std::wstring path(MAX_PATH, L'\0');
    for (;;) {
        const DWORD length =
            GetModuleFileNameW(module, path.data(), static_cast<DWORD>(path.size()));
        if (length == 0) RaiseRuntimeError(runtime_error::kPathFileAccessError);
        // a path that was cut fills the buffer
        if (length < path.size()) {
            path.resize(length);
            return path;
        }
        path.resize(path.size() * 2);
    }
}

std::wstring ModuleFolder(HINSTANCE module) {
    std::wstring path = ModulePath(module);
    const std::size_t slash = path.find_last_of(L'\\');
    path.resize(slash == std::wstring::npos ? 0 : slash);
    return path;
}

}  // namespace demovex
