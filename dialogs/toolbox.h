// Toolbox: copying a counted reference without counting.
//
// A container that points back at its owner must not keep the owner alive. Where the field is a
// counted reference all the same, CopyReferenceRaw fills and empties it behind the count's back:
//
//   Toolbox::CopyReferenceRaw(owner, field_);   // field_ was empty: the owner's count stays
//   ...
//   Toolbox::CopyReferenceRaw(CountedRef<T>(), field_);   // before field_ is destroyed
#pragma once

#include <cstring>
#include <type_traits>

namespace demovex {

class Toolbox {
  public:
    // Copies the one pointer that `source` consists of over `target`, bit for bit. Nothing is added
    // to or released from either side's count: a reference that `target` held before is forgotten,
    // and the copy must be overwritten raw again before `target` ends.
    template <class Reference>
    static void CopyReferenceRaw(const Reference& source, Reference& target) noexcept {
        static_assert(sizeof(Reference) == sizeof(void*), "a reference is exactly one pointer");
        static_assert(std::is_standard_layout_v<Reference>);
        std::memcpy(static_cast<void*>(&target), static_cast<const void*>(&source), sizeof(void*));
    }
};

}  // namespace demovex
