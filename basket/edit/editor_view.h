// The in-place editor as the deciding code sees it: a text box laid over a cell, with a drop-down
// list beside it that no cell offers unless a test says so. Implemented by the real controls
// (window/editor_win.h) and by a fake in the tests; called by CellEditor alone.
//
// The order of calls: Open; then Text, SetText, Select, Focus, TakeKey, TakeCharacter, Realign and
// what concerns the list, as often as wanted; then Close, after CloseList when the list is open.
// Text answers after Close, too: what was typed last, until the next Open. No operation raises the
// form's events from within, except that Open and SetText raise IPText_Change like the platform's
// text box does when its text really changes.
#pragma once

#include <algorithm>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "base/geometry.h"
#include "grid/flex_grid.h"

namespace demovex {

// Where the text box and the button that drops the list lie, from the cell's top left corner. The
// text box has no border and no margins, so its text stands where the cell's own stood.
struct EditorLayout {
    TwipsRect text;
    TwipsRect button;
};
inline EditorLayout LayOutEditor(const TwipsRect& cell, Twips button_width) {
    constexpr Twips left = FlexGrid::kTextLeft, top = FlexGrid::kTextTop;
    return {{left, top, cell.width - left - button_width, cell.height - top},
            {cell.width - button_width, 0, button_width, cell.height}};
}

// The drop-down list: so many entries are in view, each so high.
inline constexpr std::int32_t kListRows = 3;
inline constexpr Twips kListRowHeight = 195;

// IPComboButton and IPComboList. Entries count from 0; −1 is no selection.
class IEditorList {
  public:
    virtual ~IEditorList() = default;

    // Whether the open editor has the button that drops the list.
    virtual bool OffersList() const = 0;
    virtual Twips ListHeight() const = 0;
    virtual std::vector<std::wstring> ListEntries() const = 0;
    // Drops the list with its top left corner at `at` of the window's client area and focuses it;
    // SetFocusTimer runs from then on. The button shows as pressed until CloseList.
    virtual void OpenList(const TwipsPoint& at, std::int32_t selected) = 0;
    virtual void CloseList() = 0;
    virtual bool ListIsOpen() const = 0;
    virtual std::int32_t ListIndex() const = 0;
    virtual void SetListIndex(std::int32_t index) = 0;
    virtual bool ListHasFocus() const = 0;
};

// IPBackground with IPText in it.
class IEditorView : public IEditorList {
  public:
    // A cell to be edited.
    struct Cell {
        TwipsRect rect;               // in the window's client area
        std::wstring_view text;       // what it shows
        std::wstring_view name;       // what assistive programs call it
        bool stands_right = false;    // the cell's own text
        std::int32_t max_length = 0;  // of what is typed, in characters; 0 is unlimited
        bool offers_list = false;
    };

    // Lays the text box over the cell, with its text, all of it selected; what the box could undo
    // is forgotten. SetFocusTimer runs from then on: it calls TestLibForm::SetFocusTimer_Timer
    // after the current event, and again until it is stopped.
    virtual void Open(const Cell& cell) = 0;
    // Puts an open editor over its cell again; text, selection and maximum length stay.
    virtual void Realign(const Cell& cell) = 0;
    // Hides the text box and stops SetFocusTimer.
    virtual void Close() = 0;
    virtual bool IsOpen() const = 0;
    // While held, an editor that is closed may stay on the screen until it is let go, so that one
    // that is opened again meanwhile need not come and go. Nothing that shows a window of its own
    // or waits for the user may run meanwhile.
    virtual void Hold(bool /*hold*/) {}

    virtual std::wstring Text() const = 0;
    virtual void SetText(std::wstring_view text) = 0;
    // Characters, counted from 0.
    struct Range {
        std::int32_t start = 0;
        std::int32_t length = 0;
    };
    virtual Range Selection() const = 0;
    virtual void Select(std::int32_t start, std::int32_t length) = 0;
    virtual void Focus() = 0;
    virtual void StopSetFocusTimer() = 0;
    // Input that reached another control, for the text box to handle as its own: a key, and a
    // character that the user typed.
    virtual void TakeKey(int key_code) = 0;
    virtual void TakeCharacter(wchar_t character) = 0;
};

}  // namespace demovex
