// The host's window: groups on the left, the chosen group's articles with their order links on the
// right, the address of the position shown above them, a search box.
#pragma once

#include <windows.h>

#include <commctrl.h>

#include <array>
#include <string>
#include <vector>

#include "host/catalogue.h"
#include "host/session_win.h"

namespace demovex::host {

class Frame {
  public:
    // Creates the hidden window; null handle when the system refuses. `quiet` suppresses message
    // boxes: failures stand in the status bar alone.
    Frame(HINSTANCE instance, Catalogue catalogue, bool quiet);
    ~Frame();
    Frame(const Frame&) = delete;
    Frame& operator=(const Frame&) = delete;

    HWND Handle() const { return window_; }
    void Show(int show);
    // Ends being quiet.
    void SpeakUp() { quiet_ = false; }

    Session& Plugs() { return session_; }
    const Catalogue& Shown() const { return catalogue_; }

    // Shows an article of the catalogue; false when there is none with that number.
    bool ShowArticle(const std::wstring& number);
    // The number of the selected article; empty when none is.
    std::wstring SelectedArticle() const;
    // Where the order link of the selected article stands on the screen.
    POINT OrderLink() const;
    // The page that was last handed to the browser; while quiet it is only kept here.
    const std::wstring& LastPage() const { return last_page_; }
    // Follows the selected article's order link.
    void OrderSelected();
    void Report(const std::wstring& what, const Outcome& outcome);

  private:
    static LRESULT CALLBACK Procedure(HWND window, UINT message, WPARAM w, LPARAM l) noexcept;
    static LRESULT CALLBACK ControlProcedure(HWND window, UINT message, WPARAM w,
                                             LPARAM l) noexcept;

    // Those that Tab reaches, in its order.
    std::array<HWND, 3> Controls() const;
    LRESULT Handle(UINT message, WPARAM w, LPARAM l);
    void CreateControls();
    void CreateMenus();
    void Layout();
    void Paint();
    LRESULT Notify(const NMHDR& header);
    LRESULT DrawItem(NMLVCUSTOMDRAW& draw) const;
    void FillItem(LVITEMW& item) const;
    void Command(int id, int code);
    void OpenBasket();
    void ShowPosition(const std::wstring& address);
    void ShowGroup(std::size_t group);
    void ShowSearch();
    void ShowRows(std::vector<std::size_t> rows, const std::wstring& heading);
    void SelectionChanged();
    void UpdateStatus();
    int Scale(int pixels) const { return MulDiv(pixels, dpi_, 96); }

    HINSTANCE instance_;
    Catalogue catalogue_;
    bool quiet_;
    Session session_;
    int dpi_ = 96;
    HWND window_ = nullptr;
    HWND tree_ = nullptr;
    HWND list_ = nullptr;
    HWND address_ = nullptr;
    HWND search_ = nullptr;
    HWND status_ = nullptr;
    std::array<WNDPROC, 3> control_procedures_{};  // the controls' own
    HFONT font_ = nullptr;
    HFONT title_font_ = nullptr;
    HFONT link_font_ = nullptr;
    HIMAGELIST row_height_ = nullptr;
    std::wstring heading_;
    std::vector<std::size_t> rows_;
    std::wstring last_page_;
    bool moving_ = false;  // the program itself moves selections
};

}  // namespace demovex::host
