#include "embedded-gui-engine/page.h"

#include "embedded-gui-engine/changed.h"
#include "embedded-gui-engine/guimanager.h"
#include "embedded-gui-engine/hooks.h"
#include "embedded-gui-engine/trace.h"
#include "embedded-gui-engine/widget.h"

namespace Engine {

void Page::setBackgroundColor(Color color) {
    if (changed(backgroundColor_, color)) invalidate();
}

void Page::setVisible(bool visible) {
    invalidate();
    setFlag(FlagEnabled, visible);
}

void Page::addDirty(Rect rect) {
    // Arithmetic on the whole-screen mark would lose it.
    if (dirty_.width == WholeScreen || dirty_.height == WholeScreen) return;
    dirty_ = uniteRect(dirty_, rect);
}

void Page::enter(bool entered) {
    if (!entered) {
        onPageState(PagePhase::Leaving);
        setFlag(FlagPageActive, false);
        return;
    }
    setFlag(FlagPageActive, true);
    onPageState(PagePhase::Entering);
    relayout();
    refreshObservers();
}

// Drawing.

void Page::draw(Painter& painter) {
    dirty_ = {};
    if (!isShown()) return;
    setFlag(FlagRedrawing, true);
    if (!hasFlag(FlagNoBackground)) drawBackground(painter);
    for (Object* child : children())
        if (Widget* widget = asWidget(child)) widget->paint(painter);
    drawDeferred(painter);
    setFlag(FlagRedrawing, false);
}

void Page::drawBackground(Painter& painter) const {
    painter.setBackground(backgroundColor_);
    if (fullBackground_)
        painter.fill({0, 0, static_cast<std::int16_t>(painter.logicalWidth()),
                      static_cast<std::int16_t>(painter.logicalHeight())});
    else
        painter.clear();
}

void Page::drawDeferred(Painter& painter) {
    setFlag(FlagDrawingDeferred, true);
    for (std::size_t i = 0; i < deferredCount_; ++i) deferred_[i]->paint(painter);
    deferredCount_ = 0;
    setFlag(FlagDrawingDeferred, false);
}

bool Page::defer(Widget* widget) {
    if (widget == nullptr || deferredCount_ == deferred_.size()) return false;
    deferred_[deferredCount_++] = widget;
    return true;
}

// Focus.

bool Page::setFocus(Widget* widget) {
    clearAllFocus();
    return addFocus(widget);
}

bool Page::addFocus(Widget* widget) {
    return canFocus(widget) && takeSlot(widget);
}

bool Page::canFocus(const Widget* widget) const {
    if (widget != nullptr && widget->isFocusable() && widget->isOperable()) return true;
    engineLog(1, __FILE_NAME__, __LINE__, "Widget (%s) not focusable",
              widget != nullptr ? widget->objectName() : "nullptr");
    return false;
}

bool Page::takeSlot(Widget* widget) {
    if (widget->isFocused()) return true;
    for (Widget*& slot : focus_) {
        if (slot != nullptr) continue;
        slot = widget;
        Trace::instance().focusSet(*this, *widget);
        widget->setFocused(true);
        return true;
    }
    return false;
}

void Page::clearFocus(Widget* widget) {
    if (widget == nullptr) return;
    for (Widget*& slot : focus_)
        if (slot == widget) emptySlot(slot);
}

void Page::clearAllFocus() {
    for (Widget*& slot : focus_)
        if (slot != nullptr) emptySlot(slot);
}

// The slot is free before the widget hears of it: losing the focus may roll an edit back and bring about more.
void Page::emptySlot(Widget*& slot) {
    Widget* widget = slot;
    slot = nullptr;
    Trace::instance().focusCleared(*this, *widget);
    widget->setFocused(false);
}

}  // namespace Engine
