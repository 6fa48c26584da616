// Records the events of a grid as text and can act in a handler: "RowColChange(2,1)",
// "SelChange(2,1:4,3)", "Scroll(7,1)".
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "grid/flex_grid.h"

namespace demovex {

class GridEventLog : public IFlexGridEvents {
  public:
    explicit GridEventLog(FlexGrid& grid) : grid_(grid) {}

    void RowColChange() override {
        Log("RowColChange(" + Pair(grid_.Row(), grid_.Col()) + ")", on_row_col_change);
    }
    void SelChange() override {
        Log("SelChange(" + Pair(grid_.Row(), grid_.Col()) + ":" +
                Pair(grid_.RowSel(), grid_.ColSel()) + ")",
            on_sel_change);
    }
    void Scroll() override {
        Log("Scroll(" + Pair(grid_.TopRow(), grid_.LeftCol()) + ")", on_scroll);
    }

    // The events since the last call, in order, separated by a blank.
    std::string Take() {
        std::string all;
        for (const std::string& event : events_) all += (all.empty() ? "" : " ") + event;
        events_.clear();
        return all;
    }

    std::function<void()> on_row_col_change;
    std::function<void()> on_sel_change;
    std::function<void()> on_scroll;

  private:
    static std::string Pair(std::int32_t a, std::int32_t b) {
        return std::to_string(a) + "," + std::to_string(b);
    }
    void Log(std::string event, const std::function<void()>& action) {
        events_.push_back(std::move(event));
        const std::function<void()> copy = action;  // a handler may change or destroy the log
        if (copy) copy();
    }

    FlexGrid& grid_;
    std::vector<std::string> events_;
};

}  // namespace demovex
