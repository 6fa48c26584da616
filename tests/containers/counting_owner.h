// An owner for container tests: items with whole-number keys, every callback counted.
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <vector>

#include "containers/ims_container.h"

namespace demovex {

class CountingOwner final : public IMSContainer {
  public:
    // What the hash of a key is; by default the key itself.
    std::function<std::int32_t(std::int32_t)> hash = [](std::int32_t key) { return key; };
    // Returned by EnumItems after the last item instead of 0, if set.
    std::int32_t after_last = 0;
    // Raises from here when set.
    std::function<void()> before_count;
    std::function<void()> before_compare;

    std::map<std::int32_t, std::int32_t> items;  // id to key

    struct Calls {
        int count = 0, enum_items = 0, compare_items = 0, hashvalue = 0, hash_key = 0, compare = 0;
        std::vector<std::int32_t> tags;  // different ones, in order of appearance
    } calls;

    std::int32_t Count(std::int32_t tag) override {
        ++calls.count;
        Note(tag);
        if (before_count) before_count();
        return static_cast<std::int32_t>(items.size());
    }
    std::int32_t EnumItems(std::int32_t tag) override {
        ++calls.enum_items;
        Note(tag);
        const auto next = items.upper_bound(cursor_);
        if (next == items.end()) {
            cursor_ = kBeforeFirst;
            return after_last;
        }
        cursor_ = next->first;
        return cursor_;
    }
    std::int32_t CompareItems(std::int32_t id1, std::int32_t id2, std::int32_t tag) override {
        ++calls.compare_items;
        Note(tag);
        if (before_compare) before_compare();
        const std::int32_t a = items.at(id1), b = items.at(id2);
        return a < b ? -1 : a > b ? 1 : 0;
    }
    std::int32_t Hashvalue(std::int32_t id, std::int32_t tag) override {
        ++calls.hashvalue;
        Note(tag);
        return hash(items.at(id));
    }
    std::int32_t HashKeyvalue(const KeyValue& key, std::int32_t tag) override {
        ++calls.hash_key;
        Note(tag);
        return hash(std::get<std::int32_t>(key));
    }
    std::int32_t CompareItem(const KeyValue& key, std::int32_t id, std::int32_t tag) override {
        ++calls.compare;
        Note(tag);
        if (before_compare) before_compare();
        const std::int32_t a = std::get<std::int32_t>(key), b = items.at(id);
        return a < b ? -1 : a > b ? 1 : 0;
    }

  private:
    static constexpr std::int32_t kBeforeFirst = -2147483647 - 1;

    void Note(std::int32_t tag) {
        if (calls.tags.empty() || calls.tags.back() != tag) calls.tags.push_back(tag);
    }

    std::int32_t cursor_ = kBeforeFirst;
};

}  // namespace demovex
