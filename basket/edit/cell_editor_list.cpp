// CellEditor: the drop-down list, which no cell offers unless a test says so.
#include <algorithm>

#include "basket/edit/cell_editor.h"
#include "basket/edit/editor_keys.h"

namespace demovex {
namespace {

// The list below a cell, and its entries.
constexpr Twips kListBelow = 225;
constexpr Twips kEntryHeight = 195;
constexpr std::int32_t kShownEntries = 3;

}  // namespace

void CellEditor::IPComboButton_Click() {
    if (view_.ComboListVisible()) {
        IPComboList_LostFocus();
        return;
    }
    const TwipsPoint grid = context_.view.GridOrigin();
    const Twips height = view_.ComboListHeight();
    const Twips cell_top = grid_.CellTop();
    const bool above = grid_.Height() < cell_top + height;
    view_.MoveComboList(grid_.CellLeft(), grid.y + cell_top + (above ? -height : kListBelow));
    const std::wstring current(grid_.TextMatrix(grid_.Row(), grid_.Col()));
    std::int32_t selected = -1;
    for (std::int32_t i = 0; i < view_.ComboListCount() && selected < 0; ++i) {
        if (view_.ComboListText(i) == current) selected = i;
    }
    view_.SetComboListIndex(selected);
    view_.ShowComboList(true);
    view_.FocusComboList();
    view_.DrawComboButton(true);
    view_.EnableSetFocusTimer(true);
}

void CellEditor::IPComboList_KeyDown(int& key, int shift) {
    static_cast<void>(shift);  // the list does not tell shift states apart
    switch (key) {
        case key_code::kReturn:
            TakeListEntry(view_.ComboListIndex());
            break;
        case key_code::kF2:
        case key_code::kF4:
        case key_code::kEscape:
            break;
        default:
            return;
    }
    key = 0;
    IPComboList_LostFocus();
}

void CellEditor::IPComboList_MouseMove(Twips y) {
    const std::int32_t entry = std::clamp(y / kEntryHeight, 0, kShownEntries - 1);
    const std::int32_t last = view_.ComboListCount() - 1;
    if (last >= 0) view_.SetComboListIndex(std::min(entry, last));
}

void CellEditor::IPComboList_MouseUp(Twips y) {
    const std::int32_t entry = y / kEntryHeight;
    if (entry < kShownEntries) TakeListEntry(entry);
    IPComboList_LostFocus();
}

void CellEditor::TakeListEntry(std::int32_t index) {
    if (index < 0 || index >= view_.ComboListCount()) return;
    const std::wstring entry = view_.ComboListText(index);
    view_.SetText(entry);
    view_.Select(0, static_cast<std::int32_t>(view_.Text().size()));
}

void CellEditor::IPComboList_LostFocus() {
    if (!view_.ComboListVisible()) return;
    view_.ShowComboList(false);
    view_.DrawComboButton(false);
}

void CellEditor::CloseList() {
    if (view_.ComboListVisible()) IPComboList_LostFocus();
}

}  // namespace demovex
