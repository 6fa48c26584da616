#include "basket/document/sending.h"

#include <memory>

#include "base/error.h"
#include "basket/document/file_texts.h"
#include "basket/document/progress_scope.h"
#include "basket/rows/columns.h"
#include "dialogs/common_dialogs.h"
#include "platform/file_system_tools.h"

namespace demovex {

void Sending::mnuContextSendTo_Click(std::int32_t Index) {
    editor_.CommitCellEdit();
    AppendSelection(recent_.Tag(Index));
}

void Sending::mnuContextSendToOther_Click() {
    CommonDialogs dialogs(context_.services.file_dialogs);
    const std::wstring path =
        dialogs.GetSaveFileName({.InitDir = context_.services.component_folder,
                                 .Title = L"Warenkorb wählen",
                                 .sExtensions = kBasketFilter});
    if (path.empty()) return;
    editor_.CommitCellEdit();
    recent_.AddRecentFile(context_.services.files.Absolute(path));
    AppendSelection(path);
}

void Sending::AppendSelection(const std::wstring& Path) {
    editor_.CommitCellEdit();
    const GridRange chosen = context_.table.Selection();
    std::unique_ptr<IOutputFile> file;
    bool lossy = false;
    const auto failure = FailureOf([&] {
        ProgressScope progress(context_.view, L"Selektion wird gesendet");
        file = context_.services.files.OpenAppend(Path);
        for (std::int32_t row = chosen.first_row; row <= chosen.last_row; ++row) {
            progress.Step(row - chosen.first_row, chosen.Rows());
            file->Write(Line(row, lossy));
        }
        file->Flush();
        file->Close();
    });
    if (failure) {
        ShowFailure(Path, *failure);
        return;
    }
    if (lossy) context_.view.SetStatusText(kLossyStatus);
}

std::string Sending::Line(std::int32_t row, bool& lossy) const {
    std::wstring line;
    for (std::int32_t col = column::kArtNr; col <= column::kGesamtEuro; ++col) {
        if (col > column::kArtNr) line += L'\t';
        line += context_.Liste.TextMatrix(row, col);
    }
    line += L"\r\n";
    return context_.services.text.ToAnsi(line, &lossy);
}

void Sending::ShowFailure(const std::wstring& path, std::wstring_view cause) {
    context_.services.messages.Show(
        L"Kann Bestelldaten nicht an '" + ShownPath(path) + L"' senden: " + std::wstring(cause),
        L"", MessageButtons::kOk, MessageIcon::kNone);
}

}  // namespace demovex
