// The hash table and the sorted index with 1,000,000 ids. Against std the hash and the comparison
// are the very same virtual calls; the flat sets hold the integer keys themselves.
#include <algorithm>
#include <memory>
#include <numeric>
#include <random>
#include <unordered_set>
#include <vector>

#ifdef DEMOVEX_BOOST
#include <boost/unordered/unordered_flat_set.hpp>
#endif
#ifdef DEMOVEX_ABSL
#include <absl/container/flat_hash_set.h>
#endif

#include "benches/bench.h"
#include "benches/containers/owner.h"
#include "containers/ms_hashtable.h"
#include "containers/ms_index.h"
#include "containers/prime.h"

using namespace demovex;

namespace {

// The owner's calls as std::unordered_set wants them; a key is looked up without an id.
struct VirtualHash {
    using is_transparent = void;
    IMSContainer* owner;
    std::size_t operator()(std::int32_t id) const {
        return static_cast<std::size_t>(owner->Hashvalue(id, 0));
    }
    std::size_t operator()(const KeyValue& key) const {
        return static_cast<std::size_t>(owner->HashKeyvalue(key, 0));
    }
};
struct VirtualEqual {
    using is_transparent = void;
    IMSContainer* owner;
    bool operator()(std::int32_t a, std::int32_t b) const {
        return owner->CompareItems(a, b, 0) == 0;
    }
    bool operator()(const KeyValue& key, std::int32_t id) const {
        return owner->CompareItem(key, id, 0) == 0;
    }
    bool operator()(std::int32_t id, const KeyValue& key) const {
        return owner->CompareItem(key, id, 0) == 0;
    }
};

// What any table of this layout must do: a read of the slots and, with what stands there, one of
// the owner's storage, nothing being called or checked. The bar is twice that.
class BareTable {
  public:
    explicit BareTable(const BenchOwner& owner)
        : slots_(static_cast<std::size_t>(FindPrime(2 * kIds + 20))), keys_(owner.keys) {
        for (std::int32_t id = 1; id <= kIds; ++id) {
            std::size_t at = Home(keys_[static_cast<std::size_t>(id)]);
            while (slots_[at] != 0) at = at + 1 < slots_.size() ? at + 1 : 0;
            slots_[at] = id;
        }
    }
    std::int32_t Find(std::int32_t key) const {
        for (std::size_t at = Home(key);; at = at + 1 < slots_.size() ? at + 1 : 0) {
            const std::int32_t id = slots_[at];
            if (id == 0 || keys_[static_cast<std::size_t>(id)] == key) return id;
        }
    }

