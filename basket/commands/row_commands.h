// The commands that change the basket's rows: append, insert above, delete, move up and down.
//
// Each first closes the editor and ends by opening it on the resulting current cell. The outcome is
// that of working row by row from the selection's anchor, at the cost of one operation on the grid.
#pragma once

#include <cstdint>

#include "basket/edit/cell_commit.h"
#include "basket/state.h"

namespace demovex {

class RowCommands {
  public:
    // Both outlive the commands.
    RowCommands(BasketContext& context, ICellCommit& editor);

    void mnuEditNeueZeile_Click();
    // As many rows as are selected, above the anchor row; with the header current one at the end.
    void mnuEditZeileOberhalbEinfügen_Click();
    // As many rows as are selected, from the anchor row down, up to the totals row; beeps when the
    // header is current.
    void mnuEditZeilenLöschen_Click();
    void mnuEditZeilenNachOben_Click();
    void mnuEditZeilenNachUnten_Click();

  private:
    void AppendEmptyRow();
    bool CanMove(std::int32_t step) const;
    void MoveSelection(std::int32_t step);

    BasketContext& context_;
    FlexGrid& grid_;
    BasketState& state_;
    OrderTable& table_;
    ICellCommit& editor_;
};

}  // namespace demovex
