// The COM class with a fake window: references, interfaces, errors, late binding.
#include "client/client_win.h"

#include <gtest/gtest.h>

#include "client/class_factory_win.h"
#include "client/guard_win.h"
#include "client/link_router.h"
#include "tests/client/error_object_win.h"
#include "tests/client/fake_client_window.h"
#include "tests/client/fake_host_win.h"
#include "tests/support/fake_text_service.h"

namespace demovex {
namespace {

constexpr auto kTypeMismatch = static_cast<HRESULT>(0x800A000D);
constexpr auto kObjectNotSet = static_cast<HRESULT>(0x800A005B);

// What the fake windows of one test hold of their owners, as real windows do until they close.
struct Windows {
    WindowLog log;
    std::vector<std::shared_ptr<IBasketOwner>> owners;
};

class ClientTest : public testing::Test {
  protected:
    ClientTest() {
        SetErrorInfo(0, nullptr);
        client = Client::Create(Parts());
    }
    ~ClientTest() override {
        windows.owners.clear();
        client = {};
        EXPECT_EQ(windows.log.alive, 0);
        EXPECT_EQ(host.references, 1u);
        EXPECT_TRUE(ModuleLock::None());
    }

    ClientParts Parts() {
        return {std::make_shared<FakeTextService>(), sound, L"C:\\Vexmart",
                [this](std::shared_ptr<IBasketOwner> owner) -> std::shared_ptr<IBasketWindow> {
                    auto window = std::make_shared<FakeClientWindow>(windows.log);
                    if (!windows.log.fail_initialize) windows.owners.push_back(std::move(owner));
                    return window;
                }};
    }

    ComPtr<IVEXClient> Plug() { return client.As<IVEXClient>(IID_IVEXClient); }
    IDispatch* Parent() { return static_cast<IDispatch*>(&host); }
    HRESULT Follow(const std::wstring& url) {
        return client->OnSelectURL(Bstr(url).Get(), Bstr(L"pos").Get(), Bstr(L"name").Get());
    }

