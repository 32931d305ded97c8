#include "apps/gui/main/application.h"

#include <array>
#include <exception>
#include <utility>

#include "apps/common/log/log.h"
#include "apps/gui/main/areavalue.h"
#include "apps/gui/main/displaytest.h"
#include "apps/gui/main/joystickevents.h"
#include "apps/gui/main/loadpng.h"
#include "apps/gui/main/missedframes.h"
#include "apps/gui/main/modelwidgets.h"
#include "apps/gui/main/notifyhandler.h"
#include "apps/gui/main/shellvalues.h"
#include "embedded-gui-engine/hooks.h"
#include "embedded-gui-engine/page.h"
#include "embedded-gui-engine/texttable.h"
#include "embedded-gui-engine/trace.h"
#include "embedded-gui-engine/traceflags.h"
#include "model/catalogue/constants.h"
#include "model/catalogue/handler.h"
#include "model/catalogue/variables.h"
#include "model/runtime/generated.h"
#include "model/texts.h"
#include "platform/system.h"

namespace {

/// The engine knows neither clock nor log: these are its way to them.
void connectEngine() {
    Engine::hooks().steadyNanoseconds = &Platform::steadyNanoseconds;
    Engine::hooks().log = &Log::vengineLog;
}

/// The sync pass and the link phase, as the manager calls them.
void syncVariables() {
    Model::syncFrame();
}
void linkModelOnce() {
    Engine::setTextTable(Texts::tables, &Model::VarLanguage);
    Model::link(Model::modelLink, Model::variables);
}

void noteLockedKey() {
    if (Area::read<unsigned char>(Places::VarLockedButtonPressed) != 1)
        Area::storeAndPost<unsigned char>(Places::VarLockedButtonPressed, 1);
}

constexpr const char* displayPath = "/dev/fb0";
constexpr int bufferCount = 2;
constexpr const char* bootLogoPath = "/usr/share/qz-boot-logo.png";
constexpr std::int64_t bootLogoTime = 2'000'000'000;  // nanoseconds

/// What the shell works out for itself once, when all values are there.
constexpr std::array<std::uint32_t, 16> replayedIds = {Places::VarGuiRotate.id,
                                                       Places::VarFocusMotor_State.id,
                                                       Places::VarSliderAssignment.id,
                                                       Places::VarCinefadeMode.id,
                                                       Places::VarLensMarkerColorInternal.id,
                                                       Places::VarLensMarkerColorExternal.id,
                                                       Places::VarSvgExportMajorLineLength.id,
                                                       Places::VarSvgExportMajorLineThickness.id,
                                                       Places::VarSvgExportMajorValuePosX.id,
                                                       Places::VarSvgExportMajorValuePosY.id,
                                                       Places::VarSvgExportMinorLineLength.id,
                                                       Places::VarSvgExportMinorLineThickness.id,
                                                       Places::VarSvgExportMinorValuePosX.id,
                                                       Places::VarSvgExportMinorValuePosY.id,
                                                       Places::VarUsbState.id,
                                                       Places::VarHwCinefadeUnit.id};

// Keys that turn the pictures of the slideshow instead of ending it, by their codes.
constexpr int previousPictureKey = 259;  // lower left
constexpr int nextPictureKey = 261;      // lower right

}  // namespace

Application::Application()
    : layout_((connectEngine(), ModelWidgets::home())),
      messages_(ModelWidgets::message()),
      display_(displayPath, bufferCount),
      manager_(Engine::GuiManager::instance()) {
    display_.open(LinuxFramebuffer::Contents::Keep);
    requireWholePixels();
    handler_.emplace(&poll_, Model::handlerTable);
    forgetOldMessage();
    screen_.emplace(static_cast<std::uint32_t>(display_.width()), static_cast<std::uint32_t>(display_.height()), 8u,
                    display_.currentAddress(), 0u);
    manager_.setPainter(&*screen_);
    connectModel();
    connectTrace();
    manager_.finishInitialization();
    registerModel();
    handler_->initialiseVariables();
    manager_.setActivePage(Model::modelLink.start);
    layoutDirty_ = true;
    input_.emplace(display_.width(), display_.height(), &noteLockedKey);
    layoutPainter_.emplace(*screen_);
    installNotifyHandler();
    replayForShell();
}

