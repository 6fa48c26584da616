#include "containers/ms_index.h"

#include <algorithm>
#include <cstdio>
#include <new>
#include <numeric>
#include <string>
#include <utility>

#include "base/checked.h"
#include "base/round.h"

namespace demovex {
namespace {

// Ranges of at most this many entries are left to the small-range sort.
constexpr std::int32_t kSmallRange = 8;

std::wstring DecimalText(double value) {
    char text[40];
    const int length = std::snprintf(text, sizeof text, "%.15g", value);
    return std::wstring(text, text + length);
}

// Sorts an array of positions, numbered from 1, with the owner's comparison.
class Sorter {
  public:
    Sorter(IMSContainer& owner, std::int32_t tag, std::int32_t* positions)
        : owner_(owner), tag_(tag), positions_(positions) {}

    // Quicksort of positions 1 to `count`. Taking the smaller part first keeps the stack below 31
    // ranges for any 32-bit count; the tests of i and j keep it within the array whatever the
    // owner answers.
    void Sort(std::int32_t count) {
        std::int32_t starts[31];
        std::int32_t ends[31];
        int depth = 0;
        std::int32_t lo = 1;
        std::int32_t hi = count;
        for (;;) {
            bool next_from_stack = true;
            if (hi - lo + 1 <= kSmallRange) {
                SortSmallRange(lo, hi);
            } else {
                std::swap(Entry(lo), Entry(lo + (hi - lo + 1) / 2));
                const std::int32_t pivot = Entry(lo);
                std::int32_t i = lo;
                std::int32_t j = CheckedAdd(hi, 1);
                for (;;) {
                    for (++i; i <= hi && Compare(Entry(i), pivot) <= 0; ++i) {
                    }
                    for (--j; j > lo && Compare(Entry(j), pivot) >= 0; --j) {
                    }
                    if (j < i) break;
                    std::swap(Entry(i), Entry(j));
                }
                std::swap(Entry(lo), Entry(j));
                const std::int32_t left = j - lo;       // lo to j - 1
                const std::int32_t right = hi - i + 1;  // i to hi
                const bool left_is_smaller = left < right;
                if ((left_is_smaller ? right : left) >= 2) {
                    starts[depth] = left_is_smaller ? i : lo;
                    ends[depth] = left_is_smaller ? hi : j - 1;
                    ++depth;
                }
                if (left_is_smaller) {
                    hi = j - 1;
                } else {
                    lo = i;
                }
                next_from_stack = hi - lo + 1 < 2;
            }
            if (next_from_stack) {
                if (depth == 0) return;
                --depth;
                lo = starts[depth];
                hi = ends[depth];
            }
        }
    }

  private:
    std::int32_t& Entry(std::int32_t position) { return positions_[position - 1]; }
    std::int32_t Compare(std::int32_t id1, std::int32_t id2) {
        return owner_.CompareItems(id1, id2, tag_);
    }

    // Selection from the top: the first largest entry goes up.
    void SortSmallRange(std::int32_t lo, std::int32_t hi) {
        for (std::int32_t top = hi; top > lo; --top) {
            std::int32_t largest = lo;
            for (std::int32_t k = lo + 1; k <= top; ++k) {
                if (Compare(Entry(k), Entry(largest)) > 0) largest = k;
            }
            std::swap(Entry(largest), Entry(top));
        }
    }

