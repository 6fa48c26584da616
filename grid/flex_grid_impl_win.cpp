#include "grid/flex_grid_impl_win.h"

#include <algorithm>
#include <new>

#include "grid/gdi_surface_win.h"
#include "grid/grid_painter.h"
#include "platform/key_state_win.h"
#include "platform/screen_scale_win.h"

namespace demovex {

namespace {

constexpr DWORD kStyle = WS_CHILD | WS_VISIBLE | WS_CLIPSIBLINGS | WS_TABSTOP;

// What the witness has in the place of an object: a hidden child of the grid that tells by its
// absence that the system is destroying the grid, and does nothing else.
constexpr char kWitness = 0;

bool IsWitness(LONG_PTR data) noexcept {
    return data == reinterpret_cast<LONG_PTR>(&kWitness);
}

RECT ToRect(const PixelRect& rect) {
    return {rect.left, rect.top, rect.right, rect.bottom};
}

// Whether the region of a WM_NCPAINT (in screen coordinates; 1 is the whole window) touches nothing
// but the client area.
bool InsideClientArea(HWND window, WPARAM region) noexcept {
    RECT box{}, client{};
    if (region <= 1 || GetRgnBox(reinterpret_cast<HRGN>(region), &box) == 0) return false;
    GetClientRect(window, &client);
    MapWindowPoints(window, nullptr, reinterpret_cast<POINT*>(&client), 2);
    return box.left >= client.left && box.top >= client.top && box.right <= client.right &&
           box.bottom <= client.bottom;
}

bool BeginsInput(UINT message, WPARAM wparam) noexcept {
    if (message == WM_KEYDOWN) {
        return wparam != VK_SHIFT && wparam != VK_CONTROL && wparam != VK_MENU;
    }
    return message == WM_LBUTTONDOWN || message == WM_RBUTTONDOWN || message == WM_MBUTTONDOWN;
}

}  // namespace

FlexGridImplWin::FlexGridImplWin(Scale scale, const ITextService& text)
    : grid(scale, NumberTestOf(text)) {}

FlexGridImplWin::~FlexGridImplWin() {
    Destroy();
}

void FlexGridImplWin::Register(HINSTANCE module) {
    WNDCLASSEXW known{};
    known.cbSize = sizeof known;
    if (GetClassInfoExW(module, kFlexGridControlClass, &known)) return;
    WNDCLASSEXW c{};
    c.cbSize = sizeof c;
    c.style = CS_DBLCLKS;
    c.lpfnWndProc = &FlexGridImplWin::Procedure;
    c.hInstance = module;
    c.hCursor = LoadCursorW(nullptr, IDC_ARROW);
    c.lpszClassName = kFlexGridControlClass;
    if (RegisterClassExW(&c) == 0) RaiseRuntimeError(runtime_error::kOutOfMemory);
}

void FlexGridImplWin::Create(HINSTANCE module, HWND parent, int id, const TwipsRect& rect) {
    Register(module);
    const Scale& scale = grid.PixelScale();
    const int left = scale.ToPixels(rect.left);
    const int top = scale.ToPixels(rect.top);
    CreateWindowExW(WS_EX_CLIENTEDGE, kFlexGridControlClass, L"", kStyle, left, top,
                    scale.ToPixels(rect.right()) - left, scale.ToPixels(rect.bottom()) - top,
                    parent, reinterpret_cast<HMENU>(static_cast<INT_PTR>(id)), module, this);
    if (window == nullptr) RaiseRuntimeError(runtime_error::kOutOfMemory);
    CreateWindowExW(WS_EX_NOPARENTNOTIFY, kFlexGridControlClass, nullptr, WS_CHILD, 0, 0, 0, 0,
                    window, nullptr, module, const_cast<char*>(&kWitness));
    grid.SetDisplay(this);
    UpdateFrame();
}

void FlexGridImplWin::Destroy() noexcept {
    if (window != nullptr) DestroyWindow(window);
}

void FlexGridImplWin::Move(const TwipsRect& rect) {
    const Scale& scale = grid.PixelScale();
    const int left = scale.ToPixels(rect.left);
    const int top = scale.ToPixels(rect.top);
    if (window == nullptr) return;
    MoveWindow(window, left, top, std::max(0, scale.ToPixels(rect.right()) - left),
               std::max(0, scale.ToPixels(rect.bottom()) - top), TRUE);
}

void FlexGridImplWin::SetFont(HFONT new_font) {
    if (new_font == nullptr) {
        LOGFONTW message{};
        MessageFont(grid.PixelScale().dpi(), message);
        own_font = UniqueFont(CreateFontIndirectW(&message));
        new_font = own_font.get();
    }
    font = new_font;
    LOGFONTW bold{};
    GetObjectW(font, sizeof bold, &bold);
    bold.lfWeight = FW_BOLD;
    bold_font = UniqueFont(CreateFontIndirectW(&bold));

    const WindowDc dc(window);
    const SelectedObject selected(dc.get(), font);
    TEXTMETRICW metrics{};
    GetTextMetricsW(dc.get(), &metrics);
    const Scale& scale = grid.PixelScale();
    // the text, the space above, as much of it below, and the line
    const int pixels = metrics.tmHeight + scale.ToPixels(FlexGrid::kTextTop) + 2;
    grid.SetDefaultRowHeight(std::max(FlexGrid::kDefaultRowHeight, scale.ToTwips(pixels)));
    if (window != nullptr) InvalidateRect(window, nullptr, FALSE);
}

Twips FlexGridImplWin::TextWidth(std::wstring_view text, bool bold) const {
    const WindowDc dc(window);
    const SelectedObject selected(dc.get(), bold ? bold_font.get() : font);
    SIZE size{};
    GetTextExtentPoint32W(dc.get(), text.data(), static_cast<int>(text.size()), &size);
    return grid.PixelScale().ToTwips(size.cx);
}

// --- what the grid reports ---

// A command changes many cells of few rows, and each call to the system costs more than painting a
// row: so whole rows become invalid, and each of them once.
void FlexGridImplWin::Invalidate(const PixelRect& view_rect) {
    if (window == nullptr) return;
    for (const PixelRect& known : invalid_) {
        if (view_rect.left >= known.left && view_rect.right <= known.right &&
            view_rect.top >= known.top && view_rect.bottom <= known.bottom) {
            return;
        }
    }
    constexpr std::size_t kRemembered = 16;
    if (invalid_.size() == kRemembered) invalid_.clear();
    const PixelRect view = grid.View();
    const PixelRect strip{std::min(view.left, view_rect.left), view_rect.top,
                          std::max(view.right, view_rect.right), view_rect.bottom};
    invalid_.push_back(strip);
    const RECT rect = ToRect(strip);
    InvalidateRect(window, &rect, FALSE);
}

void FlexGridImplWin::ScrollArea(const PixelRect& area, int dx, int dy) {
    if (window == nullptr) return;
    const RECT rect = ToRect(area);
    invalid_.clear();  // what was invalid moves
    ScrollWindowEx(window, dx, dy, &rect, &rect, nullptr, nullptr, SW_INVALIDATE);
}

void FlexGridImplWin::CurrentCellChanged() {
    if (window != nullptr) accessibility.CurrentCellChanged();
}

void FlexGridImplWin::SelectionChanged() {
    if (window != nullptr) accessibility.SelectionChanged();
}

void FlexGridImplWin::CellChanged(std::int32_t row, std::int32_t col) {
    if (window != nullptr) accessibility.CellChanged(row, col);
}

void FlexGridImplWin::CellsMoved() {
    if (window != nullptr) accessibility.CellsMoved();
}

void FlexGridImplWin::RedrawIsOn() {
    if (window != nullptr) accessibility.TellSoon();
}

// --- messages ---

LRESULT CALLBACK FlexGridImplWin::Procedure(HWND window, UINT message, WPARAM wparam,
                                            LPARAM lparam) noexcept {
    if (message == WM_CLOSE) return 0;  // a control is not closed alone
    auto data = GetWindowLongPtrW(window, GWLP_USERDATA);
    if (message == WM_NCCREATE) {
        // the system's comes first; any further one is another program's, and so is its pointer
        if (data != 0) return TRUE;
        const auto* create = reinterpret_cast<const CREATESTRUCTW*>(lparam);
        data = reinterpret_cast<LONG_PTR>(create->lpCreateParams);
        SetWindowLongPtrW(window, GWLP_USERDATA, data);
        if (!IsWitness(data)) reinterpret_cast<FlexGridImplWin*>(data)->window = window;
    }
    if (data == 0 || IsWitness(data)) return DefWindowProcW(window, message, wparam, lparam);
    auto* self = reinterpret_cast<FlexGridImplWin*>(data);
    // null only while the object itself is being destroyed
    const std::shared_ptr<FlexGridImplWin> alive = self->weak_from_this().lock();
    if (message == WM_NCDESTROY) {
        // the system destroys the witness first: with it in place it is another program's
        if (GetWindow(window, GW_CHILD) != nullptr) return 0;
        SetWindowLongPtrW(window, GWLP_USERDATA, 0);
        self->window = nullptr;
        self->grid.SetDisplay(nullptr);
        self->accessibility.Disconnect();
        self->buffer_.Reset();
        return DefWindowProcW(window, message, wparam, lparam);
    }
    try {
        return self->Handle(message, wparam, lparam);
    } catch (...) {
        self->Report(CurrentError());
    }
    return 0;
}

void FlexGridImplWin::Report(const CaughtError& error) noexcept {
    if (events != nullptr) events->Failed(error);
}

LRESULT FlexGridImplWin::Handle(UINT message, WPARAM wparam, LPARAM lparam) {
    const HWND handle = window;  // stays good for DefWindowProc whatever the events do
    if (events != nullptr && BeginsInput(message, wparam)) events->InputBegins();
    switch (message) {
        case WM_ERASEBKGND:
            return 1;
        case WM_PAINT:
            Paint();
            return 0;
        case WM_PRINTCLIENT:
            PaintTo(reinterpret_cast<HDC>(wparam), grid.View(), 0, 0);
            return 0;
        case WM_SIZE:
            UpdateFrame();
            return 0;
        case WM_SETTINGCHANGE:
        case WM_SYSCOLORCHANGE:
        case WM_THEMECHANGED:
            UpdateFrame();
            InvalidateRect(handle, nullptr, FALSE);
            return 0;
        case WM_GETDLGCODE:
            return DLGC_WANTARROWS;
        case WM_GETOBJECT:
            // the object id is a 32-bit number, whatever the upper half of the parameter holds
            if (static_cast<LONG>(static_cast<DWORD>(lparam)) == OBJID_CLIENT) {
                return accessibility.Answer(wparam);
            }
            break;
        case WM_GETFONT:
            return reinterpret_cast<LRESULT>(font);
        case WM_SETFONT:
            SetFont(reinterpret_cast<HFONT>(wparam));
            return 0;
        case WM_SETFOCUS:
            grid.SetFocused(true);
            accessibility.CurrentCellChanged();
            return 0;
        case WM_KILLFOCUS:
            grid.SetFocused(false);
            return 0;
        case WM_NCPAINT:
            // a window that leaves from above the grid uncovers cells, never the border or the
            // scroll bars, which cost much to draw
            if (InsideClientArea(handle, wparam)) return 0;
            break;
        case WM_KEYDOWN:
            if (KeyDown(wparam)) {
                if (events != nullptr) events->UserActed();
                return 0;
            }
            if (events != nullptr && events->KeyPressed(static_cast<int>(wparam), ShiftState())) {
                return 0;
            }
            break;
        case WM_CHAR:
            if (events != nullptr && events->CharacterTyped(static_cast<wchar_t>(wparam))) return 0;
            break;
        case kSendKey:
            if (wparam <= static_cast<WPARAM>(GridKey::kEnd)) {
                grid.Key(static_cast<GridKey>(wparam), false, false);
                if (events != nullptr) events->UserActed();
            }
            return 0;
        case kTellNews:
            accessibility.Tell();
            return 0;
        case WM_TIMER:
            if (wparam == kBarTimer) {
                FlushBars();
            } else {
                HandleMouse(message, wparam, lparam);
            }
            return 0;
        case WM_NCLBUTTONDOWN:
            if (bars_pending_) FlushBars();  // the press is meant for the bar as it should be
            return DefWindowProcW(handle, message, wparam, lparam);
        case WM_VSCROLL:
            Scroll(wparam, SB_VERT);
            return 0;
        case WM_HSCROLL:
            Scroll(wparam, SB_HORZ);
            return 0;
        default:
            if (HandleMouse(message, wparam, lparam)) return 0;
            break;
    }
    return DefWindowProcW(handle, message, wparam, lparam);
}

void FlexGridImplWin::UpdateFrame() {
    RECT outer{};
    if (window == nullptr || !GetWindowRect(window, &outer)) return;
    invalid_.clear();
    const GridFrame frame{outer.right - outer.left, outer.bottom - outer.top,
                          MetricOf(window, SM_CXEDGE), MetricOf(window, SM_CXVSCROLL),
                          MetricOf(window, SM_CYHSCROLL)};
    // showing or hiding a scroll bar changes the client area only, and the grid knows that one
    if (frame == grid.Frame()) return;
    grid.SetFrame(frame);
}

// --- painting ---

void FlexGridImplWin::Paint() {
    PAINTSTRUCT paint{};
    invalid_.clear();
    const HDC dc = BeginPaint(window, &paint);
    if (dc == nullptr) return;
    const RECT& invalid = paint.rcPaint;
    const PixelRect rect{invalid.left, invalid.top, invalid.right, invalid.bottom};
    if (grid.Redraw() && !rect.empty()) {
        const HDC memory = buffer_.Get(dc, rect.width(), rect.height());
        if (memory != nullptr) {
            PaintTo(memory, rect, rect.left, rect.top);
            BitBlt(dc, rect.left, rect.top, rect.width(), rect.height(), memory, 0, 0, SRCCOPY);
        } else {
            PaintTo(dc, rect, 0, 0);  // no memory for a buffer: flicker is better than nothing
        }
    }
    EndPaint(window, &paint);
}

void FlexGridImplWin::PaintTo(HDC dc, const PixelRect& rect, int origin_x, int origin_y) const {
    GdiSurface surface(dc, font, bold_font.get(), origin_x, origin_y);
    // a client area larger than the view (a window too small for its scroll bars)
    const PixelRect view = grid.View();
    if (rect.right > view.right) {
        surface.Fill({std::max(rect.left, view.right), rect.top, rect.right, rect.bottom},
                     GridColor::kBackground);
    }
    if (rect.bottom > view.bottom) {
        surface.Fill({rect.left, std::max(rect.top, view.bottom), rect.right, rect.bottom},
                     GridColor::kBackground);
    }
    PaintGrid(grid, surface, rect);
}

// --- keys ---

bool FlexGridImplWin::KeyDown(WPARAM key) {
    GridKey meaning{};
    switch (key) {
        case VK_LEFT:
            meaning = GridKey::kLeft;
            break;
        case VK_RIGHT:
            meaning = GridKey::kRight;
            break;
        case VK_UP:
            meaning = GridKey::kUp;
            break;
        case VK_DOWN:
            meaning = GridKey::kDown;
            break;
        case VK_PRIOR:
            meaning = GridKey::kPageUp;
            break;
        case VK_NEXT:
            meaning = GridKey::kPageDown;
            break;
        case VK_HOME:
            meaning = GridKey::kHome;
            break;
        case VK_END:
            meaning = GridKey::kEnd;
            break;
        default:
            return false;
    }
    grid.Key(meaning, IsDown(VK_SHIFT), IsDown(VK_CONTROL));
    return true;
}

}  // namespace demovex
