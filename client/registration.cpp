#include "client/registration.h"

#include <exception>

#include "base/error.h"

namespace demovex {

namespace {

constexpr std::wstring_view kProgId = L"DemoVexClient.Client";
constexpr std::wstring_view kClass = L"{CEEF0286-8A5C-4758-8F46-73D09F214B95}";
constexpr std::wstring_view kInterface = L"{CEEF0285-8A5C-4758-8F46-73D09F214B95}";
constexpr std::wstring_view kLibrary = L"{CEEF0284-8A5C-4758-8F46-73D09F214B95}";
constexpr std::wstring_view kLibraryVersion = L"" DEMOVEX_LIBRARY_VERSION;
constexpr std::wstring_view kLibraryName = L"Vexmart Demo Warenkorb " DEMOVEX_LIBRARY_VERSION;
// The system's proxy for interfaces that a type library describes.
constexpr std::wstring_view kAutomationProxy = L"{00020424-0000-0000-C000-000000000046}";

template <typename... Parts>
std::wstring Join(const Parts&... parts) {
    std::wstring joined;
    (joined.append(parts), ...);
    return joined;
}

// The keys that are ours with all below them.
std::vector<std::wstring> OwnTrees() {
    return {
        std::wstring(kProgId),
        Join(L"CLSID\\", kClass),
        Join(L"Interface\\", kInterface),
        Join(L"TypeLib\\", kLibrary, L"\\", kLibraryVersion),
    };
}

// The keys above ours, from below. The type library's is shared by its versions and the others by
// all the world; they go when nothing is in them, as in a user's place that held nothing before.
std::vector<std::wstring> KeysAbove() {
    return {Join(L"TypeLib\\", kLibrary), L"TypeLib", L"Interface", L"CLSID"};
}

std::wstring LibraryKey() {
    return Join(L"TypeLib\\", kLibrary);
}

}  // namespace

std::vector<RegistryValue> RegistrationValues(std::wstring_view dll) {
    const std::wstring path(dll);
    const std::wstring folder(dll.substr(0, dll.find_last_of(L'\\')));
    const std::wstring class_key = Join(L"CLSID\\", kClass);
    const std::wstring interface_key = Join(L"Interface\\", kInterface);
    const std::wstring library_key = Join(LibraryKey(), L"\\", kLibraryVersion);
    const std::wstring prog_id(kProgId);
    const std::wstring library(kLibrary);
    const std::wstring version(kLibraryVersion);
    return {
        {prog_id, L"", prog_id},
        {Join(kProgId, L"\\CLSID"), L"", std::wstring(kClass)},

        {class_key, L"", prog_id},
        {class_key + L"\\InprocServer32", L"", path},
        {class_key + L"\\InprocServer32", L"ThreadingModel", L"Apartment"},
        {class_key + L"\\ProgID", L"", prog_id},
        {class_key + L"\\Programmable", L"", L""},
        {class_key + L"\\TypeLib", L"", library},
        {class_key + L"\\VERSION", L"", version},

        {library_key, L"", std::wstring(kLibraryName)},
        {library_key + L"\\0\\win32", L"", path},
        {library_key + L"\\FLAGS", L"", L"0"},
        {library_key + L"\\HELPDIR", L"", folder},

        {interface_key, L"", L"_Client"},
        {interface_key + L"\\ProxyStubClsid32", L"", std::wstring(kAutomationProxy)},
        {interface_key + L"\\TypeLib", L"", library},
        {interface_key + L"\\TypeLib", L"Version", version},
    };
}

void RegisterClasses(IRegistryClasses& classes, std::wstring_view dll) {
    try {
        for (const RegistryValue& row : RegistrationValues(dll)) {
            classes.SetString(row.key, row.name, row.value);
        }
    } catch (...) {
        const std::exception_ptr refused = std::current_exception();
        try {
            UnregisterClasses(classes);
        } catch (const Error&) {
            // the refusal that came first says more
        }
        std::rethrow_exception(refused);
    }
}

void UnregisterClasses(IRegistryClasses& classes) {
    std::exception_ptr refused;
    for (const std::wstring& tree : OwnTrees()) {
        try {
            classes.DeleteTree(tree);
        } catch (const Error&) {
            if (!refused) refused = std::current_exception();
        }
    }
    for (const std::wstring& key : KeysAbove()) {
        if (!classes.IsEmptyKey(key)) continue;
        try {
            classes.DeleteTree(key);
        } catch (const Error&) {
            if (!refused) refused = std::current_exception();
        }
    }
    if (refused) std::rethrow_exception(refused);
}

}  // namespace demovex
