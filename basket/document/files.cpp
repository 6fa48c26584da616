#include "basket/document/files.h"

#include <string_view>

#include "base/error.h"
#include "base/one_line.h"
#include "basket/document/file_texts.h"
#include "basket/document/progress_scope.h"
#include "basket/edit/cell_view.h"
#include "basket/edit/scopes.h"
#include "basket/rows/columns.h"
#include "dialogs/common_dialogs.h"
#include "params/parameter_parser.h"

namespace demovex {
namespace {

// Of a save's progress, the part that is done when the text stands and writing begins.
constexpr double kComposeShare = 0.7;

constexpr wchar_t kHeader[] = L"DemoVexClient.Client";

// A message box has no scroll bar: so many entries are listed, and of a text so many characters.
constexpr std::int32_t kListedNumbers = 30;
constexpr std::size_t kListedCharacters = 100;

std::wstring Listed(std::wstring_view text) {
    if (text.size() <= kListedCharacters) return std::wstring(text);
    return std::wstring(text.substr(0, kListedCharacters)) + L"...";
}

ParameterParser BasketParser() {
    ParameterParser parser;
    parser.SetColumnDelimiter(L"\t");
    parser.SetRowDelimiter(L"\r\n");
    return parser;
}

[[noreturn]] void RaiseLoadError(const std::wstring& path, std::wstring_view cause) {
    RaiseOwnError(L"Load", L"Datei '" + ShownPath(path) + L"' kann nicht geöffnet werden: " +
                               std::wstring(cause));
}

}  // namespace

void BasketFiles::Load(const std::wstring& Path) {
    editor_.CloseEditor();
    table_.RestoreTotalsRow();
    context_.state.Loading = true;
    context_.state.SuppressEditor = true;
    table_.BeginLoading();
    Rejected rejected;
    std::optional<std::wstring> failure;
    try {
        failure = FailureOf([&] {
            const Place place = PlaceOf(Path);
            // before it is read: what is written to it meanwhile is not what was read
            const std::optional<FileStamp> stamp = context_.services.files.Stamp(place.path);
            LoadRows(place, rejected);
            known_ = stamp;
        });
    } catch (...) {
        EndLoading();
        throw;
    }
    EndLoading();
    if (failure) RaiseLoadError(Path, *failure);
    if (rejected.count > 0) ShowRejected(rejected);
}

void BasketFiles::EndLoading() {
    table_.EndLoading();
    context_.state.Modified = false;
    context_.state.Loading = false;
    context_.state.SuppressEditor = false;
    ShowPosition(context_);  // the handler of the current cell was idle
}

void BasketFiles::LoadRows(const Place& place, Rejected& rejected) {
    FlexGrid& grid = context_.Liste;
    ParameterParser parser = BasketParser();
    parser.SetParameterString(
        LoadFile(context_.services.files, context_.services.text, place.path, place.given));
    const bool has_header = context_.services.text.CompareText(parser.Value(1, 1), kHeader) == 0;

    context_.state.CurrentPath = place.path;
    place_ = place;
    known_.reset();  // until it has been read whole
    recent_.AddRecentFile(place.path);
    ShowFileCaption();

    ProgressScope progress(context_.view, L"Warenkorb wird geladen",
                           ProgressScope::Ends::kWithEscape);
    grid.SetRedraw(false);
    table_.Clear();
    // The row that the next line is expected to become. Two lines in succession with one number
    // merge into one row and count as rejected; the row removed is then whatever stands at the
    // counter, and from there on counter and rows may differ. The numbering is kept so on purpose.
    std::int32_t row = 1;
    std::wstring number, quantity, catalog, url;
    for (std::int32_t line = has_header ? 2 : 1; line <= parser.Rows(); ++line) {
        progress.Step(line, parser.Rows());
        number = parser.Value(1, line);
        BlankControls(number);
        if (number.empty()) {
            table_.AddArtikel(L"", L"", L"", 1);
            table_.Recalculate(table_.LastRow());
            table_.SetCell(row, column::kBezeichnung, parser.Value(2, line));
        } else {
            catalog = parser.Value(6, line);
            url = parser.Value(7, line);
            quantity = parser.Value(3, line);
            BlankControls(quantity);
            // the line totals of a new row wait for the quantity that the file says
            const auto added = table_.AddArtikel(number, catalog, url, 1);
            if (added == OrderTable::Added::kNew) {
                SetQuantity(row, quantity);
            } else {
                if (added == OrderTable::Added::kMerged) table_.Recalculate(table_.LastRow());
                table_.RemoveRows(row, 1);
                --row;
                if (++rejected.count <= kListedNumbers) {
                    rejected.list.append(L"\r\n").append(Listed(number)).append(L" (");
                    rejected.list.append(Listed(quantity)).append(L")");
                }
            }
        }
        ++row;
    }

    try {
        grid.SetRow(1);
    } catch (const Error&) {  // a basket without that row
    }
    grid.SetCol(column::kArtNr);
    grid.SetRedraw(true);
}

void BasketFiles::SetQuantity(std::int32_t row, std::wstring_view quantity) {
    const std::int32_t added = table_.LastRow();
    if (row != added) table_.Recalculate(added);  // keeps its quantity of 1
    try {
        table_.SetCell(row, column::kMenge, quantity);
        table_.Recalculate(row);
    } catch (const Error&) {
        // The row is left as it was added, with the total of one piece beside the bad quantity.
        if (row == added) {
            table_.SetCell(row, column::kMenge, L"1");
            table_.Recalculate(row);
            table_.SetCell(row, column::kMenge, quantity);
        }
        throw;
    }
}

void BasketFiles::ShowRejected(const Rejected& rejected) {
    const wchar_t* plural = rejected.count > 1 ? L"n" : L"";
    std::wstring text = std::wstring(L"Folgende Artikelnummer") + plural +
                        L" wurden nicht im Artikelstamm gefunden und wurde" + plural +
                        L" daher aus dem Warenkorb entfernt: \r\n" + rejected.list;
    if (rejected.count > kListedNumbers) {
        text += L"\r\n... und " + std::to_wstring(rejected.count - kListedNumbers) + L" weitere";
    }
    context_.services.messages.Show(text, L"Fehlerhafte Warenkorbdatei", MessageButtons::kOk,
                                    MessageIcon::kExclamation);
}

void BasketFiles::mnuDateiNeu_Click() {
    editor_.CloseEditor();
    bool Cancel = false;
    QuerySaveChanges(Cancel);
    if (Cancel) return;

    editor_.CloseEditor();  // a link followed while the question stood may have opened it again
    table_.RestoreTotalsRow();

    FlexGrid& grid = context_.Liste;
    const SuppressEditorScope suppress(context_.state);
    {
        const RedrawOffScope redraw_off(grid);
        table_.Clear();
    }
    grid.SetCol(column::kBezeichnung);
    editor_.Liste_RowColChange();

    context_.state.CurrentPath.clear();
    known_.reset();
    SetBasketCaption(context_, kDesignedCaption);
    context_.state.Modified = false;
}

void BasketFiles::mnuDateiOeffnen_Click() {
    editor_.CloseEditor();
    bool Cancel = false;
    QuerySaveChanges(Cancel);
    if (Cancel) return;

    const bool asked = context_.state.Modified;  // and answered: the changes may go
    CommonDialogs dialogs(context_.services.file_dialogs);
    const std::wstring path =
        dialogs.GetOpenFileName({.InitDir = context_.services.component_folder,
                                 .Title = L"Öffnen",
                                 .sExtensions = kBasketFilter});
    if (path.empty()) return;
    // The host is not blocked by the dialog: what was ordered meanwhile is not lost without a word.
    if (!asked) QuerySaveChanges(Cancel);
    if (Cancel) return;
    try {
        Load(path);
    } catch (const Error& error) {
        context_.services.messages.Show(error.description(), L"Fehler beim öffnen der Datei",
                                        MessageButtons::kOk, MessageIcon::kNone);
        ResumePainting();
    }
}

void BasketFiles::mnuDateiLRU_Click(std::int32_t Index) {
    editor_.CloseEditor();  // a text being typed is a change to be asked about
    bool Cancel = false;
    QuerySaveChanges(Cancel);
    if (Cancel) return;
    const std::wstring path = recent_.Tag(Index);
    try {
        Load(path);
    } catch (const Error& error) {
        context_.services.messages.Show(error.description(), L"Fehler beim Öffnen einer Datei",
                                        MessageButtons::kOk, MessageIcon::kCritical);
        ResumePainting();
    }
}

BasketFiles::Place BasketFiles::PlaceOf(const std::wstring& given) const {
    return {context_.services.files.Absolute(given), given};
}

BasketFiles::Place BasketFiles::CurrentPlace() const {
    const std::wstring& path = context_.state.CurrentPath;
    return place_.path == path ? place_ : PlaceOf(path);
}

void BasketFiles::mnuDateiSpeichern_Click() {
    if (context_.state.CurrentPath.empty()) {
        mnuDateiSpeichernUnter_Click();
        return;
    }
    editor_.CommitCellEdit();
    const Place place = CurrentPlace();
    if (MayReplace(place)) Write(place);
}

bool BasketFiles::MayReplace(const Place& place) {
    const std::optional<FileStamp> now = context_.services.files.Stamp(place.path);
    if (!now || now == known_) return true;
    const std::wstring asked_for = context_.state.CurrentPath;
    const MessageAnswer answer = context_.services.messages.Show(
        L"Die Datei '" + ShownPath(place.given) +
            L"' wurde inzwischen geändert. Möchten Sie sie überschreiben ?",
        L"Speichern", MessageButtons::kYesNo, MessageIcon::kNone);
    // The host is not blocked by the question: it may have loaded another basket meanwhile, which
    // nobody was asked about.
    if (answer != MessageAnswer::kYes || context_.state.CurrentPath != asked_for) return false;
    editor_.CommitCellEdit();  // a link followed meanwhile may have opened the editor again
    return true;
}

void BasketFiles::Write(const Place& place) {
    table_.RestoreTotalsRow();
    recent_.AddRecentFile(place.path);

    bool lossy = false;
    try {
        ProgressScope progress(context_.view, L"Warenkorb wird gespeichert");
        const std::wstring content = Compose(progress);
        known_ = SaveFile(
            context_.services.files, context_.services.text, place.path, content,
            {.lossy = &lossy,
             .progress =
                 [&](double done) { progress.Report(kComposeShare + (1 - kComposeShare) * done); },
             .clock = clock_});
    } catch (const Error& error) {
        throw Error(error.number(), error.source(),
                    L"Datei '" + ShownPath(place.given) + L"' kann nicht gespeichert werden: " +
                        error.description());
    }
    context_.state.Modified = false;
    if (lossy) context_.view.SetStatusText(kLossyStatus);
}

std::wstring BasketFiles::Compose(ProgressScope& progress) const {
    const FlexGrid& grid = context_.Liste;
    ParameterParser parser = BasketParser();
    parser.SetValue(1, 1, kHeader);
    const std::int32_t last = table_.LastRow();
    for (std::int32_t row = 1; row <= last; ++row) {
        progress.Step(row, last, 0, kComposeShare);
        for (std::int32_t col = column::kArtNr; col <= column::kGesamtEuro; ++col) {
            parser.SetValue(col, row + 1, grid.TextMatrix(row, col));
        }
    }
    return parser.ParameterString();
}

void BasketFiles::mnuDateiSpeichernUnter_Click() {
    BasketState& state = context_.state;
    editor_.CommitCellEdit();

    SaveFileArguments arguments{.InitDir = context_.services.component_folder,
                                .Title = L"Speichern unter",
                                .sExtensions = kBasketFilter};
    if (!state.CurrentPath.empty()) {
        arguments.InitDir = GetFolderName(state.CurrentPath);
        arguments.InitFileName = GetFileName(state.CurrentPath);
    }
    CommonDialogs dialogs(context_.services.file_dialogs);
    const std::wstring given = dialogs.GetSaveFileName(arguments);
    if (given.empty()) return;

    editor_.CommitCellEdit();  // a link followed while the dialog stood may have opened the editor
    const Place place = PlaceOf(given);
    Write(place);
    state.CurrentPath = place.path;
    place_ = place;
    ShowFileCaption();
}

void BasketFiles::mnuDateiBeenden_Click() {
    context_.view.RequestClose();
}

void BasketFiles::QuerySaveChanges(bool& Cancel) {
    Cancel = false;
    if (!context_.state.Modified) return;
    Cancel = true;
    switch (context_.services.messages.Show(
        L"Möchten Sie die Änderungen im aktuellen Warenkorb speichern ?", L"Schließen",
        MessageButtons::kYesNoCancel, MessageIcon::kNone)) {
        case MessageAnswer::kNo:
            Cancel = false;
            break;
        case MessageAnswer::kYes:
            mnuDateiSpeichern_Click();  // asks for a path when there is none
            Cancel = context_.state.Modified;
            break;
        default:
            break;
    }
}

void BasketFiles::ResumePainting() {
    if (!context_.state.Loading && !context_.Liste.Redraw()) context_.Liste.SetRedraw(true);
}

void BasketFiles::ShowFileCaption() {
    SetBasketCaption(context_, std::wstring(kDesignedCaption) + L" - " +
                                   GetFileName(context_.state.CurrentPath));
}

}  // namespace demovex
