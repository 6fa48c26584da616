// What the rooms of the basket ask of the cell editor. Implemented by CellEditor and by a fake in
// the tests of files. Whoever is about to change rows, or to show what is in them, calls one of the
// first two before; the order lines below know nothing of an editor.
#pragma once

namespace demovex {

class ICellCommit {
  public:
    virtual ~ICellCommit() = default;

    // Writes the cell being edited back and closes the editor. A message about an unknown article
    // number may be shown meanwhile. A number just typed and found opens the editor anew on the
    // row's quantity; callers that change rows use CloseEditor instead.
    virtual void CommitCellEdit() = 0;

    // CommitCellEdit until no editor is open.
    virtual void CloseEditor() = 0;

    // The current-cell handler: commits the cell left behind and opens the editor on the current
    // cell when it may be edited. Idle while InitPending or Loading is set.
    virtual void Liste_RowColChange() = 0;
};

}  // namespace demovex
