// What the frame loop owes the world, over the stand-in server's modules.
#include <gtest/gtest.h>

#include <array>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <set>
#include <string>
#include <vector>

#include "apps/libs/png/encodepng.h"
#include "platform/virtual/virtual.h"
#include "tests/support/stubserver.h"
#include "tests/support/wholeunit.h"

namespace {

class Shell : public testing::Test {
  protected:
    static void SetUpTestSuite() { unit_ = new WholeUnit("camera-recording"); }
    static void TearDownTestSuite() { delete unit_; }
    void SetUp() override {
        unit_->scene("camera-recording");
        unit_->settle();
        ASSERT_EQ(unit_->page(), "Home_LDD");
    }
    static std::string log() {
        std::ifstream file(Platform::Virtual::path("/dev/kmsg"));
        return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
    }

    static inline WholeUnit* unit_ = nullptr;
};

TEST_F(Shell, AServersWriteIsOnTheScreenInTheSameFrame) {
    for (const char* state : {"Standby", "Waiting", "Recording"}) {
        const auto before = unit_->shot().pixels;
        const auto pans = unit_->pans();
        unit_->set("VarCamState", state);
        unit_->pass();
        EXPECT_EQ(unit_->pans(), pans + 1) << state;
        EXPECT_NE(unit_->shot().pixels, before) << state;
        EXPECT_EQ(unit_->shot().pixels, unit_->redrawn().pixels) << state;
    }
}

TEST_F(Shell, TheHeldPowerKeyCountsDownAndATappedOneDoesNot) {
    const auto boxIsShown = [] { return unit_->shot().pixels[std::size_t{162} * 240 + 64] == 0xffffffff; };
    const auto watch = [&](int frames) {
        std::string seen;
        for (int frame = 0; frame < frames; ++frame) {
            unit_->frame();
            const std::string now = boxIsShown() ? unit_->get("VarPowerHoldTimer_Local") : "-";
            if (!seen.ends_with(now)) seen += now;
        }
        return seen;
    };
    unit_->press("power");
    EXPECT_EQ(watch(60), "-");
    unit_->key("power", true);
    EXPECT_EQ(watch(150), "-3210");
    unit_->key("power", false);
    EXPECT_EQ(watch(1), "-");
}

TEST_F(Shell, ALockedKeySaysSoUntilTimeOrATouchTakesItAway) {
    const auto symbolIsShown = [] {
        return (unit_->shot().pixels[std::size_t{152} * 240 + 64] & 0xffffff) == 0xffc880;
    };
    unit_->set("VarButtonsLocked", "1");
    for (int round = 0; round < 2; ++round) {
        unit_->press("ll");
        EXPECT_TRUE(symbolIsShown()) << round;
        unit_->frames(180);
        EXPECT_TRUE(symbolIsShown()) << round;
        unit_->frames(60);
        EXPECT_FALSE(symbolIsShown()) << round;
    }
    unit_->press("ll");
    unit_->set("VarButtonsLocked", "0");
    EXPECT_TRUE(symbolIsShown());
    unit_->touch(120, 100);
    unit_->frame();
    EXPECT_FALSE(symbolIsShown());
    EXPECT_EQ(unit_->get("VarLockedButtonPressed"), "0");
}

TEST_F(Shell, ThePowerSaysWhenItIsNoLongerNormal) {
    const auto symbol = [] {
        return unit_->get("VarPopupSymbolIsVisible_Local") == "1" ? unit_->get("VarSymbolPopup_Local") : "none";
    };
    for (const auto& [charge, expected] : {std::pair("80", "none"), std::pair("10", "2"), std::pair("80", "none")}) {
        unit_->act("power", "battery", charge);
        unit_->frames(3);
        EXPECT_EQ(symbol(), expected) << charge;
    }
}

TEST_F(Shell, AKeyOrATouchWakesItAndDoesNothingElse) {
    for (const bool byTouch : {false, true}) {
        unit_->set("VarScreenSaverMode", "3");
        unit_->set("VarScreenSaverActive", "1");
        unit_->frames(40);
        EXPECT_NE(unit_->shot().pixels, unit_->redrawn().pixels) << "a ring, no page";
        const std::string before = log();
        if (byTouch)
            unit_->touch(40, 380);
        else
            unit_->press("page");
        EXPECT_EQ(unit_->get("VarScreenSaverActive"), "0");
        unit_->frames(2);
        EXPECT_EQ(unit_->shot().pixels, unit_->redrawn().pixels) << "the page is back";
        EXPECT_EQ(unit_->page(), "Home_LDD");
        EXPECT_EQ(log().find("USER Key", before.size()), std::string::npos);
    }
}

TEST_F(Shell, SoftKeysTurnThePicturesOfTheSlideshowAndAnyOtherEndsIt) {
    const std::filesystem::path folder = Platform::Virtual::path("/media/usb/TERN/IMAGES");
    std::filesystem::create_directories(folder);
    const auto paint = [&](const char* name, std::uint32_t color) {
        const std::vector<std::uint32_t> pixels(16 * 16, 0xff000000 | color);
        const auto png = encodePng(pixels.data(), 16, 16);
        std::ofstream(folder / name, std::ios::binary)
            .write(reinterpret_cast<const char*>(png.data()), static_cast<std::streamsize>(png.size()));
    };
    paint("one.png", 0xff0000);
    paint("two.png", 0x00ff00);
    paint("three.png", 0x0000ff);
    std::ofstream(folder / "notes.txt") << "no picture";
    const auto middle = [] { return unit_->shot().pixels[200 * 240 + 120] & 0xffffff; };
    unit_->act("files", "usb", "true");
    unit_->frames(90);
    unit_->set("VarScreenSaverMode", "10");
    unit_->set("VarScreenSaverActive", "1");
    unit_->frames(3);
    const std::uint32_t first = middle();
    std::set<std::uint32_t> seen = {first};
    for (int i = 0; i < 2; ++i) {
        unit_->press("lr");
        seen.insert(middle());
    }
    EXPECT_EQ(seen, (std::set<std::uint32_t>{0xff0000, 0x00ff00, 0x0000ff}));
    unit_->press("lr");
    EXPECT_EQ(middle(), first) << "round and round";
    const auto pans = unit_->pans();
    unit_->frames(5);
    EXPECT_EQ(unit_->pans(), pans) << "a picture that stands is not shown again";
    unit_->press("ll");
    EXPECT_NE(middle(), first);
    EXPECT_EQ(unit_->get("VarScreenSaverActive"), "1");
    unit_->press("um");
    EXPECT_EQ(unit_->get("VarScreenSaverActive"), "0");
    unit_->frames(2);
    EXPECT_EQ(unit_->shot().pixels, unit_->redrawn().pixels);
    unit_->act("files", "usb", "false");
}

TEST_F(Shell, TestPicturesStandUntilTheyAreTakenBack) {
    const auto pixel = [](unsigned x, unsigned y) { return unit_->shot().pixels[y * 240 + x] & 0xffffff; };
    const std::array<std::uint32_t, 5> colors = {0xff0000, 0x00ff00, 0x0000ff, 0xffffff, 0x000000};
    for (std::size_t i = 0; i < colors.size(); ++i) {
        unit_->set("VarServiceModeDisplayTest", std::to_string(i + 1));
        unit_->frame();
        EXPECT_EQ(pixel(3, 3), colors[i]);
        EXPECT_EQ(pixel(236, 396), colors[i]);
    }
    unit_->set("VarServiceModeDisplayTest", "6");
    unit_->frames(2);
    EXPECT_EQ(pixel(59, 200), 0x7f7f7fu);
    EXPECT_EQ(pixel(60, 200), 0x7f0000u);
    EXPECT_EQ(pixel(179, 399), 0x00fe00u);
    EXPECT_EQ(pixel(239, 399), 0x0000feu);
    unit_->server().set<std::int32_t>("VarServiceModeDisplayTest", 7);
    unit_->frame();
    EXPECT_EQ(pixel(239, 399), 0x0000feu) << "the last picture stays";
    unit_->set("VarServiceModeDisplayTest", "0");
    unit_->frame();
    EXPECT_EQ(unit_->shot().pixels, unit_->redrawn().pixels);
}

TEST_F(Shell, CountsMissedFramesAndKeysThatAreLocked) {
    const int before = std::stoi(unit_->get("VarGuiMissedFrames"));
    unit_->driver().advanceClock(20'000'000);
    unit_->pass();
    EXPECT_EQ(unit_->get("VarGuiMissedFrames"), std::to_string(before));
    unit_->driver().advanceClock(100'000'000);
    unit_->pass();
    EXPECT_EQ(unit_->get("VarGuiMissedFrames"), std::to_string(before + 5));
    EXPECT_NE(log().find("Gui missed 5 frame(s), with a total of " + std::to_string(before + 5)), std::string::npos);

    unit_->set("VarButtonsLocked", "1");
    unit_->press("page");
    EXPECT_EQ(unit_->page(), "Home_LDD");
    EXPECT_EQ(unit_->get("VarLockedButtonPressed"), "1");
    const auto at = log().size();
    unit_->press("power");
    EXPECT_NE(log().find("USER Key: Event_ButtonSoftPowerPressed", at), std::string::npos) << "is never locked";
    unit_->set("VarButtonsLocked", "0");
}

TEST_F(Shell, WarnsOfWhatTheServerFinds) {
    const auto shows = [](const char* name) {
        const bool shown = log().ends_with("Showing message \"" + std::string(name) + "\"\n");
        unit_->press("lr");
        unit_->frames(3);
        return shown;
    };
    const auto tell = [](const char* name) {
        unit_->set(name, "1");
        unit_->frame();
        EXPECT_EQ(unit_->get(name), "0") << name;
    };
    tell("VarWrongModemVersion");
    EXPECT_TRUE(shows("WrongModemVersion"));
    EXPECT_EQ(unit_->get("VarUserIgnoredModemWarning"), "1");
    unit_->set("VarWrongModemVersion", "1");
    unit_->frames(3);
    EXPECT_FALSE(shows("WrongModemVersion")) << "not a second time";
    tell("VarRadioWrongServerWarning");
    EXPECT_TRUE(shows("SecondMotorController"));
    tell("VarOneWireFailed");
    EXPECT_TRUE(shows("OneWireFailed"));
    unit_->poke("VarCamState", "3");
    unit_->set("VarCinefadeMode", "2");
    unit_->pass();
    EXPECT_FALSE(shows("CinefadeModeWarning"));
    unit_->poke("VarCamState", "1");
    unit_->set("VarCinefadeMode", "2");
    unit_->pass();
    EXPECT_TRUE(shows("CinefadeModeWarning"));
    EXPECT_EQ(unit_->get("VarMessageIsVisible"), "0");
}

}  // namespace
