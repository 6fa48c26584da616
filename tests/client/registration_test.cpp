#include "client/registration.h"

#include <gtest/gtest.h>

#include <map>
#include <set>

#include "tests/support/raised.h"

namespace demovex {
namespace {

// Keys as a map of full paths; `fail_at` refuses the n-th change (1-based).
class FakeClasses final : public IRegistryClasses {
  public:
    using Values = std::map<std::wstring, std::wstring>;

    void SetString(std::wstring_view key, std::wstring_view name,
                   std::wstring_view value) override {
        Change();
        Make(key);
        keys[std::wstring(key)][std::wstring(name)] = value;
    }
    std::wstring GetString(std::wstring_view key, std::wstring_view name) const {
        const auto found = keys.find(std::wstring(key));
        if (found == keys.end()) return {};
        const auto value = found->second.find(std::wstring(name));
        return value == found->second.end() ? std::wstring() : value->second;
    }
    void DeleteTree(std::wstring_view key) override {
        Change();
        const std::wstring below = std::wstring(key) + L"\\";
        std::erase_if(keys, [&](const auto& entry) {
            return entry.first == key || entry.first.starts_with(below);
        });
    }
    bool IsEmptyKey(std::wstring_view key) const override {
        const auto found = keys.find(std::wstring(key));
        if (found == keys.end() || !found->second.empty()) return false;
        const std::wstring below = std::wstring(key) + L"\\";
        for (const auto& [name, values] : keys) {
            if (name.starts_with(below)) return false;
        }
        return true;
    }

    void Make(std::wstring_view key) {
        for (std::size_t at = key.find(L'\\'); at != std::wstring_view::npos;
             at = key.find(L'\\', at + 1)) {
            keys[std::wstring(key.substr(0, at))];
        }
        keys[std::wstring(key)];
    }

    std::map<std::wstring, Values> keys;
    int changes = 0;
    std::set<int> fail_at;

