#include "tools/number_order.h"

#include <gtest/gtest.h>

#include <random>
#include <string>

#include "tools/encodings.h"

namespace demovex::tools {
namespace {

TEST(NumberOrder, IsQuickWhereEveryLocaleAgrees) {
    const auto order = [](const char* a, const char* b) { return QuickOrder(a, b); };
    EXPECT_EQ(order("4711", "4712"), -1);
    EXPECT_EQ(order("4711", "4711"), 0);
    EXPECT_EQ(order("47", "471"), -1);
    EXPECT_EQ(order("A10", "A9"), -1);
    EXPECT_EQ(order("10a", "105"), 1);
    EXPECT_EQ(order("", "a"), -1);
    // "ng" and "ch" are letters of their own somewhere, and case is no difference
    EXPECT_EQ(order("n1", "ng"), std::nullopt);
    EXPECT_EQ(order("c", "ch"), std::nullopt);
    EXPECT_EQ(order("a", "A"), std::nullopt);
    EXPECT_EQ(order("a", "b"), std::nullopt);
    EXPECT_EQ(order("1-2", "1-3"), std::nullopt);
    EXPECT_EQ(order("\xE4", "1"), std::nullopt);
}

TEST(NumberOrder, TheQuickWayAnswersAsTheSystemDoes) {
    std::mt19937 random(4711);
    constexpr std::string_view kCharacters = "0123456789abcxyzABCXYZ-. /\xE4\xDF";
    int known = 0;
    for (int i = 0; i < 50'000; ++i) {
        std::string texts[2];
        for (std::string& text : texts) {
            for (auto n = random() % 6; n > 0; --n) {
                // digits mostly
                text += kCharacters[random() % (random() % 3 == 0 ? kCharacters.size() : 10)];
            }
        }
        const auto quick = QuickOrder(texts[0], texts[1]);
        if (!quick) continue;
        ++known;
        const int asked = CompareNumbers(FromWindows1252(texts[0]), FromWindows1252(texts[1]));
        ASSERT_EQ(*quick, (asked > 0) - (asked < 0)) << texts[0] << " and " << texts[1];
    }
    EXPECT_GT(known, 10'000);
}

}  // namespace
}  // namespace demovex::tools
