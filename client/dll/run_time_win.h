// The library's own run-time: what the compiler's libraries need of threads, the tables by which
// exceptions find their way, and the guard of the stack. All of it is the library's alone, whatever
// run-times a host has loaded of its own, and all of it is given back when the library is unloaded.
#pragma once

namespace demovex {

// --- unwind_tables_win.cpp: before the first exception, and after the last one.
void RegisterUnwindTables() noexcept;
void UnregisterUnwindTables() noexcept;

// --- threads_win.cpp: for the entry point, under the loader's lock.
// A thread of the process ends: what was kept for it goes.
void ForgetThread() noexcept;
// The library goes: what was kept for any thread goes, and the place where it was kept.
void ForgetThreads() noexcept;

}  // namespace demovex
