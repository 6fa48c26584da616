#include "grid/flex_grid_control_win.h"

#include <algorithm>

#include "grid/flex_grid_impl_win.h"

namespace demovex {

FlexGridControl::FlexGridControl(HINSTANCE module, HWND parent, int id, const TwipsRect& rect,
                                 Scale scale, const ITextService& text, HFONT font)
    : impl_(std::make_shared<FlexGridImplWin>(scale, text)) {
    impl_->Create(module, parent, id, rect);
    impl_->SetFont(font);
}

FlexGridControl::~FlexGridControl() {
    // the control may be destroyed by one of its own events: nothing is raised from here on
    impl_->events = nullptr;
    impl_->grid.SetEvents(nullptr);
    impl_->Destroy();
}

void FlexGridControl::UnregisterWindowClass(HINSTANCE module) noexcept {
    UnregisterClassW(kFlexGridControlClass, module);
}

FlexGrid& FlexGridControl::Grid() {
    return impl_->grid;
}

const FlexGrid& FlexGridControl::Grid() const {
    return impl_->grid;
}

HWND FlexGridControl::Handle() const noexcept {
    return impl_->window;
}

void FlexGridControl::SetEvents(IFlexGridControlEvents* events) noexcept {
    impl_->events = events;
}

void FlexGridControl::Move(const TwipsRect& rect) {
    impl_->Move(rect);
}

void FlexGridControl::SetFont(HFONT font) {
    impl_->SetFont(font);
}

void FlexGridControl::SetScale(Scale scale, HFONT font) {
    impl_->grid.SetScale(scale);
    impl_->SetFont(font);
    impl_->UpdateFrame();
}

HFONT FlexGridControl::Font() const noexcept {
    return impl_->font;
}

Twips FlexGridControl::TextWidth(std::wstring_view text, bool bold) const {
    return impl_->TextWidth(text, bold);
}

void FlexGridControl::SendKey(GridKey key) {
    if (impl_->window == nullptr) return;  // without a window the message would go to the thread
    PostMessageW(impl_->window, FlexGridImplWin::kSendKey, static_cast<WPARAM>(key), 0);
}

void FlexGridControl::SetModuleLock(std::shared_ptr<void> lock) {
    impl_->accessibility.SetModuleLock(std::move(lock));
}

void FlexGridControl::Update() {
    if (impl_->window != nullptr) UpdateWindow(impl_->window);
}

NumberTest NumberTestOf(const ITextService& text) {
    return [&text](std::wstring_view cell) {
        // a text without a digit is no number; asking the system would cost a raised error
        const bool digit =
            std::any_of(cell.begin(), cell.end(), [](wchar_t c) { return c >= L'0' && c <= L'9'; });
        return digit && text.TryNumber(cell).has_value();
    };
}

}  // namespace demovex
