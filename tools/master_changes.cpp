#include "tools/master_changes.h"

#include <algorithm>

#include "tools/encodings.h"
#include "tools/number_order.h"

namespace demovex::tools {
namespace {

int Order(const ArtikelRecord& a, const ArtikelRecord& b) {
    return CompareNumberBytes(a.TrimmedNr(), b.TrimmedNr());
}

void Sort(std::vector<ArtikelRecord>& records) {
    const auto before = [](const ArtikelRecord& a, const ArtikelRecord& b) {
        return Order(a, b) < 0;
    };
    if (!std::is_sorted(records.begin(), records.end(), before)) {
        std::stable_sort(records.begin(), records.end(), before);
    }
}

std::string Shown(std::string_view field) {
    return ToUtf8(FromWindows1252(field));
}

}  // namespace

ChangeSums CompareMasters(std::vector<ArtikelRecord>& before, std::vector<ArtikelRecord>& after,
                          DecimalSign sign, const std::function<void(const Change&)>& tell) {
    Sort(before);
    Sort(after);
    ChangeSums sums;
    const auto add = [sign](const ArtikelRecord& record, Amount& sum) {
        const auto price = ReadPrice(record.TrimmedPreis(), sign);
        sum += price.value_or(0);
        return price;
    };
    auto old_one = before.begin();
    auto new_one = after.begin();
    while (old_one != before.end() || new_one != after.end()) {
        const int order = old_one == before.end()  ? 1
                          : new_one == after.end() ? -1
                                                   : Order(*old_one, *new_one);
        if (order < 0) {
            add(*old_one, sums.before);
            ++sums.gone;
            tell({ChangeKind::kGone, &*old_one++, nullptr});
            continue;
        }
        if (order > 0) {
            add(*new_one, sums.after);
            ++sums.added;
            tell({ChangeKind::kNew, nullptr, &*new_one++});
            continue;
        }
        const ArtikelRecord& was = *old_one++;
        const ArtikelRecord& is = *new_one++;
        const auto old_price = add(was, sums.before);
        const auto new_price = add(is, sums.after);
        if (old_price && new_price && *old_price != *new_price) {
            const bool dearer = *new_price > *old_price;
            ++(dearer ? sums.dearer : sums.cheaper);
            tell({dearer ? ChangeKind::kDearer : ChangeKind::kCheaper, &was, &is});
        } else if ((!old_price || !new_price) && was.TrimmedPreis() != is.TrimmedPreis()) {
            ++sums.other_price;
            tell({ChangeKind::kOtherPrice, &was, &is});
        } else if (was.TrimmedBezeichnung() != is.TrimmedBezeichnung() ||
                   was.TrimmedNr() != is.TrimmedNr()) {
            ++sums.other_text;
            tell({ChangeKind::kOtherText, &was, &is});
        } else {
            ++sums.same;
        }
    }
    return sums;
}

std::string ChangeLine(const Change& change) {
    static constexpr const char* kWords[] = {"new", "gone", "up", "down", "price", "text"};
    const ArtikelRecord& named = change.after != nullptr ? *change.after : *change.before;
    std::string line = kWords[static_cast<int>(change.kind)];
    line += '\t' + Shown(named.TrimmedNr()) + '\t' + Shown(named.TrimmedBezeichnung());
    line += '\t' + (change.before != nullptr ? Shown(change.before->TrimmedPreis()) : "");
    line += '\t' + (change.after != nullptr ? Shown(change.after->TrimmedPreis()) : "");
    if (change.before != nullptr && change.after != nullptr &&
        change.before->TrimmedBezeichnung() != change.after->TrimmedBezeichnung()) {
        line += "\t(was: " + Shown(change.before->TrimmedBezeichnung()) + ")";
    }
    return line;
}

}  // namespace demovex::tools
