#include "platform/system_library_win.h"

#include <cstddef>
#include <cwchar>

namespace demovex {

void* FindSystemFunction(const wchar_t* library, const char* name) noexcept {
    wchar_t path[MAX_PATH];
    const UINT length = GetSystemDirectoryW(path, MAX_PATH);
    if (length == 0 || length + std::wcslen(library) + 2 > MAX_PATH) return nullptr;
    path[length] = L'\\';
    std::wcscpy(path + length + 1, library);
    // what this library needs itself is looked for beside it, too
    const HMODULE module = LoadLibraryExW(path, nullptr, LOAD_WITH_ALTERED_SEARCH_PATH);
    if (module == nullptr) return nullptr;
    HMODULE kept = nullptr;
    GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_PIN | GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS,
                       reinterpret_cast<LPCWSTR>(module), &kept);
    FreeLibrary(module);
    return reinterpret_cast<void*>(GetProcAddress(module, name));
}

}  // namespace demovex
