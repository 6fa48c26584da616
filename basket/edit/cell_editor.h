// The in-place cell editor: a text box laid over the current cell whenever that cell may be edited.
//
// Every change of the current cell commits the text being edited and opens the editor on the new
// cell. There is no way to abandon an edit; whoever leaves a cell calls CommitCellEdit. Keys that
// leave the cell are committed first and then queued for the grid, which moves its current cell and
// so opens the editor again.
#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <string>

#include "basket/edit/cell_commit.h"
#include "basket/rows/columns.h"
#include "basket/state.h"
#include "basket/view.h"

namespace demovex {

class CellEditor final : public ICellCommit {
  public:
    // `context` outlives the editor.
    explicit CellEditor(BasketContext& context);

    // Opens the editor on the current cell when it may be edited; commits the one left behind.
    void Liste_RowColChange() override;
    void Liste_Scroll();

    // --- input that the grid got; a handler that uses a key sets it to 0
    // Tab goes on to the next cell. F2, Return and a character that can be typed open the editor on
    // the current cell when it may be edited; with an open editor these, Delete and Backspace go to
    // the text box.
    void Liste_KeyDown(int& key_code, int shift);
    void Liste_KeyPress(int& character);
    // The user has moved or pressed on the current cell, or tried to: a single cell that may be
    // edited is edited.
    void Liste_Acted();

    // Writes the text back when the editor is open. A number that the article master does not know
    // is refused with a message and the old text returns; one that it knows completes the row and
    // opens the editor on its quantity. A quantity recalculates the totals, which may raise 13 or 6
    // (the text is in its cell then and the editor closed).
    void CommitCellEdit() override;
    void CloseEditor() override;

    // Puts the open editor over its cell again after columns have changed their widths; commits it
    // when the cell is no longer wholly visible. What is being typed stays as it is.
    void Realign();

    // The number format changes: `change`, which is called once in any case, makes the text service
    // use the new one. A quantity that is being typed and would read differently is written anew.
    void NumberFormatChanged(const std::function<void()>& change);

    // Whether the editor is open on a text that its cell does not have yet.
    bool TypedInto() const;

    // --- the text box; a handler that uses a key sets it to 0
    void IPText_KeyDown(int& key_code, int shift);
    void IPText_KeyPress(int& key_ascii);
    void IPText_Change();

    // --- the drop-down list
    void IPComboButton_Click();
    void IPComboList_KeyDown(int& key_code, int shift);
    void IPComboList_MouseMove(Twips y);
    void IPComboList_MouseUp(Twips y);
    void IPComboList_LostFocus();
    // A top-level menu opens: the list closes.
    void CloseList();

    void SetFocusTimer_Timer();

    // Which cells offer a list; none does unless a test says so. Null means none.
    void SetOffersList(bool (*offers)(std::int32_t row, std::int32_t col)) { offers_ = offers; }

    // --- what the key table is made of
    FlexGrid& Grid() { return grid_; }
    IEditorView& View() { return view_; }
    const BasketState& State() const { return state_; }
    void CommitAndSend(GridKey key);
    void Reopen();
    void ReturnInDescription();
    // Commits, and opens the editor on the next cell (the one before, when `step` is −1) that may
    // be edited: number, quantity or description, row by row. Stays on the last (first) one.
    void GoToNextCell(std::int32_t step);
    // Closes the editor and selects from the edited row to the one `step` rows away.
    void ExtendSelection(std::int32_t step);

  private:
    // By its column and row alone.
    bool MayEdit(std::int32_t row, std::int32_t col) const;
    // The current cell, alone selected.
    bool CurrentMayBeEdited() const;
    bool Editable() const;
    void OpenIfClosed();
    // The same, with the current cell brought into view first.
    void OpenHere();
    bool WhollyVisible() const;
    bool OffersList() const;
    // The current cell, for the view; refers to `name`.
    IEditorView::Cell CurrentCell(std::wstring& name) const;
    void Open();
    void PutBack(std::int32_t row, const std::array<std::wstring, column::kCount>& texts);
    void CommitArticleNumber(std::int32_t row, std::int32_t col, const std::wstring& typed,
                             const std::wstring& old);
    void RememberSelection();
    void RestoreLastValidText();
    void TakeListEntry(std::int32_t index);

    BasketContext& context_;
    FlexGrid& grid_;
    IEditorView& view_;
    BasketState& state_;
    OrderTable& table_;
    bool (*offers_)(std::int32_t row, std::int32_t col) = nullptr;
    // The text box's selection before the change that is being made, for undoing it.
    IEditorView::Range before_;
    bool restoring_ = false;  // the last valid text is being put back
};

}  // namespace demovex
