#include "grid/grid_painter.h"

#include <algorithm>
#include <vector>

namespace demovex {

namespace {

// A row or column in view and its pixels, the line that ends it included.
struct Line {
    std::int32_t number;
    int begin;
    int end;
};

PixelRect Cut(const PixelRect& a, const PixelRect& b) {
    return {std::max(a.left, b.left), std::max(a.top, b.top), std::min(a.right, b.right),
            std::min(a.bottom, b.bottom)};
}

// The visible lines that meet the pixels from `from` to `to`, fixed ones first. A scrolled line
// never begins before the end of the fixed ones.
std::vector<Line> LinesIn(const GridAxis& axis, int from, int to) {
    std::vector<Line> lines;
    int begin = 0;
    const auto add = [&](std::int32_t number) {
        const int end = begin + std::min(axis.Pixels(number), 1 << 20);
        if (end > from && begin < to && end > begin) lines.push_back({number, begin, end});
        begin = end;
    };
    for (std::int32_t i = 0; i < axis.Fixed(); ++i) add(i);
    if (axis.Uniform() && axis.Pixels(axis.First()) > 0 && from > begin) {
        const int skipped = (from - begin) / axis.Pixels(axis.First());
        begin += skipped * axis.Pixels(axis.First());
        for (std::int64_t i = std::int64_t{axis.First()} + skipped; i < axis.Count() && begin < to;
             ++i) {
            add(static_cast<std::int32_t>(i));
        }
        return lines;
    }
    for (std::int32_t i = axis.First(); i < axis.Count() && begin < to; ++i) add(i);
    return lines;
}

class Painter {
  public:
    Painter(const FlexGrid& grid, Surface& surface, const PixelRect& invalid)
        : grid_(grid),
          surface_(surface),
          invalid_(Cut(invalid, grid.View())),
          text_left_(grid.PixelScale().ToPixels(FlexGrid::kTextLeft)),
          text_top_(grid.PixelScale().ToPixels(FlexGrid::kTextTop)) {}

    void Paint() {
        if (invalid_.empty()) return;
        const std::vector<Line> rows = LinesIn(grid_.RowAxis(), invalid_.top, invalid_.bottom);
        const std::vector<Line> cols = LinesIn(grid_.ColAxis(), invalid_.left, invalid_.right);
        const int right = cols.empty() ? invalid_.left : cols.back().end;
        const int bottom = rows.empty() ? invalid_.top : rows.back().end;
        Fill({std::max(right, invalid_.left), invalid_.top, invalid_.right, bottom},
             GridColor::kBackground);
        Fill({invalid_.left, std::max(bottom, invalid_.top), invalid_.right, invalid_.bottom},
             GridColor::kBackground);
        Lines(rows, cols);
        for (const Line& row : rows) {
            for (const Line& col : cols) Cell(row, col);
        }
    }

  private:
    void Fill(const PixelRect& rect, GridColor color) {
        const PixelRect cut = Cut(rect, invalid_);
        if (!cut.empty()) surface_.Fill(cut, color);
    }

