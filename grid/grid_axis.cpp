#include "grid/grid_axis.h"

#include <algorithm>

namespace demovex {

namespace {

bool LineBefore(const std::pair<std::int32_t, Twips>& own, std::int32_t line) {
    return own.first < line;
}

}  // namespace

GridAxis::GridAxis(Scale scale, std::int32_t count, std::int32_t fixed, Twips default_size)
    : scale_(scale), count_(count), fixed_(fixed), default_size_(default_size), first_(fixed) {
    Resized();
}

void GridAxis::Resized() {
    default_pixels_ = ToPixels(default_size_);
    own_total_ = OwnSpan(0, count_);
}

void GridAxis::SetDefaultSize(Twips size) {
    default_size_ = size;
    Resized();
}

void GridAxis::SetScale(Scale scale) {
    scale_ = scale;
    Resized();
}

int GridAxis::ToPixels(Twips size) const {
    return size == 0 ? 0 : std::max(1, scale_.ToPixels(size));
}

std::vector<GridAxis::Own>::const_iterator GridAxis::FindOwn(std::int32_t line) const {
    return std::lower_bound(own_.begin(), own_.end(), line, LineBefore);
}

Twips GridAxis::Size(std::int32_t line) const {
    if (own_.empty()) return default_size_;
    const auto own = FindOwn(line);
    return own != own_.end() && own->first == line ? own->second : default_size_;
}

void GridAxis::SetSize(std::int32_t line, Twips size) {
    const auto own = FindOwn(line);
    if (own != own_.end() && own->first == line) {
        own_[static_cast<std::size_t>(own - own_.begin())].second = size;
    } else {
        own_.insert(own, Own(line, size));
    }
    Resized();
}

void GridAxis::SetCount(std::int32_t count) {
    count_ = count;
    own_.erase(FindOwn(count), own_.end());
    Resized();
}

void GridAxis::Insert(std::int32_t index, std::int32_t count) {
    for (Own& own : own_) {
        if (own.first >= index) own.first += count;
    }
    count_ += count;
}

void GridAxis::Remove(std::int32_t index, std::int32_t count) {
    own_.erase(FindOwn(index), FindOwn(index + count));
    for (Own& own : own_) {
        if (own.first >= index) own.first -= count;
    }
    count_ -= count;
    if (!own_.empty() || own_total_ != 0) Resized();
}

void GridAxis::Move(std::int32_t first, std::int32_t count, std::int32_t to) {
    if (own_.empty() || first == to) return;
    for (Own& own : own_) {
        std::int32_t& line = own.first;
        if (line >= first && line < first + count) {
            line += to - first;
        } else if (first < to && line >= first + count && line < to + count) {
            line -= count;
        } else if (first > to && line >= to && line < first) {
            line += count;
        }
    }
    std::sort(own_.begin(), own_.end());
}

std::int64_t GridAxis::OwnSpan(std::int32_t begin, std::int32_t end) const {
    std::int64_t sum = 0;
    for (auto own = FindOwn(begin); own != own_.end() && own->first < end; ++own) {
        sum += ToPixels(own->second) - default_pixels_;
    }
    return sum;
}

std::int64_t GridAxis::Place(std::int32_t line) const {
    if (line < fixed_) return Span(0, line);
    if (line >= first_) return FixedSpan() + Span(first_, line);
    return FixedSpan() - Span(line, first_);
}

std::int32_t GridAxis::LineAt(int place) const {
    if (place < 0 || place >= view_) return -1;
    std::int64_t begin = 0;
    for (std::int32_t line = 0; line < fixed_; ++line) {
        begin += Pixels(line);
        if (place < begin) return line;
    }
    for (std::int32_t line = first_; line < count_; ++line) {
        begin += Pixels(line);
        if (place < begin) return line;
    }
    return -1;
}

std::int64_t GridAxis::Room() const {
    return std::max<std::int64_t>(0, view_ - FixedSpan());
}

std::int32_t GridAxis::FitBack(std::int32_t line) const {
    const std::int64_t room = Room();
    std::int64_t sum = Pixels(line);
    std::int32_t first = line;
    while (first > fixed_ && sum + Pixels(first - 1) <= room) {
        --first;
        sum += Pixels(first);
    }
    return first;
}

std::int32_t GridAxis::MaxFirst() const {
    return FitBack(count_ - 1);
}

std::int32_t GridAxis::FirstToShow(std::int32_t line) const {
    if (line < fixed_) return first_;
    if (line < first_) return line;
    return std::max(first_, FitBack(line));
}

std::int32_t GridAxis::Page() const {
    std::int64_t room = Room();
    std::int32_t page = 0;
    for (std::int32_t line = first_; line < count_; ++line) {
        const int size = Pixels(line);
        if (size > room) break;
        room -= size;
        if (size != 0) ++page;
    }
    return std::max(1, page);
}

std::int32_t GridAxis::LastInView() const {
    std::int64_t room = Room();
    std::int32_t last = first_;
    for (std::int32_t line = first_; line < count_ && room > 0; ++line) {
        room -= Pixels(line);
        last = line;
    }
    return last;
}

std::int32_t GridAxis::Step(std::int32_t line, std::int32_t steps) const {
    const std::int32_t way = steps < 0 ? -1 : 1;
    std::int32_t left = steps < 0 ? -steps : steps;
    std::int32_t reached = line;
    for (std::int32_t next = line + way; left > 0 && next >= fixed_ && next < count_; next += way) {
        if (Hidden(next)) continue;
        reached = next;
        --left;
    }
    return reached;
}

}  // namespace demovex
