#include "host/frame_win.h"

#include <commdlg.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <cwchar>

namespace demovex::host {

namespace {

constexpr wchar_t kClass[] = L"DemoVexHost.Katalog";
constexpr wchar_t kTitle[] = L"Vexmart Katalog";
constexpr int kTree = 101, kList = 102, kAddress = 103, kSearch = 104, kStatus = 105;
constexpr int kOrder = 201, kNewBasket = 202, kOpenBasket = 203, kPlugInInfo = 204, kExit = 205,
              kAbout = 206;
constexpr int kLinkColumn = 4;
constexpr COLORREF kBand = RGB(22, 66, 110);
constexpr COLORREF kBandText = RGB(255, 255, 255);
constexpr COLORREF kTint = RGB(244, 247, 251);
constexpr COLORREF kLink = RGB(0, 92, 184);

struct ListColumn {
    const wchar_t* caption;
    int width;
    int format;
};
constexpr std::array<ListColumn, 5> kListColumns = {{
    {L"Art.-Nr.", 74, LVCFMT_LEFT},
    {L"Bezeichnung", 250, LVCFMT_LEFT},
    {L"Preis ATS", 88, LVCFMT_RIGHT},
    {L"Preis EURO", 88, LVCFMT_RIGHT},
    {L"Bestellung", 130, LVCFMT_LEFT},
}};

std::wstring Amount(double value) {
    std::array<wchar_t, 32> plain{};
    std::swprintf(plain.data(), plain.size(), L"%.2f", value);
    std::array<wchar_t, 48> shown{};
    if (GetNumberFormatW(LOCALE_USER_DEFAULT, 0, plain.data(), nullptr, shown.data(),
                         static_cast<int>(shown.size())) == 0) {
        return plain.data();
    }
    return shown.data();
}

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
      session_(
          [this](const std::wstring& address) {
              const auto number = ArticleAt(address);
              if (number) ShowArticle(*number);
          },
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

void Frame::CreateControls() {
    NONCLIENTMETRICSW metrics{};
    metrics.cbSize = sizeof metrics;
    SystemParametersInfoW(SPI_GETNONCLIENTMETRICS, sizeof metrics, &metrics, 0);
    LOGFONTW face = metrics.lfMessageFont;
    font_ = CreateFontIndirectW(&face);
    face.lfUnderline = TRUE;
    link_font_ = CreateFontIndirectW(&face);
    face.lfUnderline = FALSE;
    face.lfWeight = FW_BOLD;
    face.lfHeight = MulDiv(face.lfHeight, 3, 2);
    title_font_ = CreateFontIndirectW(&face);

    const auto make = [&](DWORD outer, const wchar_t* name, DWORD style, int id) {
        HWND control =
            CreateWindowExW(outer, name, L"", WS_CHILD | WS_VISIBLE | style, 0, 0, 0, 0, window_,
                            reinterpret_cast<HMENU>(static_cast<INT_PTR>(id)), instance_, nullptr);
        SendMessageW(control, WM_SETFONT, reinterpret_cast<WPARAM>(font_), FALSE);
        return control;
    };
    tree_ = make(WS_EX_CLIENTEDGE, WC_TREEVIEWW, WS_TABSTOP | TVS_FULLROWSELECT | TVS_SHOWSELALWAYS,
                 kTree);
    list_ =
        make(WS_EX_CLIENTEDGE, WC_LISTVIEWW,
             WS_TABSTOP | LVS_REPORT | LVS_OWNERDATA | LVS_SINGLESEL | LVS_SHOWSELALWAYS, kList);
    address_ = make(WS_EX_CLIENTEDGE, L"EDIT", ES_READONLY | ES_AUTOHSCROLL, kAddress);
    search_ = make(WS_EX_CLIENTEDGE, L"EDIT", WS_TABSTOP | ES_AUTOHSCROLL, kSearch);
    status_ = make(0, STATUSCLASSNAMEW, SBARS_SIZEGRIP, kStatus);

    ListView_SetExtendedListViewStyle(list_,
                                      LVS_EX_FULLROWSELECT | LVS_EX_DOUBLEBUFFER | LVS_EX_LABELTIP);
    for (std::size_t i = 0; i < kListColumns.size(); ++i) {
        LVCOLUMNW column{};
        column.mask = LVCF_TEXT | LVCF_WIDTH | LVCF_FMT;
        column.fmt = kListColumns[i].format;
        column.cx = Scale(kListColumns[i].width);
        column.pszText = const_cast<wchar_t*>(kListColumns[i].caption);
        SendMessageW(list_, LVM_INSERTCOLUMNW, i, reinterpret_cast<LPARAM>(&column));
    }
    // rows as high as their image list, which holds nothing else
    row_height_ = ImageList_Create(1, Scale(22), ILC_COLOR, 1, 1);
    ListView_SetImageList(list_, row_height_, LVSIL_SMALL);
    TreeView_SetItemHeight(tree_, Scale(26));
    for (std::size_t i = 0; i < catalogue_.Groups().size(); ++i) {
        TVINSERTSTRUCTW row{};
        row.hInsertAfter = TVI_LAST;
        row.item.mask = TVIF_TEXT | TVIF_PARAM;
        row.item.pszText = const_cast<wchar_t*>(catalogue_.Groups()[i].c_str());
        row.item.lParam = static_cast<LPARAM>(i);
        SendMessageW(tree_, TVM_INSERTITEMW, 0, reinterpret_cast<LPARAM>(&row));
    }
    SetWindowSubclass(list_, ListProcedure, 1, reinterpret_cast<DWORD_PTR>(this));
    for (HWND control : {tree_, list_, search_}) {
        SetWindowSubclass(control, TabProcedure, 2, reinterpret_cast<DWORD_PTR>(this));
    }
}

void Frame::CreateMenus() {
    const HMENU bar = CreateMenu();
    const auto menu = [&](const wchar_t* caption) {
        const HMENU popup = CreatePopupMenu();
        AppendMenuW(bar, MF_POPUP, reinterpret_cast<UINT_PTR>(popup), caption);
        return popup;
    };
    const HMENU catalogue = menu(L"&Katalog");
    AppendMenuW(catalogue, MF_STRING, kOrder, L"In den &Warenkorb\tEingabe");
    AppendMenuW(catalogue, MF_SEPARATOR, 0, nullptr);
    AppendMenuW(catalogue, MF_STRING, kExit, L"&Beenden");
    const HMENU basket = menu(L"&Warenkorb");
    AppendMenuW(basket, MF_STRING, kNewBasket, L"&Neues Warenkorbfenster");
    AppendMenuW(basket, MF_STRING, kOpenBasket, L"Warenkorb \u00F6&ffnen ...");
    const HMENU help = menu(L"&Hilfe");
    AppendMenuW(help, MF_STRING, kPlugInInfo, L"&Plug-in-Information ...");
    AppendMenuW(help, MF_STRING, kAbout, L"&Info");
    SetMenu(window_, bar);
}

void Frame::Layout() {
    if (!status_) return;
    SendMessageW(status_, WM_SIZE, 0, 0);
    RECT inner{}, bar{};
    GetClientRect(window_, &inner);
    GetWindowRect(status_, &bar);
    const int band = Scale(44), gap = Scale(8), line = Scale(24), left = Scale(210);
    const int bottom = inner.bottom - (bar.bottom - bar.top) - gap;
    const int top = band + gap + line + gap;
    const int search = Scale(200);
    MoveWindow(search_, inner.right - search - Scale(12), (band - line) / 2, search, line, TRUE);
    MoveWindow(address_, gap + Scale(60), band + gap, inner.right - Scale(60) - 2 * gap, line,
               TRUE);
    MoveWindow(tree_, gap, top, left, bottom - top, TRUE);
    const int width = inner.right - left - 3 * gap;
    MoveWindow(list_, gap + left + gap, top, width, bottom - top, TRUE);
    // the description takes what the other columns leave
    int taken = GetSystemMetrics(SM_CXVSCROLL) + 2 * GetSystemMetrics(SM_CXEDGE);
    for (const ListColumn& column : kListColumns) taken += Scale(column.width);
    const int description = Scale(kListColumns[1].width);
    ListView_SetColumnWidth(list_, 1, std::max(description, description + width - taken));
    InvalidateRect(window_, nullptr, TRUE);
}

void Frame::Paint() {
    PAINTSTRUCT paint{};
    const HDC dc = BeginPaint(window_, &paint);
    RECT band{};
    GetClientRect(window_, &band);
    const int width = band.right;
    band.bottom = Scale(44);
    const HBRUSH brush = CreateSolidBrush(kBand);
    FillRect(dc, &band, brush);
    DeleteObject(brush);
    SetBkMode(dc, TRANSPARENT);
    SetTextColor(dc, kBandText);
    const HGDIOBJ before = SelectObject(dc, title_font_);
    RECT title = {Scale(12), 0, width - Scale(280), band.bottom};
    const std::wstring text = heading_.empty() ? kTitle : L"Vexmart \u00B7 " + heading_;
    DrawTextW(dc, text.c_str(), -1, &title, DT_SINGLELINE | DT_VCENTER | DT_END_ELLIPSIS);
    SelectObject(dc, font_);
    RECT search = {width - Scale(272), 0, width - Scale(220), band.bottom};
    DrawTextW(dc, L"Suche:", -1, &search, DT_SINGLELINE | DT_VCENTER | DT_RIGHT);
    SetTextColor(dc, GetSysColor(COLOR_BTNTEXT));
    RECT label = {Scale(8), Scale(52), Scale(66), Scale(76)};
    DrawTextW(dc, L"Adresse:", -1, &label, DT_SINGLELINE | DT_VCENTER);
    SelectObject(dc, before);
    EndPaint(window_, &paint);
}

void Frame::FillItem(LVITEMW& item) const {
    if (!(item.mask & LVIF_TEXT) || static_cast<std::size_t>(item.iItem) >= rows_.size()) return;
    const Article& article = catalogue_.Articles()[rows_[static_cast<std::size_t>(item.iItem)]];
    std::wstring text;
    switch (item.iSubItem) {
        case 0:
            text = article.number;
            break;
        case 1:
            text = article.description;
            break;
        case 2:
            text = Amount(article.schillings);
            break;
        case 3:
            text = Amount(Euros(article.schillings));
            break;
        default:
            text = L"In den Warenkorb";
            break;
    }
    lstrcpynW(item.pszText, text.c_str(), item.cchTextMax);
}

LRESULT Frame::DrawItem(NMLVCUSTOMDRAW& draw) const {
    switch (draw.nmcd.dwDrawStage) {
        case CDDS_PREPAINT:
            return CDRF_NOTIFYITEMDRAW;
        case CDDS_ITEMPREPAINT:
            return CDRF_NOTIFYSUBITEMDRAW;
        case CDDS_ITEMPREPAINT | CDDS_SUBITEM:
            draw.clrTextBk = draw.nmcd.dwItemSpec % 2 ? kTint : GetSysColor(COLOR_WINDOW);
            draw.clrText = draw.iSubItem == kLinkColumn ? kLink : GetSysColor(COLOR_WINDOWTEXT);
            SelectObject(draw.nmcd.hdc, draw.iSubItem == kLinkColumn ? link_font_ : font_);
            return CDRF_NEWFONT;
        default:
            return CDRF_DODEFAULT;
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
        case NM_DBLCLK:
            if (reinterpret_cast<const NMITEMACTIVATE&>(header).iSubItem != kLinkColumn) {
                OrderSelected();
            }
            return 0;
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

// The hand over an order link.
LRESULT CALLBACK Frame::ListProcedure(HWND window, UINT message, WPARAM w, LPARAM l, UINT_PTR,
                                      DWORD_PTR) noexcept {
    if (message == WM_SETCURSOR && LOWORD(l) == HTCLIENT && reinterpret_cast<HWND>(w) == window) {
        LVHITTESTINFO hit{};
        GetCursorPos(&hit.pt);
        ScreenToClient(window, &hit.pt);
        if (ListView_SubItemHitTest(window, &hit) >= 0 && hit.iSubItem == kLinkColumn) {
            SetCursor(LoadCursorW(nullptr, IDC_HAND));
            return TRUE;
        }
    }
    return DefSubclassProc(window, message, w, l);
}

// Tab moves between the parts of the window: the program's loop knows nothing of dialogs.
LRESULT CALLBACK Frame::TabProcedure(HWND window, UINT message, WPARAM w, LPARAM l, UINT_PTR,
                                     DWORD_PTR self) noexcept {
    auto* frame = reinterpret_cast<Frame*>(self);
    if (message == WM_KEYDOWN && w == VK_TAB) {
        const std::array<HWND, 3> order = {frame->tree_, frame->list_, frame->search_};
        const auto at =
            static_cast<std::size_t>(std::find(order.begin(), order.end(), window) - order.begin());
        const std::size_t step = GetKeyState(VK_SHIFT) < 0 ? 2 : 1;
        SetFocus(order[(at + step) % order.size()]);
        return 0;
    }
    if (message == WM_CHAR && w == L'\t') return 0;
    return DefSubclassProc(window, message, w, l);
}

}  // namespace demovex::host
