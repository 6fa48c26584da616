// Life of the basket window: creation, first size and place, set-up, unloading, destruction.
#include "basket/window/impl_win.h"

#include <algorithm>
#include <cstring>
#include <utility>
#include <vector>

#include "basket/rows/columns.h"
#include "basket/state.h"
#include "basket/window/ids.h"
#include "basket/window/key_hook_win.h"
#include "basket/window/placement.h"
#include "grid/cell_name.h"
#include "platform/screen_scale_win.h"

namespace demovex {
namespace {

constexpr int kIcon = 1;        // resource number
constexpr int kFirstRows = 20;  // basket rows in view at first

UniqueIcon LoadPicture(HINSTANCE module, int width, int height) {
    return UniqueIcon(static_cast<HICON>(
        LoadImageW(module, MAKEINTRESOURCEW(kIcon), IMAGE_ICON, width, height, 0)));
}

PixelRect ToPixelRect(const RECT& rect) noexcept {
    return {rect.left, rect.top, rect.right, rect.bottom};
}

struct WindowSearch {
    HWND except;
    std::vector<PixelRect> found;
};

BOOL CALLBACK AddBasketWindow(HWND window, LPARAM data) noexcept {
    auto& search = *reinterpret_cast<WindowSearch*>(data);
    wchar_t name[64] = L"";
    GetClassNameW(window, name, 64);
    RECT rect{};
    if (window == search.except || !IsWindowVisible(window) ||
        std::wstring_view(name) != kBasketWindowClass || !GetWindowRect(window, &rect)) {
        return TRUE;
    }
    try {
        search.found.push_back(ToPixelRect(rect));
    } catch (...) {
        return FALSE;  // one window over another does no harm
    }
    return TRUE;
}

// The basket windows of this thread that are in view, `except` left out.
std::vector<PixelRect> OtherWindows(HWND except) {
    WindowSearch search{except, {}};
    EnumThreadWindows(GetCurrentThreadId(), &AddBasketWindow, reinterpret_cast<LPARAM>(&search));
    return search.found;
}

}  // namespace

BasketWindowImpl::BasketWindowImpl(HINSTANCE module, std::shared_ptr<IBasketOwner> owner,
                                   std::shared_ptr<void> module_lock,
                                   const BasketWindowOptions& options)
    : module_lock_(std::move(module_lock)),
      module_(module),
      options_(options),
      owner_(std::move(owner)),
      scale_(options.dpi > 0 ? options.dpi : SystemDpi()) {}

BasketWindowImpl::~BasketWindowImpl() {
    UnregisterClasses(module_);
}

void BasketWindowImpl::UnregisterClasses(HINSTANCE module) noexcept {
    // each succeeds with its last window only
    UnregisterClassW(kBasketWindowClass, module);
    WindowEditor::UnregisterWindowClass(module);
    WindowNote::UnregisterWindowClass(module);
    FlexGridControl::UnregisterWindowClass(module);
}

void BasketWindowImpl::RegisterClasses() {
    INITCOMMONCONTROLSEX controls{sizeof controls, ICC_BAR_CLASSES | ICC_PROGRESS_CLASS};
    InitCommonControlsEx(&controls);
    WindowEditor::RegisterWindowClass(module_);
    WindowNote::RegisterWindowClass(module_);
    WNDCLASSEXW info{};
    info.cbSize = sizeof info;
    info.lpfnWndProc = &BasketWindowImpl::Procedure;
    info.hInstance = module_;
    info.hCursor = LoadCursorW(nullptr, IDC_ARROW);
    info.hbrBackground = reinterpret_cast<HBRUSH>(static_cast<INT_PTR>(COLOR_BTNFACE + 1));
    info.lpszClassName = kBasketWindowClass;
    if (RegisterClassExW(&info) == 0 && GetLastError() != ERROR_CLASS_ALREADY_EXISTS) {
        RaiseRuntimeError(runtime_error::kOutOfMemory);
    }
}

bool BasketWindowImpl::CreateFont() {
    LOGFONTW shape{};
    if (!MessageFont(scale_.dpi(), shape)) RaiseRuntimeError(runtime_error::kOutOfMemory);
    if (font_ && std::memcmp(&shape, &font_shape_, sizeof shape) == 0) return false;
    UniqueFont font(CreateFontIndirectW(&shape));
    if (!font) RaiseRuntimeError(runtime_error::kOutOfMemory);
    // the controls use the former one until they are told of this one
    former_font_ = std::exchange(font_, std::move(font));
    font_shape_ = shape;
    return true;
}

void BasketWindowImpl::Create() {
    RegisterClasses();
    const auto keep = shared_from_this();
    if (CreateWindowExW(WS_EX_CONTROLPARENT, kBasketWindowClass,
                        std::wstring(kDesignedCaption).c_str(),
                        WS_OVERLAPPEDWINDOW | WS_CLIPCHILDREN, CW_USEDEFAULT, CW_USEDEFAULT, 600,
                        400, nullptr, nullptr, module_, this) == nullptr) {
        RaiseRuntimeError(runtime_error::kOutOfMemory);
    }
    try {
        if (options_.dpi <= 0) scale_ = Scale(WindowDpi(window_));
        CreateFont();
        CreateControls();
        SetFirstSize();
    } catch (...) {
        Destroy();
        throw;
    }
}

void BasketWindowImpl::LoadIcons() {
    UniqueIcon large =
        LoadPicture(module_, MetricOf(window_, SM_CXICON), MetricOf(window_, SM_CYICON));
    UniqueIcon small =
        LoadPicture(module_, MetricOf(window_, SM_CXSMICON), MetricOf(window_, SM_CYSMICON));
    SendMessageW(window_, WM_SETICON, ICON_BIG, reinterpret_cast<LPARAM>(large.get()));
    SendMessageW(window_, WM_SETICON, ICON_SMALL, reinterpret_cast<LPARAM>(small.get()));
    large_icon_ = std::move(large);
    small_icon_ = std::move(small);
}

void BasketWindowImpl::CreateControls() {
    LoadIcons();
    if (options_.services != nullptr) {
        services_ = options_.services;
    } else {
        own_services_ = std::make_unique<WindowServices>(module_, window_);
        services_ = &own_services_->Get();
    }
    menu_ = std::make_unique<WindowMenu>(window_);
    toolbar_ = std::make_unique<WindowToolbar>(window_, module_, scale_);
    note_ = std::make_unique<WindowNote>(window_, module_, scale_, font_.get());
    status_ = std::make_unique<WindowStatus>(window_, module_, scale_);
    SendMessageW(status_->Handle(), WM_SETFONT, reinterpret_cast<WPARAM>(font_.get()), FALSE);
    grid_ = std::make_unique<FlexGridControl>(module_, window_, child_id::kListe, TwipsRect{},
                                              scale_, services_->text, font_.get());
    grid_->SetModuleLock(module_lock_);
    grid_->SetEvents(this);
    grid_->Grid().SetEvents(this);
    SetWindowTextW(grid_->Handle(), L"Warenkorb");  // its name for assistive programs
    ShowWindow(grid_->Handle(), SW_SHOWNA);
    editor_ = std::make_unique<WindowEditor>(
        WindowEditor::Settings{window_, module_, scale_, font_.get()}, *this);
    editor_->SetGrid(grid_->Handle());
    form_ = std::make_unique<TestLibForm>(grid_->Grid(), *this, *services_);
    form_->moLibrary = owner_.get();
    hook_ = InstallKeyHook();
}

// Wide enough for all columns, high enough for twenty rows, the totals and the margin below them
// that the editor asks for.
void BasketWindowImpl::SetFirstSize() {
    int columns = 0;
    for (const ColumnRow& column : kColumns) columns += scale_.ToPixels(column.width);
    const int edges = 2 * MetricOf(window_, SM_CXEDGE);
    status_->Layout();
    const int row = scale_.ToPixels(grid_->Grid().RowHeight(0));
    RECT rect{0, 0, columns + edges + MetricOf(window_, SM_CXVSCROLL),
              scale_.ToPixels(kToolbarHeight) + status_->Height() + edges + (kFirstRows + 2) * row +
                  scale_.ToPixels(kEdgeMargin)};
    GrowToWindow(window_, rect);
    SetWindowPos(window_, nullptr, 0, 0, rect.right - rect.left, rect.bottom - rect.top,
                 SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);
}

void BasketWindowImpl::OnMinimum(MINMAXINFO& info) const {
    // the toolbar's buttons and a few rows
    RECT rect{0, 0, scale_.ToPixels(6300), scale_.ToPixels(2400)};
    GrowToWindow(window_, rect);
    info.ptMinTrackSize = {rect.right - rect.left, rect.bottom - rect.top};
}

void BasketWindowImpl::Initialize() {
    const auto keep = shared_from_this();
    try {
        if (window_ == nullptr) RaiseRuntimeError(runtime_error::kObjectNotSet);
        form_->Initialize();
        initialised_ = true;
        form_->Form_Resize();
    } catch (...) {
        initialised_ = false;
        Destroy();
        throw;
    }
}

// Where each monitor has its own scale, the size that the window needs is known only there.
void BasketWindowImpl::GoToMonitor(const RECT& area) {
    if (options_.dpi > 0) return;
    const int before = scale_.dpi();
    SetWindowPos(window_, nullptr, area.left, area.top, 0, 0,
                 SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
    Rescale(WindowDpi(window_));
    if (scale_.dpi() != before) SetFirstSize();
}

void BasketWindowImpl::Show() {
    const auto keep = shared_from_this();
    if (window_ == nullptr) RaiseRuntimeError(runtime_error::kObjectNotSet);
    // on the host's monitor, or the nearest to a host that is out of view
    HWND host = GetActiveWindow() != nullptr ? GetActiveWindow() : GetForegroundWindow();
    MONITORINFO monitor{};
    monitor.cbSize = sizeof monitor;
    const DWORD otherwise = host != nullptr ? MONITOR_DEFAULTTONEAREST : MONITOR_DEFAULTTOPRIMARY;
    if (GetMonitorInfoW(MonitorFromWindow(host, otherwise), &monitor)) {
        GoToMonitor(monitor.rcWork);
        RECT rect{};
        GetWindowRect(window_, &rect);
        const PixelRect place =
            PlaceWindow(ToPixelRect(monitor.rcWork), rect.right - rect.left, rect.bottom - rect.top,
                        OtherWindows(window_),
                        MetricOf(window_, SM_CYCAPTION) + MetricOf(window_, SM_CYSIZEFRAME));
        SetWindowPos(window_, nullptr, place.left, place.top, place.width(), place.height(),
                     SWP_NOZORDER | SWP_NOACTIVATE);
    }
    ShowWindow(window_, SW_SHOW);
    UpdateWindow(window_);
}

std::shared_ptr<TestLibForm> BasketWindowImpl::Form() {
    if (window_ == nullptr || !form_) RaiseRuntimeError(runtime_error::kObjectNotSet);
    return {shared_from_this(), form_.get()};
}

bool BasketWindowImpl::CloseUnlessCancelled() noexcept {
    if (closing_ || window_ == nullptr) return false;
    if (!initialised_) {
        Destroy();
        return true;
    }
    closing_ = true;
    bool stays = true;  // also when an error ends the question
    Forward([&](TestLibForm& form) { stays = form.Form_Unload(); });
    closing_ = false;
    if (stays) return false;
    Destroy();
    return true;
}

void BasketWindowImpl::Destroy() noexcept {
    if (form_) form_->moLibrary = nullptr;
    if (window_ != nullptr) DestroyWindow(window_);
}

// The window goes, for whatever reason; its controls have gone.
void BasketWindowImpl::OnDestroy() noexcept {
    hook_.reset();
    if (initialised_) {
        try {
            *last_caption_ = form_->Caption();
        } catch (...) {
            // the last caption is an empty one then
        }
    }
    IBasketOwner* const owner = form_ ? std::exchange(form_->moLibrary, nullptr) : nullptr;
    if (initialised_ && owner != nullptr) {
        // the host or the system has destroyed the window without asking
        try {
            owner->ClientClosing();
        } catch (...) {
            // there is nobody left to tell
        }
    }
    menu_.reset();  // takes the menu bar from the window first
}

void BasketWindowImpl::OnDestroyed() noexcept {
    window_ = nullptr;
    owner_.reset();
    self_.reset();
}

}  // namespace demovex
