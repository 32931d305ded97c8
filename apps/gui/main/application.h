#pragma once

#include <cstdint>
#include <optional>

#include "apps/common/event/eventpoll.h"
#include "apps/gui/common/fb-linux.h"
#include "apps/gui/common/inputeventhandling.h"
#include "apps/gui/main/joystick.h"
#include "apps/gui/main/options.h"
#include "backend/backendhandler.h"
#include "embedded-gui-engine/framebuffer.h"
#include "embedded-gui-engine/guimanager.h"

namespace Engine {
class Page;
}

/// The process: brings everything up in its order and runs the frame loop. One thread; every wait of the loop is a poll
/// without time or the display's vertical sync.
class Application {
  public:
    /// Start-up, up to the first page. Whatever fails is fatal (std::runtime_error): the supervisor starts the program
    /// again.
    Application();
    Application(const Application&) = delete;
    Application& operator=(const Application&) = delete;
    ~Application();

    /// Shows the boot logo and runs until a stop signal. The result is the process's exit status.
    int run();

  private:
    using Screen = Engine::Framebuffer<unsigned int>;

    void connectTrace();
    void registerModel();

    // One pass of the frame loop.
    void pass();
    void countMissedFrames();
    void drainServer();
    bool pollInput();
    void moveByJoystick();
    void normalFrame();
    void drawFrame(Engine::Page* page);
    void displayTestFrame(int picture);

    LinuxFramebuffer display_;
    EventPoll poll_;
    std::optional<BackendHandler> handler_;  ///< made when the display is open
    std::optional<Screen> screen_;
    Engine::GuiManager& manager_;
    std::optional<InputEventHandling> input_;
    Joystick joystick_;
    bool forceRedraw_ = false;
    Engine::Page* lastActivePage_ = nullptr;
    std::int64_t lastFrameTime_ = 0;  ///< steady clock, nanoseconds
};
