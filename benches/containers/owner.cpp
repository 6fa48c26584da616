#include "benches/containers/owner.h"

#include <algorithm>
#include <numeric>
#include <random>
#include <unordered_set>

using namespace demovex;

namespace {

class Owner final : public BenchOwner {
  public:
    Owner(std::uint32_t seed, Keys kind) {
        keys.resize(kIds + 1);
        std::mt19937 random(seed);
        std::iota(keys.begin(), keys.end(), 500);
        if (kind == Keys::kScattered) {
            std::unordered_set<std::int32_t> taken;
            for (std::int32_t& key : keys) {
                do key = static_cast<std::int32_t>(random() >> 2);
                while (!taken.insert(key).second);
            }
        }
        for (std::int32_t& key : keys) key *= 2;
        if (kind == Keys::kShuffled) std::shuffle(keys.begin() + 1, keys.end(), random);
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
    static std::int32_t Hash(std::int32_t key) { return key; }
    std::int32_t cursor_ = 0;
};

}  // namespace

std::shared_ptr<BenchOwner> MakeOwner(std::uint32_t seed, Keys kind) {
    return std::make_shared<Owner>(seed, kind);
}
