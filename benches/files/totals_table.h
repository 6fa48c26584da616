// The alternative to a basket of our own: a table in a database in memory, with a trigger that
// keeps the totals and an indexed table of articles to take descriptions and prices from. Without
// the engine's source (see cmake/sqlite.cmake) there is none.
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
    // The sum in schillings, to check that all lines are there.
    double Total();

  private:
    struct Engine;
    std::unique_ptr<Engine> engine_;
};

}  // namespace demovex
