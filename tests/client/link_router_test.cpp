#include "client/link_router.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>

#include "tests/support/fake_text_service.h"

namespace demovex {
namespace {

const std::wstring kPrefix(kBasketPrefix);

std::optional<std::wstring_view> Product(std::wstring_view url) {
    static const FakeTextService text;
    return ProductNumber(url, text);
}

TEST(OrderLinks, ThePrefixEndsInTheProductNumbersName) {
    EXPECT_EQ(kPrefix, L"http://www.vexmart.example/vex/basket.html?prodno=");
}

TEST(OrderLinks, WhatFollowsThePrefixIsTheProductNumber) {
    EXPECT_EQ(Product(kPrefix + L"4711"), L"4711");
}

TEST(OrderLinks, ThePrefixInCapitalsIsAccepted) {
    std::wstring capitals = kPrefix;
    std::transform(capitals.begin(), capitals.end(), capitals.begin(), [](wchar_t c) {
        return c >= L'a' && c <= L'z' ? static_cast<wchar_t>(c - 32) : c;
    });
    EXPECT_EQ(Product(capitals + L"4711"), L"4711");
}

TEST(OrderLinks, TheProductNumberKeepsItsCaseBlanksAndEscapes) {
    EXPECT_EQ(Product(kPrefix + L" aB%20c&x=1 "), L" aB%20c&x=1 ");
}

TEST(OrderLinks, ThePrefixAloneOrdersTheEmptyNumber) {
    EXPECT_EQ(Product(kPrefix), L"");
}

TEST(OrderLinks, OtherSitesPathsAndShorterLinksAreNotOrders) {
    EXPECT_FALSE(Product(L""));
    EXPECT_FALSE(Product(kPrefix.substr(0, kPrefix.size() - 1)));
    EXPECT_FALSE(Product(L"http://www.other.example/vex/basket.html?prodno=4711"));
    EXPECT_FALSE(Product(L"http://www.vexmart.example/vex/katalog.html?prodno=4711"));
    EXPECT_FALSE(Product(L" " + kPrefix + L"4711"));
    EXPECT_FALSE(Product(L"https://www.vexmart.example/vex/basket.html?prodno=4711"));
}

TEST(OrderLinks, AVeryLongLinkIsTakenWhole) {
    const std::wstring number(100'000, L'7');
    EXPECT_EQ(Product(kPrefix + number), number);
    EXPECT_FALSE(Product(std::wstring(100'000, L'h')));
}

TEST(OrderLinks, ANulInTheNumberIsPartOfIt) {
    const std::wstring number(
        L"47\0"
        L"11",
        5);
    EXPECT_EQ(Product(kPrefix + number), number);
}

}  // namespace
}  // namespace demovex
