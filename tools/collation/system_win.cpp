// The order of article numbers and the sign of decimals as the user's system has them, the very
// ones that the basket uses.
#include "platform/text_win.h"
#include "tools/number_order.h"
#include "tools/price.h"

namespace demovex::tools {
namespace {

const WinTextService& Text() {
    static const WinTextService text;
    return text;
}

}  // namespace

int CompareNumbers(std::wstring_view a, std::wstring_view b) {
    return Text().CompareText(a, b);
}

bool OrderIsKnown(std::string_view /*number*/) {
    return true;
}

DecimalSign SystemDecimalSign() {
    return Text().format().decimal == L"." ? DecimalSign::kPoint : DecimalSign::kComma;
}

}  // namespace demovex::tools
