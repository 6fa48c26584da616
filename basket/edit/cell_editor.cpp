#include "basket/edit/cell_editor.h"

#include <algorithm>
#include <array>
#include <optional>

#include "base/error.h"
#include "base/one_line.h"
#include "base/scope_guard.h"
#include "basket/edit/cell_view.h"
#include "basket/edit/editor_keys.h"
#include "basket/edit/order_entry.h"
#include "basket/edit/scopes.h"
#include "basket/rows/columns.h"
#include "grid/cell_name.h"

namespace demovex {
CellEditor::CellEditor(BasketContext& context)
    : context_(context),
      grid_(context.Liste),
      view_(context.view.Editor()),
      state_(context.state),
      table_(context.table) {}

bool CellEditor::WhollyVisible() const {
    const std::int32_t row = grid_.Row();
    const std::int32_t col = grid_.Col();
    if (col < grid_.LeftCol() || row < grid_.TopRow()) return false;
    if (col < grid_.Cols() - 1 && grid_.ColPos(col + 1) >= grid_.Width() - kEdgeMargin) {
        return false;
    }
    return row >= table_.TotalsRow() || grid_.RowPos(row + 1) <= grid_.Height() - kEdgeMargin;
}

bool CellEditor::MayEdit(std::int32_t row, std::int32_t col) const {
    if (row < 1 || row > table_.LastRow()) return false;
    const bool article = table_.IsArticleRow(row);
    return col == column::kArtNr || col == column::kBezeichnung ? !article
                                                                : col == column::kMenge && article;
}

bool CellEditor::CurrentMayBeEdited() const {
    return grid_.Row() == grid_.RowSel() && grid_.Col() == grid_.ColSel() &&
           MayEdit(grid_.Row(), grid_.Col());
}

bool CellEditor::Editable() const {
    return CurrentMayBeEdited() && WhollyVisible();
}

bool CellEditor::OffersList() const {
    return offers_ != nullptr && offers_(grid_.Row(), grid_.Col());
}

IEditorView::Cell CellEditor::CurrentCell(std::wstring& name) const {
    const TwipsPoint grid = context_.view.GridOrigin();
    const std::int32_t row = grid_.Row();
    const std::int32_t col = grid_.Col();
    name = CellName(grid_, row, col);
    return {{grid.x + grid_.CellLeft(), grid.y + grid_.CellTop(), grid_.CellWidth(),
             grid_.CellHeight()},
            grid_.TextMatrix(row, col),
            name,
            grid_.StandsRight(row, col),
            col == column::kBezeichnung ? kMaxBezeichnung : 0,
            OffersList()};
}

void CellEditor::Open() {
    grid_.SetFocusRect(FocusRectStyle::kNone);
    state_.EditRow = grid_.Row();
    state_.EditCol = grid_.Col();
    state_.LastValidText = grid_.TextMatrix(state_.EditRow, state_.EditCol);
    std::wstring name;
    view_.Open(CurrentCell(name));
    // What the box really holds: it may not have taken every character.
    state_.LastValidText = view_.Text();
    RememberSelection();
}

void CellEditor::Liste_RowColChange() {
    if (state_.InitPending || state_.Loading) return;
    ShowPosition(context_);
    CommitCellEdit();
    if (state_.SuppressEditor) return;
    if (Editable()) Open();
}

void CellEditor::Liste_Scroll() {
    CommitCellEdit();
    Liste_RowColChange();
}

void CellEditor::OpenIfClosed() {
    const bool idle = state_.InitPending || state_.Loading || state_.SuppressEditor;
    if (!idle && !view_.IsOpen() && Editable()) Open();
}

void CellEditor::OpenHere() {
    if (view_.IsOpen() || !CurrentMayBeEdited()) return;
    BringCellIntoView(context_, grid_.Row(), grid_.Col());  // which may open it already
    OpenIfClosed();
}

void CellEditor::Liste_KeyDown(int& key, int shift) {
    const bool plain = shift == 0;
    switch (key) {
        case key_code::kTab:
            if (!plain && shift != shift_state::kShift) return;
            GoToNextCell(plain ? 1 : -1);
            break;
        case key_code::kF2:
        case key_code::kReturn:
        case key_code::kDelete:
            if (!plain) return;
            if (view_.IsOpen()) {
                view_.Focus();
                view_.TakeKey(key);
            } else if (key != key_code::kDelete && CurrentMayBeEdited()) {
                OpenHere();
            } else {
                return;
            }
            break;
        default:
            return;
    }
    key = 0;
}

void CellEditor::Liste_KeyPress(int& character) {
    const bool typed = character >= L' ' && character != L'\x7F';
    if (typed) OpenHere();
    if (!view_.IsOpen() || !(typed || character == L'\b')) return;
    view_.Focus();
    view_.TakeCharacter(static_cast<wchar_t>(character));
    character = 0;
}

void CellEditor::Liste_Acted() {
    if (grid_.Row() != grid_.RowSel() || grid_.Col() != grid_.ColSel()) return;
    LiftAboveEdge(grid_, grid_.Row());
    OpenIfClosed();
}

void CellEditor::CommitCellEdit() {
    if (!view_.IsOpen()) return;
    CloseList();
    view_.Close();
    // From here on the editor is closed, so that whatever happens meanwhile (a message, a nested
    // change of the current cell) finds nothing to commit.
    const ScopeExit focus_rect_back([this] {
        if (!view_.IsOpen()) grid_.SetFocusRect(FocusRectStyle::kLight);  // not opened again
    });

    BeginChange(context_);
    const std::int32_t row = state_.EditRow;
    const std::int32_t col = state_.EditCol;
    const std::wstring typed = OneLine(view_.Text());
    const std::wstring old(grid_.TextMatrix(row, col));
    table_.SetCell(row, col, typed);
    if (col == column::kArtNr && table_.IsArticleRow(row)) {
        CommitArticleNumber(row, col, typed, old);
    } else if (col == column::kMenge) {
        // The current cell may be another one already when a click has moved it.
        if (row != grid_.Row()) table_.TryRecalculate(row);
        table_.TryRecalculate(grid_.Row());
    }
}

// After an article that could not be completed: the row is what it was.
void CellEditor::PutBack(std::int32_t row, const std::array<std::wstring, column::kCount>& texts) {
    for (std::int32_t col = column::kArtNr; col < column::kCount; ++col) {
        table_.SetCell(row, col, texts[static_cast<std::size_t>(col)]);
    }
    try {
        table_.Recalculate(table_.TotalsRow());
    } catch (const Error&) {  // the caller has an error to tell already
    }
}

void CellEditor::CommitArticleNumber(std::int32_t row, std::int32_t col, const std::wstring& typed,
                                     const std::wstring& old) {
    std::array<std::wstring, column::kCount> before;
    for (std::int32_t c = 0; c < column::kCount; ++c) {
        before[static_cast<std::size_t>(c)] = grid_.TextMatrix(row, c);
    }
    before[static_cast<std::size_t>(col)] = old;
    bool found = false;
    try {
        found = RefreshArtikel(context_, *this, row, 1);
    } catch (const IncompleteLine&) {
        found = true;  // what is incomplete is told in the note
    } catch (...) {
        PutBack(row, before);
        throw;
    }
    if (found) {
        CommitCellEdit();
        Liste_RowColChange();
        return;
    }
    context_.services.messages.Show(L"'" + typed + L"' ist keine gültige Artikelnummer", L"",
                                    MessageButtons::kOk, MessageIcon::kNone);
    // While the message stood there, the host may have replaced the basket; only the cell that
    // still holds the refused number gets its old text back.
    if (row <= table_.LastRow() && grid_.TextMatrix(row, col) == typed) {
        table_.SetCell(row, col, old);
    }
}

void CellEditor::CloseEditor() {
    // A number just typed and found opens the editor on the quantity, whose commit opens nothing.
    for (int round = 0; round < 3 && view_.IsOpen(); ++round) CommitCellEdit();
}

void CellEditor::NumberFormatChanged(const std::function<void()>& change) {
    const ITextService& text = context_.services.text;
    if (!view_.IsOpen() || state_.EditCol != column::kMenge) return change();
    const std::optional<double> old = text.TryNumber(view_.Text());
    change();
    if (!old || text.TryNumber(view_.Text()) == old) return;
    state_.LastValidText = text.FromNumber(*old);
    view_.SetText(state_.LastValidText);
    view_.Select(static_cast<std::int32_t>(state_.LastValidText.size()), 0);
}

void CellEditor::Realign() {
    if (!view_.IsOpen()) return;
    if (state_.EditRow == grid_.Row() && state_.EditCol == grid_.Col() && WhollyVisible()) {
        std::wstring name;
        view_.Realign(CurrentCell(name));
    } else {
        CommitCellEdit();
    }
}

bool CellEditor::TypedInto() const {
    return view_.IsOpen() && view_.Text() != grid_.TextMatrix(state_.EditRow, state_.EditCol);
}

void CellEditor::IPText_KeyDown(int& key_code, int shift) {
    if (!view_.IsOpen()) return;  // a key that was on its way when the editor closed
    RememberSelection();
    const EditorKeyRow* row = FindEditorKey(*this, key_code, shift);
    if (row == nullptr) return;
    key_code = 0;
    row->act(*this);
}

void CellEditor::IPText_KeyPress(int& key_ascii) {
    if (key_ascii == key_code::kReturn) key_ascii = 0;
}

void CellEditor::CommitAndSend(GridKey key) {
    CloseEditor();
    context_.view.SendGridKey(key);
}

void CellEditor::Reopen() {
    const HeldEditorScope held(view_, state_);
    CommitCellEdit();
    Liste_RowColChange();
}

void CellEditor::ReturnInDescription() {
    if (state_.EditRow == table_.TotalsRow()) {
        AppendEmptyRow(context_, *this);
    } else {
        InsertArtikel(context_, *this, state_.EditRow + 1, 1);
    }
}

void CellEditor::GoToNextCell(std::int32_t step) {
    // The commit may leave the cell that was edited for another one of its row.
    const bool open = view_.IsOpen();
    std::int32_t row = open ? state_.EditRow : grid_.Row();
    std::int32_t col = open ? state_.EditCol : grid_.Col();
    CloseEditor();
    if (step > 0) {
        row = std::max(row, 0);
    } else {
        row = std::min(row, table_.TotalsRow());
        col = std::min(col, column::kMenge + 1);
    }
    do {
        col += step;
        if (col < column::kArtNr || col > column::kMenge) {
            row += step;
            col = step > 0 ? column::kArtNr : column::kMenge;
        }
        if (row < 1 ? step < 0 : row > table_.LastRow() && step > 0) return OpenHere();
    } while (!MayEdit(row, col));
    {
        const SuppressEditorScope suppress(state_);
        grid_.SetRow(row);
        grid_.SetCol(col);
        BringCellIntoView(context_, row, col);
    }
    OpenIfClosed();
}

void CellEditor::ExtendSelection(std::int32_t step) {
    SuppressEditorScope suppress(state_);
    CloseEditor();
    suppress.Set();
    grid_.SetRow(state_.EditRow);
    grid_.SetRowSel(state_.EditRow + step);
}

void CellEditor::IPText_Change() {
    // The box may hold less than it is given, and then each attempt to set it right is a change.
    if (state_.EditCol != column::kMenge || restoring_) return;
    const std::wstring text = view_.Text();
    if (!context_.services.text.TryNumber(text)) {
        RestoreLastValidText();
        return;
    }
    state_.LastValidText = text;
    RememberSelection();
}

void CellEditor::RememberSelection() {
    before_ = view_.Selection();
}

void CellEditor::RestoreLastValidText() {
    const auto [start, length] = before_;
    {
        const FlagWhile restoring(restoring_);
        view_.SetText(state_.LastValidText);
    }
    // The caret goes back to where it was before the refused change: "1a2" is typed as "12".
    const auto size = static_cast<std::int32_t>(state_.LastValidText.size());
    const std::int32_t kept = std::clamp(start, 0, size);
    view_.Select(kept, std::clamp(length, 0, size - kept));
}

void CellEditor::SetFocusTimer_Timer() {
    if (view_.ListIsOpen()) {
        if (view_.ListHasFocus()) return;
        IPComboList_LostFocus();
    } else if (view_.IsOpen()) {
        view_.Focus();
    }
    view_.StopSetFocusTimer();
}

}  // namespace demovex
