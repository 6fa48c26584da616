// Client: the class that a host creates ("DemoVexClient.Client"). It answers IVEXClient, and the
// same operations late-bound through its default interface.
//
// References: whoever creates it holds one; every basket window that is open holds one more and
// lets go of it when it has closed. A host that releases its last reference while a window is open
// leaves the window usable; the object ends with the window.
//
// Every method is noexcept and reports errors as Guarded does (client/guard_win.h).
#pragma once

#include <windows.h>

#include <oaidl.h>
#include <ocidl.h>

#include <functional>
#include <memory>
#include <string>

#include "basket/basket_window.h"
#include "client/module_win.h"
#include "client/plug_in.h"
#include "demovexclient.h"
#include "platform/com_ptr_win.h"
#include "vexinterfaces.h"

namespace demovex {

// What a Client works with. `create_window` makes the hidden basket window for an owner whose
// reference the window keeps until it has closed.
struct ClientParts {
    std::shared_ptr<const ITextService> text;
    std::shared_ptr<ISound> sound;
    std::wstring folder;
    std::function<std::shared_ptr<IBasketWindow>(std::shared_ptr<IBasketOwner>)> create_window;
};

class Client final
    : public Counted<Client, _Client, IVEXClient, ISupportErrorInfo, IProvideClassInfo> {
  public:
    // A new object with one reference, which is the caller's.
    static ComPtr<Client> Create(ClientParts parts);

    // --- IUnknown
    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) noexcept override;

    // --- IDispatch
    HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* count) noexcept override;
    HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT index, LCID locale,
                                          ITypeInfo** info) noexcept override;
    HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID iid, LPOLESTR* names, UINT count, LCID locale,
                                            DISPID* ids) noexcept override;
    HRESULT STDMETHODCALLTYPE Invoke(DISPID member, REFIID iid, LCID locale, WORD flags,
                                     DISPPARAMS* arguments, VARIANT* result, EXCEPINFO* exception,
                                     UINT* bad_argument) noexcept override;

    // --- _Client alone
    // The host given to Initialize; null before.
    HRESULT STDMETHODCALLTYPE get_moParent(IVEXHost** Value) noexcept override;

    // --- _Client and IVEXClient
    HRESULT STDMETHODCALLTYPE get_Caption(BSTR* Value) noexcept override;
    HRESULT STDMETHODCALLTYPE get_Description(BSTR* Value) noexcept override;
    HRESULT STDMETHODCALLTYPE get_Producer(BSTR* Value) noexcept override;
    HRESULT STDMETHODCALLTYPE EnumURLPrefixes(VARIANT_BOOL Start, BSTR* Value) noexcept override;
    HRESULT STDMETHODCALLTYPE Initialize(IDispatch* Parent) noexcept override;
    HRESULT STDMETHODCALLTYPE OnSelectURL(BSTR URL, BSTR CatalogPositionURL,
                                          BSTR CatalogPositionDisplayName) noexcept override;
    HRESULT STDMETHODCALLTYPE OpenFile(BSTR Path) noexcept override;

    // --- ISupportErrorInfo
    HRESULT STDMETHODCALLTYPE InterfaceSupportsErrorInfo(REFIID iid) noexcept override;

    // --- IProvideClassInfo
    HRESULT STDMETHODCALLTYPE GetClassInfo(ITypeInfo** info) noexcept override;

  private:
    explicit Client(ClientParts parts);
    friend Counted;
    ~Client() = default;

    std::shared_ptr<IBasketWindow> MakeWindow();

    // Returns the text that `f` makes through `value`.
    template <typename F>
    HRESULT ReturnText(BSTR* value, F&& f) noexcept;

    // The type library's description of one of our types.
    ComPtr<ITypeInfo> TypeInfo(const GUID& type) const;
    HRESULT InvokeParent(VARIANT* result) const noexcept;

    ModuleLock lock_;
    ClientParts parts_;
    PlugIn plug_in_;
    ComPtr<IVEXHost> moParent_;
    mutable ComPtr<ITypeInfo> dispatch_info_;
};

}  // namespace demovex