    IMSContainer& owner_;
    const std::int32_t tag_;
    std::int32_t* const positions_;
};

}  // namespace

void MSIndex::SetMSContainer(std::shared_ptr<IMSContainer> container) noexcept {
    container_.swap(container);
}

void MSIndex::SetInitialSize(std::int32_t size) {
    if (size < 0) {
        RaiseOwnError(L"MSIndex.InitialSize (Let)", L"Invalid initial size specified: " +
                                                        std::to_wstring(size) + L" (must be >= 0)");
    }
    initial_size_ = size;
}

void MSIndex::SetGrowFactor(double factor) {
    if (factor < 1.0) {
        RaiseOwnError(L"MSIndex.GrowFactor (Let)",
                      L"Invalid factor specified: " + DecimalText(factor) + L" (must be > 1)");
    }
    grow_factor_ = factor;
}

IMSContainer& MSIndex::Owner() const {
    if (container_ == nullptr) RaiseRuntimeError(runtime_error::kObjectNotSet);
    return *container_;
}

std::int32_t MSIndex::Entry(std::int32_t position) const {
    if (identity_) return position;
    if (position < 1 || position > capacity_) {
        RaiseRuntimeError(runtime_error::kSubscriptOutOfRange);
    }
    return positions_[position - 1];
}

std::int32_t MSIndex::Compare(std::int32_t id1, std::int32_t id2) const {
    return Owner().CompareItems(id1, id2, tag_);
}

std::int32_t MSIndex::Item(std::int32_t index) const {
    if (index < 1 || index > count_) {
        RaiseOwnError(L"MSIndex.Item",
                      L"Invalid Index (" + std::to_wstring(index) + L"). " +
                          (count_ == 0 ? std::wstring(L"Collection is empty.")
                                       : L"Valid range is 1 to " + std::to_wstring(count_)));
    }
    return Entry(index);
}

void MSIndex::Clear() {
    count_ = 0;
    capacity_ = 0;
    identity_ = false;
    positions_.reset();
}

void MSIndex::Create() {
    const std::int32_t items = Owner().Count(tag_);
    if (items < 0) RaiseRuntimeError(runtime_error::kSubscriptOutOfRange);
    positions_.reset();
    identity_ = true;
    count_ = items;
    capacity_ = items;
}

std::shared_ptr<std::int32_t[]> MSIndex::Allot(std::int32_t size, std::int32_t kept) const {
    try {
        const auto count = static_cast<std::size_t>(size);
        std::shared_ptr<std::int32_t[]> positions(new std::int32_t[count]);
        if (identity_) {
            std::iota(positions.get(), positions.get() + kept, 1);
        } else {
            std::copy_n(positions_.get(), kept, positions.get());
        }
        std::fill(positions.get() + kept, positions.get() + size, 0);
        return positions;
    } catch (const std::bad_alloc&) {
    }
    RaiseRuntimeError(runtime_error::kOutOfMemory);
}

void MSIndex::Materialize() {
    if (!identity_) return;
    positions_ = Allot(capacity_, count_);
    identity_ = false;
}

void MSIndex::Sort() {
    // kept alive until the end, whatever a callback sets
    const std::shared_ptr<IMSContainer> owner = container_;
    const std::int32_t items = Owner().Count(tag_);
    if (items < 0) RaiseRuntimeError(runtime_error::kSubscriptOutOfRange);
    if (items == 0) {
        Clear();
        return;
    }
    const std::int32_t capacity = std::max(items, initial_size_);
    const std::shared_ptr<std::int32_t[]> positions = Allot(capacity, 0);
    positions_ = positions;
    identity_ = false;
    count_ = items;
    capacity_ = capacity;
    for (std::int32_t i = 0; i < items; ++i) positions[i] = owner->EnumItems(tag_);
    const bool ended = owner->EnumItems(tag_) == 0;
    if (items >= 2) Sorter(*owner, tag_, positions.get()).Sort(items);
    if (!ended) {
        RaiseOwnError(L"MSIndex.Sort", L"Misbehaved container: .Count + 1 x .EnumItems <> 0");
    }
}

std::int32_t MSIndex::Find(const KeyValue& key) const {
    const std::int32_t position = FindPosition(key);
    return position > 0 ? Entry(position) : 0;
}

std::int32_t MSIndex::FindPosition(const KeyValue& key) const {
    std::int32_t lo = 1;
    std::int32_t hi = count_;
    std::int32_t length = count_;
    while (lo <= hi) {
        const std::int32_t half = length / 2;
        const bool odd = length % 2 != 0;
        if (half == 0) {
            if (length != 0 && Owner().CompareItem(key, Entry(lo), tag_) == 0) return lo;
            break;
        }
        const std::int32_t mid = odd ? lo + half : lo + half - 1;
        const std::int32_t order = Owner().CompareItem(key, Entry(mid), tag_);
        if (order == 0) return mid;
        if (order > 0) {
            lo = mid + 1;
            length = half;
        } else {
            hi = mid - 1;
            length = odd ? half : half - 1;
        }
    }
    return -lo;
}

std::int32_t MSIndex::FindIDPosition(std::int32_t id) const {
    std::int32_t lo = 1;
    std::int32_t hi = count_;
    std::int32_t length = count_;
    std::int32_t found = 0;
    while (lo <= hi && found == 0) {
        const std::int32_t half = length / 2;
        const bool odd = length % 2 != 0;
        if (half == 0) {
            if (length == 0) break;
            const std::int32_t order = Compare(id, Entry(lo));
            if (order == 1) return -(lo + 1);
            if (order != 0) return -lo;
            found = lo;
            break;
        }
        const std::int32_t mid = odd ? lo + half : lo + half - 1;
        const std::int32_t order = Compare(id, Entry(mid));
        if (order == 0) {
            found = mid;
        } else if (order > 0) {
            lo = mid + 1;
            length = half;
        } else {
            hi = mid - 1;
            length = odd ? half : half - 1;
        }
    }
    if (found == 0) return -lo;

    if (Entry(found) == id) return found;
    std::int32_t position = found;
    while (position + 1 < count_ && Compare(id, Entry(position + 1)) == 0) {
        if (Entry(position + 1) == id) return position + 1;
        ++position;
    }
    while (position > 1 && Compare(id, Entry(position)) == 0) {
        if (Entry(position) == id) return position;
        --position;
    }
    return -(position + 1);
}

void MSIndex::Insert(std::int32_t id) {
    const std::int32_t found = FindIDPosition(id);
    const std::int32_t position = found < 0 ? -found : found;
    const std::int32_t count = CheckedAdd(count_, 1);
    if (position > count) RaiseRuntimeError(runtime_error::kSubscriptOutOfRange);
    Materialize();
    if (count > capacity_) {
        const std::int32_t capacity =
            std::max(RoundToInt32(count * grow_factor_ + 1), initial_size_);
        positions_ = Allot(capacity, count_);
        capacity_ = capacity;
    }
    std::int32_t* const at = positions_.get() + (position - 1);
    std::int32_t* const end = positions_.get() + (count - 1);
    std::move_backward(at, end, end + 1);
    *at = id;
    count_ = count;
}

void MSIndex::Delete(std::int32_t id) {
    const std::int32_t position = FindIDPosition(id);
    if (position < 1) {
        RaiseOwnError(L"MSIndex.Delete", L"Entry '" + std::to_wstring(id) + L"' not found");
    }
    if (position > count_) RaiseRuntimeError(runtime_error::kSubscriptOutOfRange);
    Materialize();
    std::int32_t* const at = positions_.get() + (position - 1);
    std::move(at + 1, positions_.get() + count_, at);
    --count_;
}

}  // namespace demovex
