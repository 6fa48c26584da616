// A real FlexGridControl in a parent window, for tests: filled like a basket, with its events
// recorded.
#pragma once

#include <windows.h>

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "grid/flex_grid_control_win.h"
#include "tests/support/fake_text_service.h"
#include "tests/support/grid_event_log.h"
#include "tests/support/message_pump_win.h"

namespace demovex {

class GridMouseLog : public IFlexGridControlEvents {
  public:
    void MouseUp(int button, int shift, Twips x, Twips y) override {
        log.push_back("MouseUp(" + std::to_string(button) + "," + std::to_string(shift) + "," +
                      std::to_string(x) + "," + std::to_string(y) + ")");
    }
    void DblClick() override { log.push_back("DblClick"); }
    bool KeyPressed(int key, int shift) override {
        log.push_back("Key(" + std::to_string(key) + "," + std::to_string(shift) + ")");
        return true;
    }
    bool CharacterTyped(wchar_t character) override {
        log.push_back("Char(" + std::to_string(static_cast<int>(character)) + ")");
        return true;
    }
    // Counted only: where the cell was by then is what matters.
    void UserActed() override {
        ++acts;
        if (on_act) on_act();
    }
    void Failed(const CaughtError& error) noexcept override {
        log.push_back("Failed(" + std::to_string(error.number) + ")");
    }
    std::string Take() {
        std::string all;
        for (const std::string& event : log) all += (all.empty() ? "" : " ") + event;
        log.clear();
        return all;
    }
    std::vector<std::string> log;
    int acts = 0;
    std::function<void()> on_act;
};

class GridWindow {
  public:
    // A parent of 700 x 420 pixels at (40, 30) of the screen with the grid at (10, 20) in it.
    explicit GridWindow(int dpi = 96, TwipsRect place = {150, 300, 9600, 4800})
        : scale(dpi), parent_(CreateParent()) {
        control = std::make_unique<FlexGridControl>(GetModuleHandleW(nullptr), parent_, 7, place,
                                                    scale, text_);
        log = std::make_unique<GridEventLog>(control->Grid());
    }
    ~GridWindow() {
        control.reset();
        if (IsWindow(parent_)) DestroyWindow(parent_);
        PumpMessages();
    }
    GridWindow(const GridWindow&) = delete;
    GridWindow& operator=(const GridWindow&) = delete;

    FlexGrid& Grid() { return control->Grid(); }
    HWND Handle() const { return control->Handle(); }
    HWND Parent() const { return parent_; }
    LRESULT Send(UINT message, WPARAM wparam = 0, LPARAM lparam = 0) const {
        return SendMessageW(Handle(), message, wparam, lparam);
    }
    // Mouse messages at a pixel of the client area.
    void Mouse(UINT message, int x, int y, WPARAM keys = 0) const {
        Send(message, keys, MAKELPARAM(x, y));
    }
    void Listen() {
        control->Grid().SetEvents(log.get());
        control->SetEvents(&mouse);
        log->Take();
    }

    // `lines` order lines between header and totals row, as the basket lays them out.
    void FillBasket(int lines) {
        static const wchar_t* const headers[] = {
            L"",           L"ArtNr",   L"Bezeichnung", L"Menge",      L"Preis ATS",
            L"Preis EURO", L"Katalog", L"KatalogURL",  L"Gesamt ATS", L"Ges. EURO"};
        static const Twips widths[] = {400, 1000, 2470, 800, 1085, 1085, 0, 0, 1135, 1135};
        static const wchar_t* const names[] = {L"Druckerpapier A4 weiß", L"Heftklammern 24/6",
                                               L"Schnellhefter grün",    L"Bleistift HB",
                                               L"Ordner breit schwarz",  L"Tintenpatrone cyan"};
        FlexGrid& grid = Grid();
        grid.SetRedraw(false);
        grid.SetRows(lines + 2);
        grid.SetCols(10);
        for (int col = 0; col < 10; ++col) {
            grid.SetTextMatrix(0, col, headers[col]);
            grid.SetCellBold(0, col, true);
            grid.SetColWidth(col, widths[col]);
        }
        for (int row = 1; row <= lines; ++row) {
            const int groschen = 1995 + row * 1234 % 250000;
            const int quantity = row * 7 % 12 + 1;
            grid.SetTextMatrix(row, 0, std::to_wstring(row));
            grid.SetCellBold(row, 0, true);
            grid.SetTextMatrix(row, 1, std::to_wstring(471100 + row));
            grid.SetCellAlign(row, 1, CellAlignment::kLeft);
            grid.SetTextMatrix(row, 2, names[row % 6]);
            grid.SetCellAlign(row, 2, CellAlignment::kLeft);
            grid.SetTextMatrix(row, 3, std::to_wstring(quantity));
            grid.SetTextMatrix(row, 4, text_.FormatAmount(groschen / 100.0));
            grid.SetTextMatrix(row, 5, text_.FormatAmount(groschen / 1376.03));
            grid.SetTextMatrix(row, 6, L"Bürobedarf");
            grid.SetTextMatrix(row, 8, text_.FormatAmount(groschen * quantity / 100.0));
            grid.SetTextMatrix(row, 9, text_.FormatAmount(groschen * quantity / 1376.03));
        }
        const int last = lines + 1;
        grid.SetTextMatrix(last, 2, L"Gesamt");
        grid.SetTextMatrix(last, 8, text_.FormatAmount(123456.78));
        grid.SetTextMatrix(last, 9, text_.FormatAmount(8971.95));
        for (const int col : {2, 8, 9}) grid.SetCellBold(last, col, true);
        grid.SetRedraw(true);
    }

    Scale scale;
    std::unique_ptr<FlexGridControl> control;
    std::unique_ptr<GridEventLog> log;
    GridMouseLog mouse;

  private:
    static HWND CreateParent() {
        WNDCLASSW c{};
        c.lpfnWndProc = DefWindowProcW;
        c.hInstance = GetModuleHandleW(nullptr);
        c.lpszClassName = L"DemoVexTest.Parent";
        c.hbrBackground = GetSysColorBrush(COLOR_BTNFACE);
        c.hCursor = LoadCursorW(nullptr, IDC_ARROW);
        RegisterClassW(&c);  // fails harmlessly the second time
        const HWND parent =
            CreateWindowExW(0, c.lpszClassName, L"Grid", WS_POPUP | WS_VISIBLE | WS_CLIPCHILDREN,
                            40, 30, 1150, 800, nullptr, nullptr, c.hInstance, nullptr);
        SetForegroundWindow(parent);
        return parent;
    }

    FakeTextService text_;
    HWND parent_;
};

}  // namespace demovex
