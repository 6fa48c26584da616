#include "dialogs/about_text.h"

#include <gtest/gtest.h>

#include "dialogs/about_links.h"

namespace demovex {
namespace {

struct PlainMeasure : ITextMeasure {
    int TextWidth(std::wstring_view text) override { return static_cast<int>(text.size()) * 100; }
    int TextHeight(std::wstring_view) override { return 195; }
};

TEST(AboutText, TellsTheVersionAndLinksTheShippedHelpPageAndTheWeb) {
    PlainMeasure measure;
    const AboutLinks parsed =
        ParseLinks(AboutText(L"C:\\Programme\\Vexmart Demo"), {0, 0}, measure);
    ASSERT_EQ(parsed.links.size(), 2u);
    EXPECT_EQ(parsed.links[0].Tag, L"C:\\Programme\\Vexmart Demo\\DemoVexClient.html");
    EXPECT_EQ(parsed.links[0].caption, L"Hilfe zum Warenkorb");
    EXPECT_EQ(parsed.links[1].Tag, L"http://www.vexmart.example/");
    EXPECT_EQ(parsed.caption.find(L"Version " DEMOVEX_VERSION "\r\n"), 0u);
    EXPECT_EQ(parsed.caption.find(L'<'), std::wstring::npos);
}

TEST(AboutText, EveryLinkBeginsItsLine) {
    PlainMeasure measure;
    for (const LinkLabel& link : ParseLinks(AboutText(L"C:\\x"), {0, 0}, measure).links) {
        EXPECT_EQ(link.left, 0);
    }
}

}  // namespace
}  // namespace demovex
