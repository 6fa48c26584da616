// The whole component in a host's process: lives, references, links, files, closing.
#include "tests/e2e/component_win.h"

namespace demovex {
namespace {

constexpr auto kTypeMismatch = static_cast<HRESULT>(0x800A000D);
constexpr auto kNoMemory = static_cast<HRESULT>(0x800A0007);
constexpr auto kObjectNotSet = static_cast<HRESULT>(0x800A005B);

std::wstring CaptionOf(IVEXClient* client) {
    Bstr text;
    EXPECT_EQ(client->get_Caption(text.Out()), S_OK);
    return std::wstring(TextOf(text.Get()));
}

// The decimal separator of the user who runs the tests.
std::wstring Decimal() {
    std::array<wchar_t, 8> text{};
    GetLocaleInfoW(LOCALE_USER_DEFAULT, LOCALE_SDECIMAL, text.data(),
                   static_cast<int>(text.size()));
    return text.data();
}
std::wstring Thousands() {
    std::array<wchar_t, 8> text{};
    GetLocaleInfoW(LOCALE_USER_DEFAULT, LOCALE_STHOUSAND, text.data(),
                   static_cast<int>(text.size()));
    return text.data();
}

using Component = ComponentTest;

TEST_F(Component, AFollowedLinkBecomesAPricedLineAndARepeatedOneRaisesItsQuantity) {
    const auto client = NewClient();
    ASSERT_EQ(client->Initialize(Parent()), S_OK);
    ASSERT_EQ(BasketWindows().size(), 1u);
    EXPECT_TRUE(IsWindowVisible(BasketWindows()[0]));
    EXPECT_EQ(CaptionOf(client.Get()), L"Vexmart Demo Warenkorb 1.1");
    ASSERT_EQ(Follow(client.Get(), L"1000"), S_OK);
    ASSERT_EQ(Follow(client.Get(), L"1000"), S_OK);
    ASSERT_EQ(Follow(client.Get(), L"2000"), S_OK);
    const std::wstring d = Decimal(), t = Thousands();
    // 159 and 1,234 schillings are 11.55 and 89.68 euros
    EXPECT_EQ(BasketText(BasketWindows()[0]),
              L"ArtNr\tBezeichnung\tMenge\tPreis ATS\tPreis EURO\tGesamt ATS\tGes. EURO\r\n"
              L"1000\tHammer\t2\t159" +
                  d + L"00\t11" + d + L"55\t318" + d + L"00\t23" + d + L"10\r\n2000\tZange\t1\t1" +
                  t + L"234" + d + L"00\t89" + d + L"68\t1" + t + L"234" + d + L"00\t89" + d +
                  L"68\r\nGesamt\t\t\t\t1" + t + L"552" + d + L"00\t112" + d + L"78\r\n");
}

TEST_F(Component, ALinkInCapitalsIsAcceptedAndAForeignOneDoesNothing) {
    const auto client = NewClient();
    ASSERT_EQ(client->Initialize(Parent()), S_OK);
    const std::wstring empty = BasketText(BasketWindows()[0]);
    EXPECT_EQ(
        client->OnSelectURL(Bstr(L"http://www.other.example/vex/basket.html?prodno=1000").Get(),
                            nullptr, nullptr),
        S_OK);
    EXPECT_EQ(BasketText(BasketWindows()[0]), empty);
    EXPECT_EQ(
        client->OnSelectURL(Bstr(L"HTTP://WWW.VEXMART.EXAMPLE/VEX/BASKET.HTML?PRODNO=1000").Get(),
                            nullptr, nullptr),
        S_OK);
    EXPECT_NE(BasketText(BasketWindows()[0]).find(L"Hammer"), std::wstring::npos);
}

TEST_F(Component, ReferencesAreExactThroughALife) {
    auto client = NewClient();
    EXPECT_EQ(References(client.Get()), 1u);
    ASSERT_EQ(client->Initialize(Parent()), S_OK);
    EXPECT_EQ(References(client.Get()), 2u);
    EXPECT_EQ(host.references, 2u);
    for (int i = 0; i < 20; ++i) ASSERT_EQ(Follow(client.Get(), L"1000"), S_OK);
    EXPECT_EQ(References(client.Get()), 2u);
    EXPECT_EQ(host.references, 2u);
    Close(BasketWindows()[0], {IDNO});
    EXPECT_EQ(host.calls, std::vector<std::wstring>{L"ClientClosing"});
    EXPECT_EQ(References(client.Get()), 1u);
    EXPECT_EQ(host.references, 2u);
    EXPECT_EQ(CanUnload(), S_FALSE);
    client = {};
    EXPECT_EQ(host.references, 1u);
    EXPECT_EQ(CanUnload(), S_OK);
}

TEST_F(Component, AWindowLeftOpenLivesOnAfterTheHostsLastRelease) {
    auto client = NewClient();
    ASSERT_EQ(client->Initialize(Parent()), S_OK);
    ASSERT_EQ(Follow(client.Get(), L"1000"), S_OK);
    client = {};
    ASSERT_EQ(BasketWindows().size(), 1u);
    EXPECT_EQ(CanUnload(), S_FALSE);
    EXPECT_NE(BasketText(BasketWindows()[0]).find(L"Hammer"), std::wstring::npos);
    Close(BasketWindows()[0], {IDNO});
    EXPECT_EQ(host.calls, std::vector<std::wstring>{L"ClientClosing"});
    EXPECT_EQ(host.references, 1u);
    EXPECT_EQ(CanUnload(), S_OK);
}

TEST_F(Component, TheHostMayReleaseItsClientInsideClientClosing) {
    auto client = NewClient();
    ASSERT_EQ(client->Initialize(Parent()), S_OK);
    host.on_closing = [&](IDispatch*) { client = {}; };
    Close(BasketWindows()[0]);
    EXPECT_TRUE(BasketWindows().empty());
    EXPECT_FALSE(client);
    EXPECT_EQ(host.references, 1u);
}

TEST_F(Component, ClosingCanBeCancelledAndThenTellsTheHostNothing) {
    const auto client = NewClient();
    ASSERT_EQ(client->Initialize(Parent()), S_OK);
    ASSERT_EQ(Follow(client.Get(), L"1000"), S_OK);
    {
        BoxAnswers boxes({IDCANCEL});
        SendMessageW(BasketWindows()[0], WM_CLOSE, 0, 0);
        ASSERT_EQ(boxes.texts.size(), 1u);
        EXPECT_EQ(boxes.texts[0],
                  L"M\u00F6chten Sie die \u00C4nderungen im aktuellen Warenkorb speichern ?");
    }
    EXPECT_EQ(BasketWindows().size(), 1u);
    EXPECT_TRUE(host.calls.empty());
    EXPECT_EQ(References(client.Get()), 2u);
}

TEST_F(Component, AfterTheWindowWasClosedOnlyTheCaptionAnswers) {
    const auto client = NewClient();
    ASSERT_EQ(client->Initialize(Parent()), S_OK);
    WriteBytes(Path(L"a.bsk"), "DemoVexClient.Client\r\n");
    ASSERT_EQ(client->OpenFile(Bstr(Path(L"a.bsk")).Get()), S_OK);
    const std::wstring caption = CaptionOf(client.Get());
    EXPECT_NE(caption.find(L"a.bsk"), std::wstring::npos);
    Close(BasketWindows()[0]);
    ASSERT_TRUE(BasketWindows().empty());
    EXPECT_EQ(CaptionOf(client.Get()), caption);
    EXPECT_EQ(Follow(client.Get(), L"1000"), kObjectNotSet);
    EXPECT_TRUE(ErrorObject().present);
    EXPECT_EQ(client->OpenFile(Bstr(Path(L"a.bsk")).Get()), kObjectNotSet);
    // and a later Initialize makes a new window
    ASSERT_EQ(client->Initialize(Parent()), S_OK);
    EXPECT_EQ(Follow(client.Get(), L"1000"), S_OK);
}

TEST_F(Component, ASecondInitializeMakesASecondWindowAndTheFirstStaysUsable) {
    const auto client = NewClient();
    ASSERT_EQ(client->Initialize(Parent()), S_OK);
    ASSERT_EQ(Follow(client.Get(), L"1000"), S_OK);
    const HWND first = BasketWindows()[0];
    ASSERT_EQ(client->Initialize(Parent()), S_OK);
    ASSERT_EQ(BasketWindows().size(), 2u);
    EXPECT_EQ(References(client.Get()), 3u);
    ASSERT_EQ(Follow(client.Get(), L"2000"), S_OK);
    EXPECT_EQ(BasketText(first).find(L"Zange"), std::wstring::npos);
    EXPECT_NE(BasketText(first).find(L"Hammer"), std::wstring::npos);
    Close(first, {IDNO});
    EXPECT_EQ(host.calls, std::vector<std::wstring>{L"ClientClosing"});
    EXPECT_EQ(References(client.Get()), 2u);
    EXPECT_EQ(Follow(client.Get(), L"2000"), S_OK);
}

TEST_F(Component, TwoClientsDoNotDisturbEachOther) {
    const auto one = NewClient(), two = NewClient();
    ASSERT_EQ(one->Initialize(Parent()), S_OK);
    const HWND first = BasketWindows()[0];
    ASSERT_EQ(two->Initialize(Parent()), S_OK);
    EXPECT_EQ(host.references, 3u);
    ASSERT_EQ(Follow(one.Get(), L"1000"), S_OK);
    ASSERT_EQ(Follow(two.Get(), L"2000"), S_OK);
    EXPECT_EQ(BasketText(first).find(L"Zange"), std::wstring::npos);
    Close(first, {IDNO});
    EXPECT_EQ(References(one.Get()), 1u);
    EXPECT_EQ(References(two.Get()), 2u);
    EXPECT_EQ(Follow(two.Get(), L"2000"), S_OK);
    EXPECT_EQ(Follow(one.Get(), L"1000"), kObjectNotSet);
}

TEST_F(Component, OpenFileReplacesTheBasketAndNamesTheFile) {
    const auto client = NewClient();
    ASSERT_EQ(client->Initialize(Parent()), S_OK);
    WriteBytes(Path(L"drei.bsk"), "DemoVexClient.Client\r\n1000\tx\t3\r\n");
    ASSERT_EQ(client->OpenFile(Bstr(Path(L"drei.bsk")).Get()), S_OK);
    EXPECT_NE(BasketText(BasketWindows()[0]).find(L"1000\tHammer\t3\t"), std::wstring::npos);
    EXPECT_NE(CaptionOf(client.Get()).find(L"drei.bsk"), std::wstring::npos);
}

TEST_F(Component, AMissingBasketFileIsReportedAndTheBasketStaysUsable) {
    const auto client = NewClient();
    ASSERT_EQ(client->Initialize(Parent()), S_OK);
    ASSERT_EQ(Follow(client.Get(), L"1000"), S_OK);
    EXPECT_TRUE(FAILED(client->OpenFile(Bstr(Path(L"fehlt.bsk")).Get())));
    const ErrorObject error;
    EXPECT_TRUE(error.present);
    EXPECT_FALSE(error.source.empty());
    EXPECT_FALSE(error.description.empty());
    EXPECT_TRUE(FAILED(client->OpenFile(nullptr)));
    EXPECT_EQ(Follow(client.Get(), L"1000"), S_OK);
}

// --- what a host can do wrong

TEST_F(Component, ANullOrForeignParentIsATypeMismatchWithoutAWindow) {
    const auto client = NewClient();
    EXPECT_EQ(client->Initialize(nullptr), kTypeMismatch);
    EXPECT_EQ(ErrorObject().description, L"Type mismatch");
    FakeHost foreign;
    foreign.offers_host = false;
    EXPECT_EQ(client->Initialize(static_cast<IDispatch*>(&foreign)), kTypeMismatch);
    EXPECT_EQ(foreign.references, 1u);
    EXPECT_TRUE(BasketWindows().empty());
    EXPECT_EQ(client->Initialize(Parent()), S_OK);
}

TEST_F(Component, NullStringsAreEmptyOnes) {
    const auto client = NewClient();
    ASSERT_EQ(client->Initialize(Parent()), S_OK);
    EXPECT_EQ(client->OnSelectURL(nullptr, nullptr, nullptr), S_OK);
    EXPECT_EQ(client->OnSelectURL(Bstr(std::wstring(kOrder) + L"1000").Get(), nullptr, nullptr),
              S_OK);
    EXPECT_NE(BasketText(BasketWindows()[0]).find(L"Hammer"), std::wstring::npos);
}

TEST_F(Component, AnOrderLinkWithoutANumberAddsAnEmptyRow) {
    const auto client = NewClient();
    ASSERT_EQ(client->Initialize(Parent()), S_OK);
    EXPECT_EQ(Follow(client.Get(), L""), S_OK);
    EXPECT_EQ(Follow(client.Get(), L""), S_OK);
    const std::wstring text = BasketText(BasketWindows()[0]);
    EXPECT_EQ(std::count(text.begin(), text.end(), L'\n'), 4);
}

TEST_F(Component, AnUnknownNumberAddsItsRowAndIsATypeMismatch) {
    const auto client = NewClient();
    ASSERT_EQ(client->Initialize(Parent()), S_OK);
    EXPECT_EQ(Follow(client.Get(), L"9999"), kTypeMismatch);
    const ErrorObject error;
    EXPECT_EQ(error.source, L"DemoVexClient");
    EXPECT_EQ(error.description, L"Type mismatch");
    EXPECT_NE(BasketText(BasketWindows()[0]).find(L"9999"), std::wstring::npos);
}

TEST_F(Component, ALinkOfAHundredThousandCharactersHarmsNothing) {
    const auto client = NewClient();
    ASSERT_EQ(client->Initialize(Parent()), S_OK);
    const std::wstring number(100'000 - std::wcslen(kOrder), L'7');
    EXPECT_EQ(Follow(client.Get(), number), kTypeMismatch);
    EXPECT_EQ(client->OnSelectURL(Bstr(std::wstring(100'000, L'x')).Get(), nullptr, nullptr), S_OK);
    EXPECT_NE(BasketText(BasketWindows()[0]).find(number), std::wstring::npos);
}

// A hundred megabytes each, in a process that has two gigabytes: an order is taken or refused as a
// whole, and the next one is taken.
TEST_F(Component, HostStringsOfFiftyMillionCharactersHarmNothing) {
    const auto client = NewClient();
    ASSERT_EQ(client->Initialize(Parent()), S_OK);
    constexpr std::size_t kMany = 50'000'000;
    {
        const Bstr foreign(std::wstring(kMany, L'x'));
        EXPECT_EQ(client->OnSelectURL(foreign.Get(), nullptr, nullptr), S_OK);
        const HRESULT opened = client->OpenFile(foreign.Get());
        EXPECT_TRUE(FAILED(opened)) << std::hex << opened;
    }
    {
        const Bstr order(kOrder + std::wstring(kMany, L'7'));
        const HRESULT followed = client->OnSelectURL(order.Get(), nullptr, nullptr);
        EXPECT_TRUE(followed == kTypeMismatch || followed == kNoMemory) << std::hex << followed;
    }
    WriteBytes(Path(L"leer.bsk"), "");
    ASSERT_EQ(client->OpenFile(Bstr(Path(L"leer.bsk")).Get()), S_OK);
    EXPECT_EQ(Follow(client.Get(), L"1000"), S_OK);
    EXPECT_EQ(Follow(client.Get(), L"1000"), S_OK);
    EXPECT_NE(BasketText(BasketWindows()[0]).find(L"\r\n1000\tHammer\t2\t"), std::wstring::npos);
}

TEST_F(Component, APriceThatIsNoNumberIsATypeMismatch) {
    const auto client = NewClient();
    ASSERT_EQ(client->Initialize(Parent()), S_OK);
    EXPECT_EQ(Follow(client.Get(), L"3000"), kTypeMismatch);
    EXPECT_TRUE(ErrorObject().present);
    EXPECT_NE(BasketText(BasketWindows()[0]).find(L"3000\tKaputt"), std::wstring::npos);
}

// The system plays on a thread of its own, which must not lose its code with the component's.
TEST_F(Component, TheOrderSoundKeepsItsPlayerWhenTheComponentIsUnloaded) {
    {
        const auto client = NewClient();
        ASSERT_EQ(client->Initialize(Parent()), S_OK);
        ASSERT_EQ(Follow(client.Get(), L"1000"), S_OK);
        Close(BasketWindows().at(0), {IDNO});
    }
    ASSERT_EQ(CanUnload(), S_OK);
    FreeLibrary(module);
    EXPECT_EQ(GetModuleHandleW(L"DemoVexClient.dll"), nullptr);
    EXPECT_NE(GetModuleHandleW(L"winmm.dll"), nullptr);
    module = LoadLibraryW(Path(L"DemoVexClient.dll").c_str());  // the fixture lets go of it
}

TEST_F(Component, EveryMethodRefusesAMissingPlaceForItsResult) {
    const auto client = NewClient();
    EXPECT_EQ(client->get_Caption(nullptr), E_POINTER);
    EXPECT_EQ(client->get_Description(nullptr), E_POINTER);
    EXPECT_EQ(client->get_Producer(nullptr), E_POINTER);
    EXPECT_EQ(client->EnumURLPrefixes(VARIANT_FALSE, nullptr), E_POINTER);
}

}  // namespace
}  // namespace demovex
