// A vectored exception handler that can be taken back for good.
//
// The system calls such handlers for every exception in any thread of the process. Taking one back
// does not wait for those that are running, so that a library which is unloaded afterwards could
// lose its code under a thread that is in it, or about to be. Here the system gets a few
// instructions in memory of their own, which outlives the library: they count who is inside and
// call the handler while there is one. Remove returns when nobody is inside any more, and nobody
// can come in again.
//
// That memory (8 KB of 64 KB of addresses) stays for the life of the process. Its address stands in
// the process's own table of atoms, so that the library, loaded again, takes it over instead of
// having more.
//
//   VectoredHandler handler(&OnException);
//   if (!handler.Install()) ...    // the process allows no code but from files, or has no memory
//   handler.Remove();
#pragma once

#include <windows.h>

namespace demovex {

// One object for each handler function, of static storage. Not for several threads at once.
class VectoredHandler {
  public:
    explicit VectoredHandler(PVECTORED_EXCEPTION_HANDLER function) noexcept : function_(function) {}
    // Removes the handler.
    ~VectoredHandler();
    VectoredHandler(const VectoredHandler&) = delete;
    VectoredHandler& operator=(const VectoredHandler&) = delete;

    // Before all handlers that others have installed. Cheap from the second time on.
    bool Install() noexcept;
    // Waits for other threads that are in the handler; never called from it.
    void Remove() noexcept;
    bool Installed() const noexcept { return registration_ != nullptr; }

    struct Gate;

  private:
    PVECTORED_EXCEPTION_HANDLER function_;
    Gate* gate_ = nullptr;
    PVOID registration_ = nullptr;
};

}  // namespace demovex
