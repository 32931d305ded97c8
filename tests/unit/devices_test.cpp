// What can be connected to the unit beside lens, motors and camera.
#include <gtest/gtest.h>

#include "tests/unit/world.h"

TEST(Clips, EachTakeBecomesAClipAndPlayingEndsWithIt) {
    World world;
    world.act("camera", "camera", "orvo");
    EXPECT_EQ(world.get("VarCamClipListNumber"), "0");
    world.run(1.2);
    world.expect({{"VarCamClipListNumber", "1"}, {"VarCamClipList0Size", "4"}, {"VarCamClipListProgress", "100"}});
    world.act("camera", "recording", true);
    world.run(3.1);
    world.act("camera", "recording", false);
    world.run(0.1);
    world.expect({{"VarCamClipList0Size", "5"},
                  {"VarCamClipList0[4].CamClipLength", "00:03"},
                  {"VarCamClipListClipAct", "4"},
                  {"VarCamClipListLastClip", "1"}});
    world.write("VarCamClipPlay", "1");
    world.expect({{"VarCamClipPlay", "0"}, {"VarCamState", "4"}});
    world.run(3.1);
    EXPECT_EQ(world.get("VarCamState"), "5");
    world.write("VarCamClipListPlaybackStop", "1");
    EXPECT_EQ(world.get("VarCamState"), "0");
    world.write({{"VarCamClipListClipSet", "2"}, {"VarCamClipListSendClipSet", "1"}});
    world.run(0.1);
    EXPECT_EQ(world.get("VarCamClipListPlayable"), "0");
    world.write("VarCamClipPlay", "1");
    EXPECT_EQ(world.get("VarCamState"), "0") << "it cannot be played";
    world.act("clips", "media", 0);
    world.run(0.1);
    EXPECT_EQ(world.get("VarCamClipListNumber"), "0");
}

TEST(Bluetooth, FindsPairsAndForgetsWithThePower) {
    World world;
    world.write("VarBluetoothScan", "1");
    world.run(0.1);
    EXPECT_EQ(world.get("VarBluetoothScan"), "0") << "it has no power";
    world.write("VarBluetoothPower", "1");
    world.run(0.1);
    EXPECT_EQ(world.get("VarBluetoothDeviceListSize"), "1");
    world.write("VarBluetoothScan", "1");
    world.run(8.2);
    world.expect({{"VarBluetoothScan", "0"}, {"VarBluetoothDeviceListSize", "4"}});
    world.write(
        {{"VarBluetoothDeviceList[1].DeviceState", "Pairing"}, {"VarBluetoothDeviceList[2].DeviceState", "Pairing"}});
    world.run(2.2);
    world.expect({{"VarBluetoothDeviceList[1].DeviceState", "2"}, {"VarBluetoothDeviceList[2].DeviceState", "4"}});
    world.write("VarBluetoothPower", "0");
    world.run(0.1);
    EXPECT_EQ(world.get("VarBluetoothDeviceListSize"), "0");
}

TEST(Distance, DevicesTakeTheirPlacesAndLeadTheFocus) {
    World world;
    world.act("lens", "lens", "prime-75");
    world.run(0.1);
    EXPECT_EQ(world.get("VarDmdSource"), "0");
    world.act("distance", "focusbugs", 1);
    world.act("distance", "subject", 2);
    world.run(1);
    world.expect({{"VarDmdSource", "2"}, {"VarFocusBugDistance1Meter", "2"}, {"VarDmdSourceSwitchDisabled", "1"}});
    const double target = world.number("VarDmdTargetValue");
    EXPECT_GT(target, 0.1);
    world.write("VarFocusTrackingActive", "1");
    world.run(0.1);
    EXPECT_EQ(world.number("VarFocusTargetValue"), target);
    world.act("distance", "ctm", true);
    world.run(1);
    EXPECT_EQ(world.get("VarDmdTypeTop"), "2");
    world.write("VarDmdTypeSwitchNext", "1");
    world.expect({{"VarDmdTypeTop", "1"}, {"VarDmdSource", "1"}});
    world.write("VarFocusBugDualModeSet", "1");
    EXPECT_EQ(world.get("VarFocusBugDualMode"), "0") << "there is but one";
}

