#include "client/install_win.h"

#include <olectl.h>

#include <string>

#include "base/error.h"
#include "client/module_win.h"
#include "client/registry_win.h"
#include "platform/module_path_win.h"

namespace demovex {

HRESULT RegisterServer(InstallPlace place) noexcept {
    try {
        const std::wstring dll = ModulePath(Module());
        if (place == InstallPlace::kMachineElseUser) {
            try {
                RegistryClasses machine(RegistryClasses::Place::kMachine);
                RegisterClasses(machine, dll);
            } catch (const Error&) {
                return RegisterServer(InstallPlace::kUser);  // not permitted
            }
            // what stands in the user's place goes before the machine's: an earlier registration
            // there would leave this one without effect
            RegistryClasses before(RegistryClasses::Place::kUser);
            UnregisterClasses(before);
            return S_OK;
        }
        RegistryClasses user(RegistryClasses::Place::kUser);
        RegisterClasses(user, dll);
        return S_OK;
    } catch (...) {
        return SELFREG_E_CLASS;
    }
}

HRESULT UnregisterServer(InstallPlace place) noexcept {
    bool refused = false;
    const auto remove = [&](RegistryClasses::Place from) {
        try {
            RegistryClasses classes(from);
            UnregisterClasses(classes);
        } catch (...) {
            refused = true;
        }
    };
    remove(RegistryClasses::Place::kUser);
    if (place == InstallPlace::kMachineElseUser) remove(RegistryClasses::Place::kMachine);
    return refused ? SELFREG_E_CLASS : S_OK;
}

}  // namespace demovex
