// The commands of the article master tool: what its command line means.
#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace demovex::tools {

// Where a command writes, in UTF-8.
struct Console {
    std::function<void(std::string_view)> out;
    std::function<void(std::string_view)> err;
    bool err_is_terminal = false;  // progress is shown without being asked for
};

// Carries a command line out; `arguments` stand behind the program's name. The exit code: 0 all is
// well, 1 there were findings or nothing was found, 2 it could not be done or was asked wrongly.
int RunTool(const std::vector<std::string>& arguments, const Console& console);

}  // namespace demovex::tools
