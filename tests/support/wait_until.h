// Waiting for a condition with a deadline.
//   ASSERT_TRUE(WaitUntil([&] { return box.IsShown(); }));
#pragma once

#include <chrono>
#include <thread>

namespace demovex {

template <typename Condition>
bool WaitUntil(Condition&& condition,
               std::chrono::milliseconds deadline = std::chrono::milliseconds(10'000)) {
    const auto end = std::chrono::steady_clock::now() + deadline;
    while (!condition()) {
        if (std::chrono::steady_clock::now() >= end) return false;
        std::this_thread::sleep_for(std::chrono::milliseconds(2));
    }
    return true;
}

}  // namespace demovex
