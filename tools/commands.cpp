#include "tools/commands.h"

#include <algorithm>
#include <array>
#include <optional>
#include <stdexcept>
#include <utility>

#include "catalog/artikel_record.h"
#include "tools/encodings.h"
#include "tools/files.h"
#include "tools/help.h"
#include "tools/import.h"
#include "tools/master_changes.h"
#include "tools/master_file.h"
#include "tools/order_sound.h"
#include "tools/sample_articles.h"
#include "tools/search.h"

namespace demovex::tools {
namespace {

constexpr std::size_t kMostFindings = 1000;

// A command line that means nothing.
class UsageError : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

struct CommandLine {
    std::string command;
    std::vector<std::string> words;  // what is no option
    bool help = false, version = false, quiet = false, progress = false;
    bool lenient = false, dry_run = false, summary = false;
    std::optional<DecimalSign> decimal;
    char separator = 0;
    std::array<std::size_t, 3> columns{};
};

DecimalSign ReadDecimal(const std::string& value) {
    if (value == "comma" || value == ",") return DecimalSign::kComma;
    if (value == "point" || value == ".") return DecimalSign::kPoint;
    throw UsageError("--decimal is comma or point, not \"" + value + "\"");
}

char ReadSeparator(const std::string& value) {
    if (value == "tab" || value == "\t" || value == "\\t") return '\t';
    if (value == "semicolon" || value == ";") return ';';
    if (value == "comma" || value == ",") return ',';
    throw UsageError("--separator is tab, semicolon or comma, not \"" + value + "\"");
}

std::array<std::size_t, 3> ReadColumns(const std::string& value) {
    std::array<std::size_t, 3> columns{};
    std::size_t which = 0;
    bool good = true;
    for (const char c : value) {
        if (c == ',') {
            good = good && ++which < columns.size();
        } else if (c >= '0' && c <= '9' && which < columns.size() && columns[which] < 1000) {
            columns[which] = columns[which] * 10 + static_cast<std::size_t>(c - '0');
        } else {
            good = false;
        }
        if (!good) break;
    }
    good = good && which == 2 && std::count(columns.begin(), columns.end(), 0u) == 0;
    if (!good) throw UsageError("--columns is three numbers such as 1,2,4, not \"" + value + "\"");
    return columns;
}

CommandLine Read(const std::vector<std::string>& arguments) {
    CommandLine line;
    bool only_words = false;
    for (std::size_t i = 0; i < arguments.size(); ++i) {
        const std::string& word = arguments[i];
        if (only_words || word.size() < 2 || word[0] != '-') {
            if (line.command.empty()) {
                line.command = word;
            } else {
                line.words.push_back(word);
            }
            continue;
        }
        const std::size_t equals = word.find('=');
        const std::string name = word.substr(0, equals);
        const auto value = [&]() -> std::string {
            if (equals != std::string::npos) return word.substr(equals + 1);
            if (++i == arguments.size()) throw UsageError(name + " needs a value");
            return arguments[i];
        };
        const bool imports = line.command == "convert" || line.command == "update";
        const bool updates = line.command == "update";
        if (name == "--decimal" && imports) {
            line.decimal = ReadDecimal(value());
        } else if (name == "--separator" && imports) {
            line.separator = ReadSeparator(value());
        } else if (name == "--columns" && imports) {
            line.columns = ReadColumns(value());
        } else if (word == "--") {
            only_words = true;
        } else if (word == "--help" || word == "-h") {
            line.help = true;
        } else if (word == "--version") {
            line.version = true;
        } else if (word == "--quiet" || word == "-q") {
            line.quiet = true;
        } else if (word == "--progress") {
            line.progress = true;
        } else if (word == "--lenient" && imports) {
            line.lenient = true;
        } else if (word == "--dry-run" && updates) {
            line.dry_run = true;
        } else if (word == "--summary" && updates) {
            line.summary = true;
        } else {
            throw UsageError("unknown option " + name);
        }
    }
    return line;
}

// "1.234" for people.
std::string Count(std::size_t count, const char* one, const char* many) {
    std::string text = std::to_string(count);
    for (std::size_t at = text.size(); at > 3; at -= 3) text.insert(at - 3, 1, ',');
    return text + " " + (count == 1 ? one : many);
}

std::string Articles(std::size_t count) {
    return Count(count, "article", "articles");
}

class Tool {
  public:
    Tool(const CommandLine& line, const Console& console)
        : line_(line), console_(console), sign_(SystemDecimalSign()) {}

