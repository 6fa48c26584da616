#include "tests/e2e/component_win.h"

#include <ole2.h>

namespace demovex {

namespace {

// A path of the building machine as Windows programs see it.
std::wstring WindowsPath(const char* path) {
    std::wstring wide(path, path + std::char_traits<char>::length(path));
    for (wchar_t& c : wide) {
        if (c == L'/') c = L'\\';
    }
    return wide[0] == L'\\' ? L"Z:" + wide : wide;
}

void DeleteFolder(const std::wstring& folder) {
    WIN32_FIND_DATAW found;
    const HANDLE search = FindFirstFileW((folder + L"\\*").c_str(), &found);
    if (search != INVALID_HANDLE_VALUE) {
        do {
            if (found.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) continue;
            const std::wstring file = folder + L"\\" + found.cFileName;
            SetFileAttributesW(file.c_str(), FILE_ATTRIBUTE_NORMAL);
            DeleteFileW(file.c_str());
        } while (FindNextFileW(search, &found));
        FindClose(search);
    }
    RemoveDirectoryW(folder.c_str());
}

}  // namespace

std::wstring RunTimeFolder() {
    return WindowsPath(DEMOVEX_BUILD_DIR) + L"\\run_times";
}

ComponentTest::ComponentTest() {
    EXPECT_EQ(OleInitialize(nullptr), S_OK);
    SetErrorInfo(0, nullptr);
    std::array<wchar_t, MAX_PATH> temp{};
    GetTempPathW(static_cast<DWORD>(temp.size()), temp.data());
    static int number = 0;
    folder = std::wstring(temp.data()) + L"Vexmart H\u00F6fer " +
             std::to_wstring(GetCurrentProcessId()) + L"-" + std::to_wstring(++number);
    EXPECT_TRUE(CreateDirectoryW(folder.c_str(), nullptr));
    const std::wstring bin = WindowsPath(DEMOVEX_BUILD_DIR) + L"\\bin\\";
    for (const wchar_t* file : {L"DemoVexClient.dll", L"DemoVexClient.X.manifest"}) {
        EXPECT_TRUE(CopyFileW((bin + file).c_str(), Path(file).c_str(), FALSE));
    }
    WriteBytes(Path(L"artikel.db"), SmallMaster());
    module = LoadLibraryW(Path(L"DemoVexClient.dll").c_str());
    EXPECT_NE(module, nullptr);
}

ComponentTest::~ComponentTest() {
    for (HWND window : BasketWindows()) Close(window, {IDNO});
    EXPECT_TRUE(BasketWindows().empty());
    // nothing of the host may be held any more, and nothing may keep the module loaded
    EXPECT_EQ(host.references, 1u);
    EXPECT_EQ(CanUnload(), S_OK);
    FreeLibrary(module);
    EXPECT_EQ(GetModuleHandleW(L"DemoVexClient.dll"), nullptr);
    DeleteFolder(folder);
    OleUninitialize();
}

ComPtr<IClassFactory> ComponentTest::Factory() const {
    using Get = HRESULT(STDMETHODCALLTYPE*)(REFCLSID, REFIID, void**);
    ComPtr<IClassFactory> factory;
    EXPECT_EQ(Entry<Get>("DllGetClassObject")(CLSID_Client, IID_IClassFactory, factory.OutVoid()),
              S_OK);
    return factory;
}

ComPtr<IVEXClient> ComponentTest::NewClient() const {
    ComPtr<IVEXClient> client;
    EXPECT_EQ(Factory()->CreateInstance(nullptr, IID_IVEXClient, client.OutVoid()), S_OK);
    return client;
}

HRESULT ComponentTest::CanUnload() const {
    return CallEntry("DllCanUnloadNow");
}

HRESULT ComponentTest::CallEntry(const char* name) const {
    return Entry<HRESULT(STDMETHODCALLTYPE*)()>(name)();
}

HRESULT ComponentTest::Install(bool install, const wchar_t* command_line) const {
    return Entry<HRESULT(STDMETHODCALLTYPE*)(BOOL, LPCWSTR)>("DllInstall")(install, command_line);
}

HRESULT ComponentTest::Follow(IVEXClient* client, const std::wstring& number) const {
    return client->OnSelectURL(Bstr(kOrder + number).Get(), Bstr(L"vex://seite/1").Get(),
                               Bstr(L"Seite 1").Get());
}

std::wstring ComponentTest::BasketText(HWND window) const {
    SendMessageW(window, WM_COMMAND, kCopyWholeBasket, 0);
    std::wstring text;
    if (!OpenClipboard(nullptr)) return L"(no clipboard)";
    if (const HANDLE data = GetClipboardData(CF_UNICODETEXT)) {
        text = static_cast<const wchar_t*>(GlobalLock(data));
        GlobalUnlock(data);
    }
    CloseClipboard();
    return text;
}

void ComponentTest::Close(HWND window, std::vector<int> answers) {
    const BoxAnswers boxes(std::move(answers));
    SendMessageW(window, WM_CLOSE, 0, 0);
    PumpUntil([] { return true; });
}

}  // namespace demovex
