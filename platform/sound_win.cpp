#include "platform/sound_win.h"

#include <mmsystem.h>

#include <string>

#include "platform/system_library_win.h"

namespace demovex {

void WinSound::Play(std::wstring_view path) noexcept {
    // The system's thread plays on when the last basket has closed and the component is unloaded:
    // the player stays loaded, as all libraries do that are loaded late.
    if (player_ == nullptr) player_ = SystemFunction<Player>(L"winmm.dll", "sndPlaySoundW");
    if (player_ == nullptr) return;
    try {
        player_(std::wstring(path).c_str(), SND_ASYNC);
    } catch (...) {  // no memory for a path: no sound
    }
}

void WinSound::Beep() noexcept {
    MessageBeep(MB_OK);
}

}  // namespace demovex
