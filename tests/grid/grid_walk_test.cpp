// A long random walk of grid operations against a plain model, under sanitizers.
#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <string>
#include <vector>

#include "base/error.h"
#include "grid/flex_grid.h"
#include "grid/grid_painter.h"
#include "tests/support/grid_dump.h"
#include "tests/support/grid_event_log.h"
#include "tests/support/recording_surface.h"

namespace demovex {
namespace {

struct ModelCell {
    std::wstring text;
    bool bold = false;
    bool left = false;
    friend bool operator==(const ModelCell&, const ModelCell&) = default;
};

struct ModelRow {
    std::vector<ModelCell> cells;
    Twips height = 240;
};

// The rules of the grid in the plainest way.
class Model {
  public:
    Model(int row_count, int col_count) : widths(static_cast<std::size_t>(col_count), 960) {
        for (int i = 0; i < row_count; ++i) rows.push_back(Empty());
    }
    int Rows() const { return static_cast<int>(rows.size()); }
    int Cols() const { return static_cast<int>(widths.size()); }
    ModelRow Empty() const { return {std::vector<ModelCell>(widths.size()), 240}; }
    ModelCell& At(int r, int c) {
        return rows[static_cast<std::size_t>(r)].cells[static_cast<std::size_t>(c)];
    }
    void Insert(int index, int count) {
        rows.insert(rows.begin() + index, static_cast<std::size_t>(count), Empty());
    }
    void Remove(int index, int count) {
        rows.erase(rows.begin() + index, rows.begin() + index + count);
        Cut();
    }
    void Move(int first, int count, int to) {
        std::vector<ModelCell> numbers;
        for (const ModelRow& r : rows) numbers.push_back(r.cells[0]);
        std::vector<ModelRow> moved(rows.begin() + first, rows.begin() + first + count);
        rows.erase(rows.begin() + first, rows.begin() + first + count);
        rows.insert(rows.begin() + to, moved.begin(), moved.end());
        for (std::size_t i = 0; i < rows.size(); ++i) rows[i].cells[0] = numbers[i];
    }
    void Resize(int row_count, int col_count) {
        widths.resize(static_cast<std::size_t>(col_count), 960);
        for (ModelRow& r : rows) r.cells.resize(widths.size());
        rows.resize(static_cast<std::size_t>(row_count), Empty());
        Cut();
    }
    void Cut() {
        row = std::min(row, Rows() - 1);
        row_sel = std::min(row_sel, Rows() - 1);
        col = std::min(col, Cols() - 1);
        col_sel = std::min(col_sel, Cols() - 1);
    }

    std::vector<ModelRow> rows;
    std::vector<Twips> widths;
    int row = 1, col = 1, row_sel = 1, col_sel = 1;
};

class Walk {
  public:
    explicit Walk(unsigned seed) : random_(seed), log_(grid_), model_(2, 2) {
        grid_.SetEvents(&log_);
        grid_.SetFrame({500, 300, 2, 17, 17});
    }

    void Step() {
        const auto before = Cursor();
        const auto scroll = std::make_pair(grid_.TopRow(), grid_.LeftCol());
        Act(Number(100));
        // events are raised for real changes only, and for each of them
        std::string expected;
        const auto after = Cursor();
        if (before[0] != after[0] || before[1] != after[1]) {
            expected = "RowColChange(" + Pair(after[0], after[1]) + ")";
        } else if (before != after) {
            expected =
                "SelChange(" + Pair(after[0], after[1]) + ":" + Pair(after[2], after[3]) + ")";
        }
        const auto scrolled = std::make_pair(grid_.TopRow(), grid_.LeftCol());
        if (scroll != scrolled) {
            expected += (expected.empty() ? "" : " ") + std::string("Scroll(") +
                        Pair(scrolled.first, scrolled.second) + ")";
        }
        ASSERT_EQ(log_.Take(), expected) << action_;
        ASSERT_EQ(grid_.Rows(), model_.Rows()) << action_;
        ASSERT_EQ(grid_.Cols(), model_.Cols()) << action_;
        ASSERT_TRUE(Cursor() ==
                    (std::vector<int>{model_.row, model_.col, model_.row_sel, model_.col_sel}))
            << action_ << "\nexpected " << model_.row << "," << model_.col << ":" << model_.row_sel
            << "," << model_.col_sel << "\n"
            << grid_;
        ASSERT_GE(grid_.TopRow(), 1);
        ASSERT_GE(grid_.LeftCol(), 1);
        ASSERT_LE(grid_.TopRow(), grid_.RowAxis().MaxFirst());
        ASSERT_LE(grid_.LeftCol(), grid_.ColAxis().MaxFirst());
        const int r = Number(model_.Rows());
        const int c = Number(model_.Cols());
        ASSERT_NO_FATAL_FAILURE(CheckCell(r, c));
    }