Application::~Application() = default;

/// The painter writes four bytes a pixel, so anything else would be drawn past the end of its buffer.
void Application::requireWholePixels() const {
    if (display_.bitsPerPixel() != 32)
        TERN_FATAL("%s: the display has %i bits a pixel, 32 are needed. Set its driver to 32 bits.", displayPath,
                   display_.bitsPerPixel());
}

/// A message that was on the screen when the process before this one ended has no text any more, and no key that could
/// close it.
void Application::forgetOldMessage() {
    Area::change<unsigned char>(Places::VarMessageIsVisible, 0);
}

void Application::connectModel() {
    Engine::setTextTable(Texts::tables, &Model::VarLanguage);
    Backend::Variable::Flag<bool>::configTexts(Texts::off, Texts::on);
    manager_.setModelHooks({&syncVariables, &linkModelOnce});
    manager_.linkModel();
}

void Application::connectTrace() {
    auto& trace = Engine::Trace::instance();
    trace.setFlags(reinterpret_cast<const Engine::TraceFlags*>(Area::address(Places::VarTRACE_INFO_VARIABLE)));
    trace.setUserEvents(Catalogue::userEventNames);
}

void Application::registerModel() {
    manager_.setOverlays(Model::modelLink.overlays);
    manager_.setContainers(Model::modelLink.containers);
}

void Application::installNotifyHandler() {
    const NotifyHandler::Shell shell = {display_, layoutDirty_, *layoutPainter_, *input_,   forceRedraw_,
                                        layout_,  messages_,    animation_,      slideshow_};
    handler_->postHook = NotifyHandler(shell, ModelWidgets::lens());
}

void Application::replayForShell() {
    for (const std::uint32_t id : replayedIds) handler_->handleEvent({id});
}

void Application::begin() {
    lastFrameTime_ = Platform::steadyNanoseconds();
    if (!Area::flag(Places::VarHwFullUnit)) showBootLogo();
}

int Application::run() {
    begin();
    while (!EventPoll::stopRequested()) pass();
    return 0;
}

/// Without a picture the screen is as it is; the time passes all the same.
void Application::showBootLogo() {
    try {
        display_.clear();
        loadPng(display_, bootLogoPath);
        display_.swap();
    } catch (const std::exception&) {
    }
    Platform::sleepNanoseconds(bootLogoTime, nullptr);
}

// One pass.

void Application::pass() {
    countMissedFrames();
    drainServer();
    if (std::exchange(layoutDirty_, false)) layoutTexts();
    const bool saverStays = pollInput();
    if (Area::flag(Places::VarScreenSaverActive) && !saverStays) wakeFromScreenSaver();
    moveByJoystick();
    if (Area::flag(Places::VarScreenSaverActive))
        screenSaverFrame();
    else if (const int picture = Area::number(Places::VarServiceModeDisplayTest); picture != 0)
        displayTestFrame(picture);
    else
        normalFrame();
}

void Application::countMissedFrames() {
    const std::int64_t now = Platform::steadyNanoseconds();
    const int missed = missedFrames(now - lastFrameTime_);
    lastFrameTime_ = now;
    if (missed == 0) return;
    // Whatever stands there, as a sum that wraps.
    const int total =
        static_cast<int>(Area::read<unsigned>(Places::VarGuiMissedFrames) + static_cast<unsigned>(missed));
    Area::store(Places::VarGuiMissedFrames, total);
    if (missed > 2)
        TERN_LOG(Log::DebugLight, "Gui missed %i frame(s), with a total of %i missed frames", missed, total);
}

