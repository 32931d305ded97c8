#pragma once

#include <cstdint>
#include <optional>

#include "apps/common/event/eventpoll.h"
#include "apps/gui/common/fb-linux.h"
#include "apps/gui/common/inputeventhandling.h"
#include "apps/gui/main/homelayout.h"
#include "apps/gui/main/joystick.h"
#include "apps/gui/main/layoutpainter.h"
#include "apps/gui/main/overlaymessagehandling.h"
#include "apps/gui/main/screensaveranimation.h"
#include "apps/gui/main/slideshow.h"
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

    // What `run` is made of.
    void begin();
    /// One pass of the frame loop.
    void pass();

  private:
    using Screen = Engine::Framebuffer<unsigned int>;

    void requireWholePixels() const;
    void forgetOldMessage();
    void connectModel();
    void connectTrace();
    void registerModel();
    void installNotifyHandler();
    void replayForShell();
    void showBootLogo();

    // Steps of a pass.
    void countMissedFrames();
    void drainServer();
    void layoutTexts();
    bool pollInput();
    void wakeFromScreenSaver();
    void wakeFromSlideshow();
    void endScreenSaver();
    void moveByJoystick();
    void screenSaverFrame();
    void animate();
    void panPicture();
    void normalFrame();
    void drawFrame(Engine::Page* page);
    void displayTestFrame(int picture);

    // In the order of construction; the end goes backwards.
    HomeLayout layout_;
    ScreenSaverAnimation animation_;
    OverlayMessageHandling messages_;
    LinuxFramebuffer display_;
    EventPoll poll_;
    std::optional<BackendHandler> handler_;  ///< made when the display is open
    std::optional<Screen> screen_;
    Engine::GuiManager& manager_;
    Slideshow slideshow_;
    std::optional<InputEventHandling> input_;
    std::optional<LayoutPainter> layoutPainter_;
    Joystick joystick_;
    bool layoutDirty_ = true;  ///< frames must be fitted to their texts before the next picture
    bool forceRedraw_ = false;
    Engine::Page* lastActivePage_ = nullptr;
    std::int64_t lastFrameTime_ = 0;  ///< steady clock, nanoseconds
};