TEST(Distance, LimitsCountOnceTheyAreCommittedAndMakeSense) {
    World world;
    world.act("distance", "focusbugs", 1);
    world.act("distance", "subject", 5);
    world.write("VarFocusBugLimitActiveSet", "1");
    EXPECT_EQ(world.get("VarFocusBugLimitActive"), "0");
    world.write(
        {{"VarFocusBugLowerLimitSet", "3"}, {"VarFocusBugUpperLimitSet", "2"}, {"VarFocusBugCommitLimits", "1"}});
    EXPECT_EQ(world.get("VarFocusBugLimitsValid"), "0");
    world.write({{"VarFocusBugUpperLimitSet", "4"}, {"VarFocusBugCommitLimits", "1"}});
    EXPECT_EQ(world.get("VarFocusBugCommitLimits"), "0");
    world.write("VarFocusBugLimitActiveSet", "1");
    world.run(0.1);
    world.expect({{"VarFocusBugUIUpperLimit", "4.00 m"}, {"VarFocusBugDistance1State", "3"}});
    world.write({{"VarDisplayUnit", "Feet"}, {"VarFocusBugClearLimits", "1"}});
    world.run(0.1);
    world.expect({{"VarFocusBugDistance1State", "2"}, {"VarFocusBugUIUpperLimit", ""}});
}

TEST(DepthCamera, DrawsWhereThePictureLiesAndRefusesARangeThatIsNone) {
    World world;
    EXPECT_EQ(world.get("VarCdmCoordinatesList[0].Valid"), "0");
    world.act("depth-camera", "connected", true);
    world.act("depth-camera", "subject", 4);
    world.write("VarCdmAutoValue", "1");
    EXPECT_EQ(world.get("VarCdmNearDistance"), "2");
    world.write("VarCdmAddDistanceValue", "1");
    EXPECT_GT(world.number("VarCdmDataPointValue"), 240);
    EXPECT_EQ(world.get("VarCdmDataPointIndex"), "21");
    world.write({{"VarCdmFarDistance", "1"}, {"VarCdmRequestPacket", "1"}});
    EXPECT_EQ(world.get("VarCdmFarDistance"), "10");
}

TEST(Cinefade, TurnsByKeysAndControlsWithinItsEnds) {
    World world;
    world.act("motors", "cinefade", "ready");
    world.run(0.1);
    EXPECT_EQ(world.get("VarCinefadeAvailable"), "1");
    world.write("VarCinefadeFilterIncActive", "1");
    world.run(1);
    world.write("VarCinefadeSetToggle", "1");
    world.run(1);
    world.write({{"VarCinefadeFilterIncActive", "0"}, {"VarCinefadeSetToggle", "1"}});
    EXPECT_NEAR(world.number("VarCinefadeStart"), 0.25, 0.01);
    EXPECT_NEAR(world.number("VarCinefadeEnd"), 0.5, 0.01);
    world.write({{"VarCinefadeSafeAreaToggle", "1"}, {"VarKnobAssignment", "Cinefade"}});
    world.turnKnobTo(0.9);
    EXPECT_NEAR(world.number("VarCinefadeActVal"), 3.5 * 0.5, 0.05);
    world.act("camera", "camera", "orvo");
    world.act("camera", "recording", true);
    world.write({{"VarCinefadeModeEdit", "RotaPola"}, {"VarCinefadeModeCommit", "1"}});
    world.expect({{"VarCinefadeMode", "0"}, {"VarCinefadeError", "1"}});
}

TEST(Diopters, BringTheFocusRangeNearer) {
    World world;
    world.act("lens", "lens", "prime-75");
    world.write("VarLoadDiopterFileName", "internal/diopters/two.diopter");
    world.run(0.1);
    world.expect({{"VarDiopterActive", "1"},
                  {"VarDiopterName", "+2"},
                  {"VarDiopterLimitString", "0.29 m - 0.50 m"},
                  {"VarMruDiopterFileListSize", "1"}});
    world.act("lens", "lens", "none");
    world.run(0.1);
    EXPECT_EQ(world.get("VarDiopterWarningActive"), "1");
    world.write("VarDiopterClear", "1");
    EXPECT_EQ(world.get("VarDiopterActive"), "0");
    world.write("VarLoadDiopterFileName", "internal/lenses/prime-35.lens");
    EXPECT_EQ(world.get("VarFileNotFound"), "1") << "a lens is no close-up lens";
}

