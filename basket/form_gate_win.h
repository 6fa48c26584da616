// How the controls' own procedures reach the form: the edge between the system and the component.
#pragma once

#include <memory>
#include <type_traits>

namespace demovex {

class TestLibForm;

// A call that takes the form; refers to the callable it was made from and never allocates.
class FormCall {
  public:
    template <class Callable>
    // NOLINTNEXTLINE(bugprone-forwarding-reference-overload): the constraint leaves copying alone
    requires(!std::is_same_v<std::remove_cvref_t<Callable>, FormCall>) FormCall(Callable&& callable)
    noexcept  // NOLINT(google-explicit-constructor)
        : object_(const_cast<void*>(static_cast<const void*>(&callable))),
          call_([](void* object, TestLibForm& form) {
              (*static_cast<std::remove_reference_t<Callable>*>(object))(form);
          }) {}
    void operator()(TestLibForm& form) const { call_(object_, form); }

  private:
    void* object_;
    void (*call_)(void*, TestLibForm&);
};

class IFormGate {
  public:
    virtual ~IFormGate() = default;

    // Runs `call` with the form, if there still is one. Whatever it raises is shown to the user and
    // goes no further. The window may be gone afterwards.
    virtual void Forward(FormCall call) noexcept = 0;

    // As long as the result is held, every object of the window stays in memory, even when the
    // window itself is destroyed.
    virtual std::shared_ptr<void> KeepAlive() noexcept = 0;
};

// Messages that the basket window posts to itself.
namespace window_message {
inline constexpr unsigned kSetFocusTimer = 0x8000 + 1;  // WM_APP + 1: a tick of SetFocusTimer
inline constexpr unsigned kEditKey = 0x8000 + 2;        // wParam: EditKey
// A key message that was kept from the host's loop, by its distance from the first of them (see
// window_keys_win.h).
inline constexpr unsigned kKey = 0x8000 + 0x100;
}  // namespace window_message

// Timers of the basket window.
namespace window_timer {
inline constexpr unsigned kSetFocusTimer = 1;
}

}  // namespace demovex
