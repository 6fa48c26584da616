// The scales of the user's screens: dots per inch, and the measures of the system that depend on
// them. A window has the scale that the system gives it: the monitor's in a program that minds each
// monitor, the one from the log-on in a program that minds one, 96 in one that minds none. What
// older systems do not know is looked up at run time; they have one scale for all.
#pragma once

#include <windows.h>

namespace demovex {

// Of the whole system, as the calling thread sees it.
int SystemDpi() noexcept;

// Of a window.
int WindowDpi(HWND window) noexcept;

// GetSystemMetrics for the scale of a window: what its borders and scroll bars really measure.
int MetricOf(HWND window, int index) noexcept;

// How large a font of the user's choice is on a screen of `dpi`: `font` as the system gives it to
// the calling thread. Leaves `font` untouched and answers false when the system refuses.
bool MessageFont(int dpi, LOGFONTW& font) noexcept;

// Grows a client area to the overlapped window with a menu bar around it.
void GrowToWindow(HWND window, RECT& rect) noexcept;

// Called while a top-level window gets WM_NCCREATE: the system scales its caption, menu bar and
// scroll bars with it, also where a program minds each monitor in the oldest way.
void ScaleBordersOf(HWND window) noexcept;

}  // namespace demovex