  private:
    std::size_t Home(std::int32_t key) const {
        return static_cast<std::uint32_t>(key) % static_cast<std::uint32_t>(slots_.size());
    }
    std::vector<std::int32_t> slots_;
    const std::vector<std::int32_t>& keys_;
};

// absl takes a hash as it comes and wants it spread; boost spreads by itself.
struct SpreadHash : VirtualHash {
    template <typename Key>
    std::size_t operator()(const Key& key) const {
        const std::uint64_t spread = VirtualHash::operator()(key) * 0x9E3779B97F4A7C15ull;
        return static_cast<std::size_t>(spread ^ (spread >> 32));
    }
};
using StdSet = std::unordered_set<std::int32_t, VirtualHash, VirtualEqual>;

template <typename Set>
void FlatFind(const std::string& which, const char* name, const std::vector<std::int32_t>& keys,
              MSHashtable& table, bool at_random = true) {
    Set set(keys.begin(), keys.end());
    std::vector<std::int32_t> wanted = keys;
    if (at_random) std::shuffle(wanted.begin(), wanted.end(), std::mt19937(9));
    bench::Compare(
        "hash table" + which + (at_random ? ": find at random" : ": find one after another"),
        {"ours",
         [&] {
             std::int32_t sum = 0;
             for (const std::int32_t key : wanted) sum ^= table.Find(key);
             bench::Keep(sum);
         }},
        {name,
         [&] {
             std::int32_t sum = 0;
             for (const std::int32_t key : wanted) sum ^= *set.find(key);
             bench::Keep(sum);
         }},
        {.operations = kIds, .bar = "level (1)"});
}

// The same search in a flat set that asks the owner just as the table does, and in the bare layout.
void FindLikeOurs(const std::string& which, BenchOwner& owner, MSHashtable& table) {
    std::vector<KeyValue> wanted(owner.keys.begin() + 1, owner.keys.end());
    std::vector<std::int32_t> plain(owner.keys.begin() + 1, owner.keys.end());
    std::shuffle(wanted.begin(), wanted.end(), std::mt19937(9));
    std::shuffle(plain.begin(), plain.end(), std::mt19937(9));
    const bench::Side ours{"ours", [&] {
                               std::int32_t sum = 0;
                               for (const KeyValue& key : wanted) sum ^= table.Find(key);
                               bench::Keep(sum);
                           }};
    const auto against = [&](const char* name, const auto& set) {
        bench::Compare("hash table" + which + ": find at random, the same calls", ours,
                       {name,
                        [&] {
                            std::int32_t sum = 0;
                            for (const KeyValue& key : wanted) sum ^= *set.find(key);
                            bench::Keep(sum);
                        }},
                       {.operations = kIds, .bar = "at least 1"});
    };
#ifdef DEMOVEX_BOOST
    boost::unordered_flat_set<std::int32_t, VirtualHash, VirtualEqual> boost_set(
        2 * kIds, VirtualHash{&owner}, VirtualEqual{&owner});
    for (std::int32_t id = 1; id <= kIds; ++id) boost_set.insert(id);
    against("boost flat set", boost_set);
#endif
#ifdef DEMOVEX_ABSL
    absl::flat_hash_set<std::int32_t, SpreadHash, VirtualEqual> absl_set(
        2 * kIds, SpreadHash{{&owner}}, VirtualEqual{&owner});
    for (std::int32_t id = 1; id <= kIds; ++id) absl_set.insert(id);
    against("absl flat set", absl_set);
#endif
    const BareTable bare(owner);
    bench::Compare("hash table" + which + ": find at random, against its layout's floor", ours,
                   {"no calls, no checks",
                    [&] {
                        std::int32_t sum = 0;
                        for (const std::int32_t key : plain) sum ^= bare.Find(key);
                        bench::Keep(sum);
                    }},
                   {.operations = kIds, .bar = "at least 0.5"});
}

void Hashtables(const std::string& which, Keys kind) {
    const std::shared_ptr<BenchOwner> made = MakeOwner(1, kind);
    BenchOwner& owner = *made;
    owner.live = kIds;
    MSHashtable table;
    table.SetMSContainer(&owner);
    table.Create();
    const std::vector<std::int32_t> keys(owner.keys.begin() + 1, owner.keys.end());

#ifdef DEMOVEX_BOOST
    FlatFind<boost::unordered_flat_set<std::int32_t>>(which, "boost flat set", keys, table);
    FlatFind<boost::unordered_flat_set<std::int32_t>>(which, "boost flat set", keys, table, false);
#else
    bench::PrintRow("hash table: find", "", "boost's flat set is not installed", "", "");
#endif
#ifdef DEMOVEX_ABSL
    FlatFind<absl::flat_hash_set<std::int32_t>>(which, "absl flat set", keys, table);
    FlatFind<absl::flat_hash_set<std::int32_t>>(which, "absl flat set", keys, table, false);
#else
    bench::PrintRow("hash table: find", "", "absl's flat set is not installed", "", "");
#endif

    FindLikeOurs(which, owner, table);

    StdSet set(16, VirtualHash{&owner}, VirtualEqual{&owner});
    for (std::int32_t id = 1; id <= kIds; ++id) set.insert(id);
    std::vector<std::int32_t> wanted = keys;
    std::shuffle(wanted.begin(), wanted.end(), std::mt19937(9));
    const bench::Options options{.runs = 5, .operations = kIds, .bar = "at least 1.5"};
    const auto find_all = [&](std::int32_t shift) {
        return [&, shift] {
            std::int32_t sum = 0;
            for (const std::int32_t key : wanted) sum ^= table.Find(key + shift);
            bench::Keep(sum);
        };
    };
    const auto find_all_std = [&](std::int32_t shift) {
        return [&, shift] {
            std::int32_t sum = 0;
            for (const std::int32_t key : wanted) {
                const auto found = set.find(KeyValue(key + shift));
                if (found != set.end()) sum ^= *found;
            }
            bench::Keep(sum);
        };
    };
    bench::Compare("hash table" + which + ": find, hits", {"ours", find_all(0)},
                   {"std::unordered_set", find_all_std(0)}, options);
    bench::Compare("hash table" + which + ": find, misses", {"ours", find_all(1)},
                   {"std::unordered_set", find_all_std(1)}, options);
    bench::Compare("hash table" + which + ": Create", {"ours", [&] { table.Create(); }},
                   {"std::unordered_set",
                    [&] {
                        StdSet fresh(2 * kIds, VirtualHash{&owner}, VirtualEqual{&owner});
                        for (std::int32_t id = 1; id <= kIds; ++id) fresh.insert(id);
                    }},
                   options);
    bench::Compare("hash table" + which + ": insert one by one",
                   {"ours",
                    [&] {
                        MSHashtable fresh;
                        fresh.SetMSContainer(&owner);
                        owner.live = 0;
                        fresh.Create();
                        for (std::int32_t id = 1; id <= kIds; ++id) {
                            owner.live = id;
                            fresh.Insert(id);
                        }
                        bench::Keep(fresh.Count());
                    }},
                   {"std::unordered_set",
                    [&] {
                        StdSet fresh(16, VirtualHash{&owner}, VirtualEqual{&owner});
                        for (std::int32_t id = 1; id <= kIds; ++id) fresh.insert(id);
                        bench::Keep(static_cast<int>(fresh.size()));
                    }},
                   options);
    std::vector<std::int32_t> ids(kIds);
    std::iota(ids.begin(), ids.end(), 1);
    std::shuffle(ids.begin(), ids.end(), std::mt19937(5));
    bench::Compare("hash table" + which + ": delete",
                   {"ours",
                    [&] {
                        for (const std::int32_t id : ids) table.Delete(id);
                    }},
                   {"std::unordered_set",
                    [&] {
                        for (const std::int32_t id : ids) set.erase(id);
                    }},
                   {.runs = 5, .operations = kIds, .bar = "at least 1.5", .before = [&] {
                        owner.live = kIds;
                        table.Create();
                        if (set.empty()) {
                            for (std::int32_t id = 1; id <= kIds; ++id) set.insert(id);
                        }
                    }});
}

void Sorting() {
    const std::shared_ptr<BenchOwner> owner = MakeOwner(2, Keys::kShuffled);
    owner->live = kIds;
    MSIndex index;
    index.SetMSContainer(owner);
    IMSContainer* const calls = owner.get();
    std::vector<std::int32_t> ids(kIds);
    bench::Compare("sorted index: Sort of 1,000,000 ids", {"ours", [&] { index.Sort(); }},
                   {"std::sort",
                    [&] {
                        for (std::int32_t& id : ids) id = calls->EnumItems(0);
                        calls->EnumItems(0);
                        std::sort(ids.begin(), ids.end(), [&](std::int32_t a, std::int32_t b) {
                            return calls->CompareItems(a, b, 0) < 0;
                        });
                    }},
                   {.runs = 9, .bar = "at least 0.91"});
}

}  // namespace

int main() {
    Hashtables(", numbered", Keys::kInOrder);
    Hashtables(", shuffled", Keys::kShuffled);
    Hashtables(", scattered", Keys::kScattered);
    Sorting();
}
