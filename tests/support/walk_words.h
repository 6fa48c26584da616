// Dice, and what a random walk through a basket types, links and loads.
#pragma once

#include <cstdint>
#include <iterator>
#include <random>
#include <string>
#include <string_view>

namespace demovex {

inline std::string Narrow(std::wstring_view text) {
    std::string out;
    for (const wchar_t c : text.substr(0, 40)) {
        out += c >= L' ' && c < 127 ? static_cast<char>(c) : '?';
    }
    return out;
}

class Dice {
  public:
    explicit Dice(std::uint32_t seed) : engine_(seed) {}
    int Below(int bound) { return static_cast<int>(engine_() % static_cast<unsigned>(bound)); }
    int Between(int low, int high) { return low + Below(high - low + 1); }
    template <typename Container>
    auto Of(const Container& choices) {
        return choices[static_cast<std::size_t>(Below(static_cast<int>(std::size(choices))))];
    }

  private:
    std::mt19937 engine_;
};

inline const std::wstring kNumbers[] = {L"4711", L"4712", L"1000", L"2000",  L"5000",
                                        L"6000", L"abc",  L"ABC",  L" 4711", L"",
                                        L"nope", L"9999", L"   ",  L"'1\""};
inline const std::wstring kLinked[] = {L"4711", L"4711", L"4711", L"4712", L"1000", L"2000",
                                       L"5000", L"6000", L"ABC",  L"abc",  L""};
inline const std::wstring kQuantities[] = {
    L"1",     L"2", L"17",    L"1000",  L"0",   L"2,5", L"-",     L"1a",   L"-3", L"(5)",
    L"1e400", L"",  L"0,125", L"1.2.3", L"12-", L"7 ",  L"1e307", L"1e12", L"99"};
inline const std::wstring kTexts[] = {
    L"a", L"bitte rasch", L"", L"mit\tTab", L"eine Beschreibung von mehr als 25 Zeichen",
    L"1", L"x  "};

// A file with lines that are doubled, unknown, empty or wrong, or one with none of these.
inline std::string RandomBasketFile(Dice& dice) {
    static const std::string kLines[] = {"4711\t\t2\t\t\tSeite\tu",
                                         "4712\t\t1",
                                         "1000\t\t0,5",
                                         "8888\t\t3",
                                         "\tfrei",
                                         "",
                                         "4711\t\t5",
                                         "4711\t\t1",
                                         "6000\tx\t3\t\t\tK",
                                         "2000\t\t4",
                                         "nope",
                                         "\tmit\rUmbruch"};
    std::string bytes = dice.Below(3) == 0 ? "" : "DemoVexClient.Client\r\n";
    const bool clean = dice.Below(2) == 0;
    for (int lines = dice.Below(9); lines > 0; --lines) {
        if (clean) {
            bytes += kLines[lines % 2 == 0 ? 1 : 2] + "\r\n";
        } else if (dice.Below(12) == 0) {
            bytes += dice.Below(2) == 0 ? "4712\t\tviele\r\n" : "9999\t\t1\r\n";
        } else {
            bytes += dice.Of(kLines) + "\r\n";
        }
    }
    return bytes;
}

}  // namespace demovex