    // The lines between normal cells and the edges of the raised ones. What runs through several
    // cells is drawn in one go: calls to the system are what painting costs.
    void Lines(const std::vector<Line>& rows, const std::vector<Line>& cols) {
        const auto first_row = std::find_if(rows.begin(), rows.end(), [](const Line& line) {
            return line.number >= FlexGrid::kFixedRows;
        });
        const auto first_col = std::find_if(cols.begin(), cols.end(), [](const Line& line) {
            return line.number >= FlexGrid::kFixedCols;
        });
        const int right = cols.empty() ? 0 : cols.back().end;
        const int bottom = rows.empty() ? 0 : rows.back().end;
        for (auto row = rows.begin(); row != first_row && first_col != cols.end(); ++row) {
            const int left = first_col->begin;
            Fill({left, row->begin, right, row->begin + 1}, GridColor::kEdgeLight);
            Fill({left, row->end - 1, right, row->end}, GridColor::kEdgeShadow);
            for (auto col = first_col; col != cols.end(); ++col) {
                Fill({col->begin, row->begin, col->begin + 1, row->end - 1}, GridColor::kEdgeLight);
                Fill({col->end - 1, row->begin, col->end, row->end - 1}, GridColor::kEdgeShadow);
            }
        }
        for (auto col = cols.begin(); col != first_col && first_row != rows.end(); ++col) {
            const int top = first_row->begin;
            Fill({col->begin, top, col->begin + 1, bottom}, GridColor::kEdgeLight);
            Fill({col->end - 1, top, col->end, bottom}, GridColor::kEdgeShadow);
            for (auto row = first_row; row != rows.end(); ++row) {
                Fill({col->begin, row->begin, col->end - 1, row->begin + 1}, GridColor::kEdgeLight);
                Fill({col->begin, row->end - 1, col->end, row->end}, GridColor::kEdgeShadow);
            }
        }
        if (first_row == rows.end() || first_col == cols.end()) return;
        for (auto row = first_row; row != rows.end(); ++row) {
            Fill({first_col->begin, row->end - 1, right, row->end}, GridColor::kGridLine);
        }
        for (auto col = first_col; col != cols.end(); ++col) {
            Fill({col->end - 1, first_row->begin, col->end, bottom}, GridColor::kGridLine);
        }
    }

    void Cell(const Line& row, const Line& col) {
        const std::int32_t r = row.number;
        const std::int32_t c = col.number;
        const bool fixed = r < FlexGrid::kFixedRows || c < FlexGrid::kFixedCols;
        const bool current = r == grid_.Row() && c == grid_.Col();
        const PixelRect cell{col.begin, row.begin, col.end - 1, row.end - 1};
        GridTextStyle style;
        style.bold = grid_.CellBold(r, c);
        if (fixed) {
            style.text = GridColor::kFixedText;
            style.back = GridColor::kFixed;
            if (r < FlexGrid::kFixedRows && c < FlexGrid::kFixedCols) Raised(cell);
        } else if (!current && grid_.Selected(r, c)) {
            style.text = GridColor::kHighlightText;
            style.back = GridColor::kHighlight;
        }
        Text(cell, r, c, fixed, style);
        if (!fixed && current && grid_.FocusRect() == FocusRectStyle::kLight && grid_.Focused()) {
            surface_.FocusRect(cell);
        }
    }

    // Light on the upper and left edge, shadow on the lower and right one (where other cells have
    // their line).
    void Raised(const PixelRect& cell) {
        Fill({cell.left, cell.top, cell.right, cell.top + 1}, GridColor::kEdgeLight);
        Fill({cell.left, cell.top + 1, cell.left + 1, cell.bottom}, GridColor::kEdgeLight);
        Fill({cell.left, cell.bottom, cell.right + 1, cell.bottom + 1}, GridColor::kEdgeShadow);
        Fill({cell.right, cell.top, cell.right + 1, cell.bottom}, GridColor::kEdgeShadow);
    }

    void Text(const PixelRect& cell, std::int32_t r, std::int32_t c, bool fixed,
              GridTextStyle& style) {
        PixelRect box = cell;
        if (fixed) {
            ++box.left;
            ++box.top;
        }
        const PixelRect cut = Cut(box, invalid_);
        if (cut.empty()) return;
        std::wstring_view text = grid_.TextMatrix(r, c);
        if (text.empty()) {
            surface_.Fill(cut, style.back);
            return;
        }
        style.right = grid_.StandsRight(r, c);
        // a character is rarely narrower than a pixel: no more of a long text can be seen
        const auto most = static_cast<std::size_t>(cell.width()) + 2;
        if (text.size() > most) {
            text = style.right ? text.substr(text.size() - most) : text.substr(0, most);
        }
        const int x = style.right ? cell.right - text_left_ : cell.left + text_left_;
        surface_.Text(cut, x, cell.top + text_top_, text, style);
    }

    const FlexGrid& grid_;
    Surface& surface_;
    const PixelRect invalid_;
    const int text_left_;
    const int text_top_;
};

}  // namespace

void PaintGrid(const FlexGrid& grid, Surface& surface, const PixelRect& invalid) {
    Painter(grid, surface, invalid).Paint();
}

}  // namespace demovex
