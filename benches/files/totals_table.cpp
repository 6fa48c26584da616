#include "benches/files/totals_table.h"

#include <cstdio>
#include <cstdlib>

#include <sqlite3.h>

namespace demovex {

#ifndef SQLITE_MISSING

namespace {

void Must(bool right, sqlite3* database) {
    if (right) return;
    std::printf("the database refuses: %s\n", sqlite3_errmsg(database));
    std::exit(1);
}

}  // namespace

bool TotalsTable::Available() {
    return true;
}

std::string TotalsTable::Name() {
    return std::string("SQLite ") + sqlite3_libversion();
}

void TotalsTable::Insert(const std::vector<Line>& lines) {
    sqlite3* database = nullptr;
    Must(sqlite3_open(":memory:", &database) == SQLITE_OK, database);
    const char* const schema =
        "CREATE TABLE totals(ats REAL, euro REAL);"
        "INSERT INTO totals VALUES(0, 0);"
        "CREATE TABLE basket(id INTEGER PRIMARY KEY, artnr TEXT, bezeichnung TEXT, menge INTEGER,"
        " ats REAL, euro REAL, katalog TEXT, url TEXT, gesamt_ats REAL, gesamt_euro REAL);"
        "CREATE TRIGGER sum AFTER INSERT ON basket BEGIN"
        " UPDATE totals SET ats = ats + new.gesamt_ats, euro = euro + new.gesamt_euro; END;"
        "BEGIN";
    Must(sqlite3_exec(database, schema, nullptr, nullptr, nullptr) == SQLITE_OK, database);
    sqlite3_stmt* insert = nullptr;
    Must(sqlite3_prepare_v2(database,
                            "INSERT INTO basket(artnr, bezeichnung, menge, ats, euro, katalog, url,"
                            " gesamt_ats, gesamt_euro) VALUES(?1, ?2, ?3, ?4,"
                            " round(?4 / 13.7603, 2), ?5, ?6, ?3 * ?4,"
                            " ?3 * round(?4 / 13.7603, 2))",
                            -1, &insert, nullptr) == SQLITE_OK,
         database);
    const auto text = [insert](int index, const std::string& value) {
        sqlite3_bind_text(insert, index, value.data(), static_cast<int>(value.size()), nullptr);
    };
    for (const Line& line : lines) {
        text(1, line.number);
        text(2, line.description);
        sqlite3_bind_int(insert, 3, line.quantity);
        sqlite3_bind_double(insert, 4, line.price);
        text(5, line.catalog);
        text(6, line.url);
        Must(sqlite3_step(insert) == SQLITE_DONE, database);
        sqlite3_reset(insert);
    }
    sqlite3_finalize(insert);
    Must(sqlite3_exec(database, "COMMIT", nullptr, nullptr, nullptr) == SQLITE_OK, database);
    sqlite3_close(database);
}

#else

bool TotalsTable::Available() {
    return false;
}
std::string TotalsTable::Name() {
    return "";
}
void TotalsTable::Insert(const std::vector<Line>&) {
    std::abort();  // not available
}

#endif

}  // namespace demovex
