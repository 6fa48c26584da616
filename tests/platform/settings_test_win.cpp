#include "platform/settings_win.h"

#include <gtest/gtest.h>

#include <windows.h>

#include "tests/support/raised.h"

namespace demovex {
namespace {

const wchar_t kRoot[] = L"Software\\VB and VBA Program Settings\\DemoVexClient";

struct RegistrySettings : testing::Test {
    RegistrySettings() { Clear(); }
    ~RegistrySettings() override { Clear(); }
    static void Clear() {
        for (const wchar_t* section : {L"\\View", L"\\LRU", L""}) {
            RegDeleteKeyW(HKEY_CURRENT_USER, (std::wstring(kRoot) + section).c_str());
        }
    }
    // Stores a value as another program might.
    static void Put(const wchar_t* name, DWORD type, const void* data, DWORD size) {
        HKEY key = nullptr;
        ASSERT_EQ(RegCreateKeyExW(HKEY_CURRENT_USER, (std::wstring(kRoot) + L"\\View").c_str(), 0,
                                  nullptr, 0, KEY_SET_VALUE, nullptr, &key, nullptr),
                  ERROR_SUCCESS);
        EXPECT_EQ(RegSetValueExW(key, name, 0, type, static_cast<const BYTE*>(data), size),
                  ERROR_SUCCESS);
        RegCloseKey(key);
    }

    WinSettings settings;
};

TEST_F(RegistrySettings, GiveTheFallbackWhereNothingIsStored) {
    EXPECT_EQ(settings.Get(L"View", L"Toolbar", L"-1"), L"-1");
    settings.Set(L"View", L"Statusbar", L"0");
    EXPECT_EQ(settings.Get(L"View", L"Toolbar", L"-1"), L"-1");
    EXPECT_EQ(settings.Get(L"LRU", L"Statusbar", L""), L"");
}

TEST_F(RegistrySettings, KeepStringValuesWhereThePlatformKeepsThem) {
    settings.Set(L"View", L"Toolbar", L"0");
    settings.Set(L"LRU", L"File1", L"C:\\\u00DCber \u20AC\\a.bsk");
    EXPECT_EQ(settings.Get(L"View", L"Toolbar", L"-1"), L"0");
    EXPECT_EQ(WinSettings().Get(L"LRU", L"File1", L""), L"C:\\\u00DCber \u20AC\\a.bsk");
    wchar_t value[40];
    DWORD type = 0, size = sizeof value;
    HKEY key = nullptr;
    ASSERT_EQ(RegOpenKeyExW(HKEY_CURRENT_USER, (std::wstring(kRoot) + L"\\View").c_str(), 0,
                            KEY_QUERY_VALUE, &key),
              ERROR_SUCCESS);
    EXPECT_EQ(
        RegQueryValueExW(key, L"Toolbar", nullptr, &type, reinterpret_cast<BYTE*>(value), &size),
        ERROR_SUCCESS);
    RegCloseKey(key);
    EXPECT_EQ(type, static_cast<DWORD>(REG_SZ));
    EXPECT_EQ(size, 2 * sizeof(wchar_t));
    EXPECT_STREQ(value, L"0");
}

TEST_F(RegistrySettings, KeepEmptyAndLongValues) {
    settings.Set(L"View", L"a", L"");
    EXPECT_EQ(settings.Get(L"View", L"a", L"fallback"), L"");
    const std::wstring value(20'000, L'x');
    settings.Set(L"View", L"a", value);
    EXPECT_EQ(settings.Get(L"View", L"a", L""), value);
    settings.Set(L"View", L"a", std::wstring(128, L'y'));
    EXPECT_EQ(settings.Get(L"View", L"a", L""), std::wstring(128, L'y'));
}

TEST_F(RegistrySettings, IgnoreValuesThatAreNoStrings) {
    const DWORD number = 7;
    Put(L"n", REG_DWORD, &number, sizeof number);
    Put(L"b", REG_BINARY, "abcdef", 6);
    EXPECT_EQ(settings.Get(L"View", L"n", L"fallback"), L"fallback");
    EXPECT_EQ(settings.Get(L"View", L"b", L"fallback"), L"fallback");
    settings.Set(L"View", L"n", L"8");
    EXPECT_EQ(settings.Get(L"View", L"n", L"fallback"), L"8");
}

TEST_F(RegistrySettings, ReadStringsWithoutATerminatorAndOfOddLength) {
    Put(L"s", REG_SZ, L"abc", 6);
    EXPECT_EQ(settings.Get(L"View", L"s", L""), L"abc");
    Put(L"s", REG_SZ, L"abc", 5);
    EXPECT_EQ(settings.Get(L"View", L"s", L""), L"ab");
    Put(L"s", REG_SZ, L"", 0);
    EXPECT_EQ(settings.Get(L"View", L"s", L"fallback"), L"");
}

TEST_F(RegistrySettings, RaiseInvalidCallWhereTheStoreRefuses) {
    // a key that only lives while the machine runs takes no lasting keys below it
    HKEY key = nullptr;
    ASSERT_EQ(RegCreateKeyExW(HKEY_CURRENT_USER, L"Software\\DemoVexRefusing", 0, nullptr,
                              REG_OPTION_VOLATILE, KEY_ALL_ACCESS, nullptr, &key, nullptr),
              ERROR_SUCCESS);
    WinSettings refused(L"Software\\DemoVexRefusing");
    EXPECT_EQ(RaisedBy([&] { refused.Set(L"View", L"a", L"1"); }), 5);
    EXPECT_EQ(refused.Get(L"View", L"a", L"fallback"), L"fallback");
    RegCloseKey(key);
    RegDeleteKeyW(HKEY_CURRENT_USER, L"Software\\DemoVexRefusing");
    // names that the registry does not take
    WinSettings long_name(L"Software\\" + std::wstring(300, L'x'));
    EXPECT_EQ(RaisedBy([&] { long_name.Set(L"View", L"a", L"1"); }), 5);
    EXPECT_EQ(long_name.Get(L"View", L"a", L"fallback"), L"fallback");
    EXPECT_EQ(RaisedBy([&] { settings.Set(L"View", std::wstring(20'000, L'x'), L"1"); }), 5);
}

}  // namespace
}  // namespace demovex
