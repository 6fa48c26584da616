// Where a module was loaded from.
#pragma once

#include <windows.h>

#include <string>

namespace demovex {

// Full path of the module's file; of the program itself for null.
std::wstring ModulePath(HINSTANCE module);
// Its folder, without a trailing backslash.
std::wstring ModuleFolder(HINSTANCE module);

}  // namespace demovex
