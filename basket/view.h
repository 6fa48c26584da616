// The basket window as the deciding code sees it: controls to show, move and read, nothing that
// decides. Implemented by the real window (window/) and by a fake in the tests.
//
// Rectangles are twips in the window's client area. No operation raises the form's events from
// within, except those of the editor that say so.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "base/geometry.h"
#include "basket/commands/commands.h"
#include "basket/edit/editor_view.h"
#include "grid/flex_grid.h"

namespace demovex {

// Keystrokes that a command hands to the focused text box.
enum class EditKey { kCut, kCopy, kPaste };

// The toolbar's height is a given; the status bar's is measured.
inline constexpr Twips kToolbarHeight = 360;

class IBasketView {
  public:
    virtual ~IBasketView() = default;

    virtual IEditorView& Editor() = 0;

    // Queues a keystroke for the grid; it is processed after the current handler has returned.
    virtual void SendGridKey(GridKey key) = 0;
    // Hands Ctrl+X, Ctrl+C or Ctrl+V to the control that has the focus, when it is IPText.
    virtual void SendEditKey(EditKey key) = 0;

    // The grid's place in the window, and the window's inner size.
    virtual TwipsPoint GridOrigin() const = 0;
    // Scrolls the grid as little as it takes to have the cell wholly inside what its scroll bars
    // leave free; a cell of column 0 brings its row into view and leaves the columns where they
    // are. The grid's Scroll event follows as for any scrolling.
    virtual void ShowGridCell(std::int32_t row, std::int32_t col) = 0;
    virtual void MoveGrid(const TwipsRect& rect) = 0;
    virtual Twips InnerWidth() const = 0;
    virtual Twips InnerHeight() const = 0;
    virtual bool Minimised() const = 0;

    virtual void SetCaption(std::wstring_view caption) = 0;
    virtual void SetStatusText(std::wstring_view text) = 0;
    virtual std::wstring StatusText() const = 0;  // what SetStatusText was last told
    // Shows `text` in the note at the right of the status bar; empty clears it. The text goes by
    // itself after a while; the form clears it when an action begins (see basket/window/note.h).
    virtual void ShowNote(std::wstring_view text) = 0;
    virtual Twips StatusbarHeight() const = 0;
    virtual void SetToolbarVisible(bool visible) = 0;
    virtual void SetStatusbarVisible(bool visible) = 0;

    virtual void SetMenuState(Command item, const MenuItemState& state) = 0;
    virtual void SetMenuCaption(Command item, std::wstring_view caption) = 0;
    // Fills the image list and the toolbar from their tables.
    virtual void BuildToolbar() = 0;
    // Shows the context menu at a point of the window; its default item is bold.
    virtual void PopupContextMenu(const TwipsPoint& at) = 0;

    // Width of a text in the grid's font.
    virtual Twips MeasureGridText(std::wstring_view text, bool bold) = 0;

    // Wait cursor, and after a while a determinate progress in the status bar; fraction 0 to 1.
    virtual void BeginProgress(std::wstring_view what) = 0;
    virtual void SetProgress(double fraction) = 0;
    virtual void EndProgress() = 0;
    // Whether the user has pressed Escape since the progress shows. Costs little, and takes no
    // other input.
    virtual bool Cancelled() = 0;

    // For long work on the window's thread: paints at once what is due for painting in the window
    // and its controls. It takes no input and sends no message that could start a command.
    virtual void KeepPainted() = 0;

    virtual void ShowAboutBox() = 0;

    // Closes the window as the user would; the unload event asks and may cancel.
    virtual void RequestClose() = 0;
};

}  // namespace demovex
