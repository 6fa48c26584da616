// A user before the system's dialogs: a second thread that waits for each dialog that a command
// brings up, notes what it shows, and answers it. Used while the test's own thread runs the
// command.
//
//   DialogUser user(window, {DialogUser::Answer(IDYES), DialogUser::Choose(L"neu.bsk")});
//   SendMessageW(window, WM_COMMAND, ...);
//   EXPECT_EQ(user.Seen(), (Texts{L"Schließen: ... ? (Ja, Nein, Abbrechen)",
//                                 L"Speichern unter: alt.bsk"}));
//
// A dialog of another kind than the next answer is for, and one that nobody expected, is noted with
// "<unexpected> " before it and dismissed, so that no test hangs; an answer whose dialog has not
// come when the command is over is noted as "<nothing came>".
#pragma once

#include <windows.h>

#include <atomic>
#include <functional>
#include <string>
#include <string_view>
#include <thread>
#include <utility>
#include <vector>

#include "tests/support/wait_until.h"

namespace demovex {

class DialogUser {
  public:
    enum class Kind { kFileDialog, kOverwrite, kBox };

    struct Act {
        Kind kind;
        int button;              // 0: `look` itself makes the dialog go
        std::wstring name = {};  // typed into the file dialog's name box when not empty
        std::function<void(HWND)> look = {};  // called with the dialog before it is answered
    };
    // In a file dialog; a full path or a name in the folder that is shown.
    static Act Choose(std::wstring name) { return {Kind::kFileDialog, IDOK, std::move(name)}; }
    static Act Cancel() { return {Kind::kFileDialog, IDCANCEL}; }
    // To the system's question whether the chosen file is to be replaced: IDYES or IDNO.
    static Act Overwrite(int button) { return {Kind::kOverwrite, button}; }
    // To a message box, by the button's id.
    static Act Answer(int button) { return {Kind::kBox, button}; }
    static Act Looking(Act act, std::function<void(HWND)> look) {
        act.look = std::move(look);
        return act;
    }

    // `owner` is the window that dialogs and boxes are to belong to.
    DialogUser(HWND owner, std::vector<Act> acts)
        : owner_(owner), acts_(std::move(acts)), thread_([this] { Live(); }) {}
    ~DialogUser() { Join(); }
    DialogUser(const DialogUser&) = delete;
    DialogUser& operator=(const DialogUser&) = delete;

    // All answers are given.
    bool Finished() const { return finished_; }
    // The command is over: what was seen, in order. File dialogs as "title: name", questions about
    // overwriting as "<overwrite>", boxes as "[icon] title: text (buttons)".
    const std::vector<std::wstring>& Seen() {
        Join();
        return seen_;
    }

    // A dialog of this process that takes input: one that waits for an answer to another one is
    // disabled.
    static HWND Front() {
        HWND found = nullptr;
        EnumWindows(&IsFront, reinterpret_cast<LPARAM>(&found));
        return found;
    }

    // --- parts of the system's file dialog
    static constexpr int kNameBox = 0x47C;
    static constexpr int kFilterBox = 0x470;

    static std::wstring TextOf(HWND window) {
        std::wstring text(2000, L'\0');
        const LRESULT length = SendMessageW(window, WM_GETTEXT, static_cast<WPARAM>(text.size()),
                                            reinterpret_cast<LPARAM>(text.data()));
        text.resize(static_cast<std::size_t>(length));
        return text;
    }

  private:
    void Join() {
        over_ = true;
        if (thread_.joinable()) thread_.join();
    }

    static BOOL CALLBACK IsFront(HWND window, LPARAM place) {
        DWORD process = 0;
        GetWindowThreadProcessId(window, &process);
        wchar_t name[20] = L"";
        GetClassNameW(window, name, 20);
        if (process != GetCurrentProcessId() || std::wstring_view(name) != L"#32770" ||
            !IsWindowVisible(window) || !IsWindowEnabled(window)) {
            return TRUE;
        }
        *reinterpret_cast<HWND*>(place) = window;
        return FALSE;
    }

    Kind KindOf(HWND dialog) const {
        if (GetDlgItem(dialog, kNameBox) != nullptr) return Kind::kFileDialog;
        // the question about overwriting belongs to the dialog that asks it
        return GetWindow(dialog, GW_OWNER) != owner_ && GetDlgItem(dialog, IDYES) != nullptr
                   ? Kind::kOverwrite
                   : Kind::kBox;
    }

