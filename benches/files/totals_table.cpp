#include "benches/files/totals_table.h"

#include <sqlite3.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstdlib>
#include <utility>

namespace demovex {

#ifndef SQLITE_MISSING

struct TotalsTable::Engine {
    sqlite3* database = nullptr;
    sqlite3_stmt* insert = nullptr;
    sqlite3_stmt* insert_plain = nullptr;

    void Must(bool right) const {
        if (right) return;
        std::printf("the database refuses: %s\n", sqlite3_errmsg(database));
        std::exit(1);
    }
    void Run(const char* sql) const {
        Must(sqlite3_exec(database, sql, nullptr, nullptr, nullptr) == SQLITE_OK);
    }
    sqlite3_stmt* Prepare(const char* sql) const {
        sqlite3_stmt* statement = nullptr;
        Must(sqlite3_prepare_v2(database, sql, -1, &statement, nullptr) == SQLITE_OK);
        return statement;
    }
    double Number(const char* sql) const;
    static void Bind(sqlite3_stmt* statement, int index, std::string_view text) {
        sqlite3_bind_text(statement, index, text.data(), static_cast<int>(text.size()), nullptr);
    }
};

bool TotalsTable::Available() {
    return true;
}

std::string TotalsTable::Name() {
    return std::string("SQLite ") + sqlite3_libversion();
}

TotalsTable::TotalsTable(const std::vector<Article>& articles)
    : engine_(std::make_unique<Engine>()) {
    Engine& e = *engine_;
    e.Must(sqlite3_open(":memory:", &e.database) == SQLITE_OK);
    e.Run(
        "PRAGMA journal_mode = OFF;"
        "CREATE TABLE article(nr TEXT PRIMARY KEY, bezeichnung TEXT, ats REAL) WITHOUT ROWID;"
        "CREATE TABLE totals(ats REAL, euro REAL);"
        "INSERT INTO totals VALUES(0, 0);"
        "CREATE TABLE basket(id INTEGER PRIMARY KEY, artnr TEXT, bezeichnung TEXT, menge INTEGER,"
        " ats REAL, euro REAL, katalog TEXT, url TEXT, gesamt_ats REAL, gesamt_euro REAL);"
        "CREATE TRIGGER sum AFTER INSERT ON basket BEGIN"
        " UPDATE totals SET ats = ats + new.gesamt_ats, euro = euro + new.gesamt_euro; END;"
        "CREATE TABLE plain_totals(ats REAL, euro REAL);"
        "INSERT INTO plain_totals VALUES(0, 0);"
        "CREATE TABLE plain(id INTEGER PRIMARY KEY, artnr TEXT, bezeichnung TEXT, menge TEXT,"
        " ats TEXT, euro TEXT, katalog TEXT, url TEXT, gesamt_ats TEXT, gesamt_euro TEXT);"
        "CREATE TRIGGER plain_sum AFTER INSERT ON plain BEGIN UPDATE plain_totals SET"
        " ats = ats + replace(replace(new.gesamt_ats, '.', ''), ',', '.'),"
        " euro = euro + replace(replace(new.gesamt_euro, '.', ''), ',', '.'); END;"
        "BEGIN");
    sqlite3_stmt* add = e.Prepare("INSERT INTO article VALUES(?1, ?2, ?3)");
    for (const Article& article : articles) {
        Engine::Bind(add, 1, article.number);
        Engine::Bind(add, 2, article.description);
        sqlite3_bind_double(add, 3, article.price);
        e.Must(sqlite3_step(add) == SQLITE_DONE);
        sqlite3_reset(add);
    }
    sqlite3_finalize(add);
    e.Run("COMMIT");
    e.insert = e.Prepare(
        "INSERT INTO basket(artnr, bezeichnung, menge, ats, euro, katalog, url, gesamt_ats,"
        " gesamt_euro) SELECT ?1, bezeichnung, ?2, ats, round(ats / 13.7603, 2), ?3, ?4, ?2 * ats,"
        " ?2 * round(ats / 13.7603, 2) FROM article WHERE nr = ?1");
    e.insert_plain = e.Prepare(
        "INSERT INTO plain(artnr, bezeichnung, menge, ats, euro, katalog, url, gesamt_ats,"
        " gesamt_euro) VALUES(?1, ?2, ?3, ?4, ?5, ?6, ?7, ?8, ?9)");
}

TotalsTable::~TotalsTable() {
    sqlite3_finalize(engine_->insert);
    sqlite3_finalize(engine_->insert_plain);
    sqlite3_close(engine_->database);
}

namespace {

// A basket file's lines after the first, in tab-separated fields; missing ones are empty.
template <class Action>
void ForEachLine(std::string_view file, Action action) {
    bool header = true;
    for (std::size_t at = 0; at < file.size();) {
        const std::size_t end = std::min(file.find("\r\n", at), file.size());
        std::array<std::string_view, 9> fields{};
        std::size_t begin = at;
        for (std::string_view& field : fields) {
            if (begin > end) break;
            const std::size_t tab = std::min(file.find('\t', begin), end);
            field = file.substr(begin, tab - begin);
            begin = tab + 1;
        }
        at = end + 2;
        if (!std::exchange(header, false)) action(fields);
    }
}

}  // namespace

void TotalsTable::Load(std::string_view file) {
    Engine& e = *engine_;
    e.Run("BEGIN; DELETE FROM basket; UPDATE totals SET ats = 0, euro = 0");
    ForEachLine(file, [&e](const auto& fields) {
        Engine::Bind(e.insert, 1, fields[0]);
        sqlite3_bind_int(e.insert, 2, std::atoi(std::string(fields[2]).c_str()));
        Engine::Bind(e.insert, 3, fields[5]);
        Engine::Bind(e.insert, 4, fields[6]);
        e.Must(sqlite3_step(e.insert) == SQLITE_DONE);
        sqlite3_reset(e.insert);
    });
    e.Run("COMMIT");
}

void TotalsTable::LoadPlain(std::string_view file) {
    Engine& e = *engine_;
    e.Run("DELETE FROM plain; UPDATE plain_totals SET ats = 0, euro = 0");
    ForEachLine(file, [&e](const auto& fields) {
        for (std::size_t i = 0; i < fields.size(); ++i) {
            Engine::Bind(e.insert_plain, static_cast<int>(i) + 1, fields[i]);
        }
        e.Must(sqlite3_step(e.insert_plain) == SQLITE_DONE);
        sqlite3_reset(e.insert_plain);
    });
}

double TotalsTable::Engine::Number(const char* sql) const {
    sqlite3_stmt* read = Prepare(sql);
    Must(sqlite3_step(read) == SQLITE_ROW);
    const double number = sqlite3_column_double(read, 0);
    sqlite3_finalize(read);
    return number;
}

double TotalsTable::Total() {
    return engine_->Number("SELECT ats FROM totals");
}

double TotalsTable::PlainTotal() {
    return engine_->Number("SELECT ats FROM plain_totals");
}

#else

struct TotalsTable::Engine {};

bool TotalsTable::Available() {
    return false;
}
std::string TotalsTable::Name() {
    return "";
}
TotalsTable::TotalsTable(const std::vector<Article>&) {}
TotalsTable::~TotalsTable() = default;
void TotalsTable::Load(std::string_view) {
    std::abort();  // not available
}
void TotalsTable::LoadPlain(std::string_view) {
    std::abort();
}
double TotalsTable::Total() {
    std::abort();
}
double TotalsTable::PlainTotal() {
    std::abort();
}

#endif

}  // namespace demovex
