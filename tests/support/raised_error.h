// What a call raised, with source and description:
//   const auto raised = Raised([&] { index.Item(0); });
//   EXPECT_EQ(raised.source, L"MSIndex.Item");
#pragma once

#include <cstdint>
#include <string>

#include "base/error.h"

namespace demovex {

struct RaisedError {
    std::int32_t number = 0;  // 0 when nothing was raised
    std::wstring source;
    std::wstring description;
};

template <typename F>
RaisedError Raised(F&& f) {
    try {
        f();
    } catch (const Error& error) {
        return {error.number(), error.source(), error.description()};
    }
    return {};
}

}  // namespace demovex
