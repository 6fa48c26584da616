// How the host's window is made up and what it looks like.
#include "host/frame_win.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <cwchar>

#include "host/frame_ids.h"

namespace demovex::host {

namespace {

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

}  // namespace

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
    // (the common controls' own functions for this have names from version 6 on only)
    for (std::size_t i = 0; i < control_procedures_.size(); ++i) {
        const HWND control = Controls()[i];
        SetWindowLongPtrW(control, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(this));
        control_procedures_[i] = reinterpret_cast<WNDPROC>(SetWindowLongPtrW(
            control, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(&Frame::ControlProcedure)));
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
        case CDDS_PREPAINT:      // the next lower level is wanted too,
        case CDDS_ITEMPREPAINT:  // and its name for columns has the same value
            return CDRF_NOTIFYITEMDRAW;
        case CDDS_ITEMPREPAINT | CDDS_SUBITEM:
            draw.clrTextBk = draw.nmcd.dwItemSpec % 2 ? kTint : GetSysColor(COLOR_WINDOW);
            draw.clrText = draw.iSubItem == kLinkColumn ? kLink : GetSysColor(COLOR_WINDOWTEXT);
            SelectObject(draw.nmcd.hdc, draw.iSubItem == kLinkColumn ? link_font_ : font_);
            return CDRF_NEWFONT;
        default:
            return CDRF_DODEFAULT;
    }
}

std::array<HWND, 3> Frame::Controls() const {
    return {tree_, list_, search_};
}

// The hand over an order link; and Tab moves between the parts of the window: the program's loop
// knows nothing of dialogs.
LRESULT CALLBACK Frame::ControlProcedure(HWND window, UINT message, WPARAM w, LPARAM l) noexcept {
    const auto& frame = *reinterpret_cast<const Frame*>(GetWindowLongPtrW(window, GWLP_USERDATA));
    const std::array<HWND, 3> order = frame.Controls();
    const auto at =
        static_cast<std::size_t>(std::find(order.begin(), order.end(), window) - order.begin());
    if (window == frame.list_ && message == WM_SETCURSOR && LOWORD(l) == HTCLIENT &&
        reinterpret_cast<HWND>(w) == window) {
        LVHITTESTINFO hit{};
        GetCursorPos(&hit.pt);
        ScreenToClient(window, &hit.pt);
        if (ListView_SubItemHitTest(window, &hit) >= 0 && hit.iSubItem == kLinkColumn) {
            SetCursor(LoadCursorW(nullptr, IDC_HAND));
            return TRUE;
        }
    }
    if (message == WM_KEYDOWN && w == VK_TAB) {
        const std::size_t step = GetKeyState(VK_SHIFT) < 0 ? 2 : 1;
        SetFocus(order[(at + step) % order.size()]);
        return 0;
    }
    if (message == WM_CHAR && w == L'\t') return 0;
    return CallWindowProcW(frame.control_procedures_[at], window, message, w, l);
}

}  // namespace demovex::host
