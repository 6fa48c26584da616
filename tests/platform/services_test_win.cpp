// Message boxes, sounds and the shell.
#include <gtest/gtest.h>

#include <windows.h>

#include <chrono>
#include <thread>
#include <utility>
#include <vector>

#include "platform/message_box_win.h"
#include "platform/shell_win.h"
#include "platform/sound_win.h"
#include "platform/system_library_win.h"
#include "tests/support/temp_folder.h"
#include "tests/support/wait_until.h"

namespace demovex {
namespace {

// Waits for a message box of this process, notes what it shows and answers it with a button, for
// kEscape by the window's close command, or for kOwnerGoes by ending the window that owns it.
class Answerer {
  public:
    static constexpr int kEscape = -1;
    static constexpr int kOwnerGoes = -2;

    explicit Answerer(int button)
        : thread_([this, button] {
              HWND box = nullptr;
              seen_ = WaitUntil([&] {
                  box = nullptr;
                  EnumWindows(&Find, reinterpret_cast<LPARAM>(&box));
                  // the box is ready when its buttons are
                  return box != nullptr && IsWindowVisible(box) &&
                         GetDlgItem(box, 0xFFFF) != nullptr;
              });
              if (!seen_) return;
              wchar_t text[200] = L"";
              GetWindowTextW(box, text, 200);
              title = text;
              GetDlgItemTextW(box, 0xFFFF, text, 200);
              shown = text;
              owner = GetWindow(box, GW_OWNER);
              buttons = 0;
              for (int id : {IDOK, IDCANCEL, IDYES, IDNO}) {
                  if (GetDlgItem(box, id) != nullptr) ++buttons;
              }
              if (button == kOwnerGoes) {
                  PostMessageW(owner, WM_CLOSE, 0, 0);
              } else {
                  PostMessageW(box, button == kEscape ? WM_CLOSE : WM_COMMAND,
                               button == kEscape ? 0 : static_cast<WPARAM>(button), 0);
              }
          }) {}
    ~Answerer() { Join(); }
    void Join() {
        if (thread_.joinable()) thread_.join();
    }
    bool seen() {
        Join();
        return seen_;
    }

    std::wstring title, shown;
    HWND owner = nullptr;
    int buttons = 0;

  private:
    static BOOL CALLBACK Find(HWND window, LPARAM place) {
        DWORD process = 0;
        GetWindowThreadProcessId(window, &process);
        wchar_t name[20] = L"";
        GetClassNameW(window, name, 20);
        if (process != GetCurrentProcessId() || std::wstring_view(name) != L"#32770") return TRUE;
        *reinterpret_cast<HWND*>(place) = window;
        return FALSE;
    }

