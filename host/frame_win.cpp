#include "host/frame_win.h"

#include <commdlg.h>
#include <shellapi.h>

#include <algorithm>
#include <array>

#include "host/frame_ids.h"

namespace demovex::host {

namespace {

constexpr wchar_t kClass[] = L"DemoVexHost.Katalog";

std::wstring WindowText(HWND window) {
    std::wstring text(static_cast<std::size_t>(GetWindowTextLengthW(window)) + 1, L'\0');
    text.resize(static_cast<std::size_t>(
        GetWindowTextW(window, text.data(), static_cast<int>(text.size()))));
    return text;
}

}  // namespace

Frame::Frame(HINSTANCE instance, Catalogue catalogue, bool quiet)
    : instance_(instance),
      catalogue_(std::move(catalogue)),
      quiet_(quiet),
      session_([this](const std::wstring& address) { ShowPosition(address); },
               [this] { UpdateStatus(); }) {
    const INITCOMMONCONTROLSEX controls = {
        sizeof controls, ICC_TREEVIEW_CLASSES | ICC_LISTVIEW_CLASSES | ICC_BAR_CLASSES};
    InitCommonControlsEx(&controls);
    WNDCLASSEXW description{};
    description.cbSize = sizeof description;
    description.lpfnWndProc = Procedure;
    description.hInstance = instance;
    description.hCursor = LoadCursorW(nullptr, IDC_ARROW);
    description.hIcon = LoadIconW(instance, MAKEINTRESOURCEW(1));
    description.hbrBackground = GetSysColorBrush(COLOR_3DFACE);
    description.lpszClassName = kClass;
    RegisterClassExW(&description);
    const HDC screen = GetDC(nullptr);
    dpi_ = GetDeviceCaps(screen, LOGPIXELSX);
    ReleaseDC(nullptr, screen);
    CreateWindowExW(0, kClass, kTitle, WS_OVERLAPPEDWINDOW | WS_CLIPCHILDREN, CW_USEDEFAULT,
                    CW_USEDEFAULT, Scale(940), Scale(620), nullptr, nullptr, instance, this);
}

Frame::~Frame() {
    if (window_) DestroyWindow(window_);
    for (HFONT font : {font_, title_font_, link_font_}) {
        if (font) DeleteObject(font);
    }
    if (row_height_) ImageList_Destroy(row_height_);
}

void Frame::Show(int show) {
    ShowWindow(window_, show);
    UpdateWindow(window_);
}

LRESULT CALLBACK Frame::Procedure(HWND window, UINT message, WPARAM w, LPARAM l) noexcept {
    auto* self = reinterpret_cast<Frame*>(GetWindowLongPtrW(window, GWLP_USERDATA));
    if (message == WM_NCCREATE) {
        self = static_cast<Frame*>(reinterpret_cast<CREATESTRUCTW*>(l)->lpCreateParams);
        SetWindowLongPtrW(window, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(self));
        self->window_ = window;
    }
    if (!self) return DefWindowProcW(window, message, w, l);
    try {
        return self->Handle(message, w, l);
    } catch (...) {
        return DefWindowProcW(window, message, w, l);
    }
}

LRESULT Frame::Handle(UINT message, WPARAM w, LPARAM l) {
    switch (message) {
        case WM_CREATE:
            CreateControls();
            CreateMenus();
            if (!catalogue_.Groups().empty()) ShowGroup(0);
            return 0;
        case WM_SIZE:
            Layout();
            return 0;
        case WM_SETFOCUS:
            SetFocus(list_);
            return 0;
        case WM_PAINT:
            Paint();
            return 0;
        case WM_GETMINMAXINFO:
            reinterpret_cast<MINMAXINFO*>(l)->ptMinTrackSize = {Scale(640), Scale(360)};
            return 0;
        case WM_NOTIFY:
            return Notify(*reinterpret_cast<NMHDR*>(l));
        case WM_COMMAND:
            Command(LOWORD(w), HIWORD(w));
            return 0;
        case WM_DESTROY:
            PostQuitMessage(0);
            return 0;
        case WM_NCDESTROY:
            SetWindowLongPtrW(window_, GWLP_USERDATA, 0);
            window_ = nullptr;
            return 0;
        default:
            return DefWindowProcW(window_, message, w, l);
    }
}

LRESULT Frame::Notify(const NMHDR& header) {
    if (header.idFrom == kTree && header.code == TVN_SELCHANGEDW && !moving_) {
        ShowGroup(
            static_cast<std::size_t>(reinterpret_cast<const NMTREEVIEWW&>(header).itemNew.lParam));
    }
    if (header.idFrom != kList) return 0;
    switch (header.code) {
        case LVN_GETDISPINFOW:
            FillItem(reinterpret_cast<NMLVDISPINFOW&>(const_cast<NMHDR&>(header)).item);
            return 0;
        case NM_CUSTOMDRAW:
            return DrawItem(reinterpret_cast<NMLVCUSTOMDRAW&>(const_cast<NMHDR&>(header)));
        case LVN_ITEMCHANGED:
            SelectionChanged();
            return 0;
        case NM_CLICK:
            if (reinterpret_cast<const NMITEMACTIVATE&>(header).iSubItem == kLinkColumn) {
                OrderSelected();
            }
            return 0;
        case NM_DBLCLK:  // on a link the second of two quick clicks, anywhere else a wish to order
        case NM_RETURN:
            OrderSelected();
            return 0;
        default:
            return 0;
    }
}

void Frame::Command(int id, int code) {
    switch (id) {
        case kSearch:
            if (code == EN_CHANGE) ShowSearch();
            return;
        case kOrder:
            OrderSelected();
            return;
        case kNewBasket:
            Report(L"Neuer Warenkorb", session_.NewBasket());
            return;
        case kOpenBasket:
            OpenBasket();
            return;
        case kExit:
            PostMessageW(window_, WM_CLOSE, 0, 0);
            return;
        case kPlugInInfo: {
            std::wstring text = L"Kein Warenkorb ist ge\u00F6ffnet.";
            if (PlugInClient* client = session_.Current()) {
                std::wstring caption, description, producer;
                client->Caption(caption);
                client->Description(description);
                client->Producer(producer);
                text = description + L"\n" + producer + L"\n\n" + caption;
            }
            MessageBoxW(window_, text.c_str(), L"Plug-in", MB_OK | MB_ICONINFORMATION);
            return;
        }
        case kAbout:
            MessageBoxW(window_,
                        L"Vexmart Katalog\n\nEin Katalogprogramm zum Vorf\u00FChren: Es kennt den "
                        L"Warenkorb nur \u00FCber dessen COM-Schnittstellen.",
                        kTitle, MB_OK | MB_ICONINFORMATION);
            return;
        default:
            return;
    }
}

void Frame::OpenBasket() {
    std::array<wchar_t, MAX_PATH> path{};
    OPENFILENAMEW request{};
    request.lStructSize = sizeof request;
    request.hwndOwner = window_;
    request.lpstrFilter = L"Warenk\u00F6rbe (*.bsk)\0*.bsk\0Alle Dateien\0*.*\0";
    request.lpstrFile = path.data();
    request.nMaxFile = static_cast<DWORD>(path.size());
    request.Flags = OFN_FILEMUSTEXIST | OFN_HIDEREADONLY;
    if (!GetOpenFileNameW(&request)) return;
    Outcome outcome;
    if (!session_.Current()) outcome = session_.NewBasket();
    if (!outcome.Failed()) outcome = session_.OpenFile(path.data());
    Report(L"Warenkorb \u00F6ffnen", outcome);
}

// A basket may have come by mail, and its lines with addresses that nobody here has written.
void Frame::ShowPosition(const std::wstring& address) {
    if (const auto number = ArticleAt(address)) {
        ShowArticle(*number);
        return;
    }
    if (!IsWebAddress(address)) {
        const std::wstring text = L"Keine Adresse des Katalogs: " + ShownAddress(address);
        SetWindowTextW(status_, text.c_str());
        return;
    }
    const std::wstring question =
        L"Der Warenkorb m\u00F6chte eine Seite zeigen, die nicht zu diesem Katalog "
        L"geh\u00F6rt:\n\n" +
        ShownAddress(address) + L"\n\nSoll der Browser sie zeigen?";
    if (MessageBoxW(window_, question.c_str(), kTitle,
                    MB_YESNO | MB_ICONQUESTION | MB_DEFBUTTON2) != IDYES) {
        return;
    }
    last_page_ = address;
    if (!quiet_) ShellExecuteW(window_, L"open", address.c_str(), nullptr, nullptr, SW_SHOWNORMAL);
}

void Frame::ShowGroup(std::size_t group) {
    if (group >= catalogue_.Groups().size()) return;
    moving_ = true;
    SetWindowTextW(search_, L"");
    HTREEITEM item = TreeView_GetRoot(tree_);
    for (std::size_t i = 0; i < group && item; ++i) item = TreeView_GetNextSibling(tree_, item);
    TreeView_SelectItem(tree_, item);
    moving_ = false;
    ShowRows(catalogue_.InGroup(group), catalogue_.Groups()[group]);
}

void Frame::ShowSearch() {
    if (moving_) return;
    const std::wstring text = WindowText(search_);
    if (text.empty()) {
        ShowGroup(0);
    } else {
        ShowRows(catalogue_.Matching(text), L"Suche nach \u201E" + text + L"\u201C");
    }
}

void Frame::ShowRows(std::vector<std::size_t> rows, const std::wstring& heading) {
    rows_ = std::move(rows);
    heading_ = heading;
    ListView_SetItemCountEx(list_, static_cast<int>(rows_.size()), 0);
    ListView_RedrawItems(list_, 0, static_cast<int>(rows_.size()));
    ListView_SetItemState(list_, -1, 0, LVIS_SELECTED | LVIS_FOCUSED);
    if (!rows_.empty()) {
        ListView_SetItemState(list_, 0, LVIS_SELECTED | LVIS_FOCUSED, LVIS_SELECTED | LVIS_FOCUSED);
        ListView_EnsureVisible(list_, 0, FALSE);
    }
    InvalidateRect(window_, nullptr, FALSE);
    SelectionChanged();
}

bool Frame::ShowArticle(const std::wstring& number) {
    const auto found = catalogue_.Find(number);
    if (!found) return false;
    ShowGroup(catalogue_.Articles()[*found].group);
    const auto row = std::find(rows_.begin(), rows_.end(), *found) - rows_.begin();
    ListView_SetItemState(list_, static_cast<int>(row), LVIS_SELECTED | LVIS_FOCUSED,
                          LVIS_SELECTED | LVIS_FOCUSED);
    ListView_EnsureVisible(list_, static_cast<int>(row), FALSE);
    SelectionChanged();
    return true;
}

std::wstring Frame::SelectedArticle() const {
    const int row = ListView_GetNextItem(list_, -1, LVNI_SELECTED);
    if (row < 0 || static_cast<std::size_t>(row) >= rows_.size()) return {};
    return catalogue_.Articles()[rows_[static_cast<std::size_t>(row)]].number;
}

POINT Frame::OrderLink() const {
    RECT cell{};
    ListView_GetSubItemRect(list_, ListView_GetNextItem(list_, -1, LVNI_SELECTED), kLinkColumn,
                            LVIR_LABEL, &cell);
    POINT place = {cell.left + Scale(20), (cell.top + cell.bottom) / 2};
    ClientToScreen(list_, &place);
    return place;
}

void Frame::SelectionChanged() {
    const std::wstring number = SelectedArticle();
    SetWindowTextW(address_, number.empty() ? L"" : PositionAddress(number).c_str());
    UpdateStatus();
}

void Frame::OrderSelected() {
    const auto found = catalogue_.Find(SelectedArticle());
    if (!found) return;
    const Article& article = catalogue_.Articles()[*found];
    const Outcome outcome = session_.Order(article, catalogue_.Groups()[article.group]);
    Report(article.number + L" " + article.description, outcome);
}

void Frame::Report(const std::wstring& what, const Outcome& outcome) {
    if (outcome.Failed()) {
        const std::wstring text = what + L": " + outcome.Say();
        SetWindowTextW(status_, text.c_str());
        if (!quiet_) MessageBoxW(window_, text.c_str(), kTitle, MB_OK | MB_ICONEXCLAMATION);
    } else {
        SetWindowTextW(status_, (what + L" \u2713").c_str());
    }
}

void Frame::UpdateStatus() {
    if (!status_) return;
    const std::size_t open = session_.Count();
    const std::wstring text = std::to_wstring(rows_.size()) + L" Artikel  \u00B7  " +
                              (open == 0   ? L"kein Warenkorb offen"
                               : open == 1 ? L"ein Warenkorb offen"
                                           : std::to_wstring(open) + L" Warenk\u00F6rbe offen");
    SetWindowTextW(status_, text.c_str());
}

}  // namespace demovex::host
