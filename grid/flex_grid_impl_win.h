// The window of FlexGridControl. Internal to the control: messages in, painting and scroll bars
// out. Held by the control and, while it handles a message, by itself.
#pragma once

#include <windows.h>

#include <memory>
#include <vector>

#include "grid/flex_grid_control_win.h"
#include "grid/grid_accessible_win.h"
#include "platform/gdi_win.h"

namespace demovex {

class FlexGridImplWin : public IFlexGridDisplay,
                        public std::enable_shared_from_this<FlexGridImplWin> {
  public:
    FlexGridImplWin(Scale scale, const ITextService& text);
    ~FlexGridImplWin() override;

    void Create(HINSTANCE module, HWND parent, int id, const TwipsRect& rect);
    void Destroy() noexcept;
    void Move(const TwipsRect& rect);
    void SetFont(HFONT font);
    // Takes over the size of the window and of its borders and scroll bars.
    void UpdateFrame();
    Twips TextWidth(std::wstring_view text, bool bold) const;

    FlexGrid grid;
    HWND window = nullptr;
    IFlexGridControlEvents* events = nullptr;
    UniqueFont own_font;  // when the owner gave none
    HFONT font = nullptr;
    UniqueFont bold_font;
    GridAccessibility accessibility{*this};

    // IFlexGridDisplay
    void Invalidate(const PixelRect& view_rect) override;
    void ScrollArea(const PixelRect& area, int dx, int dy) override;
    void ScrollBarsChanged() override;
    void CurrentCellChanged() override;
    void SelectionChanged() override;
    void CellChanged(std::int32_t row, std::int32_t col) override;
    void CellsMoved() override;
    void RedrawIsOn() override;

    static constexpr UINT_PTR kBarTimer = 2;
    static constexpr UINT kSendKey = WM_USER + 1;  // wParam: a GridKey
    static constexpr UINT kTellNews = WM_USER + 2;

  private:
    static LRESULT CALLBACK Procedure(HWND window, UINT message, WPARAM wparam,
                                      LPARAM lparam) noexcept;
    static void Register(HINSTANCE module);
    LRESULT Handle(UINT message, WPARAM wparam, LPARAM lparam);
    // Handles mouse messages; true when done with.
    bool HandleMouse(UINT message, WPARAM wparam, LPARAM lparam);
    void Paint();
    void PaintTo(HDC dc, const PixelRect& rect, int origin_x, int origin_y) const;
    bool KeyDown(WPARAM key);
    void Press(int x, int y, bool shift);
    // `lines` rows or columns for each notch of `delta`; positive is up or left.
    void Wheel(int delta, bool columns, UINT lines);
    void Scroll(WPARAM code, int bar);
    // Shows moved scroll positions now; see ScrollBarsChanged.
    void FlushBars();
    void SetBar(int bar, const GridScrollBar& state, GridScrollBar& shown);
    void Report(const CaughtError& error) noexcept;

    BackBuffer buffer_;
    int wheel_rest_ = 0;    // wheel movement too small for a row so far
    int wheel_rest_h_ = 0;  // and for a column
    GridScrollBar shown_v_;
    GridScrollBar shown_h_;
    bool bars_pending_ = false;
    // Invalid already and not painted yet; may forget some, never names too many.
    std::vector<PixelRect> invalid_;
};

}  // namespace demovex
