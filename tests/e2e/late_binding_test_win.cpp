// The component late-bound and without registration, as scripts and modern hosts use it.
#include "tests/e2e/component_win.h"

#include <ocidl.h>

namespace demovex {
namespace {

class LateBound : public ComponentTest {
  protected:
    DISPID IdOf(IDispatch* object, const wchar_t* name) {
        DISPID id = DISPID_UNKNOWN;
        auto* text = const_cast<LPOLESTR>(name);
        EXPECT_EQ(object->GetIDsOfNames(IID_NULL, &text, 1, LOCALE_USER_DEFAULT, &id), S_OK)
            << name;
        return id;
    }

    // Calls `name`; arguments in their order in the call.
    HRESULT Call(IDispatch* object, const wchar_t* name, WORD flags, std::vector<VARIANT> arguments,
                 VARIANT* result = nullptr, EXCEPINFO* exception = nullptr) {
        std::reverse(arguments.begin(), arguments.end());
        DISPPARAMS parameters{arguments.data(), nullptr, static_cast<UINT>(arguments.size()), 0};
        return object->Invoke(IdOf(object, name), IID_NULL, LOCALE_USER_DEFAULT, flags, &parameters,
                              result, exception, nullptr);
    }

    std::wstring Text(IDispatch* object, const wchar_t* name, WORD flags,
                      std::vector<VARIANT> arguments = {}) {
        VARIANT result;
        VariantInit(&result);
        EXPECT_EQ(Call(object, name, flags, std::move(arguments), &result), S_OK) << name;
        EXPECT_EQ(result.vt, VT_BSTR) << name;
        std::wstring text = result.vt == VT_BSTR ? std::wstring(TextOf(result.bstrVal)) : L"";
        VariantClear(&result);
        return text;
    }

    static VARIANT String(const Bstr& text) {
        VARIANT value;
        VariantInit(&value);
        value.vt = VT_BSTR;
        value.bstrVal = text.Get();
        return value;
    }
    static VARIANT Object(IDispatch* object) {
        VARIANT value;
        VariantInit(&value);
        value.vt = VT_DISPATCH;
        value.pdispVal = object;
        return value;
    }
    static VARIANT Boolean(bool is) {
        VARIANT value;
        VariantInit(&value);
        value.vt = VT_BOOL;
        value.boolVal = is ? VARIANT_TRUE : VARIANT_FALSE;
        return value;
    }

