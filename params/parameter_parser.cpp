#include "params/parameter_parser.h"

#include <algorithm>
#include <new>
#include <utility>

#include "base/checked.h"
#include "params/delimiter_search.h"

namespace demovex {
namespace {

constexpr std::int32_t kFirstRows = 10;
constexpr std::int32_t kFirstColumns = 10;
constexpr std::int32_t kMoreRows = 20;
constexpr std::int32_t kMoreColumns = 10;
// Overwritten texts are not worth collecting below this many characters.
constexpr std::size_t kLittle = 4096;

}  // namespace

ParameterParser::ParameterParser() {
    Reset();
}

void ParameterParser::Reset() noexcept {
    rows_.clear();
    fields_.clear();
    text_.clear();
    unused_ = 0;
    extent_ = {0, kFirstRows, kFirstColumns};
}

std::wstring ParameterParser::ParameterString() const {
    std::size_t length = static_cast<std::size_t>(extent_.rows) * row_delimiter_.size();
    for (std::int32_t r = 1; r <= extent_.rows; ++r) {
        const std::int32_t cols = Cols(r);
        if (cols > 1) length += static_cast<std::size_t>(cols - 1) * column_delimiter_.size();
        for (std::int32_t col = 1; col <= cols; ++col) length += Value(col, r).size();
    }
    std::wstring composed;
    composed.reserve(length);
    for (std::int32_t r = 1; r <= extent_.rows; ++r) {
        const std::int32_t cols = Cols(r);
        for (std::int32_t col = 1; col <= cols; ++col) {
            if (col > 1) composed += column_delimiter_;
            composed += Value(col, r);
        }
        composed += row_delimiter_;
    }
    return composed;
}

void ParameterParser::SetParameterString(std::wstring text) {
    Reset();
    // The fields refer to the text itself: parsing copies no characters.
    text_ = std::move(text);
    const std::size_t end = text_.size();
    DelimiterSearch row_ends(text_, row_delimiter_);
    DelimiterSearch column_ends(text_, column_delimiter_);
    std::size_t place = 0;
    std::int32_t row = 0;
    while (place < end) {
        const std::size_t row_end = std::min(row_ends.Next(place), end);
        row = CheckedAdd(row, 1);
        std::int32_t col = 0;
        while (place < row_end) {
            col = CheckedAdd(col, 1);
            const std::size_t field_end = std::min(column_ends.Next(place), row_end);
            extent_ = Reach(col, row);
            // An empty field at the end of a row is trimmed at once, so it needs no place; a later
            // field that is not empty makes room for it again.
            if (field_end > place) {
                rows_.resize(static_cast<std::size_t>(extent_.rows));
                Row& target = rows_.back();
                Widen(target, col);
                FieldAt(target, col) = {place, field_end - place};
                target.count = col;
            }
            place = field_end + column_delimiter_.size();
        }
        place = row_end + row_delimiter_.size();
    }
}

std::wstring_view ParameterParser::Value(std::int32_t col, std::int32_t row) const noexcept {
    if (col < 1 || col > Cols(row)) return {};
    const Field& field = FieldAt(rows_[static_cast<std::size_t>(row - 1)], col);
    return std::wstring_view(text_).substr(field.offset, field.length);
}

std::int32_t ParameterParser::Cols(std::int32_t row) const noexcept {
    if (row < 1 || static_cast<std::size_t>(row) > rows_.size()) return 0;
    return rows_[static_cast<std::size_t>(row - 1)].count;
}

std::int32_t ParameterParser::Find(std::int32_t col, std::wstring_view text) const noexcept {
    for (std::int32_t row = 1; row <= extent_.rows; ++row) {
        if (Value(col, row) == text) return row;
    }
    return 0;
}

void ParameterParser::SetValue(std::int32_t col, std::int32_t row, std::wstring_view text) {
    if (col < 1) {
        RaiseOwnError(L"ParameterParser::Value",
                      L"Column must be > 0 (was " + std::to_wstring(col) + L")");
    }
    if (row < 1) {
        RaiseOwnError(L"ParameterParser::Value",
                      L"Row must be > 0 (was " + std::to_wstring(row) + L")");
    }
    const Extent extent = Reach(col, row);
    if (text.empty()) {
        extent_ = extent;
        if (col > Cols(row)) return;
        Row& target = rows_[static_cast<std::size_t>(row - 1)];
        Field& field = FieldAt(target, col);
        unused_ += field.length;
        field = {};
        while (target.count > 0 && FieldAt(target, target.count).length == 0) --target.count;
        return;
    }
    // Rows added here count only with the extent, should memory end now.
    if (rows_.size() < static_cast<std::size_t>(row)) rows_.resize(static_cast<std::size_t>(row));
    Row& target = rows_[static_cast<std::size_t>(row - 1)];
    Widen(target, col);
    StoreText(FieldAt(target, col), text);
    target.count = std::max(target.count, col);
    extent_ = extent;
    // only now that the new field counts: tidying up keeps what counts
    if (unused_ > kLittle && unused_ > text_.size() / 2) Compact();
}

ParameterParser::Extent ParameterParser::Reach(std::int32_t col, std::int32_t row) const {
    Extent extent = extent_;
    if (col > extent.column_capacity) extent.column_capacity = CheckedAdd(col, kMoreColumns);
    if (row > extent.row_capacity) extent.row_capacity = CheckedAdd(row, kMoreRows);
    extent.rows = std::max(extent.rows, row);
    return extent;
}

void ParameterParser::Widen(Row& row, std::int32_t col) {
    if (col <= row.room) return;
    const auto room = static_cast<std::size_t>(row.room);
    if (row.room == 0) {
        row.first = fields_.size();
    } else if (row.first + room != fields_.size()) {
        // Not the last row: it moves to the end, with room to grow so that moves stay few.
        const std::size_t wanted =
            std::max(static_cast<std::size_t>(col), std::min(2 * room, std::size_t{0x7FFFFFFF}));
        const std::size_t first = fields_.size();
        fields_.resize(first + wanted);
        std::copy_n(fields_.begin() + static_cast<std::ptrdiff_t>(row.first), row.count,
                    fields_.begin() + static_cast<std::ptrdiff_t>(first));
        row.first = first;
        row.room = static_cast<std::int32_t>(wanted);
        return;
    }
    fields_.resize(row.first + static_cast<std::size_t>(col));
    row.room = col;
}

void ParameterParser::StoreText(Field& field, std::wstring_view text) {
    if (text.size() <= field.length) {
        // may be a view of this very arena
        std::char_traits<wchar_t>::move(text_.data() + field.offset, text.data(), text.size());
        unused_ += field.length - text.size();
        field.length = text.size();
        return;
    }
    const std::size_t offset = text_.size();
    text_.append(text);
    unused_ += field.length;
    field = {offset, text.size()};
}

void ParameterParser::Compact() noexcept {
    std::wstring packed;
    try {
        packed.reserve(text_.size() - unused_);
    } catch (const std::bad_alloc&) {
        return;  // untidy, but whole
    }
    for (const Row& row : rows_) {
        for (std::int32_t col = 1; col <= row.count; ++col) {
            // An empty field has no place: it may drop out of its row, be passed over here from
            // then on, and count again later.
            Field& field = FieldAt(row, col);
            if (field.length == 0) continue;
            const std::size_t offset = packed.size();
            packed.append(text_, field.offset, field.length);
            field.offset = offset;
        }
    }
    text_ = std::move(packed);
    unused_ = 0;
}

}  // namespace demovex
