// FlexGridControl: the window "DemoVexClient.FlexGrid" around a FlexGrid.
//
// It owns the window, forwards keys, mouse and wheel to the grid, paints the invalid part through a
// back buffer, shows the scroll bars (32-bit positions) and answers screen readers (a table of
// cells, see grid_accessible_win.h).
//
//   FlexGridControl liste(module, parent, child_id::kListe, {0, 360, 9000, 4500}, Scale(dpi), text,
//                         font);
//   liste.SetEvents(&mouse_and_errors);       // MouseUp, DblClick, Failed
//   liste.Grid().SetEvents(&current_cell);    // RowColChange, SelChange, Scroll
//   liste.Move({0, 360, 12000, 6000});
//   liste.SendKey(GridKey::kDown);            // queued, handled after the current handler
//
// Places. The control is created and moved in twips of the parent's client area. The grid's
// CellLeft, CellTop, RowPos and ColPos count from the control's outer top left corner, its sunken
// border of two pixels included; so a sibling placed at the control's left + CellLeft(), top +
// CellTop() with CellWidth() and CellHeight() covers the cell's inside exactly. Cell text begins
// (45, 15) twips inside the cell: a text box there with the same font, no border and no margins
// (EM_SETMARGINS 0) shows its text exactly over the cell's. The control is created with
// WS_CLIPSIBLINGS; an editor lying over it is not painted over as long as it is above it in
// z-order.
//
// Rows are at least 240 twips high by default, and as high as the font needs.
//
// Mouse. A press takes the focus. The right button changes neither cell nor selection, is reported
// through MouseUp and makes no WM_CONTEXTMENU; the menu key and Shift+F10 do (it goes to the parent
// with (-1, -1)). The wheel reaches the window with the focus, so the parent hands it on:
//   case WM_MOUSEWHEEL: case WM_MOUSEHWHEEL: return SendMessageW(liste.Handle(), msg, wp, lp);
//
// Errors. Nothing leaves the window procedure. An error of an event handler (or of memory) is
// handed to IFlexGridControlEvents::Failed.
//
// Life. The window dies with the object, or before it with its parent; Handle() is null from then
// on and the grid stays usable. The object may be destroyed by one of its own events. One thread.
#pragma once

#include <windows.h>

#include <memory>

#include "base/error.h"
#include "grid/flex_grid.h"
#include "platform/shift_state.h"
#include "platform/text.h"

namespace demovex {

inline constexpr wchar_t kFlexGridControlClass[] = L"DemoVexClient.FlexGrid";

// Values of `button` in the mouse events; `shift` has the bits of shift_state.
namespace grid_mouse {
inline constexpr int kLeft = 1;
inline constexpr int kRight = 2;
inline constexpr int kMiddle = 4;
}  // namespace grid_mouse

class IFlexGridControlEvents {
  public:
    virtual ~IFlexGridControlEvents() = default;
    // A button was released over the grid or after a drag; the place is twips from the control's
    // outer top left corner.
    virtual void MouseUp(int button, int shift, Twips x, Twips y) = 0;
    // The left button was pressed twice on a cell that is not fixed.
    virtual void DblClick() = 0;
    // A key or a character that the grid has no use for (`shift` as in MouseUp). Each answers
    // whether it is used up.
    virtual bool KeyPressed(int key, int shift) = 0;
    virtual bool CharacterTyped(wchar_t character) = 0;
    // The user has pressed a key other than Shift, Ctrl and Alt, or a mouse button; nothing of it
    // is dealt with yet.
    virtual void InputBegins() {}
    // The user's key or released left button, or a keystroke of SendKey, has been dealt with,
    // whether or not it has moved the current cell.
    virtual void UserActed() = 0;
    // An error that reached the window procedure.
    virtual void Failed(const CaughtError& error) noexcept = 0;
};

class FlexGridImplWin;

class FlexGridControl {
  public:
    // `rect` is in twips of `parent`'s client area. `text` decides what reads as a number and
    // outlives the control. `font` is observed, the bold one is made from it; null means the
    // system's own message font at `scale`. Raises 7 when the system refuses the window.
    FlexGridControl(HINSTANCE module, HWND parent, int id, const TwipsRect& rect, Scale scale,
                    const ITextService& text, HFONT font = nullptr);
    ~FlexGridControl();
    FlexGridControl(const FlexGridControl&) = delete;
    FlexGridControl& operator=(const FlexGridControl&) = delete;

    // Takes the window class from the system, which keeps it beyond the module that registered it.
    // Idle while a control of that module stands.
    static void UnregisterWindowClass(HINSTANCE module) noexcept;

    FlexGrid& Grid();
    const FlexGrid& Grid() const;
    HWND Handle() const noexcept;

    // Observed; null for none.
    void SetEvents(IFlexGridControlEvents* events) noexcept;
    // Moves the control in its parent's client area.
    void Move(const TwipsRect& rect);
    // Changes the font (observed) and the default row height with it.
    void SetFont(HFONT font);
    HFONT Font() const noexcept;
    // Another screen: the same twips in other pixels, with a font of that screen (observed).
    void SetScale(Scale scale, HFONT font);
    // Width of a text in the grid's font.
    Twips TextWidth(std::wstring_view text, bool bold) const;
    // Queues a keystroke without modifiers, whatever keys the user holds at the moment. Idle when
    // the window is gone.
    void SendKey(GridKey key);
    // Held by the accessible object for as long as a screen reader holds that: keeps the module
    // loaded. Set before the window is shown.
    void SetModuleLock(std::shared_ptr<void> lock);
    // Paints what is invalid now instead of when the program is idle.
    void Update();

  private:
    std::shared_ptr<FlexGridImplWin> impl_;
};

// A NumberTest by the user's locale: ToNumber accepts the text.
NumberTest NumberTestOf(const ITextService& text);

}  // namespace demovex
