#include "platform/screen_scale_win.h"

#include "platform/gdi_win.h"

namespace demovex {
namespace {

template <class Function>
Function FromUser(const char* name) noexcept {
    const HMODULE user = GetModuleHandleW(L"user32.dll");
    if (user == nullptr) return nullptr;
    return reinterpret_cast<Function>(reinterpret_cast<void*>(GetProcAddress(user, name)));
}

using DpiForWindow = UINT(WINAPI*)(HWND);
using MetricsForDpi = int(WINAPI*)(int, UINT);
using AdjustForDpi = BOOL(WINAPI*)(RECT*, DWORD, BOOL, DWORD, UINT);
using EnableScaling = BOOL(WINAPI*)(HWND);

}  // namespace

int SystemDpi() noexcept {
    const WindowDc screen(nullptr);
    const int dpi = screen.get() != nullptr ? GetDeviceCaps(screen.get(), LOGPIXELSX) : 96;
    return dpi > 0 ? dpi : 96;
}

int WindowDpi(HWND window) noexcept {
    static const auto dpi_for_window = FromUser<DpiForWindow>("GetDpiForWindow");
    const UINT dpi = dpi_for_window != nullptr ? dpi_for_window(window) : 0;
    return dpi > 0 ? static_cast<int>(dpi) : SystemDpi();
}

int MetricOf(HWND window, int index) noexcept {
    static const auto for_dpi = FromUser<MetricsForDpi>("GetSystemMetricsForDpi");
    if (for_dpi == nullptr) return GetSystemMetrics(index);
    return for_dpi(index, static_cast<UINT>(WindowDpi(window)));
}

bool MessageFont(int dpi, LOGFONTW& font) noexcept {
    NONCLIENTMETRICSW metrics{};
    metrics.cbSize = sizeof metrics;
    if (!SystemParametersInfoW(SPI_GETNONCLIENTMETRICS, sizeof metrics, &metrics, 0)) return false;
    font = metrics.lfMessageFont;
    font.lfHeight = MulDiv(font.lfHeight, dpi, SystemDpi());
    return true;
}

void GrowToWindow(HWND window, RECT& rect) noexcept {
    static const auto for_dpi = FromUser<AdjustForDpi>("AdjustWindowRectExForDpi");
    const auto style = static_cast<DWORD>(GetWindowLongPtrW(window, GWL_STYLE));
    const auto ex_style = static_cast<DWORD>(GetWindowLongPtrW(window, GWL_EXSTYLE));
    if (for_dpi != nullptr) {
        for_dpi(&rect, style, TRUE, ex_style, static_cast<UINT>(WindowDpi(window)));
    } else {
        AdjustWindowRectEx(&rect, style, TRUE, ex_style);
    }
}

void ScaleBordersOf(HWND window) noexcept {
    static const auto enable = FromUser<EnableScaling>("EnableNonClientDpiScaling");
    if (enable != nullptr) enable(window);
}

}  // namespace demovex
