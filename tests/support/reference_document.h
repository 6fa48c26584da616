// The plain reference basket with its files: loading, saving and sending told step by step, each
// line split and joined by hand.
#pragma once

#include <string>
#include <vector>

#include "tests/support/reference_basket.h"

namespace demovex {

class ReferenceDocument : public ReferenceBasket {
  public:
    using ReferenceBasket::ReferenceBasket;

    std::wstring rejected_message;  // of the last load that listed numbers

    // Raises -1 when the steps end with an error on the way.
    void Load(const std::string& bytes) {
        Close();
        Heal();
        loading = true;
        suppress = true;
        std::vector<std::wstring> rejected;
        const int error = RaisedBy([&] { LoadRows(bytes, rejected); });
        modified = false;
        loading = false;
        suppress = false;
        ShowPosition();
        if (error != 0) RaiseRuntimeError(-1);
        if (rejected.empty()) return;
        ++messages;
        const bool many = rejected.size() > 1;
        rejected_message = std::wstring(L"Folgende Artikelnummer") + (many ? L"n" : L"") +
                           L" wurden nicht im Artikelstamm gefunden und wurde" +
                           (many ? L"n" : L"") + L" daher aus dem Warenkorb entfernt: \r\n";
        for (const std::wstring& entry : rejected) rejected_message += L"\r\n" + entry;
    }

    // The bytes that saving writes. Choosing the file commits, and so does saving.
    std::string SaveAs() {
        Commit();
        return Save();
    }
    std::string Save() {
        Commit();
        Heal();
        modified = false;
        std::wstring content = L"DemoVexClient.Client\r\n";
        for (int r = 1; r <= Lines(); ++r) {
            std::wstring line = Line(r);
            while (!line.empty() && line.back() == L'\t') line.pop_back();
            content += line + L"\r\n";
        }
        return text_.ToAnsi(content);
    }

    // The bytes that sending the selection appends. Choosing the file commits, and so does sending:
    // of a number just typed the quantity, too.
    std::string Send() {
        Commit();
        Commit();
        std::wstring lines;
        for (int r = std::min(row, row_sel); r <= std::max(row, row_sel); ++r) {
            lines += Line(r) + L"\r\n";
        }
        return text_.ToAnsi(lines);
    }

    // The text that copying rows and columns puts on the clipboard.
    std::wstring Copy(int first_row, int last_row, int first_col, int last_col) {
        std::wstring copied;
        for (int r = first_row; r <= last_row; ++r) {
            std::wstring line;
            for (int c = first_col; c <= last_col; ++c) {
                if (c == 6 || c == 7) continue;
                if (!line.empty()) line += L'\t';
                line += At(r, c);
            }
            copied += line + L"\r\n";
        }
        return copied;
    }
    std::wstring CopySelection() {
        Commit();
        return Copy(std::min(row, row_sel), std::max(row, row_sel), std::min(col, col_sel),
                    std::max(col, col_sel));
    }
    std::wstring CopyAll() {
        Commit();
        return Copy(0, Rows() - 1, 1, 9);
    }

  private:
    static std::vector<std::wstring> Split(std::wstring_view whole, std::wstring_view delimiter) {
        std::vector<std::wstring> parts;
        for (std::size_t at = 0;;) {
            const std::size_t end = whole.find(delimiter, at);
            parts.emplace_back(whole.substr(at, end - at));
            if (end == std::wstring_view::npos) return parts;
            at = end + delimiter.size();
        }
    }
    std::wstring Line(int r) {
        std::wstring line;
        for (int c = 1; c <= 9; ++c) line += (c > 1 ? L"\t" : L"") + At(r, c);
        return line;
    }

    void LoadRows(const std::string& bytes, std::vector<std::wstring>& rejected) {
        std::vector<std::vector<std::wstring>> lines;
        std::vector<std::wstring> texts = Split(text_.FromAnsi(bytes), L"\r\n");
        while (!texts.empty() && texts.back().empty()) texts.pop_back();
        for (const std::wstring& line : texts) {
            lines.push_back(Split(line, L"\t"));
            for (std::wstring& field : lines.back()) {
                for (wchar_t& c : field) {
                    if (c < L' ' || c == 0x7F) c = L' ';
                }
            }
            lines.back().resize(9);
        }
        std::size_t first = 0;
        if (!lines.empty() && text_.CompareText(lines[0][0], L"DemoVexClient.Client") == 0) {
            first = 1;
        }

        Clear();
        int counter = 1;
        for (std::size_t i = first; i < lines.size(); ++i) {
            const std::vector<std::wstring>& fields = lines[i];
            if (!fields[0].empty()) {
                const Added added = Add(fields[0], 1, fields[5], fields[6]);
                Raise(added.error);
                if (!added.found) {
                    Remove(counter);
                    --counter;
                    rejected.push_back(fields[0] + L" (" + fields[2] + L")");
                } else {
                    if (counter >= Rows()) RaiseRuntimeError(9);
                    At(counter, 3) = fields[2];
                    Raise(Recalculate(counter));
                }
            } else {
                Raise(Add(L"", 1, L"", L"").error);
                if (counter >= Rows()) RaiseRuntimeError(9);
                At(counter, 2) = fields[1];
            }
            ++counter;
        }
        Select(1, col);
        Select(row, 1);
    }
};

}  // namespace demovex
