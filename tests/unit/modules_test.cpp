#include <gtest/gtest.h>

#include <cmath>
#include <fstream>

#include "tests/unit/world.h"
#include "unit/server/modules/optics.h"

namespace fs = std::filesystem;

TEST(Hands, MoveTheAxisTheyAreAssignedToUntilTheyAreLocked) {
    World world;
    world.turnKnobTo(0.25);
    EXPECT_FLOAT_EQ(world.fraction("VarFocusTargetValue"), 0.25F);
    world.write("VarKnobReverse", "1");
    world.run(0.1);
    EXPECT_FLOAT_EQ(world.fraction("VarFocusTargetValue"), 0.75F);
    world.write("VarKnobLock", "1");
    world.turnKnobTo(0.9);
    EXPECT_FLOAT_EQ(world.fraction("VarFocusTargetValue"), 0.75F);
    world.write({{"VarKnobAssignment", "Iris"}, {"VarKnobLock", "0"}});
    world.run(0.1);
    EXPECT_NEAR(world.number("VarIrisTargetValue"), 0.1, 1e-6);
}

TEST(Hands, TheStickIsAForcePadOnlyWhileItDoesNotDriveTheDisplay) {
    World world;
    world.write("VarJoystickControlsGui", "1");
    world.act("hands", "stick-y", 1.0);
    world.run(0.5);
    EXPECT_EQ(world.number("VarZoomTargetValue"), 0.5);
    world.write("VarJoystickControlsGui", "0");
    world.run(0.5);
    EXPECT_NEAR(world.number("VarZoomTargetValue"), 0.75, 0.01);
}

TEST(Motors, CalibrateInPhasesAndThenFollowTheirTarget) {
    World world;
    world.act("motors", "focus", "new");
    EXPECT_EQ(world.get("VarFocusMotor.State"), "1");
    world.run(1.1);
    world.expect({{"VarFocusMotor.State", "2"}, {"VarAnyMotorCalRequest", "1"}, {"VarAnyMotorCalSkippable", "0"}});
    // The page's order: the request, then 0 into the state.
    world.write("VarFocusStartCalibSet", "1");
    EXPECT_EQ(world.get("VarFocusStartCalibSet"), "0");
    world.write("VarFocusMotor.State", "0");
    EXPECT_EQ(world.get("VarFocusMotor.State"), "5");
    world.run(2.1);
    EXPECT_LT(world.number("VarFocusActPosNorm"), 0.1);
    world.run(1.9);
    EXPECT_GT(world.number("VarFocusActPosNorm"), 0.9);
    world.run(1.2);
    world.expect({{"VarFocusMotor.State", "3"}, {"VarFocusMotor.CalFinished", "1"}});
    world.act("hands", "knob", 0.1);
    world.run(2);
    EXPECT_NEAR(world.number("VarFocusActPosNorm"), 0.1, 1e-6);
}

TEST(Motors, SkipOnlyWhatMayBeSkipped) {
    World world;
    world.act("motors", "focus", "skippable");
    world.act("motors", "iris", "not-calibrated");
    world.run(0.1);
    world.expect({{"VarAnyMotorCalSkippable", "1"}, {"VarAllMotorsCalSkippable", "0"}});
    for (const char* axis : {"Focus", "Iris"}) {
        world.write(std::string("Var") + axis + "SkipCalibSet", "0");
        world.write(std::string("Var") + axis + "Motor.State", "0");
    }
    world.expect({{"VarFocusMotor.State", "3"}, {"VarIrisMotor.State", "2"}});
    EXPECT_NE(world.get("VarFocusSkipCalibSet"), "0") << "it could not be asked for again";
    world.act("motors", "zoom", "skippable");
    world.write("VarAutoSkipCal", "1");
    world.run(1);
    EXPECT_EQ(world.get("VarZoomMotor.State"), "3");
}

TEST(Motors, LearnALimitFromTheTravelWhileItIsSet) {
    World world;
    world.act("motors", "focus", "ready");
    world.write("VarFocusTorqueSet", "4");
    world.act("hands", "knob", 0.3);
    world.run(1);
    world.write("VarSetMotorLimitFocus", "1");
    world.run(0.1);
    world.act("hands", "knob", 0.6);
    world.run(1);
    world.write("VarStopSettingLimit", "1");
    world.run(0.1);
    world.expect({{"VarSetMotorLimitFocus", "0"}, {"VarFocusMotor.SoftBndActive", "1"}});
    EXPECT_NEAR(world.number("VarFocusMotor.SoftBndLowerNorm"), 0.3, 1e-5);
    world.act("hands", "knob", 1.0);
    world.run(1);
    EXPECT_NEAR(world.number("VarFocusTargetValue"), 0.6, 1e-5);
}

