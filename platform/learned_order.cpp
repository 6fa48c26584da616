#include "platform/learned_order.h"

#include <vector>

namespace demovex {
namespace {

constexpr std::wstring_view kLetters = L"abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ";
constexpr std::wstring_view kOthers = L"0123456789./ ";

// What stands behind the weights of a text that differs in nothing else.
constexpr std::string_view kNoMore("\1\1\1\1", 4);

// A text in which every sequence of `length` characters of `alphabet` occurs: the cycle of de
// Bruijn, unrolled, by joining the Lyndon words whose length divides `length` in their order.
std::wstring EverySequence(std::wstring_view alphabet, std::size_t length) {
    std::wstring text;
    std::vector<std::size_t> word(1, 0);
    while (!word.empty()) {
        if (length % word.size() == 0) {
            for (const std::size_t at : word) text += alphabet[at];
        }
        // the next word: repeated to the full length, its last characters that are the alphabet's
        // last dropped, the one before raised
        const std::size_t period = word.size();
        while (word.size() < length) word.push_back(word[word.size() - period]);
        while (!word.empty() && word.back() == alphabet.size() - 1) word.pop_back();
        if (!word.empty()) ++word.back();
    }
    return text + text.substr(0, length - 1);
}

// The text with a hyphen behind each character.
std::wstring Hyphened(std::wstring_view text) {
    std::wstring out;
    for (const wchar_t c : text) out += {c, L'-'};
    return out;
}

}  // namespace

std::optional<int> LearnedOrder::Compare(std::wstring_view a, std::wstring_view b) {
    if (state_ == State::kUnknown) {
        state_ = State::kRefused;  // also when learning fails half-way
        if (Learn()) state_ = State::kLearned;
    }
    if (state_ == State::kRefused) return std::nullopt;
    int order = 0;
    bool same_hyphens = true;
    std::size_t i = 0, k = 0;
    // The first difference decides, but a character that is not known may change what stands
    // before it (an accent that is added), so both are walked to their ends.
    while (i < a.size() || k < b.size()) {
        const bool left = i < a.size() && a[i] == L'-', right = k < b.size() && b[k] == L'-';
        if (left || right) {
            if (!passes_hyphens_) return std::nullopt;
            same_hyphens = same_hyphens && left == right;
            i += left;
            k += right;
            continue;
        }
        // at a text's end 0, which is below every weight
        const std::uint16_t low = i < a.size() ? Weight(a[i]) : 0;
        const std::uint16_t high = k < b.size() ? Weight(b[k]) : 0;
        if ((i < a.size() && low == 0) || (k < b.size() && high == 0)) return std::nullopt;
        if (order == 0 && low != high) order = low < high ? -1 : 1;
        i += i < a.size();
        k += k < b.size();
    }
    if (order == 0 && !same_hyphens) return std::nullopt;
    return order;
}

bool LearnedOrder::Learn() {
    weights_.fill(0);
    if (!LearnSingles()) return false;
    std::wstring all(kLetters);
    all += kOthers;
    const std::wstring pairs = EverySequence(all, 2);
    if (!IsPlain(pairs) || !IsPlain(EverySequence(kLetters, 3))) return false;
    passes_hyphens_ = [&] {
        const std::string key = key_of_(Hyphened(pairs)), weights = WeightsOf(pairs);
        // the last level holds the hyphens' places, which are not read
        return key.starts_with(weights + std::string(kNoMore));
    }();
    return true;
}

bool LearnedOrder::LearnSingles() {
    for (const std::wstring_view some : {kLetters, kOthers}) {
        for (const wchar_t c : some) {
            const std::string key = key_of_(std::wstring_view(&c, 1));
            if (key.size() != 2 + kNoMore.size() || !key.ends_with(kNoMore)) return false;
            const auto byte = [&key](std::size_t at) {
                return static_cast<unsigned>(static_cast<unsigned char>(key[at]));
            };
            // 0 and 1 end a level
            if (byte(0) < 2 || byte(1) < 2) return false;
            weights_[static_cast<unsigned char>(c)] =
                static_cast<std::uint16_t>(byte(0) << 8 | byte(1));
        }
    }
    return true;
}

std::string LearnedOrder::WeightsOf(std::wstring_view text) const {
    std::string weights;
    weights.reserve(2 * text.size() + kNoMore.size());
    for (const wchar_t c : text) {
        weights += static_cast<char>(Weight(c) >> 8);
        weights += static_cast<char>(Weight(c) & 0xFF);
    }
    return weights;
}

bool LearnedOrder::IsPlain(std::wstring_view text) const {
    return key_of_(text) == WeightsOf(text) + std::string(kNoMore);
}

}  // namespace demovex
