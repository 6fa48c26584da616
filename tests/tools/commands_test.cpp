#include "tools/commands.h"

#include <gtest/gtest.h>

#include "tests/support/native_path.h"
#include "tests/support/temp_folder.h"
#include "tools/encodings.h"
#include "tools/master_file.h"

namespace demovex::tools {
namespace {

constexpr char kOldMaster[] =
    "4711      Hammer                        159         \r\n"
    "4712      S\xE4ge                          89          \r\n";

class Commands : public testing::Test {
  protected:
    // Runs the tool; a word that begins with '@' is a file in the folder.
    int Run(std::vector<std::string> words, bool terminal = false) {
        for (std::string& word : words) {
            if (word[0] == '@') word = ToUtf8(folder / FromUtf8(word.substr(1)));
        }
        out.clear();
        err.clear();
        Console console;
        console.out = [this](std::string_view text) { out += text; };
        console.err = [this](std::string_view text) { err += text; };
        console.err_is_terminal = terminal;
        const int code = RunTool(words, console);
        // paths differ from run to run
        const std::string path = ToUtf8(folder / L"");
        for (std::string* text : {&out, &err}) {
            for (std::size_t at; (at = text->find(path)) != std::string::npos;) {
                text->replace(at, path.size(), "@");
            }
        }
        return code;
    }

