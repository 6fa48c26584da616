// The user changes the number format while a basket is open.
#include <gtest/gtest.h>

#include "tests/support/basket_fixture.h"

namespace demovex {
namespace {

class NumberFormatChange : public ::testing::Test {
  protected:
    NumberFormatChange() {
        basket.Link(L"6000", 10);  // 1.234.567,80
        basket.Link(L"1000", 3);   // 10,50
    }
    void ChangeTo(FakeLocale locale) {
        basket.form.NumberFormatChanged([&] { basket.text.SetLocale(locale); });
    }
    std::wstring Ats() const { return basket.Total(column::kGesamtAts); }

    BasketFixture basket{FakeLocale::kGermany};
};

TEST_F(NumberFormatChange, AmountsAreRewrittenFromTheirOldValues) {
    ChangeTo(FakeLocale::kUnitedStates);
    EXPECT_EQ(basket.Cell(1, column::kPreisAts), L"123,456.78");
    EXPECT_EQ(basket.Cell(1, column::kPreisEuro), L"8,971.95");
    EXPECT_EQ(basket.Cell(1, column::kGesamtAts), L"1,234,567.80");
    EXPECT_EQ(basket.Cell(1, column::kGesamtEuro), L"89,719.50");
    EXPECT_EQ(basket.Cell(2, column::kPreisAts), L"3.50");
    EXPECT_EQ(Ats(), L"1,234,578.30");
    EXPECT_EQ(basket.Total(column::kGesamtEuro), L"89,720.25");
    EXPECT_EQ(basket.Cell(1, column::kMenge), L"10");
}

TEST_F(NumberFormatChange, SumsStayRightForWhateverComesAfter) {
    ChangeTo(FakeLocale::kUnitedStates);
    basket.Link(L"2000", 2);
    EXPECT_EQ(RaisedBy([&] { basket.form.CommitCellEdit(); }), 0);
    basket.Select(1, 1, 1, 1);
    basket.form.Run(Command::mnuEditZeilenLöschen);
    EXPECT_EQ(basket.Lines(), 2);
    basket.Click(1, column::kMenge);
    basket.TypeOver(L"4");
    basket.form.CommitCellEdit();
    EXPECT_EQ(basket.Cell(1, column::kGesamtAts), L"14.00");
    basket.Select(1, 1, 2, 1);
    basket.form.Run(Command::mnuEditZeilenLöschen);
    EXPECT_EQ(Ats(), L"");
}

TEST_F(NumberFormatChange, ThereAndBackIsWhatItWas) {
    const std::string before = basket.AsText();
    ChangeTo(FakeLocale::kUnitedStates);
    EXPECT_NE(basket.AsText(), before);
    ChangeTo(FakeLocale::kGermany);
    EXPECT_EQ(basket.AsText(), before);
}

TEST_F(NumberFormatChange, TheModifiedFlagAndTheArticleMasterAreLeftAlone) {
    basket.files.Put(L"C:\\Basket\\a.bsk", "6000\t\t2\r\n");
    basket.form.Load(L"C:\\Basket\\a.bsk");
    basket.files.ClearOperations();
    ChangeTo(FakeLocale::kUnitedStates);
    EXPECT_FALSE(basket.form.Modified());
    EXPECT_TRUE(basket.files.Operations().empty());
    EXPECT_EQ(Ats(), L"246,913.56");
    EXPECT_TRUE(basket.messages.shown.empty());
}

TEST_F(NumberFormatChange, AQuantityKeepsItsValueAndItsTextWhereThatStillMeansIt) {
    const auto type = [&](std::int32_t row, const wchar_t* quantity) {
        basket.Click(row, column::kMenge);
        basket.TypeOver(quantity);
        basket.form.CommitCellEdit();
    };
    type(1, L"2,5");
    type(2, L"007");
    ChangeTo(FakeLocale::kUnitedStates);
    EXPECT_EQ(basket.Cell(1, column::kMenge), L"2.5");
    EXPECT_EQ(basket.Cell(2, column::kMenge), L"007");
    EXPECT_EQ(basket.Cell(1, column::kGesamtAts), L"308,641.95");
    EXPECT_FALSE(basket.Link(L"1000"));  // merged: the line is reckoned anew
    EXPECT_EQ(Ats(), L"308,669.95");
    basket.form.RefreshArtikel(1, -1);
    EXPECT_EQ(basket.Cell(1, column::kGesamtAts).substr(0, 3), L"30,");  // the master's own comma
}

TEST_F(NumberFormatChange, AQuantityThatIsBeingTypedKeepsItsValue) {
    basket.Click(2, column::kMenge);
    basket.TypeOver(L"1,5");
    ChangeTo(FakeLocale::kUnitedStates);
    ASSERT_TRUE(basket.view.EditorOpen());
    EXPECT_EQ(basket.view.text, L"1.5");
    EXPECT_EQ(basket.form.State().LastValidText, L"1.5");
    EXPECT_EQ(basket.view.sel_start, 3);
    basket.form.CommitCellEdit();
    EXPECT_EQ(basket.Cell(2, column::kGesamtAts), L"5.25");
}

TEST_F(NumberFormatChange, AQuantityThatIsBeingTypedStaysAsTypedWhereThatMeansTheSame) {
    basket.Click(2, column::kMenge);
    basket.TypeOver(L"007");
    basket.view.Select(1, 1);
    ChangeTo(FakeLocale::kUnitedStates);
    EXPECT_EQ(basket.view.text, L"007");
    EXPECT_EQ(basket.view.sel_start, 1);
    EXPECT_EQ(basket.view.sel_length, 1);
}

TEST_F(NumberFormatChange, LinesThatAreIncompleteStayAsTheyAre) {
    EXPECT_EQ(RaisedBy([&] { basket.Link(L"nope"); }), 13);
    ChangeTo(FakeLocale::kUnitedStates);
    for (const std::int32_t col : {3, 4, 5, 8, 9}) EXPECT_EQ(basket.Cell(3, col), L"") << col;
    EXPECT_EQ(Ats(), L"1,234,578.30");
    basket.Select(3, 1, 3, 1);
    basket.form.Run(Command::mnuEditZeilenLöschen);
    EXPECT_EQ(Ats(), L"1,234,578.30");
}

TEST_F(NumberFormatChange, ABasketWithoutItsTotalsRowIsRewrittenAsItStands) {
    basket.files.Put(L"C:\\Basket\\d.bsk", "6000\t\t1\r\n6000\t\t1\r\n1000\t\t2\r\n");
    basket.form.Load(L"C:\\Basket\\d.bsk");
    ASSERT_EQ(basket.grid.Rows(), 3);
    ChangeTo(FakeLocale::kUnitedStates);
    ASSERT_EQ(basket.grid.Rows(), 3);
    EXPECT_EQ(basket.Cell(1, column::kGesamtAts), L"3.50");
    EXPECT_EQ(basket.Cell(2, column::kPreisAts), L"123,456.78");
    EXPECT_EQ(basket.Cell(2, column::kGesamtAts), L"3.50");
    basket.form.Run(Command::mnuDateiSpeichern);
    EXPECT_EQ(basket.Cell(2, column::kGesamtAts), L"246,913.56");
    EXPECT_EQ(Ats(), L"246,917.06");
}

TEST_F(NumberFormatChange, BeforeTheBasketIsSetUpOnlyTheServiceChanges) {
    BasketFixture early(FakeLocale::kGermany, false);
    early.form.NumberFormatChanged([&] { early.text.SetLocale(FakeLocale::kUnitedStates); });
    early.form.Initialize();
    early.Link(L"4711");
    EXPECT_EQ(early.Total(column::kGesamtAts), L"100.00");
}

TEST_F(NumberFormatChange, SeparatorsThatCannotBeUsedAreToldInTheNote) {
    EXPECT_EQ(basket.view.note, L"");
    basket.form.NumberFormatChanged([&] { basket.text.own_format = false; });
    EXPECT_EQ(basket.view.note,
              L"Im eingestellten Zahlenformat ist ein Trennzeichen eine Ziffer; es gilt das "
              L"übliche");
    BasketFixture another(FakeLocale::kGermany, false);
    another.text.own_format = false;
    another.form.Initialize();
    EXPECT_EQ(another.view.note, basket.view.note);
}

}  // namespace
}  // namespace demovex
