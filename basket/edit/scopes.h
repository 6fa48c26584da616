// Scopes that put the grid and the editor flag right whichever way a command is left: an editor
// that stays suppressed would never open again, a grid that stays off would never repaint.
#pragma once

#include "basket/edit/editor_view.h"
#include "basket/rows/columns.h"
#include "basket/state.h"

namespace demovex {

// Sets the flag and clears it at the end of the scope, whichever way it is left. Clearing does not
// restore an outer scope's flag: the innermost user is done moving the current cell, and whoever
// needs the flag beyond that sets it again.
class SuppressEditorScope {
  public:
    explicit SuppressEditorScope(BasketState& state) : state_(state) { Set(); }
    ~SuppressEditorScope() { Clear(); }
    SuppressEditorScope(const SuppressEditorScope&) = delete;
    SuppressEditorScope& operator=(const SuppressEditorScope&) = delete;

    void Set() { state_.SuppressEditor = true; }
    void Clear() { state_.SuppressEditor = false; }

  private:
    BasketState& state_;
};

// Switches the grid's painting off and on again at the end of the scope.
class RedrawOffScope {
  public:
    explicit RedrawOffScope(FlexGrid& grid) : grid_(grid) { grid_.SetRedraw(false); }
    ~RedrawOffScope() { grid_.SetRedraw(true); }
    RedrawOffScope(const RedrawOffScope&) = delete;
    RedrawOffScope& operator=(const RedrawOffScope&) = delete;

  private:
    FlexGrid& grid_;
};

// The editor's window need not go and come when the editor closes only to open again, on the same
// cell or another; but a refused article number has a message to show, and is seen to be closed.
class HeldEditorScope {
  public:
    HeldEditorScope(IEditorView& view, const BasketState& state)
        : view_(view), held_(state.EditCol != column::kArtNr) {
        if (held_) view_.Hold(true);
    }
    ~HeldEditorScope() {
        if (held_) view_.Hold(false);
    }
    HeldEditorScope(const HeldEditorScope&) = delete;
    HeldEditorScope& operator=(const HeldEditorScope&) = delete;

  private:
    IEditorView& view_;
    bool held_;
};

}  // namespace demovex