TEST(Motors, ManualCalibrationEndsWithTheSecondLimitOrByLeaving) {
    World world;
    world.act("motors", "iris", "not-calibrated");
    world.write("VarManualCalibrationAxis", "Iris");
    EXPECT_EQ(world.get("VarIrisMotor.State"), "5");
    world.write("VarManualCalibrationFirstBnd", "1");
    EXPECT_EQ(world.get("VarManualCalibrationStep"), "1");
    world.write("VarManualCalibrationAxis", "None");
    EXPECT_EQ(world.get("VarIrisMotor.State"), "2");
    world.write({{"VarManualCalibrationAxis", "Iris"}, {"VarManualCalibrationFirstBnd", "1"}});
    world.act("hands", "slider", 1.0);
    world.run(2);
    world.write("VarManualCalibrationSecondBnd", "1");
    world.expect({{"VarManualCalibrationFinished", "1"}, {"VarIrisMotor.State", "3"}});
}

TEST(Lens, ScalesRiseAndFitTheirTables) {
    for (const Unit::LensModel& lens : Unit::lensModels()) {
        for (const auto& scale : {lens.metres(), lens.feet(), lens.stops(), lens.focalLengths()}) {
            if (scale.empty()) continue;
            EXPECT_LE(scale.size(), 256U);
            EXPECT_NEAR(scale.front().position, 0, 1e-9) << lens.name;
            EXPECT_NEAR(scale.back().position, 1, 1e-9) << lens.name;
            for (std::size_t i = 1; i < scale.size(); ++i) {
                EXPECT_LT(scale[i - 1].position, scale[i].position) << lens.name << " " << scale[i].value;
                EXPECT_LT(scale[i - 1].value, scale[i].value) << lens.name;
            }
        }
        for (const double at : {0.1, 0.5, 0.9}) {
            EXPECT_NEAR(lens.positionOfDistance(lens.distanceAt(at)), at, 1e-9);
            EXPECT_NEAR(lens.positionOfStop(lens.stopAt(at)), at, 1e-9);
        }
    }
}

TEST(Lens, ShowsWhatStandsAtTheReadingLineAndNothingWithoutALens) {
    World world;
    world.act("lens", "lens", "zoom-25-250");
    world.turnKnobTo(0.0);
    EXPECT_EQ(world.get("VarLensTableZoom.TableActive"), "1");
    EXPECT_NEAR(world.number("VarLensActFocus"), 1.2, 1e-4);
    EXPECT_EQ(world.get("VarFocalLength"), "79");  // the middle of a logarithmic ring
    EXPECT_LT(world.number("VarDofNearValue"), 1.2);
    EXPECT_GT(world.number("VarDofFarValue"), 1.2);
    world.act("lens", "lens", "prime-35");
    EXPECT_EQ(world.get("VarLensTableZoom.TableActive"), "0");
    world.act("lens", "lens", "none");
    world.run(0.1);
    world.expect({{"VarLensTableFocusMeter.ListSize", "0"}, {"VarLensActFocus", "0"}});
}

TEST(Marks, AreAddedAndClearedWhereTheAxisStands) {
    World world;
    for (int i = 0; i < 9; ++i) {
        world.turnKnobTo(0.1 * i);
        world.write("VarLensMarkerFocusAddValue", "1");
        EXPECT_EQ(world.get("VarLensMarkerFocusAddValue"), "0");
    }
    EXPECT_EQ(world.get("VarLensMarkerFocusMaxReached"), "1");
    EXPECT_EQ(world.get("VarLensMarkerFocusNearMark"), "0") << "there was no room for the ninth";
    world.turnKnobTo(0.305);
    EXPECT_EQ(world.get("VarLensMarkerFocusNearMark"), "1");
    world.write("VarFocusMarkerClearValue", "1");
    world.expect({{"VarLensMarkerFocusValue3", "-1"}, {"VarLensMarkerFocusNearMark", "0"}});
}

TEST(Camera, TakesASettingByRowOrByItsOwnValue) {
    World world;
    world.act("camera", "camera", "orvo");
    world.write("VarCamSpeedSet", "2");
    EXPECT_EQ(world.get("VarCamSpeedAct"), "25");
    world.write("VarCamSpeedSet", "500");
    EXPECT_EQ(world.get("VarCamSpeedAct"), "25");
    world.write("VarCamSpeedCustomSet", "37.5");
    EXPECT_EQ(world.get("VarCamSpeedAct"), "37.5");
    world.write("VarCamSDIPeakingToggle", "1");
    world.expect({{"VarCamSDIPeakingToggle", "0"}, {"VarCamSDIPeaking", "1"}});
    world.act("camera", "camera", "partner");
    EXPECT_EQ(world.get("VarCamSpeedListSize"), "0");
    world.write("VarCamSpeedSet", "2");
    EXPECT_EQ(world.get("VarCamSpeedAct"), "24");
}

TEST(Camera, RecordsUntilTheMediumIsFullAndTheStopwatchFollows) {
    World world;
    world.act("camera", "camera", "orvo");
    world.act("camera", "media-minutes", 0.05);
    world.write({{"VarTimerSyncToRec", "1"}, {"VarButtonRecord", "1"}, {"VarButtonRecord", "0"}});
    EXPECT_EQ(world.get("VarCamState"), "1");
    world.run(2.1);
    world.expect({{"VarTimerCurrentValue", "2"}, {"VarCamRemainingTimeWarning", "1"}});
    world.run(2);
    world.expect({{"VarCamState", "2"}, {"VarTimerActive", "0"}});
}

