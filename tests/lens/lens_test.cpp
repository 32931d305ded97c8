// The lens data page in the hands of somebody: what goes in at the keys, the display and the server, and what comes out
// as pixels and as values.
#include <gtest/gtest.h>

#include <algorithm>
#include <map>

#include "tests/support/goldenimage.h"
#include "tests/support/wholeunit.h"

namespace {

constexpr std::uint32_t red = 0xff4c42, green = 0x00b05b, black = 0, white = 0xffffff;

class LensPage : public testing::Test {
  protected:
    static void SetUpTestSuite() { unit_ = new WholeUnit("prime-metres"); }
    static void TearDownTestSuite() { delete unit_; }
    void SetUp() override { begin("prime-metres"); }

    /// The page as it is when one comes to it, with this scene.
    static void begin(const std::string& scene) {
        unit_->scene(scene);
        unit_->settle();
        for (int i = 0; i < 5 && unit_->page() != "Home_LDD"; ++i) unit_->press("page");
        ASSERT_EQ(unit_->page(), "Home_LDD");
        set({{"VarFocusScaleMagnificationValue", "3"}, {"VarLensMarkerColorInternal", "Mixed"}});
        state("UserButtons");
    }
    static void state(const char* function) { set({{"VarFuncLDD", function}}); }
    static void set(const std::vector<std::pair<std::string, std::string>>& values) {
        for (const auto& [name, value] : values) unit_->set(name, value);
        unit_->frames(3);
    }
    static std::string get(const std::string& name) { return unit_->get(name); }
    static float number(const std::string& name) { return std::stof(unit_->get(name)); }

    static std::uint32_t pixel(int x, int y) {
        const auto picture = unit_->shot();
        return picture.pixels[static_cast<std::size_t>(y) * picture.width + static_cast<std::size_t>(x)] & 0xffffff;
    }
    /// The pixels of a part of the display.
    static std::vector<std::uint32_t> part(int x, int y, int width, int height) {
        const auto picture = unit_->shot();
        std::vector<std::uint32_t> result;
        for (int row = y; row < y + height; ++row)
            for (int column = x; column < x + width; ++column)
                result.push_back(
                    picture.pixels[static_cast<std::size_t>(row) * picture.width + static_cast<std::size_t>(column)] &
                    0xffffff);
        return result;
    }
    static bool isEmpty(int x, int y, int width, int height, std::uint32_t ground = black) {
        return std::ranges::all_of(part(x, y, width, height), [ground](auto color) { return color == ground; });
    }
    static std::vector<std::uint32_t> wideScale() { return part(173, 34, 67, 332); }
    static std::vector<std::uint32_t> narrowScale() { return part(1, 34, 42, 332); }
    static std::vector<std::uint32_t> upperRow() { return part(0, 0, 240, 32); }
    static std::vector<std::uint32_t> lowerRow() { return part(0, 369, 240, 31); }

    static Unit::InputDevices& devices() { return unit_->devices(); }
    static void key(const std::string& name, bool down) {
        unit_->key(name, down);
        unit_->frames(2);
    }