    void CheckAll() {
        for (int r = 0; r < model_.Rows(); ++r) {
            for (int c = 0; c < model_.Cols(); ++c) ASSERT_NO_FATAL_FAILURE(CheckCell(r, c));
            // where a row begins: the sum of what lies before it
            Twips place = 30;
            if (r >= 1) place += Height(0);
            for (int i = grid_.TopRow(); i < r; ++i) place += Height(i);
            for (int i = r; i >= 1 && i < grid_.TopRow(); ++i) place -= Height(i);
            ASSERT_EQ(grid_.RowPos(r), place) << r << "\n" << grid_;
        }
        RecordingSurface surface(grid_.View().right, grid_.View().bottom);
        PaintGrid(grid_, surface, grid_.View());
        ASSERT_EQ(surface.Touched(), grid_.View().right * grid_.View().bottom);
    }

  private:
    int Number(int below) { return static_cast<int>(random_() % static_cast<unsigned>(below)); }
    static std::string Pair(int a, int b) { return std::to_string(a) + "," + std::to_string(b); }
    std::vector<int> Cursor() const {
        return {grid_.Row(), grid_.Col(), grid_.RowSel(), grid_.ColSel()};
    }
    // In twips of whole pixels.
    Twips Height(int r) { return model_.rows[static_cast<std::size_t>(r)].height; }

    void CheckCell(int r, int c) {
        const ModelCell& cell = model_.At(r, c);
        ASSERT_EQ(grid_.TextMatrix(r, c), cell.text) << action_ << " cell " << Pair(r, c);
        ASSERT_EQ(grid_.CellBold(r, c), cell.bold) << action_ << " cell " << Pair(r, c);
        ASSERT_EQ(grid_.CellAlign(r, c) == CellAlignment::kLeft, cell.left) << action_;
        ASSERT_EQ(grid_.RowHeight(r), Height(r)) << action_ << " row " << r;
    }

    // A row or column number, now and then one out of range.
    int Any(int count) { return Number(40) == 0 ? count + Number(3) : Number(count); }

    void Try(const std::string& name, bool valid, int number, const std::function<void()>& real,
             const std::function<void()>& model) {
        action_ = name;
        int raised = 0;
        try {
            real();
        } catch (const Error& error) {
            raised = error.number();
        }
        ASSERT_EQ(raised, valid ? 0 : number) << name;
        if (valid) model();
    }

