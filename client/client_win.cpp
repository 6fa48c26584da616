#include "client/client_win.h"

#include <utility>

#include "client/guard_win.h"
#include "platform/module_path_win.h"

namespace demovex {

namespace {

// moParent's place in the dispatch interface.
constexpr DISPID kMoParent = 1;

// What the window holds of its client: one reference, and the way to the host.
class HostOwner final : public IBasketOwner {
  public:
    explicit HostOwner(Client* client) : client_(client) {}

    void NavigateToCatalog(std::wstring_view url) override {
        const Bstr text(url);
        CallHost([&](IVEXHost* host, IDispatch* client) {
            return host->NavigateToCatalog(client, text.Get());
        });
    }

    void ClientClosing() override {
        CallHost([](IVEXHost* host, IDispatch* client) { return host->ClientClosing(client); });
    }

  private:
    // References of its own keep both ends alive while the host does as it likes.
    template <typename F>
    void CallHost(F&& f) {
        const ComPtr<Client> client(client_);
        ComPtr<IVEXHost> host;
        if (client) client->get_moParent(host.Out());
        if (!host) RaiseRuntimeError(runtime_error::kObjectNotSet);
        // what is read after a failure must come from this call
        SetErrorInfo(0, nullptr);
        const HRESULT result = f(host.Get(), static_cast<_Client*>(client.Get()));
        if (FAILED(result)) RaiseFailedCall(result, host.Get(), IID_IVEXHost);
    }