    FakeHost host;
    std::shared_ptr<FakeSound> sound = std::make_shared<FakeSound>();
    Windows windows;
    ComPtr<Client> client;
};

TEST_F(ClientTest, OffersItsInterfacesWithOneIdentity) {
    const auto unknown = client.As<IUnknown>(IID_IUnknown);
    for (const IID* iid : {&IID_IDispatch, &IID__Client, &IID_IVEXClient, &IID_ISupportErrorInfo,
                           &IID_IProvideClassInfo}) {
        const auto other = client.As<IUnknown>(*iid);
        ASSERT_TRUE(other);
        EXPECT_EQ(other.As<IUnknown>(IID_IUnknown).Get(), unknown.Get());
    }
    void* object = &object;
    EXPECT_EQ(client->QueryInterface(IID_IVEXHost, &object), E_NOINTERFACE);
    EXPECT_EQ(object, nullptr);
    EXPECT_EQ(client->QueryInterface(IID_IUnknown, nullptr), E_POINTER);
}

TEST_F(ClientTest, ItsInterfacesSupportErrorInformation) {
    EXPECT_EQ(client->InterfaceSupportsErrorInfo(IID_IVEXClient), S_OK);
    EXPECT_EQ(client->InterfaceSupportsErrorInfo(IID__Client), S_OK);
    EXPECT_EQ(client->InterfaceSupportsErrorInfo(IID_IVEXHost), S_FALSE);
}

TEST_F(ClientTest, TheInterfacesSlotsStandInThePublishedOrder) {
    ASSERT_EQ(client->Initialize(Parent()), S_OK);
    const auto plug = Plug();
    // what a host compiled long ago does: the slot's number, nothing else
    void** table = *reinterpret_cast<void***>(plug.Get());
    using GetText = HRESULT(STDMETHODCALLTYPE*)(void*, BSTR*);
    using EnumPrefixes = HRESULT(STDMETHODCALLTYPE*)(void*, VARIANT_BOOL, BSTR*);
    using Initialize = HRESULT(STDMETHODCALLTYPE*)(void*, IDispatch*);
    using OnSelectURL = HRESULT(STDMETHODCALLTYPE*)(void*, BSTR, BSTR, BSTR);
    using OpenFile = HRESULT(STDMETHODCALLTYPE*)(void*, BSTR);
    const auto get = [&](int slot) {
        Bstr text;
        EXPECT_EQ(reinterpret_cast<GetText>(table[slot])(plug.Get(), text.Out()), S_OK);
        return std::wstring(TextOf(text.Get()));
    };
    EXPECT_EQ(get(3), L"Vexmart Demo Warenkorb 1.1");
    EXPECT_EQ(get(4), L"Vexmart Test Client");
    EXPECT_EQ(get(5), L"K.O.L.M.");
    Bstr none;
    EXPECT_EQ(reinterpret_cast<EnumPrefixes>(table[6])(plug.Get(), VARIANT_TRUE, none.Out()), S_OK);
    EXPECT_EQ(TextOf(none.Get()), L"");
    EXPECT_EQ(reinterpret_cast<Initialize>(table[7])(plug.Get(), nullptr), kTypeMismatch);
    const Bstr link(std::wstring(kBasketPrefix) + L"1"), position(L"pos"), name(L"name");
    EXPECT_EQ(
        reinterpret_cast<OnSelectURL>(table[8])(plug.Get(), link.Get(), position.Get(), name.Get()),
        S_OK);
    EXPECT_EQ(windows.log.calls.back(), L"1: AddArtikel 1|name|pos|False|1|True");
    EXPECT_EQ(reinterpret_cast<OpenFile>(table[9])(plug.Get(), Bstr(L"x.bsk").Get()), S_OK);
    EXPECT_EQ(windows.log.calls.back(), L"1: Load x.bsk");
}

TEST_F(ClientTest, TheHostsSlotsStandInThePublishedOrder) {
    void** table = *reinterpret_cast<void***>(static_cast<IVEXHost*>(&host));
    using Navigate = HRESULT(STDMETHODCALLTYPE*)(void*, IDispatch*, BSTR);
    using Closing = HRESULT(STDMETHODCALLTYPE*)(void*, IDispatch*);
    auto* const object = static_cast<IVEXHost*>(&host);
    const Bstr address(L"vex://1");
    EXPECT_EQ(reinterpret_cast<Navigate>(table[3])(object, Parent(), address.Get()), S_OK);
    EXPECT_EQ(reinterpret_cast<Closing>(table[4])(object, Parent()), S_OK);
    EXPECT_EQ(host.calls,
              (std::vector<std::wstring>{L"NavigateToCatalog vex://1", L"ClientClosing"}));
}

// Hosts have them compiled in.
TEST(PublishedIdentifiers, NeverChange) {
    const auto text = [](const GUID& id) {
        wchar_t braced[40] = L"";
        StringFromGUID2(id, braced, 40);
        return std::wstring(braced);
    };
    EXPECT_EQ(text(LIBID_DemoVexClient), L"{CEEF0284-8A5C-4758-8F46-73D09F214B95}");
    EXPECT_EQ(text(IID__Client), L"{CEEF0285-8A5C-4758-8F46-73D09F214B95}");
    EXPECT_EQ(text(CLSID_Client), L"{CEEF0286-8A5C-4758-8F46-73D09F214B95}");
    EXPECT_EQ(text(LIBID_VEXInterfaces), L"{7BF72F3D-67A3-43AA-97EC-828EC81B5EC7}");
    EXPECT_EQ(text(IID_IVEXClient), L"{7BF72F3E-67A3-43AA-97EC-828EC81B5EC7}");
    EXPECT_EQ(text(IID_IVEXHost), L"{7BF72F3F-67A3-43AA-97EC-828EC81B5EC7}");
}

TEST_F(ClientTest, ReferencesAreExact) {
    EXPECT_EQ(References(client.Get()), 1u);
    ASSERT_EQ(client->Initialize(Parent()), S_OK);
    EXPECT_EQ(References(client.Get()), 2u);  // the window's
    EXPECT_EQ(host.references, 2u);           // moParent
    ASSERT_EQ(Follow(std::wstring(kBasketPrefix) + L"4711"), S_OK);
    EXPECT_EQ(References(client.Get()), 2u);
    EXPECT_EQ(host.references, 2u);
    ASSERT_EQ(client->Initialize(Parent()), S_OK);
    EXPECT_EQ(References(client.Get()), 3u);  // two windows
    EXPECT_EQ(host.references, 2u);
    windows.owners.clear();  // both have closed
    EXPECT_EQ(References(client.Get()), 1u);
    EXPECT_EQ(host.references, 2u);
    client = {};
    EXPECT_EQ(host.references, 1u);
}

TEST_F(ClientTest, AWindowLeftOpenKeepsItsClientUntilItCloses) {
    ASSERT_EQ(client->Initialize(Parent()), S_OK);
    client = {};
    EXPECT_FALSE(ModuleLock::None());
    EXPECT_EQ(host.references, 2u);
    windows.owners[0]->NavigateToCatalog(L"vex://seite/1");
    windows.owners[0]->ClientClosing();
    EXPECT_EQ(host.calls,
              (std::vector<std::wstring>{L"NavigateToCatalog vex://seite/1", L"ClientClosing"}));
    windows.owners.clear();
    EXPECT_EQ(host.references, 1u);
    EXPECT_TRUE(ModuleLock::None());
}

TEST_F(ClientTest, TheHostMayReleaseTheClientWhileItIsToldOfTheClosing) {
    ASSERT_EQ(client->Initialize(Parent()), S_OK);
    host.on_closing = [this](IDispatch*) { client = {}; };
    windows.owners[0]->ClientClosing();
    EXPECT_EQ(host.calls.back(), L"ClientClosing");
    EXPECT_EQ(host.references, 2u);  // until the window lets go
}

TEST_F(ClientTest, ANullOrForeignParentIsATypeMismatchAndLeavesTheObjectAsItWas) {
    EXPECT_EQ(client->Initialize(nullptr), kTypeMismatch);
    ErrorObject error;
    EXPECT_TRUE(error.present);
    EXPECT_EQ(error.source, L"DemoVexClient");
    EXPECT_EQ(error.description, L"Type mismatch");

    FakeHost foreign;
    foreign.offers_host = false;
    EXPECT_EQ(client->Initialize(static_cast<IDispatch*>(&foreign)), kTypeMismatch);
    EXPECT_EQ(foreign.references, 1u);
    EXPECT_EQ(windows.log.created, 0);

    ASSERT_EQ(client->Initialize(Parent()), S_OK);
    EXPECT_EQ(client->Initialize(nullptr), kTypeMismatch);
    ComPtr<IVEXHost> parent;
    EXPECT_EQ(client->get_moParent(parent.Out()), S_OK);
    EXPECT_EQ(parent.Get(), static_cast<IVEXHost*>(&host));
    EXPECT_EQ(client->OpenFile(Bstr(L"a.bsk").Get()), S_OK);
    EXPECT_EQ(windows.log.calls.back(), L"1: Load a.bsk");
}

TEST_F(ClientTest, AFailedInitializeLeavesNothingAndALaterOneWorks) {
    windows.log.fail_initialize = 53;
    EXPECT_EQ(client->Initialize(Parent()), static_cast<HRESULT>(0x800A0035));
    EXPECT_EQ(ErrorObject().description, L"File not found");
    EXPECT_EQ(References(client.Get()), 1u);
    EXPECT_EQ(host.references, 1u);
    EXPECT_EQ(windows.log.alive, 0);
    ComPtr<IVEXHost> parent;
    EXPECT_EQ(client->get_moParent(parent.Out()), S_OK);
    EXPECT_FALSE(parent);
    windows.log.fail_initialize = 0;
    EXPECT_EQ(client->Initialize(Parent()), S_OK);
    EXPECT_EQ(host.references, 2u);
}

TEST_F(ClientTest, BeforeInitializeTheWindowsOperationsReportObjectNotSet) {
    Bstr text;
    EXPECT_EQ(client->get_Caption(text.Out()), kObjectNotSet);
    EXPECT_EQ(ErrorObject().description, L"Object variable or With block variable not set");
    EXPECT_EQ(client->OpenFile(Bstr(L"a.bsk").Get()), kObjectNotSet);
    EXPECT_EQ(Follow(std::wstring(kBasketPrefix) + L"4711"), kObjectNotSet);
    EXPECT_EQ(Follow(L"http://www.other.example/"), S_OK);
    EXPECT_EQ(client->get_Description(text.Out()), S_OK);
    EXPECT_EQ(client->get_Producer(text.Out()), S_OK);
    EXPECT_EQ(client->EnumURLPrefixes(VARIANT_TRUE, text.Out()), S_OK);
    EXPECT_EQ(TextOf(text.Get()), L"");
    EXPECT_NE(text.Get(), nullptr);
}

TEST_F(ClientTest, NoPlaceForTheResultIsReportedAsSuch) {
    ASSERT_EQ(client->Initialize(Parent()), S_OK);
    EXPECT_EQ(client->get_Caption(nullptr), E_POINTER);
    EXPECT_TRUE(ErrorObject().present);
    EXPECT_EQ(client->get_Description(nullptr), E_POINTER);
    EXPECT_EQ(client->get_Producer(nullptr), E_POINTER);
    EXPECT_EQ(client->EnumURLPrefixes(VARIANT_FALSE, nullptr), E_POINTER);
    EXPECT_EQ(client->get_moParent(nullptr), E_POINTER);
    EXPECT_EQ(client->GetTypeInfoCount(nullptr), E_POINTER);
    EXPECT_EQ(client->GetTypeInfo(0, 0, nullptr), E_POINTER);
    EXPECT_EQ(client->GetClassInfo(nullptr), E_POINTER);
}

TEST_F(ClientTest, NullStringsAreEmptyOnes) {
    ASSERT_EQ(client->Initialize(Parent()), S_OK);
    EXPECT_EQ(client->OnSelectURL(nullptr, nullptr, nullptr), S_OK);
    EXPECT_EQ(client->OnSelectURL(Bstr(std::wstring(kBasketPrefix) + L"1").Get(), nullptr, nullptr),
              S_OK);
    EXPECT_EQ(windows.log.calls.back(), L"1: AddArtikel 1|||False|1|True");
    EXPECT_EQ(client->OpenFile(nullptr), S_OK);
    EXPECT_EQ(windows.log.calls.back(), L"1: Load ");
}

TEST_F(ClientTest, AnErrorOfTheWindowReachesTheHostWithNumberSourceAndDescription) {
    ASSERT_EQ(client->Initialize(Parent()), S_OK);
    windows.log.fail_add = 13;
    EXPECT_EQ(Follow(std::wstring(kBasketPrefix) + L"unbekannt"), kTypeMismatch);
    const ErrorObject error;
    EXPECT_EQ(error.source, L"DemoVexClient");
    EXPECT_EQ(error.description, L"Type mismatch");
    EXPECT_TRUE(sound->played.empty());
}

TEST_F(ClientTest, AFailureOfTheHostIsRaisedInTheWindowWithTheHostsOwnWords) {
    ASSERT_EQ(client->Initialize(Parent()), S_OK);
    host.on_navigating = [] { ReportFailure(IID_IVEXHost, {0, L"Katalog", L"Seite fehlt"}); };
    host.answer = static_cast<HRESULT>(0x800A0005);
    try {
        windows.owners[0]->NavigateToCatalog(L"vex://seite/9");
        FAIL() << "nothing raised";
    } catch (const Error& error) {
        EXPECT_EQ(error.number(), 5);
        EXPECT_EQ(error.source(), L"Katalog");
        EXPECT_EQ(error.description(), L"Seite fehlt");
    }
    host.answer = E_FAIL;
    EXPECT_THROW(windows.owners[0]->ClientClosing(), Error);
}

// --- the class factory

class FactoryTest : public ClientTest {
  protected:
    ComPtr<ClassFactory> factory = ClassFactory::Create([this] { return Parts(); });
};

TEST_F(FactoryTest, CreatesObjectsWithOneReference) {
    ComPtr<IVEXClient> made;
    ASSERT_EQ(factory->CreateInstance(nullptr, IID_IVEXClient, made.OutVoid()), S_OK);
    EXPECT_EQ(References(made.Get()), 1u);
}

TEST_F(FactoryTest, RefusesAggregationForeignInterfacesAndNoPlace) {
    void* object = &object;
    EXPECT_EQ(factory->CreateInstance(Parent(), IID_IUnknown, &object), CLASS_E_NOAGGREGATION);
    EXPECT_EQ(object, nullptr);
    EXPECT_EQ(factory->CreateInstance(nullptr, IID_IVEXHost, &object), E_NOINTERFACE);
    EXPECT_EQ(object, nullptr);
    EXPECT_EQ(factory->CreateInstance(nullptr, IID_IUnknown, nullptr), E_POINTER);
    EXPECT_EQ(factory->QueryInterface(IID_IDispatch, &object), E_NOINTERFACE);
}

TEST_F(FactoryTest, AnErrorWhileCreatingIsReported) {
    const auto failing = ClassFactory::Create([]() -> ClientParts { throw std::bad_alloc(); });
    void* object = &object;
    EXPECT_EQ(failing->CreateInstance(nullptr, IID_IUnknown, &object),
              static_cast<HRESULT>(0x800A0007));
    EXPECT_EQ(object, nullptr);
}

TEST(ModuleCount, ObjectsFactoriesAndServerLocksKeepTheModuleLoaded) {
    EXPECT_TRUE(ModuleLock::None());
    {
        const auto factory = ClassFactory::Create([] { return ClientParts(); });
        EXPECT_FALSE(ModuleLock::None());
        factory->LockServer(TRUE);
    }
    EXPECT_FALSE(ModuleLock::None());
    const auto factory = ClassFactory::Create([] { return ClientParts(); });
    factory->LockServer(FALSE);
    EXPECT_FALSE(ModuleLock::None());
}

}  // namespace
}  // namespace demovex
