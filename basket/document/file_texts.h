// Texts that the commands on basket files share.
#pragma once

namespace demovex {

inline constexpr wchar_t kBasketFilter[] = L"Warenkorb Dateien (*.bsk)|*.bsk";

// Status text after a file was written for which characters had to be replaced.
inline constexpr wchar_t kLossyStatus[] =
    L"Zeichen, die der Zeichensatz der Datei nicht kennt, wurden als ? gespeichert";

}  // namespace demovex
