// The module: its handle and the count of what keeps it loaded.
#pragma once

#include <windows.h>

namespace demovex {

// Set once by the library's entry point, before anything else runs.
void SetModule(HINSTANCE module) noexcept;
HINSTANCE Module() noexcept;

// Keeps the module in memory even when its last user lets go of it without asking, as COM does when
// a host is done with COM: windows and hooks run on our code until they have closed. Once is enough
// however many windows there are.
void PinModule() noexcept;
// Takes that back. For DllCanUnloadNow alone: whoever calls it holds the module, so that the code
// which is running stays.
void UnpinModule() noexcept;

// Keeps the module loaded while it lives: held by every object, every window and by
// IClassFactory::LockServer.
class ModuleLock {
  public:
    ModuleLock() noexcept;
    ~ModuleLock();
    ModuleLock(const ModuleLock&) = delete;
    ModuleLock& operator=(const ModuleLock&) = delete;

    // Locks without an owner, for IClassFactory::LockServer.
    static void Add() noexcept;
    static void Remove() noexcept;
    // True when nothing keeps the module loaded.
    static bool None() noexcept;
};

}  // namespace demovex
