// The grid for screen readers and other assistive programs (MSAA): a table whose children are its
// cells as simple elements. A cell's child id is row * Cols + column + 1; header cells and line
// numbers are column and row headers. A cell's name is its column title and row number ("Menge,
// Zeile 3"), its value is its text. The table's name is the control's window text ("Tabelle" when
// it has none).
//
// When rows come, go or move, children have other numbers: programs hear of it (a reorder) and ask
// anew. A changed text is told by its cell's number.
//
// The accessible object is counted by references and may outlive the window: from the window's
// destruction on it answers CO_E_OBJNOTCONNECTED. It holds `module_lock` as long as it lives, so
// that its code stays loaded.
#pragma once

#include <windows.h>

#include <oleacc.h>

#include <memory>

#include "grid/grid_news.h"
#include "platform/com_ptr_win.h"

namespace demovex {

class FlexGridImplWin;
class GridAccessible;

// The control's side: makes the object when first asked, tells of changes, disconnects at the end.
class GridAccessibility {
  public:
    explicit GridAccessibility(FlexGridImplWin& owner);
    ~GridAccessibility();
    GridAccessibility(const GridAccessibility&) = delete;
    GridAccessibility& operator=(const GridAccessibility&) = delete;

    // The answer to WM_GETOBJECT for OBJID_CLIENT.
    LRESULT Answer(WPARAM wparam);
    // The window goes away.
    void Disconnect() noexcept;

    // What is to be told. It is told when the program comes back to its message loop, once for all
    // that a command has changed, and not before the grid repaints again.
    void CurrentCellChanged();
    void SelectionChanged();
    void CellChanged(std::int32_t row, std::int32_t col);
    void CellsMoved();
    void TellSoon();
    // The message that the control has posted to itself.
    void Tell();

    void SetModuleLock(std::shared_ptr<void> lock) { module_lock_ = std::move(lock); }

  private:
    FlexGridImplWin& owner_;
    GridNews news_;
    bool posted_ = false;
    ComPtr<GridAccessible> object_;  // given back by Disconnect
    std::shared_ptr<void> module_lock_;
};

}  // namespace demovex
