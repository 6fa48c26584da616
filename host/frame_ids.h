// The numbers of the host window's parts and commands.
#pragma once

namespace demovex::host {

inline constexpr int kTree = 101, kList = 102, kAddress = 103, kSearch = 104, kStatus = 105;
inline constexpr int kOrder = 201, kNewBasket = 202, kOpenBasket = 203, kPlugInInfo = 204,
                     kExit = 205, kAbout = 206;
inline constexpr int kLinkColumn = 4;
inline constexpr wchar_t kTitle[] = L"Vexmart Katalog";

}  // namespace demovex::host
