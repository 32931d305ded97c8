#pragma once

#include <array>
#include <span>

#include "apps/gui/main/axiscolumns.h"

namespace Engine {
class Label;
class Painter;
class Widget;
}  // namespace Engine

/// A label of a lens axis in a column of 80 pixels, and what stands beside its text. The label may be null.
struct AxisLabel {
    Engine::Label* label = nullptr;
    std::span<Engine::Widget* const> frames;
};

/// The widgets of the home page whose places depend on how long their texts are. Any of them may be missing.
struct HomeWidgets {
    std::array<Engine::Label*, 4> rows = {};  ///< share one frame
    Engine::Widget* rowFrame = nullptr;
    Engine::Label* title = nullptr;
    Engine::Widget* titleFrame = nullptr;
    std::array<AxisLabel, 3> axes = {};      ///< focus, iris, zoom
    std::array<AxisLabel, 3> softKeys = {};  ///< the same axes
};

/// Places what cannot be placed before its text is known in the language and the font at hand.
class HomeLayout {
  public:
    explicit HomeLayout(const HomeWidgets& widgets) : widgets_(widgets) {}

    /// The room of the four rows between the scale blocks: all of the display with a single row, else what the block
    /// beside it leaves. Called when an assignment changes.
    void recompute(Rows rows, const AxisColumns& columns);
    /// Fits the frames to their texts. The painter is only measured with.
    void fitFrames(Engine::Painter& painter) const;
    /// Sets the labels of the axes, and what stands beside them, where their columns say.
    void placeAxes(Engine::Painter& painter, const AxisColumns& columns) const;

    int room() const { return room_; }

  private:
    HomeWidgets widgets_;
    int room_ = 240;
};
