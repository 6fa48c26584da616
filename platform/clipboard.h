// The clipboard, for text.
#pragma once

#include <string_view>

namespace demovex {

class IClipboard {
  public:
    virtual ~IClipboard() = default;

    // Empties the clipboard and puts `text` on it as Unicode text. When another program holds it
    // open, retries briefly; then raises 521 ("Can't open Clipboard") and nothing is changed.
    virtual void SetText(std::wstring_view text) = 0;
};

}  // namespace demovex
