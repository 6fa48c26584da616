// The portable half of the demonstration host: its catalogue and its scripts.
#include <gtest/gtest.h>

#include "host/catalogue.h"
#include "host/script.h"

namespace demovex::host {
namespace {

constexpr char kSample[] =
    "1101\tHolzschraube 3x20\t29\tSchrauben und D\xC3\xBC"
    "bel\r\n"
    "4711\tSchlosserhammer\t159,50\tWerkzeug\n"
    "\n"
    "1102\tHolzschraube 3x30\t33\tSchrauben und D\xC3\xBC"
    "bel\n";

TEST(HostCatalogue, GroupsStandInTheOrderOfTheirFirstArticle) {
    std::size_t skipped = 99;
    const Catalogue catalogue = Catalogue::Parse(kSample, &skipped);
    EXPECT_EQ(skipped, 0u);
    EXPECT_EQ(catalogue.Groups(),
              (std::vector<std::wstring>{L"Schrauben und D\u00FCbel", L"Werkzeug"}));
    EXPECT_EQ(catalogue.InGroup(0), (std::vector<std::size_t>{0, 2}));
    EXPECT_EQ(catalogue.InGroup(1), (std::vector<std::size_t>{1}));
    EXPECT_EQ(catalogue.Articles()[1].schillings, 159.5);
}

TEST(HostCatalogue, LinesThatHoldNoArticleArePassedOverAndCounted) {
    std::size_t skipped = 0;
    const Catalogue catalogue = Catalogue::Parse(
        "nur Text\n1\ta\tkein Preis\tg\n\tohne Nummer\t1\tg\n2\tb\t1\t\n3\tc\t1\tg\textra\n",
        &skipped);
    EXPECT_EQ(skipped, 4u);
    ASSERT_EQ(catalogue.Articles().size(), 1u);
    EXPECT_EQ(catalogue.Articles()[0].number, L"3");
    EXPECT_TRUE(Catalogue::Parse("").Groups().empty());
}

TEST(HostCatalogue, SearchFindsNumbersByTheirBeginningAndDescriptionsByAnyPart) {
    const Catalogue catalogue = Catalogue::Parse(kSample);
    EXPECT_EQ(catalogue.Matching(L"110"), (std::vector<std::size_t>{0, 2}));
    EXPECT_EQ(catalogue.Matching(L"HAMMER"), (std::vector<std::size_t>{1}));
    EXPECT_TRUE(catalogue.Matching(L"711").empty());
    EXPECT_EQ(catalogue.Find(L"4711"), std::optional<std::size_t>(1));
    EXPECT_FALSE(catalogue.Find(L"47110"));
}

TEST(HostCatalogue, EurosAreSchillingsByTheFixedRate) {
    EXPECT_DOUBLE_EQ(Euros(159), 11.55);
    EXPECT_DOUBLE_EQ(Euros(189), 13.74);
    EXPECT_DOUBLE_EQ(Euros(13.7603), 1);
    EXPECT_DOUBLE_EQ(Euros(0), 0);
}

TEST(HostCatalogue, APositionsAddressLeadsBackToItsArticle) {
    EXPECT_EQ(ArticleAt(PositionAddress(L"4711")), L"4711");
    EXPECT_FALSE(ArticleAt(OrderLink(L"4711")));
    EXPECT_FALSE(ArticleAt(L""));
    EXPECT_EQ(OrderLink(L"4711"), L"http://www.vexmart.example/vex/basket.html?prodno=4711");
}

TEST(HostCatalogue, OnlyPlainWebAddressesMayGoToABrowser) {
    for (const wchar_t* web : {L"http://a.example", L"HTTPS://a.example/x?y=1&z=%20#k",
                               L"http://www.vexmart.example/vex/katalog.html?artno=1"}) {
        EXPECT_TRUE(IsWebAddress(web)) << web;
    }
    for (const wchar_t* other :
         {L"", L"http://", L"https://", L"file:///C:/x.exe", L"C:\\x.exe", L"\\\\server\\x.exe",
          L"javascript:alert(1)", L"ms-settings:", L"http:x", L" http://a", L"http://a b",
          L"http://a\nb", L"http://a\"b", L"http://a\\b", L"http://\u00E4.example", L"ftp://a"}) {
        EXPECT_FALSE(IsWebAddress(other)) << other;
    }
    EXPECT_FALSE(IsWebAddress(L"http://" + std::wstring(1'000'000, L'x')));
}

TEST(HostCatalogue, AQuestionShowsAnAddressOnOneShortLine) {
    EXPECT_EQ(ShownAddress(L"http://a.example/x"), L"http://a.example/x");
    EXPECT_EQ(ShownAddress(L"a\r\nb"), L"a  b");
    const std::wstring shown = ShownAddress(L"http://a/" + std::wstring(1'000'000, L'x') + L"end");
    EXPECT_EQ(shown.size(), 185u);
    EXPECT_TRUE(shown.starts_with(L"http://a/x"));
    EXPECT_TRUE(shown.ends_with(L"xend"));
}

TEST(HostCatalogue, Utf8IsReadAndWrittenAndNeverFails) {
    const std::wstring text = L"\u00C4\u20AC z\u2713";
    EXPECT_EQ(FromUtf8(ToUtf8(text)), text);
    EXPECT_EQ(FromUtf8("\xEF\xBB\xBFx"), L"x");
    EXPECT_EQ(ToUtf8(FromUtf8("\xF0\x9F\x9B\x92")), "\xF0\x9F\x9B\x92");
    for (int a = 0; a < 256; ++a) {
        for (int b = 0; b < 256; ++b) {
            const std::string bytes = {static_cast<char>(a), static_cast<char>(b)};
            ASSERT_FALSE(FromUtf8(bytes).empty() && a != 0xEF);
        }
    }
    EXPECT_EQ(FromUtf8("\xC3"), L"\uFFFD");
    EXPECT_EQ(FromUtf8("\xE2\x82"), L"\uFFFD\uFFFD");
}

TEST(HostScripts, OptionsBecomeStepsWithTheirArguments) {
    std::wstring error;
    const auto steps = ParseArguments({L"/follow", L"4711", L"/close", L"/quit"}, error);
    ASSERT_TRUE(steps);
    ASSERT_EQ(steps->size(), 3u);
    EXPECT_EQ((*steps)[0].name, L"follow");
    EXPECT_EQ((*steps)[0].arguments, std::vector<std::wstring>{L"4711"});
    EXPECT_TRUE((*steps)[2].arguments.empty());
}

TEST(HostScripts, UnknownOptionsAndMissingArgumentsAreSaid) {
    std::wstring error;
    EXPECT_FALSE(ParseArguments({L"/nothing"}, error));
    EXPECT_EQ(error, L"unknown option: /nothing");
    EXPECT_FALSE(ParseArguments({L"4711"}, error));
    EXPECT_FALSE(ParseArguments({L""}, error));
    EXPECT_FALSE(ParseArguments({L"/quit", L"/follow"}, error));
    EXPECT_NE(error.find(L"/follow needs NUMBER"), std::wstring::npos);
}

TEST(HostScripts, AScriptHasAStepOnEachLine) {
    std::wstring error;
    const auto steps =
        ParseScript(L"# a comment\r\n\r\nfollow 4711\n  open \"C:\\a b\\c.bsk\"\nquit", error);
    ASSERT_TRUE(steps);
    ASSERT_EQ(steps->size(), 3u);
    EXPECT_EQ((*steps)[1].arguments, std::vector<std::wstring>{L"C:\\a b\\c.bsk"});
    const auto dialogs = ParseScript(L"file-dialog \"für März.bsk\"\ncancel-dialog", error);
    ASSERT_TRUE(dialogs) << "the two steps about file dialogs";
    ASSERT_EQ(dialogs->size(), 2u);
    EXPECT_EQ((*dialogs)[0].arguments, std::vector<std::wstring>{L"für März.bsk"});
    EXPECT_TRUE((*dialogs)[1].arguments.empty());
    EXPECT_FALSE(ParseScript(L"quit\nfollow", error));
    EXPECT_EQ(error.find(L"line 2: "), 0u);
}

TEST(HostScripts, ResultCodesAreReadAsHex) {
    EXPECT_EQ(ParseCode(L"0x800A000D"), 0x800A000Du);
    EXPECT_EQ(ParseCode(L"0xffffffff"), 0xFFFFFFFFu);
    EXPECT_FALSE(ParseCode(L"800A000D"));
    EXPECT_FALSE(ParseCode(L"0x"));
    EXPECT_FALSE(ParseCode(L"0x123456789"));
    EXPECT_FALSE(ParseCode(L"0xG"));
}

TEST(HostScripts, KeysArePressedOneAfterTheOther) {
    using Strokes = std::vector<KeyStroke>;
    EXPECT_EQ(
        ParseKeys(L"Ctrl+N 4"),
        (Strokes{
            {0x11, true}, {'N', true}, {'N', false}, {0x11, false}, {'4', true}, {'4', false}}));
    EXPECT_EQ(ParseKeys(L"Shift+F10"),
              (Strokes{{0x10, true}, {0x79, true}, {0x79, false}, {0x10, false}}));
    EXPECT_EQ(ParseKeys(L"Ctrl+Shift+Home")->size(), 6u);
    for (const wchar_t* wrong :
         {L"", L" ", L"n", L"Strg+N", L"Ctrl", L"Ctrl+", L"+N", L"N+Ctrl", L"F13"}) {
        EXPECT_FALSE(ParseKeys(wrong)) << wrong;
    }
}

}  // namespace
}  // namespace demovex::host
