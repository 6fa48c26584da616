#include "basket/test_lib_form.h"

#include <exception>
#include <utility>

#include "base/error.h"
#include "base/one_line.h"
#include "base/scope_guard.h"
#include "basket/commands/row_commands.h"
#include "basket/commands/view_commands.h"
#include "basket/document/clipboard_text.h"
#include "basket/document/files.h"
#include "basket/document/recent_files.h"
#include "basket/document/sending.h"
#include "basket/edit/cell_editor.h"
#include "basket/edit/cell_view.h"
#include "basket/edit/incomplete_note.h"
#include "basket/edit/order_entry.h"
#include "basket/printing.h"
#include "basket/rows/article_master.h"
#include "basket/rows/order_table.h"

namespace demovex {
namespace {

// Which of several commands numbered in a row, counted from 1.
std::int32_t IndexFrom1(Command command, Command first) {
    return static_cast<std::int32_t>(command) - static_cast<std::int32_t>(first) + 1;
}

// Shift, Ctrl and Alt begin no action of their own.
constexpr bool IsModifier(int key) noexcept {
    return key >= 16 && key <= 18;
}

}  // namespace

// From the ground up: each room refers only to rooms above its line.
struct TestLibForm::Rooms {
    Rooms(TestLibForm& form, FlexGrid& liste, IBasketView& view, Services& services)
        : articles(services.files, services.text),
          table(liste, services.text, articles),
          context{liste, table, view, services, state},
          note(context),
          editor(context),
          row_commands(context, editor),
          clipboard(context, editor),
          view_commands(context, editor, form.moLibrary),
          recent_files(context),
          files(context, editor, recent_files),
          sending(context, editor, recent_files),
          printing(
              context, [this] { editor.CloseEditor(); }, [this] { return state.Caption; }) {}

