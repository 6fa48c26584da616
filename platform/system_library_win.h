// Functions of system libraries that are loaded when they are first needed.
//
// A library that we import by its name is looked for in the program's own folder first, save those
// few that the system protects (the known ones). Whoever may write files there could put one of his
// own in the place of the player or of the printers. So these are loaded late, and from the
// system's folder alone.
//
//   static const auto play = SystemFunction<BOOL(WINAPI*)(LPCWSTR, UINT)>(L"winmm.dll",
//                                                                         "sndPlaySoundW");
//   if (play != nullptr) play(path, SND_ASYNC);
#pragma once

#include <windows.h>

namespace demovex {

// Null when the system has no such library or function. The library stays for the life of the
// process: what it has started there (the player's thread, say) may outlive us.
void* FindSystemFunction(const wchar_t* library, const char* name) noexcept;

template <typename Function>
Function SystemFunction(const wchar_t* library, const char* name) noexcept {
    return reinterpret_cast<Function>(FindSystemFunction(library, name));
}

}  // namespace demovex
