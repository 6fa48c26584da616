#include "platform/text_win.h"

#include <windows.h>

#include <oleauto.h>

#include <algorithm>
#include <limits>

#include "base/error.h"
#include "platform/plain_order.h"

namespace demovex {
namespace {

// `source` is 0 for what the user has set, LOCALE_NOUSEROVERRIDE for what is usual in the locale.
std::wstring LocaleText(LCTYPE type, DWORD source) {
    wchar_t text[32];
    const int length = GetLocaleInfoW(LOCALE_USER_DEFAULT, type | source, text, 32);
    return length > 0 ? std::wstring(text) : std::wstring();
}

NumberFormat LocaleFormat(DWORD source) {
    NumberFormat format;
    format.decimal = LocaleText(LOCALE_SDECIMAL, source);
    if (format.decimal.empty()) format.decimal = L".";
    format.thousands = LocaleText(LOCALE_STHOUSAND, source);
    // grouping with the decimal separator itself could not be read back
    if (format.thousands == format.decimal) format.thousands.clear();
    format.SetGrouping(LocaleText(LOCALE_SGROUPING, source));
    return format;
}

// The system's functions take lengths of 31 bits.
int Length(std::size_t size) {
    if (size > static_cast<std::size_t>(std::numeric_limits<int>::max())) {
        RaiseRuntimeError(runtime_error::kOutOfMemory);
    }
    return static_cast<int>(size);
}

// The system's sort key of `text` without the 0 at its end; empty when it gives none.
std::string SortKey(std::wstring_view text) {
    constexpr DWORD kFlags = LCMAP_SORTKEY | NORM_IGNORECASE;
    const int length = Length(text.size());
    const int size = LCMapStringW(LOCALE_USER_DEFAULT, kFlags, text.data(), length, nullptr, 0);
    if (size <= 1) return {};
    std::string key(static_cast<std::size_t>(size), '\0');
    // for sort keys the buffer is one of bytes
    const int written = LCMapStringW(LOCALE_USER_DEFAULT, kFlags, text.data(), length,
                                     reinterpret_cast<wchar_t*>(key.data()), size);
    key.resize(written > 0 ? static_cast<std::size_t>(written) - 1 : 0);
    return key;
}

}  // namespace

WinTextService::WinTextService() : learned_(SortKey) {
    Refresh();
}

void WinTextService::Refresh() {
    NumberFormat format = LocaleFormat(0);
    const bool own = IsUsable(format);
    if (!own) format = LocaleFormat(LOCALE_NOUSEROVERRIDE);
    format_ = std::move(format);
    own_format_ = own;
    learned_.Forget();
    ReadCodePage();
}

int WinTextService::CompareText(std::wstring_view a, std::wstring_view b) const {
    if (const auto order = OrderOfPlainText(a, b)) return *order;
    // the language can change without a word to this object; asking for it costs next to nothing
    if (const LCID locale = GetUserDefaultLCID(); locale != learned_locale_) {
        learned_.Forget();
        learned_locale_ = locale;
    }
    if (const auto order = learned_.Compare(a, b)) return *order;
    if (a == b) return 0;
    // the system refuses a null pointer, also for a text of no characters
    const int result =
        CompareStringW(LOCALE_USER_DEFAULT, NORM_IGNORECASE, a.empty() ? L"" : a.data(),
                       Length(a.size()), b.empty() ? L"" : b.data(), Length(b.size()));
    if (result == 0) RaiseRuntimeError(runtime_error::kInvalidProcedureCall);
    return result - CSTR_EQUAL;
}

std::wstring WinTextService::LowerCase(std::wstring_view text) const {
    std::wstring out(text);
    if (!out.empty()) {
        // the length never changes; "linguistic" rules would make the letter i depend on the locale
        LCMapStringW(LOCALE_USER_DEFAULT, LCMAP_LOWERCASE, text.data(), Length(text.size()),
                     out.data(), Length(out.size()));
    }
    return out;
}

double WinTextService::ToNumber(std::wstring_view text) const {
    if (const auto plain = ReadPlainNumber(text, format_)) return *plain;
    // A NUL would end the text for the conversion, and what stands behind it would be lost.
    if (text.find(L'\0') != std::wstring_view::npos) {
        RaiseRuntimeError(runtime_error::kTypeMismatch);
    }
    std::wstring terminated(text);
    double value = 0;
    const HRESULT result = VarR8FromStr(terminated.data(), LOCALE_USER_DEFAULT,
                                        own_format_ ? 0 : LOCALE_NOUSEROVERRIDE, &value);
    if (result == DISP_E_OVERFLOW) RaiseRuntimeError(runtime_error::kOverflow);
    if (result == E_OUTOFMEMORY) RaiseRuntimeError(runtime_error::kOutOfMemory);
    if (FAILED(result)) RaiseRuntimeError(runtime_error::kTypeMismatch);
    return value;
}

std::wstring WinTextService::FromNumber(double value) const {
    return FormatGeneral(value, format_);
}

void WinTextService::WriteAmount(double value, std::wstring& text) const {
    demovex::FormatAmount(value, format_, text);
}

void WinTextService::ReadCodePage() {
    CPINFO info{};
    single_bytes_ = GetCPInfo(CP_ACP, &info) && info.MaxCharSize == 1;
    for (std::size_t byte = 0; byte < wide_.size() && single_bytes_; ++byte) {
        const char narrow = static_cast<char>(static_cast<unsigned char>(byte));
        single_bytes_ = MultiByteToWideChar(CP_ACP, 0, &narrow, 1, &wide_[byte], 1) == 1 &&
                        (byte >= 0x80 || wide_[byte] == byte);
    }
}

bool WinTextService::ToSingleBytes(std::wstring_view text, std::string& bytes) const {
    if (!single_bytes_) return false;
    bytes.resize(text.size());
    for (std::size_t i = 0; i < text.size(); ++i) {
        const wchar_t c = text[i];
        if (c < 0x80) {
            bytes[i] = static_cast<char>(c);
        } else if (c < wide_.size() && wide_[c] == c) {
            bytes[i] = static_cast<char>(static_cast<unsigned char>(c));
        } else {
            const auto found = std::find(wide_.begin() + 0x80, wide_.end(), c);
            if (found == wide_.end()) return false;
            bytes[i] = static_cast<char>(static_cast<unsigned char>(found - wide_.begin()));
        }
    }
    return true;
}

std::string WinTextService::ToAnsi(std::wstring_view text, bool* lossy) const {
    if (text.empty()) return {};
    if (std::string bytes; ToSingleBytes(text, bytes)) return bytes;
    // A Unicode code page (UTF-8 can be chosen as ANSI one) takes neither a default character nor
    // the flag, and holds everything but halves of surrogate pairs.
    const bool utf8 = GetACP() == CP_UTF8;
    const DWORD flags = utf8 ? 0 : WC_NO_BEST_FIT_CHARS;
    BOOL used_default = FALSE;
    const char* default_char = utf8 ? nullptr : "?";
    BOOL* used = utf8 ? nullptr : &used_default;
    const int size = WideCharToMultiByte(CP_ACP, flags, text.data(), Length(text.size()), nullptr,
                                         0, default_char, used);
    if (size <= 0) RaiseRuntimeError(runtime_error::kOutOfMemory);
    std::string out(static_cast<std::size_t>(size), '\0');
    WideCharToMultiByte(CP_ACP, flags, text.data(), Length(text.size()), out.data(), size,
                        default_char, used);
    if (used_default && lossy) *lossy = true;
    return out;
}

void WinTextService::ReadAnsi(std::string_view bytes, std::wstring& text) const {
    if (bytes.empty()) {
        text.clear();
        return;
    }
    if (single_bytes_) {
        text.resize(bytes.size());
        for (std::size_t i = 0; i < bytes.size(); ++i) {
            text[i] = wide_[static_cast<unsigned char>(bytes[i])];
        }
        return;
    }
    const int size = MultiByteToWideChar(CP_ACP, 0, bytes.data(), Length(bytes.size()), nullptr, 0);
    if (size <= 0) RaiseRuntimeError(runtime_error::kOutOfMemory);
    text.resize(static_cast<std::size_t>(size));
    MultiByteToWideChar(CP_ACP, 0, bytes.data(), Length(bytes.size()), text.data(), size);
}

}  // namespace demovex
