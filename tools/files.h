// Files and the console for the tool, by the system's own means. Paths and texts are UTF-8;
// failures throw std::runtime_error with the path and the reason.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace demovex::tools {

std::string ReadFile(const std::string& path);

// Makes `bytes` the whole content of the file in one step: they are written to a temporary file in
// the same folder and flushed, which then takes the file's place. Readers that have the file open
// keep the old one until they open it anew. Where a reader keeps it from being replaced, this waits
// for some seconds. What fails leaves the file as it was.
void PlaceFile(const std::string& path, std::string_view bytes);

// The arguments behind the program's name. On Windows from the command line itself, whatever code
// page the console has.
std::vector<std::string> Arguments(int argc, char** argv);

// While it lives the console shows UTF-8.
class ConsoleInUtf8 {
  public:
    ConsoleInUtf8();
    ~ConsoleInUtf8();
    ConsoleInUtf8(const ConsoleInUtf8&) = delete;
    ConsoleInUtf8& operator=(const ConsoleInUtf8&) = delete;

  private:
    unsigned before_ = 0;
};

// Whether somebody reads the error output as it is written.
bool ErrorOutputIsTerminal();

}  // namespace demovex::tools