    ComPtr<IDispatch> NewObject() { return NewClient().As<IDispatch>(IID_IDispatch); }
};

TEST_F(LateBound, AnswersByName) {
    const auto object = NewObject();
    EXPECT_EQ(Text(object.Get(), L"Description", DISPATCH_PROPERTYGET), L"Vexmart Test Client");
    EXPECT_EQ(Text(object.Get(), L"producer", DISPATCH_PROPERTYGET), L"K.O.L.M.");
    EXPECT_EQ(Text(object.Get(), L"EnumURLPrefixes", DISPATCH_METHOD, {Boolean(true)}), L"");
    EXPECT_EQ(Text(object.Get(), L"EnumURLPrefixes", DISPATCH_METHOD), L"");
}

TEST_F(LateBound, ItsMembersKeepTheirNumbers) {
    const auto object = NewObject();
    DISPID expected = 0;
    for (const wchar_t* name : {L"moParent", L"Caption", L"Description", L"Producer",
                                L"EnumURLPrefixes", L"Initialize", L"OnSelectURL", L"OpenFile"}) {
        EXPECT_EQ(IdOf(object.Get(), name), ++expected) << name;
    }
}

TEST_F(LateBound, DrivesAWholeOrder) {
    const auto object = NewObject();
    ASSERT_EQ(Call(object.Get(), L"Initialize", DISPATCH_METHOD, {Object(Parent())}), S_OK);
    const Bstr link(std::wstring(kOrder) + L"1000"), position(L"vex://1"), name(L"Seite 1");
    ASSERT_EQ(Call(object.Get(), L"OnSelectURL", DISPATCH_METHOD,
                   {String(link), String(position), String(name)}),
              S_OK);
    EXPECT_NE(BasketText(BasketWindows()[0]).find(L"1000\tHammer\t1"), std::wstring::npos);
    EXPECT_EQ(Text(object.Get(), L"Caption", DISPATCH_PROPERTYGET), L"Vexmart Demo Warenkorb 1.1");
    EXPECT_EQ(References(object.Get()), 2u);
}

TEST_F(LateBound, ReportsErrorsAsExceptions) {
    const auto object = NewObject();
    EXCEPINFO exception{};
    EXPECT_EQ(Call(object.Get(), L"Caption", DISPATCH_PROPERTYGET, {}, nullptr, &exception),
              DISP_E_EXCEPTION);
    EXPECT_EQ(exception.scode, static_cast<SCODE>(0x800A005B));
    EXPECT_EQ(TextOf(exception.bstrSource), L"DemoVexClient");
    EXPECT_EQ(TextOf(exception.bstrDescription), L"Object variable or With block variable not set");
    SysFreeString(exception.bstrSource);
    SysFreeString(exception.bstrDescription);
    SysFreeString(exception.bstrHelpFile);
}

TEST_F(LateBound, RefusesUnknownMembersInterfacesAndWrongArguments) {
    const auto object = NewObject();
    DISPID id = 0;
    auto* name = const_cast<LPOLESTR>(L"Nichts");
    EXPECT_EQ(object->GetIDsOfNames(IID_NULL, &name, 1, 0, &id), DISP_E_UNKNOWNNAME);
    EXPECT_EQ(object->GetIDsOfNames(IID_IUnknown, &name, 1, 0, &id), DISP_E_UNKNOWNINTERFACE);
    DISPPARAMS none{};
    EXPECT_EQ(object->Invoke(99, IID_NULL, 0, DISPATCH_METHOD, &none, nullptr, nullptr, nullptr),
              DISP_E_MEMBERNOTFOUND);
    EXPECT_TRUE(FAILED(Call(object.Get(), L"OpenFile", DISPATCH_METHOD, {})));
    EXPECT_TRUE(FAILED(Call(object.Get(), L"Initialize", DISPATCH_METHOD, {Boolean(true)})));
}

TEST_F(LateBound, TheParentIsNothingBeforeInitializeAndTheHostAfterwards) {
    const auto object = NewObject();
    VARIANT result;
    VariantInit(&result);
    ASSERT_EQ(Call(object.Get(), L"moParent", DISPATCH_PROPERTYGET, {}, &result), S_OK);
    EXPECT_EQ(result.vt, VT_DISPATCH);
    EXPECT_EQ(result.pdispVal, nullptr);
    ASSERT_EQ(Call(object.Get(), L"Initialize", DISPATCH_METHOD, {Object(Parent())}), S_OK);
    ASSERT_EQ(Call(object.Get(), L"moParent", DISPATCH_PROPERTYGET, {}, &result), S_OK);
    EXPECT_EQ(result.vt, VT_DISPATCH);
    EXPECT_EQ(result.pdispVal, Parent());
    EXPECT_EQ(host.references, 3u);
    VariantClear(&result);
    EXPECT_EQ(host.references, 2u);
}

TEST_F(LateBound, ItsTypeLibraryDescribesTheDualInterfaceAndTheClass) {
    const auto object = NewObject();
    UINT count = 0;
    EXPECT_EQ(object->GetTypeInfoCount(&count), S_OK);
    EXPECT_EQ(count, 1u);
    ComPtr<ITypeInfo> info;
    ASSERT_EQ(object->GetTypeInfo(0, 0, info.Out()), S_OK);
    TYPEATTR* attributes = nullptr;
    ASSERT_EQ(info->GetTypeAttr(&attributes), S_OK);
    EXPECT_EQ(attributes->guid, IID__Client);
    EXPECT_TRUE(attributes->wTypeFlags & TYPEFLAG_FDUAL);
    info->ReleaseTypeAttr(attributes);
    EXPECT_EQ(object->GetTypeInfo(1, 0, info.Out()), DISP_E_BADINDEX);

    const auto provider = object.As<IProvideClassInfo>(IID_IProvideClassInfo);
    ASSERT_EQ(provider->GetClassInfo(info.Out()), S_OK);
    ASSERT_EQ(info->GetTypeAttr(&attributes), S_OK);
    EXPECT_EQ(attributes->guid, CLSID_Client);
    info->ReleaseTypeAttr(attributes);

    ComPtr<ITypeLib> library;
    UINT index = 0;
    ASSERT_EQ(info->GetContainingTypeLib(library.Out(), &index), S_OK);
    TLIBATTR* library_attributes = nullptr;
    ASSERT_EQ(library->GetLibAttr(&library_attributes), S_OK);
    EXPECT_EQ(library_attributes->guid, LIBID_DemoVexClient);
    EXPECT_EQ(library_attributes->wMajorVerNum, 1);
    EXPECT_EQ(library_attributes->wMinorVerNum, 1);
    library->ReleaseTLibAttr(library_attributes);
}

// --- the class factory and the manifest

TEST_F(LateBound, TheFactoryKnowsItsClassAlone) {
    using Get = HRESULT(STDMETHODCALLTYPE*)(REFCLSID, REFIID, void**);
    const auto get =
        reinterpret_cast<Get>(reinterpret_cast<void*>(GetProcAddress(module, "DllGetClassObject")));
    void* object = &object;
    EXPECT_EQ(get(IID_IUnknown, IID_IClassFactory, &object), CLASS_E_CLASSNOTAVAILABLE);
    EXPECT_EQ(object, nullptr);
    EXPECT_EQ(get(CLSID_Client, IID_IDispatch, &object), E_NOINTERFACE);
    EXPECT_EQ(get(CLSID_Client, IID_IClassFactory, nullptr), E_POINTER);
    EXPECT_EQ(Factory()->CreateInstance(Parent(), IID_IUnknown, &object), CLASS_E_NOAGGREGATION);
}

TEST_F(LateBound, AServerLockKeepsTheModuleLoaded) {
    EXPECT_EQ(CanUnload(), S_OK);
    // no factory is kept: it would keep the module loaded by itself
    EXPECT_EQ(Factory()->LockServer(TRUE), S_OK);
    EXPECT_EQ(CanUnload(), S_FALSE);
    EXPECT_EQ(Factory()->LockServer(FALSE), S_OK);
    EXPECT_EQ(CanUnload(), S_OK);
}

TEST_F(LateBound, TheManifestLetsAHostCreateTheClassWithoutRegistration) {
    CLSID class_id{};
    ASSERT_TRUE(FAILED(CLSIDFromProgID(L"DemoVexClient.Client", &class_id)));
    const std::wstring manifest = Path(L"DemoVexClient.X.manifest");
    ACTCTXW description{};
    description.cbSize = sizeof description;
    description.lpSource = manifest.c_str();
    const HANDLE context = CreateActCtxW(&description);
    ASSERT_NE(context, INVALID_HANDLE_VALUE);
    ULONG_PTR cookie = 0;
    ASSERT_TRUE(ActivateActCtx(context, &cookie));
    EXPECT_EQ(CLSIDFromProgID(L"DemoVexClient.Client", &class_id), S_OK);
    // the system may answer with an alias that is good within the context; both lead to the class
    ComPtr<IVEXClient> client;
    EXPECT_EQ(CoCreateInstance(CLSID_Client, nullptr, CLSCTX_INPROC_SERVER, IID_IVEXClient,
                               client.OutVoid()),
              S_OK);
    EXPECT_EQ(
        CoCreateInstance(class_id, nullptr, CLSCTX_INPROC_SERVER, IID_IVEXClient, client.OutVoid()),
        S_OK);
    DeactivateActCtx(0, cookie);
    ReleaseActCtx(context);
    ASSERT_TRUE(client);
    EXPECT_EQ(client->Initialize(Parent()), S_OK);
    EXPECT_EQ(Follow(client.Get(), L"1000"), S_OK);
    client = {};
    Close(BasketWindows()[0], {IDNO});
    // COM lets go of the module at once when asked so
    CoFreeUnusedLibrariesEx(0, 0);
}

}  // namespace
}  // namespace demovex