    int Run() {
        const std::string& command = line_.command;
        if (command == "find") {
            NeedWords(2, static_cast<std::size_t>(-1));
            return Find();
        }
        if (command == "convert" || command == "update") {
            NeedWords(2, 2);
            return command == "convert" ? Convert() : Update();
        }
        NeedWords(1, 1);
        if (command == "check") return Report(line_.words[0], ReadFile(line_.words[0]));
        if (command == "list") return List();
        return Sample();
    }

  private:
    void NeedWords(std::size_t least, std::size_t most) const {
        if (line_.words.size() < least) throw UsageError("too few arguments");
        if (line_.words.size() > most) throw UsageError("too many arguments");
    }

    // The closing line of work that succeeded.
    void Say(const std::string& text) const {
        if (!line_.quiet) console_.out(text + "\n");
    }

    Progress ShowProgress() {
        if (line_.quiet || !(line_.progress || console_.err_is_terminal)) return {};
        return [this](const char* work, double share) {
            const std::string text =
                std::string(work) + " " + std::to_string(static_cast<int>(share * 100)) + " %";
            if (text == shown_) return;
            // what stood there before is longer at times
            const std::size_t rest = shown_.size() > text.size() ? shown_.size() - text.size() : 0;
            console_.err("\r" + text + std::string(rest, ' '));
            shown_ = text;
        };
    }
    // Progress leaves nothing behind.
    void EndProgress() {
        if (!shown_.empty()) console_.err("\r" + std::string(shown_.size(), ' ') + "\r");
        shown_.clear();
    }

    int Report(const std::string& path, const std::string& bytes) const {
        const std::vector<std::string> findings = CheckMaster(bytes, 20, sign_);
        for (const std::string& finding : findings) console_.out(path + ": " + finding + "\n");
        if (!findings.empty()) return 1;
        Say(path + ": " + Articles(bytes.size() / ArtikelRecord::kSize) + ", in order");
        return 0;
    }

    int Sample() const {
        const std::string& folder = line_.words[0];
        std::vector<Article> articles = SampleArticles();
        SortByNumber(articles);
        const std::string master = MakeMaster(articles);
        PlaceFile(folder + "/artikel.db", master);
        PlaceFile(folder + "/Order.wav", OrderSound());
        PlaceFile(folder + "/artikel.txt", ToUtf8(ToTabSeparated(articles)));
        return Report(folder + "/artikel.db", master);
    }

    // The bytes of an article master made from a list, nothing when lines were refused.
    std::optional<std::string> MakeFrom(const std::string& path, std::string bytes) {
        ImportOptions options;
        options.lenient = line_.lenient;
        options.separator = line_.separator;
        options.columns = line_.columns;
        options.master_sign = sign_;
        options.list_sign = line_.decimal.value_or(sign_);
        options.progress = ShowProgress();
        Import import = ImportArticles(std::move(bytes), options);
        EndProgress();
        std::size_t told = 0;
        for (const ImportFinding& finding : import.findings) {
            if (told++ == kMostFindings) {
                console_.err(path + ": and " +
                             Count(import.findings.size() - kMostFindings, "line", "lines") +
                             " more\n");
                break;
            }
            console_.err(path + ": line " + std::to_string(finding.line) + ": " + finding.text +
                         "\n");
        }
        const bool refused = !import.findings.empty() && !line_.lenient;
        if (!refused && !line_.quiet && import.left_out != 0) {
            console_.err(path + ": " + Count(import.left_out, "line was", "lines were") +
                         " left out\n");
        }
        if (refused) return std::nullopt;
        if (import.records.empty()) throw std::runtime_error(path + ": holds no article");
        return MasterBytes(import.records);
    }

    int Convert() {
        const std::string &from = line_.words[0], &to = line_.words[1];
        const auto master = MakeFrom(from, ReadFile(from));
        if (!master) {
            console_.err(to + ": not written\n");
            return 1;
        }
        PlaceFile(to, *master);
        Say(to + ": " + Articles(master->size() / ArtikelRecord::kSize));
        return 0;
    }

    // An article master; anything else is no file for this command.
    std::string ReadMaster(const std::string& path) const {
        std::string bytes = ReadFile(path);
        if (!LooksLikeMaster(bytes)) throw std::runtime_error(path + ": is no article master");
        return bytes;
    }

