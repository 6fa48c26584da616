// The system's collation of plain article numbers, learned from its sort keys.
//
//   LearnedOrder order(key_of);                 // key_of: the system's sort key of a text
//   order.Compare(L"KB-12", L"KC");             // -1, without another question
//   order.Compare(L"Käse", L"KB");              // nothing: ask the system
//
// What is learned is one weight for each digit, letter, ".", "/" and blank, and that the hyphen is
// passed over. It is only believed where nothing else can matter: the key of every pair of these
// characters, in both cases, and of every three letters must be their weights one behind another.
// Languages in which two or three characters sort as one letter (Danish "aa", Hungarian "dzs",
// Corsican "chj") are found out by that; for them nothing is learned and every answer is "ask".
//
// Costs: learning asks for the key of about 150,000 characters, once, with the first comparison; a
// comparison after that some tens of nanoseconds. Not for more than one thread at a time.
#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace demovex {

class LearnedOrder {
  public:
    // The sort key of a text under the wanted locale with letter case ignored, without the byte 0
    // at its end: weights of two bytes each, then four bytes 1 that end the (empty) levels below.
    // Empty when the system gives none.
    using KeyOf = std::function<std::string(std::wstring_view)>;

    explicit LearnedOrder(KeyOf key_of) : key_of_(std::move(key_of)) {}

    // -1, 0 or 1 as the system would say, or nothing: one of the texts holds another character, or
    // the language is one of those that cannot be learned, or hyphens alone tell the texts apart.
    std::optional<int> Compare(std::wstring_view a, std::wstring_view b);

    // Forgets what was learned, because the user's language may have changed.
    void Forget() noexcept { state_ = State::kUnknown; }

  private:
    enum class State { kUnknown, kLearned, kRefused };

    bool Learn();
    bool LearnSingles();
    // Whether the key of `text` is the weights of its characters and nothing else.
    bool IsPlain(std::wstring_view text) const;
    std::string WeightsOf(std::wstring_view text) const;
    // Weight of a character; 0 when it has none that is known.
    std::uint16_t Weight(wchar_t c) const noexcept {
        return static_cast<std::uint32_t>(c) < weights_.size() ? weights_[c] : 0;
    }

    KeyOf key_of_;
    State state_ = State::kUnknown;
    std::array<std::uint16_t, 128> weights_{};
    bool passes_hyphens_ = false;
};

}  // namespace demovex