    void Act(int choice) {
        Model& m = model_;
        const int r = Any(m.Rows());
        const int c = Any(m.Cols());
        const bool row_ok = r < m.Rows();
        const bool col_ok = c < m.Cols();
        if (choice < 34) {
            const std::wstring text = Text();
            Try(
                "text " + Pair(r, c), row_ok && col_ok, 9, [&] { grid_.SetTextMatrix(r, c, text); },
                [&] { m.At(r, c).text = text; });
        } else if (choice < 38) {
            const bool bold = Number(2) != 0;
            Try(
                "bold " + Pair(r, c), row_ok && col_ok, 9, [&] { grid_.SetCellBold(r, c, bold); },
                [&] { m.At(r, c).bold = bold; });
        } else if (choice < 42) {
            const bool left = Number(2) != 0;
            Try(
                "align " + Pair(r, c), row_ok && col_ok, 9,
                [&] {
                    grid_.SetCellAlign(r, c, left ? CellAlignment::kLeft : CellAlignment::kGeneral);
                },
                [&] { m.At(r, c).left = left; });
        } else if (choice < 50) {
            const int count = Number(4);
            const int index = r + Number(2);
            Try(
                "add " + Pair(index, count), index >= 1 && index <= m.Rows(), 9,
                [&] { grid_.AddItem(index, count); }, [&] { m.Insert(index, count); });
        } else if (choice < 57) {
            const int count = Number(m.Rows() > 60 ? 30 : 4);
            const bool range = r >= 1 && r < m.Rows() && count <= m.Rows() - r;
            const bool last = m.Rows() - count < 2;
            Try(
                "remove " + Pair(r, count), range && !last, range ? 30016 : 9,
                [&] { grid_.RemoveItem(r, count); }, [&] { m.Remove(r, count); });
        } else if (choice < 63) {
            const int count = Number(5);
            const int to = Any(m.Rows());
            const bool ok = r >= 1 && to >= 1 && r + count <= m.Rows() && to + count <= m.Rows();
            Try(
                "move " + Pair(r, count) + " to " + std::to_string(to), ok, 9,
                [&] { grid_.MoveRows(r, count, to); }, [&] { m.Move(r, count, to); });
        } else if (choice < 67) {
            Try(
                "row " + std::to_string(r), row_ok, 9, [&] { grid_.SetRow(r); },
                [&] {
                    m.row = m.row_sel = r;
                    m.col_sel = m.col;
                });
        } else if (choice < 71) {
            Try(
                "col " + std::to_string(c), col_ok, 9, [&] { grid_.SetCol(c); },
                [&] {
                    m.col = m.col_sel = c;
                    m.row_sel = m.row;
                });
        } else if (choice < 74) {
            Try(
                "rowsel " + std::to_string(r), row_ok, 9, [&] { grid_.SetRowSel(r); },
                [&] { m.row_sel = r; });
        } else if (choice < 77) {
            Try(
                "colsel " + std::to_string(c), col_ok, 9, [&] { grid_.SetColSel(c); },
                [&] { m.col_sel = c; });
        } else if (choice < 80) {
            Try(
                "toprow " + std::to_string(r), row_ok && r >= 1, 9, [&] { grid_.SetTopRow(r); },
                [] {});
        } else if (choice < 82) {
            Try(
                "leftcol " + std::to_string(c), col_ok && c >= 1, 9, [&] { grid_.SetLeftCol(c); },
                [] {});
        } else if (choice < 84) {
            const Twips height = Number(5) * 120;
            Try(
                "height " + Pair(r, height), row_ok, 9, [&] { grid_.SetRowHeight(r, height); },
                [&] { m.rows[static_cast<std::size_t>(r)].height = height; });
        } else if (choice < 86) {
            const Twips width = Number(4) * 480;
            Try(
                "width " + Pair(c, width), col_ok, 9, [&] { grid_.SetColWidth(c, width); },
                [&] { m.widths[static_cast<std::size_t>(c)] = width; });
        } else if (choice < 87) {
            const int row_count = Number(120);
            Try(
                "rows " + std::to_string(row_count), row_count >= 2, 9,
                [&] { grid_.SetRows(row_count); }, [&] { m.Resize(row_count, m.Cols()); });
        } else if (choice < 88) {
            const int col_count = Number(12);
            Try(
                "cols " + std::to_string(col_count), col_count >= 2, 9,
                [&] { grid_.SetCols(col_count); }, [&] { m.Resize(m.Rows(), col_count); });
        } else {
            Keys(choice);
        }
    }