    ComPtr<Client> client_;
};

}  // namespace

ComPtr<Client> Client::Create(ClientParts parts) {
    return ComPtr<Client>::Attach(new Client(std::move(parts)));
}

Client::Client(ClientParts parts)
    : parts_(std::move(parts)),
      plug_in_({*parts_.text, *parts_.sound, parts_.folder, [this] { return MakeWindow(); }}) {}

std::shared_ptr<IBasketWindow> Client::MakeWindow() {
    return parts_.create_window(std::make_shared<HostOwner>(this));
}

HRESULT Client::QueryInterface(REFIID iid, void** object) noexcept {
    if (!object) return E_POINTER;
    *object = nullptr;
    if (iid == IID_IUnknown || iid == IID_IDispatch || iid == IID__Client) {
        *object = static_cast<_Client*>(this);
    } else if (iid == IID_IVEXClient) {
        *object = static_cast<IVEXClient*>(this);
    } else if (iid == IID_ISupportErrorInfo) {
        *object = static_cast<ISupportErrorInfo*>(this);
    } else if (iid == IID_IProvideClassInfo) {
        *object = static_cast<IProvideClassInfo*>(this);
    } else {
        return E_NOINTERFACE;
    }
    AddRef();
    return S_OK;
}

// --- late binding

ComPtr<ITypeInfo> Client::TypeInfo(const GUID& type) const {
    const std::wstring path = ModulePath(Module());
    ComPtr<ITypeLib> library;
    HRESULT result = LoadTypeLibEx(path.c_str(), REGKIND_NONE, library.Out());
    ComPtr<ITypeInfo> info;
    if (SUCCEEDED(result)) result = library->GetTypeInfoOfGuid(type, info.Out());
    if (FAILED(result)) {
        const std::int32_t number = ErrorNumberOf(result);
        throw Error(number, {}, std::wstring(StandardDescription(number)));
    }
    return info;
}

HRESULT Client::GetTypeInfoCount(UINT* count) noexcept {
    if (!count) return ReportNullPointer(IID__Client);
    *count = 1;
    return S_OK;
}

HRESULT Client::GetTypeInfo(UINT index, LCID, ITypeInfo** info) noexcept {
    if (!info) return ReportNullPointer(IID__Client);
    *info = nullptr;
    if (index != 0) return DISP_E_BADINDEX;
    return Guarded(IID__Client, [&] {
        if (!dispatch_info_) dispatch_info_ = TypeInfo(IID__Client);
        *info = ComPtr<ITypeInfo>(dispatch_info_).Detach();
    });
}

HRESULT Client::GetIDsOfNames(REFIID iid, LPOLESTR* names, UINT count, LCID locale,
                              DISPID* ids) noexcept {
    if (iid != IID_NULL) return DISP_E_UNKNOWNINTERFACE;
    if (!names || !ids) return ReportNullPointer(IID__Client);
    ComPtr<ITypeInfo> info;
    const HRESULT result = GetTypeInfo(0, locale, info.Out());
    if (FAILED(result)) return result;
    return info->GetIDsOfNames(names, count, ids);
}

HRESULT Client::Invoke(DISPID member, REFIID iid, LCID locale, WORD flags, DISPPARAMS* arguments,
                       VARIANT* result, EXCEPINFO* exception, UINT* bad_argument) noexcept {
    if (iid != IID_NULL) return DISP_E_UNKNOWNINTERFACE;
    if (!arguments) return ReportNullPointer(IID__Client);
    if (member == kMoParent && (flags & DISPATCH_PROPERTYGET) && arguments->cArgs == 0) {
        return InvokeParent(result);
    }
    ComPtr<ITypeInfo> info;
    const HRESULT loaded = GetTypeInfo(0, locale, info.Out());
    if (FAILED(loaded)) return loaded;
    // the caller's reference could go during the call
    const ComPtr<Client> alive(this);
    return info->Invoke(static_cast<_Client*>(this), member, flags, arguments, result, exception,
                        bad_argument);
}

// moParent late-bound. The general way needs the host's type library registered, only to learn that
// an interface pointer is one; a script gets the host's own dispatch interface where it has one.
HRESULT Client::InvokeParent(VARIANT* result) const noexcept {
    if (!result) return S_OK;
    VariantInit(result);
    auto dispatch = moParent_.As<IDispatch>(IID_IDispatch);
    if (dispatch || !moParent_) {
        result->vt = VT_DISPATCH;
        result->pdispVal = dispatch.Detach();
    } else {
        result->vt = VT_UNKNOWN;
        result->punkVal = ComPtr<IVEXHost>(moParent_).Detach();
    }
    return S_OK;
}

HRESULT Client::InterfaceSupportsErrorInfo(REFIID iid) noexcept {
    return iid == IID__Client || iid == IID_IVEXClient || iid == IID_IDispatch ? S_OK : S_FALSE;
}

HRESULT Client::GetClassInfo(ITypeInfo** info) noexcept {
    if (!info) return ReportNullPointer(IID__Client);
    *info = nullptr;
    return Guarded(IID__Client, [&] { *info = TypeInfo(CLSID_Client).Detach(); });
}

// --- the plug-in's operations

HRESULT Client::get_moParent(IVEXHost** Value) noexcept {
    if (!Value) return ReportNullPointer(IID__Client);
    *Value = ComPtr<IVEXHost>(moParent_).Detach();
    return S_OK;
}

template <typename F>
HRESULT Client::ReturnText(BSTR* value, F&& f) noexcept {
    if (!value) return ReportNullPointer(IID_IVEXClient);
    *value = nullptr;
    const ComPtr<Client> alive(this);
    return Guarded(IID_IVEXClient, [&] { *value = Bstr(f()).Detach(); });
}

HRESULT Client::get_Caption(BSTR* Value) noexcept {
    return ReturnText(Value, [&] { return plug_in_.Caption(); });
}

HRESULT Client::get_Description(BSTR* Value) noexcept {
    return ReturnText(Value, [] { return kDescription; });
}

HRESULT Client::get_Producer(BSTR* Value) noexcept {
    return ReturnText(Value, [] { return kProducer; });
}

HRESULT Client::EnumURLPrefixes(VARIANT_BOOL Start, BSTR* Value) noexcept {
    return ReturnText(Value, [&] { return plug_in_.EnumURLPrefixes(Start != VARIANT_FALSE); });
}

HRESULT Client::Initialize(IDispatch* Parent) noexcept {
    const ComPtr<Client> alive(this);
    return Guarded(IID_IVEXClient, [&] {
        auto host = ComPtr<IDispatch>(Parent).As<IVEXHost>(IID_IVEXHost);
        if (!host) RaiseRuntimeError(runtime_error::kTypeMismatch);
        const ComPtr<IVEXHost> before = std::exchange(moParent_, std::move(host));
        try {
            plug_in_.Initialize();
        } catch (...) {
            moParent_ = before;
            throw;
        }
    });
}

HRESULT Client::OnSelectURL(BSTR URL, BSTR CatalogPositionURL,
                            BSTR CatalogPositionDisplayName) noexcept {
    const ComPtr<Client> alive(this);
    return Guarded(IID_IVEXClient, [&] {
        plug_in_.OnSelectURL(TextOf(URL), TextOf(CatalogPositionURL),
                             TextOf(CatalogPositionDisplayName));
    });
}

HRESULT Client::OpenFile(BSTR Path) noexcept {
    const ComPtr<Client> alive(this);
    return Guarded(IID_IVEXClient, [&] { plug_in_.OpenFile(TextOf(Path)); });
}

}  // namespace demovex
