#include "catalog/artikel_record.h"

#include <gtest/gtest.h>

#include <array>
#include <string>

namespace demovex {
namespace {

TEST(ArtikelRecord, IsBlankAtFirst) {
    const ArtikelRecord record;
    EXPECT_EQ(record.TrimmedNr(), "");
    EXPECT_EQ(record.TrimmedBezeichnung(), "");
    EXPECT_EQ(record.TrimmedPreis(), "");
    EXPECT_EQ(record.Nr[9], ' ');
    EXPECT_EQ(record.Preis[0], ' ');
    EXPECT_EQ(record.LineEnd, (std::array<char, 2>{'\r', '\n'}));
}

TEST(ArtikelRecord, TakesItsFieldsByPlace) {
    ArtikelRecord record;
    record.Assign("0123456789abcdefghijabcdefghijabcdefghij000000000123");
    EXPECT_EQ(record.TrimmedNr(), "0123456789");
    EXPECT_EQ(record.TrimmedBezeichnung(), "abcdefghijabcdefghijabcdefghij");
    EXPECT_EQ(record.TrimmedPreis(), "000000000123");
}

TEST(ArtikelRecord, StripsBlanksAndNothingElse) {
    ArtikelRecord record;
    std::string line(ArtikelRecord::kTextSize, ' ');
    line.replace(2, 5, "47 11");
    line.replace(10, 10, "\t Hammer \xA0");
    line.replace(42, 8, "1 000,50");
    record.Assign(line);
    EXPECT_EQ(record.TrimmedNr(), "47 11");
    EXPECT_EQ(record.TrimmedBezeichnung(), "\t Hammer \xA0");
    EXPECT_EQ(record.TrimmedPreis(), "1 000,50");
}

}  // namespace
}  // namespace demovex
