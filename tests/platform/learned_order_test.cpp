// A collation that is learned, from sort keys that are made up here.
#include "platform/learned_order.h"

#include <gtest/gtest.h>

#include <cwctype>
#include <string>

namespace demovex {
namespace {

// Sort keys as the system writes them. `contraction` sorts as one letter of its own, in any case;
// `twofold` has a second weight.
struct Keys {
    std::wstring contraction;
    wchar_t twofold = 0;
    wchar_t accented = 0;
    bool hyphen_has_weight = false;
    int asked = 0;

    std::string operator()(std::wstring_view text) {
        ++asked;
        std::string weights, accents, places;
        for (std::size_t i = 0; i < text.size(); ++i) {
            std::wstring ahead(text.substr(i, contraction.size()));
            for (wchar_t& c : ahead) c = static_cast<wchar_t>(std::towlower(c));
            const wchar_t c = static_cast<wchar_t>(std::towlower(text[i]));
            if (!contraction.empty() && ahead == contraction) {
                weights += "\x0E\xFE";
                i += contraction.size() - 1;
            } else if (c == L'-' && !hyphen_has_weight) {
                places += "\x80\x07\x06\x82";
            } else {
                weights += c >= L'a' ? '\x0E' : c >= L'0' && c <= L'9' ? '\x0C' : '\x07';
                weights += static_cast<char>(c);
                if (c == twofold) weights += "\x0E\x70";
                if (c == accented) accents += '\x02';
            }
        }
        return weights + '\1' + accents + "\1\1\1" + places;
    }
};

struct LearnedOrderTest : ::testing::Test {
    Keys keys;
    LearnedOrder order{[this](std::wstring_view text) { return keys(text); }};
};

TEST_F(LearnedOrderTest, LettersInBothCasesDigitsAndSignsSortByTheirWeights) {
    EXPECT_EQ(order.Compare(L"KB-1", L"kc-1"), -1);
    EXPECT_EQ(order.Compare(L"kb/1", L"KB/1"), 0);
    EXPECT_EQ(order.Compare(L"z", L"1"), 1);
    EXPECT_EQ(order.Compare(L"a.b", L"a b"), 1);
    EXPECT_EQ(order.Compare(L"ab", L"abc"), -1);
    EXPECT_EQ(order.Compare(L"abc", L"AB"), 1);
    EXPECT_EQ(order.Compare(L"", L""), 0);
}

TEST_F(LearnedOrderTest, NothingIsAskedAgain) {
    order.Compare(L"a", L"b");
    const int asked = keys.asked;
    EXPECT_GT(asked, 0);
    order.Compare(L"x", L"y");
    EXPECT_EQ(keys.asked, asked);
    order.Forget();
    order.Compare(L"x", L"y");
    EXPECT_GT(keys.asked, asked);
}

TEST_F(LearnedOrderTest, HyphensArePassedOverAndDecideNothing) {
    EXPECT_EQ(order.Compare(L"co-op", L"coox"), -1);
    EXPECT_EQ(order.Compare(L"a-b-c", L"ab-d"), -1);
    EXPECT_EQ(order.Compare(L"a-b", L"A-B"), 0);
    EXPECT_EQ(order.Compare(L"a-b", L"ab"), std::nullopt);
    EXPECT_EQ(order.Compare(L"a-bc", L"ab-c"), std::nullopt);
    EXPECT_EQ(order.Compare(L"-", L""), std::nullopt);
    EXPECT_EQ(order.Compare(L"--a", L"-a"), std::nullopt);
    EXPECT_EQ(order.Compare(L"-b", L"a"), 1);
}

TEST_F(LearnedOrderTest, AHyphenWithAWeightOfItsOwnIsTheSystems) {
    keys.hyphen_has_weight = true;
    EXPECT_EQ(order.Compare(L"a-b", L"a-c"), std::nullopt);
    EXPECT_EQ(order.Compare(L"ab", L"ac"), -1);
}

TEST_F(LearnedOrderTest, ACharacterThatIsNotKnownIsTheSystemsEvenBehindADifference) {
    EXPECT_EQ(order.Compare(L"a", L"\u00E4"), std::nullopt);
    EXPECT_EQ(order.Compare(L"ab", L"b\u0308"), std::nullopt);
    EXPECT_EQ(order.Compare(L"b+", L"a"), std::nullopt);
    EXPECT_EQ(order.Compare(L"a", std::wstring_view(L"b\0", 2)), std::nullopt);
}

TEST_F(LearnedOrderTest, ALanguageThatContractsAnyTwoOrThreeLettersIsRefused) {
    for (const wchar_t* contraction : {L"aa", L"ch", L"zz", L"chj", L"dzs", L"zza", L"azz"}) {
        keys.contraction = contraction;
        order.Forget();
        EXPECT_EQ(order.Compare(L"a", L"b"), std::nullopt) << keys.contraction.size();
    }
}

TEST_F(LearnedOrderTest, AContractionOfALetterWithASignIsRefused) {
    for (const wchar_t* contraction : {L"l.", L" a", L"z ", L"9z", L"0a"}) {
        keys.contraction = contraction;
        order.Forget();
        EXPECT_EQ(order.Compare(L"a", L"b"), std::nullopt);
    }
}

TEST_F(LearnedOrderTest, ALetterWithTwoWeightsOrAnAccentIsRefused) {
    keys.twofold = L'w';
    EXPECT_EQ(order.Compare(L"a", L"b"), std::nullopt);
    keys.twofold = 0;
    keys.accented = L'y';
    order.Forget();
    EXPECT_EQ(order.Compare(L"a", L"b"), std::nullopt);
    keys.accented = 0;
    order.Forget();
    EXPECT_EQ(order.Compare(L"a", L"b"), -1);
}

TEST(LearnedOrder, ASystemWithoutSortKeysIsAskedEachTime) {
    LearnedOrder order([](std::wstring_view) { return std::string(); });
    EXPECT_EQ(order.Compare(L"a", L"b"), std::nullopt);
}

TEST(LearnedOrder, AnErrorWhileLearningLeavesTheAnswersToTheSystem) {
    LearnedOrder order([](std::wstring_view) -> std::string { throw 7; });
    EXPECT_THROW(order.Compare(L"a", L"b"), int);
    EXPECT_EQ(order.Compare(L"a", L"b"), std::nullopt);
}

}  // namespace
}  // namespace demovex
