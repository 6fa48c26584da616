// The user changes settings of the system while a basket is open in a host.
#include "tests/e2e/component_win.h"

namespace demovex {
namespace {

// The user's separators, other ones for as long as it lives.
class Separators {
  public:
    Separators(const wchar_t* decimal, const wchar_t* thousands) {
        GetLocaleInfoW(LOCALE_USER_DEFAULT, LOCALE_SDECIMAL, decimal_.data(), 8);
        GetLocaleInfoW(LOCALE_USER_DEFAULT, LOCALE_STHOUSAND, thousands_.data(), 8);
        Set(decimal, thousands);
    }
    ~Separators() { Set(decimal_.data(), thousands_.data()); }
    Separators(const Separators&) = delete;
    Separators& operator=(const Separators&) = delete;

  private:
    static void Set(const wchar_t* decimal, const wchar_t* thousands) {
        EXPECT_TRUE(SetLocaleInfoW(LOCALE_USER_DEFAULT, LOCALE_SDECIMAL, decimal));
        EXPECT_TRUE(SetLocaleInfoW(LOCALE_USER_DEFAULT, LOCALE_STHOUSAND, thousands));
    }
    std::array<wchar_t, 8> decimal_{};
    std::array<wchar_t, 8> thousands_{};
};

using Settings = ComponentTest;

TEST_F(Settings, ANewNumberFormatIsWrittenAndReckonedWithAtOnce) {
    const auto client = NewClient();
    ASSERT_EQ(client->Initialize(Parent()), S_OK);
    ASSERT_EQ(Follow(client.Get(), L"2000"), S_OK);
    const HWND window = BasketWindows()[0];
    const std::wstring before = BasketText(window);
    {
        const Separators swiss(L";", L"'");
        SendMessageW(window, WM_SETTINGCHANGE, 0, reinterpret_cast<LPARAM>(L"intl"));
        EXPECT_EQ(BasketText(window),
                  L"ArtNr\tBezeichnung\tMenge\tPreis ATS\tPreis EURO\tGesamt ATS\tGes. EURO\r\n"
                  L"2000\tZange\t1\t1'234;00\t89;68\t1'234;00\t89;68\r\n"
                  L"Gesamt\t\t\t\t1'234;00\t89;68\r\n");
        ASSERT_EQ(Follow(client.Get(), L"1000"), S_OK);
        EXPECT_NE(BasketText(window).find(L"\t1'393;00\t101;23\r\n"), std::wstring::npos)
            << "the sum of both lines";
        ASSERT_EQ(Follow(client.Get(), L"1000"), S_OK);
    }
    SendMessageW(window, WM_SETTINGCHANGE, 0, reinterpret_cast<LPARAM>(L"intl"));
    EXPECT_EQ(BasketText(window).find(L';'), std::wstring::npos);
    EXPECT_EQ(BasketText(window).find(before.substr(0, before.find(L"Gesamt\t"))), 0u);
    Close(window, {IDNO});
}

}  // namespace
}  // namespace demovex
