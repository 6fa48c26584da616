// What concerns the window as a whole: layout, view settings, the switches of toolbar and status
// bar, column widths, the way to the catalogue.
#pragma once

#include "basket/basket_window.h"
#include "basket/commands/commands.h"
#include "basket/edit/cell_editor.h"
#include "basket/state.h"

namespace demovex {

class ViewCommands {
  public:
    // Both outlive the commands. `owner` is the form's member, read anew each time.
    ViewCommands(BasketContext& context, CellEditor& editor, IBasketOwner*& owner);

    // Reads the view settings and shows the bars accordingly. Only "True" itself shows.
    void ReadSettings();
    void WriteSettings();
    // The shortcut texts of cut, copy and paste.
    void BuildMenus();

    // Closes the editor and places the grid between the bars. Idle while minimised. Raises what the
    // commit raises, with the grid in its place.
    void Form_Resize();
    // Places the grid and an open editor, which stays open. Idle while minimised.
    void LayOut();

    // Shows the current row's catalogue position in the host; a row without one does nothing.
    // Raises the host's error; 91 when the window has no owner any more.
    void mnuAnsichtGotoCatalogPage_Click();
    void mnuAnsichtOptColWidth_Click();
    void mnuAnsichtSymbolleiste_Click();
    void mnuAnsichtStatusleiste_Click();

  private:
    void PlaceGrid();
    void ShowCheck(Command item, bool checked);

    BasketContext& context_;
    CellEditor& editor_;
    IBasketOwner*& owner_;
};

}  // namespace demovex
