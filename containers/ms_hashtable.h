// MSHashtable: lookup by key over an owner's items. It stores ids only (one flat array of slots,
// linear probing) and learns hash values and equality from its owner, an IMSContainer.
//
//   MSHashtable table;
//   table.SetMSContainer(&owner);   // not owned: the owner outlives the table or unsets itself
//   table.Create();                 // after the owner has filled its storage
//   table.Insert(id);               // after the owner has stored the item: a rebuild enumerates it
//   id = table.Find(std::wstring(L"4711"));
//   table.Delete(id);               // while the owner still holds the item
//
// Ids are non-zero and stored at most once; the owner guarantees it, the table does not check.
//
// Costs: Find one HashKeyvalue and as a rule one or two CompareItem calls; Insert one Hashvalue, or
// a rebuild when the table is more than four fifths full; Delete one Hashvalue for each id of the
// run that the id stands in.
//
// Errors: -1 where said below; 91 without an owner, 11 before the first Create and after Clear, 9
// for a negative hash value or the deletion of an id that is not there, 6 when a size passes 32
// bits, 7 when the memory does not suffice. What an owner raises passes through. Nothing is rolled
// back: after an error Create makes the table whole again.
#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

#include "base/key_value.h"
#include "containers/ims_container.h"

namespace demovex {

class MSHashtable {
  public:
    MSHashtable() = default;
    MSHashtable(const MSHashtable&) = delete;
    MSHashtable& operator=(const MSHashtable&) = delete;

    // The owner, observed only.
    IMSContainer* MSContainer() const noexcept { return container_; }
    void SetMSContainer(IMSContainer* container) noexcept { container_ = container; }

    // Handed to every callback unchanged.
    std::int32_t Tag() const noexcept { return tag_; }
    void SetTag(std::int32_t tag) noexcept { tag_ = tag; }

    // The least number of slots that Create allots. A negative value raises -1 from
    // "MSHashtable.InitialSize (Let)" and is not stored.
    std::int32_t InitialSize() const noexcept { return initial_size_; }
    void SetInitialSize(std::int32_t size);

    std::int32_t Count() const noexcept { return count_; }
    // Number of slots: a prime after Create, 0 before it and after Clear.
    std::int32_t Size() const noexcept { return size_; }

    // The next stored id in slot order, 0 at the end; the call after that starts anew. Insert,
    // Delete and Create do not reset the cursor.
    std::int32_t EnumItems();

    void Clear();

    // Rebuilds the table from the owner: Count once, EnumItems Count + 1 times. Raises -1 from
    // "MSHashtable.Create" when the last of these calls does not return 0; the ids stay inserted.
    void Create();

    // The id of the item that matches `key`, or 0.
    std::int32_t Find(const KeyValue& key) const;

    // Raises -1 from "MSHashtable::Insert" when no slot is free.
    void Insert(std::int32_t id);

    // Raises -1 from "MSHashtable::Delete" when the table is found corrupted.
    void Delete(std::int32_t id);

    // Hash functions for owners. Both take the bytes of the text in the system's ANSI code page
    // (ITextService::ToAnsi), distinguish letter case and are never negative.
    static std::int32_t StringHashvalue(std::string_view ansi) noexcept;
    // For short texts only: raises 6 when the sum passes 32 bits.
    static std::int32_t StringHashvalueZX81(std::string_view ansi);

  private:
    IMSContainer& Owner() const;
    void SetSize(std::int32_t size) noexcept;
    // Slot number 1 to Size for a hash value; raises 11 without slots and 9 for a negative result.
    std::int32_t Home(std::int32_t hash) const;
    // Slot access that stays within the table whatever a callback did to it meanwhile.
    std::int32_t Slot(std::int32_t number) const;
    void SetSlot(std::int32_t number, std::int32_t id);
    std::int32_t Next(std::int32_t number) const noexcept {
        return number >= size_ ? 1 : number + 1;
    }

    IMSContainer* container_ = nullptr;
    std::int32_t tag_ = 0;
    std::int32_t count_ = 0;
    std::int32_t size_ = 0;
    std::uint64_t reciprocal_ = 0;  // of size_, rounded up: 2^64 / size_
    std::int32_t cursor_ = 0;
    std::int32_t initial_size_ = 0;
    std::vector<std::int32_t> slots_;  // slot n is element n - 1; 0 is empty
    std::vector<std::int32_t> spare_;  // room that Delete uses again and again
};

}  // namespace demovex
