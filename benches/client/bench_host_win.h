// A host for the benches: the component from the build's folder, its windows, and baskets on the
// disk. Whatever fails ends the program.
#pragma once

#include <windows.h>

#include <oaidl.h>
#include <objbase.h>
#include <ole2.h>

#include <array>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

#include "demovexclient.h"
#include "platform/com_ptr_win.h"
#include "tests/client/fake_host_win.h"
#include "vexinterfaces.h"

namespace demovex {

inline void Require(bool good, const char* what) {
    if (good) return;
    std::printf("%s failed\n", what);
    std::exit(1);
}

inline std::wstring BinFolder() {
    std::wstring folder = L"Z:";
    for (const char* c = DEMOVEX_BUILD_DIR; *c; ++c) {
        folder += *c == '/' ? L'\\' : static_cast<wchar_t>(*c);
    }
    return folder + L"\\bin\\";
}

inline BOOL CALLBACK CollectBasket(HWND window, LPARAM found) noexcept {
    std::array<wchar_t, 64> name{};
    GetClassNameW(window, name.data(), static_cast<int>(name.size()));
    if (lstrcmpW(name.data(), L"DemoVexClient.TestLibForm") == 0) {
        *reinterpret_cast<HWND*>(found) = window;
    }
    return TRUE;
}

// The basket window that was opened last.
inline HWND Basket() {
    HWND found = nullptr;
    EnumThreadWindows(GetCurrentThreadId(), CollectBasket, reinterpret_cast<LPARAM>(&found));
    return found;
}

inline void Pump() {
    MSG message;
    while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) {
        TranslateMessage(&message);
        DispatchMessageW(&message);
    }
}

// Lets the loop and the system come to rest.
inline void Rest() {
    for (int i = 0; i < 4; ++i) {
        Pump();
        MsgWaitForMultipleObjects(0, nullptr, FALSE, 10, QS_ALLINPUT);
    }
    Pump();
}

class Host {
  public:
    explicit Host(HMODULE module) {
        using Get = HRESULT(STDMETHODCALLTYPE*)(REFCLSID, REFIID, void**);
        const auto get = reinterpret_cast<Get>(
            reinterpret_cast<void*>(GetProcAddress(module, "DllGetClassObject")));
        Require(get && get(CLSID_Client, IID_IClassFactory, factory_.OutVoid()) == S_OK,
                "DllGetClassObject");
    }

    // A client whose window stands, painted.
    ComPtr<IVEXClient> Open() {
        ComPtr<IVEXClient> client;
        Require(factory_->CreateInstance(nullptr, IID_IVEXClient, client.OutVoid()) == S_OK,
                "CreateInstance");
        Require(client->Initialize(static_cast<IDispatch*>(&host_)) == S_OK, "Initialize");
        RedrawWindow(Basket(), nullptr, nullptr,
                     RDW_ERASENOW | RDW_UPDATENOW | RDW_ALLCHILDREN | RDW_FRAME);
        return client;
    }

    // Closes the window without its question: the basket is emptied from a file first.
    void Close(ComPtr<IVEXClient>& client, const std::wstring& empty_file) {
        Require(client->OpenFile(Bstr(empty_file).Get()) == S_OK, "OpenFile");
        SendMessageW(Basket(), WM_CLOSE, 0, 0);
        client = {};
        Pump();
        Require(Basket() == nullptr, "closing");
    }

  private:
    FakeHost host_;
    ComPtr<IClassFactory> factory_;
};

// A basket file in the user's folder for temporary files; `line` makes each line from its number.
template <class Line>
std::wstring WriteBasket(const wchar_t* name, int lines, Line line) {
    std::array<wchar_t, MAX_PATH> folder{};
    GetTempPathW(static_cast<DWORD>(folder.size()), folder.data());
    std::string text = "DemoVexClient.Client\r\n";
    for (int i = 0; i < lines; ++i) text += line(i);
    const std::wstring path = std::wstring(folder.data()) + name;
    const HANDLE file =
        CreateFileW(path.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, 0, nullptr);
    DWORD written = 0;
    Require(file != INVALID_HANDLE_VALUE &&
                WriteFile(file, text.data(), static_cast<DWORD>(text.size()), &written, nullptr),
            "writing a basket");
    CloseHandle(file);
    return path;
}

// No two lines in a row are merged.
inline std::string ArticleLine(int i) {
    return i % 2 ? "4712\t\t1\r\n" : "4711\t\t1\r\n";
}

// Two links in turns, so that each adds a line: nothing is merged.
class Links {
  public:
    void Follow(IVEXClient* client) {
        const Bstr& link = next_++ % 2 ? two_ : one_;
        Require(client->OnSelectURL(link.Get(), position_.Get(), name_.Get()) == S_OK,
                "OnSelectURL");
    }

  private:
    Bstr one_{L"http://www.vexmart.example/vex/basket.html?prodno=4711"};
    Bstr two_{L"http://www.vexmart.example/vex/basket.html?prodno=4712"};
    Bstr position_{L"http://www.vexmart.example/vex/katalog.html?artno=4711"};
    Bstr name_{L"Werkzeug"};
    unsigned next_ = 0;
};

}  // namespace demovex
