// Pictures of the real basket window in the states a user meets it in, as BMP files for people to
// look at (scripts/pictures.sh makes PNG files of them).
//
//   basket_pictures FOLDER PREFIX
//   basket_pictures contrast        changes the system's colours to white and green on black for
//                                   the programs that start afterwards
//
// The resolution is the system's. Ends with 1 and says what is missing when a state cannot be
// reached.
#include <windows.h>

#include <cstdio>
#include <string>
#include <vector>

#include "basket/state.h"
#include "basket/window/handles_win.h"
#include "tests/support/test_basket_window_win.h"
#include "tests/support/window_picture_win.h"

namespace demovex {
namespace {

// Nothing of a window's look is left to the fixture's few articles.
const std::vector<TestArticle>& Articles() {
    static const std::vector<TestArticle> articles = {
        {"1100", "Aktenvernichter Büro-Öko 12", "4890"},
        {"1203", "Bleistift HB, sechseckig", "3,50"},
        {"1310", "Drehstuhl »Größe 3« drehbar", "12345,60"},
        {"2050", "Füllhalter für Linkshänder", "459,90"},
        {"2051", "Tintenpatronen königsblau 6 St", "28,40"},
        {"3300", "Heftgerät groß, für 50 Blatt", "319"},
        {"4001", "Kopierpapier A4 holzfrei 80g", "64,80"},
        {"4711", "Ölkreide 12 Farben, ungiftig", "112"},
        {"5200", "Tresor mit Zahlenschloß", "123456,78"},
        {"6010", "Überschuhe grün, Größe 42/43", "86,50"},
        {"7000", "Kostenlose Beilage", "0"},
        {"8080", "Wandkalender mit Fenster", "97,20"},
    };
    return articles;
}

// The article file holds characters of the ANSI code page; these sources are UTF-8.
std::string ToAnsi(const std::string& text) {
    std::wstring wide(text.size(), L'\0');
    wide.resize(static_cast<std::size_t>(
        MultiByteToWideChar(CP_UTF8, 0, text.data(), static_cast<int>(text.size()), wide.data(),
                            static_cast<int>(wide.size()))));
    std::string ansi(wide.size(), '\0');
    WideCharToMultiByte(1252, 0, wide.data(), static_cast<int>(wide.size()), ansi.data(),
                        static_cast<int>(ansi.size()), nullptr, nullptr);
    return ansi;
}

void SetHighContrast() {
    constexpr COLORREF kBlack = RGB(0, 0, 0);
    constexpr COLORREF kWhite = RGB(255, 255, 255);
    constexpr COLORREF kYellow = RGB(255, 255, 0);
    constexpr COLORREF kGreen = RGB(0, 255, 0);
    const std::vector<std::pair<int, COLORREF>> scheme = {
        {COLOR_SCROLLBAR, kBlack},
        {COLOR_BACKGROUND, kBlack},
        {COLOR_ACTIVECAPTION, kBlack},
        {COLOR_CAPTIONTEXT, kWhite},
        {COLOR_INACTIVECAPTION, kBlack},
        {COLOR_INACTIVECAPTIONTEXT, kGreen},
        {COLOR_MENU, kBlack},
        {COLOR_MENUBAR, kBlack},
        {COLOR_MENUTEXT, kWhite},
        {COLOR_MENUHILIGHT, kGreen},
        {COLOR_WINDOW, kBlack},
        {COLOR_WINDOWFRAME, kWhite},
        {COLOR_WINDOWTEXT, kWhite},
        {COLOR_ACTIVEBORDER, kYellow},
        {COLOR_INACTIVEBORDER, kWhite},
        {COLOR_APPWORKSPACE, kBlack},
        {COLOR_HIGHLIGHT, kGreen},
        {COLOR_HIGHLIGHTTEXT, kBlack},
        {COLOR_BTNFACE, kBlack},
        {COLOR_BTNSHADOW, RGB(128, 128, 128)},
        {COLOR_GRAYTEXT, kGreen},
        {COLOR_BTNTEXT, kWhite},
        {COLOR_BTNHIGHLIGHT, RGB(192, 192, 192)},
        {COLOR_3DDKSHADOW, kWhite},
        {COLOR_3DLIGHT, kWhite},
        {COLOR_INFOTEXT, kYellow},
        {COLOR_INFOBK, kBlack},
        {COLOR_HOTLIGHT, kYellow},
        {COLOR_GRADIENTACTIVECAPTION, kBlack},
        {COLOR_GRADIENTINACTIVECAPTION, kBlack},
    };
    std::vector<int> elements;
    std::vector<COLORREF> colours;
    for (const auto& [element, colour] : scheme) {
        elements.push_back(element);
        colours.push_back(colour);
    }
    SetSysColors(static_cast<int>(elements.size()), elements.data(), colours.data());
}

class Photographer {
  public:
    Photographer(std::string folder, std::string prefix)
        : folder_(std::move(folder)), prefix_(std::move(prefix)) {}

