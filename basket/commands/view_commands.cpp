#include "basket/commands/view_commands.h"

#include <algorithm>
#include <exception>

#include "base/error.h"
#include "basket/edit/scopes.h"
#include "basket/rows/columns.h"

namespace demovex {
namespace {

constexpr std::wstring_view kSection = L"View";
constexpr std::wstring_view kToolbarKey = L"Toolbarvisible";
constexpr std::wstring_view kStatusbarKey = L"Statusbarvisible";
constexpr std::wstring_view kTrue = L"True";
constexpr std::wstring_view kFalse = L"False";

// Room beside the widest text of a column.
constexpr Twips kColumnMargin = 120;

struct ShortcutText {
    Command item;
    std::wstring_view keys;
};
// These keys belong to the text box; the menu only shows their names.
constexpr ShortcutText kShortcutTexts[] = {
    {Command::mnuEditKopieren, L"Strg+C"},
    {Command::mnuEditAusschneiden, L"Strg+X"},
    {Command::mnuEditEinfuegen, L"Strg+V"},
};

}  // namespace

ViewCommands::ViewCommands(BasketContext& context, CellEditor& editor, IBasketOwner*& owner)
    : context_(context), editor_(editor), owner_(owner) {}

void ViewCommands::ShowCheck(Command item, bool checked) {
    const CommandRow& row = FindCommand(item);
    context_.view.SetMenuState(item, {row.visible, row.enabled, checked});
}

void ViewCommands::ReadSettings() {
    const ISettings& settings = context_.services.settings;
    BasketState& state = context_.state;
    state.ToolbarVisible = settings.Get(kSection, kToolbarKey, kTrue) == kTrue;
    state.StatusbarVisible = settings.Get(kSection, kStatusbarKey, kTrue) == kTrue;
    context_.view.SetToolbarVisible(state.ToolbarVisible);
    context_.view.SetStatusbarVisible(state.StatusbarVisible);
    ShowCheck(Command::mnuAnsichtSymbolleiste, state.ToolbarVisible);
    ShowCheck(Command::mnuAnsichtStatusleiste, state.StatusbarVisible);
}

void ViewCommands::WriteSettings() {
    ISettings& settings = context_.services.settings;
    const BasketState& state = context_.state;
    settings.Set(kSection, kToolbarKey, state.ToolbarVisible ? kTrue : kFalse);
    settings.Set(kSection, kStatusbarKey, state.StatusbarVisible ? kTrue : kFalse);
}

void ViewCommands::BuildMenus() {
    for (const ShortcutText& text : kShortcutTexts) {
        std::wstring caption(FindCommand(text.item).caption);
        caption += L'\t';
        caption += text.keys;
        context_.view.SetMenuCaption(text.item, caption);
    }
}

void ViewCommands::Form_Resize() {
    if (context_.view.Minimised()) return;
    // The grid takes its place even when the totals of what was typed cannot be reckoned.
    std::exception_ptr failed;
    try {
        editor_.CloseEditor();
    } catch (...) {
        failed = std::current_exception();
    }
    PlaceGrid();
    if (failed) std::rethrow_exception(failed);
}

void ViewCommands::PlaceGrid() {
    const Twips top = context_.state.ToolbarVisible ? kToolbarHeight : 0;
    const Twips bottom = context_.state.StatusbarVisible ? context_.view.StatusbarHeight() : 0;
    const Twips height = context_.view.InnerHeight() - top - bottom;
    context_.view.MoveGrid(
        {0, top, std::max<Twips>(0, context_.view.InnerWidth()), std::max<Twips>(0, height)});
}

void ViewCommands::LayOut() {
    if (context_.view.Minimised()) return;
    PlaceGrid();
    editor_.Realign();
}

void ViewCommands::mnuAnsichtGotoCatalogPage_Click() {
    const FlexGrid& grid = context_.Liste;
    const std::wstring url(grid.TextMatrix(grid.Row(), column::kKatalogUrl));
    if (url.empty()) return;
    if (owner_ == nullptr) RaiseRuntimeError(runtime_error::kObjectNotSet);
    owner_->NavigateToCatalog(url);  // last: the host may do anything, close the window too
}

void ViewCommands::mnuAnsichtOptColWidth_Click() {
    const MessageAnswer answer = context_.services.messages.Show(
        L"Wollen Sie wirklich die Breite aller Spalten (außer Artikelnummer) auf die optimale "
        L"Breite einstellen ?\r\n\r\n(Dieser Vorgang kann nicht rückgängig gemacht werden!)",
        L"Optimale Spaltenbreiten", MessageButtons::kYesNoCancel, MessageIcon::kNone);
    if (answer != MessageAnswer::kYes) return;
    FlexGrid& grid = context_.Liste;
    {
        const RedrawOffScope redraw_off(grid);
        for (std::int32_t col = column::kBezeichnung; col < grid.Cols(); ++col) {
            if (grid.ColWidth(col) == 0) continue;
            Twips widest = 0;
            for (std::int32_t row = 0; row < grid.Rows(); ++row) {
                widest = std::max(
                    widest, context_.view.MeasureGridText(grid.TextMatrix(row, col), row == 0));
            }
            grid.SetColWidth(col, widest + kColumnMargin);
        }
    }
    editor_.Realign();
}

void ViewCommands::mnuAnsichtSymbolleiste_Click() {
    bool& visible = context_.state.ToolbarVisible;
    visible = !visible;
    context_.view.SetToolbarVisible(visible);
    ShowCheck(Command::mnuAnsichtSymbolleiste, visible);
    Form_Resize();
}

void ViewCommands::mnuAnsichtStatusleiste_Click() {
    bool& visible = context_.state.StatusbarVisible;
    visible = !visible;
    context_.view.SetStatusbarVisible(visible);
    ShowCheck(Command::mnuAnsichtStatusleiste, visible);
    Form_Resize();
}

}  // namespace demovex
