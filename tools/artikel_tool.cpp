// The article master tool; artikel_tool --help tells what it does.
#include <cstdio>
#include <exception>

#include "tools/commands.h"
#include "tools/files.h"

int main(int argc, char** argv) {
    using namespace demovex::tools;
    try {
        const ConsoleInUtf8 utf8;
        const auto to = [](std::FILE* file) {
            return
                [file](std::string_view text) { std::fwrite(text.data(), 1, text.size(), file); };
        };
        const Console console{to(stdout), to(stderr), ErrorOutputIsTerminal()};
        const int code = RunTool(Arguments(argc, argv), console);
        // a full disk shows only now
        if (std::fflush(stdout) != 0 || std::ferror(stdout) != 0) {
            std::fputs("artikel_tool: the output cannot be written\n", stderr);
            return 2;
        }
        return code;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "artikel_tool: %s\n", error.what());
        return 2;
    }
}
