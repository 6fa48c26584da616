// One direction of a grid, rows or columns: sizes, the scroll position and where each line lies.
// The code for rows and for columns is this one class.
//
// Sizes are twips, places are pixels from the start of the view (the area inside the border);
// every size becomes whole pixels by itself, so places are sums of whole pixels. Lines with a size
// of their own are kept in a sorted list; all others have the default size. Nothing here depends
// on the number of lines, only on the number of lines in view and of those with their own size.
//
// Line numbers are not checked here; FlexGrid checks them.
#pragma once

#include <cstdint>
#include <utility>
#include <vector>

#include "base/geometry.h"

namespace demovex {

class GridAxis {
  public:
    GridAxis(Scale scale, std::int32_t count, std::int32_t fixed, Twips default_size);

    std::int32_t Count() const { return count_; }
    std::int32_t Fixed() const { return fixed_; }
    void SetCount(std::int32_t count);
    void Insert(std::int32_t index, std::int32_t count);
    void Remove(std::int32_t index, std::int32_t count);
    void Move(std::int32_t first, std::int32_t count, std::int32_t to);

    // No line has a size of its own.
    bool Uniform() const { return own_.empty(); }
    Twips Size(std::int32_t line) const;
    void SetSize(std::int32_t line, Twips size);
    Twips DefaultSize() const { return default_size_; }
    void SetDefaultSize(Twips size);
    void SetScale(Scale scale);
    // Size in pixels; 0 is hidden, anything else is at least one pixel.
    int Pixels(std::int32_t line) const { return ToPixels(Size(line)); }
    bool Hidden(std::int32_t line) const { return Size(line) == 0; }

    // First scrolled-in line, not below Fixed().
    std::int32_t First() const { return first_; }
    void SetFirst(std::int32_t first) { first_ = first; }
    int View() const { return view_; }
    void SetView(int pixels) { view_ = pixels < 0 ? 0 : pixels; }

    // Pixels of the lines from `begin` up to, not including, `end`.
    std::int64_t Span(std::int32_t begin, std::int32_t end) const {
        if (begin >= end) return 0;
        const std::int64_t usual = std::int64_t{default_pixels_} * (std::int64_t{end} - begin);
        return own_.empty() ? usual : usual + OwnSpan(begin, end);
    }
    std::int64_t FixedSpan() const { return Span(0, fixed_); }
    std::int64_t Total() const { return std::int64_t{default_pixels_} * count_ + own_total_; }
    // Where `line` begins, the scroll position counted in; negative for lines scrolled out.
    std::int64_t Place(std::int32_t line) const;
    // The line at a place in the view: fixed or scrolled in; -1 beyond the last or outside.
    std::int32_t LineAt(int place) const;

    // Smallest first line with which the last line is wholly in view; the last line if none is.
    std::int32_t MaxFirst() const;
    // The first line to scroll to so that `line` is wholly in view, moving as little as possible.
    std::int32_t FirstToShow(std::int32_t line) const;
    // Number of visible lines wholly in view from First() on, at least 1.
    std::int32_t Page() const;
    // The last line that is at least partly in view; First() if none.
    std::int32_t LastInView() const;
    // The visible non-fixed line `steps` visible lines after (before, when negative) `line`; stops
    // at the last (first) visible one, and stays when there is none on the way.
    std::int32_t Step(std::int32_t line, std::int32_t steps) const;

  private:
    using Own = std::pair<std::int32_t, Twips>;

    int ToPixels(Twips size) const;
    // By how much the lines with sizes of their own are larger than usual, from `begin` up to
    // `end`.
    std::int64_t OwnSpan(std::int32_t begin, std::int32_t end) const;
    void Resized();
    std::vector<Own>::const_iterator FindOwn(std::int32_t line) const;
    // Pixels left for the scrolled lines.
    std::int64_t Room() const;
    // Smallest line from which everything up to `line` fits into Room().
    std::int32_t FitBack(std::int32_t line) const;

    Scale scale_;
    std::int32_t count_;
    std::int32_t fixed_;
    Twips default_size_;
    int default_pixels_ = 0;
    std::int64_t own_total_ = 0;  // OwnSpan of all lines
    std::int32_t first_;
    int view_ = 0;
    std::vector<Own> own_;  // sorted by line
};

}  // namespace demovex
