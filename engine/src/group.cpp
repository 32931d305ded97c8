#include "embedded-gui-engine/group.h"

#include <algorithm>

#include "embedded-gui-engine/page.h"

namespace Engine {
namespace {

std::int16_t toCoordinate(int value) {
    return static_cast<std::int16_t>(value);
}

/// The start of something of `size` inside `begin`, `space`; half pixels go towards the start, below it too.
int aligned(Painter::Align align, int begin, int space, int size) {
    switch (align) {
        case Painter::Align::Centre: return begin + ((space - size) >> 1);
        case Painter::Align::End: return begin + space - size;
        default: return begin;
    }
}

Widget* asShownWidget(Object* child) {
    Widget* widget = asWidget(child);
    return widget != nullptr && widget->hasFlag(Object::FlagEnabled) ? widget : nullptr;
}

}  // namespace

bool Group::isEnabled() const {
    return isOperable() && (alwaysEnabled_ == Reacts::Always || isHighlighted());
}

void Group::setHighlighted(bool highlighted) {
    if (isHighlighted() == highlighted) return;
    Widget::setHighlighted(highlighted);
    for (Object* child : children())
        if (Widget* widget = asWidget(child)) widget->setHighlighted(highlighted);
}

// Size.

void Group::setPadding(std::uint16_t padding) {
    if (padding == this->padding()) return;
    Widget::setPadding(padding);
    childGeometryChanged();
}

void Group::setParent(Object* parent) {
    Widget::setParent(parent);
    childGeometryChanged();
}

void Group::setChildren(Object* const* children, std::uint16_t count) {
    Widget::setChildren(children, count);
    childGeometryChanged();
}

int Group::contentHeight() const {
    int height = 0;
    for (Object* child : children()) {
        const Widget* widget = asWidget(child);
        if (widget == nullptr) continue;
        switch (layout_) {
            case Layout::Column: height += widget->height(); break;
            case Layout::Free: height = std::max(height, widget->y() + widget->height()); break;
            default: height = std::max<int>(height, widget->height()); break;
        }
    }
    return height;
}

// A group that stands directly on a page keeps its width: a page has none.
void Group::childGeometryChanged() {
    if (layout_ == Layout::Fixed) return;
    const int content = contentHeight();
    if (const Widget* parent = parentWidget()) setWidth(toCoordinate(parent->width() - 2 * parent->padding()));
    setHeight(toCoordinate(content + 2 * padding_));
}

// Drawing.

void Group::draw(Painter& painter, Rect rect) {
    contentRect(painter, rect);
    if (layout_ == Layout::Row) placeRow(rect);
    if (layout_ == Layout::Column) placeColumn(rect);
    for (Object* child : children())
        if (Widget* widget = asShownWidget(child)) widget->paint(painter);
}

void Group::placeRow(Rect content) {
    int x = aligned(horizontalAlign_, content.x, content.width, childrenWidth());
    for (Object* child : children()) {
        Widget* widget = asShownWidget(child);
        if (widget == nullptr) continue;
        widget->setX(toCoordinate(x));
        widget->setY(toCoordinate(aligned(verticalAlign_, content.y, content.height, widget->height())));
        x += widget->width();
    }
}

void Group::placeColumn(Rect content) {
    int y = aligned(verticalAlign_, content.y, content.height, childrenHeight());
    for (Object* child : children()) {
        Widget* widget = asShownWidget(child);
        if (widget == nullptr) continue;
        widget->setY(toCoordinate(y));
        widget->setX(toCoordinate(aligned(horizontalAlign_, content.x, content.width, widget->width())));
        y += widget->height();
    }
}

// Focus.

void Group::setEnabled(bool enabled) {
    Widget::setEnabled(enabled);
    if (enabled || fallbackFocus_ == nullptr || !dropFocusBelow(*this)) return;
    Page* page = fallbackFocus_->page();
    if (page == nullptr) return;
    if (page->isActive() || !page->queueObserver(&focusRequest_)) page->setFocus(fallbackFocus_);
}

void Group::setDisabled(bool disabled) {
    Widget::setDisabled(disabled);
    if (!disabled || fallbackFocus_ == nullptr || !dropFocusBelow(*this)) return;
    if (Page* page = fallbackFocus_->page()) page->addFocus(fallbackFocus_);
}

bool Group::dropFocusBelow(Object& object) {
    bool found = false;
    for (Object* child : object.children()) {
        if (child == nullptr) continue;
        if (dropFocusBelow(*child)) found = true;
        Widget* widget = asWidget(child);
        if (widget == nullptr || !widget->isFocused()) continue;
        found = true;
        if (Page* page = widget->page()) page->clearFocus(widget);
    }
    return found;
}

void Group::FocusRequest::giveFocus(CallbackObserver* self, std::intptr_t, std::intptr_t) {
    Widget* widget = static_cast<FocusRequest*>(self)->group->fallbackFocus_;
    if (widget == nullptr) return;
    if (Page* page = widget->page()) page->setFocus(widget);
}

}  // namespace Engine
