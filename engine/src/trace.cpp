#include "embedded-gui-engine/trace.h"

#include <algorithm>
#include <cstdarg>
#include <cstdio>

#include "embedded-gui-engine/action.h"
#include "embedded-gui-engine/border.h"
#include "embedded-gui-engine/guimanager.h"
#include "embedded-gui-engine/hooks.h"
#include "embedded-gui-engine/page.h"
#include "embedded-gui-engine/reaction.h"
#include "embedded-gui-engine/systemevents.h"
#include "embedded-gui-engine/widget.h"

// Every line carries the same source, whoever caused it.
#define TRACE_LINE(...) engineLog(TraceLevel, "trace.h", __LINE__, __VA_ARGS__)

namespace Engine {
namespace {

constexpr int TraceLevel = 4;

constexpr const char* SystemEventNames[] = {"Event_PageEntered",    "Event_PageExited",
                                            "Event_EditingStarted", "Event_EditingFinished",
                                            "Event_EngineStarted",  "Event_TouchStart",
                                            "Event_TouchEnd",       "Event_TouchTouched",
                                            "Event_TouchMoved",     "Event_SelectionOnTouchChanged",
                                            "Event_GotSelection",   "Event_SwipeLeft",
                                            "Event_SwipeRight",     "Event_SwipeUp",
                                            "Event_SwipeDown"};
static_assert(std::size(SystemEventNames) == SystemEventCount);

const char* orEmpty(const char* text) {
    return text != nullptr ? text : "";
}
const char* orNullptr(const char* text) {
    return text != nullptr ? text : "nullptr";
}

}  // namespace

ValueText::ValueText(bool value) : text_(value ? "true" : "false") {}
ValueText::ValueText(int value) {
    std::snprintf(buffer_, sizeof buffer_, "%i", value);
}
ValueText::ValueText(long value) {
    std::snprintf(buffer_, sizeof buffer_, "%li", value);
}
ValueText::ValueText(long long value) {
    std::snprintf(buffer_, sizeof buffer_, "%lli", value);
}
ValueText::ValueText(float value) : ValueText(static_cast<double>(value)) {}
ValueText::ValueText(double value) {
    std::snprintf(buffer_, sizeof buffer_, "%.3f", value);
}
ValueText::ValueText(const char* value) { std::snprintf(buffer_, sizeof buffer_, "%s", orEmpty(value)); }

Trace& Trace::instance() {
    static constinit Trace trace;
    return trace;
}

const char* Trace::eventName(EventId id) const {
    if (id < FirstUserEvent) return id < SystemEventCount ? SystemEventNames[id] : "UnknownSystemEvent";
    const EventId index = id - FirstUserEvent;
    return index < userEventNames_.size() ? userEventNames_[index] : "UnknownUserEvent";
}

void Trace::eventPosted(EventId id) const {
    if (isEventFlagSet(EventPost)) TRACE_LINE("EVENT(post) '%s' (%d)", eventName(id), static_cast<int>(id));
}

void Trace::event(const char* word, EventId id) const {
    if (isEventFlagSet(EventDispatch)) TRACE_LINE("EVENT(%s) '%s' (%d)", word, eventName(id), static_cast<int>(id));
}

void Trace::eventForModal(EventId id, const Page& page) const {
    if (isEventFlagSet(EventDispatch))
        TRACE_LINE("EVENT '%s' (%d) will be sent to modal page %s only", eventName(id), static_cast<int>(id),
                   page.objectName());
}

void Trace::touch(const Page& page, int x, int y) const {
    if (isEventFlagSet(EventDispatch)) TRACE_LINE("EVENT(TOUCH) '%s' (%dx%d)", page.objectName(), x, y);
}

void Trace::commandStart(const char* name) const {
    if (isEventFlagSet(EventCommandStart)) TRACE_LINE(" CMD>'%s'", orEmpty(name));
}

void Trace::commandEnd(const char* name, int result) const {
    if (isEventFlagSet(EventCommandEnd))
        TRACE_LINE(" CMD<'%s'=%i(%08x)", orEmpty(name), result, static_cast<unsigned>(result));
}

void Trace::reaction(const char* word, const Reaction& reaction) const {
    if (isEventFlagSet(EventReaction))
        TRACE_LINE("REACTION(%s) '%s' attached to %s)", word, reaction.name != nullptr ? reaction.name : "Reaction",
                   reaction.owner != nullptr ? orNullptr(reaction.owner->objectName()) : "nullptr");
}

void Trace::action(const char* word, const Action& action) const {
    if (isEventFlagSet(EventAction)) TRACE_LINE("ACTION(%s) '%s')", word, action.name());
}

void Trace::focusSet(const Page& page, const Widget& widget) const {
    if (isEventFlagSet(EventFocus)) TRACE_LINE("FOCUS(  SET) '%s'/'%s'", page.objectName(), widget.objectName());
}

void Trace::focusCleared(const Page& page, const Widget& widget) const {
    if (isEventFlagSet(EventFocus)) TRACE_LINE("FOCUS(CLEAR) '%s'/'%s'", page.objectName(), widget.objectName());
}

void Trace::dropped(const char* queue, const char* what, std::uint32_t total) const {
    if (isEventFlagSet(EventPost)) TRACE_LINE("%s queue is full, dropped '%s', %u since the start", queue, what, total);
}

void Trace::writeVarToValue(const char* variable, const char* value) const {
    TRACE_LINE("VAR(toVal) '%s' = %s", orEmpty(variable), value);
}

void Trace::writeVarToValueBy(const char* variable, const char* value, const char* action) const {
    TRACE_LINE("VAR(toVal) '%s' = %s by Action %s", orEmpty(variable), value, orEmpty(action));
}

void Trace::writeVarToVariable(const char* destination, const char* source, const char* value) const {
    TRACE_LINE("VAR(toVar) '%s' = '%s' (%s)", orEmpty(destination), orEmpty(source), value);
}

void Trace::list(const char* word, int index) const {
    if (isVarFlagSet(VarList)) TRACE_LINE("LIST(%s) @ %i", word, index);
}

void Trace::edit(const char* variable, const char* format, ...) const {
    if (!isVarFlagSet(VarEdit)) return;
    char text[128];
    va_list arguments;
    va_start(arguments, format);
    std::vsnprintf(text, sizeof text, format, arguments);
    va_end(arguments);
    TRACE_LINE("EDIT(%s) %s", orEmpty(variable), text);
}

void Trace::pageEntered(const Page* page) const {
    if (isPageFlagSet(PageEnter)) TRACE_LINE("PAGE(enter) '%s'", page != nullptr ? page->objectName() : "ZERO");
}

void Trace::pageLeft(const Page* page) const {
    if (isPageFlagSet(PageLeave)) TRACE_LINE("PAGE(leave) '%s'", page != nullptr ? page->objectName() : "ZERO");
}

// A page has one colour: its background. The other places of the form stay 0.
void Trace::beginPage(const Page& page, Rect area, DrawBit bit) {
    if (!isDrawFlagSet(bit)) return;
    TRACE_LINE("%sDRAW>%s(%i|%i,%i|%i)(C%08x|%08x,D%08x|%08x,S%08x|%08x)", indent_, page.objectName(), area.x, area.y,
               area.width, area.height, 0u, page.backgroundColor(), 0u, 0u, 0u, 0u);
    deeper();
}

void Trace::endPage(const Page& page, DrawBit bit) {
    if (!isDrawFlagSet(bit)) return;
    shallower();
    TRACE_LINE("%sDRAW<%s", indent_, page.objectName());
}

void Trace::beginWidget(const Widget& widget, Rect rect) {
    if (!isDrawFlagSet(DrawWidget)) return;
    const Widget::Colors colors = widget.colors();
    TRACE_LINE("%sDRAW>%s(%i|%i,%i|%i)(%08x|%08x,%08x|%08x,%08x|%08x)", indent_, widget.objectName(), rect.x, rect.y,
               rect.width, rect.height, colors.foreground, colors.background, colors.disabledForeground,
               colors.disabledBackground, colors.highlightForeground, colors.highlightBackground);
    deeper();
}

void Trace::endWidget(const Widget& widget) {
    if (!isDrawFlagSet(DrawWidget)) return;
    shallower();
    TRACE_LINE("%sDRAW<%s", indent_, widget.objectName());
}

void Trace::beginBorder(const Border& border) {
    if (!isDrawFlagSet(DrawBorder)) return;
    TRACE_LINE("%sDRAW>%s(%08x,%i)", indent_, border.className(), border.color(), border.thickness());
    deeper();
}

void Trace::endBorder(const Border& border) {
    if (!isDrawFlagSet(DrawBorder)) return;
    shallower();
    TRACE_LINE("%sDRAW<%s", indent_, border.className());
}

void Trace::beginFrame() {
    frameTimed_ = isDrawFlagSet(DrawFrame);
    if (!frameTimed_) return;
    frameStart_ = GuiManager::nowMillis();
    TRACE_LINE("DRAW>%u@%u", frames_ + 1, frameStart_);
}

void Trace::endFrame() {
    if (!frameTimed_) return;
    frameTimed_ = false;
    const std::uint32_t time = GuiManager::nowMillis() - frameStart_;
    totalTime_ += time;
    ++frames_;
    maxTime_ = std::max(maxTime_, time);
    minTime_ = std::min(minTime_, time);
    TRACE_LINE("DRAW<%u, %u(%u|%u|%u)", frames_, time, minTime_, totalTime_ / frames_, maxTime_);
}

void Trace::deeper() {
    setDepth(depth_ + 1);
}
void Trace::shallower() {
    setDepth(depth_ - 1);
}

void Trace::setDepth(int depth) {
    depth_ = std::clamp(depth, 0, MaxDepth);
    std::fill_n(indent_, depth_, ' ');
    indent_[depth_] = '\0';
}

}  // namespace Engine
