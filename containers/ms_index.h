// MSIndex: an owner's ids in the order that its IMSContainer callbacks define. Positional access,
// binary search by key and by id, ordered insertion and removal. Holds ids only.
//
//   MSIndex index;
//   index.SetMSContainer(owner);   // a counted reference
//   index.Sort();                  // or Create() when ids are 1 to n and already in key order
//   id = index.Find(std::wstring(L"4711"));
//   index.Insert(id);              // after the owner has stored the item
//   index.Delete(id);              // while the owner still holds it
//
// Positions are numbered from 1. Entries with equal keys stand in any order among themselves.
// CompareItems must return exactly -1, 0 or 1.
//
// Costs: searches about log2 n callbacks; Insert and Delete one block move of the tail besides;
// Sort about 1.4 n log2 n callbacks, no recursion. Create costs nothing: the identity is stored as
// such until an Insert or Delete changes it.
//
// Errors: -1 where said below; 91 without an owner, 6 when a count or capacity passes 32 bits, 7
// when the memory does not suffice. What an owner raises passes through.
#pragma once

#include <cstdint>
#include <memory>

#include "base/key_value.h"
#include "containers/ims_container.h"

namespace demovex {

class MSIndex {
  public:
    MSIndex() = default;
    MSIndex(const MSIndex&) = delete;
    MSIndex& operator=(const MSIndex&) = delete;

    // The owner, held by a counted reference. An owner that owns its index hands in a pointer that
    // shares no count, else the two would keep each other alive.
    const std::shared_ptr<IMSContainer>& MSContainer() const noexcept { return container_; }
    void SetMSContainer(std::shared_ptr<IMSContainer> container) noexcept;

    // Handed to every callback unchanged.
    std::int32_t Tag() const noexcept { return tag_; }
    void SetTag(std::int32_t tag) noexcept { tag_ = tag; }

    std::int32_t Count() const noexcept { return count_; }
    // Allotted positions, at least Count.
    std::int32_t Capacity() const noexcept { return capacity_; }

    // The least capacity that Sort and Insert allot. A negative value raises -1 from
    // "MSIndex.InitialSize (Let)" and is not stored.
    std::int32_t InitialSize() const noexcept { return initial_size_; }
    void SetInitialSize(std::int32_t size);

    // By how much Insert enlarges a full index; default 1.2. A value below 1.0 raises -1 from
    // "MSIndex.GrowFactor (Let)" and is not stored.
    double GrowFactor() const noexcept { return grow_factor_; }
    void SetGrowFactor(double factor);

    // The id at position `index`, 1 to Count; raises -1 from "MSIndex.Item" for any other.
    std::int32_t Item(std::int32_t index) const;

    void Clear();

    // Position i holds id i for all of the owner's items. Calls only the owner's Count.
    void Create();

    // Fills the index from the owner's enumeration and sorts it. Raises -1 from "MSIndex.Sort" when
    // the enumeration does not end after Count items; the index is filled and sorted all the same.
    void Sort();

    // The id at FindPosition, or 0 when nothing matches.
    std::int32_t Find(const KeyValue& key) const;

    // The position of an entry that matches `key`, or a value below 1 (never above -1).
    std::int32_t FindPosition(const KeyValue& key) const;

    // The position of `id`, or the negated position where it belongs. Among entries with equal keys
    // the last and the first position of the index are not looked at.
    std::int32_t FindIDPosition(std::int32_t id) const;

    void Insert(std::int32_t id);

    // Raises -1 from "MSIndex.Delete" when FindIDPosition does not find `id`.
    void Delete(std::int32_t id);

  private:
    IMSContainer& Owner() const;
    // Entry at a position; stays within the array whatever a callback did to it meanwhile.
    std::int32_t Entry(std::int32_t position) const;
    std::int32_t Compare(std::int32_t id1, std::int32_t id2) const;
    // An array of `size` positions of which the first `kept` are those of the present one.
    std::shared_ptr<std::int32_t[]> Allot(std::int32_t size, std::int32_t kept) const;
    // Writes the identity out before it is changed.
    void Materialize();

    std::shared_ptr<IMSContainer> container_;
    std::int32_t tag_ = 0;
    std::int32_t count_ = 0;
    std::int32_t capacity_ = 0;
    std::int32_t initial_size_ = 0;
    double grow_factor_ = 1.2;
    bool identity_ = false;  // position i holds i and there is no array
    // Position n is element n - 1 of capacity_ elements. Shared so that sorting goes on safely with
    // the array it began with if an owner changes the index within a callback.
    std::shared_ptr<std::int32_t[]> positions_;
};

}  // namespace demovex
