#include "containers/ms_hashtable.h"

#include <new>
#include <stdexcept>
#include <string>
#include <utility>

#include "base/checked.h"
#include "containers/prime.h"

namespace demovex {
namespace {

// `count` zeroes; raises 7 when they do not fit into memory.
std::vector<std::int32_t> Zeroes(std::int32_t count) {
    try {
        return std::vector<std::int32_t>(static_cast<std::size_t>(count));
    } catch (const std::bad_alloc&) {
    } catch (const std::length_error&) {
    }
    RaiseRuntimeError(runtime_error::kOutOfMemory);
}

// A remainder keeps its sign: only a multiple of the size has a slot.
std::int32_t HomeOfNegative(std::int32_t hash, std::int32_t size) {
    const std::int32_t home = hash % size + 1;
    if (home < 1) RaiseRuntimeError(runtime_error::kSubscriptOutOfRange);
    return home;
}

}  // namespace

void MSHashtable::SetInitialSize(std::int32_t size) {
    if (size < 0) {
        RaiseOwnError(
            L"MSHashtable.InitialSize (Let)",
            L"Invalid initial size specified: " + std::to_wstring(size) + L" (must be >= 0)");
    }
    initial_size_ = size;
}

IMSContainer& MSHashtable::Owner() const {
    if (container_ == nullptr) RaiseRuntimeError(runtime_error::kObjectNotSet);
    return *container_;
}

std::int32_t MSHashtable::Home(std::int32_t hash) const {
    if (size_ == 0) RaiseRuntimeError(runtime_error::kDivisionByZero);
    if (hash < 0) return HomeOfNegative(hash, size_);
    // hash % size_ without a division, which would take as long as the rest of a search: the
    // fraction of hash / size_ in units of 2^-64, times size_ (Lemire, Kaser, Kurz: Faster
    // remainder by direct computation; exact for 32 bits)
    const std::uint64_t fraction = reciprocal_ * static_cast<std::uint32_t>(hash);
    const auto size = static_cast<std::uint32_t>(size_);
    const std::uint64_t high = (fraction >> 32) * size;
    const std::uint64_t low = ((fraction & 0xFFFFFFFF) * size) >> 32;
    return static_cast<std::int32_t>((high + low) >> 32) + 1;
}

void MSHashtable::SetSize(std::int32_t size) noexcept {
    size_ = size;
    reciprocal_ = size == 0 ? 0 : UINT64_MAX / static_cast<std::uint32_t>(size) + 1;
}

std::int32_t MSHashtable::Slot(std::int32_t number) const {
    const auto index = static_cast<std::size_t>(number - 1);
    if (index >= slots_.size()) RaiseRuntimeError(runtime_error::kSubscriptOutOfRange);
    return slots_[index];
}

void MSHashtable::SetSlot(std::int32_t number, std::int32_t id) {
    const auto index = static_cast<std::size_t>(number - 1);
    if (index >= slots_.size()) RaiseRuntimeError(runtime_error::kSubscriptOutOfRange);
    slots_[index] = id;
}

std::int32_t MSHashtable::EnumItems() {
    for (++cursor_; cursor_ <= size_; ++cursor_) {
        if (const std::int32_t id = Slot(cursor_); id != 0) return id;
    }
    cursor_ = 0;
    return 0;
}

void MSHashtable::Clear() {
    std::vector<std::int32_t> single = Zeroes(1);
    count_ = 0;
    SetSize(0);
    slots_ = std::move(single);
}

void MSHashtable::Create() {
    count_ = 0;
    const std::int32_t items = Owner().Count(tag_);
    std::int32_t size = CheckedAdd(CheckedMul(2, items), 20);
    if (size < initial_size_) size = initial_size_;
    size = FindPrime(size);
    slots_ = Zeroes(size);
    SetSize(size);
    for (std::int32_t i = 1; i <= items; ++i) Insert(Owner().EnumItems(tag_));
    if (Owner().EnumItems(tag_) != 0) {
        RaiseOwnError(L"MSHashtable.Create", L"Misbehaved container: .Count + 1 x .EnumItems <> 0");
    }
}

std::int32_t MSHashtable::Find(const KeyValue& key) const {
    std::int32_t slot = Home(Owner().HashKeyvalue(key, tag_));
    // counted, so that it ends even when a callback rebuilds the table
    for (std::int32_t visited = 0; visited < size_; ++visited, slot = Next(slot)) {
        const std::int32_t id = Slot(slot);
        if (id == 0) return 0;
        if (Owner().CompareItem(key, id, tag_) == 0) return id;
    }
    return 0;
}

void MSHashtable::Insert(std::int32_t id) {
    if (count_ > size_ * 0.8) {
        // the owner already holds the item, so its enumeration brings the new id along
        Create();
        return;
    }
    const std::int32_t home = Home(Owner().Hashvalue(id, tag_));
    std::int32_t slot = home;
    while (Slot(slot) != 0) {
        slot = Next(slot);
        if (slot == home) RaiseOwnError(L"MSHashtable::Insert", L"Hashtable is corrupted");
    }
    count_ = CheckedAdd(count_, 1);
    SetSlot(slot, id);
}

void MSHashtable::Delete(std::int32_t id) {
    const std::int32_t home = Home(Owner().Hashvalue(id, tag_));
    std::int32_t run = 0;
    for (std::int32_t slot = home; Slot(slot) != 0; slot = Next(slot)) {
        if (++run == size_) RaiseOwnError(L"MSHashtable::Delete", L"Hashtable is corrupted (2)");
    }
    if (run == 0) RaiseRuntimeError(runtime_error::kSubscriptOutOfRange);

    if (run == 1) {
        if (const std::int32_t found = Slot(home); found != id) {
            RaiseOwnError(L"MSHashtable::Delete", L"Hashtable is corrupted: id = " +
                                                      std::to_wstring(found) + L" (correct is " +
                                                      std::to_wstring(id) + L")");
        }
        SetSlot(home, 0);
    } else {
        // Taken out of the object while owners are called, in case one calls back into Delete.
        std::vector<std::int32_t> others = std::exchange(spare_, {});
        others.clear();
        const auto room = static_cast<std::size_t>(run - 1);
        std::int32_t slot = home;
        for (std::int32_t i = 0; i < run; ++i, slot = Next(slot)) {
            if (const std::int32_t other = Slot(slot); other != id) {
                if (others.size() == room) RaiseRuntimeError(runtime_error::kSubscriptOutOfRange);
                others.push_back(other);
            }
            SetSlot(slot, 0);
        }
        for (const std::int32_t other : others) {
            count_ = CheckedSub(count_, 1);
            Insert(other);
        }
        spare_ = std::move(others);
    }
    count_ = CheckedSub(count_, 1);
}

std::int32_t MSHashtable::StringHashvalue(std::string_view ansi) noexcept {
    std::int32_t hash = 0;
    for (const char c : ansi) hash = (hash & 0x0FFFFFFF) * 5 + static_cast<unsigned char>(c);
    return hash;
}

std::int32_t MSHashtable::StringHashvalueZX81(std::string_view ansi) {
    std::int32_t hash = 0;
    std::int32_t multiplier = 1;
    for (const char c : ansi) {
        hash = CheckedAdd(hash, CheckedMul(static_cast<unsigned char>(c), multiplier));
        multiplier = multiplier * 75 % 65537;
    }
    return hash;
}

}  // namespace demovex
