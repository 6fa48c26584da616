// Basket cells as tab-separated text, and the clipboard commands.
//
// The separator follows the line, not the column: a tab is written only when the line holds
// something already, so empty leading cells collapse. Every line ends with CR LF.
#pragma once

#include <cstdint>
#include <string>

#include "basket/edit/cell_commit.h"
#include "basket/state.h"

namespace demovex {

// The cells of `range` whose column is shown.
std::wstring CellsAsText(const FlexGrid& grid, const GridRange& range);

class ClipboardCommands {
  public:
    // Both outlive the commands.
    ClipboardCommands(BasketContext& context, ICellCommit& editor)
        : context_(context), editor_(editor) {}

    // Cut, copy and paste work on the text box of the cell editor.
    void mnuEditAusschneiden_Click() { context_.view.SendEditKey(EditKey::kCut); }
    void mnuEditKopieren_Click() { context_.view.SendEditKey(EditKey::kCopy); }
    void mnuEditEinfuegen_Click() { context_.view.SendEditKey(EditKey::kPaste); }

    // Both raise 521 when another program holds the clipboard open; nothing is changed then but
    // that the cell being edited was committed.
    void mnuContextCopySelectionToClipboard_Click();
    // The whole basket from the header to the totals line, without the line numbers.
    void mnuDateiSendenanZwischenablage_Click();

  private:
    BasketContext& context_;
    ICellCommit& editor_;
};

}  // namespace demovex