    TempFolder folder;
    std::string out, err;
};

TEST_F(Commands, HelpIsAnAnswerAndNotAnError) {
    for (const char* word : {"--help", "-h", "help"}) {
        EXPECT_EQ(Run({word}), 0);
        EXPECT_EQ(out.find("usage: artikel_tool COMMAND"), 0u);
        EXPECT_EQ(err, "");
    }
    for (const char* command : {"convert", "update", "check", "list", "find", "sample"}) {
        EXPECT_EQ(Run({command, "--help"}), 0);
        EXPECT_EQ(out.find(std::string("usage: artikel_tool ") + command), 0u);
        const std::string first = out;
        EXPECT_EQ(Run({"help", command}), 0);
        EXPECT_EQ(out, first);
    }
    EXPECT_EQ(Run({"--version"}), 0);
    EXPECT_EQ(out, "artikel_tool " DEMOVEX_VERSION "\n");
}

TEST_F(Commands, AWrongCommandLineIsToldOnTheErrorOutputWithCode2) {
    const std::vector<std::vector<std::string>> kWrong = {{},
                                                          {"bogus"},
                                                          {"convert", "a"},
                                                          {"convert", "a", "b", "c"},
                                                          {"check"},
                                                          {"find", "a"},
                                                          {"check", "--lenient", "a"},
                                                          {"list", "--nonsense", "a"},
                                                          {"convert", "--decimal", "dot", "a", "b"},
                                                          {"convert", "--decimal"},
                                                          {"convert", "--columns", "1,2", "a", "b"},
                                                          {"convert", "--columns=0,1,2", "a", "b"},
                                                          {"convert", "--separator=x", "a", "b"},
                                                          {"convert", "--dry-run", "a", "b"}};
    for (const auto& words : kWrong) {
        EXPECT_EQ(Run(words), 2) << testing::PrintToString(words);
        EXPECT_EQ(out, "");
        EXPECT_EQ(err.find("artikel_tool: "), 0u) << err;
        EXPECT_NE(err.find("usage: artikel_tool"), std::string::npos) << err;
    }
}

TEST_F(Commands, AFileThatCannotBeReadIsNamed) {
    for (const char* command : {"check", "list"}) {
        EXPECT_EQ(Run({command, "@none.db"}), 2);
        EXPECT_EQ(err.find("artikel_tool: @none.db: "), 0u) << err;
        EXPECT_EQ(err.find("usage"), std::string::npos);
    }
}

TEST_F(Commands, ConvertMakesAMasterInOrder) {
    folder.Put(L"liste.csv", "ArtNr;Bezeichnung;Preis\n4712;S\xC3\xA4ge;89\n4711;Hammer;159\n");
    EXPECT_EQ(Run({"convert", "@liste.csv", "@artikel.db"}), 0) << err;
    EXPECT_EQ(folder.Get(L"artikel.db"), kOldMaster);
    EXPECT_EQ(out, "@artikel.db: 2 articles\n");
    EXPECT_EQ(err, "");
    EXPECT_EQ(folder.Count(), 2);
}

TEST_F(Commands, ConvertWritesNothingWhenALineIsRefused) {
    folder.Put(L"liste.csv", "4711;Hammer;abc\n4712;a;1\n4712;b;2\n");
    folder.Put(L"artikel.db", kOldMaster);
    EXPECT_EQ(Run({"convert", "@liste.csv", "@artikel.db"}), 1);
    EXPECT_EQ(folder.Get(L"artikel.db"), kOldMaster);
    EXPECT_EQ(err,
              "@liste.csv: line 1: article \"4711\": the price \"abc\" is no number\n"
              "@liste.csv: line 3: article \"4712\": the number stands in line 2 already\n"
              "@artikel.db: not written\n");
    EXPECT_EQ(out, "");
    EXPECT_EQ(Run({"convert", "@liste.csv", "@neu.db"}), 1);
    EXPECT_EQ(folder.Get(L"neu.db"), "<missing>");

    EXPECT_EQ(Run({"convert", "--lenient", "@liste.csv", "@neu.db"}), 0);
    EXPECT_EQ(folder.Get(L"neu.db").substr(0, 12), "4712      a ");
    EXPECT_NE(err.find("@liste.csv: 2 lines were left out\n"), std::string::npos) << err;
}

TEST_F(Commands, ConvertOfAListWithoutArticlesWritesNothing) {
    folder.Put(L"leer.csv", "ArtNr;Bezeichnung;Preis\n");
    folder.Put(L"artikel.db", kOldMaster);
    EXPECT_EQ(Run({"convert", "@leer.csv", "@artikel.db"}), 2);
    EXPECT_EQ(err, "artikel_tool: @leer.csv: holds no article\n");
    EXPECT_EQ(folder.Get(L"artikel.db"), kOldMaster);
}

TEST_F(Commands, UpdateShowsTheChangesAndPutsTheNewMasterInPlace) {
    folder.Put(L"artikel.db", kOldMaster);
    folder.Put(L"neu.csv", "4711;Hammer;169,5\n4713;Zange;1.000\n");
    const std::string changes =
        "up\t4711\tHammer\t159\t169,50\n"
        "gone\t4712\tS\xC3\xA4ge\t89\t\n"
        "new\t4713\tZange\t\t1000\n"
        "1 new, 1 gone, 1 up, 0 down, 0 with another text, 0 the same\n"
        "sum of prices 248,00 -> 1.169,50\n";
    EXPECT_EQ(Run({"update", "--dry-run", "@artikel.db", "@neu.csv"}), 0) << err;
    EXPECT_EQ(out, changes + "@artikel.db: not changed (--dry-run)\n");
    EXPECT_EQ(folder.Get(L"artikel.db"), kOldMaster);

    EXPECT_EQ(Run({"convert", "@neu.csv", "@neu.db"}), 0);
    EXPECT_EQ(Run({"update", "@artikel.db", "@neu.db"}), 0) << err;
    EXPECT_EQ(out, changes + "@artikel.db: replaced, 2 articles\n");
    EXPECT_EQ(folder.Get(L"artikel.db"), folder.Get(L"neu.db"));
    EXPECT_EQ(folder.Count(), 3);

    EXPECT_EQ(Run({"update", "--summary", "@artikel.db", "@neu.csv"}), 0);
    EXPECT_EQ(out,
              "0 new, 0 gone, 0 up, 0 down, 0 with another text, 2 the same\n"
              "sum of prices 1.169,50 -> 1.169,50\n@artikel.db: nothing changes\n");
}

TEST_F(Commands, UpdateRefusesABrokenNewMasterAndAnOldFileThatIsNone) {
    folder.Put(L"artikel.db", kOldMaster);
    const std::string old_master = kOldMaster;
    folder.Put(L"bad.db", old_master.substr(54) + old_master.substr(0, 54));
    EXPECT_EQ(Run({"update", "@artikel.db", "@bad.db"}), 1);
    EXPECT_EQ(err,
              "@bad.db: record 2: the numbers \"4712\" and \"4711\" are out of order\n"
              "@artikel.db: not changed\n");
    EXPECT_EQ(folder.Get(L"artikel.db"), kOldMaster);
    folder.Put(L"liste.csv", "4711;Hammer;1\n");
    EXPECT_EQ(Run({"update", "@liste.csv", "@artikel.db"}), 2);
    EXPECT_EQ(err, "artikel_tool: @liste.csv: is no article master\n");
    folder.Put(L"leer.db", "");
    EXPECT_EQ(Run({"update", "@artikel.db", "@leer.db"}), 2);
    EXPECT_EQ(folder.Get(L"artikel.db"), kOldMaster);
}

TEST_F(Commands, ListAndFindPrintWhatConvertReads) {
    folder.Put(L"artikel.db", kOldMaster);
    EXPECT_EQ(Run({"list", "@artikel.db"}), 0);
    EXPECT_EQ(out, "4711\tHammer\t159\n4712\tS\xC3\xA4ge\t89\n");
    folder.Put(L"liste.txt", out);
    EXPECT_EQ(Run({"convert", "@liste.txt", "@neu.db"}), 0);
    EXPECT_EQ(folder.Get(L"neu.db"), kOldMaster);
    EXPECT_EQ(Run({"find", "@artikel.db", "saege"}), 0);
    EXPECT_EQ(out, "4712\tS\xC3\xA4ge\t89\n");
    EXPECT_EQ(Run({"find", "@artikel.db", "zange"}), 1);
    EXPECT_EQ(out + err, "");
}

TEST_F(Commands, ListOfAFileThatIsNoMasterSaysSo) {
    folder.Put(L"liste.csv", "4711;Hammer;1\n");
    EXPECT_EQ(Run({"list", "@liste.csv"}), 2);
    EXPECT_EQ(err, "artikel_tool: @liste.csv: is no article master\n");
    EXPECT_EQ(out, "");
}

TEST_F(Commands, CheckNamesWhatIsWrong) {
    folder.Put(L"artikel.db", kOldMaster);
    EXPECT_EQ(Run({"check", "@artikel.db"}), 0);
    EXPECT_EQ(out, "@artikel.db: 2 articles, in order\n");
    folder.Put(L"artikel.db", std::string(kOldMaster) + "x");
    EXPECT_EQ(Run({"check", "@artikel.db"}), 1);
    EXPECT_NE(out.find("1 bytes are left over"), std::string::npos);
}

TEST_F(Commands, LongWorkShowsHowFarItIs) {
    std::string list;
    for (int i = 0; i < 40'000; ++i) list += std::to_string(i) + ";a;1\n";
    folder.Put(L"liste.csv", list);
    EXPECT_EQ(Run({"convert", "@liste.csv", "@a.db"}), 0);
    EXPECT_EQ(err, "");
    EXPECT_EQ(Run({"convert", "--progress", "@liste.csv", "@a.db"}), 0);
    EXPECT_NE(err.find("\rreading 100 %"), std::string::npos);
    EXPECT_EQ(err.back(), '\r');
    EXPECT_EQ(Run({"convert", "@liste.csv", "@a.db"}, true), 0);
    EXPECT_NE(err, "");
    EXPECT_EQ(Run({"convert", "--quiet", "@liste.csv", "@a.db"}, true), 0);
    EXPECT_EQ(out + err, "");
}

TEST_F(Commands, AReadOnlyMasterStaysAsItIs) {
    folder.Put(L"artikel.db", kOldMaster);
    folder.Put(L"liste.csv", "1;a;1\n");
    folder.SetReadOnly(L"artikel.db", true);
    EXPECT_EQ(Run({"convert", "@liste.csv", "@artikel.db"}), 2);
    EXPECT_EQ(err, "artikel_tool: @artikel.db: is read-only\n");
    EXPECT_EQ(folder.Get(L"artikel.db"), kOldMaster);
    EXPECT_EQ(folder.Count(), 2);
    folder.SetReadOnly(L"artikel.db", false);
}

TEST_F(Commands, NamesOfFilesMayHoldAnyCharacter) {
    folder.Put(L"Prei\u00DFe \u20AC.csv", "1;a;1\n");
    EXPECT_EQ(Run({"convert",
                   "@Prei\xC3\x9F"
                   "e \xE2\x82\xAC.csv",
                   "@\xC3\xA4.db"}),
              0)
        << err;
    EXPECT_EQ(folder.Get(L"\u00E4.db").size(), 54u);
}

}  // namespace
}  // namespace demovex::tools
