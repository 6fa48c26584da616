#include "grid/cell_store.h"

#include <algorithm>
#include <new>
#include <stdexcept>

#include "base/error.h"

namespace demovex {

namespace {

// Memory that cannot be had is run-time error 7 for everyone above.
template <class Action>
auto OrOutOfMemory(Action action) {
    try {
        return action();
    } catch (const std::bad_alloc&) {
        RaiseRuntimeError(runtime_error::kOutOfMemory);
    } catch (const std::length_error&) {
        RaiseRuntimeError(runtime_error::kOutOfMemory);
    }
}

}  // namespace

CellStore::CellStore(std::int32_t rows, std::int32_t cols) : cols_(cols) {
    SetRows(rows);
}

void CellStore::SetRows(std::int32_t rows) {
    if (rows < Rows()) {
        RemoveRows(rows, Rows() - rows);
    } else {
        OrOutOfMemory([&] { order_.resize(static_cast<std::size_t>(rows), kNoSlot); });
    }
}

void CellStore::SetCols(std::int32_t cols) {
    if (cols == cols_) return;
    const auto kept = static_cast<std::size_t>(std::min(cols, cols_));
    const auto from = static_cast<std::size_t>(cols_);
    const auto to = static_cast<std::size_t>(cols);
    std::vector<Chunk> chunks;
    OrOutOfMemory([&] {
        chunks.reserve(chunks_.size());
        for (std::size_t i = 0; i < chunks_.size(); ++i) {
            chunks.push_back(std::make_unique<Cell[]>(kChunkRows * to));
        }
    });
    for (std::size_t i = 0; i < chunks_.size(); ++i) {
        for (std::size_t row = 0; row < kChunkRows; ++row) {
            const Cell* source = &chunks_[i][row * from];
            std::copy_n(source, kept, &chunks[i][row * to]);
            for (std::size_t col = kept; col < from; ++col) dead_ += source[col].bits & kLength;
        }
    }
    chunks_ = std::move(chunks);
    cols_ = cols;
}

const CellStore::Cell* CellStore::Find(std::int32_t row, std::int32_t col) const {
    const std::uint32_t slot = order_[static_cast<std::size_t>(row)];
    if (slot == kNoSlot) return nullptr;
    return &chunks_[slot / kChunkRows][slot % kChunkRows * static_cast<std::size_t>(cols_) +
                                       static_cast<std::size_t>(col)];
}

CellStore::Cell& CellStore::At(std::uint32_t slot, std::int32_t col) {
    return chunks_[slot / kChunkRows][slot % kChunkRows * static_cast<std::size_t>(cols_) +
                                      static_cast<std::size_t>(col)];
}

CellStore::Cell& CellStore::Make(std::int32_t row, std::int32_t col) {
    std::uint32_t& slot = order_[static_cast<std::size_t>(row)];
    if (slot == kNoSlot) {
        if (!free_.empty()) {
            slot = free_.back();
            free_.pop_back();
        } else {
            if (slots_ == chunks_.size() * kChunkRows) {
                OrOutOfMemory([&] {
                    chunks_.push_back(
                        std::make_unique<Cell[]>(kChunkRows * static_cast<std::size_t>(cols_)));
                });
            }
            slot = slots_++;
        }
    }
    return At(slot, col);
}

std::uint32_t CellStore::Bits(std::int32_t row, std::int32_t col) const {
    const Cell* cell = Find(row, col);
    return cell == nullptr ? 0 : cell->bits;
}

std::wstring_view CellStore::Text(std::int32_t row, std::int32_t col) const {
    const Cell* cell = Find(row, col);
    if (cell == nullptr) return {};
    const std::uint32_t length = cell->bits & kLength;
    if (length == 0) return {};
    return {Place(cell->offset), length};
}

bool CellStore::SetText(std::int32_t row, std::int32_t col, std::wstring_view text) {
    if (text == Text(row, col)) return false;
    if (text.size() > kLength) RaiseRuntimeError(runtime_error::kOutOfMemory);
    Cell& cell = Make(row, col);
    const std::uint32_t old_length = cell.bits & kLength;
    if (text.size() <= old_length) {
        // traits::move: the argument may overlap the place
        if (!text.empty()) {
            std::char_traits<wchar_t>::move(Place(cell.offset), text.data(), text.size());
        }
        dead_ += old_length - text.size();
        cell.bits = (cell.bits & ~kLength) | static_cast<std::uint32_t>(text.size());
    } else {
        Append(cell, text);
    }
    return true;
}

std::uint32_t CellStore::Reserve(std::size_t length) {
    const auto new_block = [&](std::size_t size) {
        if (blocks_.size() == kMostBlocks) throw std::bad_alloc();
        blocks_.push_back(std::make_unique_for_overwrite<wchar_t[]>(size));
        return static_cast<std::uint32_t>(blocks_.size() - 1);
    };
    std::uint32_t offset = 0;
    if (length > kBlock) {
        offset = new_block(length) * kBlock;
    } else {
        if (kBlock - filled_ < length) {
            used_ += kBlock - filled_;
            dead_ += kBlock - filled_;
            open_ = new_block(kBlock);
            filled_ = 0;
        }
        offset = open_ * kBlock + filled_;
        filled_ += static_cast<std::uint32_t>(length);
    }
    used_ += length;
    return offset;
}

void CellStore::Append(Cell& cell, std::wstring_view text) {
    OrOutOfMemory([&] {
        std::wstring copy;
        const bool full = text.size() > kBlock - filled_;
        if (full && dead_ > used_ / 2 && dead_ > kBlock / 2) {
            copy = text;  // it may lie in a block that goes away
            text = copy;
            Compact();
        }
        const std::uint32_t offset = Reserve(text.size());
        // the old place stays as it is, so `text` may be part of it
        std::char_traits<wchar_t>::copy(Place(offset), text.data(), text.size());
        dead_ += cell.bits & kLength;
        cell.offset = offset;
        cell.bits = (cell.bits & ~kLength) | static_cast<std::uint32_t>(text.size());
    });
}

void CellStore::Compact() {
    // into new blocks; the old ones stay whole until nothing can fail any more
    const std::size_t cells = static_cast<std::size_t>(cols_) * kChunkRows;
    CellStore packed(0, cols_);
    std::vector<std::uint32_t> offsets;
    for (const Chunk& chunk : chunks_) {
        for (std::size_t i = 0; i < cells; ++i) {
            const std::uint32_t length = chunk[i].bits & kLength;
            if (length == 0) continue;
            offsets.push_back(packed.Reserve(length));
            std::char_traits<wchar_t>::copy(packed.Place(offsets.back()), Place(chunk[i].offset),
                                            length);
        }
    }
    std::size_t next = 0;
    for (const Chunk& chunk : chunks_) {
        for (std::size_t i = 0; i < cells; ++i) {
            if ((chunk[i].bits & kLength) != 0) chunk[i].offset = offsets[next++];
        }
    }
    blocks_ = std::move(packed.blocks_);
    open_ = packed.open_;
    filled_ = packed.filled_;
    used_ = packed.used_;
    dead_ = packed.dead_;
}

bool CellStore::SetFlag(std::int32_t row, std::int32_t col, std::uint32_t flag, bool on) {
    if (((Bits(row, col) & flag) != 0) == on) return false;
    Make(row, col).bits ^= flag;
    return true;
}

bool CellStore::SetBold(std::int32_t row, std::int32_t col, bool bold) {
    return SetFlag(row, col, kBold, bold);
}

bool CellStore::SetLeft(std::int32_t row, std::int32_t col, bool left) {
    return SetFlag(row, col, kLeft, left);
}

void CellStore::InsertRows(std::int32_t index, std::int32_t count) {
    OrOutOfMemory(
        [&] { order_.insert(order_.begin() + index, static_cast<std::size_t>(count), kNoSlot); });
}

void CellStore::RemoveRows(std::int32_t index, std::int32_t count) {
    const auto first = order_.begin() + index;
    const auto last = first + count;
    const auto used = std::count_if(first, last, [](std::uint32_t s) { return s != kNoSlot; });
    OrOutOfMemory([&] { free_.reserve(free_.size() + static_cast<std::size_t>(used)); });
    for (auto slot = first; slot != last; ++slot) {
        if (*slot == kNoSlot) continue;
        for (std::int32_t col = 0; col < cols_; ++col) {
            Cell& cell = At(*slot, col);
            dead_ += cell.bits & kLength;
            cell = Cell();
        }
        free_.push_back(*slot);
    }
    order_.erase(first, last);
}

void CellStore::MoveRows(std::int32_t first, std::int32_t count, std::int32_t to,
                         std::int32_t fixed_cols) {
    if (count == 0 || first == to) return;
    const std::int32_t low = std::min(first, to);
    const std::int32_t high = std::max(first, to) + count;
    // every row of the range has a slot, so that fixed cells can be handed over
    for (std::int32_t row = low; row < high; ++row) Make(row, 0);
    std::vector<Cell> fixed;
    OrOutOfMemory([&] {
        fixed.reserve(static_cast<std::size_t>(high - low) * static_cast<std::size_t>(fixed_cols));
    });
    for (std::int32_t row = low; row < high; ++row) {
        for (std::int32_t col = 0; col < fixed_cols; ++col) fixed.push_back(*Find(row, col));
    }
    const auto begin = order_.begin();
    if (first < to) {
        std::rotate(begin + first, begin + first + count, begin + high);
    } else {
        std::rotate(begin + to, begin + first, begin + first + count);
    }
    std::size_t next = 0;
    for (std::int32_t row = low; row < high; ++row) {
        for (std::int32_t col = 0; col < fixed_cols; ++col) Make(row, col) = fixed[next++];
    }
}

}  // namespace demovex
