#include "matchreport.h"

#include <cstdarg>
#include <cstdio>

#include "embedded-gui-engine/behaviorcontainer.h"
#include "embedded-gui-engine/hooks.h"
#include "embedded-gui-engine/page.h"
#include "embedded-gui-engine/reaction.h"
#include "embedded-gui-engine/trace.h"
#include "embedded-gui-engine/widget.h"

namespace Engine {
namespace {

constexpr int ReportLevel = 2;

/// A line that is cut at its end rather than allocated.
class Line {
  public:
    [[gnu::format(printf, 2, 3)]] void append(const char* format, ...) {
        va_list arguments;
        va_start(arguments, format);
        const int written = std::vsnprintf(text_ + length_, sizeof text_ - length_, format, arguments);
        va_end(arguments);
        if (written < 0) return;
        length_ += static_cast<unsigned>(written);
        if (length_ >= sizeof text_) length_ = sizeof text_ - 1;
    }
    const char* text() const { return text_; }

  private:
    char text_[1024] = "";
    std::size_t length_ = 0;
};

char notMark(bool value) {
    return value ? ' ' : '!';
}
const char* notWord(bool value) {
    return value ? " " : "!";
}

const Widget* widgetOf(const Reaction& reaction, const Widget* widget) {
    if (widget != nullptr || reaction.owner == nullptr || !reaction.owner->isWidget()) return widget;
    return static_cast<const Widget*>(reaction.owner);
}

const char* nameOf(const Reaction& reaction, const Widget* widget) {
    if (widget != nullptr) return widget->objectName();
    return reaction.name != nullptr ? reaction.name : "Reaction";
}

void appendChain(Line& line, const Widget* widget) {
    for (; widget != nullptr; widget = widget->parentWidget())
        line.append(", parent %30s: %cv %cd %cfa %cf", widget->objectName(), notMark(widget->isEnabledInTree()),
                    notMark(widget->isDisabledInTree()), notMark(widget->isFocusable()), notMark(widget->isFocused()));
}

}  // namespace

MatchReport::MatchReport(const Reactable& reactable, EventId eventId)
    : reactable_(reactable), eventId_(eventId), on_(Trace::instance().isEventFlagSet(Trace::EventMatch)) {}

void MatchReport::write(const Reaction& reaction, const Widget* hitWidget, bool ownerEnabled) {
    writeHeader();
    const Widget* widget = widgetOf(reaction, hitWidget);
    Line line;
    line.append("  %s", reaction.enabled && ownerEnabled ? "\u2713" : "\u2717");
    line.append(" %30s", nameOf(reaction, widget));
    line.append(" matches and is %svalid and %sreactive", notWord(reaction.enabled), notWord(ownerEnabled));
    if (!ownerEnabled) appendChain(line, widget);
    engineLog(ReportLevel, __FILE_NAME__, __LINE__, "%s", line.text());
}

void MatchReport::writeHeader() {
    if (headerWritten_) return;
    headerWritten_ = true;
    const char* event = Trace::instance().eventName(eventId_);
    if (reactable_.isPage())
        engineLog(ReportLevel, __FILE_NAME__, __LINE__, "%s on page %s", event,
                  static_cast<const Page&>(reactable_).objectName());
    else if (reactable_.isBehaviorContainer())
        engineLog(ReportLevel, __FILE_NAME__, __LINE__, "%s on behavior container %s", event,
                  static_cast<const BehaviorContainer&>(reactable_).objectName());
    else
        engineLog(ReportLevel, __FILE_NAME__, __LINE__, "%s on reactable %p", event,
                  static_cast<const void*>(&reactable_));
}

}  // namespace Engine