    static inline WholeUnit* unit_ = nullptr;
};

TEST_F(LensPage, TheScaleSlidesInTheFrameInWhichTheKnobTurns) {
    const auto wide = wideScale(), narrow = narrowScale();
    unit_->act("hands", "knob", "0.6");
    unit_->frame();
    EXPECT_NE(wideScale(), wide);
    EXPECT_EQ(narrowScale(), narrow) << "the slider has not moved";
    EXPECT_EQ(pixel(176, 200), white) << "the line stands";
    unit_->act("hands", "slider", "0.7");
    unit_->frame();
    EXPECT_NE(narrowScale(), narrow);
    EXPECT_EQ(unit_->shot().pixels, unit_->redrawn().pixels);
}

TEST_F(LensPage, TheFunctionKeyWalksTheStatesAndChangesTheRows) {
    for (const char* next : {"0", "1", "2", "3", "0"}) {
        const auto upper = upperRow(), lower = lowerRow();
        unit_->press("function");
        unit_->frames(3);
        EXPECT_EQ(get("VarFuncLDD"), next);
        EXPECT_NE(upperRow(), upper);
        EXPECT_NE(lowerRow(), lower);
    }
    set({{"VarSimpleLDD", "1"}, {"VarFuncLDD", "UserButtons"}});
    for (const char* next : {"4", "3", "4"}) {
        unit_->press("function");
        EXPECT_EQ(get("VarFuncLDD"), next);
    }
}

TEST_F(LensPage, AMarkStandsWhereItWasSetAndTheServerHoldsIt) {
    set({{"VarLensMarkerColorInternal", "Red"}});
    state("Marks");
    unit_->press("lr");
    unit_->frames(3);
    EXPECT_FLOAT_EQ(number("VarLensMarkerFocusValue0"), number("VarFocusTargetValue"));
    EXPECT_EQ(pixel(234, 201), red) << "on the line, whose end it covers";
    const auto clear = lowerRow();
    unit_->act("hands", "knob", "0.65");
    unit_->frames(3);
    EXPECT_NE(pixel(234, 201), red) << "it moves with the scale";
    EXPECT_NE(lowerRow(), clear) << "and the word is the other one again";
    unit_->act("hands", "knob", "0.95");
    unit_->frames(3);
    EXPECT_EQ(pixel(234, 38), red) << "an arrow at the edge beyond which it lies";
    unit_->act("hands", "knob", "0.55");
    unit_->frames(3);
    unit_->press("lr");
    unit_->frames(3);
    EXPECT_LT(number("VarLensMarkerFocusValue0"), 0);
}

TEST_F(LensPage, ALeftHandedUnitTradesTheSidesOfTheBlocks) {
    set({{"VarMultiSegmentAssignment", "None"}});
    const auto wide = wideScale();
    set({{"VarGuiRotate", "1"}});
    EXPECT_EQ(unit_->rotation(), 2u);
    EXPECT_EQ(get("VarFocusPositionX"), "0");
    EXPECT_EQ(get("VarIrisPositionX"), "160");
    // Both the picture and the blocks turned over: the knob's scale stays beside the knob, upside down.
    EXPECT_EQ(pixel(239, 199), white);
    EXPECT_NE(wideScale(), wide);
    set({{"VarGuiRotate", "0"}});
    EXPECT_EQ(wideScale(), wide);
}

TEST_F(LensPage, WithoutALensTheScalesGoAndTheKeysStay) {
    const auto lower = lowerRow();
    unit_->act("lens", "lens", "none");
    unit_->frames(3);
    EXPECT_TRUE(isEmpty(173, 34, 67, 332));
    EXPECT_TRUE(isEmpty(1, 34, 42, 332));
    EXPECT_EQ(lowerRow(), lower);
    unit_->act("lens", "lens", "zoom-25-250");
    unit_->frames(3);
    EXPECT_FALSE(isEmpty(173, 34, 67, 332));
}

TEST_F(LensPage, AnOverrideColoursTheScaleWhileTheKnobDrivesItsAxis) {
    set({{"VarOverrideFocusForGui", "Override"}});
    EXPECT_EQ(pixel(180, 60), red);
    set({{"VarOverrideFocusForGui", "Catch"}});
    EXPECT_EQ(pixel(180, 60), green);
    state("Axes");
    unit_->press("ur");
    unit_->frames(2);
    EXPECT_EQ(get("VarOverrideFocusForGui"), "0") << "its key gives the axis back";
    EXPECT_EQ(get("VarFocusTableHidden"), "0");
    set({{"VarOverrideFocusForGui", "None"}});
    unit_->press("ur");
    EXPECT_EQ(get("VarFocusTableHidden"), "1");
    EXPECT_TRUE(isEmpty(173, 34, 67, 332));
    set({{"VarFocusTableHidden", "0"}, {"VarKnobAssignment", "Iris"}, {"VarSliderAssignment", "Zoom"}});
    set({{"VarOverrideFocusForGui", "Override"}});
    EXPECT_NE(pixel(180, 60), red);
    set({{"VarOverrideFocusForGui", "None"}, {"VarOverrideIrisForGui", "Override"}});
    EXPECT_EQ(pixel(180, 60), red) << "the iris is the knob's now";
}

TEST_F(LensPage, LocksFollowTheControlOfTheirAxis) {
    state("Axes");
    unit_->press("lr");
    EXPECT_EQ(get("VarKnobLock"), "1");
    unit_->touch(40, 384);
    EXPECT_EQ(get("VarSliderLock"), "1") << "a touch of the iris field";
    set({{"VarKnobAssignment", "Iris"},
         {"VarSliderAssignment", "Focus"},
         {"VarKnobLock", "0"},
         {"VarSliderLock", "0"}});
    set({{"VarFuncLDD", "MarksAndLocks"}});
    key("function", true);
    unit_->press("lr");
    key("function", false);
    EXPECT_EQ(get("VarKnobLock"), "1") << "the iris stands at the knob's side";
    EXPECT_EQ(get("VarFuncLDD"), "4") << "a function key that was held for that changes no state";
    unit_->press("lr");
    EXPECT_GE(number("VarLensMarkerIrisValue0"), 0) << "without it the key marks";
}

TEST_F(LensPage, UserButtonsRunByKeyAndTouchUntilTheyAreLetGo) {
    set({{"VarUserButton4", "CinefadeFilterPlus"}, {"VarUserButton9", "MarkFocus"}});
    key("ul", true);
    EXPECT_EQ(get("VarCinefadeFilterIncActive"), "1");
    unit_->press("page");
    EXPECT_NE(unit_->page(), "Home_LDD");
    key("ul", false);
    EXPECT_EQ(get("VarCinefadeFilterIncActive"), "0") << "let go on another page";
    begin("prime-metres");
    set({{"VarUserButton4", "CinefadeFilterPlus"}, {"VarUserButton9", "MarkFocus"}});
    devices().touch(0, {40, 16});
    unit_->frames(2);
    EXPECT_EQ(get("VarCinefadeFilterIncActive"), "1");
    devices().release(1);
    unit_->frames(2);
    EXPECT_EQ(get("VarCinefadeFilterIncActive"), "0");
    unit_->touch(200, 384);
    EXPECT_GE(number("VarLensMarkerFocusValue0"), 0);
    set({{"VarUserButtonsActive", "0"}});
    unit_->press("lm");
    EXPECT_EQ(unit_->page(), "Menu_User_Button_Category");
    EXPECT_EQ(get("VarUserButtonListIndex"), "8");
    EXPECT_EQ(get("VarUserButtonsTemp"), get("VarUserButton8"));
}

TEST_F(LensPage, LimitsAreLearntUntilTheStateIsLeftOrAMotorChanges) {
    state("Limits");
    unit_->press("lr");
    EXPECT_EQ(get("VarSetMotorLimitFocus"), "1");
    unit_->frames(15);
    EXPECT_EQ(pixel(163, 371), white) << "the field turns over";
    unit_->press("function");
    unit_->frames(3);
    EXPECT_EQ(get("VarSetMotorLimitFocus"), "0");
    EXPECT_EQ(get("VarFuncLDD"), "3");
    state("Limits");
    unit_->press("ll");
    EXPECT_EQ(get("VarSetMotorLimitIris"), "1");
    unit_->act("motors", "iris", "lost");
    unit_->frames(3);
    EXPECT_EQ(get("VarSetMotorLimitIris"), "0");
    unit_->frames(60);
    set({{"VarFocusMotor.SoftBndActive", "1"}, {"VarFocusMotor.SoftBndLowerNorm", "0.5"}});
    EXPECT_EQ(isEmpty(173, 34, 43, 40), false);
}

TEST_F(LensPage, TheFocusOffsetIsHeld) {
    set({{"VarCamLensType", "Motorised"}, {"VarFuncLDD", "Limits"}});
    unit_->poke("VarCamLensType", "2");
    key("ur", true);
    EXPECT_EQ(get("VarFocusOffsetPressed"), "1");
    key("ur", false);
    EXPECT_EQ(get("VarFocusOffsetPressed"), "0");
}

TEST_F(LensPage, TwoFingersStretchTheScaleAndATapGoesBackAndForth) {
    devices().touch(0, {200, 180});
    unit_->frame();
    devices().touch(1, {200, 220});
    unit_->frame();
    devices().move({{200, 160}, {200, 240}});
    unit_->frames(2);
    devices().release(2);
    unit_->frames(2);
    EXPECT_FLOAT_EQ(number("VarFocusScaleMagnificationValue"), 6) << "twice as far apart, from 3";
    unit_->touch(200, 100);
    unit_->frames(2);
    const float first = number("VarFocusScaleMagnificationValue");
    unit_->touch(200, 100);
    unit_->frames(2);
    EXPECT_EQ(std::max(first, number("VarFocusScaleMagnificationValue")), 9);
    EXPECT_EQ(std::min(first, number("VarFocusScaleMagnificationValue")), number("VarFocusScaleMagnificationDefault"));
    unit_->frames(40);
    EXPECT_EQ(get("VarFocusScaleTouched"), "0");
}

TEST_F(LensPage, TheAreaOfTheReadingKnowsTapsAndStays) {
    set({{"VarMultiSegmentAssignment", "Timer"}});
    unit_->touch(109, 200, 3);
    EXPECT_EQ(get("VarTimerActive"), "0") << "it may become a double tap";
    unit_->frames(25);
    EXPECT_EQ(get("VarTimerActive"), "1");
    unit_->frames(120);
    EXPECT_NE(get("VarTimerCurrentValue"), "0");
    unit_->touch(109, 200, 3);
    unit_->touch(109, 200, 3);
    unit_->frames(25);
    EXPECT_EQ(get("VarTimerActive"), "0");
    EXPECT_EQ(get("VarTimerCurrentValue"), "0");
    unit_->touch(109, 200, 70);
    unit_->frames(2);
    EXPECT_EQ(unit_->page(), "Menu_Timer");
}

TEST_F(LensPage, SkippingACalibrationIsOneTouch) {
    begin("skippable-calibration");
    EXPECT_EQ(pixel(2, 2), 0xffc880u);
    EXPECT_EQ(pixel(2, 398), 0xffc880u);
    unit_->touch(120, 26);
    EXPECT_EQ(unit_->page(), "Home_LDD") << "what lies below hears nothing";
    const std::string before = get("VarFocusMotor.CalSkippable");
    unit_->touch(200, 26);
    unit_->touch(40, 26);
    unit_->frames(10);
    EXPECT_EQ(before, "1");
    EXPECT_EQ(get("VarFocusMotor.CalSkippable"), "0");
    EXPECT_EQ(get("VarAnyMotorCalSkippable"), "0");
    EXPECT_NE(pixel(2, 2), 0xffc880u);
}

TEST_F(LensPage, APopupThatIsNotBuiltTakesItsEditBack) {
    unit_->touch(109, 138);
    unit_->frames(2);
    EXPECT_EQ(get("VarEditVariable_Local"), "0");
    EXPECT_EQ(get("VarUserButtonsActive"), "1");
    EXPECT_EQ(pixel(31, 177), white) << "a box says so";
    unit_->frames(120);
    EXPECT_NE(pixel(31, 177), white);
}

TEST_F(LensPage, EveryWayLeadsHome) {
    const std::map<std::string, std::string> ways = {
        {"ul", "Home_Calibrate"}, {"um", "Home_Lens"}, {"ur", "Menu_Rings"}, {"page", "Home_Camera"}};
    for (const auto& [way, page] : ways) {
        state("Marks");
        unit_->press(way);
        EXPECT_EQ(unit_->page(), page);
        if (way != "page") {
            unit_->press("ll");
            EXPECT_EQ(unit_->page(), "Home_LDD") << "back";
            state("Marks");
            unit_->press(way);
        }
        for (int i = 0; i < 2 && unit_->page() != "Home_LDD"; ++i) unit_->press("page");
        EXPECT_EQ(unit_->page(), "Home_LDD");
        EXPECT_EQ(get("VarFuncLDD"), "3");
    }
    unit_->act("camera", "camera", "none");
    unit_->frames(3);
    unit_->press("page");
    EXPECT_EQ(unit_->page(), "Menu_Root");
}

// Whole pictures, as the display shows them: a left-handed unit is held the other way up.
struct Scene {
    const char* name;
    const char* scene;
    std::vector<std::pair<std::string, std::string>> values;
};

const std::vector<Scene>& pictures() {
    static const std::vector<std::pair<std::string, std::string>> ranging = {{"VarDmdType1Set", "FocusBug"},
                                                                             {"VarFocusBugLimitsIcon", "1"},
                                                                             {"VarLensMarkerFocusValue0", "0.55"},
                                                                             {"VarLensMarkerFocusValue2", "0.6"},
                                                                             {"VarLensMarkerIrisValue3", "0.3"}};
    static const auto with = [](std::vector<std::pair<std::string, std::string>> more) {
        more.insert(more.begin(), ranging.begin(), ranging.end());
        return more;
    };
    static const std::vector<Scene> all = {
        {"marks", "prime-metres", with({{"VarFuncLDD", "Marks"}})},
        {"axes-german",
         "zoom-feet-marks",
         {{"VarFuncLDD", "Axes"},
          {"VarLanguage", "German"},
          {"VarSliderLock", "1"},
          {"VarOverrideFocusForGui", "Override"}}},
        {"buttons-recording", "camera-recording", {{"VarFuncLDD", "UserButtons"}}},
        {"simple-day-chinese", "prime-metres",
         with({{"VarFuncLDD", "MarksAndLocks"}, {"VarGuiDesignIsNightStyle", "0"}, {"VarLanguage", "Chinese"}})},
        {"no-lens", "no-lens", {{"VarFuncLDD", "Limits"}, {"VarLanguage", "Spanish"}}},
        {"left-handed", "left-handed", {{"VarFuncLDD", "Axes"}, {"VarMultiSegmentAssignment", "NearFar"}}},
        {"skippable", "skippable-calibration", {}},
        {"one-axis",
         "zoom-feet-marks",
         {{"VarFuncLDD", "Axes"},
          {"VarKnobAssignment", "Zoom"},
          {"VarSliderAssignment", "None"},
          {"VarForcePadAssignment", "None"}}},
    };
    return all;
}

TEST_F(LensPage, LooksAsItLookedBefore) {
    for (const Scene& scene : pictures()) {
        SCOPED_TRACE(scene.name);
        begin(scene.scene);
        unit_->act("distance", "focusbugs", "1");
        unit_->act("distance", "subject", "2.6");
        set(scene.values);
        unit_->frames(60);
        const auto shot = unit_->shot();
        Support::Picture32 picture{shot.width, shot.height, shot.pixels};
        for (auto& color : picture.pixels) color |= 0xff000000;
        EXPECT_TRUE(Support::matchesGolden(picture, "tests/lens/golden/" + std::string(scene.name) + ".png"));
        EXPECT_EQ(shot.pixels, unit_->redrawn().pixels);
    }
}

}  // namespace
