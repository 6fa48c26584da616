// What assistive programs have to be told of a grid, gathered until it is told: what a command
// changes in a hundred places is told in a few words, and a grid that does not repaint is silent.
//
//   GridNews news;
//   news.CellChanged(3, 2);
//   news.CurrentCellChanged();
//   const GridNews::Told told = news.Take();
//
// When rows or columns came, went or changed places, or very many cells changed, programs are told
// to ask anew, and nothing of single cells.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <utility>

namespace demovex {

class GridNews {
  public:
    // More changed cells than these are told as one change of everything.
    static constexpr std::size_t kCells = 32;

    // Row and column of a cell.
    using Cell = std::pair<std::int32_t, std::int32_t>;

    struct Told {
        bool all = false;        // cells may be others, or elsewhere
        std::size_t count = 0;   // of the changed cells; 0 when `all` is set
        bool current = false;    // another cell is current, or the same one elsewhere
        bool selection = false;  // the selection is another around the same current cell
        std::array<Cell, kCells> cells{};
    };

    void AllChanged() noexcept;
    void CellChanged(std::int32_t row, std::int32_t col) noexcept;
    void CurrentCellChanged() noexcept { told_.current = true; }
    void SelectionChanged() noexcept { told_.selection = true; }

    bool Empty() const noexcept;
    // What has happened since the last call.
    Told Take() noexcept;

  private:
    Told told_;
};

}  // namespace demovex
