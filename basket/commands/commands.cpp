#include "basket/commands/commands.h"

#include <algorithm>

#include "base/error.h"

namespace demovex {
namespace {

using enum Command;
using enum MenuKind;

// clang-format off
constexpr CommandRow kCommands[] = {
    {.id = mnuDatei, .parent = kNone, .kind = kTop, .caption = L"&Datei"},
    {.id = mnuDateiNeu, .parent = mnuDatei, .kind = kItem, .caption = L"&Neu"},
    {.id = mnuDateiOeffnen, .parent = mnuDatei, .kind = kItem, .caption = L"Ö&ffnen", .shortcut = L'O'},
    {.id = mnuDateiSpeichern, .parent = mnuDatei, .kind = kItem, .caption = L"&Speichern", .shortcut = L'S'},
    {.id = mnuDateiSpeichernUnter, .parent = mnuDatei, .kind = kItem, .caption = L"Speichern &unter ..."},
    {.id = mnuDel1, .parent = mnuDatei, .kind = kSeparator, .caption = L"-", .visible = false},
    {.id = mnuDateiPreisdateiInstallieren, .parent = mnuDatei, .kind = kItem, .caption = L"Preisdatei update installieren ...", .visible = false},
    {.id = mnuDel12, .parent = mnuDatei, .kind = kSeparator, .caption = L"-"},
    {.id = mnuDateiDrucken, .parent = mnuDatei, .kind = kItem, .caption = L"&Drucken", .shortcut = L'P'},
    {.id = mnuDel5, .parent = mnuDatei, .kind = kSeparator, .caption = L"-", .visible = false},
    {.id = mnuDateiSendenan, .parent = mnuDatei, .kind = kSubmenu, .caption = L"S&enden an"},
    {.id = mnuDateiSendenanDiskette, .parent = mnuDateiSendenan, .kind = kItem, .caption = L"&Diskette ...", .visible = false},
    {.id = mnuDateiSendenanRTFDoc, .parent = mnuDateiSendenan, .kind = kItem, .caption = L"&RTF-Dokument", .enabled = false},
    {.id = mnuDateiSendenanWeb, .parent = mnuDateiSendenan, .kind = kItem, .caption = L"&Web", .visible = false},
    {.id = mnuDateiSendenanZwischenablage, .parent = mnuDateiSendenan, .kind = kItem, .caption = L"&Zwischenablage"},
    {.id = mnuDelLRUHeader, .parent = mnuDatei, .kind = kSeparator, .caption = L"-", .visible = false},
    {.id = mnuDateiLRU1, .parent = mnuDatei, .kind = kItem, .caption = L"&1", .visible = false},
    {.id = mnuDateiLRU2, .parent = mnuDatei, .kind = kItem, .caption = L"&2", .visible = false},
    {.id = mnuDateiLRU3, .parent = mnuDatei, .kind = kItem, .caption = L"&3", .visible = false},
    {.id = mnuDateiLRU4, .parent = mnuDatei, .kind = kItem, .caption = L"&4", .visible = false},
    {.id = mnuDel2, .parent = mnuDatei, .kind = kSeparator, .caption = L"-"},
    {.id = mnuDateiBeenden, .parent = mnuDatei, .kind = kItem, .caption = L"&Beenden"},
    {.id = mnuEdit, .parent = kNone, .kind = kTop, .caption = L"&Bearbeiten"},
    {.id = mnuEditAusschneiden, .parent = mnuEdit, .kind = kItem, .caption = L"A&usschneiden"},
    {.id = mnuEditKopieren, .parent = mnuEdit, .kind = kItem, .caption = L"&Kopieren"},
    {.id = mnuEditEinfuegen, .parent = mnuEdit, .kind = kItem, .caption = L"E&infügen"},
    {.id = mnuDel3, .parent = mnuEdit, .kind = kSeparator, .caption = L"-"},
    {.id = mnuEditNeueZeile, .parent = mnuEdit, .kind = kItem, .caption = L"&Neue Zeile anfügen", .shortcut = L'N'},
    {.id = mnuEditZeileOberhalbEinfügen, .parent = mnuEdit, .kind = kItem, .caption = L"Zeile oberhalb der aktuellen Zeile &einfügen", .shortcut = L'E'},
    {.id = mnuEditZeilenLöschen, .parent = mnuEdit, .kind = kItem, .caption = L"Selektierte Zeilen &löschen", .shortcut = L'L'},
    {.id = mnuDel4, .parent = mnuEdit, .kind = kSeparator, .caption = L"-"},
    {.id = mnuEditZeilenNachOben, .parent = mnuEdit, .kind = kItem, .caption = L"Selektierte Zeilen nach &oben verschieben", .shortcut = L'U'},
    {.id = mnuEditZeilenNachUnten, .parent = mnuEdit, .kind = kItem, .caption = L"Selektierte Zeilen nach &unten verschieben", .shortcut = L'D'},
    {.id = mnuDel6, .parent = mnuEdit, .kind = kSeparator, .caption = L"-", .visible = false},
    {.id = mnuEditSortNr, .parent = mnuEdit, .kind = kItem, .caption = L"Warenkorb nach Artikelnummer sortieren", .visible = false},
    {.id = mnuEditSortText, .parent = mnuEdit, .kind = kItem, .caption = L"Warenkorb nach Artikeltext sortieren", .visible = false},
    {.id = mnuDel11, .parent = mnuEdit, .kind = kSeparator, .caption = L"-", .visible = false},
    {.id = mnuEditAppendManual, .parent = mnuEdit, .kind = kItem, .caption = L"Artikel &manuell erfassen", .visible = false},
    {.id = mnuAnsicht, .parent = kNone, .kind = kTop, .caption = L"&Ansicht"},
    {.id = mnuAnsichtGotoCatalogPage, .parent = mnuAnsicht, .kind = kItem, .caption = L"Artikel im Katalog suchen", .shortcut = L'G'},
    {.id = mnuDel7, .parent = mnuAnsicht, .kind = kSeparator, .caption = L"-"},
    {.id = mnuAnsichtOptColWidth, .parent = mnuAnsicht, .kind = kItem, .caption = L"Optimale Spaltenbreite einstellen"},
    {.id = mnuDel9, .parent = mnuAnsicht, .kind = kSeparator, .caption = L"-", .visible = false},
    {.id = mnuAnsichtShowPrice, .parent = mnuAnsicht, .kind = kItem, .caption = L"Eigene &Preise anzeigen", .visible = false},
    {.id = mnuAnsichtShowInfo, .parent = mnuAnsicht, .kind = kItem, .caption = L"Zusatz&info in eigener Box anzeigen", .visible = false},
    {.id = mnuDel8, .parent = mnuAnsicht, .kind = kSeparator, .caption = L"-"},
    {.id = mnuAnsichtSymbolleiste, .parent = mnuAnsicht, .kind = kCheckItem, .caption = L"&Symbolleiste"},
    {.id = mnuAnsichtStatusleiste, .parent = mnuAnsicht, .kind = kCheckItem, .caption = L"S&tatusleiste"},
    {.id = mnuExtras, .parent = kNone, .kind = kTop, .caption = L"E&xtras", .visible = false},
    {.id = mnuExtrasOptionen, .parent = mnuExtras, .kind = kItem, .caption = L"&Optionen ..."},
    {.id = mnuHilfe, .parent = kNone, .kind = kTop, .caption = L"&?"},
    {.id = mnuHilfeInfo, .parent = mnuHilfe, .kind = kItem, .caption = L"Inf&o"},
    {.id = mnuContext, .parent = kNone, .kind = kTop, .caption = L"ContextMenu", .visible = false},
    {.id = mnuContextGotoCatalog, .parent = mnuContext, .kind = kItem, .caption = L"&Gehe zu Katalog"},
    {.id = mnuDel14, .parent = mnuContext, .kind = kSeparator, .caption = L"-"},
    {.id = mnuContextCopySelectionToClipboard, .parent = mnuContext, .kind = kItem, .caption = L"&Kopiere Selektion in die Zwischenablage"},
    {.id = mnuDel10, .parent = mnuContext, .kind = kSeparator, .caption = L"-"},
    {.id = mnuContextSendTo1, .parent = mnuContext, .kind = kItem, .caption = L"Send To 1"},
    {.id = mnuContextSendTo2, .parent = mnuContext, .kind = kItem, .caption = L"Send To 2"},
    {.id = mnuContextSendTo3, .parent = mnuContext, .kind = kItem, .caption = L"Send To 3"},
    {.id = mnuContextSendTo4, .parent = mnuContext, .kind = kItem, .caption = L"Send To 4"},
    {.id = mnuContextSendToOther, .parent = mnuContext, .kind = kItem, .caption = L"&Selektion senden an ..."},
};

constexpr ToolbarButton kToolbar[] = {
    {L"New", L"Leert den Warenkorb", mnuDateiNeu},
    {L"Open", L"Lädt einen Warenkorb (Strg+O)", mnuDateiOeffnen},
    {L"Save", L"Speichert den Warenkorb (Strg+S)", mnuDateiSpeichern},
    {L"", L"", kNone},
    {L"Print", L"Druckt den Warenkorb am Standarddrucker", mnuDateiDrucken},
    {L"", L"", kNone},
    {L"Cut", L"Ausschneiden (Strg+X)", mnuEditAusschneiden},
    {L"Copy", L"Kopieren (Strg+C)", mnuEditKopieren},
    {L"Paste", L"Einfügen (Strg+V)", mnuEditEinfuegen},
    {L"", L"", kNone},
    {L"GotoCatalog", L"Zeigt den Artikel im Katalog (Strg+G)", mnuAnsichtGotoCatalogPage},
    {L"NewRow", L"Fügt am Ende eine neue Zeile ein (Strg+N)", mnuEditNeueZeile},
    {L"InsertRow", L"Fügt oberhalb der aktuellen Zeile neue Zeilen ein", mnuEditZeileOberhalbEinfügen},
    {L"DeleteRow", L"Löscht die selektierten Zeilen (Strg+L)", mnuEditZeilenLöschen},
    {L"", L"", kNone},
    {L"OptColWidth", L"Optimale Spaltenbreite", mnuAnsichtOptColWidth},
    {L"", L"", kNone},
    {L"SelectionUp", L"Verschiebt selektierte Zeilen nach oben (Strg+U)", mnuEditZeilenNachOben},
    {L"SelectionDown", L"Verschiebt selektierte Zeilen nach unten (Strg+D)", mnuEditZeilenNachUnten},
};

constexpr ToolbarImage kImages[] = {
    {L"New", 104},
    {L"Open", 126},
    {L"Save", 106},
    {L"Print", 118},
    {L"Cut", 102},
    {L"Copy", 111},
    {L"Paste", 105},
    {L"NewRow", 115},
    {L"InsertRow", 114},
    {L"DeleteRow", 117},
    {L"SelectionUp", 113},
    {L"SelectionDown", 116},
    {L"GotoCatalog", 121},
    {L"OptColWidth", 127},
};
// clang-format on

}  // namespace

std::span<const CommandRow> CommandTable() {
    return kCommands;
}
std::span<const ToolbarButton> ToolbarTable() {
    return kToolbar;
}
std::span<const ToolbarImage> ImageTable() {
    return kImages;
}

const CommandRow& FindCommand(Command id) {
    const auto row = std::ranges::find(kCommands, id, &CommandRow::id);
    if (row == std::end(kCommands)) RaiseRuntimeError(runtime_error::kInvalidProcedureCall);
    return *row;
}

Command CommandForShortcut(wchar_t letter) {
    if (letter == 0) return Command::kNone;
    const auto row = std::ranges::find(kCommands, letter, &CommandRow::shortcut);
    return row == std::end(kCommands) ? Command::kNone : row->id;
}

Command CommandForToolbarKey(std::wstring_view key) {
    if (key.empty()) return Command::kNone;
    const auto button = std::ranges::find(kToolbar, key, &ToolbarButton::key);
    return button == std::end(kToolbar) ? Command::kNone : button->command;
}

}  // namespace demovex
