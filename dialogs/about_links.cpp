#include "dialogs/about_links.h"

#include <algorithm>
#include <cstddef>
#include <utility>

#include "base/error.h"

namespace demovex {
namespace {

constexpr std::wstring_view kOpening = L"<A HREF=\"";
constexpr std::wstring_view kEndOfAddress = L"\">";
constexpr std::wstring_view kClosing = L"</A>";

// Text by positions that count from 1, where 0 is "not found": the rules below are stated in them.
std::size_t Find(std::size_t start, const std::wstring& text, std::wstring_view what) {
    if (start == 0) RaiseRuntimeError(runtime_error::kInvalidProcedureCall);
    const std::size_t at = text.find(what, start - 1);
    return at == std::wstring::npos ? 0 : at + 1;
}

// The characters from `first` up to `last`; a range that ends more than one before it begins is an
// error.
std::wstring_view Range(const std::wstring& text, std::size_t first, std::size_t last) {
    if (last + 1 < first) RaiseRuntimeError(runtime_error::kInvalidProcedureCall);
    return std::wstring_view(text).substr(first - 1, last + 1 - first);
}

}  // namespace

AboutLinks ParseLinks(std::wstring_view text, const AboutOrigin& origin, ITextMeasure& measure) {
    AboutLinks result;
    std::wstring s(text);
    std::size_t from = 1;
    for (;;) {
        const std::size_t p = Find(from, s, kOpening);
        if (p == 0) break;
        const auto line_feeds =
            std::count(s.begin(), s.begin() + static_cast<std::ptrdiff_t>(p), L'\n');
        const std::size_t last_feed = s.rfind(L'\n', p - 1) + 1;  // npos + 1 is 0: none
        const std::size_t col = p - last_feed;

        const std::size_t q = Find(p, s, kEndOfAddress);
        const std::size_t e = Find(q, s, kClosing);
        LinkLabel label;
        label.Tag = Range(s, p + kOpening.size(), q - 1);
        if (e == 0) RaiseRuntimeError(runtime_error::kInvalidProcedureCall);
        label.caption = Range(s, q + kEndOfAddress.size(), e - 1);

        // measured from the line's second character; a link at the line's start has nothing before
        const std::wstring_view before =
            col < 2 ? std::wstring_view() : Range(s, p - col + 2, p - 1);
        label.left = origin.left + measure.TextWidth(before);
        label.top = origin.top + static_cast<int>(line_feeds) * kAboutLineHeight;
        label.width = measure.TextWidth(label.caption);
        label.height = measure.TextHeight(label.caption);

        s.replace(p - 1, e + kClosing.size() - p, label.caption);
        result.links.push_back(std::move(label));
        // the next opening can begin before p only where it reaches into the text just put in
        from = p > kOpening.size() ? p - kOpening.size() : 1;
    }
    result.caption = std::move(s);
    return result;
}

void OpenLink(std::wstring_view address, IShell& shell, IMessageBox& messages) {
    if (shell.Open(address) > 32) return;
    std::wstring text = L"Die WebSite '";
    text += address;
    text +=
        L"' konnte nicht geöffnet werden. Versuchen Sie bitte die Website direkt in Ihrem "
        L"Webbrowser zu öffnen.";
    messages.Show(text, L"Fehler beim Öffnen", MessageButtons::kOk, MessageIcon::kNone);
}

}  // namespace demovex
