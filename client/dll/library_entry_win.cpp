// The library's entry point, before the C run-time's, and how it ends when nothing else is left.
#include <windows.h>

#include <cstdint>
#include <exception>
#include <initializer_list>

#include "client/dll/run_time_win.h"

// The names with underscores are the compiler's own.
// NOLINTBEGIN(bugprone-reserved-identifier)

extern "C" BOOL WINAPI DllMainCRTStartup(HINSTANCE module, DWORD reason, void* reserved);

// What functions with buffers put below their return address and look at before they return. The
// compiler's own library would ask a provider of cryptography for it, under the loader's lock.
extern "C" std::uintptr_t __stack_chk_guard;
std::uintptr_t __stack_chk_guard = 0;

namespace {

// Nothing of this process can be trusted any more, and no handler of anybody is asked.
[[noreturn]] void EndProcess() noexcept {
    RaiseFailFastException(nullptr, nullptr, 0);
    TerminateProcess(GetCurrentProcess(), static_cast<UINT>(STATUS_STACK_BUFFER_OVERRUN));
    for (;;) {
    }
}

// What nobody outside of this thread can foretell.
std::uintptr_t Unforeseen() noexcept {
    LARGE_INTEGER count;
    QueryPerformanceCounter(&count);
    FILETIME now;
    GetSystemTimeAsFileTime(&now);
    std::uint64_t mixed = 0;
    for (const std::uint64_t part :
         {static_cast<std::uint64_t>(count.QuadPart), static_cast<std::uint64_t>(now.dwLowDateTime),
          static_cast<std::uint64_t>(GetCurrentThreadId()),
          static_cast<std::uint64_t>(GetCurrentProcessId()),
          static_cast<std::uint64_t>(reinterpret_cast<std::uintptr_t>(&count)),
          static_cast<std::uint64_t>(reinterpret_cast<std::uintptr_t>(&Unforeseen))}) {
        mixed = (mixed ^ part) * 0x9E3779B97F4A7C15u;
        mixed ^= mixed >> 29;
    }
    // a zero in the lowest byte ends what a copied text could bring along
    return static_cast<std::uintptr_t>(mixed) & ~static_cast<std::uintptr_t>(0xFF);
}

}  // namespace

// A buffer was overrun.
extern "C" [[noreturn]] void __stack_chk_fail() {
    EndProcess();
}

// An exception that nobody catches. The compiler's own function would write the exception's name to
// a console that a guest does not have.
namespace __gnu_cxx {
void __verbose_terminate_handler() {
    EndProcess();
}
}  // namespace __gnu_cxx

// Gives back what the compiler's library keeps for exceptions when memory has run out (19 KB).
namespace __gnu_cxx {
void __freeres();
}

// Functions that are running while the guard is set would miss the old one.
extern "C" __attribute__((no_stack_protector)) BOOL WINAPI LibraryEntry(HINSTANCE module,
                                                                        DWORD reason,
                                                                        void* reserved) noexcept {
    if (reason == DLL_PROCESS_ATTACH) __stack_chk_guard = Unforeseen();
    const BOOL done = DllMainCRTStartup(module, reason, reserved);
    if (reason == DLL_THREAD_DETACH) demovex::ForgetThread();
    // a process that ends has no use for it
    const bool unloaded = reason == DLL_PROCESS_DETACH && reserved == nullptr;
    if (unloaded || (reason == DLL_PROCESS_ATTACH && !done)) {
        __gnu_cxx::__freeres();
        demovex::UnregisterUnwindTables();
        demovex::ForgetThreads();
    }
    return done;
}

// NOLINTEND(bugprone-reserved-identifier)
