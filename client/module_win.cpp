#include "client/module_win.h"

#include <atomic>

namespace demovex {

namespace {
HINSTANCE g_module = nullptr;
std::atomic<long> g_locks{0};
std::atomic<bool> g_pinned{false};
}  // namespace

void SetModule(HINSTANCE module) noexcept {
    g_module = module;
}
HINSTANCE Module() noexcept {
    return g_module;
}

std::wstring ModulePath() {
    std::wstring path(MAX_PATH, L'\0');
    for (;;) {
        const DWORD length =
            GetModuleFileNameW(g_module, path.data(), static_cast<DWORD>(path.size()));
        // a path that was cut fills the buffer; the longest path of the system has 32,767
        // characters
        if (length < path.size() || path.size() > 0x8000) {
            path.resize(length);
            return path;
        }
        path.resize(path.size() * 2);
    }
}

std::wstring ModuleFolder() {
    std::wstring path = ModulePath();
    const std::size_t slash = path.find_last_of(L'\\');
    path.resize(slash == std::wstring::npos ? 0 : slash);
    return path;
}

void PinModule() noexcept {
    if (g_pinned.exchange(true)) return;
    HMODULE self = nullptr;
    if (!GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS,
                            reinterpret_cast<LPCWSTR>(g_module), &self)) {
        g_pinned = false;
    }
}

void UnpinModule() noexcept {
    if (g_pinned.exchange(false)) FreeLibrary(g_module);
}

ModuleLock::ModuleLock() noexcept {
    Add();
}
ModuleLock::~ModuleLock() {
    Remove();
}
void ModuleLock::Add() noexcept {
    ++g_locks;
}
void ModuleLock::Remove() noexcept {
    --g_locks;
}
bool ModuleLock::None() noexcept {
    return g_locks == 0;
}

}  // namespace demovex
