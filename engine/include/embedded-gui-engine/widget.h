#pragma once

#include <cstdint>
#include <span>

#include "embedded-gui-engine/changed.h"
#include "embedded-gui-engine/color.h"
#include "embedded-gui-engine/object.h"
#include "embedded-gui-engine/painter.h"
#include "embedded-gui-engine/point.h"
#include "embedded-gui-engine/reactionee.h"
#include "embedded-gui-engine/rect.h"
#include "embedded-gui-engine/touchevent.h"
#include "embedded-gui-engine/widgetparams.h"

namespace Engine {

class BoolVariable;
class Page;

/// Base of everything that is drawn: a rectangle, colours for three states, fonts, borders, alignment, dirty marking
/// and the hit test. A class gives its look in `draw`.
///
/// A setter that is given the value in force does nothing; otherwise the widget is marked dirty, before and after
/// when its rectangle moves.
class Widget : public Reactionee, public Object {
  public:
    enum WidgetFlag : std::uint32_t {
        HasHighlightForeground = 0x4,
        HasHighlightBackground = 0x8,
        FlagWrap = 0x10,
        FlagHighlighted = 0x20,
        FlagDeferred = 0x400,     ///< is being drawn from the page's deferred list: pushes no clip
        FlagNeedsPaint = 0x10000  ///< marked since the last paint
    };

    /// Whether reactions that are attached to the widget may run: operable, and focused if it can have the focus.
    bool isEnabled() const override;
    const char* objectName() const override { return nameOr("Widget"); }
    bool isPage() const final { return false; }
    bool isWidget() const final { return true; }
    virtual void setHeight(std::int16_t height);
    virtual void setForeground(Color color) { repaintIfChanged(foreground_, color); }
    virtual void setBackground(Color color) { repaintIfChanged(background_, color); }
    virtual void setDisabledForeground(Color color) { repaintIfChanged(disabledForeground_, color); }
    virtual void setDisabledBackground(Color color) { repaintIfChanged(disabledBackground_, color); }
    virtual void setHighlighted(bool highlighted);
    /// Shown and not greyed out, all the way up.
    virtual bool isOperable() const { return isEnabledInTree() && !isDisabledInTree(); }
    /// Called by the page, which holds the focus slots.
    virtual void setFocused(bool) {}
    virtual bool isFocused() const { return false; }
    virtual bool isFocusable() const { return false; }
    virtual bool reserved16() const { return false; }
    virtual bool reserved17() const { return false; }
    virtual void setHighlightForeground(Color color);
    virtual void setHighlightBackground(Color color);
    /// Stores only: the caller sees to the repaint.
    virtual void setHighlightFont(Font* font) { highlightFont_ = font; }
    virtual void setPadding(std::uint16_t padding) { repaintIfChanged(padding_, padding); }
    virtual void setHaloRadius(std::int32_t radius) { repaintIfChanged(haloRadius_, radius); }
    virtual bool reserved23() const { return false; }
    /// A child's rectangle or number changed.
    virtual void childGeometryChanged() {}
    /// Draws the widget with state, clip and trace around it. Nothing when it is not shown.
    virtual void paint(Painter& painter);
    /// Marks `rect`, in the widget's own coordinates, dirty on the page. While the page paints, only with `force`.
    virtual void invalidate(Rect rect, bool force);
    virtual void invalidateAll(bool force);
    /// Whether marks are cut down to the parent's area.
    virtual bool clipsToParent() const { return true; }
    void setParent(Object* parent) override;
    virtual bool acceptsTouch() const { return false; }
    /// True keeps the touch with this widget until the finger is lifted.
    virtual bool handleTouch(const TouchEvent&) { return false; }
    /// Draws the border, or fills the background when there is none, and shrinks `rect` to the content.
    virtual void contentRect(Painter& painter, Rect& rect);
    /// Draws the widget into `rect`, which is absolute. The style has been applied to the painter.
    virtual void draw(Painter& painter, Rect rect) = 0;

    void invalidate() override { invalidateAll(false); }
    void relayout() override {}

    void setFont(Font* font);
    /// The widget becomes the border's owner.
    void setBorder(Border* border);
    void setHighlightBorder(Border* border);
    void setHighlightVariable(BoolVariable* variable) { highlightVariable_ = variable; }
    void setHaloColor(Color color) { repaintIfChanged(haloColor_, color); }
    void setScroll(std::int16_t x, std::int16_t y);
    void setWrap(bool wrap);
    void setAlign(Painter::Align horizontal, Painter::Align vertical);
    void setHorizontalAlign(Painter::Align align) { repaintIfChanged(horizontalAlign_, align); }
    void setVerticalAlign(Painter::Align align) { repaintIfChanged(verticalAlign_, align); }
    void setX(std::int16_t x) { repaintIfMoved(x_, x); }
    void setY(std::int16_t y) { repaintIfMoved(y_, y); }
    void setWidth(std::int16_t width) { repaintIfMoved(width_, width); }
    void setRectangle(Rect rect);

