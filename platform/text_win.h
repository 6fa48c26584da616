// Text in the locale of the user who runs the host.
//
//   WinTextService text;
//   text.FormatAmount(1234.5);   // L"1.234,50" for a German user
//
// The locale is read when the object is made; call Refresh when the system says that settings have
// changed (WM_SETTINGCHANGE). What can be decided without the system is (plainly written numbers,
// amounts, comparisons of plain article numbers); all else is asked of it.
#pragma once

#include <array>
#include <string>
#include <string_view>

#include "platform/learned_order.h"
#include "platform/number_format.h"
#include "platform/text.h"

namespace demovex {

class WinTextService : public ITextService {
  public:
    WinTextService();

    // Reads the user's separators and grouping anew.
    void Refresh();

    int CompareText(std::wstring_view a, std::wstring_view b) const override;
    std::wstring LowerCase(std::wstring_view text) const override;
    double ToNumber(std::wstring_view text) const override;
    std::wstring FromNumber(double value) const override;
    void WriteAmount(double value, std::wstring& text) const override;
    bool UsesOwnFormat() const override { return own_format_; }
    // No best fits: a character that the code page lacks becomes "?", never a look-alike.
    std::string ToAnsi(std::wstring_view text, bool* lossy = nullptr) const override;
    void ReadAnsi(std::string_view bytes, std::wstring& text) const override;

    const NumberFormat& format() const { return format_; }

  private:
    // The code page as a table, when each of its characters is one byte.
    void ReadCodePage();
    // False, with `bytes` of no use, when a character needs the system's judgement.
    bool ToSingleBytes(std::wstring_view text, std::string& bytes) const;

    NumberFormat format_;
    bool own_format_ = true;
    bool single_bytes_ = false;
    std::array<wchar_t, 256> wide_{};  // what each byte stands for
    mutable LearnedOrder learned_;     // of the language below
    mutable unsigned long learned_locale_ = 0;
};

}  // namespace demovex