    static BOOL CALLBACK FindIcon(HWND child, LPARAM place) {
        wchar_t name[20] = L"";
        GetClassNameW(child, name, 20);
        if (lstrcmpiW(name, L"Static") != 0 ||
            (GetWindowLongW(child, GWL_STYLE) & SS_TYPEMASK) != SS_ICON) {
            return TRUE;
        }
        *reinterpret_cast<HICON*>(place) =
            reinterpret_cast<HICON>(SendMessageW(child, STM_GETICON, 0, 0));
        return FALSE;
    }

    std::wstring Describe(HWND dialog) const {
        const Kind kind = KindOf(dialog);
        if (kind == Kind::kOverwrite) return L"<overwrite>";
        const HWND owner = GetWindow(dialog, GW_OWNER);
        std::wstring text = owner == owner_           ? L""
                            : owner == nullptr        ? L"<no owner> "
                            : IsWindowVisible(owner_) ? L"<another owner> "
                                                      : L"<hidden owner> ";
        if (owner != nullptr && IsWindowEnabled(owner)) text += L"<owner enabled> ";
        if (kind == Kind::kFileDialog) {
            return text + TextOf(dialog) + L": " + TextOf(GetDlgItem(dialog, kNameBox));
        }
        HICON icon = nullptr;
        EnumChildWindows(dialog, &FindIcon, reinterpret_cast<LPARAM>(&icon));
        if (icon != nullptr) {
            text += icon == LoadIconW(nullptr, IDI_HAND)          ? L"[stop] "
                    : icon == LoadIconW(nullptr, IDI_EXCLAMATION) ? L"[exclamation] "
                                                                  : L"[another icon] ";
        }
        text += TextOf(dialog) + L": " + TextOf(GetDlgItem(dialog, 0xFFFF));
        const std::pair<int, const wchar_t*> buttons[] = {
            {IDOK, L"OK"}, {IDYES, L"Ja"}, {IDNO, L"Nein"}, {IDCANCEL, L"Abbrechen"}};
        std::wstring names;
        for (const auto& [id, name] : buttons) {
            if (const HWND button = GetDlgItem(dialog, id); button && IsWindowVisible(button)) {
                names += (names.empty() ? L"" : L", ") + std::wstring(name);
            }
        }
        return text + L" (" + names + L")";
    }

    void Live() {
        for (const Act& act : acts_) {
            if (!Perform(act)) break;
        }
        finished_ = true;
        // what comes now was not foreseen
        WaitUntil(
            [this] {
                if (const HWND dialog = Front()) Dismiss(dialog);
                return over_.load();
            },
            std::chrono::minutes(2));
    }

    // False when the act's dialog does not come.
    bool Perform(const Act& act) {
        HWND dialog = nullptr;
        WaitUntil([&] { return (dialog = Front()) != nullptr || over_; }, std::chrono::seconds(30));
        if (dialog == nullptr) {
            seen_.push_back(L"<nothing came>");
            return false;
        }
        if (KindOf(dialog) != act.kind) {
            Dismiss(dialog);
            return false;
        }
        seen_.push_back(Describe(dialog));
        if (act.look) act.look(dialog);
        if (!act.name.empty()) {
            SendMessageW(GetDlgItem(dialog, kNameBox), WM_SETTEXT, 0,
                         reinterpret_cast<LPARAM>(act.name.c_str()));
        }
        const HWND asker = act.kind == Kind::kOverwrite ? GetWindow(dialog, GW_OWNER) : nullptr;
        Press(dialog, act.button);
        // a name that may be replaced is chosen with that: the file dialog goes, too
        if (act.button == IDYES && asker) WaitUntil([asker] { return !IsWindowVisible(asker); });
        return true;
    }

    void Dismiss(HWND dialog) {
        seen_.push_back(L"<unexpected> " + Describe(dialog));
        const bool yes_or_no =
            GetDlgItem(dialog, IDNO) != nullptr && GetDlgItem(dialog, IDCANCEL) == nullptr;
        const bool ok_alone =
            KindOf(dialog) == Kind::kBox && GetDlgItem(dialog, IDCANCEL) == nullptr;
        Press(dialog, yes_or_no ? IDNO : ok_alone ? IDOK : IDCANCEL);
    }

    // Presses a button, and waits until the dialog has gone or stands behind another one.
    static void Press(HWND dialog, int button) {
        if (button != 0) PostMessageW(dialog, WM_COMMAND, static_cast<WPARAM>(button), 0);
        WaitUntil([dialog] { return !IsWindowVisible(dialog) || !IsWindowEnabled(dialog); });
    }

    HWND owner_;
    std::vector<Act> acts_;
    std::vector<std::wstring> seen_;
    std::atomic<bool> finished_{false};
    std::atomic<bool> over_{false};
    std::thread thread_;  // last: it uses the others
};

}  // namespace demovex
