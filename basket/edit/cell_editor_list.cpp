// CellEditor: the drop-down list, which no cell offers unless a test says so.
#include <algorithm>
#include <string>
#include <vector>

#include "basket/edit/cell_editor.h"
#include "basket/edit/editor_keys.h"

namespace demovex {
namespace {

// From a cell's upper edge to the list below it.
constexpr Twips kListBelow = 225;

}  // namespace

void CellEditor::IPComboButton_Click() {
    if (view_.ListIsOpen()) {
        view_.CloseList();
        return;
    }
    const TwipsPoint grid = context_.view.GridOrigin();
    const Twips height = view_.ListHeight();
    const Twips cell_top = grid_.CellTop();
    const bool above = grid_.Height() < cell_top + height;
    const std::vector<std::wstring> entries = view_.ListEntries();
    const auto current = std::ranges::find(entries, grid_.TextMatrix(grid_.Row(), grid_.Col()));
    view_.OpenList(
        {grid_.CellLeft(), grid.y + cell_top + (above ? -height : kListBelow)},
        current == entries.end() ? -1 : static_cast<std::int32_t>(current - entries.begin()));
}

void CellEditor::IPComboList_KeyDown(int& key, int shift) {
    static_cast<void>(shift);  // the list does not tell shift states apart
    switch (key) {
        case key_code::kReturn:
            TakeListEntry(view_.ListIndex());
            break;
        case key_code::kF2:
        case key_code::kF4:
        case key_code::kEscape:
            break;
        default:
            return;
    }
    key = 0;
    CloseList();
}

void CellEditor::IPComboList_MouseMove(Twips y) {
    const std::int32_t entry = std::clamp(y / kListRowHeight, 0, kListRows - 1);
    const auto last = static_cast<std::int32_t>(view_.ListEntries().size()) - 1;
    if (last >= 0) view_.SetListIndex(std::min(entry, last));
}

void CellEditor::IPComboList_MouseUp(Twips y) {
    const std::int32_t entry = y / kListRowHeight;
    if (entry < kListRows) TakeListEntry(entry);
    CloseList();
}

void CellEditor::TakeListEntry(std::int32_t index) {
    const std::vector<std::wstring> entries = view_.ListEntries();
    if (index < 0 || index >= static_cast<std::int32_t>(entries.size())) return;
    view_.SetText(entries[static_cast<std::size_t>(index)]);
    view_.Select(0, static_cast<std::int32_t>(view_.Text().size()));
}

void CellEditor::IPComboList_LostFocus() {
    CloseList();
}

void CellEditor::CloseList() {
    if (view_.ListIsOpen()) view_.CloseList();
}

}  // namespace demovex
