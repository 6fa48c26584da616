// What BasketWindow is made of. The object holds itself while its HWND exists; guards hold it
// through every handler, so that a handler may end in the window's destruction.
#pragma once

#include <memory>
#include <string>
#include <type_traits>

#include "basket/window/basket_window_win.h"
#include "basket/window/editor_win.h"
#include "basket/window/escape_watch_win.h"
#include "basket/window/handles_win.h"
#include "basket/window/menu_win.h"
#include "basket/window/note_win.h"
#include "basket/window/services_win.h"
#include "basket/window/status_win.h"
#include "basket/window/toolbar_win.h"
#include "grid/flex_grid_control_win.h"

namespace demovex {

class TestLibForm;

// A call that takes the form; refers to the callable it was made from and never allocates.
class FormCall {
  public:
    template <class Callable>
    // NOLINTNEXTLINE(bugprone-forwarding-reference-overload): the constraint leaves copying alone
    requires(!std::is_same_v<std::remove_cvref_t<Callable>, FormCall>) FormCall(Callable&& callable)
    noexcept  // NOLINT(google-explicit-constructor)
        : object_(const_cast<void*>(static_cast<const void*>(&callable))),
          call_([](void* object, TestLibForm& form) {
              (*static_cast<std::remove_reference_t<Callable>*>(object))(form);
          }) {}
    void operator()(TestLibForm& form) const { call_(object_, form); }