    BasketState state;
    ArticleMaster articles;
    OrderTable table;
    BasketContext context;
    IncompleteNote note;
    CellEditor editor;
    RowCommands row_commands;
    ClipboardCommands clipboard;
    ViewCommands view_commands;
    RecentFiles recent_files;
    BasketFiles files;
    Sending sending;
    Printing printing;
    bool unloading = false;
};

TestLibForm::TestLibForm(FlexGrid& liste, IBasketView& view, Services& services)
    : rooms_(std::make_unique<Rooms>(*this, liste, view, services)) {
    rooms_->state.Caption = kDesignedCaption;
}

TestLibForm::~TestLibForm() = default;

// --- set-up, layout, unload

void TestLibForm::Initialize() {
    Rooms& r = *rooms_;
    r.state.InitPending = true;
    r.view_commands.ReadSettings();
    r.context.view.BuildToolbar();
    r.view_commands.BuildMenus();
    r.articles.Open(r.context.services.component_folder + L"\\artikel.db");
    try {
        r.table.BuildEmpty();
        r.recent_files.RefreshRecentFiles();
    } catch (...) {
        r.articles.Close();  // a set-up that fails leaves no open file behind
        throw;
    }
    r.state.InitPending = false;
    TellNumberFormat();
}

void TestLibForm::DoReSize() {
    rooms_->view_commands.Form_Resize();
}

void TestLibForm::Form_Resize() {
    rooms_->view_commands.Form_Resize();
}

void TestLibForm::LayOut() {
    rooms_->view_commands.LayOut();
}

std::wstring TestLibForm::UnsavedChanges() const {
    const BasketState& state = rooms_->state;
    if (state.InitPending || !(state.Modified || rooms_->editor.TypedInto())) return {};
    // the system cuts long reasons
    constexpr std::size_t kLongest = 100;
    std::wstring name = state.CurrentPath.substr(state.CurrentPath.find_last_of(L'\\') + 1);
    if (name.size() > kLongest) name.replace(kLongest, std::wstring::npos, L"...");
    if (name.empty()) return L"Der Warenkorb ist nicht gespeichert.";
    return L"Der Warenkorb '" + name + L"' ist nicht gespeichert.";
}

void TestLibForm::SessionEnds() noexcept {
    try {
        rooms_->view_commands.WriteSettings();
    } catch (...) {
        // nothing may stand in the way of the session's end
    }
}

bool TestLibForm::Form_Unload() {
    Rooms& r = *rooms_;
    // A second wish to close while the first still asks its question.
    if (r.unloading) return true;
    const FlagWhile unloading(r.unloading);

    r.editor.CloseEditor();
    bool cancel = false;
    r.files.QuerySaveChanges(cancel);
    if (cancel) return true;
    // Neither a settings store that refuses nor a host that fails keeps the window open: it says so
    // and goes.
    const auto tell_failure_of = [&r](auto&& step) {
        try {
            step();
        } catch (const Error& error) {
            r.context.services.messages.Show(error.description(), r.state.Caption,
                                             MessageButtons::kOk, MessageIcon::kExclamation);
        }
    };
    tell_failure_of([&] { r.view_commands.WriteSettings(); });
    // let go of first: the host may destroy the window from within, and is not told again then
    if (IBasketOwner* const owner = std::exchange(moLibrary, nullptr)) {
        tell_failure_of([owner] { owner->ClientClosing(); });
    }
    return false;
}

void TestLibForm::SetFocusTimer_Timer() {
    rooms_->editor.SetFocusTimer_Timer();
}

// --- rows

bool TestLibForm::AddArtikel(const std::wstring& ArtikelNr, const std::wstring& Katalog,
                             const std::wstring& KatalogURL, bool& HasInfo, std::int32_t Menge,
                             bool UseExternalInfoBox) {
    static_cast<void>(HasInfo);
    static_cast<void>(UseExternalInfoBox);
    Rooms& r = *rooms_;
    r.context.view.ShowNote({});
    r.files.ResumePainting();
    // What was ordered comes into view also when its totals cannot be reckoned.
    bool result = false;
    std::exception_ptr failed;
    try {
        const std::wstring number = OneLine(ArtikelNr);
        const auto added =
            demovex::AddArtikel(r.context, r.editor, number, Katalog, KatalogURL, Menge);
        result = added == OrderTable::Added::kNew && !number.empty();
    } catch (...) {
        failed = std::current_exception();
    }
    BringRowIntoView(r.context, r.context.Liste.Row());
    if (failed) std::rethrow_exception(failed);
    return result;
}

bool TestLibForm::RefreshArtikel(std::int32_t row, std::int32_t Menge) {
    return demovex::RefreshArtikel(rooms_->context, rooms_->editor, row, Menge);
}

void TestLibForm::InsertArtikel(std::int32_t row, std::int32_t rowcount) {
    demovex::InsertArtikel(rooms_->context, rooms_->editor, row, rowcount);
}

std::int32_t TestLibForm::GetRowType(std::int32_t row) const {
    return rooms_->table.IsArticleRow(row) ? 0 : 1;
}

void TestLibForm::CommitCellEdit() {
    rooms_->editor.CommitCellEdit();
}

void TestLibForm::NumberFormatChanged(const std::function<void()>& change) {
    if (rooms_->state.InitPending) return change();  // nothing is shown yet
    rooms_->editor.NumberFormatChanged([&] { rooms_->table.Reformat(change); });
    TellNumberFormat();
}

void TestLibForm::TellNumberFormat() {
    if (rooms_->context.services.text.UsesOwnFormat()) return;
    rooms_->context.view.ShowNote(
        L"Im eingestellten Zahlenformat ist ein Trennzeichen eine Ziffer; es gilt das übliche");
}

// --- files

void TestLibForm::Load(const std::wstring& Path) {
    rooms_->context.view.ShowNote({});
    rooms_->files.Load(Path);
}

const std::wstring& TestLibForm::Caption() const {
    return rooms_->state.Caption;
}

bool TestLibForm::Modified() const {
    return rooms_->state.Modified;
}

// --- events

void TestLibForm::RowColChange() {
    rooms_->editor.Liste_RowColChange();
}

// A selection that grows or shrinks around the same current cell leaves the editor as it is.
void TestLibForm::SelChange() {}

void TestLibForm::Scroll() {
    rooms_->editor.Liste_Scroll();
}

void TestLibForm::Liste_DblClick() {
    rooms_->view_commands.mnuAnsichtGotoCatalogPage_Click();
}

void TestLibForm::Liste_MouseUp(int Button, int Shift, Twips X, Twips Y) {
    rooms_->files.ResumePainting();
    constexpr int kRightButton = 2;
    if (Button != kRightButton || Shift != 0) return;
    const TwipsPoint grid = rooms_->context.view.GridOrigin();
    rooms_->context.view.PopupContextMenu({grid.x + X, grid.y + Y});
}

void TestLibForm::Liste_Acted() {
    rooms_->editor.Liste_Acted();
}

void TestLibForm::Liste_KeyDown(int& KeyCode, int Shift) {
    rooms_->editor.Liste_KeyDown(KeyCode, Shift);
}

void TestLibForm::Liste_KeyPress(int& KeyAscii) {
    rooms_->editor.Liste_KeyPress(KeyAscii);
}

void TestLibForm::IPText_KeyDown(int& KeyCode, int Shift) {
    if (!IsModifier(KeyCode)) rooms_->context.view.ShowNote({});
    rooms_->editor.IPText_KeyDown(KeyCode, Shift);
}

void TestLibForm::IPText_KeyPress(int& KeyAscii) {
    rooms_->editor.IPText_KeyPress(KeyAscii);
}

void TestLibForm::IPText_Change() {
    rooms_->editor.IPText_Change();
}

void TestLibForm::IPComboButton_Click() {
    rooms_->editor.IPComboButton_Click();
}

void TestLibForm::IPComboList_KeyDown(int& KeyCode, int Shift) {
    if (!IsModifier(KeyCode)) rooms_->context.view.ShowNote({});
    rooms_->editor.IPComboList_KeyDown(KeyCode, Shift);
}

void TestLibForm::IPComboList_MouseMove(int, int, Twips, Twips Y) {
    rooms_->editor.IPComboList_MouseMove(Y);
}

void TestLibForm::IPComboList_MouseUp(int, int, Twips, Twips Y) {
    rooms_->editor.IPComboList_MouseUp(Y);
}

void TestLibForm::IPComboList_LostFocus() {
    rooms_->editor.IPComboList_LostFocus();
}

void TestLibForm::Toolbar_ButtonClick(std::wstring_view key) {
    Run(CommandForToolbarKey(key));
}

void TestLibForm::MenuOpened(Command top) {
    switch (top) {
        case Command::mnuDatei:
        case Command::mnuEdit:
        case Command::mnuAnsicht:
        case Command::mnuHilfe:
            rooms_->editor.CloseList();
            break;
        default:
            break;
    }
}

void TestLibForm::Run(Command command) {
    Rooms& r = *rooms_;
    r.context.view.ShowNote({});
    r.files.ResumePainting();
    using enum Command;
    switch (command) {
        case mnuDateiNeu:
            return r.files.mnuDateiNeu_Click();
        case mnuDateiOeffnen:
            return r.files.mnuDateiOeffnen_Click();
        case mnuDateiSpeichern:
            return r.files.mnuDateiSpeichern_Click();
        case mnuDateiSpeichernUnter:
            return r.files.mnuDateiSpeichernUnter_Click();
        case mnuDateiLRU1:
        case mnuDateiLRU2:
        case mnuDateiLRU3:
        case mnuDateiLRU4:
            return r.files.mnuDateiLRU_Click(IndexFrom1(command, mnuDateiLRU1));
        case mnuDateiBeenden:
            return r.files.mnuDateiBeenden_Click();
        case mnuContextSendTo1:
        case mnuContextSendTo2:
        case mnuContextSendTo3:
        case mnuContextSendTo4:
            return r.sending.mnuContextSendTo_Click(IndexFrom1(command, mnuContextSendTo1));
        case mnuContextSendToOther:
            return r.sending.mnuContextSendToOther_Click();
        case mnuDateiDrucken:
            return r.printing.mnuDateiDrucken_Click();
        case mnuDateiSendenanZwischenablage:
            return r.clipboard.mnuDateiSendenanZwischenablage_Click();
        case mnuEditAusschneiden:
            return r.clipboard.mnuEditAusschneiden_Click();
        case mnuEditKopieren:
            return r.clipboard.mnuEditKopieren_Click();
        case mnuEditEinfuegen:
            return r.clipboard.mnuEditEinfuegen_Click();
        case mnuEditNeueZeile:
            return r.row_commands.mnuEditNeueZeile_Click();
        case mnuEditZeileOberhalbEinfügen:
            return r.row_commands.mnuEditZeileOberhalbEinfügen_Click();
        case mnuEditZeilenLöschen:
            return r.row_commands.mnuEditZeilenLöschen_Click();
        case mnuEditZeilenNachOben:
            return r.row_commands.mnuEditZeilenNachOben_Click();
        case mnuEditZeilenNachUnten:
            return r.row_commands.mnuEditZeilenNachUnten_Click();
        case mnuAnsichtGotoCatalogPage:
        case mnuContextGotoCatalog:
            return r.view_commands.mnuAnsichtGotoCatalogPage_Click();
        case mnuAnsichtOptColWidth:
            return r.view_commands.mnuAnsichtOptColWidth_Click();
        case mnuAnsichtSymbolleiste:
            return r.view_commands.mnuAnsichtSymbolleiste_Click();
        case mnuAnsichtStatusleiste:
            return r.view_commands.mnuAnsichtStatusleiste_Click();
        case mnuHilfeInfo:
            return r.context.view.ShowAboutBox();
        case mnuContextCopySelectionToClipboard:
            return r.clipboard.mnuContextCopySelectionToClipboard_Click();
        default:
            return;  // separators, menus, and items without action
    }
}

void TestLibForm::SetOffersList(bool (*offers)(std::int32_t row, std::int32_t col)) {
    rooms_->editor.SetOffersList(offers);
}

// --- IMSContainer

std::int32_t TestLibForm::Count(std::int32_t) {
    return rooms_->table.LastRow();
}

std::int32_t TestLibForm::EnumItems(std::int32_t) {
    return rooms_->table.EnumItems();
}

std::int32_t TestLibForm::CompareItems(std::int32_t id1, std::int32_t id2, std::int32_t Tag) {
    return rooms_->table.CompareItems(id1, id2, Tag);
}

std::int32_t TestLibForm::Hashvalue(std::int32_t, std::int32_t) {
    return 0;
}

std::int32_t TestLibForm::HashKeyvalue(const KeyValue&, std::int32_t) {
    return 0;
}

std::int32_t TestLibForm::CompareItem(const KeyValue& Key, std::int32_t id, std::int32_t Tag) {
    return rooms_->table.CompareItem(Key, id, Tag);
}

const BasketState& TestLibForm::State() const {
    return rooms_->state;
}

}  // namespace demovex