    std::int16_t x() const { return x_; }
    std::int16_t y() const { return y_; }
    std::int16_t width() const { return width_; }
    std::int16_t height() const { return height_; }
    Rect rectangle() const { return {x_, y_, width_, height_}; }
    std::uint16_t padding() const { return padding_; }
    std::int16_t scrollX() const { return scrollX_; }
    std::int16_t scrollY() const { return scrollY_; }
    Painter::Align horizontalAlign() const { return horizontalAlign_; }
    Painter::Align verticalAlign() const { return verticalAlign_; }
    Color haloColor() const { return haloColor_; }
    std::int32_t haloRadius() const { return haloRadius_; }
    Font* font() const { return font_; }
    Border* border() const { return border_; }
    Font* highlightFont() const { return highlightFont_; }
    Border* highlightBorder() const { return highlightBorder_; }
    bool isHighlighted() const { return hasFlag(FlagHighlighted); }
    bool wraps() const { return hasFlag(FlagWrap); }

    /// The colours of the three states.
    struct Colors {
        Color foreground, background;
        Color disabledForeground, disabledBackground;
        Color highlightForeground, highlightBackground;
    };
    Colors colors() const {
        return {foreground_,         background_,          disabledForeground_,
                disabledBackground_, highlightForeground_, highlightBackground_};
    }
    /// What the state makes of colours and font: disabled wins over highlighted.
    Color currentForeground() const;
    Color currentBackground() const;
    Font* currentFont() const;
    Border* currentBorder() const;
    /// Hands colours, font, alignment and wrap to the painter.
    void applyStyle(Painter& painter) const;

    /// The page at the root of the tree, null while the widget is unlinked.
    Page* page() const;
    Point toAbsolute(Point point) const;
    Point toLocal(Point point) const;
    Rect absoluteRect() const;
    /// Whether a point in screen coordinates lies in the widget's rectangle.
    bool holds(Point screenPoint) const;
    int childrenWidth() const;
    int childrenHeight() const;

    /// The widget of this subtree that takes the touch: operable, under the point, children asked before their parent
    /// in array order. Null when none does.
    Widget* hitTest(const TouchEvent& event);
    /// One-pixel frames around this widget and everything below it, a debugging aid.
    void drawOutline(Painter& painter) const;

  protected:
    constexpr explicit Widget(const WidgetParams& params, std::span<Object* const> children = {})
        : Object(params.name, flagsOf(params), children),
          font_(params.font),
          border_(params.border),
          x_(params.x),
          y_(params.y),
          width_(params.width),
          height_(params.height),
          foreground_(params.foreground),
          background_(params.background),
          disabledForeground_(params.disabledForeground),
          disabledBackground_(params.disabledBackground),
          highlightForeground_(params.highlightForeground.valueOr(0xFF000000)),
          highlightBackground_(params.highlightBackground.valueOr(0xFFFFFFFF)),
          highlightFont_(params.highlightFont),
          highlightBorder_(params.highlightBorder),
          haloColor_(params.haloColor),
          scrollX_(params.scrollX),
          scrollY_(params.scrollY),
          padding_(params.padding),
          horizontalAlign_(params.horizontalAlign),
          verticalAlign_(params.verticalAlign),
          haloRadius_(params.haloRadius) {}
    ~Widget() = default;

    const char* nameOr(const char* word) const { return name_ != nullptr ? name_ : word; }

    /// Compare, store, mark dirty.
    template <typename T>
    void repaintIfChanged(T& field, T value) {
        if (changed(field, value)) invalidateAll(false);
    }
    /// The same for a field of the rectangle: the area that is left is marked as well.
    template <typename T>
    void repaintIfMoved(T& field, T value) {
        if (field == value) return;
        invalidateAll(false);
        field = value;
        invalidateAll(false);
    }

    Font* font_;
    Border* border_;
    BoolVariable* highlightVariable_ = nullptr;
    std::int16_t x_, y_, width_, height_;
    Color foreground_;
    Color background_;
    Color disabledForeground_;
    Color disabledBackground_;
    Color highlightForeground_;  ///< in force only with HasHighlightForeground
    Color highlightBackground_;  ///< in force only with HasHighlightBackground
    Font* highlightFont_;
    Border* highlightBorder_;
    Color haloColor_;
    std::int16_t scrollX_, scrollY_;
    std::uint16_t padding_;
    Painter::Align horizontalAlign_;
    Painter::Align verticalAlign_;
    std::int32_t haloRadius_;

  private:
    /// What a walk up the tree tells.
    struct Place {
        bool shown = true;
        bool disabled = false;
        Point origin;  ///< of the widget, on the screen
        Page* page = nullptr;
    };
    Place place() const;
    Color foregroundWhen(bool disabled) const;
    Color backgroundWhen(bool disabled) const;
    void applyStyle(Painter& painter, bool disabled) const;
    Rect visibleArea() const;

    static constexpr std::uint32_t flagsOf(const WidgetParams& params) {
        return FlagIsWidget | (params.enabled ? FlagEnabled : 0u) | (params.disabled ? FlagDisabled : 0u) |
               (params.highlightForeground.isGiven() ? HasHighlightForeground : 0u) |
               (params.highlightBackground.isGiven() ? HasHighlightBackground : 0u) | (params.wrap ? FlagWrap : 0u);
    }
};

}  // namespace Engine
