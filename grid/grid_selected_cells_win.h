// The selected cells of a grid as an enumeration of child ids for assistive programs.
#pragma once

#include <windows.h>

#include <oaidl.h>

#include <cstdint>
#include <memory>

namespace demovex {

// A rectangle of cells, both corners included, in a grid of `cols` columns.
struct SelectedRange {
    std::int32_t row1, col1, row2, col2, cols;
};

// A new object with one reference, the caller's. It lists nothing in advance, however many cells
// are selected, and holds `module_lock` as long as it lives. Raises std::bad_alloc.
IEnumVARIANT* NewSelectedCells(const SelectedRange& range, std::shared_ptr<void> module_lock);

}  // namespace demovex