    void Keys(int choice) {
        Model& m = model_;
        const bool shift = Number(2) != 0;
        if (choice < 96) {
            static const GridKey keys[] = {GridKey::kLeft, GridKey::kRight, GridKey::kUp,
                                           GridKey::kDown, GridKey::kHome,  GridKey::kEnd};
            const GridKey key = keys[Number(6)];
            const bool ctrl = Number(4) == 0;
            int r = shift ? m.row_sel : m.row;
            int c = shift ? m.col_sel : m.col;
            const auto hidden_row = [&](int i) { return Height(i) == 0; };
            const auto hidden_col = [&](int i) {
                return m.widths[static_cast<std::size_t>(i)] == 0;
            };
            const auto next = [](int from, int way, int count, const auto& hidden) {
                for (int i = from + way; i >= 1 && i < count; i += way) {
                    if (!hidden(i)) return i;
                }
                return from;
            };
            switch (key) {
                case GridKey::kLeft:
                    c = next(c, -1, m.Cols(), hidden_col);
                    break;
                case GridKey::kRight:
                    c = next(c, 1, m.Cols(), hidden_col);
                    break;
                case GridKey::kUp:
                    r = next(r, -1, m.Rows(), hidden_row);
                    break;
                case GridKey::kDown:
                    r = next(r, 1, m.Rows(), hidden_row);
                    break;
                case GridKey::kHome:
                    c = std::max(1, next(0, 1, m.Cols(), hidden_col));
                    if (ctrl) r = std::max(1, next(0, 1, m.Rows(), hidden_row));
                    break;
                default:
                    c = next(m.Cols(), -1, m.Cols(), hidden_col);
                    if (c == m.Cols()) c = 1;
                    if (ctrl) {
                        r = next(m.Rows(), -1, m.Rows(), hidden_row);
                        if (r == m.Rows()) r = 1;
                    }
                    break;
            }
            r = std::max(r, 1);
            c = std::max(c, 1);
            action_ = "key " + std::to_string(static_cast<int>(key)) + (shift ? " shift" : "");
            grid_.Key(key, shift, ctrl);
            m.row_sel = r;
            m.col_sel = c;
            if (!shift) {
                m.row = r;
                m.col = c;
            }
            // the moving corner is in view, wholly when it fits
            ASSERT_GE(r, grid_.TopRow()) << action_ << "\n" << grid_;
            if (Height(r) > 0) {
                ASSERT_TRUE(grid_.RowAxis().Place(r) + grid_.RowAxis().Pixels(r) <=
                                grid_.View().bottom ||
                            r == grid_.TopRow())
                    << action_ << "\n"
                    << grid_;
            }
        } else {
            const int x = Number(480);
            const int y = Number(290);
            const GridHit hit = grid_.HitTest(x, y);
            action_ = "press " + Pair(x, y) + (shift ? " shift" : "");
            grid_.Press(x, y, shift);
            grid_.Release();
            if (hit.area == GridArea::kCell) {
                m.row_sel = hit.row;
                m.col_sel = hit.col;
                if (!shift) {
                    m.row = hit.row;
                    m.col = hit.col;
                }
            } else {
                // row, column and corner selections are tested by themselves
                m.row = grid_.Row();
                m.col = grid_.Col();
                m.row_sel = grid_.RowSel();
                m.col_sel = grid_.ColSel();
            }
        }
    }

    std::wstring Text() {
        switch (Number(5)) {
            case 0:
                return L"";
            case 1:
                return std::to_wstring(Number(100000)) + L",50";
            case 2:
                return std::wstring(static_cast<std::size_t>(Number(200)), L'ä');
            case 3: {
                const int r = Number(model_.Rows());
                const int c = Number(model_.Cols());
                return std::wstring(grid_.TextMatrix(r, c)) + L"+";
            }
            default:
                return L"Text " + std::to_wstring(Number(1000));
        }
    }

    std::mt19937 random_;
    FlexGrid grid_;
    GridEventLog log_;
    Model model_;
    std::string action_;
};

TEST(GridWalk, TwoHundredThousandStepsAgreeWithAPlainModel) {
    for (unsigned seed = 1; seed <= 4; ++seed) {
        Walk walk(seed);
        for (int step = 0; step < 50'000; ++step) {
            walk.Step();
            if (step % 1000 == 0) walk.CheckAll();
            if (testing::Test::HasFatalFailure()) {
                FAIL() << "seed " << seed << ", step " << step;
            }
        }
        walk.CheckAll();
    }
}

}  // namespace
}  // namespace demovex
