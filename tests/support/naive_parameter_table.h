// The parameter table as plainly as it can be written: every step carried out as it reads, whatever
// it costs. What ParameterParser answers is compared with this.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace demovex {

class NaiveParameterTable {
  public:
    std::wstring column_delimiter = L",";
    std::wstring row_delimiter = L";";
    std::int32_t rows = 0;
    std::int32_t row_capacity = 10;
    std::int32_t column_capacity = 10;

    void Parse(const std::wstring& s) {
        cells_.clear();
        cols_.clear();
        rows = 0;
        row_capacity = column_capacity = 10;
        const std::size_t n = s.size();
        std::size_t p = 1;
        std::int32_t row = 0;
        for (;;) {
            std::size_t e = Search(s, row_delimiter, p);
            if (e == 0) e = n + 1;
            ++row;
            std::int32_t col = 0;
            while (p < e) {
                ++col;
                std::size_t f = Search(s, column_delimiter, p);
                if (f == 0 || f > e) f = e;
                Set(col, row, s.substr(p - 1, f - p));
                p = f + column_delimiter.size();
            }
            p = e + row_delimiter.size();
            if (p > n) return;
        }
    }

    void Set(std::int32_t col, std::int32_t row, const std::wstring& text) {
        if (col > column_capacity) column_capacity = col + 10;
        if (row > row_capacity) row_capacity = row + 20;
        if (row > rows) rows = row;
        const auto r = static_cast<std::size_t>(row - 1);
        if (cells_.size() <= r) {
            cells_.resize(r + 1);
            cols_.resize(r + 1);
        }
        if (cells_[r].size() < static_cast<std::size_t>(col)) {
            cells_[r].resize(static_cast<std::size_t>(col));
        }
        if (col > cols_[r]) cols_[r] = col;
        cells_[r][static_cast<std::size_t>(col - 1)] = text;
        if (text.empty()) {
            std::int32_t last = cols_[r];
            while (last > 0 && cells_[r][static_cast<std::size_t>(last - 1)].empty()) --last;
            cols_[r] = last;
        }
    }

    std::int32_t Cols(std::int32_t row) const {
        if (row < 1 || row > rows || static_cast<std::size_t>(row) > cols_.size()) return 0;
        return cols_[static_cast<std::size_t>(row - 1)];
    }

    std::wstring Get(std::int32_t col, std::int32_t row) const {
        if (col < 1 || col > Cols(row)) return {};
        return cells_[static_cast<std::size_t>(row - 1)][static_cast<std::size_t>(col - 1)];
    }

    std::int32_t Find(std::int32_t col, const std::wstring& text) const {
        for (std::int32_t row = 1; row <= rows; ++row) {
            if (Get(col, row) == text) return row;
        }
        return 0;
    }

    std::wstring Compose() const {
        std::wstring text;
        for (std::int32_t row = 1; row <= rows; ++row) {
            for (std::int32_t col = 1; col <= Cols(row); ++col) {
                if (col > 1) text += column_delimiter;
                text += Get(col, row);
            }
            text += row_delimiter;
        }
        return text;
    }

  private:
    // 1-based place at or after `from`, 0 when there is none; an empty delimiter is never found.
    static std::size_t Search(const std::wstring& s, const std::wstring& what, std::size_t from) {
        if (what.empty()) return 0;
        const std::size_t at = s.find(what, from - 1);
        return at == std::wstring::npos ? 0 : at + 1;
    }

    std::vector<std::vector<std::wstring>> cells_;
    std::vector<std::int32_t> cols_;
};

}  // namespace demovex
