#include "containers/ms_hashtable.h"

#include <gtest/gtest.h>

#include <limits>
#include <random>

#include "base/error.h"
#include "containers/prime.h"
#include "tests/containers/counting_owner.h"
#include "tests/support/raised_error.h"

namespace demovex {
namespace {

class HashtableTest : public ::testing::Test {
  protected:
    HashtableTest() { table.SetMSContainer(&owner); }

    void Fill(std::int32_t count) {
        for (std::int32_t id = 1; id <= count; ++id) owner.items[id] = id * 10;
    }
    void Add(std::int32_t id, std::int32_t key) {
        owner.items[id] = key;
        table.Insert(id);
    }
    // Ids by slot, in slot order, as the enumeration gives them.
    std::vector<std::int32_t> Ids() {
        std::vector<std::int32_t> ids;
        while (const std::int32_t id = table.EnumItems()) ids.push_back(id);
        return ids;
    }

    CountingOwner owner;
    MSHashtable table;
};

TEST_F(HashtableTest, ANewTableIsEmptyAndHoldsNoSlots) {
    const MSHashtable fresh;
    EXPECT_EQ(fresh.MSContainer(), nullptr);
    EXPECT_EQ(fresh.Tag(), 0);
    EXPECT_EQ(fresh.InitialSize(), 0);
    EXPECT_EQ(fresh.Count(), 0);
    EXPECT_EQ(fresh.Size(), 0);
    EXPECT_EQ(table.MSContainer(), &owner);
}

TEST_F(HashtableTest, CreateSizesTheTableByTheNumberOfItems) {
    table.Create();
    EXPECT_EQ(table.Size(), 23);
    EXPECT_EQ(table.Count(), 0);
    Fill(100);
    table.Create();
    EXPECT_EQ(table.Size(), 223);
    EXPECT_EQ(table.Count(), 100);
}

TEST_F(HashtableTest, InitialSizeIsTheLeastSize) {
    Fill(10);
    table.SetInitialSize(1000);
    table.Create();
    EXPECT_EQ(table.Size(), 1009);
    table.SetInitialSize(0);
    table.Create();
    EXPECT_EQ(table.Size(), 41);
}

TEST_F(HashtableTest, InitialSizeCountsAtARebuildToo) {
    table.Create();
    table.SetInitialSize(1000);
    for (std::int32_t id = 1; id <= 19; ++id) Add(id, id);
    EXPECT_EQ(table.Size(), 23);
    Add(20, 20);
    EXPECT_EQ(table.Size(), 1009);
    EXPECT_EQ(table.InitialSize(), 1000);
}

TEST_F(HashtableTest, ANegativeInitialSizeIsRefusedAndNotStored) {
    table.SetInitialSize(0);
    EXPECT_EQ(Raised([&] { table.SetInitialSize(-1); }).description,
              L"Invalid initial size specified: -1 (must be >= 0)");
    EXPECT_EQ(table.InitialSize(), 0);
    table.SetInitialSize(7);
    const auto raised = Raised([&] { table.SetInitialSize(-3); });
    EXPECT_EQ(raised.number, -1);
    EXPECT_EQ(raised.source, L"MSHashtable.InitialSize (Let)");
    EXPECT_EQ(raised.description, L"Invalid initial size specified: -3 (must be >= 0)");
    EXPECT_EQ(table.InitialSize(), 7);
}

TEST_F(HashtableTest, CreateCallsCountOnceEnumItemsOneTimeMoreAndHashvalueForEach) {
    Fill(50);
    table.SetTag(7);
    table.Create();
    EXPECT_EQ(owner.calls.count, 1);
    EXPECT_EQ(owner.calls.enum_items, 51);
    EXPECT_EQ(owner.calls.hashvalue, 50);
    EXPECT_EQ(owner.calls.compare + owner.calls.compare_items + owner.calls.hash_key, 0);
    EXPECT_EQ(owner.calls.tags, std::vector<std::int32_t>{7});
}

TEST_F(HashtableTest, CreateNamesAnOwnerWhoseEnumerationDoesNotEnd) {
    Fill(5);
    owner.after_last = 3;
    const auto raised = Raised([&] { table.Create(); });
    EXPECT_EQ(raised.number, -1);
    EXPECT_EQ(raised.source, L"MSHashtable.Create");
    EXPECT_EQ(raised.description, L"Misbehaved container: .Count + 1 x .EnumItems <> 0");
    EXPECT_EQ(table.Count(), 5);
    EXPECT_EQ(table.Find(30), 3);
}

TEST_F(HashtableTest, TheTwentiethIdInTwentyThreeSlotsRebuildsTheTable) {
    table.Create();
    for (std::int32_t id = 1; id <= 19; ++id) Add(id, id);
    EXPECT_EQ(table.Size(), 23);
    EXPECT_EQ(table.Count(), 19);
    EXPECT_EQ(owner.calls.count, 1);
    Add(20, 20);
    EXPECT_EQ(owner.calls.count, 2);
    EXPECT_EQ(table.Size(), FindPrime(2 * 20 + 20));
    EXPECT_EQ(table.Count(), 20);
    for (std::int32_t id = 1; id <= 20; ++id) EXPECT_EQ(table.Find(id), id);
}

TEST_F(HashtableTest, IdsWithOneHomeStandSideBySideAndTheSecondMovesUp) {
    table.Create();
    Add(1, 5);
    Add(2, 28);  // 28 mod 23 is 5, too
    Add(3, 9);
    EXPECT_EQ(Ids(), (std::vector<std::int32_t>{1, 2, 3}));
    owner.calls = {};
    table.Delete(1);
    EXPECT_EQ(owner.calls.hashvalue, 2) << "the deleted one's home and the re-inserted one's";
    EXPECT_EQ(table.Count(), 2);
    owner.calls = {};
    EXPECT_EQ(table.Find(28), 2);
    EXPECT_EQ(owner.calls.compare, 1) << "it stands in its home slot";
    EXPECT_EQ(table.Find(5), 0);
}

TEST_F(HashtableTest, ARunThatWrapsIsMeasuredClearedAndReinserted) {
    table.Create();
    Add(1, 21);       // slot 22
    Add(2, 22);       // slot 23
    Add(3, 21 + 23);  // slot 1
    Add(4, 22 + 23);  // slot 2
    Add(5, 0);        // home slot 1, stands in slot 3
    EXPECT_EQ(Ids(), (std::vector<std::int32_t>{3, 4, 5, 1, 2}));
    table.Delete(1);
    EXPECT_EQ(Ids(), (std::vector<std::int32_t>{4, 5, 3, 2}));
    for (const auto& [id, key] : owner.items) EXPECT_EQ(table.Find(key), id == 1 ? 0 : id);
    table.Delete(4);
    EXPECT_EQ(Ids(), (std::vector<std::int32_t>{5, 3, 2}));
}

TEST_F(HashtableTest, FindLooksNoFurtherThanAnEmptySlot) {
    table.Create();
    Add(1, 5);
    owner.calls = {};
    EXPECT_EQ(table.Find(7), 0);
    EXPECT_EQ(owner.calls.hash_key, 1);
    EXPECT_EQ(owner.calls.compare, 0);
    EXPECT_EQ(table.Find(28), 0);
    EXPECT_EQ(owner.calls.compare, 1);
}

TEST_F(HashtableTest, EnumItemsGoesBySlotAndStartsAnewAfterTheEnd) {
    table.Create();
    EXPECT_EQ(table.EnumItems(), 0);
    EXPECT_EQ(table.EnumItems(), 0);
    Add(1, 9);
    Add(2, 3);
    EXPECT_EQ(table.EnumItems(), 2);
    EXPECT_EQ(table.EnumItems(), 1);
    EXPECT_EQ(table.EnumItems(), 0);
    EXPECT_EQ(table.EnumItems(), 2);
}

TEST_F(HashtableTest, InsertAndDeleteDoNotResetTheEnumeration) {
    table.Create();
    Add(1, 3);
    Add(2, 9);
    EXPECT_EQ(table.EnumItems(), 1);
    Add(3, 1);
    table.Delete(1);
    EXPECT_EQ(table.EnumItems(), 2);
    EXPECT_EQ(table.EnumItems(), 0);
    EXPECT_EQ(table.EnumItems(), 3);
}

TEST_F(HashtableTest, CreateDoesNotResetTheEnumeration) {
    Fill(3);  // keys 10, 20 and 30 in 29 slots: 30 stands in the second
    table.Create();
    EXPECT_EQ(Ids(), (std::vector<std::int32_t>{3, 1, 2}));
    EXPECT_EQ(table.EnumItems(), 3);
    table.Create();
    EXPECT_EQ(table.EnumItems(), 1) << "it goes on behind the slot that it had reached";
    EXPECT_EQ(table.EnumItems(), 2);
    EXPECT_EQ(table.EnumItems(), 0);
    EXPECT_EQ(table.EnumItems(), 3);
}

TEST_F(HashtableTest, AnEnumerationBeyondAShrunkenTableEnds) {
    Fill(200);
    table.Create();
    for (int i = 0; i < 200; ++i) table.EnumItems();
    owner.items.clear();
    table.Create();
    EXPECT_EQ(table.EnumItems(), 0);
    EXPECT_EQ(table.EnumItems(), 0);
}

TEST_F(HashtableTest, ClearReturnsToNoSlots) {
    Fill(10);
    table.Create();
    table.Clear();
    EXPECT_EQ(table.Count(), 0);
    EXPECT_EQ(table.Size(), 0);
    EXPECT_EQ(table.EnumItems(), 0);
    EXPECT_EQ(Raised([&] { table.Find(10); }).number, 11);
    table.Create();
    EXPECT_EQ(table.Find(10), 1);
}

TEST_F(HashtableTest, EverythingBeforeCreateDividesByZero) {
    Fill(1);
    EXPECT_EQ(Raised([&] { table.Find(10); }).number, 11);
    EXPECT_EQ(Raised([&] { table.Insert(1); }).number, 11);
    EXPECT_EQ(Raised([&] { table.Delete(1); }).number, 11);
}

TEST_F(HashtableTest, WithoutAnOwnerTheObjectIsNotSet) {
    table.SetMSContainer(nullptr);
    EXPECT_EQ(Raised([&] { table.Create(); }).number, 91);
    EXPECT_EQ(Raised([&] { table.Find(1); }).number, 91);
    EXPECT_EQ(Raised([&] { table.Insert(1); }).number, 91);
    EXPECT_EQ(Raised([&] { table.Delete(1); }).number, 91);
}

TEST_F(HashtableTest, ANegativeHashIsASubscriptOutOfRange) {
    table.Create();
    EXPECT_EQ(Raised([&] { Add(1, -5); }).number, 9);
    EXPECT_EQ(Raised([&] { table.Find(-5); }).number, 9);
    EXPECT_EQ(Raised([&] { table.Delete(1); }).number, 9);
    EXPECT_EQ(table.Count(), 0);
    Add(2, -23);  // a multiple of the size leaves no remainder
    EXPECT_EQ(table.Find(-23), 2);
}

TEST_F(HashtableTest, TheRemainderOfTheHashChoosesTheSlotWhateverItsSize) {
    std::mt19937 random(8);
    for (const std::int32_t size : {0, 100, 4099, 65521}) {
        table.SetInitialSize(size);
        for (int round = 0; round < 300; ++round) {
            // the largest values, exact multiples and their neighbours, and any
            const std::int32_t prime = FindPrime(size < 20 ? 20 : size);
            const auto any = static_cast<std::int32_t>(random() >> 1);
            const std::int32_t a = round == 0       ? std::numeric_limits<std::int32_t>::max()
                                   : round % 3 == 0 ? any / prime * prime
                                   : round % 3 == 1 ? any / prime * prime + prime - 1
                                                    : any;
            const auto b = static_cast<std::int32_t>(random() >> 1);
            owner.items.clear();
            table.Create();
            ASSERT_EQ(table.Size(), prime);
            if (a < 0 || a % prime == b % prime) continue;
            Add(1, a);
            Add(2, b);
            const bool first = a % prime < b % prime;
            ASSERT_EQ(Ids(),
                      first ? (std::vector<std::int32_t>{1, 2}) : (std::vector<std::int32_t>{2, 1}))
                << a << " and " << b << " in " << prime;
        }
        ASSERT_EQ(table.Count(), 2);
    }
}

TEST_F(HashtableTest, DeletingFromAnEmptyHomeSlotIsASubscriptOutOfRange) {
    table.Create();
    Add(1, 5);
    owner.items[2] = 7;
    EXPECT_EQ(Raised([&] { table.Delete(2); }).number, 9);
    EXPECT_EQ(Ids(), (std::vector<std::int32_t>{1}));
    EXPECT_EQ(table.Count(), 1);
}

TEST_F(HashtableTest, DeletingAnotherIdThanTheOneInItsHomeSlotNamesBoth) {
    table.Create();
    Add(1, 5);
    owner.items[2] = 5;
    const auto raised = Raised([&] { table.Delete(2); });
    EXPECT_EQ(raised.number, -1);
    EXPECT_EQ(raised.source, L"MSHashtable::Delete");
    EXPECT_EQ(raised.description, L"Hashtable is corrupted: id = 1 (correct is 2)");
    EXPECT_EQ(table.Find(5), 1);
}

TEST_F(HashtableTest, DeletingAnIdThatIsNotInItsRunClearsPartOfTheRun) {
    table.Create();
    Add(1, 5);
    Add(2, 28);
    Add(3, 51);
    owner.items[4] = 5;
    EXPECT_EQ(Raised([&] { table.Delete(4); }).number, 9);
    EXPECT_EQ(Ids(), (std::vector<std::int32_t>{3}));
    table.Create();
    EXPECT_EQ(table.Count(), 4) << "Create makes it whole again";
}

// A rebuild that fails has set the count to 0 but left the slots: the way to a full table.
TEST_F(HashtableTest, ATableWithoutAnEmptySlotIsReportedAsCorrupted) {
    table.Create();
    for (std::int32_t id = 1; id <= 19; ++id) Add(id, id);
    owner.before_count = [] { RaiseRuntimeError(runtime_error::kOutOfMemory); };
    EXPECT_EQ(Raised([&] { Add(20, 20); }).number, 7);
    EXPECT_EQ(table.Count(), 0);
    for (std::int32_t id = 20; id <= 22; ++id) Add(id, id);
    Add(23, 24);  // home slot 2; all are full up to the end, so it stands in slot 1
    const auto full = Raised([&] { Add(24, 24); });
    EXPECT_EQ(full.number, -1);
    EXPECT_EQ(full.source, L"MSHashtable::Insert");
    EXPECT_EQ(full.description, L"Hashtable is corrupted");
    const auto no_end = Raised([&] { table.Delete(3); });
    EXPECT_EQ(no_end.number, -1);
    EXPECT_EQ(no_end.source, L"MSHashtable::Delete");
    EXPECT_EQ(no_end.description, L"Hashtable is corrupted (2)");
    EXPECT_EQ(table.Find(3), 3);
    EXPECT_EQ(table.Find(24), 23) << "found in the slot that is visited last";
    EXPECT_EQ(table.Find(99), 0) << "every slot was visited";
}

TEST_F(HashtableTest, AnOwnersErrorPassesThrough) {
    Fill(3);
    table.Create();
    owner.before_compare = [] { throw Error(1234, L"owner", L"no"); };
    const auto raised = Raised([&] { table.Find(10); });
    EXPECT_EQ(raised.number, 1234);
    EXPECT_EQ(raised.source, L"owner");
    EXPECT_EQ(raised.description, L"no");
}

TEST_F(HashtableTest, AnOwnerThatClearsTheTableWithinACallbackDoesNoHarm) {
    Fill(10);
    table.Create();
    owner.before_compare = [&] { table.Clear(); };
    EXPECT_EQ(table.Find(40), 4);
    table.Create();
    owner.hash = [&](std::int32_t) {
        table.Clear();
        return 3;
    };
    EXPECT_EQ(Raised([&] { table.Delete(1); }).number, 11);
}

class HugeOwner final : public IMSContainer {
  public:
    explicit HugeOwner(std::int32_t count) : count_(count) {}
    std::int32_t Count(std::int32_t) override { return count_; }
    std::int32_t EnumItems(std::int32_t) override { return 0; }
    std::int32_t CompareItems(std::int32_t, std::int32_t, std::int32_t) override { return 0; }
    std::int32_t Hashvalue(std::int32_t, std::int32_t) override { return 0; }
    std::int32_t HashKeyvalue(const KeyValue&, std::int32_t) override { return 0; }
    std::int32_t CompareItem(const KeyValue&, std::int32_t, std::int32_t) override { return 0; }

