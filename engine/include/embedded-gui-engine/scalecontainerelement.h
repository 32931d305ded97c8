#pragma once

#include <cstdint>

#include "embedded-gui-engine/rect.h"

namespace Engine {

class Painter;
class ScaleContainer;
class Widget;

/// Something that a ScaleContainer shows: the scale itself or an indicator on it. Elements draw with template widgets,
/// which are children of the container: a template is moved to its place, painted and moved back.
class ScaleContainerElement {
  public:
    /// `rect` is the container's content, absolute.
    virtual void draw(Painter& painter, Rect rect) = 0;
    virtual void tableChanged() = 0;

    /// An element that is not enabled is not drawn.
    void setEnabled(bool enabled);
    bool isEnabled() const { return enabled_; }

  protected:
    /// The container is not owned and not null.
    constexpr explicit ScaleContainerElement(ScaleContainer* container, bool enabled = true)
        : container_(container), enabled_(enabled) {}
    ~ScaleContainerElement() = default;

    /// Compare, store, have the container drawn.
    template <typename T>
    void repaintIfChanged(T& field, T value) {
        if (field == value) return;
        field = value;
        repaint();
    }
    void repaint();
    /// Paints a template `down` pixels below its own place.
    static void paintMoved(Painter& painter, Widget& widget, std::int32_t down);

    ScaleContainer* container_;

  private:
    bool enabled_;
};

}  // namespace Engine
