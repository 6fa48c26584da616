#include "platform/sound_win.h"

#include <windows.h>

#include <mmsystem.h>

#include <string>

namespace demovex {

void WinSound::Play(std::wstring_view path) noexcept {
    try {
        sndPlaySoundW(std::wstring(path).c_str(), SND_ASYNC);
    } catch (...) {  // no memory for a path: no sound
    }
}

void WinSound::Beep() noexcept {
    MessageBeep(MB_OK);
}

}  // namespace demovex
