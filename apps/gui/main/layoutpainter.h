#pragma once

#include "embedded-gui-engine/framebuffer.h"

/// A second view of the screen, which the home layout measures its texts with.
struct LayoutPainter {
    Engine::Framebuffer<unsigned int> painter;
    bool needsRelayout = false;  ///< the layout must run, and a frame be drawn, even if nothing else changed
};
