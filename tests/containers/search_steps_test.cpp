// Both searches of the index, comparison by comparison, against their rules written down plainly.
#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <vector>

#include "containers/ms_index.h"
#include "tests/containers/logging_owner.h"

namespace demovex {
namespace {

using Asked = std::vector<std::int32_t>;

struct Found {
    std::int32_t position = 0;
    Asked asked;  // the positions that were compared, in their order
    bool operator==(const Found&) const = default;
};

void PrintTo(const Found& found, std::ostream* out) {
    *out << found.position << " after " << testing::PrintToString(found.asked);
}

// The search by count: the middle entry, the lower one of two, until one entry or none is left.
// `compare` tells how what is searched stands to the entry at a position; `last` turns its answer
// at the last entry into the result.
Found PlainSearch(std::int32_t count, const std::function<std::int32_t(std::int32_t)>& compare,
                  const std::function<std::int32_t(std::int32_t lo, std::int32_t order)>& last) {
    Found found;
    const auto ask = [&](std::int32_t position) {
        found.asked.push_back(position);
        return compare(position);
    };
    std::int32_t lo = 1, length = count;
    while (length > 1) {
        const std::int32_t mid = lo + (length - 1) / 2;
        const std::int32_t order = ask(mid);
        if (order == 0) {
            found.position = mid;
            return found;
        }
        if (order > 0) {
            length -= mid - lo + 1;
            lo = mid + 1;
        } else {
            length = mid - lo;
        }
    }
    found.position = length == 1 ? last(lo, ask(lo)) : -lo;
    return found;
}

class SearchSteps : public ::testing::Test {
  protected:
    // An index over keys that ascend already: position and id are the same.
    void Fill(std::vector<std::int32_t> keys) {
        owner = std::make_shared<LoggingOwner>(std::move(keys));
        index.SetMSContainer(owner);
        index.Create();
    }
    std::int32_t Order(std::int32_t key, std::int32_t position) const {
        return owner->Order(key, owner->Key(position));
    }
    Found ByKey(std::int32_t key) {
        owner->lookups.clear();
        Found found{index.FindPosition(key), {}};
        for (const auto& [k, id] : owner->lookups) {
            EXPECT_EQ(k, key);
            found.asked.push_back(id);
        }
        return found;
    }
    // `id` is an item of the owner that need not be in the index.
    Found ById(std::int32_t id) {
        owner->items.clear();
        Found found{index.FindIDPosition(id), {}};
        for (const auto& [what, entry] : owner->items) {
            EXPECT_EQ(what, id) << "the id asked for comes first";
            found.asked.push_back(entry);
        }
        return found;
    }

    std::shared_ptr<LoggingOwner> owner;
    MSIndex index;
};

TEST_F(SearchSteps, EveryKeyInEveryCountIsSearchedAsTheRuleSays) {
    for (std::int32_t count = 0; count <= 40; ++count) {
        std::vector<std::int32_t> keys;
        for (std::int32_t i = 1; i <= count; ++i) keys.push_back(2 * i);
        for (const std::int32_t answer : {1, 2}) {
            Fill(keys);
            owner->answer = answer;
            for (std::int32_t key = 1; key <= 2 * count + 1; ++key) {
                const Found expected = PlainSearch(
                    count, [&](std::int32_t at) { return Order(key, at); },
                    [](std::int32_t lo, std::int32_t order) { return order == 0 ? lo : -lo; });
                ASSERT_EQ(ByKey(key), expected) << "key " << key << " of " << count;
                ASSERT_EQ(index.Find(key), key % 2 == 0 ? key / 2 : 0);
            }
        }
    }
}

TEST_F(SearchSteps, EveryIdInEveryCountIsSearchedAsTheRuleSays) {
    for (std::int32_t count = 0; count <= 40; ++count) {
        std::vector<std::int32_t> keys;
        for (std::int32_t i = 1; i <= count; ++i) keys.push_back(2 * i);
        for (std::int32_t key = 1; key <= 2 * count + 1; ++key) {
            Fill(keys);
            // one more item, which the index does not hold
            owner->keys.push_back(key);
            const std::int32_t id = count + 1;
            const Found expected = PlainSearch(
                count, [&](std::int32_t at) { return Order(key, at); },
                [](std::int32_t lo, std::int32_t order) {
                    return order == 0 ? lo : order == 1 ? -(lo + 1) : -lo;
                });
            if (key % 2 == 0) {
                const Found found = ById(key / 2);
                ASSERT_EQ(found, expected) << "id " << key / 2 << " of " << count;
            } else {
                ASSERT_EQ(ById(id), expected) << "key " << key << " of " << count;
                ASSERT_EQ(expected.position, -(key / 2 + 1));
            }
        }
    }
}

// From the entry that the search meets upwards, never as far as the last position, then from where
// that ended downwards, never as far as the first.
TEST_F(SearchSteps, ARunOfEqualKeysIsScannedUpwardsThenDownwards) {
    for (std::int32_t count = 1; count <= 12; ++count) {
        for (std::int32_t first = 1; first <= count; ++first) {
            for (std::int32_t last = first; last <= count; ++last) {
                std::vector<std::int32_t> keys;
                for (std::int32_t i = 1; i <= count; ++i) {
                    keys.push_back(i < first ? 1 : i <= last ? 2 : 3);
                }
                Fill(keys);
                owner->keys.push_back(2);  // an item that the index does not hold
                for (std::int32_t id = first; id <= count + 1; ++id) {
                    if (id > last && id <= count) continue;
                    Found expected = PlainSearch(
                        count, [&](std::int32_t at) { return Order(2, at); },
                        [](std::int32_t lo, std::int32_t order) { return order == 0 ? lo : 0; });
                    std::int32_t q = expected.position;
                    ASSERT_GT(q, 0);
                    const auto equal = [&](std::int32_t at) {
                        expected.asked.push_back(at);
                        return Order(2, at) == 0;
                    };
                    bool done = q == id;
                    while (!done && q + 1 < count && equal(q + 1)) {
                        ++q;
                        done = q == id;
                    }
                    while (!done && q > 1 && equal(q)) {
                        if (q == id) {
                            done = true;
                        } else {
                            --q;
                        }
                    }
                    expected.position = done ? q : -(q + 1);
                    ASSERT_EQ(ById(id), expected)
                        << "id " << id << ", " << first << " to " << last << " of " << count;
                }
            }
        }
    }
}

// Only +1 at the last entry means "behind it"; any other answer leaves the place before it.
TEST_F(SearchSteps, AnOwnerThatAnswersTwoIsPlacedBeforeTheLastEntryMet) {
    Fill({10, 20, 30});
    owner->keys.push_back(35);
    EXPECT_EQ(index.FindIDPosition(4), -4);
    owner->answer = 2;
    EXPECT_EQ(index.FindIDPosition(4), -3);
    index.Insert(4);
    EXPECT_EQ(index.Item(3), 4);
    EXPECT_EQ(index.Item(4), 3);
    EXPECT_EQ(index.FindPosition(30), -3) << "out of order now";
    Fill({10, 20, 30});
    owner->keys.push_back(5);
    owner->answer = 2;
    EXPECT_EQ(index.FindIDPosition(4), -1);
}

}  // namespace
}  // namespace demovex
