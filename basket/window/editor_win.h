// The four controls of the in-place editor, as real windows: IPBackground with IPText and
// IPComboButton in it, and IPComboList.
//
// The system's text box is left- or right-aligned for life, so there are two of it, of which one
// is IPText at a time: the right-aligned one where the cell's own text stands right. The other is
// hidden. The text box has the grid's font and no margins, so that a text that is edited stands
// where it stood in the cell.
#pragma once

#include <string>
#include <vector>

#include "basket/edit/editor_view.h"
#include "basket/view.h"
#include "basket/window/handles_win.h"

namespace demovex {

class BasketWindowImpl;

class WindowEditor final : public IEditorView {
  public:
    struct Settings {
        HWND parent = nullptr;
        HINSTANCE module = nullptr;
        Scale scale;
        HFONT font = nullptr;  // outlives the editor
    };

    // Creates the controls, hidden. What happens to them is forwarded to the form by
    // `window`, which outlives this object. Raises 7.
    WindowEditor(const Settings& settings, BasketWindowImpl& window);
    ~WindowEditor() override;
    WindowEditor(const WindowEditor&) = delete;
    WindowEditor& operator=(const WindowEditor&) = delete;

    // The grid: it gets the focus that a hidden editor had, the mouse wheel, and Tab.
    void SetGrid(HWND grid) { grid_ = grid; }

    // Another screen, with a font of that screen (outlives the editor). What is open is placed anew
    // by whoever lays the window out.
    void SetScale(const Scale& scale, HFONT font);

    // Registers and removes the class of the picture boxes.
    static void RegisterWindowClass(HINSTANCE module);
    static void UnregisterWindowClass(HINSTANCE module) noexcept;

    // The window's timer or posted message for SetFocusTimer.
    void OnSetFocusTimer() noexcept;
    // Cut, copy or paste for IPText if it is open and has the focus (`focus` is the control that
    // has it, or had it when the window was left).
    void OnEditKey(EditKey key, HWND focus) noexcept;

    HWND TextWindow() const noexcept { return text_[right_ ? 1 : 0]; }
    bool IsText(HWND window) const noexcept {
        return window != nullptr && (window == text_[0] || window == text_[1]);
    }
    HWND Background() const noexcept { return background_; }
    HWND ComboList() const noexcept { return list_; }

    // IEditorView
    void Open(const Cell& cell) override;
    void Realign(const Cell& cell) override;
    void Close() override;
    bool IsOpen() const override { return background_visible_; }
    void Hold(bool hold) override;
    std::wstring Text() const override;
    void SetText(std::wstring_view text) override;
    Range Selection() const override;
    void Select(std::int32_t start, std::int32_t length) override;
    void Focus() override;
    void StopSetFocusTimer() override { EnableSetFocusTimer(false); }
    void TakeKey(int key_code) override;
    void TakeCharacter(wchar_t character) override;
    bool OffersList() const override { return button_visible_ && background_visible_; }
    Twips ListHeight() const override;
    std::vector<std::wstring> ListEntries() const override;
    void OpenList(const TwipsPoint& at, std::int32_t selected) override;
    void CloseList() override;
    bool ListIsOpen() const override { return list_visible_; }
    std::int32_t ListIndex() const override;
    void SetListIndex(std::int32_t index) override;
    bool ListHasFocus() const override;

  private:
    static LRESULT CALLBACK PictureProc(HWND, UINT, WPARAM, LPARAM) noexcept;
    static LRESULT CALLBACK TextProc(HWND, UINT, WPARAM, LPARAM) noexcept;
    static LRESULT CALLBACK ListProc(HWND, UINT, WPARAM, LPARAM) noexcept;
    // Puts a procedure before the window's own, which it answers. The common controls' service for
    // this looks a property of the window up with each message, twice.
    WNDPROC Subclass(HWND window, WNDPROC procedure);
    static WindowEditor& Of(HWND window) noexcept;
    // Each answers whether the message was used up.
    bool OnTextMessage(HWND window, UINT message, WPARAM wparam, LPARAM lparam);
    bool OnTextKey(WPARAM key, LPARAM lparam);
    bool OnListMessage(UINT message, WPARAM wparam, LPARAM lparam);
    LRESULT OnPictureMessage(HWND window, UINT message, WPARAM wparam, LPARAM lparam);
    void PaintButton(HDC dc) const;
    wchar_t Overhanging() const;
    void PaintOverhang(HDC dc) const;
    void FollowOverhang();
    void OnTextChanged();
    void Tick() noexcept;
    void ShowBackground();
    void HideBackground();
    void MakeIPText(bool right);
    void ShowText();
    void SetMaxLength(std::int32_t length);
    void ShowButton(bool visible);
    void DrawButton(bool pressed);
    void EnableSetFocusTimer(bool enabled);
    void PlaceBackground(UINT flags) noexcept;
    bool ParentActive() const noexcept;

    HWND parent_;
    HWND grid_ = nullptr;
    Scale scale_;
    BasketWindowImpl& window_;
    HWND background_ = nullptr;
    HWND text_[2] = {nullptr, nullptr};  // left- and right-aligned
    HWND button_ = nullptr;
    HWND list_ = nullptr;
    WNDPROC text_proc_ = nullptr;  // of the system's text box and list box
    WNDPROC list_proc_ = nullptr;
    RECT background_rect_{};  // where it is, or goes when it is shown
    RECT background_placed_{};
    RECT text_rect_[2]{};  // where the text boxes are
    // Labels without extent right before IPText and IPComboList in z-order: where assistive
    // programs look for the name of a text box or a list.
    HWND text_label_ = nullptr;
    HWND list_label_ = nullptr;
    std::wstring name_;  // the cell's
    std::int32_t max_length_ = 0;
    wchar_t overhang_ = 0;  // the glyph whose overhang stands on the background
    bool gone_ = false;     // the windows are destroyed
    bool right_ = false;
    bool background_visible_ = false;
    bool background_held_ = false;
    bool background_lingers_ = false;  // on the screen, though hidden
    bool text_visible_ = false;
    bool button_visible_ = false;
    bool button_pressed_ = false;
    bool list_visible_ = false;
    bool setting_text_ = false;
    bool timer_enabled_ = false;
    bool tick_posted_ = false;
    bool ticking_ = false;  // the system's timer runs
};

}  // namespace demovex
