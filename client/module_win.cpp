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
