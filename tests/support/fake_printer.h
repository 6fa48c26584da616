// A printer that records what is printed on it, and that fails when and where a test says.
//
//   FakePrinter printer;
//   printer.page_width = 10000;          // twips
//   ... print ...
//   printer.pages[0].texts[0].text       // L"Warenkorb"
//
// Texts are measured by a simple rule, so that expected positions can be computed by hand: a
// character is 10 twips wide per point (8 when `narrow` holds it, 12 when bold), a line 20 twips
// high per point. Every operation of printer and job is numbered from 1 in calling order; when
// `fail_at` is that number the operation raises `failure`.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "base/error.h"
#include "platform/printer.h"

namespace demovex {

struct FakePrinter : IPrinter {
    struct PrintedText {
        std::int32_t x = 0;
        std::int32_t y = 0;
        std::wstring text;
        int points = 0;
        bool bold = false;
        friend bool operator==(const PrintedText&, const PrintedText&) = default;
    };
    struct PrintedFrame {
        std::int32_t left = 0;
        std::int32_t top = 0;
        std::int32_t right = 0;
        std::int32_t bottom = 0;
        friend bool operator==(const PrintedFrame&, const PrintedFrame&) = default;
    };
    struct Page {
        std::vector<PrintedText> texts;
        std::vector<PrintedFrame> frames;
    };

    std::int32_t page_width = 11424;
    std::int32_t page_height = 16358;
    std::int32_t extra_height = 0;  // added to the height of every text
    int installed = 1;
    std::wstring narrow = L"il.,";
    int fail_at = 0;
    Error failure{482, {}, L"Printer error"};
    bool installed_count_fails = false;
    bool user_gives_up = false;  // in a dialog of the printer's

    std::wstring document;  // name of the last job
    std::vector<Page> pages;
    int jobs = 0;
    int ended = 0;
    int aborted = 0;
    mutable int operations = 0;

    int InstalledCount() const override {
        if (installed_count_fails) throw Error(5, {}, L"The list of printers cannot be read.");
        return installed;
    }

    std::unique_ptr<IPrintJob> Begin(std::wstring_view name) override {
        Operation();
        document = std::wstring(name);
        if (user_gives_up) return nullptr;
        ++jobs;
        pages.emplace_back();
        return std::make_unique<Job>(*this);
    }

    std::int32_t WidthOf(std::wstring_view text, int points, bool bold) const {
        std::int32_t width = 0;
        for (wchar_t c : text) {
            const bool thin = narrow.find(c) != std::wstring::npos;
            width += points * (thin ? 8 : bold ? 12 : 10);
        }
        return width;
    }

  private:
    void Operation() const {
        if (++operations == fail_at) throw failure;
    }

    class Job : public IPrintJob {
      public:
        explicit Job(FakePrinter& printer) : printer_(printer) {}
        ~Job() override {
            if (!done_) ++printer_.aborted;
        }
        std::int32_t PageWidth() const override {
            printer_.Operation();
            return printer_.page_width;
        }
        std::int32_t PageHeight() const override {
            printer_.Operation();
            return printer_.page_height;
        }
        void SetFont(int points, bool bold) override {
            printer_.Operation();
            points_ = points;
            bold_ = bold;
        }
        std::int32_t TextWidth(std::wstring_view text) override {
            printer_.Operation();
            return printer_.WidthOf(text, points_, bold_);
        }
        std::int32_t TextHeight(std::wstring_view) override {
            printer_.Operation();
            return points_ * 20 + printer_.extra_height;
        }
        void Text(std::int32_t x, std::int32_t y, std::wstring_view text) override {
            printer_.Operation();
            printer_.pages.back().texts.push_back({x, y, std::wstring(text), points_, bold_});
        }
        void Frame(std::int32_t left, std::int32_t top, std::int32_t right,
                   std::int32_t bottom) override {
            printer_.Operation();
            printer_.pages.back().frames.push_back({left, top, right, bottom});
        }
        void NewPage() override {
            printer_.Operation();
            printer_.pages.emplace_back();
        }
        void End() override {
            printer_.Operation();
            done_ = true;
            ++printer_.ended;
        }

      private:
        FakePrinter& printer_;
        int points_ = 10;
        bool bold_ = false;
        bool done_ = false;
    };
};

}  // namespace demovex
