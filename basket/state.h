// What the rooms of the basket window share: the grid, the order lines in it, the view, the
// services and the flags.
#pragma once

#include <cstdint>
#include <string>

#include "basket/rows/order_table.h"
#include "basket/services.h"
#include "basket/view.h"
#include "grid/flex_grid.h"

namespace demovex {

// The window's flags, written by the room that a flag is about.
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
    FlexGrid& Liste;    // to read, and to move the current cell of
    OrderTable& table;  // the one who changes rows and cells of it
    IBasketView& view;
    Services& services;
    BasketState& state;
};

// The caption of a basket that has no file.
inline constexpr std::wstring_view kDesignedCaption = L"Vexmart Demo Warenkorb 1.1";

// Sets the window's caption: kept in the state for the host, shown by the view.
inline void SetBasketCaption(const BasketContext& context, std::wstring_view caption) {
    context.state.Caption = caption;
    context.view.SetCaption(caption);
}

}  // namespace demovex
