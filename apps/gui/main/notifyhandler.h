#pragma once

#include <array>
#include <optional>
#include <span>

#include "apps/common/event/notify.h"
#include "apps/gui/main/assignmentflags.h"
#include "apps/gui/main/axiscolumns.h"
#include "apps/gui/main/scalemarks.h"

class HomeLayout;
class InputEventHandling;
class LinuxFramebuffer;
class OverlayMessageHandling;
class ScreenSaverAnimation;
class Slideshow;
struct LayoutPainter;

namespace Engine {
class Widget;
}

/// The widgets of lens scales whose looks are settings. All may be missing.
struct LensWidgets {
    // As paintMarkers takes them.
    std::array<std::span<Engine::Widget* const>, 3> internalMarkers;  ///< of focus, iris and zoom
    std::span<Engine::Widget* const> externalMarkers;
    ScaleMarks majorMarks;
    ScaleMarks minorMarks;
};

/// What the shell itself does when a value has changed: called with each notice after the variables have it. What it
/// stores reaches the variables by the server's echo; a value that is stored already is not posted again, so that an
/// echo ends.
class NotifyHandler {
  public:
    /// What it works on; all of it outlives this.
    struct Shell {
        LinuxFramebuffer& display;
        bool& layoutDirty;
        LayoutPainter& layoutPainter;
        InputEventHandling& input;
        bool& forceRedraw;
        HomeLayout& layout;
        OverlayMessageHandling& messages;
        ScreenSaverAnimation& animation;
        Slideshow& slideshow;
    };

    NotifyHandler(const Shell& shell, const LensWidgets& lens) : shell_(shell), lens_(lens) {}

    void operator()(const Notify& notify);

  private:
    bool handleLayout(std::uint32_t id);
    bool handleMessages(std::uint32_t id);
    bool handleLensLooks(std::uint32_t id);
    bool handleSimulation(std::uint32_t id);
    void handleOthers(std::uint32_t id);

    void followMessage();
    void relayout();
    void rotate();
    void updateAssignmentFlags();
    void updateMultiSegmentFlags();
    void updateMotorSummary();
    void captureScreen();
    void startScreenSaver();
    void warnOfModem();
    void simulate(int button, int value);

    Shell shell_;
    LensWidgets lens_;
};
