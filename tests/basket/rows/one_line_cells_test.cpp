// Nothing that comes from outside puts a control character into a cell.
#include <gtest/gtest.h>

#include <algorithm>

#include "base/one_line.h"
#include "tests/support/basket_fixture.h"

namespace demovex {
namespace {

using namespace std::string_literals;
using View = FakeBasketView;

class OneLineCells : public ::testing::Test {
  protected:
    void ExpectNoControls() {
        for (std::int32_t row = 0; row < basket.grid.Rows(); ++row) {
            for (std::int32_t col = 0; col < basket.grid.Cols(); ++col) {
                EXPECT_FALSE(HasControls(basket.grid.TextMatrix(row, col))) << row << "," << col;
            }
        }
    }
    BasketFixture basket;
};

TEST_F(OneLineCells, ALinksTextsForgeNoLines) {
    basket.Link(L"4711", 1, L"Seite\t\r\n6000\t\t9999", L"u\0v\x7Fw"s);
    ExpectNoControls();
    EXPECT_EQ(basket.Cell(1, column::kKatalog), L"Seite   6000  9999");
    EXPECT_EQ(basket.Cell(1, column::kKatalogUrl), L"u v w");
    EXPECT_EQ(RaisedBy([&] { basket.Link(L"47\t11\r\n4712"); }), 13);
    ExpectNoControls();
    basket.file_dialogs.Choose(L"C:\\Basket\\a.bsk");
    basket.form.Run(Command::mnuDateiSpeichern);
    const std::string& saved = basket.files.At(L"C:\\Basket\\a.bsk").bytes;
    EXPECT_EQ(std::count(saved.begin(), saved.end(), '\n'), 3) << saved;
}

TEST_F(OneLineCells, ANumberWithANulInItIsNoOther) {
    EXPECT_EQ(RaisedBy([&] { basket.Link(L"47\0"s + L"11"); }), 13);
    EXPECT_EQ(basket.Cell(1, column::kArtNr), L"47 11");
    // the same link again meets the same number
    EXPECT_FALSE([&] {
        try {
            return basket.Link(L"47\0"s + L"11");
        } catch (const Error&) {
            return false;
        }
    }());
    EXPECT_EQ(basket.Lines(), 1);
}

TEST_F(OneLineCells, AFilesFieldsBecomeOneLineTexts) {
    basket.files.Put(L"C:\\Basket\\a.bsk",
                     "4711\t\t2\t\t\tKata\rlog\tu\nv\r\n"
                     "\tfrei\0er Text\x01\r\n"
                     "47\0"
                     "12\t\t3\n4\r\n"s);
    basket.form.Load(L"C:\\Basket\\a.bsk");
    ExpectNoControls();
    EXPECT_EQ(basket.Cell(1, column::kKatalog), L"Kata log");
    EXPECT_EQ(basket.Cell(1, column::kKatalogUrl), L"u v");
    EXPECT_EQ(basket.Cell(2, column::kBezeichnung), L"frei er Text ");
    ASSERT_EQ(basket.messages.shown.size(), 1u);
    EXPECT_TRUE(basket.messages.shown[0].text.ends_with(L"\r\n\r\n47 12 (3 4)"));
}

TEST_F(OneLineCells, AQuantityWithANulEndsTheLoadAndItsCellHasNone) {
    basket.files.Put(L"C:\\Basket\\a.bsk", "4711\t\ta\0b\r\n"s);
    EXPECT_EQ(RaisedBy([&] { basket.form.Load(L"C:\\Basket\\a.bsk"); }), -1);
    EXPECT_EQ(basket.Cell(1, column::kMenge), L"a b");
    basket.form.Run(Command::mnuDateiSendenanZwischenablage);
    EXPECT_EQ(basket.clipboard.text.find(L'\0'), std::wstring::npos);
}

TEST_F(OneLineCells, TheArticleMastersTextsBecomeOneLine) {
    BasketFixture other(FakeLocale::kAustria, false);
    other.files.Put(BasketFixture::ArticlePath(),
                    ArticleFile({{"4711", "Eau\tde\0Cologne\n!"s, "1\x01"}}));
    other.form.Initialize();
    other.Link(L"4711");
    EXPECT_EQ(other.Cell(1, column::kBezeichnung), L"Eau de Cologne !");
    EXPECT_EQ(other.Cell(1, column::kPreisAts), L"1,00");
}

TEST_F(OneLineCells, PastedTextAndTextThatIsSetBecomeOneLine) {
    basket.Link(L"");
    basket.Click(1, column::kBezeichnung);
    basket.view.Paste(L"a\tb\r\nc\x7F");
    basket.form.CommitCellEdit();
    EXPECT_EQ(basket.Cell(1, column::kBezeichnung), L"a b  c ");
    basket.Click(1, column::kArtNr);
    basket.view.SetText(L"no\tpe");
    basket.Press(View::kReturn);
    ASSERT_EQ(basket.messages.shown.size(), 1u);
    EXPECT_EQ(basket.messages.shown[0].text, L"'no pe' ist keine gültige Artikelnummer");
    EXPECT_EQ(basket.Cell(1, column::kArtNr), L"");
    ExpectNoControls();
}

}  // namespace
}  // namespace demovex
