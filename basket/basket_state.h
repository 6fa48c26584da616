// What the rooms of the basket window share: the grid, the view, the services and the flags.
#pragma once

#include <cstdint>
#include <string>

#include "basket/basket_view.h"
#include "basket/services.h"
#include "grid/flex_grid.h"

namespace demovex {

class ArtikelStamm;

// The window's flags. Only the rooms named write them.
struct BasketState {
    bool Modified = false;        // basket changed since load or save
    bool SuppressEditor = false;  // code moves the current cell: open no editor
    bool InitPending = true;      // Initialize has not finished
    bool Loading = false;         // Load is adding rows: unknown numbers are listed, not raised
    bool ToolbarVisible = true;   // mirrors of the view settings
    bool StatusbarVisible = true;
    std::int32_t EditRow = 0;  // the cell the editor was last opened on
    std::int32_t EditCol = 0;
    std::wstring LastValidText;  // last quantity text that read as a number
    std::wstring CurrentPath;    // file last loaded or saved; empty for a new basket
    std::wstring Caption;        // the window's caption; written by SetBasketCaption alone
};

// Handed to every room by reference; the form owns it and outlives the rooms.
struct BasketContext {
    FlexGrid& Liste;
    IBasketView& view;
    Services& services;
    BasketState& state;
};

}  // namespace demovex