void Application::drainServer() {
    while (poll_.wait(0) == EventPoll::Handled) {
    }
}

bool Application::pollInput() {
    const bool touchLocked = Area::flag(Places::VarDisableTouchscreen) || Area::flag(Places::VarTemp_TouchLock);
    return input_->update(Area::flag(Places::VarButtonsLocked), touchLocked, Area::flag(Places::VarServiceModeEnabled),
                          Area::flag(Places::VarScreenSaverActive));
}

void Application::layoutTexts() {
    layout_.fitFrames(layoutPainter_->painter);
}

// The screen saver.

void Application::wakeFromScreenSaver() {
    if (Area::number(Places::VarScreenSaverMode) == ScreenSaverAnimation::slideshow)
        wakeFromSlideshow();
    else
        endScreenSaver();
}

void Application::wakeFromSlideshow() {
    bool drawn = false;
    switch (input_->lastKey()) {
        case previousPictureKey: drawn = slideshow_.showPrevious(display_); break;
        case nextPictureKey: drawn = slideshow_.showNext(display_); break;
        default:
            endScreenSaver();
            slideshow_.forget();
            return;
    }
    if (drawn) panPicture();
}

void Application::endScreenSaver() {
    Area::storeAndPost<unsigned char>(Places::VarScreenSaverActive, 0);
}

void Application::screenSaverFrame() {
    manager_.processEvents(true);
    if (Area::number(Places::VarScreenSaverMode) != ScreenSaverAnimation::slideshow)
        animate();
    else if (slideshow_.show(display_))
        panPicture();
    else
        display_.waitVsync();
}

void Application::animate() {
    const bool onItsSide = screen_->rotationIndex() % 2 != 0;
    const int width = onItsSide ? display_.height() : display_.width();
    const int height = onItsSide ? display_.width() : display_.height();
    animation_.draw(static_cast<std::uint32_t*>(display_.currentAddress()), width, height,
                    Platform::steadyNanoseconds() / 1'000'000);
    display_.swap();
}

/// Shows what the slideshow has drawn. A picture that could not be loaded ends the screen saver, with a message.
void Application::panPicture() {
    if (!slideshow_.isShown()) {
        Area::change<unsigned char>(Places::VarScreenSaverActive, 0);
        Area::change<int>(Places::VarMessageShow, Messages::ScreenSaverFileFormat);
    }
    display_.swap();
}

void Application::moveByJoystick() {
    if (!Area::flag(Places::VarJoystickControlsGui) || Area::flag(Places::VarServiceModeEnabled)) {
        joystick_.block();
        return;
    }
    JoystickEvents events(manager_);
    joystick_.step({Area::fraction(Places::VarJoystickX), Area::fraction(Places::VarJoystickY),
                    Area::flag(Places::VarJoystickFastX), Area::number(Places::VarMenuScrollSpeed)},
                   events);
}

void Application::normalFrame() {
    const bool changed = manager_.processEvents(true);
    if (!changed && !forceRedraw_ && !layoutPainter_->needsRelayout) {
        Platform::schedYield();
        display_.waitVsync();
        return;
    }
    drawFrame(manager_.activePage());
}

void Application::drawFrame(Engine::Page* page) {
    if (page != nullptr && page != lastActivePage_) TERN_LOG(Log::LogAll, "USER Page: %s", page->objectName());
    layoutPainter_->needsRelayout = false;
    layout_.placeAxes(layoutPainter_->painter, ShellValues::columns());
    screen_->setPixels(display_.currentAddress());
    manager_.drawFrame();
    manager_.finishFrame();
    display_.swap();
    lastActivePage_ = page;
    forceRedraw_ = false;
}

void Application::displayTestFrame(int picture) {
    forceRedraw_ = true;
    screen_->setPixels(display_.currentAddress());
    drawDisplayTest(*screen_, picture);
    display_.swap();
}
