// Registering and unregistering the component, as the library's entry points are asked to.
#pragma once

#include <windows.h>

namespace demovex {

// Where registering writes.
enum class InstallPlace {
    kMachineElseUser,  // the machine where that is permitted, else the user alone
    kUser,
};

// Registers the module's file; SELFREG_E_CLASS when the registry refuses everywhere, and nothing is
// left behind then. A registration for the machine removes the user's own, which the system would
// prefer; SELFREG_E_CLASS when that is refused.
HRESULT RegisterServer(InstallPlace place) noexcept;

// Removes what was registered. kMachineElseUser removes it in both places, since either may have
// been taken; SELFREG_E_CLASS when a key of ours could not be removed.
HRESULT UnregisterServer(InstallPlace place) noexcept;

}  // namespace demovex
