// The bits of a shift state, as the platform's form events number them.
#pragma once

namespace demovex::shift_state {

inline constexpr int kShift = 1;
inline constexpr int kCtrl = 2;
inline constexpr int kAlt = 4;

}  // namespace demovex::shift_state
