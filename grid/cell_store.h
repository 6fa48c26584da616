// The cells of a grid: text, bold and alignment of Rows x Cols cells.
//
// All texts of a grid lie in one arena of large blocks, so that filling 100,000 rows costs an
// append per cell and no allocation each, and growing copies nothing. A changed text that still
// fits is written in place, any other is appended; when a block is full and more than half of the
// arena is dead, the living texts are moved together. The order of the rows is an array of slot
// numbers: inserting, removing and moving rows moves four bytes a row. A row takes a slot when its
// first cell is written.
//
// Row and column numbers are not checked here; FlexGrid checks them. Running out of memory raises
// 7 and leaves the store as it was.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace demovex {

class CellStore {
  public:
    CellStore(std::int32_t rows, std::int32_t cols);

    std::int32_t Rows() const { return static_cast<std::int32_t>(order_.size()); }
    std::int32_t Cols() const { return cols_; }
    // Cuts at the end, or appends empty rows or columns.
    void SetRows(std::int32_t rows);
    void SetCols(std::int32_t cols);

    // Valid until the next change of any cell.
    std::wstring_view Text(std::int32_t row, std::int32_t col) const;
    // `text` may lie in the store itself. Returns false when the cell already had this text.
    bool SetText(std::int32_t row, std::int32_t col, std::wstring_view text);

    bool Bold(std::int32_t row, std::int32_t col) const { return (Bits(row, col) & kBold) != 0; }
    bool Left(std::int32_t row, std::int32_t col) const { return (Bits(row, col) & kLeft) != 0; }
    // Return false when nothing changed.
    bool SetBold(std::int32_t row, std::int32_t col, bool bold);
    bool SetLeft(std::int32_t row, std::int32_t col, bool left);

    void InsertRows(std::int32_t index, std::int32_t count);
    void RemoveRows(std::int32_t index, std::int32_t count);
    // Moves `count` rows at `first` so that the first of them becomes row `to`. The cells of the
    // first `fixed_cols` columns stay where they are.
    void MoveRows(std::int32_t first, std::int32_t count, std::int32_t to, std::int32_t fixed_cols);

    // Characters in the arena, dead ones included; for tests of the compaction.
    std::size_t ArenaSize() const { return used_; }

  private:
    struct Cell {
        std::uint32_t offset = 0;
        std::uint32_t bits = 0;  // length, kBold, kLeft
    };
    static constexpr std::uint32_t kBold = 0x80000000U;
    static constexpr std::uint32_t kLeft = 0x40000000U;
    static constexpr std::uint32_t kLength = 0x3FFFFFFFU;
    static constexpr std::uint32_t kNoSlot = 0xFFFFFFFFU;
    static constexpr std::uint32_t kChunkRows = 256;

    // Characters of a block; a longer text has a block of its own. An offset is the number of the
    // block times kBlock plus the place in it.
    static constexpr std::uint32_t kBlock = 32768;
    static constexpr std::uint32_t kMostBlocks = 0xFFFFFFFFU / kBlock;

    using Chunk = std::unique_ptr<Cell[]>;
    using Block = std::unique_ptr<wchar_t[]>;

    const Cell* Find(std::int32_t row, std::int32_t col) const;
    Cell& Make(std::int32_t row, std::int32_t col);
    Cell& At(std::uint32_t slot, std::int32_t col);
    std::uint32_t Bits(std::int32_t row, std::int32_t col) const;
    bool SetFlag(std::int32_t row, std::int32_t col, std::uint32_t flag, bool on);
    void Append(Cell& cell, std::wstring_view text);
    // The place of `length` more characters; their block is allocated.
    std::uint32_t Reserve(std::size_t length);
    wchar_t* Place(std::uint32_t offset) const {
        return blocks_[offset / kBlock].get() + offset % kBlock;
    }
    void Compact();

    std::int32_t cols_;
    std::vector<std::uint32_t> order_;  // slot of each row
    std::vector<Chunk> chunks_;         // kChunkRows x cols_ cells each
    std::uint32_t slots_ = 0;           // slots ever given out
    std::vector<std::uint32_t> free_;   // slots given back, all their cells empty
    std::vector<Block> blocks_;
    std::uint32_t open_ = 0;         // the block that texts are appended to
    std::uint32_t filled_ = kBlock;  // characters of it that are in use
    std::size_t used_ = 0;           // characters in use in all blocks
    std::size_t dead_ = 0;           // those of them that no cell shows
};

}  // namespace demovex
