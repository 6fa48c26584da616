// What a host may do from within the component's calls to it, and from another thread.
#include <atomic>
#include <thread>

#include "tests/e2e/component_win.h"

namespace demovex {
namespace {

class Reentry : public ComponentTest {
  protected:
    Reentry() {
        client = NewClient();
        EXPECT_EQ(client->Initialize(Parent()), S_OK);
        EXPECT_EQ(Follow(client.Get(), L"1000"), S_OK);
        window = BasketWindows().at(0);
    }
    ~Reentry() override {
        host.on_navigating = {};
        host.on_closing = {};
        client = {};
    }

    // Shows the current row's place in the catalogue, as the user's command does.
    void GotoCatalog() { SendMessageW(window, WM_COMMAND, kGotoCatalog, 0); }
    const std::vector<std::wstring> navigated{L"NavigateToCatalog vex://seite/1"};

    ComPtr<IVEXClient> client;
    HWND window = nullptr;
};

TEST_F(Reentry, AHostThatIsShownAPositionMayOrder) {
    host.on_navigating = [this] {
        EXPECT_EQ(Follow(client.Get(), L"1000"), S_OK);
        EXPECT_EQ(Follow(client.Get(), L"2000"), S_OK);
    };
    GotoCatalog();
    EXPECT_EQ(host.calls, navigated);
    const std::wstring text = BasketText(window);
    EXPECT_NE(text.find(L"1000\tHammer\t2\t"), std::wstring::npos) << text.size();
    EXPECT_NE(text.find(L"2000\tZange\t1\t"), std::wstring::npos);
}

TEST_F(Reentry, AHostThatIsShownAPositionMayOpenAFile) {
    WriteBytes(Path(L"a.bsk"), "DemoVexClient.Client\r\n2000\t\t5\r\n");
    host.on_navigating = [this] { EXPECT_EQ(client->OpenFile(Bstr(Path(L"a.bsk")).Get()), S_OK); };
    GotoCatalog();
    EXPECT_EQ(host.calls, navigated);
    EXPECT_NE(BasketText(window).find(L"2000\tZange\t5\t"), std::wstring::npos);
}

TEST_F(Reentry, AHostThatIsShownAPositionMayInitialiseAnewOrFailToDoSo) {
    host.on_navigating = [this] {
        EXPECT_EQ(client->Initialize(Parent()), S_OK);
        EXPECT_EQ(client->Initialize(nullptr), static_cast<HRESULT>(0x800A000D));
    };
    GotoCatalog();
    EXPECT_EQ(host.calls, navigated);
    EXPECT_EQ(BasketWindows().size(), 2u);
    EXPECT_EQ(References(client.Get()), 3u);
    EXPECT_EQ(host.references, 2u);
}

TEST_F(Reentry, AHostThatIsShownAPositionMayCloseTheWindowAndReleaseTheClient) {
    host.on_navigating = [this] {
        Close(window, {IDNO});
        client = {};
    };
    GotoCatalog();
    EXPECT_EQ(host.calls, (std::vector<std::wstring>{navigated[0], L"ClientClosing"}));
    EXPECT_TRUE(BasketWindows().empty());
    EXPECT_EQ(host.references, 1u);
    EXPECT_EQ(CanUnload(), S_OK);
}

TEST_F(Reentry, AHostThatDestroysTheWindowWhenToldOfTheClosingIsToldOnce) {
    host.on_closing = [this](IDispatch*) {
        DestroyWindow(window);
        client = {};
    };
    Close(window, {IDNO});
    EXPECT_EQ(host.calls, std::vector<std::wstring>{L"ClientClosing"});
    EXPECT_TRUE(BasketWindows().empty());
    EXPECT_EQ(host.references, 1u);
    EXPECT_EQ(CanUnload(), S_OK);
}

TEST_F(Reentry, AHostThatDestroysTheWindowUnaskedIsToldOnce) {
    DestroyWindow(window);
    EXPECT_EQ(host.calls, std::vector<std::wstring>{L"ClientClosing"});
    EXPECT_EQ(References(client.Get()), 1u);
    client = {};
    EXPECT_EQ(CanUnload(), S_OK);
}

TEST_F(Reentry, AHostThatIsToldOfTheClosingMayOpenTheNextBasket) {
    host.on_closing = [this](IDispatch*) {
        host.on_closing = {};
        EXPECT_EQ(client->Initialize(Parent()), S_OK);
        EXPECT_EQ(Follow(client.Get(), L"2000"), S_OK);
    };
    Close(window, {IDNO});
    ASSERT_EQ(BasketWindows().size(), 1u);
    EXPECT_NE(BasketWindows()[0], window);
    EXPECT_NE(BasketText(BasketWindows()[0]).find(L"2000\tZange\t1\t"), std::wstring::npos);
    EXPECT_EQ(References(client.Get()), 2u);
}

// As COM does when a host is done with it (CoUninitialize) while a basket is still open: the
// library is let go of without being asked whether it can be.
TEST_F(Reentry, AnOpenWindowOutlivesTheHostsUseOfTheLibrary) {
    client = {};
    FreeLibrary(module);
    module = GetModuleHandleW(L"DemoVexClient.dll");
    ASSERT_NE(module, nullptr);
    PumpUntil([] { return true; });
    EXPECT_NE(BasketText(window).find(L"1000\tHammer\t1"), std::wstring::npos);
    Close(window, {IDNO});
    EXPECT_EQ(host.calls, std::vector<std::wstring>{L"ClientClosing"});
    EXPECT_EQ(host.references, 1u);
    // it is still there, for nobody was asked; the next one who asks can free it
    module = LoadLibraryW(Path(L"DemoVexClient.dll").c_str());
    EXPECT_EQ(CanUnload(), S_OK);
}

// A call by name from another apartment: COM carries it to the window's own thread.
TEST_F(Reentry, AnotherThreadsCallsArriveOnTheWindowsThread) {
    const auto automation = client.As<IDispatch>(IID_IDispatch);
    ComPtr<IStream> stream;
    ASSERT_EQ(CoMarshalInterThreadInterfaceInStream(IID_IDispatch, automation.Get(), stream.Out()),
              S_OK);
    HRESULT unmarshalled = E_FAIL, ordered = E_FAIL, refused = E_FAIL;
    std::wstring description;
    std::atomic<bool> done = false;
    const DWORD main = GetCurrentThreadId();
    std::thread other([&, from = stream.Detach()] {
        CoInitializeEx(nullptr, COINIT_MULTITHREADED);
        {
            ComPtr<IDispatch> object;
            unmarshalled = CoGetInterfaceAndReleaseStream(from, IID_IDispatch, object.OutVoid());
            if (object) {
                const auto order = [&](const std::wstring& number) {
                    DISPID id = 0;
                    auto* name = const_cast<LPOLESTR>(L"OnSelectURL");
                    HRESULT result =
                        object->GetIDsOfNames(IID_NULL, &name, 1, LOCALE_USER_DEFAULT, &id);
                    const Bstr link(kOrder + number), position(L"vex://seite/2"), page(L"Seite 2");
                    std::array<VARIANT, 3> arguments{};
                    const Bstr* texts[] = {&page, &position, &link};
                    for (std::size_t i = 0; i < arguments.size(); ++i) {
                        arguments[i].vt = VT_BSTR;
                        arguments[i].bstrVal = texts[i]->Get();
                    }
                    DISPPARAMS parameters{arguments.data(), nullptr, 3, 0};
                    EXCEPINFO exception{};
                    if (result == S_OK) {
                        result = object->Invoke(id, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_METHOD,
                                                &parameters, nullptr, &exception, nullptr);
                    }
                    description = TextOf(exception.bstrDescription);
                    SysFreeString(exception.bstrSource);
                    SysFreeString(exception.bstrDescription);
                    SysFreeString(exception.bstrHelpFile);
                    return result;
                };
                ordered = order(L"2000");
                refused = order(L"unbekannt");
            }
        }
        CoUninitialize();
        done = true;
        PostThreadMessageW(main, WM_NULL, 0, 0);
    });
    EXPECT_TRUE(PumpUntil([&] { return done.load(); }));
    other.join();
    EXPECT_EQ(unmarshalled, S_OK);
    EXPECT_EQ(ordered, S_OK);
    EXPECT_EQ(refused, DISP_E_EXCEPTION);
    EXPECT_EQ(description, L"Type mismatch");
    EXPECT_NE(BasketText(window).find(L"2000\tZange\t1\t"), std::wstring::npos);
}

// The dual interface carries the type of the host, whose own library need not be registered: a call
// from another apartment ends in a result, whatever it is, and the host lives on.
TEST_F(Reentry, TheDualInterfaceInAnotherApartmentNeedsNoTypeLibraryOfTheHosts) {
    ASSERT_EQ(CallEntry("DllRegisterServer"), S_OK);
    const auto automation = client.As<_Client>(IID__Client);
    struct Results {
        HRESULT unmarshalled = S_FALSE, asked = S_FALSE, caption = S_FALSE, parent = S_FALSE;
    };
    // `how` is the interface that is carried; the other one is asked for on the far side
    const auto try_out = [&](REFIID how) {
        Results results;
        ComPtr<IStream> stream;
        const HRESULT marshalled =
            CoMarshalInterThreadInterfaceInStream(how, automation.Get(), stream.Out());
        if (FAILED(marshalled)) {
            results.unmarshalled = marshalled;
            return results;
        }
        std::atomic<bool> done = false;
        const DWORD main = GetCurrentThreadId();
        std::thread other([&, from = stream.Detach()] {
            CoInitializeEx(nullptr, COINIT_MULTITHREADED);
            {
                ComPtr<IUnknown> object;
                results.unmarshalled = CoGetInterfaceAndReleaseStream(from, how, object.OutVoid());
                ComPtr<_Client> dual;
                if (object) {
                    results.asked = object->QueryInterface(IID__Client, dual.OutVoid());
                }
                if (dual) {
                    Bstr caption;
                    results.caption = dual->get_Caption(caption.Out());
                    ComPtr<IVEXHost> parent;
                    results.parent = dual->get_moParent(parent.Out());
                }
            }
            CoUninitialize();
            done = true;
            PostThreadMessageW(main, WM_NULL, 0, 0);
        });
        EXPECT_TRUE(PumpUntil([&] { return done.load(); }));
        other.join();
        return results;
    };
    for (const IID& how : {IID_IDispatch, IID__Client}) {
        const Results results = try_out(how);
        if (FAILED(results.unmarshalled) || FAILED(results.asked)) continue;
        EXPECT_EQ(results.caption, S_OK);
        EXPECT_NE(results.parent, S_OK);
    }
    // the system under the tests keeps the reference that it could not carry
    while (host.references > 2) host.Release();
    // the window's own thread works on as before
    EXPECT_EQ(Follow(client.Get(), L"2000"), S_OK);
    EXPECT_EQ(CallEntry("DllUnregisterServer"), S_OK);
}

}  // namespace
}  // namespace demovex
