#include "tools/help.h"

namespace demovex::tools {
namespace {

struct Help {
    const char* command;
    const char* line;  // in the list of commands
    const char* text;
};

constexpr const char* kSettings =
    "  --decimal comma|point  how TEXT writes decimals; without it as the article master's\n"
    "                         readers do: a comma, or what Windows is set to\n"
    "  --separator CHARACTER  tab, semicolon or comma; without it as the first line shows\n"
    "  --columns N,D,P        where number, description and price stand, from 1\n"
    "  --lenient              take what can be taken: descriptions are cut, characters that the\n"
    "                         master lacks become \"?\", other bad lines are left out\n";

constexpr Help kHelp[] = {
    {"convert", "convert TEXT FILE    make an article master from CSV or tab-separated text",
     "usage: artikel_tool convert [options] TEXT FILE\n"
     "\n"
     "Makes the article master FILE from TEXT: CSV (semicolons or commas, quotation marks) or\n"
     "tab-separated text in UTF-8, UTF-16 or Windows-1252. A first line may name the columns\n"
     "(ArtNr, Bezeichnung, Preis, Gruppe); without one they are number, description and price.\n"
     "Every line that cannot be taken is named on the error output, and then nothing is written.\n"
     "\n"},
    {"update", "update OLD NEW       show what changes and put NEW in the place of OLD",
     "usage: artikel_tool update [options] OLD NEW\n"
     "\n"
     "Shows what the article master or list of articles NEW changes in the article master OLD, "
     "and\n"
     "puts it in its place in one step. Baskets may be open. One line for each change, fields\n"
     "separated by tabs: new, gone, up, down, price or text; number, description, old and new\n"
     "price.\n"
     "\n"
     "  --dry-run              change nothing\n"
     "  --summary              only the sums\n"},
    {"check", "check FILE           say what is wrong with an article master",
     "usage: artikel_tool check FILE\n"
     "\n"
     "Says what is wrong with the article master FILE: its form, numbers out of order or doubled,\n"
     "prices that are no numbers. The exit code is 1 when there is anything.\n"},
    {"list", "list FILE            print an article master as tab-separated text",
     "usage: artikel_tool list FILE\n"
     "\n"
     "Prints number, description and price of each article, separated by tabs, in UTF-8. What it\n"
     "prints, convert reads.\n"},
    {"find", "find FILE WORD...    print the articles whose number or description has every word",
     "usage: artikel_tool find FILE WORD...\n"
     "\n"
     "Prints the articles whose number or description holds every WORD, as list does. Upper and\n"
     "lower case and the spellings of an umlaut are alike. The exit code is 1 when there is "
     "none.\n"},
    {"sample", "sample FOLDER        write a sample: artikel.db, artikel.txt, Order.wav",
     "usage: artikel_tool sample FOLDER\n"
     "\n"
     "Writes artikel.db (an article master of made-up articles), artikel.txt (the same as\n"
     "tab-separated text with each article's group) and Order.wav into FOLDER.\n"},
};

const Help* Find(std::string_view command) {
    for (const Help& help : kHelp) {
        if (command == help.command) return &help;
    }
    return nullptr;
}

}  // namespace

bool IsCommand(std::string_view command) {
    return Find(command) != nullptr;
}

std::string HelpText(std::string_view command) {
    if (const Help* help = Find(command)) {
        std::string text = help->text;
        if (command == "convert" || command == "update") text += kSettings;
        return text;
    }
    std::string text =
        "usage: artikel_tool COMMAND [options] ARGUMENTS\n"
        "\n"
        "Makes, changes and looks into article masters, the price lists that the basket reads\n"
        "(artikel.db).\n"
        "\n";
    for (const Help& help : kHelp) text.append("  ").append(help.line).append("\n");
    text +=
        "\n"
        "  --help, -h           this text; behind a command, what is to be known about it\n"
        "  --version            the version\n"
        "  --progress           show how far long work is, also where nobody seems to watch\n"
        "  --quiet, -q          no progress and no closing line\n"
        "\n"
        "Exit codes: 0 all is well, 1 there were findings or nothing was found, 2 it could not be\n"
        "done or was asked wrongly.\n";
    return text;
}

}  // namespace demovex::tools
