#include "basket/edit/incomplete_note.h"

#include "basket/rows/columns.h"

namespace demovex {
namespace {

// Of an article number; the article master's have ten characters, a link's may have any number.
constexpr std::size_t kLongestNumber = 40;

}  // namespace

IncompleteNote::IncompleteNote(BasketContext& context) : context_(context) {
    context.table.SetListener({[this](const IncompleteLine* line) {
                                   if (line == nullptr) {
                                       told_amounts_ = 0;
                                   } else if (!context_.state.Loading) {
                                       Tell(line->row());
                                   }
                               },
                               [this] { Forget(); }});
}

IncompleteNote::~IncompleteNote() {
    context_.table.SetListener({});
}

IncompleteNote::Line IncompleteNote::LineOf(std::int32_t row) const {
    const FlexGrid& grid = context_.Liste;
    Line line{std::wstring(grid.TextMatrix(row, column::kArtNr)), Lack::kArticle};
    if (!grid.TextMatrix(row, column::kPreisAts).empty()) {
        line.lack = Lack::kQuantity;
    } else if (!grid.TextMatrix(row, column::kBezeichnung).empty()) {
        line.lack = Lack::kPrice;
    }
    return line;
}

std::int32_t IncompleteNote::LastUnreadableRow() const {
    const OrderTable& table = context_.table;
    for (std::int32_t row = table.LastRow(); row >= 1; --row) {
        if (table.IsArticleRow(row) && !table.Reads(row)) return row;
    }
    return 0;
}

void IncompleteNote::Tell(std::int32_t row) {
    // Lines of one number are told apart by how many there are; looking for the newest one is the
    // exception in a basket of any length.
    const std::int64_t amounts = context_.table.Unreadable();
    const bool more = amounts > told_amounts_;
    told_amounts_ = amounts;
    if (row == 0 && more) row = LastUnreadableRow();
    if (row == 0) return;
    const Line line = LineOf(row);
    if (!told_.insert(line).second && !more) return;
    std::wstring text = L"Zeile " + std::to_wstring(row) + L": ";
    std::wstring article = L"Artikel " + line.number.substr(0, kLongestNumber);
    if (line.number.size() > kLongestNumber) article += L"...";
    switch (line.lack) {
        case Lack::kArticle:
            text += article + L" steht nicht im Artikelstamm";
            break;
        case Lack::kPrice:
            text += article + L" hat keinen lesbaren Preis";
            break;
        case Lack::kQuantity:
            text += L"Die Menge von " + article + L" ist keine Zahl";
            break;
    }
    context_.view.ShowNote(text);
}

void IncompleteNote::Forget() {
    told_.clear();
    told_amounts_ = 0;
}

}  // namespace demovex
