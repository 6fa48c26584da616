#include "dialogs/about_text.h"

namespace demovex {
namespace {

std::wstring Link(std::wstring_view address, std::wstring_view text) {
    std::wstring link = L"<A HREF=\"";
    link += address;
    link += L"\">";
    link += text;
    return link + L"</A>";
}

}  // namespace

std::wstring AboutText(std::wstring_view component_folder) {
    const std::wstring help_page = std::wstring(component_folder) + L"\\" + kHelpPage;
    std::wstring text = L"Version " DEMOVEX_VERSION "\r\n\r\n";
    text += L"Sammelt Artikel aus dem Katalog zu einer Bestellung,\r\n";
    text += L"mit Preisen in Schilling und Euro.\r\n\r\n";
    text += Link(help_page, L"Hilfe zum Warenkorb") + L"\r\n";
    text += Link(kAboutWebAddress, L"www.vexmart.example");
    return text;
}

}  // namespace demovex
