// What the article master tool says about itself.
#pragma once

#include <string>
#include <string_view>

namespace demovex::tools {

// The help text; for one command, or for all when there is none of that name.
std::string HelpText(std::string_view command);
bool IsCommand(std::string_view command);

}  // namespace demovex::tools
