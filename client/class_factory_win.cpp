#include "client/class_factory_win.h"

#include <utility>

#include "client/guard_win.h"

namespace demovex {

ComPtr<ClassFactory> ClassFactory::Create(std::function<ClientParts()> make_parts) {
    return ComPtr<ClassFactory>::Attach(new ClassFactory(std::move(make_parts)));
}

ClassFactory::ClassFactory(std::function<ClientParts()> make_parts)
    : make_parts_(std::move(make_parts)) {}

HRESULT ClassFactory::QueryInterface(REFIID iid, void** object) noexcept {
    if (!object) return E_POINTER;
    *object = nullptr;
    if (iid != IID_IUnknown && iid != IID_IClassFactory) return E_NOINTERFACE;
    *object = static_cast<IClassFactory*>(this);
    AddRef();
    return S_OK;
}

HRESULT ClassFactory::CreateInstance(IUnknown* outer, REFIID iid, void** object) noexcept {
    if (!object) return ReportNullPointer(IID_IClassFactory);
    *object = nullptr;
    if (outer) return CLASS_E_NOAGGREGATION;
    ComPtr<Client> client;
    const HRESULT result =
        Guarded(IID_IClassFactory, [&] { client = Client::Create(make_parts_()); });
    if (FAILED(result)) return result;
    return client->QueryInterface(iid, object);
}

HRESULT ClassFactory::LockServer(BOOL lock) noexcept {
    if (lock) {
        ModuleLock::Add();
    } else {
        ModuleLock::Remove();
    }
    return S_OK;
}

}  // namespace demovex
