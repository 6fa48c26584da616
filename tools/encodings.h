// Texts in the encodings that lists of articles come in.
//
// Inside, the tool works with UTF-8 and with Windows-1252, the bytes of an article master.
#pragma once

#include <string>
#include <string_view>

namespace demovex::tools {

// Windows-1252 bytes of a text; throws std::runtime_error for a character that it cannot hold.
std::string ToWindows1252(std::wstring_view text);
std::wstring FromWindows1252(std::string_view bytes);
// Throws std::runtime_error for bytes that are no UTF-8.
std::wstring FromUtf8(std::string_view bytes);
std::string ToUtf8(std::wstring_view text);

// Windows-1252 bytes of valid UTF-8 in place of `bytes`. Each character that it cannot hold becomes
// "?"; false when there was one.
bool Utf8ToWindows1252(std::string_view utf8, std::string& bytes);

// The characters of a file as UTF-8 without a mark of the encoding.
struct DecodedText {
    std::string utf8;
    const char* encoding = "";  // "UTF-8", "UTF-16" or "ANSI", for people
};

// UTF-16 is known by its mark or by the zero bytes of its Latin letters, UTF-8 by being valid; all
// else is read as Windows-1252. Half of a pair in UTF-16 becomes U+FFFD.
DecodedText DecodeText(std::string bytes);

}  // namespace demovex::tools
