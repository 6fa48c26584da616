// Links in the about box's text. A link is written <A HREF="address">text</A>, exactly so: no other
// attribute, no other quotes, no lower case. The parser takes the markup out of the text and says
// where a label with the link's text has to lie so that it covers that text.
//
//   AboutLinks parsed = ParseLinks(L"Siehe\r\n<A HREF=\"http://x.example/\">X</A>", {45, 60}, m);
//   // parsed.caption is L"Siehe\r\nX"; parsed.links[0] lies at (45, 60 + 195)
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "platform/message_box.h"
#include "platform/shell.h"

namespace demovex {

// Height of one line of the text, in twips, whatever the font.
inline constexpr int kAboutLineHeight = 195;

// How wide and high texts are in the font of the about box, in twips.
class ITextMeasure {
  public:
    virtual ~ITextMeasure() = default;
    virtual int TextWidth(std::wstring_view text) = 0;
    virtual int TextHeight(std::wstring_view text) = 0;
};

// One label; lengths in twips. Its tool tip is its address, too.
struct LinkLabel {
    std::wstring Tag;      // the address
    std::wstring caption;  // the link's text
    int left = 0;
    int top = 0;
    int width = 0;
    int height = 0;
};

struct AboutLinks {
    std::vector<LinkLabel> links;  // in the order they were found
    std::wstring caption;          // the text without markup
};

// Where the text's first line begins, in twips.
struct AboutOrigin {
    int left = 0;
    int top = 0;
};

// The lines of `text` end with a line feed. Markup without its closing quote and ">" or without
// "</A>" raises 5. Each link shortens the text, so the parser always ends.
//
// A label's place in its line is the width of the text before it from the line's second character
// on; only a link that begins its line therefore lies exactly over its text.
AboutLinks ParseLinks(std::wstring_view text, const AboutOrigin& origin, ITextMeasure& measure);

// Opens the address of a link; says so when the shell cannot.
void OpenLink(std::wstring_view address, IShell& shell, IMessageBox& messages);

}  // namespace demovex
