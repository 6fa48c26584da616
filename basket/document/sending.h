// Sending the selected rows to another basket file without opening it: they are appended as lines
// of the basket file's format, with all nine fields each, so that the target shows them when it is
// loaded next. The sending basket and its modified flag are not touched.
#pragma once

#include <cstdint>
#include <string>

#include "basket/document/recent_files.h"
#include "basket/edit/cell_commit.h"
#include "basket/state.h"

namespace demovex {

class Sending {
  public:
    // All outlive this object.
    Sending(BasketContext& context, ICellCommit& editor, RecentFiles& recent)
        : context_(context), editor_(editor), recent_(recent) {}

    // To the recent file behind entry `Index` (1 to 4). Raises 9.
    void mnuContextSendTo_Click(std::int32_t Index);
    // To a file chosen in a dialog, which becomes the most recent one.
    void mnuContextSendToOther_Click();

    // Appends the rows from the current one to the selection's other end, in grid order, the totals
    // row included when it is selected; a missing file is created. A failure is shown in a message;
    // lines written before it stay, and each line is written whole or not at all.
    void AppendSelection(const std::wstring& Path);

  private:
    // The line of `row` with its line end, as bytes of the file.
    std::string Line(std::int32_t row, bool& lossy) const;
    void ShowFailure(const std::wstring& path, std::wstring_view cause);

    BasketContext& context_;
    ICellCommit& editor_;
    RecentFiles& recent_;
};

}  // namespace demovex
