#include "containers/ms_index.h"

#include <gtest/gtest.h>

#include "base/error.h"
#include "tests/containers/counting_owner.h"
#include "tests/support/raised_error.h"

namespace demovex {
namespace {

using Ids = std::vector<std::int32_t>;

class IndexTest : public ::testing::Test {
  protected:
    IndexTest() : owner(std::make_shared<CountingOwner>()) { index.SetMSContainer(owner); }

    // Items 1, 2, ... with these keys.
    void Fill(const std::vector<std::int32_t>& keys) {
        owner->items.clear();
        for (const std::int32_t key : keys) {
            owner->items[static_cast<std::int32_t>(owner->items.size()) + 1] = key;
        }
    }
    void Add(std::int32_t id, std::int32_t key) {
        owner->items[id] = key;
        index.Insert(id);
    }
    Ids Positions() const {
        Ids ids;
        for (std::int32_t i = 1; i <= index.Count(); ++i) ids.push_back(index.Item(i));
        return ids;
    }

    std::shared_ptr<CountingOwner> owner;
    MSIndex index;
};

TEST_F(IndexTest, ANewIndexIsEmpty) {
    const MSIndex fresh;
    EXPECT_EQ(fresh.MSContainer(), nullptr);
    EXPECT_EQ(fresh.Tag(), 0);
    EXPECT_EQ(fresh.Count(), 0);
    EXPECT_EQ(fresh.Capacity(), 0);
    EXPECT_EQ(fresh.InitialSize(), 0);
    EXPECT_EQ(fresh.GrowFactor(), 1.2);
}

TEST_F(IndexTest, TheOwnerIsHeldByACountedReference) {
    const long before = owner.use_count();
    {
        MSIndex other;
        other.SetMSContainer(owner);
        EXPECT_EQ(owner.use_count(), before + 1);
    }
    EXPECT_EQ(owner.use_count(), before);
}

TEST_F(IndexTest, WithoutAnOwnerTheObjectIsNotSet) {
    index.SetMSContainer(nullptr);
    EXPECT_EQ(Raised([&] { index.Create(); }).number, 91);
    EXPECT_EQ(Raised([&] { index.Sort(); }).number, 91);
    EXPECT_EQ(index.FindPosition(1), -1) << "an empty index asks nobody";
}

TEST_F(IndexTest, CreateIsTheIdentityAndOnlyAsksForTheCount) {
    Fill({30, 10, 20});
    index.SetTag(9);
    index.Create();
    EXPECT_EQ(Positions(), (Ids{1, 2, 3}));
    EXPECT_EQ(index.Capacity(), 3);
    EXPECT_EQ(owner->calls.count, 1);
    EXPECT_EQ(owner->calls.enum_items + owner->calls.compare_items + owner->calls.compare, 0);
    EXPECT_EQ(owner->calls.tags, Ids{9});
}

TEST_F(IndexTest, CreateTakesNoNoticeOfTheInitialSizeAndTheNextGrowthDoes) {
    Fill({10, 20, 30});
    index.SetInitialSize(100);
    index.Create();
    EXPECT_EQ(index.Count(), 3);
    EXPECT_EQ(index.Capacity(), 3);
    Add(4, 40);
    EXPECT_EQ(index.Capacity(), 100);
    EXPECT_EQ(Positions(), (Ids{1, 2, 3, 4}));
    index.SetInitialSize(0);
    index.Create();
    EXPECT_EQ(index.Capacity(), 4);
}

TEST_F(IndexTest, TheIdentityCanBeInsertedIntoAndDeletedFrom) {
    Fill({10, 20, 30});
    index.Create();
    Add(9, 15);
    EXPECT_EQ(Positions(), (Ids{1, 9, 2, 3}));
    EXPECT_EQ(index.Capacity(), 6) << "4 x 1.2 + 1 is 5.8";
    index.Create();
    EXPECT_EQ(Positions(), (Ids{1, 2, 3, 4}));
    index.Create();
    owner->items.erase(9);
    index.Create();
    index.Delete(2);
    EXPECT_EQ(Positions(), (Ids{1, 3}));
    EXPECT_EQ(index.Capacity(), 3);
}

TEST_F(IndexTest, ANegativeCountOfTheOwnerIsASubscriptOutOfRange) {
    class Negative final : public IMSContainer {
      public:
        std::int32_t Count(std::int32_t) override { return -1; }
        std::int32_t EnumItems(std::int32_t) override { return 0; }
        std::int32_t CompareItems(std::int32_t, std::int32_t, std::int32_t) override { return 0; }
        std::int32_t Hashvalue(std::int32_t, std::int32_t) override { return 0; }
        std::int32_t HashKeyvalue(const KeyValue&, std::int32_t) override { return 0; }
        std::int32_t CompareItem(const KeyValue&, std::int32_t, std::int32_t) override { return 0; }
    };
    index.SetMSContainer(std::make_shared<Negative>());
    EXPECT_EQ(Raised([&] { index.Create(); }).number, 9);
    EXPECT_EQ(Raised([&] { index.Sort(); }).number, 9);
    EXPECT_EQ(index.Count(), 0);
}

TEST_F(IndexTest, SortOverAnEmptyOwnerLeavesNothing) {
    Fill({1, 2, 3});
    index.Sort();
    owner->items.clear();
    index.SetInitialSize(50);
    index.Sort();
    EXPECT_EQ(index.Count(), 0);
    EXPECT_EQ(index.Capacity(), 0);
}

TEST_F(IndexTest, SortCallsCountOnceAndEnumItemsOneTimeMore) {
    Fill({3, 1, 2});
    index.SetTag(-4);
    index.Sort();
    EXPECT_EQ(Positions(), (Ids{2, 3, 1}));
    EXPECT_EQ(owner->calls.count, 1);
    EXPECT_EQ(owner->calls.enum_items, 4);
    EXPECT_EQ(owner->calls.tags, Ids{-4});
    EXPECT_EQ(index.Capacity(), 3);
}

TEST_F(IndexTest, SortOfOneEntryComparesNothing) {
    Fill({3});
    index.Sort();
    EXPECT_EQ(Positions(), Ids{1});
    EXPECT_EQ(owner->calls.compare_items, 0);
}

TEST_F(IndexTest, InitialSizeIsTheLeastCapacityOfSortAndInsert) {
    index.SetInitialSize(100);
    Fill({3, 1, 2});
    index.Sort();
    EXPECT_EQ(index.Capacity(), 100);
    index.Clear();
    EXPECT_EQ(index.Capacity(), 0);
    owner->items.clear();
    Add(1, 5);
    EXPECT_EQ(index.Capacity(), 100);
}

TEST_F(IndexTest, EightEntriesAreSortedBySelectionAlone) {
    Fill({5, 3, 8, 1, 7, 2, 6, 4});
    index.Sort();
    EXPECT_EQ(owner->calls.compare_items, 7 * 8 / 2);
    EXPECT_EQ(Positions(), (Ids{4, 6, 2, 8, 1, 7, 5, 3}));
}

TEST_F(IndexTest, NineEntriesArePartitionedFirst) {
    Fill({1, 2, 3, 4, 5, 6, 7, 8, 9});
    index.Sort();
    // 5 is the pivot and changes places with 1: upwards 2, 3, 4, 1 and 6 are compared, downwards
    // 9, 8, 7, 6 and 1; then two ranges of four are left to the selection.
    EXPECT_EQ(Positions(), (Ids{1, 2, 3, 4, 5, 6, 7, 8, 9}));
    EXPECT_EQ(owner->calls.compare_items, 5 + 5 + 6 + 6);
}

TEST_F(IndexTest, TheFirstOfEqualLargestEntriesGoesUp) {
    Fill({7, 7, 1});
    index.Sort();
    // top 3: the first 7 changes places with the 1; top 2: the other 7 stays
    EXPECT_EQ(Positions(), (Ids{3, 2, 1}));
}

TEST_F(IndexTest, SortNamesAnOwnerWhoseEnumerationDoesNotEndAndSortsAllTheSame) {
    Fill({3, 1, 2});
    owner->after_last = 2;
    const auto raised = Raised([&] { index.Sort(); });
    EXPECT_EQ(raised.number, -1);
    EXPECT_EQ(raised.source, L"MSIndex.Sort");
    EXPECT_EQ(raised.description, L"Misbehaved container: .Count + 1 x .EnumItems <> 0");
    EXPECT_EQ(Positions(), (Ids{2, 3, 1}));
}

TEST_F(IndexTest, ItemOutOfRangeSaysWhatIsInRange) {
    auto raised = Raised([&] { index.Item(0); });
    EXPECT_EQ(raised.number, -1);
    EXPECT_EQ(raised.source, L"MSIndex.Item");
    EXPECT_EQ(raised.description, L"Invalid Index (0). Collection is empty.");
    Fill({1, 2, 3});
    index.Sort();
    raised = Raised([&] { index.Item(4); });
    EXPECT_EQ(raised.number, -1);
    EXPECT_EQ(raised.description, L"Invalid Index (4). Valid range is 1 to 3");
    EXPECT_EQ(Raised([&] { index.Item(-1); }).description,
              L"Invalid Index (-1). Valid range is 1 to 3");
}

TEST_F(IndexTest, ANegativeInitialSizeIsRefusedAndNotStored) {
    index.SetInitialSize(5);
    const auto raised = Raised([&] { index.SetInitialSize(-1); });
    EXPECT_EQ(raised.number, -1);
    EXPECT_EQ(raised.source, L"MSIndex.InitialSize (Let)");
    EXPECT_EQ(raised.description, L"Invalid initial size specified: -1 (must be >= 0)");
    EXPECT_EQ(index.InitialSize(), 5);
}

TEST_F(IndexTest, AGrowFactorOfOneIsAcceptedAndOneBelowIsNot) {
    index.SetGrowFactor(1.0);
    EXPECT_EQ(index.GrowFactor(), 1.0);
    const auto raised = Raised([&] { index.SetGrowFactor(0.99); });
    EXPECT_EQ(raised.number, -1);
    EXPECT_EQ(raised.source, L"MSIndex.GrowFactor (Let)");
    EXPECT_EQ(raised.description, L"Invalid factor specified: 0.99 (must be > 1)");
    EXPECT_EQ(index.GrowFactor(), 1.0);
}

TEST_F(IndexTest, InsertGrowsAFullIndexByTheFactorAndOne) {
    Fill({1, 2, 3, 4, 5, 6, 7, 8, 9, 10});
    index.Sort();
    EXPECT_EQ(index.Capacity(), 10);
    Add(11, 11);
    EXPECT_EQ(index.Capacity(), 14);
    for (std::int32_t id = 12; id <= 14; ++id) Add(id, id);
    EXPECT_EQ(index.Capacity(), 14);
    Add(15, 15);
    EXPECT_EQ(index.Capacity(), 19);
}

TEST_F(IndexTest, AGrowthToAHalfRoundsToTheEvenNeighbour) {
    index.SetGrowFactor(1.5);
    Add(1, 1);
    EXPECT_EQ(index.Capacity(), 2) << "1 x 1.5 + 1 is 2.5";
    index.SetGrowFactor(2.5);
    index.Clear();
    owner->items.clear();
    Add(1, 1);
    EXPECT_EQ(index.Capacity(), 4) << "1 x 2.5 + 1 is 3.5";
}

TEST_F(IndexTest, AGrowthBeyond32BitsIsAnOverflowAndChangesNothing) {
    index.SetGrowFactor(3e9);
    EXPECT_EQ(Raised([&] { Add(1, 1); }).number, 6);
    EXPECT_EQ(index.Count(), 0);
    EXPECT_EQ(index.Capacity(), 0);
}

TEST_F(IndexTest, TheCapacityNeverShrinks) {
    Fill({1, 2, 3});
    index.Sort();
    index.Delete(1);
    index.Delete(2);
    EXPECT_EQ(index.Capacity(), 3);
    EXPECT_EQ(Positions(), Ids{3});
}

TEST_F(IndexTest, TheSmallestKeyGoesToPositionOneAndMovesAllOthersUp) {
    Fill({10, 20, 30});
    index.Sort();
    Add(4, 5);
    EXPECT_EQ(Positions(), (Ids{4, 1, 2, 3}));
    Add(5, 99);
    EXPECT_EQ(Positions(), (Ids{4, 1, 2, 3, 5}));
    Add(6, 25);
    EXPECT_EQ(Positions(), (Ids{4, 1, 2, 6, 3, 5}));
}

TEST_F(IndexTest, DeletingWhatIsNotThereNamesIt) {
    Fill({10, 20, 30});
    index.Sort();
    owner->items[4] = 25;
    const auto raised = Raised([&] { index.Delete(4); });
    EXPECT_EQ(raised.number, -1);
    EXPECT_EQ(raised.source, L"MSIndex.Delete");
    EXPECT_EQ(raised.description, L"Entry '4' not found");
    EXPECT_EQ(index.Count(), 3);
    index.Clear();
    EXPECT_EQ(Raised([&] { index.Delete(1); }).description, L"Entry '1' not found");
}

TEST_F(IndexTest, FindGivesTheIdOrZero) {
    Fill({10, 20, 30, 40});
    index.Sort();
    for (std::int32_t id = 1; id <= 4; ++id) {
        EXPECT_EQ(index.Find(id * 10), id);
        EXPECT_EQ(index.FindPosition(id * 10), id);
    }
    EXPECT_EQ(index.Find(5), 0);
    EXPECT_EQ(index.Find(25), 0);
    EXPECT_EQ(index.Find(45), 0);
    index.Clear();
    EXPECT_EQ(index.Find(10), 0);
    EXPECT_EQ(index.FindPosition(10), -1);
}

TEST_F(IndexTest, TheSearchTakesTheLowerMiddle) {
    Fill({10, 20, 30, 40});
    index.Sort();
    const auto comparisons = [&](std::int32_t key) {
        owner->calls = {};
        index.FindPosition(key);
        return owner->calls.compare;
    };
    EXPECT_EQ(comparisons(20), 1);
    EXPECT_EQ(comparisons(30), 2);
    EXPECT_EQ(comparisons(40), 3);
    EXPECT_EQ(comparisons(10), 2);
}

TEST_F(IndexTest, AMissOnARangeOfOneIsThatPositionNegatedWhicheverSide) {
    Fill({10, 20, 30});
    index.Sort();
    EXPECT_EQ(index.FindPosition(5), -1);
    EXPECT_EQ(index.FindPosition(15), -1);
    EXPECT_EQ(index.FindPosition(25), -3);
    EXPECT_EQ(index.FindPosition(35), -3);
}

TEST_F(IndexTest, ASearchCostsAtMostTheBitsOfTheCount) {
    std::vector<std::int32_t> keys;
    for (std::int32_t i = 1; i <= 1000; ++i) keys.push_back(2 * i);
    Fill(keys);
    index.Sort();
    for (std::int32_t key = 1; key <= 2001; ++key) {
        owner->calls = {};
        const std::int32_t position = index.FindPosition(key);
        EXPECT_EQ(position > 0, key % 2 == 0) << key;
        EXPECT_LE(owner->calls.compare, 10) << key;
    }
}

TEST_F(IndexTest, FindIDPositionTellsWhereAnIdBelongs) {
    Fill({10, 20, 30});
    index.Sort();
    EXPECT_EQ(index.FindIDPosition(2), 2);
    owner->items[4] = 5;
    EXPECT_EQ(index.FindIDPosition(4), -1);
    owner->items[4] = 15;
    EXPECT_EQ(index.FindIDPosition(4), -2);
    owner->items[4] = 25;
    EXPECT_EQ(index.FindIDPosition(4), -3);
    owner->items[4] = 35;
    EXPECT_EQ(index.FindIDPosition(4), -4);
    index.Clear();
    EXPECT_EQ(index.FindIDPosition(4), -1);
}

TEST_F(IndexTest, AmongEqualKeysTheIdItselfIsFound) {
    Fill({10, 20, 20, 20, 20, 30});
    index.Create();
    for (std::int32_t id = 1; id <= 6; ++id) EXPECT_EQ(index.FindIDPosition(id), id);
}

TEST_F(IndexTest, AmongEqualKeysTheFirstAndTheLastPositionAreNotVisited) {
    Fill({20, 20, 20, 20});
    index.Create();
    // the search meets position 2
    EXPECT_EQ(index.FindIDPosition(2), 2);
    EXPECT_EQ(index.FindIDPosition(3), 3);
    EXPECT_EQ(index.FindIDPosition(1), -2);
    EXPECT_EQ(index.FindIDPosition(4), -2);
    EXPECT_EQ(Raised([&] { index.Delete(4); }).description, L"Entry '4' not found");
}

TEST_F(IndexTest, ANewIdWithAnEqualKeyGoesToTheStartOfItsRun) {
    Fill({10, 20, 20, 20, 30});
    index.Create();
    Add(9, 20);
    EXPECT_EQ(Positions(), (Ids{1, 9, 2, 3, 4, 5}));
    Fill({20, 20, 20});
    index.Create();
    Add(9, 20);
    EXPECT_EQ(Positions(), (Ids{1, 9, 2, 3})) << "position 2 when the run begins at 1";
}

TEST_F(IndexTest, AnOwnersErrorPassesThroughAndLeavesTheIndexAsItWas) {
    Fill({10, 20, 30});
    index.Sort();
    owner->items[4] = 15;
    owner->before_compare = [] { throw Error(57, L"", L"Device I/O error"); };
    EXPECT_EQ(Raised([&] { index.Find(10); }).number, 57);
    EXPECT_EQ(Raised([&] { index.Insert(4); }).number, 57);
    EXPECT_EQ(Raised([&] { index.Delete(1); }).number, 57);
    EXPECT_EQ(Positions(), (Ids{1, 2, 3}));
}

TEST_F(IndexTest, AnOwnerThatClearsTheIndexWithinACallbackDoesNoHarm) {
    std::vector<std::int32_t> keys;
    for (std::int32_t i = 0; i < 100; ++i) keys.push_back(i * 37 % 101);
    Fill(keys);
    index.Sort();
    owner->before_compare = [&] { index.Clear(); };
    EXPECT_EQ(Raised([&] { index.Find(7); }).number, 9);
    index.Sort();
    EXPECT_EQ(index.Count(), 0) << "cleared for good, the sorting went on beside it";
    owner->before_compare = [&] { index.SetMSContainer(nullptr); };
    index.Sort();
    EXPECT_EQ(index.MSContainer(), nullptr);
    EXPECT_EQ(index.Count(), 100);
}

TEST_F(IndexTest, AnOwnerThatOnlyTheIndexHoldsOutlivesItsOwnSort) {
    Fill({3, 1, 2});
    CountingOwner* const only = owner.get();
    const std::weak_ptr<CountingOwner> watched = owner;
    owner.reset();
    bool alive = true;
    only->before_compare = [&] {
        index.SetMSContainer(nullptr);
        alive = alive && !watched.expired();
    };
    index.Sort();
    EXPECT_TRUE(alive);
    EXPECT_TRUE(watched.expired()) << "released when the sort was done";
    EXPECT_EQ(Positions(), (Ids{2, 3, 1}));
}

TEST_F(IndexTest, AnOwnerThatComparesAtRandomDoesNoHarm) {
    std::vector<std::int32_t> keys(5000, 1);
    Fill(keys);
    std::uint32_t state = 1;
    owner->before_compare = [&] {
        state = state * 1664525u + 1013904223u;
        owner->items[static_cast<std::int32_t>(state >> 8) % 5000 + 1] =
            static_cast<std::int32_t>(state >> 20);
    };
    index.Sort();
    Ids ids = Positions();
    std::sort(ids.begin(), ids.end());
    for (std::int32_t id = 1; id <= 5000; ++id)
        EXPECT_EQ(ids[static_cast<std::size_t>(id - 1)], id);
}

}  // namespace
}  // namespace demovex
