// One article as the tool's programs pass it around: texts, not yet bytes of a file.
#pragma once

#include <string>

namespace demovex::tools {

struct Article {
    std::wstring nr;           // at most 10 characters
    std::wstring bezeichnung;  // at most 30
    std::wstring preis;        // at most 12
    std::wstring gruppe;       // heading in the catalogue; not part of the article master
};

}  // namespace demovex::tools
