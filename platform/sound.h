// Sounds.
#pragma once

#include <string_view>

namespace demovex {

class ISound {
  public:
    virtual ~ISound() = default;

    // Starts playing a wave file and returns at once. A missing file or device is not reported.
    virtual void Play(std::wstring_view path) noexcept = 0;

    // The system's beep.
    virtual void Beep() noexcept = 0;
};

}  // namespace demovex
