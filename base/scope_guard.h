// What is to happen when a scope is left, whichever way: by its end, by a return or by an error.
//
//   const FlagWhile busy(printing_);                            // set now, cleared at the end
//   const ScopeExit back([&] { master.stamm_.reset(); });       // must not raise
#pragma once

#include <utility>

namespace demovex {

template <typename Action>
class ScopeExit {
  public:
    explicit ScopeExit(Action action) : action_(std::move(action)) {}
    ~ScopeExit() { action_(); }
    ScopeExit(const ScopeExit&) = delete;
    ScopeExit& operator=(const ScopeExit&) = delete;

  private:
    Action action_;
};

// Sets a flag for as long as it lives.
class FlagWhile {
  public:
    explicit FlagWhile(bool& flag) noexcept : flag_(flag) { flag_ = true; }
    ~FlagWhile() { flag_ = false; }
    FlagWhile(const FlagWhile&) = delete;
    FlagWhile& operator=(const FlagWhile&) = delete;

  private:
    bool& flag_;
};

}  // namespace demovex
