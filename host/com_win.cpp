#include "host/com_win.h"

#include <oaidl.h>

#include <array>
#include <cwchar>

namespace demovex::host {

std::wstring Outcome::Say() const {
    if (!Failed()) return L"ok";
    std::array<wchar_t, 16> hex{};
    std::swprintf(hex.data(), hex.size(), L"0x%08lX", static_cast<unsigned long>(code));
    return hex.data() + (source.empty() ? L"" : L" " + source) + L": " + description;
}

Outcome OutcomeOf(HRESULT code) {
    Outcome outcome;
    outcome.code = code;
    if (SUCCEEDED(code)) return outcome;
    Ref<IErrorInfo> info;
    if (GetErrorInfo(0, info.Out()) != S_OK) return outcome;
    Text text;
    if (SUCCEEDED(info->GetSource(text.Out()))) outcome.source = text.Copy();
    if (SUCCEEDED(info->GetDescription(text.Out()))) outcome.description = text.Copy();
    return outcome;
}

}  // namespace demovex::host
