#include "apps/gui/main/notifyhandler.h"

#include <array>
#include <ctime>
#include <exception>
#include <initializer_list>
#include <string_view>

#include "apps/common/log/log.h"
#include "apps/gui/common/fb-linux.h"
#include "apps/gui/common/inputeventhandling.h"
#include "apps/gui/main/areavalue.h"
#include "apps/gui/main/buttonsimulation.h"
#include "apps/gui/main/homelayout.h"
#include "apps/gui/main/layoutpainter.h"
#include "apps/gui/main/markercolors.h"
#include "apps/gui/main/motorsummary.h"
#include "apps/gui/main/overlaymessagehandling.h"
#include "apps/gui/main/screencapture.h"
#include "apps/gui/main/screensaveranimation.h"
#include "apps/gui/main/shellvalues.h"
#include "apps/gui/main/slideshow.h"
#include "apps/gui/main/softbuttonmapping.h"
#include "embedded-gui-engine/guimanager.h"
#include "model/catalogue/enums.h"

namespace {

constexpr int keyPressed = 1;
constexpr int keyReleased = 0;

/// A flag that asks for something once: it is taken back when that has been done.
template <typename Answer>
void answerFlag(const Places::Place& place, Answer&& answer) {
    if (!Area::flag(place)) return;
    answer();
    Area::storeAndPost<unsigned char>(place, 0);
}

/// The same for a number, of which 0 asks for nothing: so the echo of taking it back ends here.
template <typename Answer>
void answerNumber(const Places::Place& place, Answer&& answer) {
    const int number = Area::number(place);
    if (number == 0) return;
    answer(number);
    Area::storeAndPost(place, 0);
}

/// The warnings whose message is their id less this.
constexpr std::uint32_t firstWarning = Places::VarWrongModemVersion.id - Messages::WrongModemVersion;

const Places::Place* warningOf(std::uint32_t id) {
    for (const Places::Place* place :
         {&Places::VarOneWireFailed, &Places::VarOneWireModemCorrupted, &Places::VarOneWireRingCorrupted,
          &Places::VarFileNotFound, &Places::VarEndSlateWarning, &Places::VarMissingHardwareInfoWarning,
          &Places::VarFatalSystemError})
        if (place->id == id) return place;
    return nullptr;
}

void storeFlags(const Places::Place& flags, const Places::Place& assignment, EntryMask mask) {
    Area::storeAndPost(flags, mask.bits());
    if (!mask.has(Area::number(assignment))) Area::storeAndPost(assignment, 0);
}

void publishColumns() {
    const AxisColumns columns = ShellValues::wantedColumns();
    Area::change(Places::VarFocusPositionX, columns.focus);
    Area::change(Places::VarIrisPositionX, columns.iris);
    Area::change(Places::VarZoomPositionX, columns.zoom);
}

}  // namespace

void NotifyHandler::operator()(const Notify& notify) {
    publishColumns();
    if (handleLayout(notify.id) || handleMessages(notify.id) || handleLensLooks(notify.id) ||
        handleSimulation(notify.id))
        return;
    handleOthers(notify.id);
}

bool NotifyHandler::handleLayout(std::uint32_t id) {
    switch (id) {
        case Places::VarKnobAssignment.id:
        case Places::VarSliderAssignment.id:
        case Places::VarForcePadAssignment.id:
        case Places::VarSimpleLDD.id: relayout(); return true;
        case Places::VarGuiRotate.id: rotate(); return true;
        case Places::VarPreMarkedRingString.id:
        case Places::VarDiopterNameVisible.id:
        case Places::VarDiopterPower.id:
        case Places::VarRingProgrammingRingName.id: shell_.layoutDirty = true; return true;
        case Places::VarFocusMotor_State.id:
        case Places::VarIrisMotor_State.id:
        case Places::VarZoomMotor_State.id:
        case Places::VarAUXMotor_State.id:
            updateMotorSummary();
            shell_.layoutPainter.needsRelayout = true;
            return true;
        default: return false;
    }
}

