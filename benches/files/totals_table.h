// The alternative to a basket of our own: a database in memory with a trigger that keeps the
// totals. Built with the engine when its source could be had, without it otherwise.
#pragma once

#include <string>
#include <vector>

namespace demovex {

class TotalsTable {
  public:
    struct Line {
        std::string number;
        std::string description;
        int quantity;
        double price;
        std::string catalog;
        std::string url;
    };

    static bool Available();
    static std::string Name();
    // Inserts all lines into a new table, one statement prepared once, in one transaction.
    static void Insert(const std::vector<Line>& lines);
};

}  // namespace demovex
