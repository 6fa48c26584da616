// What makes a file the user's beyond its content, given from one open file to another.
#pragma once

#include <windows.h>

namespace demovex {

// Gives `to` what `from` has: hidden, system and archive attributes, time of creation, access list,
// compression and named streams. Nothing is set that is so already. What the system refuses to copy
// is not worth failing a save for. `from` is open for FILE_READ_ATTRIBUTES at least, for
// READ_CONTROL and GENERIC_READ where rights and streams are to be had; `to` for GENERIC_WRITE,
// READ_CONTROL and WRITE_DAC. (Encryption is chosen when a file is created.)
void CopyFileTraits(HANDLE from, HANDLE to) noexcept;

// The access list alone, for a file that is still empty: what will be written is for nobody's eyes
// who could not see the old file.
void CopyFileAccess(HANDLE from, HANDLE to) noexcept;

}  // namespace demovex
