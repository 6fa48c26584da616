// The order of article numbers as the user's system sees it, the very one that lookups use.
#include "platform/text_win.h"
#include "tools/master_file.h"

namespace demovex::tools {

int CompareNumbers(std::wstring_view a, std::wstring_view b) {
    static const WinTextService text;
    return text.CompareText(a, b);
}

bool OrderIsKnown(std::wstring_view /*number*/) {
    return true;
}

}  // namespace demovex::tools
