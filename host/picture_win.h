// Pictures of windows and of the screen in files.
#pragma once

#include <windows.h>

#include <string>

namespace demovex::host {

// Writes what stands on the screen in `area` (screen pixels) to `path`: PNG when the name ends so,
// else BMP. False when the file cannot be written.
bool SavePicture(const RECT& area, const std::wstring& path);

}  // namespace demovex::host
