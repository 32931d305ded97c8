#pragma once

#include <cstdint>
#include <span>

#include "embedded-gui-engine/observer.h"
#include "embedded-gui-engine/scalerow.h"
#include "embedded-gui-engine/tablesource.h"
#include "embedded-gui-engine/variablebase.h"
#include "embedded-gui-engine/widget.h"

namespace Engine {

class ScaleContainerElement;

/// A window onto a tall scale that slides behind it. The table gives each row a place on a linear axis, so that uneven
/// scales need no mathematics here. Positions are fractions of the scale: 0 is the table's first row, 1 its last.
///
/// Conversions to pixels truncate and all arithmetic is in single precision. What comes out of bounds is held there, so
/// that any position and magnification, infinite or no number at all, gives a picture.
///
/// The templates of the elements are the container's children; they are drawn by the elements only.
class ScaleContainer : public Widget, public Observer {
  public:
    enum class Follow : std::uint32_t {
        Inside = 0,  ///< the scale stays within the window: its ends meet the window's at positions 0 and 1
        Centred = 1  ///< the position is held in the middle; the scale may leave the window at its ends
    };
    enum class Direction : std::uint8_t { Down = 0, Up = 1 };

    /// Pointers are not owned and may be null.
    struct Params {
        float position = 0;  ///< what is kept in view
        std::span<ScaleContainerElement* const> elements = {};
        Follow follow = Follow::Inside;
        float magnification = 1;  ///< window heights that the whole scale takes up
        Direction direction = Direction::Down;
        const TableSource* table = nullptr;           ///< null draws no element
        VariableBase<float>* visibleStart = nullptr;  ///< told the fraction at the window's top by each draw
        VariableBase<float>* visibleEnd = nullptr;    ///< the same for the bottom
    };
    /// A place that no window shows, for what has no place.
    static constexpr std::int32_t Nowhere = INT32_MIN;

    constexpr explicit ScaleContainer(const WidgetParams& params, const Params& scale,
                                      std::span<Object* const> templates = {})
        : Widget(params, templates),
          position_(scale.position),
          elements_(scale.elements.data()),
          elementCount_(static_cast<std::uint16_t>(scale.elements.size())),
          follow_(scale.follow),
          magnification_(scale.magnification),
          reversed_(scale.direction == Direction::Up),
          table_(scale.table),
          visibleStart_(scale.visibleStart),
          visibleEnd_(scale.visibleEnd) {}

    void setPosition(float fraction);
    void setMagnification(float magnification);
    /// The offset follows at the next draw.
    void setReversed(bool reversed) { repaintIfChanged(reversed_, reversed); }
    float position() const { return position_; }
    float magnification() const { return magnification_; }
    bool isReversed() const { return reversed_; }

    /// Live rows of the table, 0 without one.
    unsigned int rowCount() const { return table_ != nullptr ? table_->rowCount() : 0; }
    ScaleRow row(unsigned int index) const;

    // Mapping. Pixels are local: 0 is the widget's top.
    /// 0 when the table has no extent.
    std::int32_t pixelOfAxis(std::int32_t axisPosition) const;
    /// Nowhere for what is no number.
    std::int32_t pixelOfFraction(float fraction) const;
    float fractionOfPixels(std::int32_t pixels) const;
    std::int32_t axisOfFraction(float fraction) const;
    /// Of the fraction 0 at the last draw, or since the last change of position or magnification.
    std::int32_t offset() const { return offset_; }

    const char* objectName() const override { return nameOr("ScaleContainer"); }
    void draw(Painter& painter, Rect rect) override;
    virtual void tableChanged();
    /// The table changed.
    void update(std::intptr_t arg1 = 0, std::intptr_t arg2 = 0) override;

  private:
    struct Axis {
        std::int32_t first = 0;
        std::int32_t last = 0;
    };
    Axis axis() const;
    std::span<ScaleContainerElement* const> elements() const { return {elements_, elementCount_}; }
    std::int32_t contentTop() const;
    /// Pixels of the whole scale.
    float length() const { return static_cast<float>(content_.height) * magnification_; }
    void updateOffset();
    void tellEdges() const;

    float position_;
    ScaleContainerElement* const* elements_;
    std::uint16_t elementCount_;
    Follow follow_;
    float magnification_;
    bool reversed_;
    const TableSource* table_;
    VariableBase<float>* visibleStart_;
    VariableBase<float>* visibleEnd_;
    Rect content_;  ///< at the last draw, absolute
    std::int32_t offset_ = 0;
};

}  // namespace Engine