    void Take(const std::string& name, HWND window) {
        PumpUntilPainted(window);
        GdiFlush();
        const std::string path = folder_ + "\\" + prefix_ + "-" + name + ".bmp";
        if (!WindowPicture::OfScreen(window).Save(path)) Miss(name + ": cannot be written");
    }
    void Miss(const std::string& what) {
        std::printf("%s\n", what.c_str());
        missed_ = true;
    }
    bool Missed() const { return missed_; }

  private:
    std::string folder_;
    std::string prefix_;
    bool missed_ = false;
};

// Takes a picture while a menu is open, which has a loop of its own, and closes it.
class MenuPicture {
  public:
    MenuPicture(Photographer& photographer, std::string name, HWND window)
        : photographer_(photographer), name_(std::move(name)), window_(window) {
        current_ = this;
        timer_ = SetTimer(nullptr, 0, 20, &MenuPicture::Look);
    }
    ~MenuPicture() {
        KillTimer(nullptr, timer_);
        current_ = nullptr;
        if (!taken_) photographer_.Miss(name_ + ": no menu opened");
    }
    bool Taken() const { return taken_; }

  private:
    static void CALLBACK Look(HWND, UINT, UINT_PTR, DWORD) {
        HWND popup = FindWindowW(L"#32768", nullptr);
        if (popup == nullptr || !IsWindowVisible(popup) || current_ == nullptr) return;
        if (current_->taken_) return;
        current_->taken_ = true;
        UpdateWindow(popup);
        current_->photographer_.Take(current_->name_, current_->window_);
        EndMenu();
    }
    static inline MenuPicture* current_ = nullptr;
    Photographer& photographer_;
    std::string name_;
    HWND window_;
    bool taken_ = false;
    UINT_PTR timer_;
};

// A basket with the articles of the pictures, in a window of the usual width.
class Scene : public BasketWindowFixture {
  public:
    Scene() : BasketWindowFixture(HostLoop::kBare, 0, false) {
        files.Put(std::wstring(kFolder) + L"\\artikel.db", ArticleFile([] {
                      std::vector<TestArticle> ansi = Articles();
                      for (TestArticle& article : ansi) {
                          article.bezeichnung = ToAnsi(article.bezeichnung);
                      }
                      return ansi;
                  }()));
        window->Initialize();
        window->Show();
        SetCursorPos(0, 0);
        PumpUntil([this] { return GetActiveWindow() == Handle(); });
        Lower(460);
    }
    void Lower(int height) {
        RECT rect{};
        GetWindowRect(Handle(), &rect);
        HDC screen = GetDC(nullptr);
        const int dpi = GetDeviceCaps(screen, LOGPIXELSX);
        ReleaseDC(nullptr, screen);
        SetWindowPos(Handle(), nullptr, 0, 0, rect.right - rect.left, height * dpi / 96,
                     SWP_NOMOVE | SWP_NOZORDER);
        Pump();
    }
    void Fill() {
        bool info = false;
        int quantity = 1;
        for (const TestArticle& article : Articles()) {
            window->Form()->AddArtikel(std::wstring(article.nr.begin(), article.nr.end()),
                                       L"Bürobedarf / Seite 12", L"vex:12", info, quantity, true);
            quantity = quantity * 7 % 120;
        }
        Link(L"");
        Type(L"Geschenkkarton für Gläser");
        Select(3, column::kPreisAts);
    }
    void Select(std::int32_t row, std::int32_t col) { Select(row, col, row, col); }
    void Select(std::int32_t row, std::int32_t col, std::int32_t row2, std::int32_t col2) {
        Grid().Select(row, col, row2, col2);
        Pump();
    }
};

int TakeAll(Photographer& photographer) {
    {
        Scene basket;
        photographer.Take("empty", basket.Handle());
    }
    Scene basket;
    basket.Fill();
    basket.Link(L"6010", L"Bürobedarf / Seite 12", L"vex:12");
    photographer.Take("filled", basket.Handle());

    basket.Select(4, column::kMenge, 7, column::kGesamtAts);
    photographer.Take("selection", basket.Handle());

    basket.Select(3, column::kPreisAts);
    basket.window->View().ShowNote(L"Rückgängig: 3 Zeilen gelöscht");
    photographer.Take("note", basket.Handle());
    basket.window->View().ShowNote(
        L"Zeile 4: Artikel 9999 steht nicht im Artikelstamm, Zeile 7: Artikel 12345678 steht nicht "
        L"im "
        L"Artikelstamm, und so geht es noch eine ganze Weile weiter");
    photographer.Take("note-long", basket.Handle());
    basket.window->View().ShowNote({});

    basket.Select(8, column::kMenge);
    if (!basket.EditorOpen()) photographer.Miss("editing: no editor");
    photographer.Take("editing", basket.Handle());
    basket.Select(13, column::kBezeichnung);
    if (!basket.EditorOpen()) photographer.Miss("editing-text: no editor");
    basket.Press(VK_END);
    photographer.Take("editing-text", basket.Handle());
    basket.Select(13, column::kArtNr);
    photographer.Take("editing-number", basket.Handle());

    basket.Select(3, column::kPreisAts);
    const std::pair<const char*, WORD> menus[] = {
        {"menu-datei", 'D'}, {"menu-bearbeiten", 'B'}, {"menu-ansicht", 'A'}};
    for (const auto& [name, letter] : menus) {
        MenuPicture picture(photographer, name, basket.Handle());
        basket.PressAtOnce({{VK_MENU, true}, {letter, true}, {letter, false}, {VK_MENU, false}});
        PumpUntil([&] { return picture.Taken(); });
        basket.Pump();
    }
    {
        MenuPicture picture(photographer, "menu-context", basket.Handle());
        basket.PressAtOnce({{VK_APPS, true}, {VK_APPS, false}});
        PumpUntil([&] { return picture.Taken(); });
        basket.Pump();
    }

    HWND bar = basket.Child(child_id::kToolbar);
    RECT button{};
    SendMessageW(bar, TB_GETITEMRECT, 11, reinterpret_cast<LPARAM>(&button));
    POINT at{(button.left + button.right) / 2, (button.top + button.bottom) / 2};
    ClientToScreen(bar, &at);
    SetCursorPos(at.x, at.y);
    const auto tips = reinterpret_cast<HWND>(SendMessageW(bar, TB_GETTOOLTIPS, 0, 0));
    if (!PumpUntil([&] { return IsWindowVisible(tips) != 0; })) photographer.Miss("tip: none");
    PumpUntilPainted(tips);
    photographer.Take("tip", basket.Handle());
    SetCursorPos(0, 0);
    PumpUntil(
        [&] { return IsWindowVisible(tips) == 0 && SendMessageW(bar, TB_GETHOTITEM, 0, 0) < 0; });

    const auto for_each_button = [&](WPARAM message, bool on) {
        for (int i = 0; i < static_cast<int>(ToolbarTable().size()); ++i) {
            if (ToolbarTable()[static_cast<std::size_t>(i)].key.empty()) continue;
            SendMessageW(bar, message, static_cast<WPARAM>(child_id::kFirstButton + i),
                         MAKELPARAM(on, 0));
        }
    };
    for_each_button(TB_ENABLEBUTTON, false);
    for (const int i : {0, 2, 7, 12}) {
        SendMessageW(bar, TB_ENABLEBUTTON, static_cast<WPARAM>(child_id::kFirstButton + i),
                     MAKELPARAM(TRUE, 0));
    }
    photographer.Take("disabled", basket.Handle());
    for_each_button(TB_ENABLEBUTTON, true);

    SetWindowPos(basket.Handle(), nullptr, 0, 0, 1, 1, SWP_NOMOVE | SWP_NOZORDER);
    basket.Pump();
    photographer.Take("smallest", basket.Handle());
    return photographer.Missed() ? 1 : 0;
}

}  // namespace
}  // namespace demovex

int main(int argc, char** argv) {
    const std::string first = argc > 1 ? argv[1] : "";
    if (argc == 2 && first == "contrast") {
        demovex::SetHighContrast();
        return 0;
    }
    if (argc != 3) {
        std::printf("basket_pictures FOLDER PREFIX | contrast\n");
        return 2;
    }
    SetProcessDPIAware();
    demovex::Photographer photographer(first, argv[2]);
    return demovex::TakeAll(photographer);
}