  private:
    std::int32_t count_;
};

TEST_F(HashtableTest, ASizeBeyond32BitsIsAnOverflow) {
    HugeOwner huge(1073741814);  // twice that and 20 is one too many
    table.SetMSContainer(&huge);
    EXPECT_EQ(Raised([&] { table.Create(); }).number, 6);
    EXPECT_EQ(table.Count(), 0);
}

TEST(StringHashvalue, MultipliesByFiveAndAddsTheCharacter) {
    EXPECT_EQ(MSHashtable::StringHashvalue(""), 0);
    EXPECT_EQ(MSHashtable::StringHashvalue("AB"), 391);
    EXPECT_NE(MSHashtable::StringHashvalue("ab"), 391) << "letter case counts";
    EXPECT_EQ(MSHashtable::StringHashvalue("\xFC"), 252) << "characters are 0 to 255";
}

TEST(StringHashvalue, NeverOverflowsAndIsNeverNegative) {
    const std::string text(100000, '\xFF');
    const std::int32_t hash = MSHashtable::StringHashvalue(text);
    EXPECT_GE(hash, 0);
    std::int64_t expected = 0;
    for (std::size_t i = 0; i < text.size(); ++i) expected = expected % 268435456 * 5 + 255;
    EXPECT_EQ(hash, expected);
}

TEST(StringHashvalueZX81, WeighsTheCharactersByTheGenerator) {
    EXPECT_EQ(MSHashtable::StringHashvalueZX81(""), 0);
    EXPECT_EQ(MSHashtable::StringHashvalueZX81("AB"), 5015);
    EXPECT_EQ(MSHashtable::StringHashvalueZX81("ABC"), 5015 + 67 * 5625);
    EXPECT_EQ(MSHashtable::StringHashvalueZX81("ABCD"),
              5015 + 67 * 5625 + 68 * (5625 * 75 % 65537));
    EXPECT_EQ(MSHashtable::StringHashvalueZX81("\xFC"), 252) << "characters are 0 to 255";
}

TEST(StringHashvalueZX81, RaisesOverflowForLongTexts) {
    EXPECT_EQ(Raised([] { MSHashtable::StringHashvalueZX81(std::string(10000, '\xFF')); }).number,
              6);
}

}  // namespace
}  // namespace demovex
