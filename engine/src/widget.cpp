#include "embedded-gui-engine/widget.h"

#include <algorithm>
#include <limits>

#include "embedded-gui-engine/boolvariable.h"
#include "embedded-gui-engine/border.h"
#include "embedded-gui-engine/guimanager.h"
#include "embedded-gui-engine/page.h"
#include "embedded-gui-engine/setvariablechecked.h"
#include "embedded-gui-engine/trace.h"

namespace Engine {
namespace {

inline std::int16_t toCoordinate(int value) {
    using Limits = std::numeric_limits<std::int16_t>;
    return static_cast<std::int16_t>(std::clamp<int>(value, Limits::min(), Limits::max()));
}

inline Rect movedTo(Rect rect, Point origin) {
    return {toCoordinate(origin.x + rect.x), toCoordinate(origin.y + rect.y), rect.width, rect.height};
}

Rect shrunk(Rect rect, int by) {
    return {toCoordinate(rect.x + by), toCoordinate(rect.y + by), toCoordinate(rect.width - 2 * by),
            toCoordinate(rect.height - 2 * by)};
}

}  // namespace

// State.

bool Widget::isEnabled() const {
    return isOperable() && (!isFocusable() || isFocused());
}

void Widget::setHighlighted(bool highlighted) {
    if (isHighlighted() == highlighted) return;
    setFlag(FlagHighlighted, highlighted);
    if (highlightVariable_ != nullptr) setVariableChecked(*highlightVariable_, highlighted);
    invalidateAll(false);
}

void Widget::setHighlightForeground(Color color) {
    const bool first = !hasFlag(HasHighlightForeground);
    setFlag(HasHighlightForeground, true);
    if (changed(highlightForeground_, color) || first) invalidateAll(false);
}

void Widget::setHighlightBackground(Color color) {
    const bool first = !hasFlag(HasHighlightBackground);
    setFlag(HasHighlightBackground, true);
    if (changed(highlightBackground_, color) || first) invalidateAll(false);
}

void Widget::setHeight(std::int16_t height) {
    repaintIfMoved(height_, height);
}

void Widget::setRectangle(Rect rect) {
    if (rectangle() == rect) return;
    invalidateAll(false);
    x_ = rect.x;
    y_ = rect.y;
    width_ = rect.width;
    height_ = rect.height;
    invalidateAll(false);
}

void Widget::setFont(Font* font) {
    repaintIfChanged(font_, font);
}

void Widget::setBorder(Border* border) {
    if (border != nullptr) border->setOwner(this);
    repaintIfChanged(border_, border);
}

void Widget::setHighlightBorder(Border* border) {
    if (border != nullptr) border->setOwner(this);
    repaintIfChanged(highlightBorder_, border);
}

void Widget::setScroll(std::int16_t x, std::int16_t y) {
    const bool xChanged = changed(scrollX_, x);
    const bool yChanged = changed(scrollY_, y);
    if (xChanged || yChanged) invalidateAll(false);
}

void Widget::setWrap(bool wrap) {
    if (wraps() == wrap) return;
    setFlag(FlagWrap, wrap);
    invalidateAll(false);
}

void Widget::setAlign(Painter::Align horizontal, Painter::Align vertical) {
    setHorizontalAlign(horizontal);
    setVerticalAlign(vertical);
}

void Widget::setParent(Object* parent) {
    Object::setParent(parent);
    if (border_ != nullptr) border_->setOwner(this);
    if (highlightBorder_ != nullptr) highlightBorder_->setOwner(this);
}

// Style.

Color Widget::foregroundWhen(bool disabled) const {
    if (disabled) return disabledForeground_;
    return isHighlighted() && hasFlag(HasHighlightForeground) ? highlightForeground_ : foreground_;
}

Color Widget::backgroundWhen(bool disabled) const {
    if (disabled) return disabledBackground_;
    return isHighlighted() && hasFlag(HasHighlightBackground) ? highlightBackground_ : background_;
}

Color Widget::currentForeground() const {
    return foregroundWhen(isDisabledInTree());
}
Color Widget::currentBackground() const {
    return backgroundWhen(isDisabledInTree());
}

Font* Widget::currentFont() const {
    return isHighlighted() && highlightFont_ != nullptr ? highlightFont_ : font_;
}

Border* Widget::currentBorder() const {
    return isHighlighted() && highlightBorder_ != nullptr ? highlightBorder_ : border_;
}

void Widget::applyStyle(Painter& painter) const {
    applyStyle(painter, isDisabledInTree());
}

void Widget::applyStyle(Painter& painter, bool disabled) const {
    painter.setBackground(backgroundWhen(disabled));
    painter.setForeground(foregroundWhen(disabled));
    Font* font = currentFont();
    painter.setFont(font);
    painter.setAlign(horizontalAlign_, verticalAlign_);
    if (font == nullptr) return;
    font->prepare();
    painter.setWrap(wraps());
}

// Place in the tree.

Page* Widget::page() const {
    Object& top = const_cast<Object&>(root());
    return top.hasFlag(FlagIsPage) ? static_cast<Page*>(&top) : nullptr;
}

Widget::Place Widget::place() const {
    std::uint32_t anyOf = 0, allOf = FlagEnabled;
    Place result;
    for (const Object* object = this; object != nullptr; object = upFrom(*object)) {
        anyOf |= object->flags();
        allOf &= object->flags();
        Point step;
        if (object->hasFlag(FlagIsWidget)) {
            const auto& widget = static_cast<const Widget&>(*object);
            step = {widget.x_, widget.y_};
        } else if (object->hasFlag(FlagIsPage)) {
            result.page = const_cast<Page*>(static_cast<const Page*>(object));
            step = result.page->origin();
        }
        result.origin.x += step.x;
        result.origin.y += step.y;
    }
    result.shown = allOf != 0;
    result.disabled = (anyOf & FlagDisabled) != 0;
    return result;
}

Point Widget::toAbsolute(Point point) const {
    const Point origin = place().origin;
    return {point.x + origin.x, point.y + origin.y};
}

Point Widget::toLocal(Point point) const {
    const Point origin = place().origin;
    return {point.x - origin.x, point.y - origin.y};
}

Rect Widget::absoluteRect() const {
    return movedTo({0, 0, width_, height_}, place().origin);
}

bool Widget::holds(Point screenPoint) const {
    const Point local = toLocal(screenPoint);
    return local.x >= 0 && local.y >= 0 && local.x < width_ && local.y < height_;
}

int Widget::childrenWidth() const {
    int sum = 0;
    if (!isEnabledInTree()) return sum;
    for (Object* child : children())
        if (const Widget* widget = asWidget(child)) sum += widget->width_;
    return sum;
}

int Widget::childrenHeight() const {
    int sum = 0;
    if (!isEnabledInTree()) return sum;
    for (Object* child : children())
        if (const Widget* widget = asWidget(child)) sum += widget->height_;
    return sum;
}

// Marking.

void Widget::invalidateAll(bool force) {
    invalidate({0, 0, width_, height_}, force);
}

void Widget::invalidate(Rect rect, bool force) {
    const Place here = place();
    if (!here.shown || here.page == nullptr) return;
    if (!here.page->isRedrawing())
        setFlag(FlagNeedsPaint, true);
    else if (!force)
        return;
    Rect area = movedTo(rect, here.origin);
    if (clipsToParent()) area = intersectRect(area, visibleArea());
    here.page->addDirty(area);
}

Rect Widget::visibleArea() const {
    const Widget* parent = parentWidget();
    return parent != nullptr ? parent->absoluteRect() : GuiManager::instance().screenRect();
}

// Painting.

void Widget::paint(Painter& painter) {
    const Place here = place();
    if (!here.shown) return;
    const Rect rect = movedTo({0, 0, width_, height_}, here.origin);
    Trace& trace = Trace::instance();
    trace.beginWidget(*this, rect);
    applyStyle(painter, here.disabled);
    if (here.page != nullptr && here.page->isDrawingDeferred()) setFlag(FlagDeferred, true);
    if (hasFlag(FlagDeferred)) {
        draw(painter, rect);
        setFlag(FlagDeferred, false);
    } else {
        painter.pushClip(rect, false);
        draw(painter, rect);
        painter.popClip();
        if (here.page == nullptr || !here.page->hasDeferred()) setFlag(FlagNeedsPaint, false);
    }
    trace.endWidget(*this);
}

void Widget::contentRect(Painter& painter, Rect& rect) {
    if (Border* border = currentBorder()) {
        Trace::instance().beginBorder(*border);
        border->draw(painter, rect);
        Trace::instance().endBorder(*border);
        rect = shrunk(rect, border->thickness());
    } else {
        painter.fill(rect);
    }
    if (padding_ != 0) rect = shrunk(rect, padding_);
}

void Widget::drawOutline(Painter& painter) const {
    const Rect rect = absoluteRect();
    const auto line = [&painter](int x, int y, int width, int height) {
        painter.fill({toCoordinate(x), toCoordinate(y), toCoordinate(width), toCoordinate(height)});
    };
    painter.setBackground(currentForeground());
    line(rect.x - 1, rect.y - 1, rect.width + 2, 1);
    line(rect.x - 1, rect.y + rect.height, rect.width + 2, 1);
    line(rect.x - 1, rect.y, 1, rect.height);
    line(rect.x + rect.width, rect.y, 1, rect.height);
    for (Object* child : children())
        if (const Widget* widget = asWidget(child)) widget->drawOutline(painter);
}

// Touch.

Widget* Widget::hitTest(const TouchEvent& event) {
    if (!isOperable() || !holds({event.x, event.y})) return nullptr;
    for (Object* child : children()) {
        Widget* widget = asWidget(child);
        if (Widget* taker = widget != nullptr ? widget->hitTest(event) : nullptr) return taker;
    }
    return acceptsTouch() && handleTouch(event) ? this : nullptr;
}

}  // namespace Engine
