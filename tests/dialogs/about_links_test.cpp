#include "dialogs/about_links.h"

#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

#include "base/error.h"

namespace demovex {
namespace {

// 100 twips a character, 210 the height.
struct PlainMeasure : ITextMeasure {
    std::vector<std::wstring> measured;
    int TextWidth(std::wstring_view text) override {
        measured.emplace_back(text);
        return static_cast<int>(text.size()) * 100;
    }
    int TextHeight(std::wstring_view) override { return 210; }
};

AboutLinks Parse(std::wstring_view text) {
    PlainMeasure measure;
    return ParseLinks(text, {1000, 2000}, measure);
}

int ErrorOf(std::wstring_view text) {
    try {
        Parse(text);
    } catch (const Error& error) {
        return error.number();
    }
    return 0;
}

std::wstring Link(std::wstring_view address, std::wstring_view text) {
    return L"<A HREF=\"" + std::wstring(address) + L"\">" + std::wstring(text) + L"</A>";
}

TEST(AboutLinks, ATextWithoutLinksIsUnchangedAndHasNoLabels) {
    for (const wchar_t* text : {L"", L"Nur Text\r\nund noch eine Zeile", L"<A HREF=x>y</A>"}) {
        const AboutLinks parsed = Parse(text);
        EXPECT_TRUE(parsed.links.empty());
        EXPECT_EQ(parsed.caption, text);
    }
}

TEST(AboutLinks, ALinkGivesItsTextItsAddressAndALabelOfItsSize) {
    const AboutLinks parsed = Parse(L"Web: " + Link(L"http://www.vexmart.example/", L"Seite"));
    ASSERT_EQ(parsed.links.size(), 1u);
    EXPECT_EQ(parsed.caption, L"Web: Seite");
    EXPECT_EQ(parsed.links[0].Tag, L"http://www.vexmart.example/");
    EXPECT_EQ(parsed.links[0].caption, L"Seite");
    EXPECT_EQ(parsed.links[0].width, 500);
    EXPECT_EQ(parsed.links[0].height, 210);
    EXPECT_EQ(parsed.links[0].top, 2000);
}

TEST(AboutLinks, TheTextBeforeTheLinkIsMeasuredFromTheLinesSecondCharacter) {
    PlainMeasure measure;
    const AboutLinks parsed = ParseLinks(L"eins\r\nabc " + Link(L"u", L"t"), {1000, 2000}, measure);
    EXPECT_EQ(measure.measured.at(0), L"bc ");
    EXPECT_EQ(parsed.links.at(0).left, 1300);
    EXPECT_EQ(parsed.links.at(0).top, 2195);
}

TEST(AboutLinks, ALinkAtTheStartOfALineLiesAtTheTextsLeftEdge) {
    EXPECT_EQ(Parse(Link(L"u", L"t")).links.at(0).left, 1000);
    EXPECT_EQ(Parse(L"x" + Link(L"u", L"t")).links.at(0).left, 1000);
    EXPECT_EQ(Parse(L"abc\r\n" + Link(L"u", L"t")).links.at(0).left, 1000);
}

TEST(AboutLinks, ALinkOnTheThirdLineLiesTwoLineHeightsDown) {
    const AboutLinks parsed = Parse(L"eins\r\nzwei\r\ndrei " + Link(L"u", L"t"));
    EXPECT_EQ(parsed.links.at(0).top, 2000 + 2 * 195);
    EXPECT_EQ(parsed.caption, L"eins\r\nzwei\r\ndrei t");
}

TEST(AboutLinks, TwoLinksOnALineLieSideBySideWithTheFirstAlreadyReplaced) {
    const AboutLinks parsed = Parse(L"a " + Link(L"u1", L"eins") + L" b " + Link(L"u2", L"zwei"));
    ASSERT_EQ(parsed.links.size(), 2u);
    EXPECT_EQ(parsed.links[0].top, parsed.links[1].top);
    // "eins b " stands between the two left edges
    EXPECT_EQ(parsed.links[1].left - parsed.links[0].left, 700);
    EXPECT_EQ(parsed.links[0].Tag, L"u1");
    EXPECT_EQ(parsed.links[1].Tag, L"u2");
    EXPECT_EQ(parsed.caption, L"a eins b zwei");
}

TEST(AboutLinks, OtherSpellingsStayVisibleAsPlainText) {
    const std::wstring texts[] = {
        L"<a href=\"u\">t</a>", L"<A  HREF=\"u\">t</A>",
        L"<A HREF='u'>t</A>",   L"<A CLASS=\"c\" HREF=\"u\">t</A>",
        L"<A HREF=u>t</A>",
    };
    for (const std::wstring& text : texts) {
        EXPECT_TRUE(Parse(text).links.empty());
        EXPECT_EQ(Parse(text).caption, text);
    }
}

TEST(AboutLinks, ALowerCaseEndDoesNotClose) {
    EXPECT_EQ(ErrorOf(L"<A HREF=\"u\">t</a>"), 5);
    EXPECT_EQ(Parse(L"<A HREF=\"u\">t</a></A>").links.at(0).caption, L"t</a>");
}

TEST(AboutLinks, EmptyAddressAndEmptyTextAreLinksToo) {
    const AboutLinks parsed = Parse(L"ab" + Link(L"", L"") + L"cd");
    ASSERT_EQ(parsed.links.size(), 1u);
    EXPECT_EQ(parsed.links[0].Tag, L"");
    EXPECT_EQ(parsed.links[0].width, 0);
    EXPECT_EQ(parsed.caption, L"abcd");
}

TEST(AboutLinks, UnfinishedMarkupRaisesFive) {
    EXPECT_EQ(ErrorOf(L"<A HREF=\""), 5);
    EXPECT_EQ(ErrorOf(L"<A HREF=\"http://x"), 5);
    EXPECT_EQ(ErrorOf(L"<A HREF=\"http://x\""), 5);
    EXPECT_EQ(ErrorOf(L"<A HREF=\"http://x\">text"), 5);
    EXPECT_EQ(ErrorOf(L"<A HREF=\">text</A>"), 5);  // its own quote closes: negative length
    EXPECT_EQ(ErrorOf(L"</A><A HREF=\"http://x\">text"), 5);  // only an earlier end
    EXPECT_EQ(ErrorOf(Link(L"u", L"t") + L"<A HREF=\"v\">"), 5);
}

TEST(AboutLinks, AnUnclosedQuoteRunsOnToTheNextOne) {
    const AboutLinks parsed = Parse(L"<A HREF=\"u>t</A> <A HREF=\"v\">w</A>");
    ASSERT_EQ(parsed.links.size(), 1u);
    EXPECT_EQ(parsed.links[0].Tag, L"u>t</A> <A HREF=\"v");
    EXPECT_EQ(parsed.caption, L"w");
}

TEST(AboutLinks, MarkupThatAppearsByReplacingIsALinkAgain) {
    const AboutLinks nested = Parse(L"<A HREF=\"u\"><A HREF=\"v\">t</A></A>");
    ASSERT_EQ(nested.links.size(), 2u);
    EXPECT_EQ(nested.links[1].Tag, L"v");
    EXPECT_EQ(nested.caption, L"t");
    // the beginning of the second opening stands before the first link
    const AboutLinks joined = Parse(L"ab<A HR" + Link(L"u", L"EF=\"v\">t") + L"</A>");
    ASSERT_EQ(joined.links.size(), 2u);
    EXPECT_EQ(joined.links[1].Tag, L"v");
    EXPECT_EQ(joined.caption, L"abt");
}

// The rules once more, written down plainly: search from the start each time, positions from 1.
AboutLinks ParsePlainly(std::wstring s) {
    PlainMeasure measure;
    AboutLinks result;
    const auto mid = [](const std::wstring& text, long start, long length) {
        if (length < 0 || start < 1) RaiseRuntimeError(5);
        if (start > static_cast<long>(text.size())) return std::wstring();
        return text.substr(static_cast<std::size_t>(start - 1), static_cast<std::size_t>(length));
    };
    const auto find = [](long start, const std::wstring& text, const wchar_t* what) -> long {
        if (start < 1) RaiseRuntimeError(5);
        const auto at = text.find(what, static_cast<std::size_t>(start - 1));
        return at == std::wstring::npos ? 0 : static_cast<long>(at) + 1;
    };
    for (;;) {
        const long p = find(1, s, L"<A HREF=\"");
        if (p == 0) break;
        int line = 1;
        long col = 0;
        for (long i = 1; i <= p; ++i) {
            ++col;
            if (s[static_cast<std::size_t>(i - 1)] == L'\n') {
                ++line;
                col = 0;
            }
        }
        const long q = find(p, s, L"\">");
        const long e = find(q, s, L"</A>");
        LinkLabel label;
        label.Tag = mid(s, p + 9, q - (p + 9));
        label.caption = mid(s, q + 2, e - (q + 2));
        label.left = 1000 + (col < 2 ? 0 : measure.TextWidth(mid(s, p - col + 2, col - 2)));
        label.top = 2000 + (line - 1) * 195;
        result.links.push_back(label);
        s = mid(s, 1, p - 1) + label.caption + mid(s, e + 4, static_cast<long>(s.size()));
    }
    result.caption = s;
    return result;
}

TEST(AboutLinks, RandomMarkupFollowsThePlainRulesAndAlwaysEnds) {
    const std::wstring pieces[] = {L"<A HREF=\"", L"\">", L"</A>", L"\"", L">",    L"<",
                                   L"<A HR",      L"EF=", L"x",    L" ",  L"\r\n", L"\n",
                                   L"u",          L"/A>", L"ü",    L""};
    std::mt19937 random(31);
    int raised = 0;
    int links = 0;
    for (int round = 0; round < 20000; ++round) {
        std::wstring text;
        const auto length = random() % 24;
        for (unsigned i = 0; i < length; ++i) text += pieces[random() % std::size(pieces)];
        AboutLinks expected;
        int expected_error = 0;
        try {
            expected = ParsePlainly(text);
        } catch (const Error& error) {
            expected_error = error.number();
        }
        ASSERT_EQ(ErrorOf(text), expected_error);
        if (expected_error != 0) {
            ++raised;
            continue;
        }
        const AboutLinks parsed = Parse(text);
        ASSERT_EQ(parsed.caption, expected.caption);
        ASSERT_EQ(parsed.links.size(), expected.links.size());
        for (std::size_t i = 0; i < parsed.links.size(); ++i) {
            ASSERT_EQ(parsed.links[i].Tag, expected.links[i].Tag);
            ASSERT_EQ(parsed.links[i].caption, expected.links[i].caption);
            ASSERT_EQ(parsed.links[i].left, expected.links[i].left);
            ASSERT_EQ(parsed.links[i].top, expected.links[i].top);
            ++links;
        }
    }
    // the walk met both kinds
    EXPECT_GT(raised, 100);
    EXPECT_GT(links, 100);
}

struct FakeShell : IShell {
    std::vector<std::wstring> opened;
    int result = 33;
    int Open(std::wstring_view address) override {
        opened.emplace_back(address);
        return result;
    }
};
struct FakeBox : IMessageBox {
    std::wstring text, title;
    int shown = 0;
    MessageAnswer Show(std::wstring_view a_text, std::wstring_view a_title, MessageButtons buttons,
                       MessageIcon icon) override {
        text = a_text;
        title = a_title;
        ++shown;
        EXPECT_EQ(buttons, MessageButtons::kOk);
        EXPECT_EQ(icon, MessageIcon::kNone);
        return MessageAnswer::kOk;
    }
};

TEST(OpenLink, OpensTheAddressAndSaysNothing) {
    FakeShell shell;
    FakeBox box;
    OpenLink(L"http://www.vexmart.example/", shell, box);
    EXPECT_EQ(shell.opened, std::vector<std::wstring>{L"http://www.vexmart.example/"});
    EXPECT_EQ(box.shown, 0);
}

TEST(OpenLink, AResultOf32OrLessIsReported) {
    for (const int result : {32, 31, 2, 0, -1}) {
        FakeShell shell;
        shell.result = result;
        FakeBox box;
        OpenLink(L"http://x.example/", shell, box);
        EXPECT_EQ(box.shown, 1);
        EXPECT_EQ(box.title, L"Fehler beim Öffnen");
        EXPECT_EQ(box.text,
                  L"Die WebSite 'http://x.example/' konnte nicht geöffnet werden. Versuchen Sie "
                  L"bitte die Website direkt in Ihrem Webbrowser zu öffnen.");
    }
}

}  // namespace
}  // namespace demovex
