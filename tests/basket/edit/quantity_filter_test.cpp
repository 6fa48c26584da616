#include <gtest/gtest.h>

#include "tests/support/cell_editor_fixture.h"

namespace demovex {
namespace {

using View = FakeBasketView;

class QuantityFilter : public CellEditorTest {
  protected:
    QuantityFilter() {
        basket.Click(1, column::kMenge);
        basket.view.Type(L"1");
    }
};

TEST_F(QuantityFilter, ALetterIsUndoneAndTypingGoesOnBehindTheDigits) {
    basket.view.Type(L"a");
    EXPECT_EQ(basket.view.text, L"1");
    basket.view.Type(L"2");
    EXPECT_EQ(basket.view.text, L"12");
}

TEST_F(QuantityFilter, DeletingTheLastDigitRestoresIt) {
    basket.view.Press(View::kBack);
    EXPECT_EQ(basket.view.text, L"1");
    basket.view.Press(View::kHome);
    basket.view.Press(View::kDelete);
    EXPECT_EQ(basket.view.text, L"1");
}

TEST_F(QuantityFilter, WhatReadsAsANumberInTheUsersLocaleIsTaken) {
    for (const wchar_t* pasted : {L"1\u00A0234,5", L"(5)", L" 7 ", L"-3", L"1e3", L"12-"}) {
        basket.TypeOver(L"1");
        basket.view.Select(0, 1);
        basket.view.Paste(pasted);
        EXPECT_EQ(basket.view.text, pasted);
    }
}

TEST_F(QuantityFilter, WhatDoesNotIsUndone) {
    for (const std::wstring& pasted :
         {std::wstring(L"1a"), std::wstring(L"-"), std::wstring(L"1e400"), std::wstring(L"1,2,3"),
          std::wstring(), std::wstring(L"zehn"), std::wstring(L"1\r\n2"),
          std::wstring(10000, L'x')}) {
        basket.view.Select(0, 1);
        basket.view.Paste(pasted);
        EXPECT_EQ(basket.view.text, L"1") << pasted.size();
    }
}

TEST_F(QuantityFilter, TenThousandDigitsAreTooLargeANumber) {
    basket.view.Select(0, 1);
    basket.view.Paste(std::wstring(10000, L'9'));
    EXPECT_EQ(basket.view.text, L"1");
}

TEST_F(QuantityFilter, TheGermanThousandsPointIsReadInGerman) {
    BasketFixture german(FakeLocale::kGermany);
    german.Link(L"4711");
    german.Click(1, column::kMenge);
    german.view.Paste(L"1.234,5");
    EXPECT_EQ(german.view.text, L"1.234,5");
    german.Press(View::kReturn);
    EXPECT_EQ(german.Total(column::kGesamtAts), L"123.450,00");
    EXPECT_EQ(german.Cell(1, column::kMenge), L"1.234,5");
}

TEST_F(QuantityFilter, ANegativeQuantityIsANumber) {
    basket.view.Select(0, 1);
    basket.view.Paste(L"(5)");
    basket.Press(View::kReturn);
    EXPECT_EQ(basket.Cell(1, column::kGesamtAts), L"-500,00");
    EXPECT_EQ(basket.Total(column::kGesamtAts), L"-500,00");
}

TEST_F(QuantityFilter, AProductBeyondAllNumbersRaisesOverflowAndKeepsTheText) {
    basket.view.Select(0, 1);
    basket.view.Paste(L"1e307");
    EXPECT_EQ(RaisedBy([&] { basket.Press(View::kReturn); }), 6);
    EXPECT_EQ(basket.Cell(1, column::kMenge), L"1e307");
    EXPECT_EQ(basket.Cell(1, column::kGesamtAts), L"300,00");
    EXPECT_FALSE(basket.view.EditorOpen());
    basket.Click(2, column::kArtNr);
    basket.Click(1, column::kMenge);
    basket.TypeOver(L"1");
    basket.view.Select(0, 5);
    basket.view.Paste(L"4");
    basket.Press(View::kReturn);
    EXPECT_EQ(basket.Total(column::kGesamtAts), L"400,00");
}

TEST_F(QuantityFilter, AQuantityThatTheTextBoxCannotHoldIsEditedAsFarAsItCan) {
    basket.Click(1, column::kPreisAts);
    basket.grid.SetTextMatrix(1, column::kMenge, std::wstring_view(L"a\0b", 3));
    basket.Click(1, column::kMenge);
    ASSERT_TRUE(basket.view.EditorOpen());
    EXPECT_EQ(basket.view.text, L"a");
    EXPECT_EQ(basket.form.State().LastValidText, L"a");
    basket.view.Select(1, 0);
    basket.view.Type(L"1");
    EXPECT_EQ(basket.view.text, L"a");
    basket.view.Select(0, 1);
    basket.view.Type(L"7");
    EXPECT_EQ(basket.view.text, L"7");
    basket.Press(View::kReturn);
    EXPECT_EQ(basket.Total(column::kGesamtAts), L"700,00");
}

TEST_F(QuantityFilter, AQuantityWithALaterNulEndsThere) {
    basket.Click(1, column::kPreisAts);
    basket.grid.SetTextMatrix(1, column::kMenge, std::wstring_view(L"11\00001", 5));
    basket.Click(1, column::kMenge);
    EXPECT_EQ(basket.view.text, L"11");
    basket.view.Type(L"x");
    EXPECT_EQ(basket.view.text, L"11");
}

TEST_F(QuantityFilter, OtherColumnsTakeAnyText) {
    basket.Click(2, column::kBezeichnung);
    basket.view.Type(L"1a");
    EXPECT_EQ(basket.view.text, L"1a");
}

TEST_F(CellEditorTest, ADescriptionIsAtMostTwentyFiveCharacters) {
    basket.Click(2, column::kBezeichnung);
    basket.view.Paste(std::wstring(40, L'x'));
    EXPECT_EQ(basket.view.text.size(), 25u);
    basket.view.Type(L"y");
    EXPECT_EQ(basket.view.text, std::wstring(25, L'x'));
    basket.Click(2, column::kArtNr);
    EXPECT_EQ(basket.view.max_length, 0);
    basket.Click(1, column::kMenge);
    EXPECT_EQ(basket.view.max_length, 0);
}

TEST_F(CellEditorTest, ALongerDescriptionFromAFileIsNotCutByPassingOverIt) {
    const std::wstring text(40, L'x');
    basket.files.Put(L"C:\\Basket\\l.bsk",
                     "DemoVexClient.Client\r\n\t" + std::string(40, 'x') + "\r\n");
    basket.form.Load(L"C:\\Basket\\l.bsk");
    basket.Click(1, column::kBezeichnung);
    ASSERT_TRUE(basket.view.EditorOpen());
    basket.Click(1, column::kArtNr);
    EXPECT_EQ(basket.Cell(1, column::kBezeichnung), text);
}

}  // namespace
}  // namespace demovex
