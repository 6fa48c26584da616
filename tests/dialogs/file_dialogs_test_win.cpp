// The system's file dialogs, driven by a second thread the way a user drives them.
#include "platform/file_dialogs_win.h"

#include <gtest/gtest.h>

// clang-format off
#include <windows.h>
#include <commdlg.h>
// clang-format on
#undef GetOpenFileName
#undef GetSaveFileName

#include <functional>
#include <string>
#include <thread>
#include <vector>

#include "dialogs/common_dialogs.h"
#include "tests/support/import_table_win.h"
#include "tests/support/raised.h"
#include "tests/support/temp_folder.h"
#include "tests/support/wait_until.h"

namespace demovex {
namespace {

constexpr int kNameBox = 0x47C;
constexpr int kFilterBox = 0x470;
constexpr int kHelpButton = 0x40E;

std::wstring TextOf(HWND window) {
    wchar_t text[1000] = L"";
    if (window != nullptr) SendMessageW(window, WM_GETTEXT, 1000, reinterpret_cast<LPARAM>(text));
    return text;
}

// Visible dialogs of this process; `question` tells the overwrite question from the file dialog.
struct Search {
    bool question;
    HWND found;
};
BOOL CALLBACK FindDialog(HWND window, LPARAM place) {
    auto& search = *reinterpret_cast<Search*>(place);
    DWORD process = 0;
    GetWindowThreadProcessId(window, &process);
    wchar_t name[20] = L"";
    GetClassNameW(window, name, 20);
    if (process != GetCurrentProcessId() || std::wstring_view(name) != L"#32770" ||
        !IsWindowVisible(window)) {
        return TRUE;
    }
    const bool is_question = GetDlgItem(window, IDYES) != nullptr;
    if (is_question != search.question || (!is_question && !GetDlgItem(window, kNameBox))) {
        return TRUE;
    }
    search.found = window;
    return FALSE;
}
HWND Dialog(bool question = false) {
    Search search{question, nullptr};
    EnumWindows(&FindDialog, reinterpret_cast<LPARAM>(&search));
    return search.found;
}

// A user: waits for the file dialog, does something with it, and is joined before the test looks.
class User {
  public:
    explicit User(std::function<void(HWND)> act)
        : thread_([this, act = std::move(act)] {
              seen_ = WaitUntil([this] { return (dialog_ = Dialog()) != nullptr; });
              if (seen_) act(dialog_);
          }) {}
    ~User() { Join(); }
    bool seen() {
        Join();
        return seen_;
    }

  private:
    void Join() {
        if (thread_.joinable()) thread_.join();
    }
    HWND dialog_ = nullptr;
    bool seen_ = false;
    std::thread thread_;
};

void Press(HWND dialog, int button) {
    PostMessageW(dialog, WM_COMMAND, static_cast<WPARAM>(button), 0);
}
void TypeName(HWND dialog, const std::wstring& name) {
    SendMessageW(GetDlgItem(dialog, kNameBox), WM_SETTEXT, 0,
                 reinterpret_cast<LPARAM>(name.c_str()));
}

// A guest in the system's dialog, which hands the caller's data to it: the topic of help there.
std::vector<LPARAM> g_topics;
UINT_PTR CALLBACK HearTopic(HWND, UINT message, WPARAM, LPARAM lparam) {
    if (message == WM_INITDIALOG) {
        g_topics.push_back(reinterpret_cast<const OPENFILENAMEW*>(lparam)->lCustData);
    }
    return 0;
}
using ShowDialog = BOOL APIENTRY(OPENFILENAMEW*);
ShowDialog* g_open = nullptr;
ShowDialog* g_save = nullptr;
BOOL WithGuest(OPENFILENAMEW* dialog, ShowDialog* show) {
    OPENFILENAMEW heard = *dialog;
    heard.Flags |= OFN_ENABLEHOOK;
    heard.lpfnHook = &HearTopic;
    return show(&heard);
}
BOOL APIENTRY OpenWithGuest(OPENFILENAMEW* dialog) {
    return WithGuest(dialog, g_open);
}
BOOL APIENTRY SaveWithGuest(OPENFILENAMEW* dialog) {
    return WithGuest(dialog, g_save);
}

struct FileDialogsTest : testing::Test {
    HWND window = CreateWindowExW(0, L"STATIC", L"Warenkorb", WS_OVERLAPPEDWINDOW | WS_VISIBLE, 10,
                                  10, 300, 200, nullptr, nullptr, nullptr, nullptr);
    WinFileDialogs system{[this] { return window; }};
    CommonDialogs dialogs{system};
    TempFolder folder;
    std::wstring folder_path = folder / L"";

