// The system's sounds.
#pragma once

#include "platform/sound.h"

namespace demovex {

class WinSound : public ISound {
  public:
    // Plays in the background. A missing file, as the system's players do, sounds the default
    // sound or nothing.
    void Play(std::wstring_view path) noexcept override;
    void Beep() noexcept override;
};

}  // namespace demovex