TEST(Overrides, AreGivenBackAndCaught) {
    World world;
    world.act("overrides", "focus", "override");
    world.turnKnobTo(0.9);
    EXPECT_EQ(world.get("VarFocusTargetValue"), "0.5") << "another holds the axis";
    world.write("VarOverrideFocusToCam", "1");
    world.expect({{"VarOverrideFocusForGui", "0"}, {"VarOverrideFocusToCam", "0"}});
    world.write("VarNudgeStateSet", "1");
    EXPECT_EQ(world.get("VarNudgeStateAct"), "1");
    world.write("VarSDI1ZoomActive", "1");
    EXPECT_EQ(world.get("VarSDI1ZoomActive"), "0") << "no camera can do it";
    EXPECT_EQ(world.get("VarCamZoomUserButtonNotSupported"), "1");
}

TEST(LensProgramming, MeasuresALensThatIsSavedAndLoadedAgain) {
    World world;
    world.write({{"VarLensProgrammingActive", "1"},
                 {"VarLensProgrammingBrand", "Zeiss"},
                 {"VarLensProgrammingType", "T2"},
                 {"VarLensProgrammingFocalLength_Local", "50"},
                 {"VarLensProgrammingActiveAxis", "Focus"},
                 {"VarLensProgrammingIncrement", "1"}});
    EXPECT_EQ(world.get("VarLensProgrammingIncrement"), "0");
    EXPECT_FLOAT_EQ(world.fraction("VarLensProgrammingValueMeter"), 0.4F);
    const auto setAt = [&world](double position) {
        world.turnKnobTo(position);
        world.write("VarLensProgrammingSetButtonPressed", "1");
    };
    setAt(0.2);
    EXPECT_FLOAT_EQ(world.fraction("VarLensProgrammingValueMeter"), 0.45F) << "the next one";
    setAt(0.1);
    EXPECT_EQ(world.get("VarLensFileInvalidMark"), "1") << "the ring would turn back";
    setAt(0.6);
    world.expect({{"VarLensFileInvalidMark", "0"},
                  {"VarLensProgrammingAxisStage", "2"},
                  {"VarLensTableFocusMeter.ListSize", "2"}});
    world.write({{"VarLensProgrammingFinishButtonPressed", "1"}, {"VarLensProgrammingSaveButtonPressed", "1"}});
    EXPECT_EQ(world.get("VarLensFileSave"), "Zeiss T2 50mm");
    world.write("VarLensFileAcceptSaveFileName", "1");
    EXPECT_EQ(world.get("VarLensFileSaveSuccessful"), "1");
    world.write("VarLensProgrammingSaveButtonPressed", "1");
    EXPECT_EQ(world.get("VarFileAlreadyExists"), "1");
    world.write("VarLensFileAcceptSaveFileName", "1");
    EXPECT_EQ(world.get("VarLensFileSaveSuccessful"), "0") << "nobody has said to overwrite";
    world.write("VarLensProgrammingActive", "0");
    world.act("lens", "lens", "prime-35");
    world.write("VarLoadLensFileName", "internal/lenses/Zeiss T2 50mm.lens");
    EXPECT_EQ(world.get("VarLensTableFocusMeter.ListSize"), "2");
    world.turnKnobTo(0.2);
    EXPECT_NEAR(world.number("VarLensActFocus"), 0.4, 1e-4);
    EXPECT_EQ(world.get("VarFocalLength"), "50");
}

