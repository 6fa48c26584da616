#include "basket/edit/editor_keys.h"

#include "basket/rows/columns.h"

namespace demovex {
namespace {

bool Always(CellEditor&) {
    return true;
}
bool CaretAtStart(CellEditor& e) {
    return e.State().EditCol >= 2 && e.View().Selection().start == 0;
}
bool CaretAtEnd(CellEditor& e) {
    const auto length = static_cast<std::int32_t>(e.View().Text().size());
    const auto [start, selected] = e.View().Selection();
    return start + selected == length && e.State().EditCol < e.Grid().Cols() - 1;
}
bool RowAbove(CellEditor& e) {
    return e.Grid().Row() >= 2;
}
bool RowBelow(CellEditor& e) {
    return e.Grid().Row() < TotalsRow(e.Grid());
}
bool EditRowAbove(CellEditor& e) {
    return e.State().EditRow >= 2;
}
bool EditRowBelow(CellEditor& e) {
    return e.State().EditRow < TotalsRow(e.Grid());
}
bool ButtonVisible(CellEditor& e) {
    return e.View().OffersList();
}
bool InDescription(CellEditor& e) {
    return e.State().EditCol == column::kBezeichnung;
}

template <GridKey key>
void Send(CellEditor& e) {
    e.CommitAndSend(key);
}
template <std::int32_t step>
void Extend(CellEditor& e) {
    e.ExtendSelection(step);
}
void DropSelection(CellEditor& e) {
    e.View().Select(e.View().Selection().start, 0);
}
void DropDown(CellEditor& e) {
    e.IPComboButton_Click();
}
void ReopenCell(CellEditor& e) {
    e.Reopen();
}
void NewRow(CellEditor& e) {
    e.ReturnInDescription();
}
template <std::int32_t step>
void NextCell(CellEditor& e) {
    e.GoToNextCell(step);
}

using namespace shift_state;

constexpr EditorKeyRow kKeys[] = {
    {0, key_code::kLeft, CaretAtStart, Send<GridKey::kLeft>},
    {0, key_code::kRight, CaretAtEnd, Send<GridKey::kRight>},
    {0, key_code::kUp, RowAbove, Send<GridKey::kUp>},
    {0, key_code::kPageUp, RowAbove, Send<GridKey::kPageUp>},
    {0, key_code::kDown, RowBelow, Send<GridKey::kDown>},
    {0, key_code::kPageDown, RowBelow, Send<GridKey::kPageDown>},
    {0, key_code::kF2, Always, DropSelection},
    {0, key_code::kF4, ButtonVisible, DropDown},
    {0, key_code::kReturn, InDescription, NewRow},
    {0, key_code::kReturn, Always, ReopenCell},
    {0, key_code::kTab, Always, NextCell<1>},
    {kShift, key_code::kTab, Always, NextCell<-1>},
    {kShift, key_code::kUp, EditRowAbove, Extend<-1>},
    {kShift, key_code::kDown, EditRowBelow, Extend<1>},
    {kAlt, key_code::kDown, ButtonVisible, DropDown},
};

}  // namespace

const EditorKeyRow* FindEditorKey(CellEditor& editor, int key, int shift) {
    for (const EditorKeyRow& row : kKeys) {
        if (row.key == key && row.shift == shift && row.applies(editor)) return &row;
    }
    return nullptr;
}

}  // namespace demovex
