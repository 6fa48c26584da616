// A host for tests: offers IVEXHost (or not), counts its references and writes down what it is
// asked.
#pragma once

#include <windows.h>

#include <oaidl.h>

#include <functional>
#include <string>
#include <vector>

#include "platform/com_ptr_win.h"
#include "vexinterfaces.h"

namespace demovex {

class FakeHost final : public IDispatch, public IVEXHost, public ISupportErrorInfo {
  public:
    bool offers_host = true;
    HRESULT answer = S_OK;  // of both operations
    std::vector<std::wstring> calls;
    std::function<void()> on_navigating;
    std::function<void(IDispatch*)> on_closing;
    ULONG references = 1;

    virtual ~FakeHost() = default;

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) noexcept override {
        *object = nullptr;
        if (iid == IID_IUnknown || iid == IID_IDispatch) {
            *object = static_cast<IDispatch*>(this);
        } else if (iid == IID_IVEXHost && offers_host) {
            *object = static_cast<IVEXHost*>(this);
        } else if (iid == IID_ISupportErrorInfo) {
            *object = static_cast<ISupportErrorInfo*>(this);
        } else {
            return E_NOINTERFACE;
        }
        AddRef();
        return S_OK;
    }
    // owned by the test
    ULONG STDMETHODCALLTYPE AddRef() noexcept override { return ++references; }
    ULONG STDMETHODCALLTYPE Release() noexcept override { return --references; }

    HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* count) noexcept override {
        *count = 0;
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo**) noexcept override {
        return E_NOTIMPL;
    }
    HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID,
                                            DISPID*) noexcept override {
        return DISP_E_UNKNOWNNAME;
    }
    HRESULT STDMETHODCALLTYPE Invoke(DISPID, REFIID, LCID, WORD, DISPPARAMS*, VARIANT*, EXCEPINFO*,
                                     UINT*) noexcept override {
        return DISP_E_MEMBERNOTFOUND;
    }

    HRESULT STDMETHODCALLTYPE NavigateToCatalog(IDispatch* Client, BSTR URL) noexcept override {
        calls.push_back(L"NavigateToCatalog " + std::wstring(TextOf(URL)) +
                        (Client ? L"" : L" without client"));
        if (on_navigating) on_navigating();
        return answer;
    }
    HRESULT STDMETHODCALLTYPE ClientClosing(IDispatch* Client) noexcept override {
        calls.push_back(Client ? L"ClientClosing" : L"ClientClosing without client");
        if (on_closing) on_closing(Client);
        return answer;
    }

    HRESULT STDMETHODCALLTYPE InterfaceSupportsErrorInfo(REFIID iid) noexcept override {
        return iid == IID_IVEXHost ? S_OK : S_FALSE;
    }
};

}  // namespace demovex