    FileDialogsTest() {
        if (!folder_path.empty() && folder_path.back() == L'\\') folder_path.pop_back();
    }
    ~FileDialogsTest() override { DestroyWindow(window); }
};

TEST_F(FileDialogsTest, OpenShowsItsTitleAndFiltersBeforeItsOwner) {
    std::wstring title, filters;
    HWND owner = nullptr;
    bool owner_enabled = true;
    User user([&](HWND dialog) {
        title = TextOf(dialog);
        const HWND box = GetDlgItem(dialog, kFilterBox);
        const auto count = SendMessageW(box, CB_GETCOUNT, 0, 0);
        for (LRESULT i = 0; i < count; ++i) {
            wchar_t text[200] = L"";
            SendMessageW(box, CB_GETLBTEXT, static_cast<WPARAM>(i), reinterpret_cast<LPARAM>(text));
            filters += std::wstring(text) + L";";
        }
        owner = GetWindow(dialog, GW_OWNER);
        owner_enabled = IsWindowEnabled(owner) != FALSE;
        Press(dialog, IDCANCEL);
    });
    EXPECT_EQ(dialogs.GetOpenFileName({.InitDir = folder_path,
                                       .Title = L"Warenkorb öffnen",
                                       .sExtensions = L"Warenkorb Dateien (*.bsk)|*.bsk|Alle "
                                                      L"Dateien (*.*)|*.*"}),
              L"");
    ASSERT_TRUE(user.seen());
    EXPECT_EQ(title, L"Warenkorb öffnen");
    EXPECT_EQ(filters, L"Warenkorb Dateien (*.bsk);Alle Dateien (*.*);");
    EXPECT_EQ(owner, window);
    EXPECT_FALSE(owner_enabled);
}

TEST_F(FileDialogsTest, WithoutArgumentsTitleFilterAndHelpButtonAreTheDefaults) {
    std::wstring title, filter;
    bool help = false;
    User user([&](HWND dialog) {
        title = TextOf(dialog);
        wchar_t text[200] = L"";
        SendMessageW(GetDlgItem(dialog, kFilterBox), CB_GETLBTEXT, 0,
                     reinterpret_cast<LPARAM>(text));
        filter = text;
        help = IsWindowVisible(GetDlgItem(dialog, kHelpButton)) != FALSE;
        Press(dialog, IDCANCEL);
    });
    EXPECT_EQ(dialogs.GetOpenFileName(), L"");
    ASSERT_TRUE(user.seen());
    EXPECT_EQ(title, L"Wählen Sie eine Datei");
    EXPECT_EQ(filter, L"Alle Dateien (*.*)");
    EXPECT_TRUE(help);
}

TEST_F(FileDialogsTest, AHiddenHelpButtonIsHiddenAndAShownOneIsHarmless) {
    bool help = true;
    {
        User user([&](HWND dialog) {
            help = IsWindowVisible(GetDlgItem(dialog, kHelpButton)) != FALSE;
            Press(dialog, IDCANCEL);
        });
        dialogs.GetOpenFileName({.bHideHelpButton = true});
        ASSERT_TRUE(user.seen());
    }
    EXPECT_FALSE(help);
    bool still_there = false;
    {
        User user([&](HWND dialog) {
            SendMessageW(dialog, WM_COMMAND, kHelpButton, 0);
            still_there = IsWindow(dialog) != FALSE;
            Press(dialog, IDCANCEL);
        });
        EXPECT_EQ(dialogs.GetOpenFileName(), L"");
        ASSERT_TRUE(user.seen());
    }
    EXPECT_TRUE(still_there);
}

TEST_F(FileDialogsTest, TheSystemsDialogKnowsTheTopicOfHelp) {
    const CaughtImport open("GetOpenFileNameW", &OpenWithGuest, &g_open);
    const CaughtImport save("GetSaveFileNameW", &SaveWithGuest, &g_save);
    ASSERT_TRUE(open.Caught() && save.Caught());
    g_topics.clear();
    for (const std::int32_t topic : {77, 0, -1}) {
        User user([](HWND dialog) { Press(dialog, IDCANCEL); });
        EXPECT_EQ(dialogs.GetOpenFileName({.HelpID = topic}), L"");
        ASSERT_TRUE(user.seen());
    }
    User user([](HWND dialog) { Press(dialog, IDCANCEL); });
    EXPECT_EQ(dialogs.GetSaveFileName({.HelpID = 78}), L"");
    ASSERT_TRUE(user.seen());
    EXPECT_EQ(g_topics, (std::vector<LPARAM>{77, 0, -1, 78}));
}

TEST_F(FileDialogsTest, OpenGivesTheFullPathOfATypedName) {
    const std::wstring path = folder.Put(L"März.bsk", "x");
    User user([&](HWND dialog) {
        TypeName(dialog, L"März.bsk");
        Press(dialog, IDOK);
    });
    bool read_only = true;
    EXPECT_EQ(dialogs.GetOpenFileName({.InitDir = folder_path,
                                       .bHideReadOnly = true,
                                       .bHideHelpButton = true,
                                       .bReadOnly = &read_only}),
              path);
    ASSERT_TRUE(user.seen());
    EXPECT_TRUE(read_only);  // the flag that hid the box is a flag
}

TEST_F(FileDialogsTest, WithoutAnyFlagReadOnlyIsFalse) {
    const std::wstring path = folder.Put(L"a.bsk", "x");
    User user([&](HWND dialog) {
        TypeName(dialog, path);
        Press(dialog, IDOK);
    });
    bool read_only = true;
    EXPECT_EQ(dialogs.GetOpenFileName({.bHideHelpButton = true, .bReadOnly = &read_only}), path);
    ASSERT_TRUE(user.seen());
    EXPECT_FALSE(read_only);
}

TEST_F(FileDialogsTest, AHelpButtonThatNobodyCouldAnswerIsAFlagAllTheSame) {
    const std::wstring path = folder.Put(L"a.bsk", "x");
    WinFileDialogs ownerless{OwnerWindow()};
    User user([&](HWND dialog) {
        TypeName(dialog, path);
        Press(dialog, IDOK);
    });
    bool read_only = false;
    EXPECT_EQ(CommonDialogs(ownerless).GetOpenFileName({.bReadOnly = &read_only}), path);
    ASSERT_TRUE(user.seen());
    EXPECT_TRUE(read_only);
}

TEST_F(FileDialogsTest, TheProgramsCurrentFolderStaysWhereItWas) {
    wchar_t before[MAX_PATH] = L"";
    wchar_t after[MAX_PATH] = L"";
    GetCurrentDirectoryW(MAX_PATH, before);
    const std::wstring path = folder.Put(L"a.bsk", "x");
    for (const int button : {IDOK, IDCANCEL}) {
        User user([&](HWND dialog) {
            TypeName(dialog, path);
            Press(dialog, button);
        });
        dialogs.GetOpenFileName({.InitDir = folder_path});
        ASSERT_TRUE(user.seen());
        GetCurrentDirectoryW(MAX_PATH, after);
        EXPECT_STREQ(before, after);
    }
}

TEST_F(FileDialogsTest, SaveStartsWithTheGivenNameAndGivesTheTypedOne) {
    std::wstring name;
    User user([&](HWND dialog) {
        name = TextOf(GetDlgItem(dialog, kNameBox));
        TypeName(dialog, L"neu.bsk");
        Press(dialog, IDOK);
    });
    EXPECT_EQ(dialogs.GetSaveFileName({.InitDir = folder_path, .InitFileName = L"alt.bsk"}),
              folder / L"neu.bsk");
    ASSERT_TRUE(user.seen());
    EXPECT_EQ(name, L"alt.bsk");
}

TEST_F(FileDialogsTest, SaveAsksBeforeOverwriting) {
    const std::wstring path = folder.Put(L"da.bsk", "x");
    bool asked = false;
    bool back_in_dialog = false;
    User user([&](HWND dialog) {
        TypeName(dialog, path);
        Press(dialog, IDOK);
        HWND question = nullptr;
        asked = WaitUntil([&] { return (question = Dialog(true)) != nullptr; });
        Press(question, IDNO);
        WaitUntil([&] { return !IsWindow(question); });
        back_in_dialog = IsWindow(dialog) != FALSE;
        Press(dialog, IDOK);
        WaitUntil([&] { return (question = Dialog(true)) != nullptr; });
        Press(question, IDYES);
    });
    EXPECT_EQ(dialogs.GetSaveFileName({.InitDir = folder_path}), path);
    ASSERT_TRUE(user.seen());
    EXPECT_TRUE(asked);
    EXPECT_TRUE(back_in_dialog);
    EXPECT_EQ(folder.Get(L"da.bsk"), "x");  // choosing a name writes nothing
}

TEST_F(FileDialogsTest, CancelledSaveGivesTheEmptyText) {
    User user([](HWND dialog) {
        TypeName(dialog, L"irgendwas.bsk");
        Press(dialog, IDCANCEL);
    });
    EXPECT_EQ(dialogs.GetSaveFileName({.InitDir = folder_path}), L"");
    ASSERT_TRUE(user.seen());
    EXPECT_EQ(folder.Count(), 0);
}

TEST_F(FileDialogsTest, SeveralFilesComeAsFolderAndNames) {
    folder.Put(L"a.bsk", "x");
    folder.Put(L"b.bsk", "x");
    User user([](HWND dialog) {
        TypeName(dialog, L"\"a.bsk\" \"b.bsk\"");
        Press(dialog, IDOK);
    });
    const std::wstring chosen =
        dialogs.GetOpenFileName({.InitDir = folder_path, .bMultiSelect = true});
    ASSERT_TRUE(user.seen());
    EXPECT_EQ(chosen, folder_path + L'\0' + L"a.bsk" + L'\0' + L"b.bsk");
}

TEST_F(FileDialogsTest, OneOfSeveralIsASinglePath) {
    const std::wstring path = folder.Put(L"a.bsk", "x");
    User user([](HWND dialog) {
        TypeName(dialog, L"a.bsk");
        Press(dialog, IDOK);
    });
    EXPECT_EQ(dialogs.GetOpenFileName({.InitDir = folder_path, .bMultiSelect = true}), path);
    ASSERT_TRUE(user.seen());
}

TEST_F(FileDialogsTest, NoOwnerAndHugeArgumentsDoNoHarm) {
    WinFileDialogs ownerless{OwnerWindow()};
    FileDialogRequest request;
    request.init_dir = L"Z:\\no\\such\\folder";
    request.file_name = std::wstring(100'000, L'x');
    request.title = std::wstring(5'000, L'T');
    request.filter = L"nur ein Teil";
    request.flags = file_dialog_flags::kShowHelp;
    User user([](HWND dialog) { Press(dialog, IDCANCEL); });
    FileDialogResult result;
    // the system may refuse such a name before it shows anything, or show it: both are fine
    const std::int32_t raised = RaisedBy([&] { result = ownerless.ShowOpen(request); });
    EXPECT_TRUE(raised == 0 || raised == file_dialog_error::kInvalidFileName ||
                raised == file_dialog_error::kBufferTooSmall)
        << raised;
    EXPECT_TRUE(result.cancelled);
    EXPECT_EQ(user.seen(), raised == 0);
}

}  // namespace
}  // namespace demovex
