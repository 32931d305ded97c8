#pragma once

#include "embedded-gui-engine/color.h"
#include "embedded-gui-engine/rect.h"

namespace Engine {

class Painter;
class Widget;

/// A frame around a widget, which is also responsible for the widget's inside.
class Border {
  public:
    virtual void draw(Painter& painter, Rect rect) = 0;
    /// Pixels that the frame takes on each side.
    virtual int thickness() const = 0;
    virtual const char* className() const = 0;

    /// Repaints the owner on a change.
    void setColor(Color color);
    Color color() const { return color_; }
    /// Set by the widget at link time; null while unlinked. Not owned.
    void setOwner(Widget* owner) { owner_ = owner; }

  protected:
    constexpr explicit Border(Color color) : color_(color) {}
    ~Border() = default;

    Color color_;
    Widget* owner_ = nullptr;
};

}  // namespace Engine
