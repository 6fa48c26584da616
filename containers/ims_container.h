// IMSContainer: the callbacks by which a container learns about its owner's items.
//
// A container stores ids only: non-zero signed 32-bit integers that name the owner's items; 0 means
// no item or the end of an enumeration. Every callback receives the container's Tag unchanged, so
// that one owner can serve several containers over different keys.
#pragma once

#include <cstdint>

#include "base/key_value.h"

namespace demovex {

class IMSContainer {
  public:
    virtual ~IMSContainer() = default;

    // The number of items that the container is to hold.
    virtual std::int32_t Count(std::int32_t Tag) = 0;

    // The next item's id, every item once, in any order; after the last one 0, and the next call
    // starts anew. The owner keeps one cursor per Tag. A container that builds itself calls Count
    // once and then EnumItems exactly Count + 1 times.
    virtual std::int32_t EnumItems(std::int32_t Tag) = 0;

    // −1, 0 or 1 as item `id1` sorts before, equal to or after item `id2`.
    virtual std::int32_t CompareItems(std::int32_t id1, std::int32_t id2, std::int32_t Tag) = 0;

    // Hash value of item `id`'s key; never negative.
    virtual std::int32_t Hashvalue(std::int32_t id, std::int32_t Tag) = 0;

    // Hash value of `Key`; never negative, equal to Hashvalue of every item that matches `Key`.
    virtual std::int32_t HashKeyvalue(const KeyValue& Key, std::int32_t Tag) = 0;

    // 0 when item `id` matches `Key`, otherwise negative when `Key` sorts before it, else positive.
    virtual std::int32_t CompareItem(const KeyValue& Key, std::int32_t id, std::int32_t Tag) = 0;
};

}  // namespace demovex
