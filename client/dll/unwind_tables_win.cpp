// Registers the library's unwind tables with the library's own unwinder.
//
// The compiler's start-up code looks whether the process has libgcc_s_dw2-1.dll and, when it has,
// registers our tables there. Our exceptions are raised by the unwinder that is linked into this
// library, which would not find them then: the first failed call would end the host. So the linker
// puts RegisterUnwindTables in that code's place (--wrap in CMakeLists.txt).
//
// Other instruction sets register nothing: the system finds their tables by itself.
#include "client/dll/run_time_win.h"

#ifdef __i386__

// The names with underscores are the compiler's own.
// NOLINTBEGIN(bugprone-reserved-identifier)

struct object;
extern "C" void __register_frame_info(const void* begin, struct object* object) noexcept;
extern "C" void* __deregister_frame_info(const void* begin) noexcept;

namespace {

// Where the tables begin: this file is the first of the library's, its tables lie before all others
// but those of the start-up code.
[[gnu::section(".eh_frame"), gnu::used]] alignas(4) const char tables[] = {};

// The unwinder's notes about the tables, larger than any version needs them.
alignas(8) char notes[64];

bool registered = false;

}  // namespace

namespace demovex {

void RegisterUnwindTables() noexcept {
    if (registered) return;
    registered = true;
    __register_frame_info(tables, reinterpret_cast<object*>(notes));
}

void UnregisterUnwindTables() noexcept {
    if (!registered) return;
    registered = false;
    __deregister_frame_info(tables);
}

}  // namespace demovex

extern "C" void __wrap___gcc_register_frame();
extern "C" void __wrap___gcc_register_frame() {
    demovex::RegisterUnwindTables();
}

#else

namespace demovex {
void RegisterUnwindTables() noexcept {}
void UnregisterUnwindTables() noexcept {}
}  // namespace demovex

// NOLINTEND(bugprone-reserved-identifier)

#endif
