// The commands of the basket window in tables: menu tree, captions, shortcuts, initial states, and
// the toolbar's buttons and pictures. Menu bar, context menu, accelerators and toolbar are built
// from them; what a command does is said in TestLibForm::Run. The enumerators are the control
// names; their values are the menu ids of the window and never change.
#pragma once

#include <cstdint>
#include <span>
#include <string_view>

namespace demovex {

enum class Command : std::uint16_t {
    kNone = 0,
    mnuDatei = 100,
    mnuDateiNeu,
    mnuDateiOeffnen,
    mnuDateiSpeichern,
    mnuDateiSpeichernUnter,
    mnuDel1,
    mnuDateiPreisdateiInstallieren,
    mnuDel12,
    mnuDateiDrucken,
    mnuDel5,
    mnuDateiSendenan,
    mnuDateiSendenanDiskette,
    mnuDateiSendenanRTFDoc,
    mnuDateiSendenanWeb,
    mnuDateiSendenanZwischenablage,
    mnuDelLRUHeader,
    mnuDateiLRU1,
    mnuDateiLRU2,
    mnuDateiLRU3,
    mnuDateiLRU4,
    mnuDel2,
    mnuDateiBeenden,
    mnuEdit = 200,
    mnuEditAusschneiden,
    mnuEditKopieren,
    mnuEditEinfuegen,
    mnuDel3,
    mnuEditNeueZeile,
    mnuEditZeileOberhalbEinfügen,
    mnuEditZeilenLöschen,
    mnuDel4,
    mnuEditZeilenNachOben,
    mnuEditZeilenNachUnten,
    mnuDel6,
    mnuEditSortNr,
    mnuEditSortText,
    mnuDel11,
    mnuEditAppendManual,
    mnuAnsicht = 300,
    mnuAnsichtGotoCatalogPage,
    mnuDel7,
    mnuAnsichtOptColWidth,
    mnuDel9,
    mnuAnsichtShowPrice,
    mnuAnsichtShowInfo,
    mnuDel8,
    mnuAnsichtSymbolleiste,
    mnuAnsichtStatusleiste,
    mnuExtras = 400,
    mnuExtrasOptionen,
    mnuHilfe = 500,
    mnuHilfeInfo,
    mnuContext = 600,
    mnuContextGotoCatalog,
    mnuDel14,
    mnuContextCopySelectionToClipboard,
    mnuDel10,
    mnuContextSendTo1,
    mnuContextSendTo2,
    mnuContextSendTo3,
    mnuContextSendTo4,
    mnuContextSendToOther,
};

enum class MenuKind : std::uint8_t { kTop, kSubmenu, kItem, kCheckItem, kSeparator };

struct CommandRow {
    Command id = Command::kNone;
    Command parent = Command::kNone;  // kNone for the top level
    MenuKind kind = MenuKind::kItem;
    std::wstring_view caption;  // as designed, "&" before the access key
    wchar_t shortcut = 0;       // the letter pressed with Ctrl, 0 for none
    bool visible = true;        // initially
    bool enabled = true;        // initially
};

// All rows in menu order, parents before their children.
std::span<const CommandRow> CommandTable();

// One row; raises 5 for an id that is not in the table.
const CommandRow& FindCommand(Command id);

// The command of Ctrl plus `letter` (upper case), kNone when there is none.
Command CommandForShortcut(wchar_t letter);

struct ToolbarButton {
    std::wstring_view key;  // empty for a separator
    std::wstring_view tool_tip;
    Command command;
};

// The toolbar from left to right.
std::span<const ToolbarButton> ToolbarTable();

// The command of a toolbar key (exact comparison), kNone for any other.
Command CommandForToolbarKey(std::wstring_view key);

struct ToolbarImage {
    std::wstring_view key;
    int bitmap;  // the bitmap resource's number
};

// The image list in its own order, which differs from the buttons' order.
std::span<const ToolbarImage> ImageTable();

// State of a menu item while the window runs.
struct MenuItemState {
    bool visible = true;
    bool enabled = true;
    bool checked = false;
};

}  // namespace demovex