  private:
    void Change() {
        if (fail_at.count(++changes)) RaiseRuntimeError(runtime_error::kPermissionDenied);
    }
};

constexpr wchar_t kDll[] = L"C:\\Programme\\Vexmart\\DemoVexClient.dll";
constexpr wchar_t kClassKey[] = L"CLSID\\{CEEF0286-8A5C-4758-8F46-73D09F214B95}";
constexpr wchar_t kLibraryKey[] = L"TypeLib\\{CEEF0284-8A5C-4758-8F46-73D09F214B95}";
constexpr wchar_t kInterfaceKey[] = L"Interface\\{CEEF0285-8A5C-4758-8F46-73D09F214B95}";

// A place with the keys that are there on every machine.
FakeClasses Fresh() {
    FakeClasses classes;
    for (const wchar_t* key : {L"CLSID\\{1}", L"Interface\\{1}", L"TypeLib\\{1}"})
        classes.Make(key);
    return classes;
}

TEST(Registration, TheProgrammaticIdentifierLeadsToTheClassAndTheClassToTheFile) {
    FakeClasses classes = Fresh();
    RegisterClasses(classes, kDll);
    EXPECT_EQ(classes.GetString(L"DemoVexClient.Client\\CLSID", L""),
              L"{CEEF0286-8A5C-4758-8F46-73D09F214B95}");
    EXPECT_EQ(classes.GetString(std::wstring(kClassKey) + L"\\ProgID", L""),
              L"DemoVexClient.Client");
    const std::wstring server = std::wstring(kClassKey) + L"\\InprocServer32";
    EXPECT_EQ(classes.GetString(server, L""), kDll);
    EXPECT_EQ(classes.GetString(server, L"ThreadingModel"), L"Apartment");
}

TEST(Registration, TheTypeLibraryIsFoundByItsVersion) {
    FakeClasses classes = Fresh();
    RegisterClasses(classes, kDll);
    const std::wstring version = std::wstring(kLibraryKey) + L"\\1.1";
    EXPECT_EQ(classes.GetString(version + L"\\0\\win32", L""), kDll);
    EXPECT_EQ(classes.GetString(version + L"\\HELPDIR", L""), L"C:\\Programme\\Vexmart");
    EXPECT_EQ(classes.GetString(version + L"\\FLAGS", L""), L"0");
    EXPECT_EQ(classes.GetString(std::wstring(kClassKey) + L"\\TypeLib", L""),
              L"{CEEF0284-8A5C-4758-8F46-73D09F214B95}");
    EXPECT_EQ(classes.GetString(std::wstring(kInterfaceKey) + L"\\TypeLib", L"Version"), L"1.1");
}

// The whole of what is written, as hosts and the system look for it.
TEST(Registration, EveryValueIsTheOneThatIsLookedFor) {
    FakeClasses classes;
    RegisterClasses(classes, kDll);
    std::map<std::wstring, FakeClasses::Values> values;
    for (const auto& [key, of_key] : classes.keys) {
        if (!of_key.empty()) values[key] = of_key;
    }
    const std::map<std::wstring, FakeClasses::Values> expected = {
        {L"DemoVexClient.Client", {{L"", L"DemoVexClient.Client"}}},
        {L"DemoVexClient.Client\\CLSID", {{L"", L"{CEEF0286-8A5C-4758-8F46-73D09F214B95}"}}},
        {L"CLSID\\{CEEF0286-8A5C-4758-8F46-73D09F214B95}", {{L"", L"DemoVexClient.Client"}}},
        {L"CLSID\\{CEEF0286-8A5C-4758-8F46-73D09F214B95}\\InprocServer32",
         {{L"", L"C:\\Programme\\Vexmart\\DemoVexClient.dll"}, {L"ThreadingModel", L"Apartment"}}},
        {L"CLSID\\{CEEF0286-8A5C-4758-8F46-73D09F214B95}\\ProgID",
         {{L"", L"DemoVexClient.Client"}}},
        {L"CLSID\\{CEEF0286-8A5C-4758-8F46-73D09F214B95}\\Programmable", {{L"", L""}}},
        {L"CLSID\\{CEEF0286-8A5C-4758-8F46-73D09F214B95}\\TypeLib",
         {{L"", L"{CEEF0284-8A5C-4758-8F46-73D09F214B95}"}}},
        {L"CLSID\\{CEEF0286-8A5C-4758-8F46-73D09F214B95}\\VERSION", {{L"", L"1.1"}}},
        {L"TypeLib\\{CEEF0284-8A5C-4758-8F46-73D09F214B95}\\1.1",
         {{L"", L"Vexmart Demo Warenkorb 1.1"}}},
        {L"TypeLib\\{CEEF0284-8A5C-4758-8F46-73D09F214B95}\\1.1\\0\\win32",
         {{L"", L"C:\\Programme\\Vexmart\\DemoVexClient.dll"}}},
        {L"TypeLib\\{CEEF0284-8A5C-4758-8F46-73D09F214B95}\\1.1\\FLAGS", {{L"", L"0"}}},
        {L"TypeLib\\{CEEF0284-8A5C-4758-8F46-73D09F214B95}\\1.1\\HELPDIR",
         {{L"", L"C:\\Programme\\Vexmart"}}},
        {L"Interface\\{CEEF0285-8A5C-4758-8F46-73D09F214B95}", {{L"", L"_Client"}}},
        {L"Interface\\{CEEF0285-8A5C-4758-8F46-73D09F214B95}\\ProxyStubClsid32",
         {{L"", L"{00020424-0000-0000-C000-000000000046}"}}},
        {L"Interface\\{CEEF0285-8A5C-4758-8F46-73D09F214B95}\\TypeLib",
         {{L"", L"{CEEF0284-8A5C-4758-8F46-73D09F214B95}"}, {L"Version", L"1.1"}}},
    };
    EXPECT_EQ(values, expected);
}

TEST(Registration, UnregisteringLeavesTheRegistryAsItWas) {
    FakeClasses classes = Fresh();
    const auto before = classes.keys;
    RegisterClasses(classes, kDll);
    EXPECT_NE(classes.keys, before);
    UnregisterClasses(classes);
    EXPECT_EQ(classes.keys, before);
}

TEST(Registration, APlaceThatHeldNothingHoldsNothingAfterwards) {
    FakeClasses classes;
    RegisterClasses(classes, kDll);
    UnregisterClasses(classes);
    EXPECT_TRUE(classes.keys.empty());
}

TEST(Registration, UnregisteringWhatIsNotRegisteredIsNoError) {
    FakeClasses classes = Fresh();
    const auto before = classes.keys;
    UnregisterClasses(classes);
    EXPECT_EQ(classes.keys, before);
}

TEST(Registration, RegisteringTwiceIsAsGoodAsOnce) {
    FakeClasses classes = Fresh();
    RegisterClasses(classes, kDll);
    const auto once = classes.keys;
    RegisterClasses(classes, kDll);
    EXPECT_EQ(classes.keys, once);
}

TEST(Registration, AnotherVersionOfTheLibraryStays) {
    FakeClasses classes = Fresh();
    const std::wstring other = std::wstring(kLibraryKey) + L"\\2.0";
    classes.Make(other);
    RegisterClasses(classes, kDll);
    UnregisterClasses(classes);
    EXPECT_TRUE(classes.keys.count(other));
    EXPECT_FALSE(classes.keys.count(std::wstring(kLibraryKey) + L"\\1.1"));
}

TEST(Registration, ARefusalAtAnyValueLeavesNothingBehind) {
    const int values = static_cast<int>(RegistrationValues(kDll).size());
    for (int at = 1; at <= values; ++at) {
        FakeClasses classes = Fresh();
        const auto before = classes.keys;
        classes.fail_at = {at};
        EXPECT_EQ(RaisedBy([&] { RegisterClasses(classes, kDll); }), 70) << "value " << at;
        EXPECT_EQ(classes.keys, before) << "value " << at;
    }
}

TEST(Registration, UnregisteringGoesOnAfterARefusalAndReportsIt) {
    FakeClasses classes = Fresh();
    RegisterClasses(classes, kDll);
    classes.changes = 0;
    classes.fail_at = {1};
    EXPECT_EQ(RaisedBy([&] { UnregisterClasses(classes); }), 70);
    EXPECT_TRUE(classes.keys.count(L"DemoVexClient.Client"));
    EXPECT_FALSE(classes.keys.count(kClassKey));
    EXPECT_FALSE(classes.keys.count(kInterfaceKey));
    EXPECT_FALSE(classes.keys.count(kLibraryKey));
}

TEST(Registration, NothingOfTheHostsIsTouched) {
    for (const RegistryValue& row : RegistrationValues(kDll)) {
        EXPECT_EQ(row.key.find(L"7BF72F3"), std::wstring::npos) << "the host's own identifiers";
        EXPECT_EQ(row.value.find(L"7BF72F3"), std::wstring::npos);
    }
}

}  // namespace
}  // namespace demovex
