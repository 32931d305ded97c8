#include "unit/server/modules/system.h"

#include <algorithm>
#include <array>

#include "apps/common/log/log.h"
#include "model/catalogue/enums.h"

namespace Unit {

namespace {

using Given = std::pair<const char*, const char*>;

constexpr Given factoryValues[] = {
    {"VarUserButton1", "LockAll"},
    {"VarUserButton2", "ShortcutCalibrate"},
    {"VarUserButton3", "ShortcutTimer"},
    {"VarUserButton4", "MarkFocus"},
    {"VarUserButton5", "MarkIris"},
    {"VarUserButton6", "MarkZoom"},
    {"VarUserButton7", "SDIPeaking"},
    {"VarUserButton8", "CamFps"},
    {"VarUserButton9", "None"},
    {"VarMultiSegmentAssignment", "NearFar"},
    {"VarGuiDesignIsNightStyle", "1"},
    {"VarDisplayBrightness", "8"},
    {"VarDisplayBrightnessAuto", "0"},
    {"VarButtonBrightness", "5"},
    {"VarKnobBrightness", "5"},
    {"VarKnobColor", "White"},
    {"VarLedRunBrightness", "5"},
    {"VarMultisegmentColor", "White"},
    {"VarMenuScrollSpeed", "5"},
    {"VarSoundVolume", "5"},
    {"VarSoundType", "Beep"},
    {"VarLensMarkerVibrationType", "Tic"},
    {"VarOverrideVibrationType", "Short"},
    {"VarRecordingVibrationType", "Short"},
    {"VarEndSlateVibrationType", "Double"},
    {"VarUserButtonVibrationType", "Off"},
    {"VarDisplayUnit", "Meter"},
    {"VarGuiRotate", "0"},
    {"VarLanguage", "English"},
    {"VarLandingPage", "HomeLDD"},
    {"VarScreenSaverMode", "Off"},
    {"VarScreenSaverSpeed", "5"},
    {"VarLensMarkerColorInternal", "Mixed"},
    {"VarLensMarkerColorExternal", "LightBlue"},
    {"VarClockFormat", "Hours24"},
    {"VarPreMarkedRingAutoDet", "1"},
    {"VarRecentLensFiles", "1"},
    {"VarStealthMode", "0"},
    {"VarDisableTouchscreen", "0"},
    {"VarDisableForcePad", "0"},
    {"VarDisableRecButton", "0"},
    {"VarButtonsLocked", "0"},
    {"VarFocusTableHidden", "0"},
    {"VarIrisTableHidden", "0"},
    {"VarZoomTableHidden", "0"},
    {"VarNudgeAlertPattern", "Short"},
    {"VarNudgeAlertPopup", "1"},
    {"VarCamWhiteBalanceCustomSet", "5600"},
    {"VarSvgExportMajorLineLength", "50"},
    {"VarSvgExportMajorLineThickness", "1"},
    {"VarSvgExportMinorLineLength", "25"},
    {"VarSvgExportMinorLineThickness", "0.5"},
    {"VarCinefadeDisplayModeValue", "Stops"},
    {"VarDiopterType", "Full"},
};

constexpr Given hardware[] = {
    {"VarProductName", "Tern Hand Unit"},
    {"VarProductVersion", "0.1.0"},
    {"VarProductLastCommit", "virtual unit"},
    {"VarProductSerial", "VU-00001"},
    {"VarProductRevision", "A"},
    {"VarPrintRevision", "3"},
    {"VarCpuSerial", "0000000000000001"},
    {"VarSimulateMotors", "1"},
    {"VarEnableRadioPower", "1"},
    {"VarDataMounted", "1"},
    {"VarHwFullUnit", "1"},
    {"VarHwCinefadeUnit", "0"},
    {"VarEnableSpeaker", "1"},
    {"VarBluetoothAdapterAvailable", "1"},
    {"VarFocusScaleMagnificationMin", "1"},
    {"VarFocusScaleMagnificationMax", "9"},
    {"VarFocusScaleMagnificationDefault", "3"},
    {"VarVibrationTicLength", "0.02"},
    {"VarVibrationShortLength", "0.1"},
    {"VarVibrationLongLength", "0.4"},
    {"VarUserButtonsFlags", "all"},
    {"VarMultiSegmentFlags", "all"},
    {"VarKnobAssignmentFlags", "0f00"},
    {"VarSliderAssignmentFlags", "0f00"},
    {"VarForcePadAssignmentFlags", "0f00"},
    {"VarRadioChannelMax", "13"},
    {"VarDisplayAboveMain", "Lens"},
    {"VarDisplayMain", "FocusDistance"},
    {"VarDisplayBelowMain", "Iris"},
    {"VarDisplayBottomLeft", "CamSpeed"},
    {"VarDisplayBottomRight", "CamShutter"},
    {"VarServiceModeConnectedModemType", "Tern"},
};

}  // namespace

System::System(Store& values, std::function<void()> factoryReset)
    : Module("system", values),
      factoryReset_(std::move(factoryReset)),
      reset_(values, "VarFactoryReset"),
      resetFinished_(values, "VarFactoryResetFinished"),
      sound_(values, "VarPlaySound"),
      vibration_(values, "VarVibrationStart"),
      soundDuration_(values, "VarSoundDuration"),
      vibrationDuration_(values, "VarVibrationDuration"),
      knobColor_(values, "VarKnobColor"),
      knobBrightness_(values, "VarKnobBrightness"),
      white_(values, "VarLedKnobW"),
      red_(values, "VarLedKnobR"),
      green_(values, "VarLedKnobG"),
      blue_(values, "VarLedKnobB"),
      magnification_(values, "VarFocusScaleMagnificationValue") {
    hear(reset_, [this] {
        if (!reset_.take()) return;
        factoryReset_();
        resetFinished_.set(true);
    });
}

void System::give(std::span<const Given> given) {
    for (const auto& [name, value] : given) {
        std::string problem;
        const auto cell = Store::find(name, problem);
        const auto bytes = cell ? Store::parse(*cell, value, problem) : std::nullopt;
        if (!bytes) TERN_FATAL("%s: %s", name, problem.c_str());
        store.setBytes(*cell, *bytes);
    }
}

void System::factory() {
    give(factoryValues);
    for (int button = 4; button <= 9; ++button) Text(store, "VarUserButton" + std::to_string(button) + "_Name").set("");
}

void System::powerUp() {
    give(hardware);
    if (magnification_.get() < 1) magnification_.set(3);
    resetFinished_.set(false);
    soundLeft_ = vibrationLeft_ = 0;
    showKnobLight();
}

void System::showKnobLight() {
    // Red, green, blue and white parts of each colour, of 63.
    static constexpr std::array<std::array<int, 4>, 8> parts = {{{0, 0, 0, 0},
                                                                 {0, 0, 0, 63},
                                                                 {63, 0, 0, 0},
                                                                 {0, 63, 0, 0},
                                                                 {0, 0, 63, 0},
                                                                 {63, 48, 0, 0},
                                                                 {63, 24, 0, 0},
                                                                 {40, 0, 63, 0}}};
    const auto& part = parts[static_cast<std::size_t>(knobColor_.within(0, 7))];
    const std::int32_t brightness = knobBrightness_.within(0, 10);
    red_.set(part[0] * brightness / 10);
    green_.set(part[1] * brightness / 10);
    blue_.set(part[2] * brightness / 10);
    white_.set(part[3] * brightness / 10);
}

void System::tick(std::int64_t nanoseconds) {
    const double seconds = static_cast<double>(nanoseconds) * 1e-9;
    const auto run = [seconds](const Flag& request, double& left, const Real& duration) {
        if (!request) return;
        if (left <= 0) left = std::max(0.05, static_cast<double>(duration.get()));
        left -= seconds;
        if (left <= 0) request.set(false);
    };
    run(sound_, soundLeft_, soundDuration_);
    run(vibration_, vibrationLeft_, vibrationDuration_);
    showKnobLight();
}

}  // namespace Unit
