#include "basket/printing.h"

#include <algorithm>
#include <memory>
#include <optional>
#include <utility>

#include "base/checked.h"
#include "base/error.h"
#include "base/round.h"
#include "base/scope_guard.h"
#include "basket/rows/columns.h"

namespace demovex {
namespace {

constexpr int kTitlePoints = 16;
constexpr int kFooterPoints = 12;
constexpr int kBodyPoints = 10;
constexpr std::int32_t kTextIndent = 45;        // from a cell's frame to its text, twips
constexpr std::int32_t kTextDrop = 30;          // from a cell's top to its text
constexpr std::int32_t kLineSpacing = 120;      // added to the text's height
constexpr std::int32_t kLinesForFurniture = 6;  // title, header line, footer and the air around

// Columns up to here stand left, the amounts after it right.
constexpr std::int32_t kLastLeftColumn = column::kBezeichnung;

// The printed width of a column: its share of 90 % of the page. The product is a whole number
// before it is divided, and wide enough for any grid, so that a very wide column cannot overflow.
std::int32_t PrintedWidth(Twips width, std::int32_t page_width, std::int32_t total) {
    const double product = NearestEven(width * (page_width * 0.9));
    if (total == 0) RaiseRuntimeError(runtime_error::kDivisionByZero);
    return CheckedNarrow(static_cast<std::int64_t>(product) / total);
}

bool IsHighSurrogate(wchar_t c) {
    return (static_cast<std::uint32_t>(c) & 0xFFFFFC00U) == 0xD800U;
}

}  // namespace

PrintLayout LayOutPages(const FlexGrid& grid, std::int32_t page_width, std::int32_t page_height,
                        std::int32_t text_height) {
    PrintLayout layout;
    layout.page_width = page_width;
    layout.page_height = page_height;
    std::int32_t total = 0;
    for (std::int32_t c = 0; c < grid.Cols(); ++c) total = CheckedAdd(total, grid.ColWidth(c));
    layout.x.push_back(RoundToInt32(page_width * 0.06));
    for (std::int32_t c = 0; c < grid.Cols(); ++c) {
        const std::int32_t width = PrintedWidth(grid.ColWidth(c), page_width, total);
        layout.x.push_back(CheckedAdd(layout.x.back(), width));
    }
    layout.line_height = CheckedAdd(text_height, kLineSpacing);
    layout.per_page = CheckedSub(CheckedDiv(page_height, layout.line_height), kLinesForFurniture);
    layout.pages = CheckedDiv(CheckedAdd(LastRow(grid), layout.per_page), layout.per_page);
    return layout;
}

std::wstring_view FitText(IPrintJob& job, std::wstring_view text, std::int32_t width) {
    if (text.empty() || job.TextWidth(text) <= width) return text;
    // A longer part is never narrower, so the last one that fits is found by halving.
    std::size_t fits = 0;
    std::size_t too_long = text.size();
    while (too_long - fits > 1) {
        const std::size_t middle = fits + (too_long - fits) / 2;
        if (job.TextWidth(text.substr(0, middle)) <= width) {
            fits = middle;
        } else {
            too_long = middle;
        }
    }
    if (fits > 0 && IsHighSurrogate(text[fits - 1])) --fits;
    return text.substr(0, fits);
}

Printing::Printing(const FlexGrid& liste, IPrinter& printer, IMessageBox& messages, Window window)
    : liste_(liste), printer_(printer), messages_(messages), window_(std::move(window)) {}

Printing::Printing(BasketContext& context, std::function<void()> commit_cell_edit,
                   std::function<std::wstring()> caption)
    : Printing(context.Liste, context.services.printer, context.services.messages,
               Window{std::move(commit_cell_edit), std::move(caption),
                      [&view = context.view] { return view.StatusText(); },
                      [&view = context.view](std::wstring_view text) { view.SetStatusText(text); },
                      [&view = context.view] { view.KeepPainted(); }}) {}

void Printing::mnuDateiDrucken_Click() {
    if (printing_) return;
    std::optional<std::wstring> failure;
    {
        const FlagWhile busy(printing_);
        window_.CommitCellEdit();
        const std::wstring status = window_.StatusText();
        failure = FailureOf([this] { Print(); });
        window_.SetStatusText(status);
    }
    // last, because anything may happen while the box is open
    if (failure) ShowFailure(*failure);
}

void Printing::Print() {
    const std::unique_ptr<IPrintJob> job = printer_.Begin(window_.Caption());
    if (!job) return;  // the user has thought better of it
    const std::int32_t page_width = job->PageWidth();
    const std::int32_t page_height = job->PageHeight();
    job->SetFont(kBodyPoints, false);
    const PrintLayout layout = LayOutPages(liste_, page_width, page_height, job->TextHeight(L"Xy"));
    for (std::int32_t page = 1; page <= layout.pages; ++page) {
        window_.SetStatusText(L"Drucke Seite " + std::to_wstring(page) + L" von " +
                              std::to_wstring(layout.pages) + L" ...");
        window_.KeepPainted();
        PrintPage(*job, layout, page);
        if (page < layout.pages) job->NewPage();
    }
    job->End();
}

void Printing::PrintPage(IPrintJob& job, const PrintLayout& layout, std::int32_t page) {
    job.SetFont(kTitlePoints, true);
    job.Text(layout.x.front(), layout.line_height, L"Warenkorb");

    job.SetFont(kFooterPoints, false);
    const std::wstring footer =
        L"Seite " + std::to_wstring(page) + L" von " + std::to_wstring(layout.pages);
    job.Text(CheckedSub(layout.x.back(), job.TextWidth(footer)),
             CheckedSub(CheckedSub(layout.page_height, job.TextHeight(footer)), layout.line_height),
             footer);

    std::int32_t y = RoundToInt32(layout.line_height * 2.8);
    job.SetFont(kBodyPoints, true);
    PrintRow(job, layout, 0, y);

    job.SetFont(kBodyPoints, false);
    const std::int32_t totals = TotalsRow(liste_);
    const std::int64_t first = (std::int64_t{page} - 1) * layout.per_page + 1;
    const std::int64_t last = std::min<std::int64_t>(std::int64_t{page} * layout.per_page, totals);
    for (std::int64_t row = first; row <= last; ++row) {
        y = CheckedAdd(y, layout.line_height);
        if (row == totals) job.SetFont(kBodyPoints, true);
        PrintRow(job, layout, static_cast<std::int32_t>(row), y);
    }
}

void Printing::PrintRow(IPrintJob& job, const PrintLayout& layout, std::int32_t row,
                        std::int32_t y) {
    const std::int32_t bottom = CheckedAdd(y, layout.line_height);
    for (std::int32_t c = 0; c + 1 < static_cast<std::int32_t>(layout.x.size()); ++c) {
        if (layout.width(c) == 0) continue;
        const std::int32_t left = layout.x[static_cast<std::size_t>(c)];
        const std::int32_t right = layout.x[static_cast<std::size_t>(c) + 1];
        job.Frame(left, y, right, bottom);
        const std::wstring_view text =
            FitText(job, liste_.TextMatrix(row, c), layout.width(c) - kTextIndent);
        if (text.empty()) continue;
        const bool stands_left = row == 0 || c <= kLastLeftColumn;
        job.Text(stands_left ? left + kTextIndent : right - kTextIndent - job.TextWidth(text),
                 y + kTextDrop, text);
    }
}

void Printing::ShowFailure(std::wstring_view description) {
    std::wstring text = L"Der Warenkorb kann nicht gedruckt werden: ";
    text += description;
    try {
        if (printer_.InstalledCount() == 0) {
            text = L"Der Warenkorb kann nicht gedruckt werden da kein Drucker installiert ist.";
        }
    } catch (const Error&) {
        // the printers cannot even be counted: the first failure says more
    }
    messages_.Show(text, {}, MessageButtons::kOk, MessageIcon::kNone);
}

}  // namespace demovex
