// The exported entry points of DemoVexClient.dll.
#include <windows.h>

#include <memory>
#include <utility>

#include "basket/window/basket_window_win.h"
#include "client/class_factory_win.h"
#include "client/guard_win.h"
#include "client/install_win.h"
#include "client/module_win.h"
#include "platform/module_path_win.h"
#include "platform/sound_win.h"
#include "platform/text_win.h"

namespace {

// A new hidden basket window, which holds `owner` and the module until it has closed. Raises 7 when
// the system refuses a window.
std::shared_ptr<demovex::IBasketWindow> CreateBasketWindow(
    std::shared_ptr<demovex::IBasketOwner> owner) {
    demovex::PinModule();
    return demovex::BasketWindow::Create(demovex::Module(), std::move(owner),
                                         std::make_shared<demovex::ModuleLock>());
}

// What every Client works with, made anew for each.
demovex::ClientParts RealParts() {
    return {std::make_shared<demovex::WinTextService>(), std::make_shared<demovex::WinSound>(),
            demovex::ModuleFolder(demovex::Module()), CreateBasketWindow};
}

}  // namespace

// Nothing but the module's handle is taken here, and at the end the window classes, which the
// system would keep: the loader's lock is held.
extern "C" BOOL WINAPI DllMain(HINSTANCE module, DWORD reason, void* process_ends) noexcept {
    if (reason == DLL_PROCESS_ATTACH) demovex::SetModule(module);
    if (reason == DLL_PROCESS_DETACH && process_ends == nullptr) {
        demovex::BasketWindow::UnregisterWindowClasses(module);
    }
    return TRUE;
}

// The system's headers declare the next two without noexcept; neither lets anything out.
extern "C" HRESULT STDMETHODCALLTYPE DllGetClassObject(REFCLSID class_id, REFIID iid,
                                                       void** object) {
    using namespace demovex;
    if (!object) return E_POINTER;
    *object = nullptr;
    if (class_id != CLSID_Client) return CLASS_E_CLASSNOTAVAILABLE;
    ComPtr<ClassFactory> factory;
    const HRESULT result =
        Guarded(IID_IClassFactory, [&] { factory = ClassFactory::Create(RealParts); });
    return FAILED(result) ? result : factory->QueryInterface(iid, object);
}

extern "C" HRESULT STDMETHODCALLTYPE DllCanUnloadNow() {
    if (!demovex::ModuleLock::None()) return S_FALSE;
    demovex::UnpinModule();
    return S_OK;
}

extern "C" HRESULT STDMETHODCALLTYPE DllRegisterServer() noexcept {
    return demovex::RegisterServer(demovex::InstallPlace::kMachineElseUser);
}

extern "C" HRESULT STDMETHODCALLTYPE DllUnregisterServer() noexcept {
    return demovex::UnregisterServer(demovex::InstallPlace::kMachineElseUser);
}

// `regsvr32 /n /i:user` registers for the user alone; any other text means what DllRegisterServer
// does.
extern "C" HRESULT STDMETHODCALLTYPE DllInstall(BOOL install, LPCWSTR command_line) noexcept {
    const bool user = command_line && lstrcmpiW(command_line, L"user") == 0;
    const auto place =
        user ? demovex::InstallPlace::kUser : demovex::InstallPlace::kMachineElseUser;
    return install ? demovex::RegisterServer(place) : demovex::UnregisterServer(place);
}
