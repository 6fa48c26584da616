#include "client/plug_in.h"

#include <gtest/gtest.h>

#include "client/link_router.h"
#include "tests/client/fake_client_window.h"
#include "tests/support/fake_text_service.h"
#include "tests/support/raised.h"

namespace demovex {
namespace {

class PlugInTest : public testing::Test {
  protected:
    FakeTextService text;
    FakeSound sound;
    WindowLog log;
    PlugIn plug_in{{text, sound, L"C:\\Vexmart", [this]() -> std::shared_ptr<IBasketWindow> {
                        if (log.fail_create) RaiseRuntimeError(log.fail_create);
                        return std::make_shared<FakeClientWindow>(log);
                    }}};
    const std::wstring prefix{kBasketPrefix};
};

TEST_F(PlugInTest, InitializeFillsTheWindowBeforeItShowsIt) {
    plug_in.Initialize();
    EXPECT_EQ(log.calls, (std::vector<std::wstring>{L"1: Initialize", L"1: Show"}));
}

TEST_F(PlugInTest, BeforeInitializeWhatNeedsTheWindowRaisesObjectNotSet) {
    EXPECT_EQ(RaisedBy([&] { plug_in.Caption(); }), 91);
    EXPECT_EQ(RaisedBy([&] { plug_in.OpenFile(L"a.bsk"); }), 91);
    EXPECT_EQ(RaisedBy([&] { plug_in.OnSelectURL(prefix + L"4711", L"", L""); }), 91);
    EXPECT_TRUE(sound.played.empty());
}

TEST_F(PlugInTest, NoPrefixesAreAnnounced) {
    EXPECT_EQ(plug_in.EnumURLPrefixes(true), L"");
    EXPECT_EQ(plug_in.EnumURLPrefixes(false), L"");
    EXPECT_EQ(kDescription, L"Vexmart Test Client");
    EXPECT_EQ(kProducer, L"K.O.L.M.");
}

TEST_F(PlugInTest, AnOrderLinkAddsItsProductOnceWithPositionNameAndAddressCrossed) {
    plug_in.Initialize();
    log.calls.clear();
    plug_in.OnSelectURL(prefix + L"4711", L"vex://seite/3", L"Schrauben");
    EXPECT_EQ(
        log.calls,
        (std::vector<std::wstring>{L"1: AddArtikel 4711|Schrauben|vex://seite/3|False|1|True"}));
}

TEST_F(PlugInTest, EveryAcceptedLinkPlaysTheOrderSoundFromTheComponentsFolder) {
    plug_in.Initialize();
    plug_in.OnSelectURL(prefix + L"4711", L"", L"");
    plug_in.OnSelectURL(prefix + L"4711", L"", L"");
    plug_in.OnSelectURL(prefix, L"", L"");
    EXPECT_EQ(sound.played, (std::vector<std::wstring>(3, L"C:\\Vexmart\\Order.wav")));
}

TEST_F(PlugInTest, AWindowThatSaysSomethingItselfNeedsNoSound) {
    plug_in.Initialize();
    log.has_info = true;
    plug_in.OnSelectURL(prefix + L"4711", L"", L"");
    EXPECT_TRUE(sound.played.empty());
    log.has_info = false;
    plug_in.OnSelectURL(prefix + L"4711", L"", L"");
    EXPECT_EQ(sound.played.size(), 1u);
}

TEST_F(PlugInTest, AnyOtherLinkDoesNothingAndMakesNoSound) {
    plug_in.Initialize();
    log.calls.clear();
    plug_in.OnSelectURL(L"http://www.other.example/?prodno=4711", L"", L"");
    plug_in.OnSelectURL(L"", L"", L"");
    EXPECT_TRUE(log.calls.empty());
    EXPECT_TRUE(sound.played.empty());
}

TEST_F(PlugInTest, AnErrorOfTheWindowReachesTheHostWithoutASound) {
    plug_in.Initialize();
    log.fail_add = 13;
    EXPECT_EQ(RaisedBy([&] { plug_in.OnSelectURL(prefix + L"0", L"", L""); }), 13);
    EXPECT_TRUE(sound.played.empty());
    log.fail_load = 53;
    EXPECT_EQ(RaisedBy([&] { plug_in.OpenFile(L"a.bsk"); }), 53);
}

TEST_F(PlugInTest, ASecondInitializeMakesASecondWindowAndUsesItFromThenOn) {
    plug_in.Initialize();
    plug_in.Initialize();
    EXPECT_EQ(log.created, 2);
    EXPECT_EQ(log.alive, 1);  // the real first window keeps itself
    plug_in.OpenFile(L"a.bsk");
    EXPECT_EQ(log.calls.back(), L"2: Load a.bsk");
}

TEST_F(PlugInTest, AFailedFirstInitializeLeavesNothingAndALaterOneWorks) {
    for (int* step : {&log.fail_create, &log.fail_initialize, &log.fail_show}) {
        *step = 53;
        EXPECT_EQ(RaisedBy([&] { plug_in.Initialize(); }), 53);
        EXPECT_EQ(log.alive, 0);
        EXPECT_EQ(RaisedBy([&] { plug_in.Caption(); }), 91);
        *step = 0;
    }
    plug_in.Initialize();
    EXPECT_EQ(plug_in.Caption(), L"Vexmart Demo Warenkorb 1.1");
}

TEST_F(PlugInTest, AFailedSecondInitializeKeepsTheFirstWindow) {
    plug_in.Initialize();
    for (int* step : {&log.fail_create, &log.fail_initialize, &log.fail_show}) {
        *step = 53;
        EXPECT_EQ(RaisedBy([&] { plug_in.Initialize(); }), 53);
        *step = 0;
        plug_in.OpenFile(L"a.bsk");
        EXPECT_EQ(log.calls.back(), L"1: Load a.bsk");
    }
}

}  // namespace
}  // namespace demovex
