// What can be wrong around the component: the article master, the registry, the sound, the host.
#include "tests/e2e/component_win.h"

namespace demovex {
namespace {

using BadSurroundings = ComponentTest;

constexpr auto kOwn = static_cast<HRESULT>(0xFFFFFFFF);

TEST_F(BadSurroundings, AMissingArticleMasterFailsTheSetUpAndLeavesNothing) {
    ASSERT_TRUE(DeleteFileW(Path(L"artikel.db").c_str()));
    const auto client = NewClient();
    EXPECT_EQ(client->Initialize(Parent()), kOwn);
    const ErrorObject error;
    EXPECT_EQ(error.source, L"Artikelstamm::OpenFile");
    EXPECT_EQ(error.description, L"Artikelstamm (" + Path(L"artikel.db") +
                                     L") kann nicht geladen werden: Datei nicht gefunden");
    EXPECT_TRUE(BasketWindows().empty());
    EXPECT_EQ(References(client.Get()), 1u);
    EXPECT_EQ(host.references, 1u);
    EXPECT_TRUE(host.calls.empty());
    // once the file is there, the same object works
    WriteBytes(Path(L"artikel.db"), SmallMaster());
    EXPECT_EQ(client->Initialize(Parent()), S_OK);
    EXPECT_EQ(Follow(client.Get(), L"1000"), S_OK);
}

TEST_F(BadSurroundings, AFailedSecondSetUpKeepsTheFirstWindow) {
    const auto client = NewClient();
    ASSERT_EQ(client->Initialize(Parent()), S_OK);
    // the open master stays open; a new set-up looks for the name that is gone
    ASSERT_TRUE(MoveFileW(Path(L"artikel.db").c_str(), Path(L"weg.db").c_str()));
    EXPECT_EQ(client->Initialize(Parent()), kOwn);
    EXPECT_EQ(BasketWindows().size(), 1u);
    EXPECT_EQ(References(client.Get()), 2u);
    EXPECT_EQ(host.references, 2u);
    EXPECT_EQ(Follow(client.Get(), L"1000"), S_OK);
}

TEST_F(BadSurroundings, ALockedArticleMasterFailsTheSetUpUntilItIsFree) {
    const HANDLE lock = CreateFileW(Path(L"artikel.db").c_str(), GENERIC_READ | GENERIC_WRITE, 0,
                                    nullptr, OPEN_EXISTING, 0, nullptr);
    ASSERT_NE(lock, INVALID_HANDLE_VALUE);
    const auto client = NewClient();
    EXPECT_EQ(client->Initialize(Parent()), kOwn);
    const ErrorObject error;
    EXPECT_EQ(error.source, L"Artikelstamm::OpenFile");
    EXPECT_EQ(error.description.find(L"Artikelstamm (" + Path(L"artikel.db") +
                                     L") kann nicht geladen werden: "),
              0u);
    EXPECT_TRUE(BasketWindows().empty());
    CloseHandle(lock);
    EXPECT_EQ(client->Initialize(Parent()), S_OK);
}

TEST_F(BadSurroundings, AMalformedArticleMasterOpensAndKnowsNoArticle) {
    // empty, one byte, a cut record, no line ends, bytes of all kinds
    std::string all;
    for (int i = 0; i < 4096; ++i) all += static_cast<char>(i * 7);
    for (const std::string& bytes :
         {std::string(), std::string("x"), SmallMaster().substr(0, 30), std::string(53, '1'),
          std::string(5000, ' '), std::string(5400, '\0'), all}) {
        SCOPED_TRACE(bytes.size());
        WriteBytes(Path(L"artikel.db"), bytes);
        const auto client = NewClient();
        ASSERT_EQ(client->Initialize(Parent()), S_OK);
        EXPECT_EQ(Follow(client.Get(), L"1000"), static_cast<HRESULT>(0x800A000D));
        EXPECT_TRUE(ErrorObject().present);
        Close(BasketWindows()[0], {IDNO});
        ASSERT_TRUE(BasketWindows().empty());
    }
}

TEST_F(BadSurroundings, PricesWrittenIntoTheOpenMasterAreUsedAtOnce) {
    const auto client = NewClient();
    ASSERT_EQ(client->Initialize(Parent()), S_OK);
    const HANDLE file =
        CreateFileW(Path(L"artikel.db").c_str(), GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE,
                    nullptr, OPEN_EXISTING, 0, nullptr);
    ASSERT_NE(file, INVALID_HANDLE_VALUE);
    SetFilePointer(file, 40, nullptr, FILE_BEGIN);
    DWORD written = 0;
    ASSERT_TRUE(WriteFile(file, "777", 3, &written, nullptr));
    CloseHandle(file);
    EXPECT_EQ(Follow(client.Get(), L"1000"), S_OK);
    EXPECT_NE(BasketText(BasketWindows()[0]).find(L"777"), std::wstring::npos);
}

TEST_F(BadSurroundings, AMissingSoundIsNotReported) {
    // the folder has no Order.wav at all
    const auto client = NewClient();
    ASSERT_EQ(client->Initialize(Parent()), S_OK);
    EXPECT_EQ(Follow(client.Get(), L"1000"), S_OK);
}

TEST_F(BadSurroundings, ADamagedSoundIsNotReported) {
    WriteBytes(Path(L"Order.wav"), "RIFF\xFF\xFF\xFF\xFFWAVEdata");
    const auto client = NewClient();
    ASSERT_EQ(client->Initialize(Parent()), S_OK);
    EXPECT_EQ(Follow(client.Get(), L"1000"), S_OK);
}

// While it lives, every use of a root of the registry fails: the root stands for a deleted key.
class RefusingRoot {
  public:
    explicit RefusingRoot(HKEY root) : root_(root) {
        EXPECT_EQ(RegCreateKeyExW(HKEY_CURRENT_USER, L"DemoVexRefusing", 0, nullptr, 0,
                                  KEY_ALL_ACCESS, nullptr, &gone_, nullptr),
                  ERROR_SUCCESS);
        EXPECT_EQ(RegDeleteKeyW(HKEY_CURRENT_USER, L"DemoVexRefusing"), ERROR_SUCCESS);
        EXPECT_EQ(RegOverridePredefKey(root_, gone_), ERROR_SUCCESS);
    }
    ~RefusingRoot() {
        RegOverridePredefKey(root_, nullptr);
        RegCloseKey(gone_);
    }
    RefusingRoot(const RefusingRoot&) = delete;
    RefusingRoot& operator=(const RefusingRoot&) = delete;

