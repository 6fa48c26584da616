// What the about box says: title, version, a line about the component, a link to the help page that
// is shipped beside it, and one to its makers.
#pragma once

#include <string>
#include <string_view>

namespace demovex {

inline constexpr wchar_t kAboutTitle[] = L"Vexmart Demo Warenkorb";
inline constexpr wchar_t kAboutWebAddress[] = L"http://www.vexmart.example/";
// The help page's name in the component's folder.
inline constexpr wchar_t kHelpPage[] = L"DemoVexClient.html";

// The information text with link markup; its lines are joined by carriage return and line feed.
// `component_folder` has no trailing backslash. Every link begins its line, so that its label lies
// exactly over its text.
std::wstring AboutText(std::wstring_view component_folder);

}  // namespace demovex