TEST(Rings, AreProgrammedSavedSentAndDrawn) {
    World world;
    world.act("files", "usb", true);
    world.write("VarRingProgrammingActive", "1");
    const auto markAt = [&world](double position, const char* metres) {
        world.act("hands", "knob", position);
        world.run(0.05);
        world.write("VarRingProgrammingEditMajor", metres);
        world.write({{"VarRingProgrammingEditCommit", "1"}, {"VarRingProgrammingMultiInputPressed", "1"}});
        world.run(0.05);
    };
    markAt(0.2, "1");
    markAt(0.6, "3");
    world.expect({{"VarRingTableValueListSize", "2"}, {"VarRingProgrammingValueAlreadyAdded", "1"}});
    markAt(0.4, "5");
    EXPECT_EQ(world.get("VarRingProgrammingInvalidMark"), "1") << "a ring rises";
    markAt(0.62, "4");
    EXPECT_EQ(world.get("VarRingTableValueListSize"), "3");
    world.act("hands", "knob", 0.2);
    world.run(0.05);
    world.write("VarRingProgrammingMultiInputPressed", "1");
    EXPECT_EQ(world.get("VarRingTableValueListSize"), "2") << "on a mark it takes it away";
    world.write("VarRingProgrammingFileName", "MINE");
    EXPECT_EQ(world.get("VarRingFileCheckDone"), "1");
    world.write("VarRingFileAcceptSaveFileName", "1");
    world.expect({{"VarRingFileSaveSuccessful", "1"}, {"VarActiveRingFileName", "internal/rings/MINE.ring"}});
    world.write("VarRingProgrammingUploadStart", "1");
    EXPECT_EQ(world.get("VarLastCommandResult"), "1");
    world.run(3.1);
    world.expect({{"VarRingProgrammingDone", "1"}, {"VarRingProgrammingUploadStart", "0"}});
    world.write({{"VarRingProgrammingUploadStart", "1"}, {"VarRingUploadCancel", "1"}});
    EXPECT_EQ(world.get("VarRingProgrammingDone"), "0");
    world.write("VarSvgExportActive", "1");
    world.run(0.1);
    EXPECT_EQ(world.get("VarSvgMinorValueListSize"), "1");
    world.write("VarSvgExportStart", "1");
    EXPECT_TRUE(std::filesystem::exists(World::folder() / "files/usb/Orvo/Tern/RINGS/MINE.svg"));
    world.write({{"VarCustomRingAction", "Delete"}, {"VarCustomRingActionStart", "1"}});
    EXPECT_FALSE(std::filesystem::exists(World::folder() / "files/internal/rings/MINE.ring"));
    world.write("VarCustomRingImportStart", "1");
    EXPECT_TRUE(std::filesystem::exists(World::folder() / "files/internal/rings/prime-35.ring"));
    world.write("VarActiveRingFileName", "usb/lenses/broken.lens");
    EXPECT_EQ(world.get("VarCustomRingInvalidFile"), "1");
}

TEST(Bus, ConnectsTheCameraAndOneUnitOfLengthCountsForAll) {
    World world;
    world.act("camera", "camera", "orvo");
    world.run(0.1);
    EXPECT_EQ(world.get("VarCanConnectState"), "1");
    world.run(0.6);
    EXPECT_EQ(world.get("VarCanConnectState"), "2");
    world.write("VarGlobalUnit", "Imperial");
    world.expect({{"VarDisplayUnit", "1"}, {"VarCamUnit", "1"}});
    world.write("VarEndSlateModeActive", "1");
    world.act("camera", "recording", true);
    world.run(0.1);
    EXPECT_EQ(world.get("VarEndSlateModeActive"), "1");
    world.act("camera", "recording", false);
    world.run(0.1);
    EXPECT_EQ(world.get("VarEndSlateModeActive"), "0");
}

TEST(Service, JobsRunInServiceModeOnlyAndSayHowTheyWent) {
    World world;
    world.write("VarServiceModeRadioSelfTest", "1");
    EXPECT_EQ(world.get("VarServiceModeRadioSelfTest"), "0");
    world.write({{"VarServiceModeEnabled", "1"}, {"VarServiceModeRadioSelfTest", "1"}});
    EXPECT_EQ(world.get("VarServiceModeRadioSelfTestResult"), "1");
    world.run(2.1);
    world.expect({{"VarServiceModeRadioSelfTestResult", "2"}, {"VarServiceModeRadioSelfTest", "0"}});
    world.act("radio", "modem", "none");
    world.write("VarServiceModeRadioSelfTest", "1");
    world.run(2.1);
    EXPECT_EQ(world.get("VarServiceModeRadioSelfTestResult"), "3");
    world.write({{"VarServiceModeCalibSlider", "1"}, {"VarServiceModeEnabled", "0"}});
    world.run(0.1);
    EXPECT_EQ(world.get("VarServiceModeSliderLabel"), "Failed");
}