  private:
    HKEY root_;
    HKEY gone_ = nullptr;
};

bool HasKey(HKEY root, const wchar_t* key) {
    HKEY open = nullptr;
    const bool has = RegOpenKeyExW(root, key, 0, KEY_READ, &open) == ERROR_SUCCESS;
    if (open) RegCloseKey(open);
    return has;
}

constexpr wchar_t kProgIdKey[] = L"Software\\Classes\\DemoVexClient.Client";

TEST_F(BadSurroundings, ARegistryThatRefusesGivesDefaultsAndStandsInNobodysWay) {
    WriteBytes(Path(L"a.bsk"), "DemoVexClient.Client\r\n1000\t\t2\r\n");
    const auto client = NewClient();
    const RefusingRoot refusing(HKEY_CURRENT_USER);
    ASSERT_EQ(client->Initialize(Parent()), S_OK);
    EXPECT_EQ(Follow(client.Get(), L"1000"), S_OK);
    // the list of recent files stays as it was
    EXPECT_EQ(client->OpenFile(Bstr(Path(L"a.bsk")).Get()), S_OK);
    EXPECT_EQ(Follow(client.Get(), L"1000"), S_OK);
}

TEST_F(BadSurroundings, WithoutRightsOnTheMachineTheUserAloneIsRegistered) {
    {
        const RefusingRoot refusing(HKEY_LOCAL_MACHINE);
        EXPECT_EQ(CallEntry("DllRegisterServer"), S_OK);
    }
    EXPECT_TRUE(HasKey(HKEY_CURRENT_USER, kProgIdKey));
    EXPECT_FALSE(HasKey(HKEY_LOCAL_MACHINE, kProgIdKey));
    EXPECT_EQ(CallEntry("DllUnregisterServer"), S_OK);
    EXPECT_FALSE(HasKey(HKEY_CURRENT_USER, kProgIdKey));
}

TEST_F(BadSurroundings, ARegistryThatRefusesEverywhereFailsTheRegistration) {
    {
        const RefusingRoot machine(HKEY_LOCAL_MACHINE);
        const RefusingRoot user(HKEY_CURRENT_USER);
        EXPECT_TRUE(FAILED(CallEntry("DllRegisterServer")));
        EXPECT_TRUE(FAILED(Install(true, L"user")));
    }
    EXPECT_FALSE(HasKey(HKEY_CURRENT_USER, kProgIdKey));
    EXPECT_FALSE(HasKey(HKEY_LOCAL_MACHINE, kProgIdKey));
}

TEST_F(BadSurroundings, RegisteringForTheUserTouchesNothingOfTheMachine) {
    EXPECT_EQ(Install(true, L"user"), S_OK);
    EXPECT_TRUE(HasKey(HKEY_CURRENT_USER, kProgIdKey));
    EXPECT_FALSE(HasKey(HKEY_LOCAL_MACHINE, kProgIdKey));
    EXPECT_EQ(Install(false, L"user"), S_OK);
    EXPECT_FALSE(HasKey(HKEY_CURRENT_USER, kProgIdKey));
}

// The system prefers the user's registration: an old one must not hide a new one of the machine.
TEST_F(BadSurroundings, RegisteringForTheMachineRemovesTheUsersOwn) {
    ASSERT_EQ(Install(true, L"user"), S_OK);
    ASSERT_TRUE(HasKey(HKEY_CURRENT_USER, kProgIdKey));
    EXPECT_EQ(CallEntry("DllRegisterServer"), S_OK);
    EXPECT_TRUE(HasKey(HKEY_LOCAL_MACHINE, kProgIdKey));
    EXPECT_FALSE(HasKey(HKEY_CURRENT_USER, kProgIdKey));
    EXPECT_FALSE(HasKey(HKEY_CURRENT_USER,
                        L"Software\\Classes\\CLSID\\{CEEF0286-8A5C-4758-8F46-73D09F214B95}"));
    EXPECT_EQ(CallEntry("DllUnregisterServer"), S_OK);
    EXPECT_FALSE(HasKey(HKEY_LOCAL_MACHINE, kProgIdKey));
}

TEST_F(BadSurroundings, AFailedSecondSetUpLeavesTheFormerHostInPlace) {
    const auto client = NewClient();
    ASSERT_EQ(client->Initialize(Parent()), S_OK);
    ASSERT_TRUE(MoveFileW(Path(L"artikel.db").c_str(), Path(L"weg.db").c_str()));
    FakeHost other;
    EXPECT_EQ(client->Initialize(static_cast<IDispatch*>(&other)), kOwn);
    EXPECT_EQ(other.references, 1u);
    const ComPtr<_Client> automation = client.As<_Client>(IID__Client);
    ComPtr<IVEXHost> parent;
    EXPECT_EQ(automation->get_moParent(parent.Out()), S_OK);
    EXPECT_EQ(parent.Get(), static_cast<IVEXHost*>(&host));
    parent = {};
    Close(BasketWindows().at(0), {IDNO});
    EXPECT_EQ(host.calls, std::vector<std::wstring>{L"ClientClosing"});
    EXPECT_TRUE(other.calls.empty());
}

TEST_F(BadSurroundings, AfterClosingTheCaptionAnswersAndOrdersAndFilesAreRefused) {
    WriteBytes(Path(L"a.bsk"), "DemoVexClient.Client\r\n1000\t\t2\r\n");
    const auto client = NewClient();
    ASSERT_EQ(client->Initialize(Parent()), S_OK);
    ASSERT_EQ(client->OpenFile(Bstr(Path(L"a.bsk")).Get()), S_OK);
    // closed by the user, then another time destroyed by the host
    for (const bool by_user : {true, false}) {
        const HWND window = BasketWindows().at(0);
        if (by_user) {
            Close(window, {IDNO});
        } else {
            DestroyWindow(window);
        }
        ASSERT_TRUE(BasketWindows().empty());
        Bstr caption;
        EXPECT_EQ(client->get_Caption(caption.Out()), S_OK);
        EXPECT_EQ(TextOf(caption.Get()), L"Vexmart Demo Warenkorb 1.1 - a.bsk");
        EXPECT_EQ(Follow(client.Get(), L"1000"), static_cast<HRESULT>(0x800A005B));
        EXPECT_TRUE(ErrorObject().present);
        EXPECT_EQ(client->OpenFile(Bstr(Path(L"a.bsk")).Get()), static_cast<HRESULT>(0x800A005B));
        EXPECT_TRUE(ErrorObject().present);
        if (!by_user) break;
        ASSERT_EQ(client->Initialize(Parent()), S_OK);
        ASSERT_EQ(client->OpenFile(Bstr(Path(L"a.bsk")).Get()), S_OK);
    }
}

// A host that fails without a word is not quoted with an older error's words.
TEST_F(BadSurroundings, TheHostsErrorIsToldAndNoOlderOne) {
    const auto client = NewClient();
    ASSERT_EQ(client->Initialize(Parent()), S_OK);
    ASSERT_EQ(Follow(client.Get(), L"1000"), S_OK);
    const HWND window = BasketWindows().at(0);
    const auto box_of = [&](const wchar_t* older, const wchar_t* own) {
        const auto set_error = [](const wchar_t* text) {
            ComPtr<ICreateErrorInfo> error;
            CreateErrorInfo(error.Out());
            error->SetDescription(const_cast<LPOLESTR>(text));
            SetErrorInfo(0, error.As<IErrorInfo>(IID_IErrorInfo).Get());
        };
        set_error(older);
        host.answer = static_cast<HRESULT>(0x800A0046);
        host.on_navigating = [&] {
            if (own != nullptr) set_error(own);
        };
        BoxAnswers boxes({IDOK});
        SendMessageW(window, WM_COMMAND, kGotoCatalog, 0);
        host.on_navigating = {};
        host.answer = S_OK;
        return boxes.texts.empty() ? std::wstring(L"(no box)") : boxes.texts[0];
    };
    EXPECT_EQ(box_of(L"von fr\u00FCher", L"vom Host"), L"vom Host");
    EXPECT_EQ(box_of(L"von fr\u00FCher", nullptr), L"Permission denied");
}

TEST_F(BadSurroundings, AHostThatFailsWhenToldOfTheClosingDoesNotKeepTheWindow) {
    const auto client = NewClient();
    ASSERT_EQ(client->Initialize(Parent()), S_OK);
    host.answer = E_FAIL;
    Close(BasketWindows()[0], {IDOK, IDOK, IDOK});
    EXPECT_TRUE(BasketWindows().empty());
    EXPECT_EQ(References(client.Get()), 1u);
}

}  // namespace
}  // namespace demovex
