// The component as a host loads it: DemoVexClient.dll from a folder made for one test, with an
// article master of the test's own.
#pragma once

#include <windows.h>

#include <oaidl.h>
#include <objbase.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "demovexclient.h"
#include "platform/com_ptr_win.h"
#include "tests/client/error_object_win.h"
#include "tests/client/fake_host_win.h"
#include "vexinterfaces.h"

namespace demovex {

inline constexpr wchar_t kBasketClass[] = L"DemoVexClient.TestLibForm";
inline constexpr wchar_t kOrder[] = L"http://www.vexmart.example/vex/basket.html?prodno=";
// Published menu ids.
inline constexpr WPARAM kSave = 103;
inline constexpr WPARAM kGotoCatalog = 301;
inline constexpr WPARAM kCopyWholeBasket = 114;

// A record of the article master.
inline std::string Record(std::string_view nr, std::string_view name, std::string_view price) {
    const auto padded = [](std::string_view text, std::size_t width) {
        std::string field(text);
        field.resize(width, ' ');
        return field;
    };
    return padded(nr, 10) + padded(name, 30) + padded(price, 12) + "\r\n";
}

inline std::string SmallMaster() {
    return Record("1000", "Hammer", "159") + Record("2000", "Zange", "1234") +
           Record("3000", "Kaputt", "kein Preis");
}

inline void WriteBytes(const std::wstring& path, std::string_view bytes) {
    const HANDLE file = CreateFileW(path.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS,
                                    FILE_ATTRIBUTE_NORMAL, nullptr);
    ASSERT_NE(file, INVALID_HANDLE_VALUE);
    DWORD written = 0;
    EXPECT_TRUE(WriteFile(file, bytes.data(), static_cast<DWORD>(bytes.size()), &written, nullptr));
    CloseHandle(file);
}

inline std::string ReadBytes(const std::wstring& path) {
    const HANDLE file = CreateFileW(path.c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr,
                                    OPEN_EXISTING, 0, nullptr);
    if (file == INVALID_HANDLE_VALUE) return {};
    std::string bytes(GetFileSize(file, nullptr), '\0');
    DWORD read = 0;
    ReadFile(file, bytes.data(), static_cast<DWORD>(bytes.size()), &read, nullptr);
    CloseHandle(file);
    return bytes;
}

inline BOOL CALLBACK CollectBasketWindow(HWND window, LPARAM to) noexcept {
    std::array<wchar_t, 64> name{};
    GetClassNameW(window, name.data(), static_cast<int>(name.size()));
    if (std::wstring_view(name.data()) == kBasketClass) {
        reinterpret_cast<std::vector<HWND>*>(to)->push_back(window);
    }
    return TRUE;
}

inline std::vector<HWND> BasketWindows() {
    std::vector<HWND> found;
    EnumThreadWindows(GetCurrentThreadId(), CollectBasketWindow, reinterpret_cast<LPARAM>(&found));
    return found;
}

// Handles messages until `done`; false when the deadline passes first.
inline bool PumpUntil(const std::function<bool()>& done, DWORD milliseconds = 10000) {
    const DWORD start = GetTickCount();
    for (;;) {
        MSG message;
        while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) {
            TranslateMessage(&message);
            DispatchMessageW(&message);
        }
        if (done()) return true;
        const DWORD gone = GetTickCount() - start;
        if (gone > milliseconds) return false;
        MsgWaitForMultipleObjects(0, nullptr, FALSE, std::min<DWORD>(20, milliseconds - gone),
                                  QS_ALLINPUT);
    }
}

// Answers the message boxes of this thread that come while it lives, each with the next button.
class BoxAnswers {
  public:
    explicit BoxAnswers(std::vector<int> answers) : answers_(std::move(answers)) {
        current_ = this;
        timer_ = SetTimer(nullptr, 0, 20, Look);
    }
    ~BoxAnswers() {
        KillTimer(nullptr, timer_);
        current_ = nullptr;
    }
    BoxAnswers(const BoxAnswers&) = delete;
    BoxAnswers& operator=(const BoxAnswers&) = delete;

    // The texts of the boxes that came.
    std::vector<std::wstring> texts;

  private:
    static void CALLBACK Look(HWND, UINT, UINT_PTR, DWORD) noexcept {
        EnumThreadWindows(GetCurrentThreadId(), Answer, 0);
    }

    static BOOL CALLBACK Answer(HWND window, LPARAM) noexcept {
        std::array<wchar_t, 1024> text{};
        GetClassNameW(window, text.data(), 16);
        if (!current_ || std::wstring_view(text.data()) != L"#32770" || !IsWindowVisible(window) ||
            window == current_->answered_) {
            return TRUE;
        }
        GetDlgItemTextW(window, 0xFFFF, text.data(), static_cast<int>(text.size()));
        current_->texts.emplace_back(text.data());
        const std::size_t at = current_->texts.size() - 1;
        const int answer = at < current_->answers_.size() ? current_->answers_[at] : IDCANCEL;
        current_->answered_ = window;
        PostMessageW(window, WM_COMMAND, static_cast<WPARAM>(answer), 0);
        return FALSE;
    }

    static inline BoxAnswers* current_ = nullptr;
    std::vector<int> answers_;
    HWND answered_ = nullptr;
    UINT_PTR timer_ = 0;
};

// Where copies of the compiler's shared run-times lie, which the component itself never uses.
std::wstring RunTimeFolder();

class ComponentTest : public testing::Test {
  protected:
    // Loads the library, and at the end sees that it can be unloaded and is.
    ComponentTest();
    ~ComponentTest() override;

    // The component's folder, without a trailing backslash; its name has blanks and an umlaut.
    std::wstring folder;
    HMODULE module = nullptr;
    FakeHost host;

    std::wstring Path(const wchar_t* name) const { return folder + L"\\" + name; }
    ComPtr<IClassFactory> Factory() const;
    ComPtr<IVEXClient> NewClient() const;
    HRESULT CanUnload() const;
    HRESULT CallEntry(const char* name) const;
    HRESULT Install(bool install, const wchar_t* command_line) const;
    IDispatch* Parent() { return static_cast<IDispatch*>(&host); }
    HRESULT Follow(IVEXClient* client, const std::wstring& number) const;
    // The basket of a window as the clipboard gets it.
    std::wstring BasketText(HWND window) const;
    // Closes a window as the user would, answering the questions that come.
    void Close(HWND window, std::vector<int> answers = {});

  private:
    template <typename F>
    F Entry(const char* name) const {
        return reinterpret_cast<F>(reinterpret_cast<void*>(GetProcAddress(module, name)));
    }
};

}  // namespace demovex
