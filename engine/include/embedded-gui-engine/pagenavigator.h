#pragma once

#include <cstdint>
#include <span>

#include "embedded-gui-engine/preparecompositing.h"
#include "embedded-gui-engine/widget.h"

namespace Engine {

/// A widget that slides between neighbouring pages: the drag opens a link to the neighbour, the release lets the
/// pages settle on one of the two.
class PageNavigator : public Widget, public PrepareCompositing {
  public:
    enum class Direction : std::uint32_t { NorthOf = 0, EastOf = 1, SouthOf = 2, WestOf = 3, Unrelated = 4 };
    enum class Mode : std::uint32_t { Fixed = 0, Moves = 1 };

    /// From `pageA`, `pageB` lies in this direction: WestOf opens when the finger drags right and brings `pageB` in
    /// from the left. The link serves both ways, with the opposite direction from `pageB`.
    struct Link {
        Page* pageA;
        Page* pageB;
        Mode modeA;
        Mode modeB;
        Direction direction;
    };

    /// `duration` is the milliseconds that a settling over the full size takes. The links are not copied and may
    /// hold null entries.
    constexpr PageNavigator(const WidgetParams& params, std::span<const Link* const> links, int duration)
        : Widget(params),
          links_(links.data()),
          linkCount_(static_cast<std::uint16_t>(links.size())),
          duration_(duration) {}

    const char* objectName() const override { return nameOr("PageNavigator"); }
    bool acceptsTouch() const override { return true; }
    bool handleTouch(const TouchEvent& event) override;
    void draw(Painter&, Rect) override {}
    void prepare(Point& firstOffset, Point& secondOffset, bool& firstGoesOnTop, std::uint32_t rotationIndex) override;

    /// Slides by itself; false when there is no neighbour.
    bool swipeTo(Direction direction);
    Direction direction() const { return direction_; }
    Point offset() const { return {offsetX_, offsetY_}; }
    bool isAnimating() const { return animating_; }

  private:
    void drag();
    void release();
    bool openLink(Direction direction);
    void setOffset(int x, int y);
    void reset();
    bool movesAlongX() const;
    /// Whether the pages settle on the second one.
    bool settlesAway() const;
    void startAnimation();
    void animate();
    void finish();
    Mode modeOf(bool ofActivePage) const;
    void placeSecond(Point& point) const;

    const Link* const* links_;
    std::uint16_t linkCount_;
    const Link* link_ = nullptr;
    Direction direction_ = Direction::Unrelated;
    std::int16_t settleX_ = 0, settleY_ = 0;
    std::int16_t offsetX_ = 0, offsetY_ = 0;
    std::int16_t stepX_ = 0, stepY_ = 0;
    bool animating_ = false;
    int duration_;
    std::uint32_t animationStart_ = 0;
};

}  // namespace Engine