bool NotifyHandler::handleMessages(std::uint32_t id) {
    if (const Places::Place* warning = warningOf(id)) {
        answerFlag(*warning, [&] { shell_.messages.show(static_cast<int>(id - firstWarning)); });
        return true;
    }
    switch (id) {
        case Places::VarRadioWrongServerWarning.id:
            answerFlag(Places::VarRadioWrongServerWarning,
                       [this] { shell_.messages.show(Messages::SecondMotorController); });
            return true;
        case Places::VarMessageIsVisible.id: followMessage(); return true;
        case Places::VarMessageShow.id:
            answerNumber(Places::VarMessageShow, [this](int message) { shell_.messages.show(message); });
            return true;
        case Places::VarWrongModemVersion.id: warnOfModem(); return true;
        // The flag stays, and the message comes back with each notice, until the question has been answered.
        case Places::VarFileAlreadyExists.id:
            if (Area::flag(Places::VarFileAlreadyExists)) shell_.messages.show(Messages::FileAlreadyExists);
            return true;
        default: return false;
    }
}

/// Somebody else may have said that a message is visible: there is none then, and no key that could close it.
void NotifyHandler::followMessage() {
    if (!Area::flag(Places::VarMessageIsVisible))
        shell_.messages.next();
    else if (shell_.messages.current().id == Messages::None)
        Area::storeAndPost<unsigned char>(Places::VarMessageIsVisible, 0);
}

bool NotifyHandler::handleLensLooks(std::uint32_t id) {
    using namespace Places;
    switch (id) {
        case VarLensMarkerColorInternal.id:
            for (std::size_t axis = 0; axis < lens_.internalMarkers.size(); ++axis)
                paintMarkers(lens_.internalMarkers[axis], Area::number(VarLensMarkerColorInternal),
                             axis * markersOfAxis);
            return true;
        case VarLensMarkerColorExternal.id:
            paintMarkers(lens_.externalMarkers, Area::number(VarLensMarkerColorExternal));
            return true;
        case VarSvgExportMajorValuePosX.id:
            lens_.majorMarks.setFigureX(Area::fraction(VarSvgExportMajorValuePosX));
            return true;
        case VarSvgExportMajorValuePosY.id:
            lens_.majorMarks.setFigureY(Area::fraction(VarSvgExportMajorValuePosY));
            return true;
        case VarSvgExportMajorLineLength.id:
            lens_.majorMarks.setLineLength(Area::fraction(VarSvgExportMajorLineLength));
            return true;
        case VarSvgExportMajorLineThickness.id:
            lens_.majorMarks.setLineThickness(Area::fraction(VarSvgExportMajorLineThickness));
            return true;
        case VarSvgExportMinorValuePosX.id:
            lens_.minorMarks.setFigureX(Area::fraction(VarSvgExportMinorValuePosX));
            return true;
        case VarSvgExportMinorValuePosY.id:
            lens_.minorMarks.setFigureY(Area::fraction(VarSvgExportMinorValuePosY));
            return true;
        case VarSvgExportMinorLineLength.id:
            lens_.minorMarks.setLineLength(Area::fraction(VarSvgExportMinorLineLength));
            return true;
        case VarSvgExportMinorLineThickness.id:
            lens_.minorMarks.setLineThickness(Area::fraction(VarSvgExportMinorLineThickness));
            return true;
        default: return false;
    }
}

bool NotifyHandler::handleSimulation(std::uint32_t id) {
    const auto press = [this](int button) { simulate(button, keyPressed); };
    const auto release = [this](int button) { simulate(button, keyReleased); };
    switch (id) {
        case Places::VarSimulateButtonDown.id: answerNumber(Places::VarSimulateButtonDown, press); return true;
        case Places::VarSimulateButtonUp.id: answerNumber(Places::VarSimulateButtonUp, release); return true;
        case Places::VarSimulateButtonPress.id:
            answerNumber(Places::VarSimulateButtonPress, [&](int button) {
                press(button);
                release(button);
            });
            return true;
        case Places::VarSimulateFuncDown.id:
            answerFlag(Places::VarSimulateFuncDown, [&] { press(SimulatedButton::function); });
            return true;
        case Places::VarSimulateFuncUp.id:
            answerFlag(Places::VarSimulateFuncUp, [&] { release(SimulatedButton::function); });
            return true;
        default: return false;
    }
}

