#include "basket/commands/commands.h"

#include <algorithm>

#include "base/error.h"

namespace demovex {
namespace {

// clang-format off
constexpr CommandRow kCommands[] = {
    {Command::mnuDatei, Command::kNone, MenuKind::kTop, L"mnuDatei", L"&Datei", 0, true, true},
    {Command::mnuDateiNeu, Command::mnuDatei, MenuKind::kItem, L"mnuDateiNeu", L"&Neu", 0, true, true},
    {Command::mnuDateiOeffnen, Command::mnuDatei, MenuKind::kItem, L"mnuDateiOeffnen", L"Ö&ffnen", L'O', true, true},
    {Command::mnuDateiSpeichern, Command::mnuDatei, MenuKind::kItem, L"mnuDateiSpeichern", L"&Speichern", L'S', true, true},
    {Command::mnuDateiSpeichernUnter, Command::mnuDatei, MenuKind::kItem, L"mnuDateiSpeichernUnter", L"Speichern &unter ...", 0, true, true},
    {Command::mnuDel1, Command::mnuDatei, MenuKind::kSeparator, L"mnuDel1", L"-", 0, false, true},
    {Command::mnuDateiPreisdateiInstallieren, Command::mnuDatei, MenuKind::kItem, L"mnuDateiPreisdateiInstallieren", L"Preisdatei update installieren ...", 0, false, true},
    {Command::mnuDel12, Command::mnuDatei, MenuKind::kSeparator, L"mnuDel12", L"-", 0, true, true},
    {Command::mnuDateiDrucken, Command::mnuDatei, MenuKind::kItem, L"mnuDateiDrucken", L"&Drucken", L'P', true, true},
    {Command::mnuDel5, Command::mnuDatei, MenuKind::kSeparator, L"mnuDel5", L"-", 0, false, true},
    {Command::mnuDateiSendenan, Command::mnuDatei, MenuKind::kSubmenu, L"mnuDateiSendenan", L"S&enden an", 0, true, true},
    {Command::mnuDateiSendenanDiskette, Command::mnuDateiSendenan, MenuKind::kItem, L"mnuDateiSendenanDiskette", L"&Diskette ...", 0, false, true},
    {Command::mnuDateiSendenanRTFDoc, Command::mnuDateiSendenan, MenuKind::kItem, L"mnuDateiSendenanRTFDoc", L"&RTF-Dokument", 0, true, false},
    {Command::mnuDateiSendenanWeb, Command::mnuDateiSendenan, MenuKind::kItem, L"mnuDateiSendenanWeb", L"&Web", 0, false, true},
    {Command::mnuDateiSendenanZwischenablage, Command::mnuDateiSendenan, MenuKind::kItem, L"mnuDateiSendenanZwischenablage", L"&Zwischenablage", 0, true, true},
    {Command::mnuDelLRUHeader, Command::mnuDatei, MenuKind::kSeparator, L"mnuDelLRUHeader", L"-", 0, false, true},
    {Command::mnuDateiLRU1, Command::mnuDatei, MenuKind::kItem, L"mnuDateiLRU(1)", L"&1", 0, false, true},
    {Command::mnuDateiLRU2, Command::mnuDatei, MenuKind::kItem, L"mnuDateiLRU(2)", L"&2", 0, false, true},
    {Command::mnuDateiLRU3, Command::mnuDatei, MenuKind::kItem, L"mnuDateiLRU(3)", L"&3", 0, false, true},
    {Command::mnuDateiLRU4, Command::mnuDatei, MenuKind::kItem, L"mnuDateiLRU(4)", L"&4", 0, false, true},
    {Command::mnuDel2, Command::mnuDatei, MenuKind::kSeparator, L"mnuDel2", L"-", 0, true, true},
    {Command::mnuDateiBeenden, Command::mnuDatei, MenuKind::kItem, L"mnuDateiBeenden", L"&Beenden", 0, true, true},
    {Command::mnuEdit, Command::kNone, MenuKind::kTop, L"mnuEdit", L"&Bearbeiten", 0, true, true},
    {Command::mnuEditAusschneiden, Command::mnuEdit, MenuKind::kItem, L"mnuEditAusschneiden", L"A&usschneiden", 0, true, true},
    {Command::mnuEditKopieren, Command::mnuEdit, MenuKind::kItem, L"mnuEditKopieren", L"&Kopieren", 0, true, true},
    {Command::mnuEditEinfuegen, Command::mnuEdit, MenuKind::kItem, L"mnuEditEinfuegen", L"E&infügen", 0, true, true},
    {Command::mnuDel3, Command::mnuEdit, MenuKind::kSeparator, L"mnuDel3", L"-", 0, true, true},
    {Command::mnuEditNeueZeile, Command::mnuEdit, MenuKind::kItem, L"mnuEditNeueZeile", L"&Neue Zeile anfügen", L'N', true, true},
    {Command::mnuEditZeileOberhalbEinfügen, Command::mnuEdit, MenuKind::kItem, L"mnuEditZeileOberhalbEinfügen", L"Zeile oberhalb der aktuellen Zeile &einfügen", L'E', true, true},
    {Command::mnuEditZeilenLöschen, Command::mnuEdit, MenuKind::kItem, L"mnuEditZeilenLöschen", L"Selektierte Zeilen &löschen", L'L', true, true},
    {Command::mnuDel4, Command::mnuEdit, MenuKind::kSeparator, L"mnuDel4", L"-", 0, true, true},
    {Command::mnuEditZeilenNachOben, Command::mnuEdit, MenuKind::kItem, L"mnuEditZeilenNachOben", L"Selektierte Zeilen nach &oben verschieben", L'U', true, true},
    {Command::mnuEditZeilenNachUnten, Command::mnuEdit, MenuKind::kItem, L"mnuEditZeilenNachUnten", L"Selektierte Zeilen nach &unten verschieben", L'D', true, true},
    {Command::mnuDel6, Command::mnuEdit, MenuKind::kSeparator, L"mnuDel6", L"-", 0, false, true},
    {Command::mnuEditSortNr, Command::mnuEdit, MenuKind::kItem, L"mnuEditSortNr", L"Warenkorb nach Artikelnummer sortieren", 0, false, true},
    {Command::mnuEditSortText, Command::mnuEdit, MenuKind::kItem, L"mnuEditSortText", L"Warenkorb nach Artikeltext sortieren", 0, false, true},
    {Command::mnuDel11, Command::mnuEdit, MenuKind::kSeparator, L"mnuDel11", L"-", 0, false, true},
    {Command::mnuEditAppendManual, Command::mnuEdit, MenuKind::kItem, L"mnuEditAppendManual", L"Artikel &manuell erfassen", 0, false, true},
    {Command::mnuAnsicht, Command::kNone, MenuKind::kTop, L"mnuAnsicht", L"&Ansicht", 0, true, true},
    {Command::mnuAnsichtGotoCatalogPage, Command::mnuAnsicht, MenuKind::kItem, L"mnuAnsichtGotoCatalogPage", L"Artikel im Katalog suchen", L'G', true, true},
    {Command::mnuDel7, Command::mnuAnsicht, MenuKind::kSeparator, L"mnuDel7", L"-", 0, true, true},
    {Command::mnuAnsichtOptColWidth, Command::mnuAnsicht, MenuKind::kItem, L"mnuAnsichtOptColWidth", L"Optimale Spaltenbreite einstellen", 0, true, true},
    {Command::mnuDel9, Command::mnuAnsicht, MenuKind::kSeparator, L"mnuDel9", L"-", 0, false, true},
    {Command::mnuAnsichtShowPrice, Command::mnuAnsicht, MenuKind::kItem, L"mnuAnsichtShowPrice", L"Eigene &Preise anzeigen", 0, false, true},
    {Command::mnuAnsichtShowInfo, Command::mnuAnsicht, MenuKind::kItem, L"mnuAnsichtShowInfo", L"Zusatz&info in eigener Box anzeigen", 0, false, true},
    {Command::mnuDel8, Command::mnuAnsicht, MenuKind::kSeparator, L"mnuDel8", L"-", 0, true, true},
    {Command::mnuAnsichtSymbolleiste, Command::mnuAnsicht, MenuKind::kCheckItem, L"mnuAnsichtSymbolleiste", L"&Symbolleiste", 0, true, true},
    {Command::mnuAnsichtStatusleiste, Command::mnuAnsicht, MenuKind::kCheckItem, L"mnuAnsichtStatusleiste", L"S&tatusleiste", 0, true, true},
    {Command::mnuExtras, Command::kNone, MenuKind::kTop, L"mnuExtras", L"E&xtras", 0, false, true},
    {Command::mnuExtrasOptionen, Command::mnuExtras, MenuKind::kItem, L"mnuExtrasOptionen", L"&Optionen ...", 0, true, true},
    {Command::mnuHilfe, Command::kNone, MenuKind::kTop, L"mnuHilfe", L"&?", 0, true, true},
    {Command::mnuHilfeInfo, Command::mnuHilfe, MenuKind::kItem, L"mnuHilfeInfo", L"Inf&o", 0, true, true},
    {Command::mnuContext, Command::kNone, MenuKind::kTop, L"mnuContext", L"ContextMenu", 0, false, true},
    {Command::mnuContextGotoCatalog, Command::mnuContext, MenuKind::kItem, L"mnuContextGotoCatalog", L"&Gehe zu Katalog", 0, true, true},
    {Command::mnuDel14, Command::mnuContext, MenuKind::kSeparator, L"mnuDel14", L"-", 0, true, true},
    {Command::mnuContextCopySelectionToClipboard, Command::mnuContext, MenuKind::kItem, L"mnuContextCopySelectionToClipboard", L"&Kopiere Selektion in die Zwischenablage", 0, true, true},
    {Command::mnuDel10, Command::mnuContext, MenuKind::kSeparator, L"mnuDel10", L"-", 0, true, true},
    {Command::mnuContextSendTo1, Command::mnuContext, MenuKind::kItem, L"mnuContextSendTo(1)", L"Send To 1", 0, true, true},
    {Command::mnuContextSendTo2, Command::mnuContext, MenuKind::kItem, L"mnuContextSendTo(2)", L"Send To 2", 0, true, true},
    {Command::mnuContextSendTo3, Command::mnuContext, MenuKind::kItem, L"mnuContextSendTo(3)", L"Send To 3", 0, true, true},
    {Command::mnuContextSendTo4, Command::mnuContext, MenuKind::kItem, L"mnuContextSendTo(4)", L"Send To 4", 0, true, true},
    {Command::mnuContextSendToOther, Command::mnuContext, MenuKind::kItem, L"mnuContextSendToOther", L"&Selektion senden an ...", 0, true, true},
};

constexpr ToolbarButton kToolbar[] = {
    {L"New", L"Leert den Warenkorb", Command::mnuDateiNeu},
    {L"Open", L"Lädt einen Warenkorb (Strg+O)", Command::mnuDateiOeffnen},
    {L"Save", L"Speichert den Warenkorb (Strg+S)", Command::mnuDateiSpeichern},
    {L"", L"", Command::kNone},
    {L"Print", L"Druckt den Warenkorb am Standarddrucker", Command::mnuDateiDrucken},
    {L"", L"", Command::kNone},
    {L"Cut", L"Ausschneiden (Strg+X)", Command::mnuEditAusschneiden},
    {L"Copy", L"Kopieren (Strg+C)", Command::mnuEditKopieren},
    {L"Paste", L"Einfügen (Strg+V)", Command::mnuEditEinfuegen},
    {L"", L"", Command::kNone},
    {L"GotoCatalog", L"Zeigt den Artikel im Katalog (Strg+G)", Command::mnuAnsichtGotoCatalogPage},
    {L"NewRow", L"Fügt am Ende eine neue Zeile ein (Strg+N)", Command::mnuEditNeueZeile},
    {L"InsertRow", L"Fügt oberhalb der aktuellen Zeile neue Zeilen ein", Command::mnuEditZeileOberhalbEinfügen},
    {L"DeleteRow", L"Löscht die selektierten Zeilen (Strg+L)", Command::mnuEditZeilenLöschen},
    {L"", L"", Command::kNone},
    {L"OptColWidth", L"Optimale Spaltenbreite", Command::mnuAnsichtOptColWidth},
    {L"", L"", Command::kNone},
    {L"SelectionUp", L"Verschiebt selektierte Zeilen nach oben (Strg+U)", Command::mnuEditZeilenNachOben},
    {L"SelectionDown", L"Verschiebt selektierte Zeilen nach unten (Strg+D)", Command::mnuEditZeilenNachUnten},
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
