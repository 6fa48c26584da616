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
#include "containers/ms_hashtable.h"
#include "containers/ms_index.h"

using namespace demovex;

namespace {

constexpr std::int32_t kIds = 1000000;

class Owner final : public IMSContainer {
  public:
    std::vector<std::int32_t> keys;  // key of id i at place i; place 0 is unused
    std::int32_t live = 0;           // ids 1 to live are items

    explicit Owner(std::uint32_t seed) : keys(kIds + 1) {
        // different keys in random order
        std::iota(keys.begin(), keys.end(), 0);
        for (std::int32_t& key : keys) key = key * 2 + 1000;
        std::shuffle(keys.begin() + 1, keys.end(), std::mt19937(seed));
    }

    std::int32_t Count(std::int32_t) override { return live; }
    std::int32_t EnumItems(std::int32_t) override {
        cursor_ = cursor_ < live ? cursor_ + 1 : 0;
        return cursor_;
    }
    std::int32_t CompareItems(std::int32_t a, std::int32_t b, std::int32_t) override {
        return Order(Key(a), Key(b));
    }
    std::int32_t Hashvalue(std::int32_t id, std::int32_t) override { return Hash(Key(id)); }
    std::int32_t HashKeyvalue(const KeyValue& key, std::int32_t) override {
        return Hash(std::get<std::int32_t>(key));
    }
    std::int32_t CompareItem(const KeyValue& key, std::int32_t id, std::int32_t) override {
        return Order(std::get<std::int32_t>(key), Key(id));
    }

  private:
    std::int32_t Key(std::int32_t id) const { return keys[static_cast<std::size_t>(id)]; }
    static std::int32_t Order(std::int32_t a, std::int32_t b) { return a < b ? -1 : a > b ? 1 : 0; }
    static std::int32_t Hash(std::int32_t key) {
        return static_cast<std::int32_t>(static_cast<std::uint32_t>(key) * 2654435761u >> 1);
    }
    std::int32_t cursor_ = 0;
};

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
using StdSet = std::unordered_set<std::int32_t, VirtualHash, VirtualEqual>;

template <typename Set>
void FlatFind(const char* name, const std::vector<std::int32_t>& keys, MSHashtable& table) {
    Set set(keys.begin(), keys.end());
    std::vector<std::int32_t> wanted = keys;
    std::shuffle(wanted.begin(), wanted.end(), std::mt19937(9));
    bench::Compare("hash table: find, 1,000,000 ids",
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

void Hashtables() {
    Owner owner(1);
    owner.live = kIds;
    MSHashtable table;
    table.SetMSContainer(&owner);
    table.Create();
    const std::vector<std::int32_t> keys(owner.keys.begin() + 1, owner.keys.end());

#ifdef DEMOVEX_BOOST
    FlatFind<boost::unordered_flat_set<std::int32_t>>("boost flat set", keys, table);
#else
    bench::PrintRow("hash table: find", "", "boost's flat set is not installed", "", "");
#endif
#ifdef DEMOVEX_ABSL
    FlatFind<absl::flat_hash_set<std::int32_t>>("absl flat set", keys, table);
#else
    bench::PrintRow("hash table: find", "", "absl's flat set is not installed", "", "");
#endif

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
    bench::Compare("hash table: find, hits", {"ours", find_all(0)},
                   {"std::unordered_set", find_all_std(0)}, options);
    bench::Compare("hash table: find, misses", {"ours", find_all(1)},
                   {"std::unordered_set", find_all_std(1)}, options);
    bench::Compare("hash table: Create", {"ours", [&] { table.Create(); }},
                   {"std::unordered_set",
                    [&] {
                        StdSet fresh(2 * kIds, VirtualHash{&owner}, VirtualEqual{&owner});
                        for (std::int32_t id = 1; id <= kIds; ++id) fresh.insert(id);
                    }},
                   options);
    bench::Compare("hash table: insert one by one",
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
    bench::Compare("hash table: delete",
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
    const auto owner = std::make_shared<Owner>(2);
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
    Hashtables();
    Sorting();
}
