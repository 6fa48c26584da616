// The sort, comparison by comparison, against its rule written down plainly, and the bound of its
// stack of ranges.
#include <gtest/gtest.h>

#include <memory>
#include <random>
#include <utility>
#include <vector>

#include "containers/ms_index.h"
#include "tests/containers/logging_owner.h"

namespace demovex {
namespace {

using Keys = std::vector<std::int32_t>;

// Ids 1 to n sorted as the rule says, by recursion: a range of up to eight by selection of the
// first largest, else a partition about the middle entry, then the smaller part, then the larger
// one.
class PlainSort {
  public:
    explicit PlainSort(LoggingOwner& owner) : owner_(owner) {
        for (std::int32_t id = 1; id <= owner.Count(0); ++id) ids.push_back(id);
        if (ids.size() >= 2) Sort(1, static_cast<std::int32_t>(ids.size()));
    }

    std::vector<std::int32_t> ids;

  private:
    std::int32_t& At(std::int32_t position) {
        return ids.at(static_cast<std::size_t>(position - 1));
    }
    std::int32_t Compare(std::int32_t a, std::int32_t b) { return owner_.CompareItems(a, b, 0); }

    void Select(std::int32_t lo, std::int32_t hi) {
        for (std::int32_t top = hi; top >= lo + 1; --top) {
            std::int32_t m = lo;
            for (std::int32_t k = lo + 1; k <= top; ++k) {
                if (Compare(At(k), At(m)) > 0) m = k;
            }
            std::swap(At(m), At(top));
        }
    }

    void Sort(std::int32_t lo, std::int32_t hi) {
        if (hi - lo + 1 < 2) return;
        if (hi - lo + 1 <= 8) return Select(lo, hi);
        std::swap(At(lo), At(lo + (hi - lo + 1) / 2));
        const std::int32_t pivot = At(lo);
        std::int32_t i = lo;
        std::int32_t j = hi + 1;
        while (true) {
            ++i;
            while (i <= hi && Compare(At(i), pivot) <= 0) ++i;
            --j;
            while (j > lo && Compare(At(j), pivot) >= 0) --j;
            if (j < i) break;
            std::swap(At(i), At(j));
        }
        std::swap(At(lo), At(j));
        if (j - 1 - lo < hi - i) {
            Sort(lo, j - 1);
            Sort(i, hi);
        } else {
            Sort(i, hi);
            Sort(lo, j - 1);
        }
    }

    LoggingOwner& owner_;
};

// Sorts by index and by rule; both must ask the same and end the same.
void ExpectTheRule(const Keys& keys, std::int32_t answer = 1) {
    LoggingOwner plain_owner(keys);
    plain_owner.answer = answer;
    const PlainSort plain(plain_owner);

    const auto owner = std::make_shared<LoggingOwner>(keys);
    owner->answer = answer;
    MSIndex index;
    index.SetMSContainer(owner);
    index.Sort();
    std::vector<std::int32_t> ids;
    for (std::int32_t i = 1; i <= index.Count(); ++i) ids.push_back(index.Item(i));
    ASSERT_EQ(ids, plain.ids) << keys.size() << " entries";
    ASSERT_EQ(owner->items, plain_owner.items) << keys.size() << " entries";
    for (std::size_t i = 1; i < ids.size(); ++i) {
        ASSERT_LE(owner->Key(ids[i - 1]), owner->Key(ids[i])) << keys.size() << " entries";
    }
}

TEST(SortSteps, EveryCountOfEveryShapeIsComparedAsTheRuleSays) {
    std::mt19937 random(17);
    for (std::int32_t count = 0; count <= 70; ++count) {
        Keys ascending, descending, any, few, equal;
        for (std::int32_t i = 0; i < count; ++i) {
            ascending.push_back(i);
            descending.push_back(count - i);
            any.push_back(static_cast<std::int32_t>(random() % 1000));
            few.push_back(static_cast<std::int32_t>(random() % 3));
            equal.push_back(7);
        }
        for (const Keys& keys : {ascending, descending, any, few, equal}) {
            ASSERT_NO_FATAL_FAILURE(ExpectTheRule(keys));
        }
    }
}

TEST(SortSteps, OnlyTheSignOfAnAnswerCounts) {
    std::mt19937 random(19);
    for (int round = 0; round < 50; ++round) {
        Keys keys(random() % 200);
        for (std::int32_t& key : keys) key = static_cast<std::int32_t>(random() % 100);
        ASSERT_NO_FATAL_FAILURE(ExpectTheRule(keys, 2));
        ASSERT_NO_FATAL_FAILURE(ExpectTheRule(keys, 2147483647));
    }
}

// Keys with which every partition splits off just the pivot and two entries at one end: the pivot
// is always third smallest, or third largest. Found by carrying out the partitions on places whose
// keys are only chosen when the pivot is.
Keys LopsidedKeys(std::int32_t count, bool smallest) {
    Keys keys(static_cast<std::size_t>(count) + 1);
    std::vector<std::int32_t> ids;  // by position, from 1
    for (std::int32_t id = 0; id <= count; ++id) ids.push_back(id);
    const auto at = [&](std::int32_t position) -> std::int32_t& {
        return ids[static_cast<std::size_t>(position)];
    };
    std::int32_t lo = 1, hi = count;
    std::int32_t low_key = 1, high_key = count;
    while (hi - lo + 1 > 8) {
        std::swap(at(lo), at(lo + (hi - lo + 1) / 2));
        // the pivot at lo, and the two entries beside it at the end where they will stay
        const std::int32_t others[] = {at(smallest ? lo + 1 : hi), at(smallest ? lo + 2 : hi - 1)};
        for (const std::int32_t id : others) {
            keys[static_cast<std::size_t>(id)] = smallest ? low_key++ : high_key--;
        }
        keys[static_cast<std::size_t>(at(lo))] = smallest ? low_key++ : high_key--;
        if (smallest) {
            std::swap(at(lo), at(lo + 2));  // as the partition ends
            lo += 3;
        } else {
            std::swap(at(lo), at(hi - 2));
            hi -= 3;
        }
    }
    for (; lo <= hi; ++lo) keys[static_cast<std::size_t>(at(lo))] = low_key++;
    keys.erase(keys.begin());
    return keys;
}

// With the larger part first, or always the same part, several hundred ranges would wait in a stack
// that has room for 31.
TEST(SortSteps, PivotsThatAreAlwaysThirdFromAnEndKeepTheStackFlat) {
    for (const bool smallest : {true, false}) {
        const Keys keys = LopsidedKeys(1000, smallest);
        LoggingOwner owner(keys);
        const PlainSort plain(owner);
        // every partition compares all entries of its range, and its range is three shorter
        EXPECT_GT(owner.items.size(), 1000u * 1000u / 6) << "the keys do not do what they should";
        ExpectTheRule(keys);
    }
}

}  // namespace
}  // namespace demovex