TEST(Stopwatch, CountsDownToAnAlert) {
    World world;
    world.write(
        {{"VarTimerFunction", "Countdown"}, {"VarTimerMinSet", "0"}, {"VarTimerSecSet", "3"}, {"VarTimerAudio", "1"}});
    EXPECT_EQ(world.get("VarTimerCurrentValue"), "3");
    world.write("VarTimerStart", "1");
    world.run(3.1);
    EXPECT_EQ(world.get("VarTimerAlertActive"), "1");
    world.run(2.1);
    EXPECT_EQ(world.get("VarTimerBeepCount"), "3");
    world.write("VarTimerReset", "1");
    EXPECT_EQ(world.get("VarTimerAlertActive"), "0");
}

TEST(Radio, ConnectsByItselfAndOnlyWithARegion) {
    World world;
    world.run(4);
    world.expect({{"VarRadioState", "6"}, {"VarRadioLinkQuality", "4"}});
    world.act("radio", "controller", false);
    world.run(0.1);
    world.expect({{"VarRadioState", "4"}, {"VarRadioLinkQuality", "0"}});
    world.write("VarRadioRegion", "Unset");
    world.run(0.1);
    EXPECT_EQ(world.get("VarRadioState"), "0");
}

TEST(Clock, ReadsOutOnlyWhileThePagesShowItAndKeepsRealDates) {
    World world;
    EXPECT_EQ(world.get("VarDateMinute"), "30");
    world.run(61);
    EXPECT_EQ(world.get("VarDateMinute"), "30");
    world.write("VarDateUpdate", "1");
    world.run(1.1);
    EXPECT_EQ(world.get("VarDateMinute"), "31");
    world.write({{"VarDateDay", "31"}, {"VarDateMonth", "2"}});
    EXPECT_EQ(world.get("VarDateDay"), "28");
    world.write("VarDateHour12", "12");
    EXPECT_EQ(world.get("VarDateHour"), "0");
}

TEST(Files, AreRealAndStayInsideTheTree) {
    World world;
    world.act("files", "usb", true);
    EXPECT_EQ(world.get("VarUsbState"), "2");
    const double before = world.number("VarFileBrowserEntryListSize");
    world.run(1.1);
    EXPECT_EQ(world.get("VarUsbState"), "1");
    EXPECT_GT(world.number("VarFileBrowserEntryListSize"), before);
    const auto operate = [&world](const char* operation, const char* argument) {
        world.write("VarFileBrowserOperation", operation);
        world.write("VarFileBrowserOperationArgument", argument);
        world.write("VarFileBrowserOperationStart", "1");
        EXPECT_EQ(world.get("VarFileBrowserOperationStart"), "0");
    };
    world.write("VarFileBrowserHighlightIndex", "0");
    operate("MakeDirectory", "../../escaped");
    EXPECT_FALSE(fs::exists(World::folder() / "escaped"));
    operate("MakeDirectory", "mine");
    EXPECT_TRUE(fs::is_directory(World::folder() / "files/internal/mine"));
    world.write("VarFileBrowserHighlightIndex", "0");
    operate("Delete", "");
    EXPECT_TRUE(fs::exists(World::folder() / "files/internal")) << "a root is never deleted";
    world.write("VarLoadLensFileName", "usb/lenses/../../../etc/passwd");
    EXPECT_EQ(world.get("VarFileNotFound"), "1");
    world.write("VarLoadLensFileName", "usb/lenses/broken.lens");
    EXPECT_EQ(world.get("VarLensFileInvalidFile"), "1");
    world.write("VarLoadLensFileName", "usb/lenses/rental/prime-75.lens");
    world.expect({{"VarLensTableFocusMeter.TableActive", "1"}, {"VarMruLensFileListSize", "1"}});
    world.act("files", "usb", false);
    EXPECT_EQ(world.number("VarFileBrowserEntryListSize"), before + 1);
}

TEST(Update, InstallsAGoodFileAndFailsWhenTheStickGoes) {
    World world;
    world.act("files", "usb", true);
    world.run(1.2);
    EXPECT_EQ(world.get("VarHostUpdateFileListSize"), "2");
    world.write("VarHostUpdateFileName", "damaged.fw");
    world.run(1.2);
    EXPECT_EQ(world.get("VarHostUpdateFileState"), "3");
    world.write("VarHostUpdateFileName", "hand-0.2.0.fw");
    world.run(1.2);
    world.write("VarHostUpdateStart", "1");
    world.run(7);
    world.expect({{"VarProductVersion", "0.2.0"}, {"VarHostUpdateStart", "0"}});
    world.write("VarKordelUpdateStart", "1");
    world.run(1);
    world.act("files", "usb", false);
    world.run(0.1);
    world.expect({{"VarKordelUpdateState", "3"}, {"VarKordelUpdateStart", "0"}});
}
