#include "basket/window/toolbar_win.h"

#include <algorithm>
#include <vector>

#include "basket/commands/commands.h"
#include "basket/view.h"
#include "basket/window/glyph_colours.h"
#include "basket/window/ids.h"
#include "platform/gdi_win.h"

namespace demovex {
namespace {

// Nothing is drawn where a glyph has this colour.
constexpr COLORREF kNothing = RGB(255, 0, 255);

// A button's border and the room in it, above and below the glyph together.
constexpr int kAroundGlyph = 6;

// Resource number of a glyph in a size, from its number in 16 pixels.
int ResourceNumber(int number, int size) noexcept {
    switch (size) {
        case 20:
            return number + 1000;
        case 24:
            return number + 2000;
        case 32:
            return number + 3000;
        case 40:
            return number + 4000;
        case 48:
            return number + 5000;
        case 64:
            return number + 6000;
        default:
            return number;
    }
}

constexpr std::uint32_t InMemory(COLORREF colour) noexcept {
    return static_cast<std::uint32_t>(GetRValue(colour) << 16 | GetGValue(colour) << 8 |
                                      GetBValue(colour));
}

// Gives a glyph the colours of the user's scheme.
void Recolour(HBITMAP bitmap, int size, bool disabled) {
    const GlyphScheme scheme{
        InMemory(GetSysColor(COLOR_BTNFACE)), InMemory(GetSysColor(COLOR_BTNSHADOW)),
        InMemory(GetSysColor(COLOR_BTNHIGHLIGHT)), InMemory(GetSysColor(COLOR_GRAYTEXT))};
    if (!disabled && !IsDark(scheme)) return;
    BITMAPINFO info{};
    info.bmiHeader.biSize = sizeof info.bmiHeader;
    info.bmiHeader.biWidth = size;
    info.bmiHeader.biHeight = -size;
    info.bmiHeader.biPlanes = 1;
    info.bmiHeader.biBitCount = 32;
    std::vector<std::uint32_t> pixels(static_cast<std::size_t>(size) * size);
    const WindowDc screen(nullptr);
    if (GetDIBits(screen.get(), bitmap, 0, size, pixels.data(), &info, DIB_RGB_COLORS) == size) {
        for (std::uint32_t& pixel : pixels) {
            pixel &= 0xFFFFFF;
            if (pixel == InMemory(kNothing)) continue;
            pixel = disabled ? FadedGlyphColour(pixel, scheme) : GlyphColour(pixel, scheme);
        }
        SetDIBits(screen.get(), bitmap, 0, size, pixels.data(), &info, DIB_RGB_COLORS);
    }
}

}  // namespace

int GlyphSize(int dpi) noexcept {
    for (const int size : {64, 48, 40, 32, 24, 20}) {
        if (dpi * 16 / 96 >= size) return size;
    }
    return 16;
}

WindowToolbar::WindowToolbar(HWND parent, HINSTANCE module, const Scale& scale)
    : module_(module), scale_(scale) {
    window_ = CreateChild(parent, module, TOOLBARCLASSNAMEW, child_id::kToolbar,
                          TBSTYLE_FLAT | TBSTYLE_TOOLTIPS | CCS_NODIVIDER | CCS_NORESIZE |
                              CCS_NOPARENTALIGN | CCS_TOP);
    SendMessageW(window_, TB_BUTTONSTRUCTSIZE, sizeof(TBBUTTON), 0);
    // the buttons' texts are for assistive programs alone
    SendMessageW(window_, TB_SETMAXTEXTROWS, 0, 0);
    SetWindowTextW(window_, L"Symbolleiste");
    SetScale(scale);
}

void WindowToolbar::SetScale(const Scale& scale) {
    scale_ = scale;
    SendMessageW(window_, TB_SETINDENT, static_cast<WPARAM>(scale_.ToPixels(30)), 0);
}

UniqueImageList WindowToolbar::LoadImages(int size, bool disabled) const {
    const int count = static_cast<int>(ImageTable().size());
    UniqueImageList images(ImageList_Create(size, size, ILC_COLOR24 | ILC_MASK, count, 0));
    if (!images) RaiseRuntimeError(runtime_error::kOutOfMemory);
    for (const ToolbarImage& image : ImageTable()) {
        const int number = ResourceNumber(image.bitmap, size);
        UniqueBitmap bitmap(static_cast<HBITMAP>(
            LoadImageW(module_, MAKEINTRESOURCEW(number), IMAGE_BITMAP, 0, 0, 0)));
        if (bitmap) Recolour(bitmap.get(), size, disabled);
        if (!bitmap || ImageList_AddMasked(images.get(), bitmap.get(), kNothing) < 0) {
            RaiseRuntimeError(runtime_error::kOutOfMemory);
        }
    }
    return images;
}

void WindowToolbar::Build() {
    const int glyph = GlyphSize(scale_.dpi());
    const int height = scale_.ToPixels(kToolbarHeight);
    UniqueImageList images = LoadImages(glyph, false);
    UniqueImageList disabled = LoadImages(glyph, true);
    SendMessageW(window_, TB_SETBITMAPSIZE, 0, MAKELPARAM(glyph, glyph));
    SendMessageW(window_, TB_SETIMAGELIST, 0, reinterpret_cast<LPARAM>(images.get()));
    SendMessageW(window_, TB_SETDISABLEDIMAGELIST, 0, reinterpret_cast<LPARAM>(disabled.get()));
    images_ = std::move(images);
    disabled_images_ = std::move(disabled);

    while (SendMessageW(window_, TB_DELETEBUTTON, 0, 0)) {
    }
    std::vector<TBBUTTON> buttons;
    int id = child_id::kFirstButton;
    for (const ToolbarButton& entry : ToolbarTable()) {
        TBBUTTON button{};
        button.idCommand = id++;
        if (entry.key.empty()) {
            button.fsStyle = BTNS_SEP;
            button.iString = -1;
        } else {
            const auto image = std::ranges::find(ImageTable(), entry.key, &ToolbarImage::key);
            button.iBitmap = static_cast<int>(image - ImageTable().begin());
            button.fsState = TBSTATE_ENABLED;
            button.fsStyle = BTNS_BUTTON;
            // the bar copies it
            button.iString = reinterpret_cast<INT_PTR>(entry.tool_tip.data());
        }
        buttons.push_back(button);
    }
    if (!SendMessageW(window_, TB_ADDBUTTONSW, buttons.size(),
                      reinterpret_cast<LPARAM>(buttons.data()))) {
        RaiseRuntimeError(runtime_error::kOutOfMemory);
    }
    // last, since the buttons' texts make the bar reckon anew; not higher than a
    // glyph needs, since not every system centres it in a higher one
    SendMessageW(window_, TB_SETBUTTONSIZE, 0, MAKELPARAM(height - 1, glyph + kAroundGlyph));
    Layout(width_);
}

void WindowToolbar::Show(bool visible) {
    ShowWindow(window_, visible ? SW_SHOWNA : SW_HIDE);
}

void WindowToolbar::Layout(int width) {
    width_ = width;
    const int height = scale_.ToPixels(kToolbarHeight);
    const int button = HIWORD(SendMessageW(window_, TB_GETBUTTONSIZE, 0, 0));
    const int above = std::max(0, (height - button) / 2);
    SetWindowPos(window_, nullptr, 0, above, width, height - above, SWP_NOZORDER | SWP_NOACTIVATE);
}

std::wstring_view WindowToolbar::KeyOf(int button_id) noexcept {
    const int position = button_id - child_id::kFirstButton;
    if (position < 0 || position >= static_cast<int>(ToolbarTable().size())) return {};
    return ToolbarTable()[static_cast<std::size_t>(position)].key;
}

bool WindowToolbar::OnNotify(NMHDR* header) const noexcept {
    if (header->code != TTN_GETDISPINFOW) return false;
    const int position = static_cast<int>(header->idFrom) - child_id::kFirstButton;
    if (position < 0 || position >= static_cast<int>(ToolbarTable().size())) return false;
    // the table's texts are literals, so they end with a null character and live for ever
    auto* info = reinterpret_cast<NMTTDISPINFOW*>(header);
    info->lpszText =
        const_cast<wchar_t*>(ToolbarTable()[static_cast<std::size_t>(position)].tool_tip.data());
    info->hinst = nullptr;
    return true;
}

}  // namespace demovex
