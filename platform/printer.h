// Printing: the default printer as a surface in twips (1440 to the inch), page by page.
#pragma once

#include <cstdint>
#include <memory>
#include <string_view>

namespace demovex {

// One print job. Coordinates and sizes are twips from the top left of the printable area. Every
// operation raises an error when the printer refuses. A job that is destroyed before End is
// aborted, and nothing of it is printed.
class IPrintJob {
  public:
    virtual ~IPrintJob() = default;

    virtual std::int32_t PageWidth() const = 0;   // printable width
    virtual std::int32_t PageHeight() const = 0;  // printable height

    // The font of all text from here on: "Times New Roman" in the given size (points).
    virtual void SetFont(int points, bool bold) = 0;
    virtual std::int32_t TextWidth(std::wstring_view text) = 0;
    virtual std::int32_t TextHeight(std::wstring_view text) = 0;

    // Prints `text` with its top left corner at (x, y).
    virtual void Text(std::int32_t x, std::int32_t y, std::wstring_view text) = 0;
    // A thin rectangle from corner to corner.
    virtual void Frame(std::int32_t left, std::int32_t top, std::int32_t right,
                       std::int32_t bottom) = 0;

    virtual void NewPage() = 0;
    // Ends the job and hands it to the printer.
    virtual void End() = 0;
};

class IPrinter {
  public:
    virtual ~IPrinter() = default;

    // Number of installed printers.
    virtual int InstalledCount() const = 0;

    // Starts a job on the default printer under the given name in the queue. Null when the printer
    // asks the user for something (a file's name, say) and the user gives up. Raises an error (482,
    // "Printer error", unless the system says more) when there is none or it refuses.
    virtual std::unique_ptr<IPrintJob> Begin(std::wstring_view document) = 0;
};

}  // namespace demovex
