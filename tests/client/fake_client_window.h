// A basket window that writes down what its client asks of it and fails when told to.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "base/error.h"
#include "client/plug_in.h"

namespace demovex {

// What the windows of one test share.
struct WindowLog {
    std::vector<std::wstring> calls;
    int created = 0;
    int alive = 0;
    int fail_create = 0;  // error numbers to raise, 0 for none
    int fail_initialize = 0;
    int fail_show = 0;
    int fail_add = 0;
    int fail_load = 0;
    bool has_info = false;  // the window shows or says something of its own about an order
    std::wstring caption = L"Vexmart Demo Warenkorb 1.1";
};

class FakeClientWindow final : public IBasketWindow {
  public:
    explicit FakeClientWindow(WindowLog& log) : log_(log), number_(++log.created) { ++log_.alive; }
    ~FakeClientWindow() override { --log_.alive; }
    FakeClientWindow(const FakeClientWindow&) = delete;
    FakeClientWindow& operator=(const FakeClientWindow&) = delete;

    void Initialize() override {
        Note(L"Initialize");
        Fail(log_.fail_initialize);
    }
    void Show() override {
        Note(L"Show");
        Fail(log_.fail_show);
    }
    std::wstring Caption() const override { return log_.caption; }
    void AddArtikel(const std::wstring& ArtikelNr, const std::wstring& Katalog,
                    const std::wstring& KatalogURL, bool& HasInfo, std::int32_t Menge,
                    bool UseExternalInfoBox) override {
        Note(L"AddArtikel " + ArtikelNr + L"|" + Katalog + L"|" + KatalogURL + L"|" +
             (HasInfo ? L"True" : L"False") + L"|" + std::to_wstring(Menge) + L"|" +
             (UseExternalInfoBox ? L"True" : L"False"));
        Fail(log_.fail_add);
        if (log_.has_info) HasInfo = true;
    }
    void Load(const std::wstring& Path) override {
        Note(L"Load " + Path);
        Fail(log_.fail_load);
    }

  private:
    void Note(const std::wstring& what) {
        log_.calls.push_back(std::to_wstring(number_) + L": " + what);
    }
    static void Fail(int number) {
        if (number) RaiseRuntimeError(number);
    }

    WindowLog& log_;
    int number_;
};

class FakeSound final : public ISound {
  public:
    void Play(std::wstring_view path) noexcept override { played.emplace_back(path); }
    void Beep() noexcept override {}
    std::vector<std::wstring> played;
};

}  // namespace demovex
