#include "grid/gdi_surface_win.h"

namespace demovex {

namespace {

// The colour half-way between two system colours.
COLORREF Between(int first, int second) {
    const COLORREF a = GetSysColor(first);
    const COLORREF b = GetSysColor(second);
    return RGB((GetRValue(a) + GetRValue(b)) / 2, (GetGValue(a) + GetGValue(b)) / 2,
               (GetBValue(a) + GetBValue(b)) / 2);
}

}  // namespace

GdiSurface::GdiSurface(HDC dc, HFONT regular, HFONT bold, int origin_x, int origin_y)
    : dc_(dc),
      saved_(SaveDC(dc)),
      regular_(regular),
      bold_(bold),
      x_(origin_x),
      y_(origin_y),
      colors_{} {
    for (int i = 0; i < kColors; ++i) colors_[i] = Color(static_cast<GridColor>(i));
    SelectObject(dc_, regular_);
    SetTextAlign(dc_, TA_LEFT);  // the other bits are 0: upper edge, no current position
    SetBkMode(dc_, OPAQUE);
}

GdiSurface::~GdiSurface() {
    RestoreDC(dc_, saved_);
}

COLORREF GdiSurface::Color(GridColor color) {
    switch (color) {
        case GridColor::kWindow:
            return GetSysColor(COLOR_WINDOW);
        case GridColor::kWindowText:
            return GetSysColor(COLOR_WINDOWTEXT);
        case GridColor::kHighlight:
            return GetSysColor(COLOR_HIGHLIGHT);
        case GridColor::kHighlightText:
            return GetSysColor(COLOR_HIGHLIGHTTEXT);
        case GridColor::kFixed:
            return GetSysColor(COLOR_BTNFACE);
        case GridColor::kFixedText:
            return GetSysColor(COLOR_BTNTEXT);
        case GridColor::kEdgeLight:
            return GetSysColor(COLOR_BTNHIGHLIGHT);
        case GridColor::kEdgeShadow:
            return GetSysColor(COLOR_BTNSHADOW);
        // half-way colours keep the lines visible in every scheme, also where the faces of
        // buttons and windows are alike
        case GridColor::kGridLine:
            return Between(COLOR_WINDOW, COLOR_BTNSHADOW);
        case GridColor::kBackground:
            return Between(COLOR_BTNFACE, COLOR_BTNSHADOW);
    }
    return GetSysColor(COLOR_WINDOW);
}

RECT GdiSurface::Move(const PixelRect& rect) const {
    return {rect.left - x_, rect.top - y_, rect.right - x_, rect.bottom - y_};
}

void GdiSurface::SetBack(GridColor color) {
    const COLORREF back = Cached(color);
    if (back == back_color_) return;
    SetBkColor(dc_, back);
    back_color_ = back;
}

void GdiSurface::Fill(const PixelRect& rect, GridColor color) {
    SetBack(color);
    const RECT box = Move(rect);
    ExtTextOutW(dc_, 0, 0, ETO_OPAQUE, &box, nullptr, 0, nullptr);
}

void GdiSurface::Text(const PixelRect& box, int x, int y, std::wstring_view text,
                      const GridTextStyle& style) {
    SetBack(style.back);
    const COLORREF color = Cached(style.text);
    if (color != text_color_) {
        SetTextColor(dc_, color);
        text_color_ = color;
    }
    if (style.bold != is_bold_) {
        SelectObject(dc_, style.bold ? bold_ : regular_);
        is_bold_ = style.bold;
    }
    if (style.right != is_right_) {
        SetTextAlign(dc_, style.right ? TA_RIGHT : TA_LEFT);
        is_right_ = style.right;
    }
    const RECT clip = Move(box);
    // Each character in whole pixels, as a text box places it: left to themselves, some systems
    // add up fractions, and a text would stir when it is edited in place.
    const int length = static_cast<int>(text.size());
    SIZE size{};
    advances_.resize(text.size());
    if (GetTextExtentExPointW(dc_, text.data(), length, 0, nullptr, advances_.data(), &size)) {
        for (std::size_t i = text.size(); i-- > 1;) advances_[i] -= advances_[i - 1];
    } else {
        advances_.clear();
    }
    ExtTextOutW(dc_, x - x_, y - y_, ETO_OPAQUE | ETO_CLIPPED, &clip, text.data(),
                static_cast<UINT>(length), advances_.empty() ? nullptr : advances_.data());
}

void GdiSurface::FocusRect(const PixelRect& rect) {
    const RECT box = Move(rect);
    SetTextColor(dc_, Cached(GridColor::kWindowText));
    text_color_ = Cached(GridColor::kWindowText);
    SetBack(GridColor::kWindow);
    DrawFocusRect(dc_, &box);
}

}  // namespace demovex
