// The system's sounds.
#pragma once

#include <windows.h>

#include "platform/sound.h"

namespace demovex {

class WinSound : public ISound {
  public:
    // The system's player: sndPlaySoundW.
    using Player = BOOL(WINAPI*)(LPCWSTR path, UINT flags);

    WinSound() noexcept = default;
    // For tests: another player in its place.
    explicit WinSound(Player player) noexcept : player_(player) {}

    // Plays in the background. A missing file, as the system's players do, sounds the default
    // sound or nothing.
    void Play(std::wstring_view path) noexcept override;
    void Beep() noexcept override;

  private:
    Player player_ = nullptr;  // null: the system's, looked for when it is first needed
};

}  // namespace demovex
