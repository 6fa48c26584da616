#include "platform/sound_win.h"

#include <windows.h>

#include <mmsystem.h>

#include <string>

namespace demovex {

void WinSound::Play(std::wstring_view path) noexcept {
    // The system's thread plays on when the last basket has closed. A host that unloads the
    // component then would unload the player with it, and with that the code its thread runs.
    HMODULE player = nullptr;
    GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_PIN, L"winmm.dll", &player);
    try {
        sndPlaySoundW(std::wstring(path).c_str(), SND_ASYNC);
    } catch (...) {  // no memory for a path: no sound
    }
}

void WinSound::Beep() noexcept {
    MessageBeep(MB_OK);
}

}  // namespace demovex
