// The key of the containers' callbacks: what an owner's items are looked up by.
#pragma once

#include <cstdint>
#include <string>
#include <variant>

namespace demovex {

// A string or a number. A container passes it to its owner unread.
using KeyValue = std::variant<std::wstring, std::int32_t, double>;

}  // namespace demovex
