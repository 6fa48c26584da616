// A basket window on the system's own services: real files in a folder of its own, which is also
// the component's, real dialogs and message boxes, real settings below a registry key of its own.
//
//   RealBasketWindow basket;
//   basket.Link(L"4711");
//   EXPECT_EQ(basket.Choose(Command::mnuDateiSpeichern, {DialogUser::Choose(L"neu.bsk")}),
//             (Texts{L"Speichern unter: "}));
//   EXPECT_EQ(basket.folder.Get(L"neu.bsk"), "...");
#pragma once

#include <windows.h>

#include <shlwapi.h>

#include <string>
#include <vector>

#include "platform/clipboard_win.h"
#include "platform/file_dialogs_win.h"
#include "platform/file_system_tools.h"
#include "platform/files_win.h"
#include "platform/message_box_win.h"
#include "platform/printer_win.h"
#include "platform/settings_win.h"
#include "platform/shell_win.h"
#include "platform/sound_win.h"
#include "tests/support/dialog_user_win.h"
#include "tests/support/temp_folder.h"
#include "tests/support/test_basket_window_win.h"

namespace demovex {

using Texts = std::vector<std::wstring>;

// The services stand before the window that uses them.
struct RealServices {
    static constexpr wchar_t kKey[] = L"Software\\DemoVexTests\\WindowFiles";

    RealServices() {
        ForgetSettings();
        folder.Put(L"artikel.db", ArticleFile(TestArticles()));
    }
    ~RealServices() { ForgetSettings(); }
    RealServices(const RealServices&) = delete;
    RealServices& operator=(const RealServices&) = delete;

    static void ForgetSettings() { SHDeleteKeyW(HKEY_CURRENT_USER, kKey); }
    // The folder's path without a backslash behind it.
    static std::wstring PathOf(const TempFolder& folder) {
        std::wstring path = folder / L"";
        while (path.ends_with(L'\\')) path.pop_back();
        return path;
    }

    TempFolder folder;
    HWND basket_window = nullptr;  // owns boxes and dialogs
    OwnerWindow owner_window = [this] { return IsWindow(basket_window) ? basket_window : nullptr; };
    WinTextService text_service;
    WinFileSystem file_system;
    WinSettings registry{kKey};
    WinClipboard real_clipboard{owner_window};
    WinMessageBox message_boxes{owner_window, L"DemoVexClient"};
    WinSound real_sound;
    WinShell real_shell{owner_window};
    WinPrinter real_printer{owner_window};
    WinFileDialogs real_dialogs{owner_window};
    Services real{text_service, file_system, registry,     real_clipboard, message_boxes,
                  real_sound,   real_shell,  real_printer, real_dialogs,   PathOf(folder)};
};

class RealBasketWindow : public RealServices, public BasketWindowFixture {
  public:
    RealBasketWindow() : BasketWindowFixture(HostLoop::kBare, 0, true, &real) {
        basket_window = Handle();
    }

    // Chooses a menu command as a click on it does, answers what comes up, and tells what that was.
    Texts Choose(Command command, std::vector<DialogUser::Act> acts = {}) {
        DialogUser user(Handle(), std::move(acts));
        SendMessageW(Handle(), WM_COMMAND, static_cast<WPARAM>(command), 0);
        Pump();
        return user.Seen();
    }
    // The same for a key with Ctrl.
    Texts PressCtrl(WORD key, std::vector<DialogUser::Act> acts = {}) {
        DialogUser user(Handle(), std::move(acts));
        PressAtOnce(
            {{WORD{VK_CONTROL}, true}, {key, true}, {key, false}, {WORD{VK_CONTROL}, false}});
        PumpUntil([&] { return user.Finished(); });
        Pump();
        return user.Seen();
    }
    // The cross at the window's corner.
    Texts ClickCross(std::vector<DialogUser::Act> acts = {}) {
        DialogUser user(Handle(), std::move(acts));
        SendMessageW(Handle(), WM_SYSCOMMAND, SC_CLOSE, 0);
        Pump();
        return user.Seen();
    }

    std::wstring Caption() const { return TextOf(Handle()); }
    bool Modified() const { return window->Form()->Modified(); }
    std::vector<std::wstring> Numbers() const {
        std::vector<std::wstring> numbers;
        for (std::int32_t row = 1; row <= Lines(); ++row) {
            numbers.push_back(Cell(row, column::kArtNr));
        }
        return numbers;
    }
    // The recent files as stored, and as the File menu shows them.
    Texts Stored() const {
        Texts paths;
        for (const wchar_t* key : {L"File1", L"File2", L"File3", L"File4"}) {
            paths.push_back(registry.Get(L"LRU", key, L""));
        }
        while (!paths.empty() && paths.back().empty()) paths.pop_back();
        return paths;
    }
    Texts RecentEntries() const {
        Texts entries;
        for (int i = 0; i < 4; ++i) {
            const UINT id = static_cast<UINT>(Command::mnuDateiLRU1) + static_cast<UINT>(i);
            wchar_t entry[1000] = L"";
            if (GetMenuStringW(GetMenu(Handle()), id, entry, 1000, MF_BYCOMMAND) > 0) {
                entries.emplace_back(entry);
            }
        }
        return entries;
    }
    // The entry for a file, whose path may be too long to be shown whole: how long it is depends on
    // where the system keeps temporary files.
    static std::wstring Entry(int number, const std::wstring& path) {
        return L"&" + std::to_wstring(number) + L" " + ShownPath(path, 80);
    }
    // Files in the folder other than the article master.
    int Files() const { return folder.Count() - 1; }
};

// What that window shows and writes.
namespace real_basket {
using User = DialogUser;
inline constexpr wchar_t kTitle[] = L"Vexmart Demo Warenkorb 1.1";
inline const std::wstring kAsks =
    L"Schließen: Möchten Sie die Änderungen im aktuellen Warenkorb speichern ? "
    L"(Ja, Nein, Abbrechen)";
inline const std::string kHeader = "DemoVexClient.Client\r\n";
inline const std::string k4711 = "4711\tEau de Cologne\t1\t100,00\t7,27\tK\tU\t100,00\t7,27\r\n";
inline const std::string k4712 = "4712\tDuftwasser\t1\t100,00\t7,27\tK\tU\t100,00\t7,27\r\n";
// The caption with a file's name.
inline std::wstring Titled(std::wstring_view name) {
    return std::wstring(kTitle) + L" - " + std::wstring(name);
}
}  // namespace real_basket

}  // namespace demovex