    bool seen_ = false;
    std::thread thread_;
};

struct MessageBoxes : testing::Test {
    HWND window = CreateWindowExW(0, L"STATIC", L"Warenkorb", WS_OVERLAPPEDWINDOW | WS_VISIBLE, 10,
                                  10, 300, 200, nullptr, nullptr, nullptr, nullptr);
    WinMessageBox box{[this] { return window; }, L"DemoVexClient"};
    ~MessageBoxes() override { DestroyWindow(window); }
};

TEST_F(MessageBoxes, ShowTextAndTitleBeforeTheirOwner) {
    Answerer answerer(IDOK);
    EXPECT_EQ(box.Show(L"'x' ist keine g\u00FCltige Artikelnummer", L"Titel", MessageButtons::kOk,
                       MessageIcon::kExclamation),
              MessageAnswer::kOk);
    ASSERT_TRUE(answerer.seen());
    EXPECT_EQ(answerer.title, L"Titel");
    EXPECT_EQ(answerer.shown, L"'x' ist keine g\u00FCltige Artikelnummer");
    EXPECT_EQ(answerer.owner, window);
    EXPECT_EQ(answerer.buttons, 1);
    EXPECT_TRUE(IsWindowEnabled(window));
}

TEST_F(MessageBoxes, TakeTheApplicationsTitleForAnEmptyOne) {
    Answerer answerer(IDOK);
    box.Show(L"text", L"", MessageButtons::kOk, MessageIcon::kNone);
    ASSERT_TRUE(answerer.seen());
    EXPECT_EQ(answerer.title, L"DemoVexClient");
}

TEST_F(MessageBoxes, TellTheChosenAnswer) {
    const struct {
        int button;
        MessageAnswer answer;
    } cases[] = {{IDYES, MessageAnswer::kYes},
                 {IDNO, MessageAnswer::kNo},
                 {IDCANCEL, MessageAnswer::kCancel},
                 {Answerer::kEscape, MessageAnswer::kCancel}};
    for (const auto& one : cases) {
        Answerer answerer(one.button);
        EXPECT_EQ(box.Show(L"?", L"Frage", MessageButtons::kYesNoCancel, MessageIcon::kCritical),
                  one.answer);
        ASSERT_TRUE(answerer.seen());
        EXPECT_EQ(answerer.buttons, 3);
    }
}

TEST_F(MessageBoxes, AnswerOkWhenABoxWithOnlyThatButtonIsClosed) {
    Answerer answerer(Answerer::kEscape);
    EXPECT_EQ(box.Show(L"text", L"", MessageButtons::kOk, MessageIcon::kNone), MessageAnswer::kOk);
    EXPECT_TRUE(answerer.seen());
}

// The host ends its windows while one of them asks.
TEST_F(MessageBoxes, ABoxThatGoesWithItsOwnerWasClosedWithoutAChoice) {
    for (const MessageButtons buttons : {MessageButtons::kYesNoCancel, MessageButtons::kOk}) {
        const HWND owner =
            CreateWindowExW(0, L"STATIC", L"Warenkorb", WS_OVERLAPPEDWINDOW | WS_VISIBLE, 10, 10,
                            300, 200, nullptr, nullptr, nullptr, nullptr);
        WinMessageBox of_owner([owner] { return IsWindow(owner) ? owner : nullptr; }, L"Titel");
        Answerer answerer(Answerer::kOwnerGoes);
        EXPECT_EQ(of_owner.Show(L"?", L"Frage", buttons, MessageIcon::kNone),
                  buttons == MessageButtons::kOk ? MessageAnswer::kOk : MessageAnswer::kCancel);
        ASSERT_TRUE(answerer.seen());
        EXPECT_EQ(answerer.owner, owner);
        EXPECT_FALSE(IsWindow(owner));
    }
}

TEST_F(MessageBoxes, ShowTextsBehindANulAndWithoutAnOwner) {
    WinMessageBox ownerless({}, L"Titel");
    Answerer answerer(IDOK);
    ownerless.Show(std::wstring_view(L"a\0b", 3), L"", MessageButtons::kOk, MessageIcon::kNone);
    ASSERT_TRUE(answerer.seen());
    EXPECT_EQ(answerer.shown, L"a b");
    EXPECT_EQ(answerer.owner, nullptr);
}

TEST(Sounds, ReturnAtOnceWithoutFileOrDevice) {
    const TempFolder folder;
    WinSound sound;
    const auto begin = std::chrono::steady_clock::now();
    sound.Play(folder / L"missing.wav");
    sound.Play(folder.Put(L"broken.wav", "RIFF"));
    sound.Play(L"");
    sound.Play(std::wstring(50'000, L'x'));
    sound.Beep();
    EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(5));
}

// What reaches the system's player.
std::vector<std::pair<std::wstring, UINT>> g_played;
BOOL WINAPI RecordPlayed(LPCWSTR path, UINT flags) {
    g_played.emplace_back(path, flags);
    return TRUE;
}

TEST(Sounds, ReachThePlayerOnceEachWithTheirPathAndInTheBackground) {
    g_played.clear();
    WinSound sound(&RecordPlayed);
    sound.Play(L"C:\\Programme\\Vexmart H\u00F6fer\\Order.wav");
    sound.Play(L"C:\\Programme\\Vexmart H\u00F6fer\\Order.wav");
    sound.Beep();
    constexpr UINT kAsynchronous = 0x0001;
    const std::vector<std::pair<std::wstring, UINT>> expected(
        2, {L"C:\\Programme\\Vexmart H\u00F6fer\\Order.wav", kAsynchronous});
    EXPECT_EQ(g_played, expected);
}

// A library beside the program is not taken for the system's.
TEST(SystemLibraries, ComeFromTheSystemsFolderAlone) {
    wchar_t program[MAX_PATH];
    GetModuleFileNameW(nullptr, program, MAX_PATH);
    const std::wstring beside =
        std::wstring(program).substr(0, std::wstring_view(program).find_last_of(L'\\')) +
        L"\\vexprobe.dll";
    // a library that is none of the system's, under a name that only the program's folder has
    ASSERT_TRUE(CopyFileW(program, beside.c_str(), FALSE));
    EXPECT_EQ(FindSystemFunction(L"vexprobe.dll", "main"), nullptr);
    EXPECT_EQ(GetModuleHandleW(L"vexprobe.dll"), nullptr);
    EXPECT_TRUE(DeleteFileW(beside.c_str()));

    EXPECT_NE(FindSystemFunction(L"winmm.dll", "sndPlaySoundW"), nullptr);
    EXPECT_NE(FindSystemFunction(L"oleacc.dll", "LresultFromObject"), nullptr);
    EXPECT_NE(FindSystemFunction(L"winspool.drv", "EnumPrintersW"), nullptr);
    EXPECT_EQ(FindSystemFunction(L"winmm.dll", "noSuchFunction"), nullptr);
    EXPECT_EQ(FindSystemFunction(std::wstring(300, L'x').c_str(), "f"), nullptr);
    wchar_t system[MAX_PATH], from[MAX_PATH];
    GetSystemDirectoryW(system, MAX_PATH);
    GetModuleFileNameW(GetModuleHandleW(L"winmm.dll"), from, MAX_PATH);
    EXPECT_EQ(lstrcmpiW(from, (std::wstring(system) + L"\\winmm.dll").c_str()), 0);
}

TEST(Shells, TellFailureByASmallCode) {
    const TempFolder folder;
    WinShell shell({});
    const int missing = shell.Open(folder / L"missing.txt");
    EXPECT_GE(missing, 0);
    EXPECT_LE(missing, 32);
    EXPECT_LE(shell.Open(folder.Put(L"a.kindwithoutprogram", "x")), 32);
}

TEST(Shells, OpenAProgramAndTellSuccess) {
    // the shortest-lived program that every system has
    WinShell shell({});
    EXPECT_GT(shell.Open(L"hostname.exe"), 32);
}

}  // namespace
}  // namespace demovex
