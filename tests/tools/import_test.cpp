#include "tools/import.h"

#include <gtest/gtest.h>

#include "tools/encodings.h"

namespace demovex::tools {
namespace {

using Texts = std::vector<std::string>;

// Every record as "number|description|price".
Texts Records(const Import& import) {
    Texts records;
    for (const ArtikelRecord& r : import.records) {
        records.push_back(ToUtf8(FromWindows1252(std::string(r.TrimmedNr())
                                                     .append("|")
                                                     .append(r.TrimmedBezeichnung())
                                                     .append("|")
                                                     .append(r.TrimmedPreis()))));
    }
    return records;
}

Texts Findings(const Import& import) {
    Texts findings;
    for (const ImportFinding& f : import.findings) {
        findings.push_back(std::to_string(f.line) + ": " + f.text);
    }
    return findings;
}

TEST(ImportArticles, TakesEverySeparatorAndEncodingAlike) {
    const Texts expected = {"4711|S\xC3\xA4ge, fein|159,50", "4712|Hammer|1189"};
    for (const char* text : {"4712;Hammer;1.189\n4711;S\xC3\xA4ge, fein;159,50\n",
                             "4712\tHammer\t1189\r\n4711\tS\xE4ge, fein\t159,5\r\n",
                             "\xEF\xBB\xBF"
                             "4712,\"Hammer\",1189\n4711,\"S\xC3\xA4ge, fein\",\"159,50\""}) {
        const Import import = ImportArticles(text);
        EXPECT_EQ(Records(import), expected) << text;
        EXPECT_EQ(Findings(import), Texts()) << text;
        EXPECT_EQ(import.rows, 2u);
    }
    std::string utf16 = "\xFF\xFE";
    for (const char c : std::string_view("4712;Hammer;1189\n4711;S\xE4ge, fein;159,50")) {
        utf16 += c;
        utf16 += '\0';
    }
    EXPECT_EQ(Records(ImportArticles(utf16)), expected);
}

TEST(ImportArticles, FindsColumnsByTheirNamesInAnyOrder) {
    const Import import =
        ImportArticles("Gruppe;Preis ATS;Lager;Artikel-Nr.;BEZEICHNUNG;\nW;5;3;4711;Hammer;\n");
    EXPECT_TRUE(import.has_names);
    EXPECT_EQ(Records(import), Texts{"4711|Hammer|5"});
    EXPECT_EQ(Findings(import), Texts());
    EXPECT_EQ(import.rows, 1u);
    EXPECT_EQ(Findings(ImportArticles("ArtNr;Preis\n1;2\n")),
              Texts{"1: no column is named \"Bezeichnung\""});
}

TEST(ImportArticles, TakesColumnsByTheirPlaces) {
    ImportOptions options;
    options.columns = {3, 1, 2};
    EXPECT_EQ(Records(ImportArticles("Hammer;5;4711\n", options)), Texts{"4711|Hammer|5"});
    EXPECT_EQ(Records(ImportArticles("Text;Preis;Nr\nHammer;5;4711\n", options)),
              Texts{"4711|Hammer|5"});
}

TEST(ImportArticles, SaysLineByLineWhatItCannotTake) {
    const std::string thirty(30, 'x');
    const Import import = ImportArticles(
        "4711;ok;5\n"
        "12345678901;a;5\n"
        "2;" +
        thirty +
        "y;5\n"
        "3;a;abc\n"
        "4;a;\n"
        "5;\xC5\x81\xC3\xB3"
        "d\xC5\xBA;5\n"
        "\n"
        "4711;again;6\n"
        "6\n"
        ";a;5\n"
        "7;\"two\nlines\";12.50\n"
        "8;a;1234567890,25\n"
        "9;a;5;group;what\n");
    EXPECT_EQ(
        Findings(import),
        (Texts{"2: article \"12345678901\": the number is longer than 10 characters",
               "3: article \"2\": the description \"" + thirty +
                   "y\" is longer than 30 characters (31)",
               "4: article \"3\": the price \"abc\" is no number", "5: article \"4\": no price",
               "6: article \"5\": the description \"\xC5\x81\xC3\xB3"
               "d\xC5\xBA\" has a "
               "character that the article master lacks",
               "8: article \"4711\": the number stands in line 1 already",
               "9: number, description and price, separated by semicolons, are needed",
               "10: no number", "11: article \"7\": the description has a line break",
               "11: article \"7\": the price \"12.50\" is no number with a decimal comma",
               "13: article \"8\": the price \"1234567890,25\" is longer than 12 characters"}));
    EXPECT_EQ(Records(import), (Texts{"4711|ok|5", "9|a|5"}));
    EXPECT_EQ(import.rows, 12u);
    EXPECT_EQ(import.left_out, 10u);
}

TEST(ImportArticles, NumbersThatDifferOnlyInCaseAreOneNumber) {
    EXPECT_EQ(Findings(ImportArticles("10a;x;1\n10A;y;2\n")),
              Texts{"2: article \"10A\": the number stands in line 1 already"});
}

TEST(ImportArticles, ACommaThatMayBeADecimalOneIsNeverTakenForASeparator) {
    EXPECT_EQ(Findings(ImportArticles("4711,Hammer,12,50\n")),
              Texts{"1: more fields than there are columns: 4 instead of 3 (a comma within a field "
                    "needs quotation marks)"});
    EXPECT_EQ(Findings(ImportArticles("Nr,Text,Preis\n4711,Hammer,12,50\n")),
              Texts{"2: more fields than there are columns: 4 instead of 3 (a comma within a field "
                    "needs quotation marks)"});
}

TEST(ImportArticles, LenientTakesWhatKeepsNumberAndPrice) {
    ImportOptions options;
    options.lenient = true;
    const Import import = ImportArticles("1;" + std::string(30, 'x') +
                                             "yz;5\n2;\xC5\x81"
                                             "a;6\n3;\"a\nb\";7\n4;c;abc\n1;d;8\n"
                                             "12345678901;e;9\n",
                                         options);
    EXPECT_EQ(Records(import), (Texts{"1|" + std::string(30, 'x') + "|5", "2|?a|6", "3|a b|7"}));
    EXPECT_EQ(import.findings.size(), 6u);
    EXPECT_EQ(import.left_out, 3u);
}

TEST(ImportArticles, PricesAreWrittenForTheReadersOfTheMaster) {
    ImportOptions options;
    options.list_sign = DecimalSign::kPoint;
    EXPECT_EQ(Records(ImportArticles("1;a;1,234.50\n", options)), Texts{"1|a|1234,50"});
    options.master_sign = DecimalSign::kPoint;
    EXPECT_EQ(Records(ImportArticles("1;a;1,234.50\n", options)), Texts{"1|a|1234.50"});
}

TEST(ImportArticles, TellsHowFarItIs) {
    std::string text;
    for (int i = 0; i < 40'000; ++i) text += std::to_string(i) + ";a;1\n";
    double last = -1;
    int calls = 0;
    ImportOptions options;
    options.progress = [&](const char* work, double share) {
        if (std::string_view(work) != "reading") return;
        EXPECT_GE(share, last);
        last = share;
        ++calls;
    };
    EXPECT_EQ(ImportArticles(text, options).records.size(), 40'000u);
    EXPECT_EQ(last, 1.0);
    EXPECT_GE(calls, 3);
}

}  // namespace
}  // namespace demovex::tools