  private:
    void* object_;
    void (*call_)(void*, TestLibForm&);
};

class BasketWindowImpl final : public std::enable_shared_from_this<BasketWindowImpl>,
                               public IBasketView,
                               private IFlexGridEvents,
                               private IFlexGridControlEvents {
  public:
    BasketWindowImpl(HINSTANCE module, std::shared_ptr<IBasketOwner> owner,
                     std::shared_ptr<void> module_lock, const BasketWindowOptions& options);
    ~BasketWindowImpl() override;

    static void UnregisterClasses(HINSTANCE module) noexcept;

    // Creates the window with all its controls, hidden; from then on the object holds itself.
    void Create();
    void Initialize();
    void Show();
    void Destroy() noexcept;
    std::shared_ptr<TestLibForm> Form();
    FlexGrid& Liste() { return grid_->Grid(); }
    HWND Handle() const noexcept { return window_; }
    // Where the caption is written when the window goes; outlives the window.
    std::shared_ptr<const std::wstring> LastCaption() const { return last_caption_; }

    // The edge between the system and the form: runs `call` with the form, if there still is one.
    // Whatever it raises is shown to the user and goes no further. The window may be gone
    // afterwards.
    void Forward(FormCall call) noexcept;
    // As long as the result is held, every object of the window stays in memory, even when the
    // window itself is destroyed.
    std::shared_ptr<void> KeepAlive() noexcept { return weak_from_this().lock(); }

    // IBasketView
    IEditorView& Editor() override { return *editor_; }
    void SendGridKey(GridKey key) override { grid_->SendKey(key); }
    void SendEditKey(EditKey key) override;
    // where the grid's pixels stand: its twips may lie between two of them
    TwipsPoint GridOrigin() const override {
        return {scale_.ToTwips(scale_.ToPixels(grid_rect_.left)),
                scale_.ToTwips(scale_.ToPixels(grid_rect_.top))};
    }
    void ShowGridCell(std::int32_t row, std::int32_t col) override { grid_->Grid().Show(row, col); }
    void MoveGrid(const TwipsRect& rect) override;
    Twips InnerWidth() const override;
    Twips InnerHeight() const override;
    bool Minimised() const override;
    void SetCaption(std::wstring_view caption) override;
    void SetStatusText(std::wstring_view text) override { status_->SetText(text); }
    std::wstring StatusText() const override { return status_->Text(); }
    Twips StatusbarHeight() const override;
    void SetToolbarVisible(bool visible) override { toolbar_->Show(visible); }
    void ShowNote(std::wstring_view text) override { note_->Say(text); }
    void SetStatusbarVisible(bool visible) override;
    void SetMenuState(Command item, const MenuItemState& state) override;
    void SetMenuCaption(Command item, std::wstring_view caption) override;
    void BuildToolbar() override { toolbar_->Build(); }
    void PopupContextMenu(const TwipsPoint& at) override;
    Twips MeasureGridText(std::wstring_view text, bool bold) override {
        return grid_->TextWidth(text, bold);
    }
    void BeginProgress(std::wstring_view what) override;
    void SetProgress(double fraction) override;
    void EndProgress() override;
    bool Cancelled() override { return escape_.Pressed(); }
    void KeepPainted() override;
    void ShowAboutBox() override;
    void RequestClose() override;

  private:
    // IFlexGridEvents: on to the form. What it raises goes back to whoever moved the grid: the form
    // itself, or the grid's window procedure, which then reports Failed.
    void RowColChange() override;
    void SelChange() override;
    void Scroll() override;
    // IFlexGridControlEvents
    void MouseUp(int button, int shift, Twips x, Twips y) override;
    void DblClick() override;
    bool KeyPressed(int key, int shift) override;
    bool CharacterTyped(wchar_t character) override;
    void InputBegins() override { note_->Say({}); }
    void UserActed() override;
    void Failed(const CaughtError& error) noexcept override { ShowError(error.description); }

    static LRESULT CALLBACK Procedure(HWND, UINT, WPARAM, LPARAM) noexcept;
    LRESULT OnMessage(UINT message, WPARAM wparam, LPARAM lparam);
    bool OnCommand(WPARAM wparam, LPARAM lparam);
    void OnSize(WPARAM kind);
    void OnMinimum(MINMAXINFO& info) const;
    void OnActivate(bool active);
    void OnContextKey();
    void PlaceNote();
    void OnTurnedKey(UINT message, WPARAM wparam, LPARAM lparam);
    void OnDestroy() noexcept;
    void OnDestroyed() noexcept;
    bool CloseUnlessCancelled() noexcept;
    void RestoreFocus() noexcept;
    // The user's font for the window's scale; false when it is the one in use.
    bool CreateFont();
    void LoadIcons();
    void GoToMonitor(const RECT& area);
    void Rescale(int dpi);
    void ApplyScaleAndFont();
    void LayOut();
    void OnDpiChanged(int dpi, LPARAM place);
    void OnSettings(UINT message, WPARAM wparam, LPARAM lparam);
    bool OnQueryEndSession(LPARAM reasons);
    void OnEndSession(bool ends);
    // What a dialog of the system's tells its owner when its help button is pressed.
    static UINT HelpMessage() noexcept;
    void OnHelp();
    void CreateControls();
    void SetFirstSize();
    void RegisterClasses();
    void ShowError(std::wstring_view description) noexcept;

    std::shared_ptr<void> module_lock_;  // first, so that it goes last
    HINSTANCE module_;
    BasketWindowOptions options_;
    std::shared_ptr<IBasketOwner> owner_;
    std::shared_ptr<BasketWindowImpl> self_;
    HWND window_ = nullptr;
    std::shared_ptr<std::wstring> last_caption_ = std::make_shared<std::wstring>();
    Scale scale_;
    LOGFONTW font_shape_{};
    UniqueFont former_font_;
    UniqueFont font_;
    UniqueIcon large_icon_;
    UniqueIcon small_icon_;
    UniqueHook hook_;
    std::unique_ptr<WindowServices> own_services_;
    Services* services_ = nullptr;
    std::unique_ptr<WindowMenu> menu_;
    std::unique_ptr<WindowToolbar> toolbar_;
    std::unique_ptr<WindowNote> note_;
    std::unique_ptr<WindowStatus> status_;
    EscapeWatch escape_;
    std::unique_ptr<FlexGridControl> grid_;
    std::unique_ptr<WindowEditor> editor_;
    std::unique_ptr<TestLibForm> form_;
    TwipsRect grid_rect_;
    HWND last_focus_ = nullptr;
    bool initialised_ = false;
    bool closing_ = false;
    bool rescaling_ = false;
};

}  // namespace demovex
