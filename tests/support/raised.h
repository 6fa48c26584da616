// What a call raised, for expectations on errors:
//   EXPECT_EQ(RaisedBy([&] { text.ToNumber(L"1a"); }), 13);
#pragma once

#include <cstdint>

#include "base/error.h"

namespace demovex {

// The number of the error that `f` raises; 0 when it raises none.
template <typename F>
std::int32_t RaisedBy(F&& f) {
    try {
        f();
    } catch (const Error& error) {
        return error.number();
    }
    return 0;
}

}  // namespace demovex