    int Update() {
        const std::string &old_path = line_.words[0], &new_path = line_.words[1];
        const std::string old_bytes = ReadMaster(old_path);
        std::string new_bytes = ReadFile(new_path);
        if (new_bytes.empty()) throw std::runtime_error(new_path + ": holds no article");
        bool good = true;
        if (!LooksLikeMaster(new_bytes)) {
            auto made = MakeFrom(new_path, std::move(new_bytes));
            good = made.has_value();
            new_bytes = std::move(made).value_or(std::string());
        } else {
            const std::vector<std::string> findings = CheckMaster(new_bytes, 20, sign_);
            for (const std::string& finding : findings) {
                console_.err(new_path + ": " + finding + "\n");
            }
            good = findings.empty();
        }
        if (!good) {
            console_.err(old_path + ": not changed\n");
            return 1;
        }
        std::vector<ArtikelRecord> before = MasterRecords(old_bytes);
        std::vector<ArtikelRecord> after = MasterRecords(new_bytes);
        const ChangeSums sums = CompareMasters(before, after, sign_, [this](const Change& change) {
            if (!line_.summary) console_.out(ChangeLine(change) + "\n");
        });
        if (!line_.quiet) ShowSums(sums);
        if (new_bytes == old_bytes) {
            Say(old_path + ": nothing changes");
        } else if (line_.dry_run) {
            Say(old_path + ": not changed (--dry-run)");
        } else {
            PlaceFile(old_path, new_bytes);
            Say(old_path + ": replaced, " + Articles(after.size()));
        }
        return 0;
    }

    void ShowSums(const ChangeSums& sums) const {
        const auto count = [](std::size_t number) { return Count(number, "", ""); };
        std::string text = count(sums.added) + "new, " + count(sums.gone) + "gone, " +
                           count(sums.dearer) + "up, " + count(sums.cheaper) + "down, ";
        if (sums.other_price != 0) text += count(sums.other_price) + "with another price, ";
        text += count(sums.other_text) + "with another text, " + count(sums.same) + "the same\n";
        text += "sum of prices " + ShowAmount(sums.before, sign_) + " -> " +
                ShowAmount(sums.after, sign_) + "\n";
        console_.out(text);
    }

    int List() const {
        std::string text;
        for (const ArtikelRecord& record : MasterRecords(ReadMaster(line_.words[0]))) {
            AppendLine(text, record);
            Drain(text, 1 << 16);
        }
        Drain(text, 0);
        return 0;
    }

    int Find() const {
        const ArticleSearch search({line_.words.begin() + 1, line_.words.end()});
        std::string text;
        bool found = false;
        for (const ArtikelRecord& record : MasterRecords(ReadMaster(line_.words[0]))) {
            if (!search.Finds(record)) continue;
            found = true;
            AppendLine(text, record);
            Drain(text, 1 << 16);
        }
        Drain(text, 0);
        return found ? 0 : 1;
    }

    static void AppendLine(std::string& text, const ArtikelRecord& record) {
        text += ToUtf8(FromWindows1252(record.TrimmedNr())) + '\t';
        text += ToUtf8(FromWindows1252(record.TrimmedBezeichnung())) + '\t';
        text += ToUtf8(FromWindows1252(record.TrimmedPreis())) + '\n';
    }
    void Drain(std::string& text, std::size_t at_least) const {
        if (text.empty() || text.size() < at_least) return;
        console_.out(text);
        text.clear();
    }

    const CommandLine& line_;
    const Console& console_;
    const DecimalSign sign_;
    std::string shown_;  // the progress on the error output
};

}  // namespace

int RunTool(const std::vector<std::string>& arguments, const Console& console) {
    std::string command;
    try {
        const CommandLine line = Read(arguments);
        command = line.command;
        if (line.version) {
            console.out("artikel_tool " DEMOVEX_VERSION "\n");
            return 0;
        }
        if (line.help || command == "help") {
            const bool named = command == "help" && !line.words.empty();
            console.out(HelpText(named ? line.words[0] : command));
            return 0;
        }
        if (command.empty()) throw UsageError("a command is missing");
        if (!IsCommand(command)) throw UsageError("unknown command \"" + command + "\"");
        return Tool(line, console).Run();
    } catch (const UsageError& error) {
        console.err(std::string("artikel_tool: ") + error.what() + "\n");
        const std::string help = HelpText(command);
        console.err(help.substr(0, help.find('\n') + 1) + "artikel_tool --help tells more\n");
    } catch (const std::exception& error) {
        console.err(std::string("artikel_tool: ") + error.what() + "\n");
    }
    return 2;
}

}  // namespace demovex::tools
