// The alternatives to a basket of our own: a table in a database in memory, with a trigger that
// keeps the totals. Plain, the lines are inserted as they stand, each by itself; tuned, in one
// transaction, with descriptions and prices from an indexed table of articles. Without the engine's
// source (see cmake/sqlite.cmake) there is none.
#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace demovex {

class TotalsTable {
  public:
    struct Article {
        std::string number;
        std::string description;
        double price;
    };

    static bool Available();
    static std::string Name();

    explicit TotalsTable(const std::vector<Article>& articles);
    ~TotalsTable();

    // Replaces the basket by the lines of a basket file: a plain splitter takes them apart, one
    // statement, prepared once, looks the article up and inserts, all in one transaction.
    void Load(std::string_view file);
    // The same without articles: the nine fields of each line as texts, which the trigger reads the
    // line's total from.
    void LoadPlain(std::string_view file);
    // The sum in schillings after Load, to check that all lines are there.
    double Total();
    // The sum of the line totals that the file itself states, after LoadPlain.
    double PlainTotal();

  private:
    struct Engine;
    std::unique_ptr<Engine> engine_;
};

}  // namespace demovex
