// The user's default printer, through GDI.
//
//   WinPrinter printer([&] { return window; });
//   auto job = printer.Begin(L"Warenkorb");
//   job->SetFont(10, false);
//   job->Text(720, 720, L"Guten Tag");
//   job->End();
//
// A place in twips becomes the nearest device dot, always in the same way, so that edges that are
// equal in twips are equal on paper at any resolution. Paper, orientation and tray are what the
// user has set for the printer.
#pragma once

#include <memory>
#include <string_view>

#include "platform/owner_window_win.h"
#include "platform/printer.h"

namespace demovex {

class WinPrinter : public IPrinter {
  public:
    // `owner` gives the window that takes no input while a job is under way (a driver may show a
    // dialog of its own then); it may give null, and may be left out.
    explicit WinPrinter(OwnerWindow owner = {});

    // Raises 482 when the system cannot say.
    int InstalledCount() const override;
    // Raises 482 with the system's own words where it has some.
    std::unique_ptr<IPrintJob> Begin(std::wstring_view document) override;

  private:
    OwnerWindow owner_;
};

}  // namespace demovex
