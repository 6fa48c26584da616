#include "basket/window/editor_win.h"

#include <commctrl.h>

#include <algorithm>

#include "basket/test_lib_form.h"
#include "basket/window/ids.h"
#include "basket/window/impl_win.h"

namespace demovex {
namespace {

constexpr Twips kComboButtonWidth = 255;
constexpr Twips kListWidth = 2400;
// Between the ticks after the first one, which comes as soon as the current event is over.
constexpr UINT kTickMilliseconds = 50;

void SetVisible(HWND window, bool visible) noexcept {
    SetWindowPos(window, nullptr, 0, 0, 0, 0,
                 SWP_NOMOVE | SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE |
                     (visible ? SWP_SHOWWINDOW : SWP_HIDEWINDOW));
}

// `flags` are added to those of a window that moves where it is.
void Place(HWND window, const RECT& rect, UINT flags = SWP_NOZORDER) noexcept {
    SetWindowPos(window, HWND_TOP, rect.left, rect.top,
                 std::max(0, static_cast<int>(rect.right - rect.left)),
                 std::max(0, static_cast<int>(rect.bottom - rect.top)),
                 flags | SWP_NOACTIVATE | SWP_NOCOPYBITS);
}

// Shows a control above its siblings, its label right before it.
void RaiseLabelled(HWND window, HWND label) noexcept {
    constexpr UINT raise = SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE;
    SetWindowPos(window, HWND_TOP, 0, 0, 0, 0, raise | SWP_SHOWWINDOW);
    SetWindowPos(label, HWND_TOP, 0, 0, 0, 0, raise);
}

// A label without extent has nothing to paint, so the class's own procedure is left out.
void SetLabel(HWND label, const std::wstring& text) noexcept {
    DefWindowProcW(label, WM_SETTEXT, 0, reinterpret_cast<LPARAM>(text.c_str()));
}

std::wstring WindowText(HWND window) {
    std::wstring text(static_cast<std::size_t>(GetWindowTextLengthW(window)), L'\0');
    const int length = GetWindowTextW(window, text.data(), static_cast<int>(text.size()) + 1);
    text.resize(static_cast<std::size_t>(length));
    return text;
}

}  // namespace

void WindowEditor::RegisterWindowClass(HINSTANCE module) {
    WNDCLASSEXW info{};
    info.cbSize = sizeof info;
    info.lpfnWndProc = &WindowEditor::PictureProc;
    info.hInstance = module;
    info.hCursor = LoadCursorW(nullptr, IDC_ARROW);
    info.lpszClassName = kPictureBoxClass;
    if (RegisterClassExW(&info) == 0 && GetLastError() != ERROR_CLASS_ALREADY_EXISTS) {
        RaiseRuntimeError(runtime_error::kOutOfMemory);
    }
}

void WindowEditor::UnregisterWindowClass(HINSTANCE module) noexcept {
    UnregisterClassW(kPictureBoxClass, module);
}

WindowEditor::WindowEditor(const Settings& settings, BasketWindowImpl& window)
    : parent_(settings.parent), scale_(settings.scale), window_(window) {
    const auto self = reinterpret_cast<LONG_PTR>(this);
    background_ = CreateChild(parent_, settings.module, kPictureBoxClass, child_id::kIPBackground,
                              WS_CLIPCHILDREN);
    SetWindowLongPtrW(background_, GWLP_USERDATA, self);
    for (HWND& text : text_) {
        const DWORD alignment = &text == &text_[1] ? ES_RIGHT : ES_LEFT;
        text = CreateChild(background_, settings.module, WC_EDITW, child_id::kIPText,
                           alignment | ES_AUTOHSCROLL);
        text_proc_ = Subclass(text, &WindowEditor::TextProc);
    }
    button_ =
        CreateChild(background_, settings.module, kPictureBoxClass, child_id::kIPComboButton, 0);
    SetWindowLongPtrW(button_, GWLP_USERDATA, self);
    list_ = CreateChild(parent_, settings.module, WC_LISTBOXW, child_id::kIPComboList,
                        WS_BORDER | WS_VSCROLL | LBS_NOINTEGRALHEIGHT);
    SetScale(settings.scale, settings.font);
    list_proc_ = Subclass(list_, &WindowEditor::ListProc);
    constexpr DWORD label = WS_VISIBLE | SS_LEFT | SS_NOPREFIX;
    text_label_ = CreateChild(background_, settings.module, WC_STATICW, -1, label);
    list_label_ = CreateChild(parent_, settings.module, WC_STATICW, -1, label);
}

void WindowEditor::SetScale(const Scale& scale, HFONT font) {
    scale_ = scale;
    if (gone_) return;
    const auto observed = reinterpret_cast<WPARAM>(font);
    for (HWND text : text_) {
        SendMessageW(text, WM_SETFONT, observed, FALSE);
        const int right = text == text_[1] ? scale_.ToPixels(FlexGrid::kTextLeft) : 0;
        SendMessageW(text, EM_SETMARGINS, EC_LEFTMARGIN | EC_RIGHTMARGIN, MAKELPARAM(0, right));
    }
    SendMessageW(list_, WM_SETFONT, observed, FALSE);
    SendMessageW(list_, LB_SETITEMHEIGHT, 0, scale_.ToPixels(kListRowHeight));
}

WNDPROC WindowEditor::Subclass(HWND window, WNDPROC procedure) {
    SetWindowLongPtrW(window, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(this));
    return reinterpret_cast<WNDPROC>(
        SetWindowLongPtrW(window, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(procedure)));
}

WindowEditor& WindowEditor::Of(HWND window) noexcept {
    return *reinterpret_cast<WindowEditor*>(GetWindowLongPtrW(window, GWLP_USERDATA));
}

WindowEditor::~WindowEditor() {
    // the windows, should they outlive this object, must not reach it any more
    if (gone_) return;
    for (HWND window : {background_, button_}) SetWindowLongPtrW(window, GWLP_USERDATA, 0);
    const auto give_back = [](HWND window, WNDPROC procedure) {
        SetWindowLongPtrW(window, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(procedure));
    };
    for (HWND text : text_) give_back(text, text_proc_);
    give_back(list_, list_proc_);
}

// --- IPBackground

// The system is told the least it can be: each change of a window costs it many steps, and the
// editor moves with every key.

void WindowEditor::Open(const Cell& cell) {
    Realign(cell);
    SetMaxLength(cell.max_length);
    SetText(cell.text);
    SendMessageW(TextWindow(), EM_EMPTYUNDOBUFFER, 0, 0);
    ShowText();
    ShowButton(cell.offers_list);
    if (cell.offers_list) DrawButton(false);
    ShowBackground();
    Select(0, static_cast<std::int32_t>(Text().size()));
    EnableSetFocusTimer(true);
}

void WindowEditor::Realign(const Cell& cell) {
    background_rect_ = ToPixels(scale_, cell.rect);
    if (background_visible_) PlaceBackground(SWP_NOZORDER);
    if (name_ != cell.name) {
        name_ = cell.name;
        SetLabel(text_label_, name_);
    }
    if (cell.stands_right != right_) MakeIPText(cell.stands_right);
    const EditorLayout layout =
        LayOutEditor(cell.rect, cell.offers_list ? kComboButtonWidth : Twips{0});
    const RECT text = ToPixels(scale_, layout.text);
    RECT& placed = text_rect_[right_ ? 1 : 0];
    if (!EqualRect(&text, &placed)) {
        Place(TextWindow(), text);
        placed = text;
    }
    if (cell.offers_list) Place(button_, ToPixels(scale_, layout.button));
}

void WindowEditor::Close() {
    EnableSetFocusTimer(false);
    if (background_held_) {
        background_lingers_ = background_lingers_ || background_visible_;
        background_visible_ = false;
    } else {
        HideBackground();
    }
}

void WindowEditor::ShowBackground() {
    background_visible_ = true;
    // one that lingers is moved as one that was never hidden, and stays where it is to be
    const bool stays = background_lingers_ && EqualRect(&background_rect_, &background_placed_);
    if (!stays) PlaceBackground(background_lingers_ ? SWP_NOZORDER : SWP_SHOWWINDOW);
    background_lingers_ = false;
}

void WindowEditor::PlaceBackground(UINT flags) noexcept {
    background_placed_ = background_rect_;
    Place(background_, background_rect_, flags);
}

void WindowEditor::Hold(bool hold) {
    background_held_ = hold;
    if (hold || !background_lingers_) return;
    background_visible_ = true;  // as far as the focus goes
    HideBackground();
}

void WindowEditor::HideBackground() {
    if (background_visible_) {
        // the system would leave the focus in a hidden window
        const HWND focus = GetFocus();
        if (focus != nullptr && IsChild(background_, focus)) SetFocus(grid_);
    }
    background_visible_ = background_lingers_ = false;
    SetVisible(background_, false);
}

// --- IPText

// The one of the two text boxes that is not IPText becomes it, with the same text.
void WindowEditor::MakeIPText(bool right) {
    const std::wstring text = Text();
    SetVisible(TextWindow(), false);
    text_visible_ = false;
    right_ = right;
    setting_text_ = true;
    SetWindowTextW(TextWindow(), text.c_str());
    setting_text_ = false;
    SetMaxLength(max_length_);
}

void WindowEditor::ShowText() {
    if (text_visible_) return;
    text_visible_ = true;
    // the first of the two in the order of windows is the one that IPText's number names
    RaiseLabelled(TextWindow(), text_label_);
}

std::wstring WindowEditor::Text() const {
    return WindowText(TextWindow());
}

void WindowEditor::SetText(std::wstring_view text) {
    const std::wstring before = Text();
    if (before == text) return;
    setting_text_ = true;
    SetWindowTextW(TextWindow(), std::wstring(text).c_str());
    setting_text_ = false;
    if (Text() != before) OnTextChanged();  // the box may not have taken every character
}

void WindowEditor::SetMaxLength(std::int32_t length) {
    max_length_ = length;
    SendMessageW(TextWindow(), EM_SETLIMITTEXT, static_cast<WPARAM>(length), 0);
}

IEditorView::Range WindowEditor::Selection() const {
    DWORD start = 0, end = 0;
    SendMessageW(TextWindow(), EM_GETSEL, reinterpret_cast<WPARAM>(&start),
                 reinterpret_cast<LPARAM>(&end));
    return {static_cast<std::int32_t>(start), static_cast<std::int32_t>(end - start)};
}

void WindowEditor::Select(std::int32_t start, std::int32_t length) {
    SendMessageW(TextWindow(), EM_SETSEL, static_cast<WPARAM>(start), start + length);
}

bool WindowEditor::ParentActive() const noexcept {
    return GetActiveWindow() == parent_;
}

void WindowEditor::Focus() {
    // an inactive window takes the focus when it is activated; it never takes it from the host
    if (ParentActive()) SetFocus(TextWindow());
}

void WindowEditor::TakeKey(int key_code) {
    SendMessageW(TextWindow(), WM_KEYDOWN, static_cast<WPARAM>(key_code), 1);
}

void WindowEditor::TakeCharacter(wchar_t character) {
    SendMessageW(TextWindow(), WM_CHAR, character, 1);
}

void WindowEditor::OnTextChanged() {
    window_.Forward([](TestLibForm& form) { form.IPText_Change(); });
}

void WindowEditor::OnEditKey(EditKey key, HWND focus) noexcept {
    if (!background_visible_ || !IsText(focus)) return;
    const UINT message = key == EditKey::kCut ? WM_CUT : key == EditKey::kCopy ? WM_COPY : WM_PASTE;
    SendMessageW(TextWindow(), message, 0, 0);
}

// --- IPComboButton

void WindowEditor::ShowButton(bool visible) {
    if (button_visible_ == visible) return;
    button_visible_ = visible;
    SetVisible(button_, visible);
}

void WindowEditor::DrawButton(bool pressed) {
    button_pressed_ = pressed;
    RedrawWindow(button_, nullptr, nullptr, RDW_INVALIDATE | RDW_UPDATENOW);
}

void WindowEditor::PaintButton(HDC dc) const {
    RECT rect{};
    GetClientRect(button_, &rect);
    DrawFrameControl(
        dc, &rect, DFC_SCROLL,
        DFCS_SCROLLCOMBOBOX | static_cast<UINT>(button_pressed_ ? DFCS_PUSHED : DFCS_FLAT));
}

// --- IPComboList

Twips WindowEditor::ListHeight() const {
    return kListRows * kListRowHeight + scale_.ToTwips(2 * GetSystemMetrics(SM_CYBORDER));
}

void WindowEditor::OpenList(const TwipsPoint& at, std::int32_t selected) {
    const int height = kListRows * static_cast<int>(SendMessageW(list_, LB_GETITEMHEIGHT, 0, 0)) +
                       2 * GetSystemMetrics(SM_CYBORDER);
    const POINT corner{scale_.ToPixels(at.x), scale_.ToPixels(at.y)};
    Place(list_, {corner.x, corner.y, corner.x + scale_.ToPixels(kListWidth), corner.y + height});
    SetListIndex(selected);
    list_visible_ = true;
    SetLabel(list_label_, name_);
    RaiseLabelled(list_, list_label_);
    if (ParentActive()) SetFocus(list_);
    DrawButton(true);
    EnableSetFocusTimer(true);
}

void WindowEditor::CloseList() {
    if (list_visible_ && GetFocus() == list_) {
        list_visible_ = false;  // losing the focus must not hide the list once more
        SetFocus(background_visible_ ? TextWindow() : grid_);
    }
    list_visible_ = false;
    SetVisible(list_, false);
    DrawButton(false);
}

std::vector<std::wstring> WindowEditor::ListEntries() const {
    std::vector<std::wstring> entries;
    const LRESULT count = SendMessageW(list_, LB_GETCOUNT, 0, 0);
    for (LRESULT i = 0; i < count; ++i) {
        const auto index = static_cast<WPARAM>(i);
        const LRESULT length = SendMessageW(list_, LB_GETTEXTLEN, index, 0);
        if (length == LB_ERR) RaiseRuntimeError(runtime_error::kSubscriptOutOfRange);
        std::wstring text(static_cast<std::size_t>(length) + 1, L'\0');
        SendMessageW(list_, LB_GETTEXT, index, reinterpret_cast<LPARAM>(text.data()));
        text.resize(static_cast<std::size_t>(length));
        entries.push_back(std::move(text));
    }
    return entries;
}

std::int32_t WindowEditor::ListIndex() const {
    return static_cast<std::int32_t>(SendMessageW(list_, LB_GETCURSEL, 0, 0));
}

void WindowEditor::SetListIndex(std::int32_t index) {
    SendMessageW(list_, LB_SETCURSEL, static_cast<WPARAM>(index), 0);
}

bool WindowEditor::ListHasFocus() const {
    return GetFocus() == list_;
}

// --- SetFocusTimer

void WindowEditor::EnableSetFocusTimer(bool enabled) {
    if (enabled == timer_enabled_) return;
    timer_enabled_ = enabled;
    if (!enabled) {
        if (ticking_) KillTimer(parent_, window_timer::kSetFocusTimer);
        ticking_ = false;
        return;
    }
    // The first tick must come before the user's next key, and posted messages go before input,
    // while those of a timer come last. The system's timer is for those after it.
    if (!tick_posted_) {
        tick_posted_ = PostMessageW(parent_, window_message::kSetFocusTimer, 0, 0) != 0;
        if (!tick_posted_) Tick();
    }
}

void WindowEditor::Tick() noexcept {
    if (ticking_) return;
    ticking_ = SetTimer(parent_, window_timer::kSetFocusTimer, kTickMilliseconds, nullptr) != 0;
}

void WindowEditor::OnSetFocusTimer() noexcept {
    tick_posted_ = false;
    if (!timer_enabled_) return;
    window_.Forward([](TestLibForm& form) { form.SetFocusTimer_Timer(); });
    if (timer_enabled_ && !gone_) Tick();
}

}  // namespace demovex
