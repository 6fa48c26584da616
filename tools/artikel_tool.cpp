// The article master tool.
//
//   artikel_tool sample FOLDER        writes artikel.db, Order.wav and artikel.txt into FOLDER
//   artikel_tool check FILE           says what is wrong with an article master; exit code 1 then
//   artikel_tool convert TEXT FILE    makes an article master from tab-separated text (UTF-8 or
//                                     Windows-1252; number, description, price), sorted by number
//   artikel_tool list FILE            prints an article master as tab-separated text
//
// Exit codes: 0 all is well, 1 findings, 2 it could not be done (the reason is on the error
// output).
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "catalog/artikel_record.h"
#include "tools/master_file.h"
#include "tools/order_sound.h"
#include "tools/sample_articles.h"

namespace demovex::tools {
namespace {

struct CloseFile {
    void operator()(std::FILE* file) const { std::fclose(file); }
};
using File = std::unique_ptr<std::FILE, CloseFile>;

std::string ReadFile(const std::string& path) {
    const File file(std::fopen(path.c_str(), "rb"));
    if (file == nullptr) throw std::runtime_error(path + ": " + std::strerror(errno));
    std::string bytes;
    char block[65536];
    while (const std::size_t count = std::fread(block, 1, sizeof block, file.get())) {
        bytes.append(block, count);
    }
    if (std::ferror(file.get()) != 0) throw std::runtime_error(path + ": cannot be read");
    return bytes;
}

void WriteFile(const std::string& path, const std::string& bytes) {
    File file(std::fopen(path.c_str(), "wb"));
    if (file == nullptr) throw std::runtime_error(path + ": " + std::strerror(errno));
    const bool written = std::fwrite(bytes.data(), 1, bytes.size(), file.get()) == bytes.size();
    if (std::fclose(file.release()) != 0 || !written) {
        throw std::runtime_error(path + ": cannot be written");
    }
}

int Report(const std::string& path, const std::string& bytes) {
    const std::vector<std::string> findings = CheckMaster(bytes);
    for (const std::string& finding : findings) {
        std::printf("%s: %s\n", path.c_str(), finding.c_str());
    }
    if (!findings.empty()) return 1;
    std::printf("%s: %u articles, in order\n", path.c_str(),
                static_cast<unsigned>(bytes.size() / ArtikelRecord::kSize));
    return 0;
}

int Sample(const std::string& folder) {
    std::vector<Article> articles = SampleArticles();
    SortByNumber(articles);
    const std::string master = MakeMaster(articles);
    WriteFile(folder + "/artikel.db", master);
    WriteFile(folder + "/Order.wav", OrderSound());
    WriteFile(folder + "/artikel.txt", ToUtf8(ToTabSeparated(articles)));
    return Report(folder + "/artikel.db", master);
}

int Convert(const std::string& from, const std::string& to) {
    const std::string bytes = ReadFile(from);
    std::wstring text;
    try {
        text = FromUtf8(bytes);
    } catch (const std::runtime_error&) {
        text = FromWindows1252(bytes);
    }
    std::vector<Article> articles = FromTabSeparated(text);
    SortByNumber(articles);
    const std::string master = MakeMaster(articles);
    WriteFile(to, master);
    return Report(to, master);
}

int List(const std::string& path) {
    const std::string bytes = ReadFile(path);
    for (std::size_t at = 0; at + ArtikelRecord::kTextSize <= bytes.size();
         at += ArtikelRecord::kSize) {
        ArtikelRecord record;
        record.Assign(std::string_view(bytes).substr(at, ArtikelRecord::kTextSize));
        std::printf("%s\t%s\t%s\n", ToUtf8(FromWindows1252(record.TrimmedNr())).c_str(),
                    ToUtf8(FromWindows1252(record.TrimmedBezeichnung())).c_str(),
                    ToUtf8(FromWindows1252(record.TrimmedPreis())).c_str());
    }
    return 0;
}

int Run(int argc, char** argv) {
    const std::string command = argc > 1 ? argv[1] : "";
    if (command == "sample" && argc == 3) return Sample(argv[2]);
    if (command == "check" && argc == 3) return Report(argv[2], ReadFile(argv[2]));
    if (command == "convert" && argc == 4) return Convert(argv[2], argv[3]);
    if (command == "list" && argc == 3) return List(argv[2]);
    std::fputs("usage: artikel_tool sample FOLDER | check FILE | convert TEXT FILE | list FILE\n",
               stderr);
    return 2;
}

}  // namespace
}  // namespace demovex::tools

int main(int argc, char** argv) {
    try {
        return demovex::tools::Run(argc, argv);
    } catch (const std::exception& error) {
        std::fprintf(stderr, "artikel_tool: %s\n", error.what());
        return 2;
    }
}
