// An owner that writes down what it is asked to compare: the containers' costs are their owner's
// callbacks, so which pairs are compared, and when, is part of what they promise.
#pragma once

#include <cstdint>
#include <utility>
#include <vector>

#include "containers/ims_container.h"

namespace demovex {

// Items 1 to n with these keys.
class LoggingOwner final : public IMSContainer {
  public:
    using Comparisons = std::vector<std::pair<std::int32_t, std::int32_t>>;

    explicit LoggingOwner(std::vector<std::int32_t> item_keys) : keys(std::move(item_keys)) {}

    std::vector<std::int32_t> keys;
    std::int32_t answer = 1;  // what "after" is; "before" is its negative
    Comparisons items;        // CompareItems: both ids
    Comparisons lookups;      // CompareItem: the key and the id

    std::int32_t Key(std::int32_t id) const { return keys.at(static_cast<std::size_t>(id - 1)); }
    std::int32_t Order(std::int32_t a, std::int32_t b) const {
        return a < b ? -answer : a > b ? answer : 0;
    }

    std::int32_t Count(std::int32_t) override { return static_cast<std::int32_t>(keys.size()); }
    std::int32_t EnumItems(std::int32_t tag) override {
        cursor_ = cursor_ < Count(tag) ? cursor_ + 1 : 0;
        return cursor_;
    }
    std::int32_t CompareItems(std::int32_t id1, std::int32_t id2, std::int32_t) override {
        items.emplace_back(id1, id2);
        return Order(Key(id1), Key(id2));
    }
    std::int32_t Hashvalue(std::int32_t, std::int32_t) override { return 0; }
    std::int32_t HashKeyvalue(const KeyValue&, std::int32_t) override { return 0; }
    std::int32_t CompareItem(const KeyValue& key, std::int32_t id, std::int32_t) override {
        lookups.emplace_back(std::get<std::int32_t>(key), id);
        return Order(std::get<std::int32_t>(key), Key(id));
    }

  private:
    std::int32_t cursor_ = 0;
};

}  // namespace demovex
