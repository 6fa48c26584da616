// Long work tells the view how far it is. The view decides whether the user sees it (only work that
// takes longer than half a second), so the work reports cheaply and often.
#pragma once

#include <cstdint>
#include <string_view>

#include "base/error.h"
#include "basket/view.h"

namespace demovex {

class ProgressScope {
  public:
    // Steps between two reports: rare enough to cost nothing, often enough for a smooth bar.
    static constexpr std::int32_t kStride = 256;

    // Whether the user may end the work before it is done.
    enum class Ends { kWhenDone, kWithEscape };

    ProgressScope(IBasketView& view, std::wstring_view what, Ends ends = Ends::kWhenDone)
        : view_(view), ends_(ends) {
        view_.BeginProgress(what);
    }
    ~ProgressScope() {
        try {
            view_.EndProgress();
        } catch (...) {  // a status bar that cannot be reset must not hide the work's own error
        }
    }
    ProgressScope(const ProgressScope&) = delete;
    ProgressScope& operator=(const ProgressScope&) = delete;

    void Report(double fraction) { view_.SetProgress(fraction); }
    // Step `step` of `count`, as a share of the range from `from` to `to`. Raises "Abgebrochen"
    // when the user has ended work that may be ended.
    void Step(std::int32_t step, std::int32_t count, double from = 0, double to = 1) {
        if (step % kStride != 0) return;
        if (ends_ == Ends::kWithEscape && view_.Cancelled()) RaiseOwnError(L"", L"Abgebrochen");
        Report(from + (to - from) * step / count);
    }

  private:
    IBasketView& view_;
    Ends ends_;
};

}  // namespace demovex
