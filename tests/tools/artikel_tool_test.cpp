#include <gtest/gtest.h>

#include <cstdlib>
#include <set>
#include <stdexcept>

#include "catalog/artikel_stamm.h"
#include "tests/support/fake_text_service.h"
#include "tests/support/one_file.h"
#include "tools/encodings.h"
#include "tools/import.h"
#include "tools/master_file.h"
#include "tools/order_sound.h"
#include "tools/sample_articles.h"

namespace demovex::tools {
namespace {

using Findings = std::vector<std::string>;

std::string MessageOf(void (*f)()) {
    try {
        f();
    } catch (const std::runtime_error& error) {
        return error.what();
    }
    return "nothing was thrown";
}

TEST(SampleArticles, AreManyInOrderAndWithoutDuplicates) {
    std::vector<Article> articles = SampleArticles();
    EXPECT_GE(articles.size(), 2000u);
    SortByNumber(articles);
    EXPECT_EQ(CheckMaster(MakeMaster(articles)), Findings());
    std::set<std::wstring> names;
    for (const Article& article : articles) {
        EXPECT_TRUE(names.insert(article.bezeichnung).second) << ToUtf8(article.bezeichnung);
        EXPECT_FALSE(article.gruppe.empty());
    }
}

TEST(SampleArticles, HavePricesThatReadTheSameInEveryLocale) {
    for (const Article& article : SampleArticles()) {
        for (const FakeLocale locale :
             {FakeLocale::kAustria, FakeLocale::kGermany, FakeLocale::kUnitedStates}) {
            const FakeTextService text(locale);
            const double price = text.ToNumber(article.preis);
            ASSERT_EQ(std::to_wstring(static_cast<long>(price)), article.preis);
            ASSERT_GT(price, 0) << ToUtf8(article.nr);
        }
    }
}

TEST(SampleArticles, AreFoundByTheArticleMaster) {
    std::vector<Article> articles = SampleArticles();
    SortByNumber(articles);
    OneFile files(MakeMaster(articles));
    const FakeTextService text;
    ArtikelStamm master(files, text);
    master.OpenFile(L"artikel.db");
    std::wstring bezeichnung, preis;
    for (const Article& article : articles) {
        ASSERT_TRUE(master.LookUpArtikelNr(article.nr, &bezeichnung, &preis));
        ASSERT_EQ(bezeichnung, article.bezeichnung);
        ASSERT_EQ(preis, article.preis);
    }
    ASSERT_TRUE(master.LookUpArtikelNr(L"4711", &bezeichnung, &preis));
    EXPECT_EQ(bezeichnung, L"Schlosserhammer 300 g Esche");
    EXPECT_TRUE(master.LookUpArtikelNr(L"4712"));
}

TEST(MakeMaster, PadsTheFieldsToALineOf52Characters) {
    EXPECT_EQ(MakeMaster({{L"4711", L"Säge 1 €", L"99", L""}}),
              "4711      S\xE4ge 1 \x80                      99          \r\n");
}

TEST(MakeMaster, RefusesWhatDoesNotFit) {
    EXPECT_EQ(MessageOf([] {
                  MakeMaster({{L"12345678901", L"", L"1", L""}});
              }),
              "article \"12345678901\": \"12345678901\" is longer than 10 characters");
    EXPECT_EQ(MessageOf([] {
                  MakeMaster({{L"1", std::wstring(31, L'x'), L"1", L""}});
              }),
              "article \"1\": \"" + std::string(31, 'x') + "\" is longer than 30 characters");
    EXPECT_EQ(MessageOf([] {
                  MakeMaster({{L"1", L"\u0141", L"1", L""}});
              }),
              "a character that Windows-1252 lacks in \"\xC5\x81\"");
    EXPECT_EQ(MessageOf([] {
                  MakeMaster({{L"1", L"a\nb", L"1", L""}});
              }),
              "article \"1\": a control character in \"a\nb\"");
}

TEST(CheckMaster, NamesWhatIsWrong) {
    const std::string a = MakeMaster({{L"1", L"a", L"1", L""}});
    const std::string b = MakeMaster({{L"2", L"b", L"2", L""}});
    EXPECT_EQ(CheckMaster(a + b), Findings());
    EXPECT_EQ(CheckMaster(""), Findings());
    EXPECT_EQ(CheckMaster(b + a),
              Findings{"record 2: the numbers \"2\" and \"1\" are out of order"});
    EXPECT_EQ(CheckMaster(a + a), Findings{"record 2: the numbers \"1\" and \"1\" are equal"});
    EXPECT_EQ(CheckMaster(a + b.substr(0, 50)),
              Findings{"the file's length is not a multiple of 54 bytes: 50 bytes are left over"});
    EXPECT_EQ(CheckMaster(a.substr(0, 52) + "\n\r"),
              Findings{"record 1: no line break at its end"});
    std::string broken = a;
    broken[20] = '\n';
    EXPECT_EQ(CheckMaster(broken), Findings{"record 1: a line break within it"});
    EXPECT_EQ(CheckMaster(std::string(52, ' ') + "\r\n"),
              (Findings{"record 1: no number", "record 1: no price"}));
    EXPECT_EQ(CheckMaster(MakeMaster({{L"1", L"a", L"abc", L""}})),
              Findings{"record 1: the price \"abc\" is no number"});
    const std::string point = MakeMaster({{L"1", L"a", L"12.50", L""}});
    EXPECT_EQ(CheckMaster(point), Findings{"record 1: the price \"12.50\" is no number"});
    EXPECT_EQ(CheckMaster(point, 20, DecimalSign::kPoint), Findings());
}

TEST(CheckMaster, StopsAfterTheLimitAndSaysSo) {
    std::string bytes;
    for (int i = 30; i > 0; --i) {
        bytes += MakeMaster({{std::to_wstring(i + 100), L"x", L"1", L""}});
    }
    const Findings findings = CheckMaster(bytes, 5);
    ASSERT_EQ(findings.size(), 6u);
    EXPECT_EQ(findings.back(), "and 24 more");
}

TEST(TabSeparated, ComesBackAsItWas) {
    std::vector<Article> articles = SampleArticles();
    const Import import = ImportArticles(ToUtf8(ToTabSeparated(articles)));
    EXPECT_TRUE(import.findings.empty());
    ASSERT_EQ(import.records.size(), articles.size());
    SortByNumber(articles);
    EXPECT_EQ(MasterBytes(import.records), MakeMaster(articles));
}

TEST(TabSeparated, TakesAnyLineEndAndRefusesShortLines) {
    const Import good = ImportArticles("1\ta\t5\n\n2\tb\t6\tgroup\r\n3\tc\t7\r4\td\t8");
    EXPECT_EQ(good.records.size(), 4u);
    EXPECT_TRUE(good.findings.empty());
    const Import bad = ImportArticles("1\ta\t5\r\n2\tb\r\n\tc\t7");
    ASSERT_EQ(bad.findings.size(), 2u);
    EXPECT_EQ(bad.findings[0].line, 2u);
    EXPECT_EQ(bad.findings[0].text, "number, description and price, separated by tabs, are needed");
    EXPECT_EQ(bad.findings[1].line, 3u);
    EXPECT_EQ(bad.findings[1].text, "no number");
}

TEST(Encodings, Windows1252AndUtf8AgreeOnEveryByte) {
    for (int byte = 1; byte < 256; ++byte) {
        const std::string one(1, static_cast<char>(byte));
        const std::wstring text = FromWindows1252(one);
        EXPECT_EQ(FromUtf8(ToUtf8(text)), text) << byte;
        const bool unused =
            byte == 0x81 || byte == 0x8D || byte == 0x8F || byte == 0x90 || byte == 0x9D;
        if (!unused) {
            EXPECT_EQ(ToWindows1252(text), one) << byte;
        }
    }
    EXPECT_EQ(FromUtf8("\xEF\xBB\xBF"
                       "a"),
              L"a");
    EXPECT_EQ(ToUtf8(FromUtf8("\xF0\x9F\x94\xA8")), "\xF0\x9F\x94\xA8");
    EXPECT_EQ(MessageOf([] { FromUtf8("S\xE4ge"); }), "the text is not UTF-8");
    EXPECT_EQ(MessageOf([] { FromUtf8("\xC3"); }), "the text is not UTF-8");
    for (const char* bytes : {"\xC0\xAF", "\xE0\x80\xAF", "\xED\xA0\x80", "\xF0\x80\x80\xAF",
                              "\xF4\x90\x80\x80", "\xFF"}) {
        EXPECT_THROW(FromUtf8(bytes), std::runtime_error) << bytes;
    }
}

TEST(Encodings, AnyFileIsReadByItsMarkOrItsBytes) {
    const auto decoded = [](std::string bytes) {
        const DecodedText text = DecodeText(std::move(bytes));
        return std::string(text.encoding) + ": " + text.utf8;
    };
    EXPECT_EQ(decoded("S\xC3\xA4ge"), "UTF-8: S\xC3\xA4ge");
    EXPECT_EQ(decoded("\xEF\xBB\xBF"
                      "1"),
              "UTF-8: 1");
    EXPECT_EQ(decoded("S\xE4ge \x80"), "ANSI: S\xC3\xA4ge \xE2\x82\xAC");
    EXPECT_EQ(decoded(std::string("\xFF\xFE\xE4\0\x3D\xD8\x28\xDD", 8)),
              "UTF-16: \xC3\xA4\xF0\x9F\x94\xA8");
    EXPECT_EQ(decoded(std::string("\xFE\xFF\0\xE4\xD8\x3D", 6)), "UTF-16: \xC3\xA4\xEF\xBF\xBD");
    EXPECT_EQ(decoded(std::string("1\0;\0a\0", 6)), "UTF-16: 1;a");
    EXPECT_EQ(decoded(std::string("\0"
                                  "1\0;\0a",
                                  6)),
              "UTF-16: 1;a");
    EXPECT_EQ(decoded(""), "UTF-8: ");
}

TEST(Encodings, ACharacterThatTheMasterLacksBecomesAQuestionMark) {
    std::string bytes;
    EXPECT_TRUE(Utf8ToWindows1252("S\xC3\xA4ge \xE2\x82\xAC", bytes));
    EXPECT_EQ(bytes, "S\xE4ge \x80");
    EXPECT_FALSE(Utf8ToWindows1252("\xC5\x81\xF0\x9F\x94\xA8!", bytes));
    EXPECT_EQ(bytes, "?\?!");
}

TEST(OrderSound, IsAShortMonoWaveThatNeitherClipsNorClicks) {
    const std::string wav = OrderSound();
    const auto number = [&](std::size_t at, int bytes) {
        int value = 0;
        for (int i = 0; i < bytes; ++i) {
            value |= static_cast<unsigned char>(wav[at + static_cast<std::size_t>(i)]) << (8 * i);
        }
        return value;
    };
    EXPECT_EQ(wav.substr(0, 4) + wav.substr(8, 8), "RIFFWAVEfmt ");
    EXPECT_EQ(number(4, 4), static_cast<int>(wav.size()) - 8);
    EXPECT_EQ(number(22, 2), 1);
    EXPECT_EQ(number(24, 4), 22050);
    EXPECT_EQ(number(34, 2), 16);
    ASSERT_EQ(number(40, 4), static_cast<int>(wav.size()) - 44);
    int loudest = 0;
    for (std::size_t at = 44; at + 1 < wav.size(); at += 2) {
        loudest = std::max(loudest, std::abs(static_cast<std::int16_t>(number(at, 2))));
    }
    EXPECT_GT(loudest, 8000);
    EXPECT_LT(loudest, 32000);
    EXPECT_LT(std::abs(static_cast<std::int16_t>(number(44, 2))), 200);
    EXPECT_LT(std::abs(static_cast<std::int16_t>(number(wav.size() - 2, 2))), 200);
}

}  // namespace
}  // namespace demovex::tools
