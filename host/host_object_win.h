// The object that the host hands to its plug-ins: it offers IVEXHost.
#pragma once

#include <windows.h>

#include <oaidl.h>

#include <string>

#include "host/com_win.h"
#include "vexinterfaces.h"

namespace demovex::host {

// What a plug-in can ask of the host program.
class IHostEvents {
  public:
    virtual ~IHostEvents() = default;
    virtual void ShowPosition(const std::wstring& address) = 0;
    virtual void ForgetClient(IUnknown* client) = 0;
};

class HostObject final : public IDispatch, public IVEXHost {
  public:
    // `offers_host` false makes an object that is no host at all, to try a plug-in with.
    static Ref<HostObject> Create(IHostEvents* events, bool offers_host = true);

    // The program ends; plug-ins that still hold the object are answered and nothing happens.
    void Disconnect() noexcept { events_ = nullptr; }

    // What IDispatch::QueryInterface and its kin are called through.
    IDispatch* Dispatch() noexcept { return this; }

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) noexcept override;
    ULONG STDMETHODCALLTYPE AddRef() noexcept override;
    ULONG STDMETHODCALLTYPE Release() noexcept override;

    // The object has no members to call late-bound.
    HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* count) noexcept override;
    HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT index, LCID locale,
                                          ITypeInfo** info) noexcept override;
    HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID iid, LPOLESTR* names, UINT count, LCID locale,
                                            DISPID* ids) noexcept override;
    HRESULT STDMETHODCALLTYPE Invoke(DISPID member, REFIID iid, LCID locale, WORD flags,
                                     DISPPARAMS* arguments, VARIANT* result, EXCEPINFO* exception,
                                     UINT* bad_argument) noexcept override;

    HRESULT STDMETHODCALLTYPE NavigateToCatalog(IDispatch* Client, BSTR URL) noexcept override;
    HRESULT STDMETHODCALLTYPE ClientClosing(IDispatch* Client) noexcept override;

  private:
    HostObject(IHostEvents* events, bool offers_host) noexcept
        : events_(events), offers_host_(offers_host) {}
    ~HostObject() = default;

    ULONG references_ = 1;
    IHostEvents* events_;
    bool offers_host_;
};

}  // namespace demovex::host
