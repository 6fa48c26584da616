#include "host/host_object_win.h"

namespace demovex::host {

Ref<HostObject> HostObject::Create(IHostEvents* events, bool offers_host) {
    auto* made = new HostObject(events, offers_host);
    Ref<HostObject> object(made);
    made->Release();  // the reference of its making
    return object;
}

HRESULT HostObject::QueryInterface(REFIID iid, void** object) noexcept {
    if (!object) return E_POINTER;
    *object = nullptr;
    if (iid == IID_IUnknown || iid == IID_IDispatch) {
        *object = static_cast<IDispatch*>(this);
    } else if (iid == IID_IVEXHost && offers_host_) {
        *object = static_cast<IVEXHost*>(this);
    } else {
        return E_NOINTERFACE;
    }
    AddRef();
    return S_OK;
}

ULONG HostObject::AddRef() noexcept {
    return ++references_;
}

ULONG HostObject::Release() noexcept {
    const ULONG left = --references_;
    if (left == 0) delete this;
    return left;
}

HRESULT HostObject::GetTypeInfoCount(UINT* count) noexcept {
    if (!count) return E_POINTER;
    *count = 0;
    return S_OK;
}

HRESULT HostObject::GetTypeInfo(UINT, LCID, ITypeInfo** info) noexcept {
    if (info) *info = nullptr;
    return DISP_E_BADINDEX;
}

HRESULT HostObject::GetIDsOfNames(REFIID, LPOLESTR*, UINT count, LCID, DISPID* ids) noexcept {
    for (UINT i = 0; ids && i < count; ++i) ids[i] = DISPID_UNKNOWN;
    return DISP_E_UNKNOWNNAME;
}

HRESULT HostObject::Invoke(DISPID, REFIID, LCID, WORD, DISPPARAMS*, VARIANT*, EXCEPINFO*,
                           UINT*) noexcept {
    return DISP_E_MEMBERNOTFOUND;
}

HRESULT HostObject::NavigateToCatalog(IDispatch*, BSTR URL) noexcept {
    try {
        if (events_) {
            events_->ShowPosition(URL ? std::wstring(URL, SysStringLen(URL)) : std::wstring());
        }
        return S_OK;
    } catch (...) {
        return E_FAIL;
    }
}

HRESULT HostObject::ClientClosing(IDispatch* Client) noexcept {
    try {
        if (events_ && Client) events_->ForgetClient(Client);
        return S_OK;
    } catch (...) {
        return E_FAIL;
    }
}

}  // namespace demovex::host
