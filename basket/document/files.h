// The basket as a document: New, Open, Save, Save As, Exit, recently used files, and the question
// before unsaved changes are discarded.
//
// A basket file is ANSI text: a header line, then one line per basket row with the texts of columns
// 1 to 9 separated by tabs, without trailing empty fields; every line ends with CR LF. There is no
// quoting. Reading takes article numbers, quantities, catalogue positions and free texts from the
// file; descriptions and prices come from the article master.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "basket/document/recent_files.h"
#include "basket/edit/cell_commit.h"
#include "basket/state.h"
#include "platform/file_system_tools.h"

namespace demovex {

class ProgressScope;

class BasketFiles {
  public:
    // All outlive this object. `clock` times the retries of a save; null is the system's.
    BasketFiles(BasketContext& context, ICellCommit& editor, RecentFiles& recent,
                IRetryClock* clock = nullptr)
        : context_(context),
          table_(context.table),
          editor_(editor),
          recent_(recent),
          clock_(clock) {}

    // Replaces the basket by the file's contents. Article numbers that are not in the article
    // master are left out and listed in one message at the end.
    //
    // Every failure is raised as kOwnError from "Load", "Datei '<path>' kann nicht geöffnet
    // werden: " and the cause. The rows read so far stay then, the basket counts as unmodified, and
    // the grid's redrawing stays off when it was off already; see ResumePainting.
    void Load(const std::wstring& Path);

    void mnuDateiNeu_Click();
    void mnuDateiOeffnen_Click();
    // Asks first when the file is not the one any more that this basket last read whole or wrote.
    // Raises what writing raises, with the file named in the description; the basket stays modified
    // then.
    void mnuDateiSpeichern_Click();
    // The chosen path is the basket's once the file is written.
    void mnuDateiSpeichernUnter_Click();
    void mnuDateiBeenden_Click();
    // Index 1 to 4.
    void mnuDateiLRU_Click(std::int32_t Index);

    // Asks whether unsaved changes are to be saved, and saves them. `Cancel` tells whether the
    // command that was to discard them is to be abandoned; it is true, too, when saving raises.
    void QuerySaveChanges(bool& Cancel);

    // Lets the grid be painted again after a load that failed half-way. Every command that follows
    // such a load calls it first. Does nothing while a load is running.
    void ResumePainting();

  private:
    // What a load met: numbers that are not in the article master, as the message lists them.
    struct Rejected {
        std::wstring list;
        std::int32_t count = 0;
    };

    // A path made absolute, and as it was given: for files and for messages.
    struct Place {
        std::wstring path;
        std::wstring given;
    };

    Place PlaceOf(const std::wstring& given) const;
    // The basket's file; `given` where that path came from here.
    Place CurrentPlace() const;
    void LoadRows(const Place& place, Rejected& rejected);
    // Gives the row at the counter its quantity; raises what the quantity is wrong for.
    void SetQuantity(std::int32_t row, std::wstring_view quantity);
    void EndLoading();
    void ShowRejected(const Rejected& rejected);
    std::wstring Compose(ProgressScope& progress) const;
    // Whether the basket's file may be replaced: it is the one that the basket knows, or the user
    // has said so.
    bool MayReplace(const Place& place);
    void Write(const Place& place);
    void ShowFileCaption();

    BasketContext& context_;
    OrderTable& table_;
    ICellCommit& editor_;
    RecentFiles& recent_;
    IRetryClock* clock_;
    Place place_;                     // where the basket was last loaded from or saved to
    std::optional<FileStamp> known_;  // of that file when it was read whole or written
};

}  // namespace demovex
