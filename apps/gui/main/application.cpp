#include "apps/gui/main/application.h"

#include "apps/common/log/log.h"
#include "apps/gui/main/areavalue.h"
#include "apps/gui/main/displaytest.h"
#include "apps/gui/main/missedframes.h"
#include "embedded-gui-engine/hooks.h"
#include "embedded-gui-engine/page.h"
#include "embedded-gui-engine/texttable.h"
#include "embedded-gui-engine/trace.h"
#include "embedded-gui-engine/traceflags.h"
#include "model/catalogue/constants.h"
#include "model/catalogue/events.h"
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

class JoystickEvents final : public Joystick::Listener {
  public:
    explicit JoystickEvents(Engine::GuiManager& manager) : manager_(manager) {}

    void joystickPressed(Joystick::Direction direction, bool first) override {
        const unsigned event = eventOf(direction);
        if (first) TERN_LOG(Log::LogAll, "USER: Pressed %s", Engine::Trace::instance().eventName(event));
        manager_.postEvent(event);
    }
    void joystickReleased(Joystick::Direction direction, int events) override {
        TERN_LOG(Log::LogAll, "USER: Released %s, total %i events",
                 Engine::Trace::instance().eventName(eventOf(direction)), events);
    }

  private:
    static unsigned eventOf(Joystick::Direction direction) {
        switch (direction) {
            case Joystick::Up: return Model::Event_JoystickUp;
            case Joystick::Down: return Model::Event_JoystickDown;
            case Joystick::Left: return Model::Event_JoystickLeft;
            default: return Model::Event_JoystickRight;
        }
    }

    Engine::GuiManager& manager_;
};

void noteLockedKey() {
    if (Area::read<unsigned char>(Places::VarLockedButtonPressed) != 1)
        Area::storeAndPost<unsigned char>(Places::VarLockedButtonPressed, 1);
}

constexpr const char* displayPath = "/dev/fb0";
constexpr int bufferCount = 2;

}  // namespace

Application::Application()
    : display_((connectEngine(), displayPath), bufferCount), manager_(Engine::GuiManager::instance()) {
    display_.open(LinuxFramebuffer::Contents::Keep);
    handler_.emplace(&poll_, Model::handlerTable);
    screen_.emplace(static_cast<std::uint32_t>(display_.width()), static_cast<std::uint32_t>(display_.height()), 8u,
                    display_.currentAddress(), 0u);
    manager_.setPainter(&*screen_);
    manager_.setModelHooks({&syncVariables, &linkModelOnce});
    manager_.linkModel();
    connectTrace();
    manager_.finishInitialization();
    registerModel();
    handler_->initialiseVariables();
    manager_.setActivePage(Model::modelLink.start);
    input_.emplace(static_cast<int>(display_.width()), static_cast<int>(display_.height()), &noteLockedKey);
}

Application::~Application() = default;

void Application::connectTrace() {
    auto& trace = Engine::Trace::instance();
    trace.setFlags(reinterpret_cast<const Engine::TraceFlags*>(Area::address(Places::VarTRACE_INFO_VARIABLE)));
    trace.setUserEvents(Catalogue::userEventNames);
}

void Application::registerModel() {
    manager_.setOverlays(Model::modelLink.overlays);
    manager_.setContainers(Model::modelLink.containers);
}

int Application::run() {
    lastFrameTime_ = Platform::steadyNanoseconds();
    while (!EventPoll::stopRequested()) pass();
    return 0;
}

// One pass.

void Application::pass() {
    countMissedFrames();
    drainServer();
    pollInput();
    moveByJoystick();
    if (const int picture = Area::number(Places::VarServiceModeDisplayTest); picture != 0)
        displayTestFrame(picture);
    else
        normalFrame();
}

void Application::countMissedFrames() {
    const std::int64_t now = Platform::steadyNanoseconds();
    const int missed = missedFrames(now - lastFrameTime_);
    lastFrameTime_ = now;
    if (missed == 0) return;
    const int total = Area::number(Places::VarGuiMissedFrames) + missed;
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
    if (!changed && !forceRedraw_) {
        Platform::schedYield();
        display_.waitVsync();
        return;
    }
    drawFrame(manager_.activePage());
}

void Application::drawFrame(Engine::Page* page) {
    if (page != nullptr && page != lastActivePage_) TERN_LOG(Log::LogAll, "USER Page: %s", page->objectName());
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