void NotifyHandler::handleOthers(std::uint32_t id) {
    switch (id) {
        case Places::VarCinefadeAvailable.id:
            updateAssignmentFlags();
            updateMultiSegmentFlags();
            break;
        case Places::VarGuiScreenCaptureName.id: captureScreen(); break;
        case Places::VarScreenSaverActive.id:
            if (Area::flag(Places::VarScreenSaverActive)) startScreenSaver();
            shell_.forceRedraw = true;
            break;
        case Places::VarCinefadeMode.id:
            updateAssignmentFlags();
            if (Area::number(Places::VarCinefadeMode) == static_cast<int>(Model::CinefadeMode::RotaPola) &&
                Area::number(Places::VarCamState) != static_cast<int>(Model::CamState::NoCamera))
                shell_.messages.show(Messages::CinefadeModeWarning);
            break;
        default: break;
    }
}

/// What hangs on the places of the axes.
void NotifyHandler::relayout() {
    publishColumns();
    const AxisColumns columns = ShellValues::columns();
    mapSoftButtons(columns,
                   [this](Engine::EventId key, Engine::EventId axis) { shell_.input.setExtraEvent(key, axis); });
    Area::change(Places::VarSingleAxisAssignment, ShellValues::assignments().single());
    shell_.layout.recompute(ShellValues::rows(), columns);
    shell_.layoutDirty = true;
}

void NotifyHandler::rotate() {
    const bool rotated = Area::flag(Places::VarGuiRotate);
    Engine::GuiManager::instance().setRotation(rotated ? 180 : 0);
    shell_.input.setRotated(rotated);
    shell_.forceRedraw = true;
    relayout();
}

void NotifyHandler::updateAssignmentFlags() {
    const AssignmentFlags flags = assignmentFlags(ShellValues::abilities());
    storeFlags(Places::VarKnobAssignmentFlags, Places::VarKnobAssignment, flags.knob);
    storeFlags(Places::VarSliderAssignmentFlags, Places::VarSliderAssignment, flags.slider);
    storeFlags(Places::VarForcePadAssignmentFlags, Places::VarForcePadAssignment, flags.forcePad);
}

void NotifyHandler::updateMultiSegmentFlags() {
    Area::storeAndPost(Places::VarMultiSegmentFlags, multiSegmentFlags(ShellValues::abilities()));
}

void NotifyHandler::updateMotorSummary() {
    const MotorSummary summary = summarize(ShellValues::motors());
    Area::change<unsigned char>(Places::VarAnyMotorCalRequest, summary.anyRequest);
    Area::change<unsigned char>(Places::VarAnyMotorCalSkippable, summary.anySkippable);
    Area::change<unsigned char>(Places::VarAllMotorsCalSkippable, summary.allSkippable);
    Area::change<unsigned char>(Places::VarAnyMotorCalActive, summary.anyActive);
}

/// Where it fails it has been logged, and that is all.
void NotifyHandler::captureScreen() {
    const std::time_t now = std::time(nullptr);
    std::tm local = {};
    ::localtime_r(&now, &local);
    const auto path = ScreenCapture::path(Area::text(Places::VarGuiScreenCaptureName), local);
    if (!path) return;
    try {
        ScreenCapture::write(shell_.display, *path);
    } catch (const std::exception&) {
    }
}

void NotifyHandler::startScreenSaver() {
    const int mode = Area::number(Places::VarScreenSaverMode);
    shell_.animation.activate(mode, Area::number(Places::VarScreenSaverSpeed));
    if (mode != ScreenSaverAnimation::slideshow) return;
    const bool present = Area::number(Places::VarUsbState) == static_cast<int>(Model::UsbState::Mounted);
    if (shell_.slideshow.reload(present ? Slideshow::Stick::Present : Slideshow::Stick::Absent) ==
        Slideshow::Listing::Empty)
        shell_.messages.show(Messages::ScreenSaverImagesMissing);
}

void NotifyHandler::warnOfModem() {
    if (!Area::flag(Places::VarWrongModemVersion) || Area::flag(Places::VarUserIgnoredModemWarning)) return;
    shell_.messages.show(Messages::WrongModemVersion);
    Area::storeAndPost<unsigned char>(Places::VarWrongModemVersion, 0);
    Area::storeAndPost<unsigned char>(Places::VarUserIgnoredModemWarning, 1);
}

void NotifyHandler::simulate(int button, int value) {
    const auto press = SimulatedButton::pressEvent(button);
    if (!press) {
        TERN_LOG(Log::Warn, "Can't simulate button %i", button);
        return;
    }
    const std::uint32_t key = InputEventHandling::packedKeyOf(*press + (value == keyReleased ? 1 : 0));
    if (key != 0) shell_.input.simulateKey(key);
}
