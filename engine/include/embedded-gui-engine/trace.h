#pragma once

#include <cstdint>
#include <span>

#include "embedded-gui-engine/eventmatcher.h"
#include "embedded-gui-engine/rect.h"
#include "embedded-gui-engine/traceflags.h"

namespace Engine {

class Action;
class Border;
class Page;
class Widget;
struct Reaction;

/// The text of a value in VAR lines, cut at 31 bytes.
class ValueText {
  public:
    explicit ValueText(bool value);
    explicit ValueText(int value);
    explicit ValueText(long value);
    explicit ValueText(long long value);
    explicit ValueText(float value);
    explicit ValueText(double value);
    /// Null gives "".
    explicit ValueText(const char* value);
    ValueText(const ValueText&) = delete;
    ValueText& operator=(const ValueText&) = delete;

    const char* text() const { return text_; }

  private:
    char buffer_[32];
    const char* text_ = buffer_;
};

/// The engine's run-time diagnosis: structured lines through the engine log, at its trace level. A switched-off line
/// costs a null test and a bit test. Also turns event ids into names.
class Trace {
  public:
    enum DrawBit : std::uint32_t {
        DrawPage = 1,
        DrawOverlay = 2,
        DrawWidget = 4,
        DrawBorder = 8,
        DrawFrame = 0x80000000
    };
    enum EventBit : std::uint32_t {
        EventPost = 1,
        EventDispatch = 2,
        EventCommandStart = 4,
        EventCommandEnd = 8,
        EventReaction = 16,
        EventAction = 32,
        EventFocus = 64,
        EventMatch = 128
    };
    enum VarBit : std::uint32_t { VarToValue = 4, VarToVariable = 8, VarList = 16, VarEdit = 32 };
    enum PageBit : std::uint32_t { PageEnter = 1, PageLeave = 2 };

    static Trace& instance();

    /// Null switches all tracing off. Not owned; read anew at each line.
    void setFlags(const volatile TraceFlags* flags) { flags_ = flags; }
    void setUserEvents(std::span<const char* const> names) { userEventNames_ = names; }
    /// "UnknownUserEvent" or "UnknownSystemEvent" when there is no name.
    const char* eventName(EventId id) const;

    bool isDrawFlagSet(std::uint32_t mask) const { return flags_ != nullptr && (flags_->draw & mask) != 0; }
    bool isEventFlagSet(std::uint32_t mask) const { return flags_ != nullptr && (flags_->event & mask) != 0; }
    bool isVarFlagSet(std::uint32_t mask) const { return flags_ != nullptr && (flags_->var & mask) != 0; }
    bool isPageFlagSet(std::uint32_t mask) const { return flags_ != nullptr && (flags_->page & mask) != 0; }

    // Events.
    void eventPosted(EventId id) const;
    /// `word` is "start", "done" or the name of the page that is asked.
    void event(const char* word, EventId id) const;
    void eventForModal(EventId id, const Page& page) const;
    void touch(const Page& page, int x, int y) const;
    void commandStart(const char* name) const;
    void commandEnd(const char* name, int result) const;
    /// `word` is "push" or "execute".
    void reaction(const char* word, const Reaction& reaction) const;
    void action(const char* word, const Action& action) const;
    void focusSet(const Page& page, const Widget& widget) const;
    void focusCleared(const Page& page, const Widget& widget) const;
    /// A full queue dropped something; `total` counts since the start. Always under the bit of posted events.
    void dropped(const char* queue, const char* what, std::uint32_t total) const;

    // Variables. Null names are printed as "".
    template <typename T>
    void varToValue(const char* variable, T value) const {
        if (isVarFlagSet(VarToValue)) writeVarToValue(variable, ValueText(value).text());
    }
    template <typename T>
    void varToValueBy(const char* variable, T value, const char* action) const {
        if (isVarFlagSet(VarToValue)) writeVarToValueBy(variable, ValueText(value).text(), action);
    }
    template <typename T>
    void varToVariable(const char* destination, const char* source, T value) const {
        if (isVarFlagSet(VarToVariable)) writeVarToVariable(destination, source, ValueText(value).text());
    }
    void list(const char* word, int index) const;
    [[gnu::format(printf, 3, 4)]] void edit(const char* variable, const char* format, ...) const;

    // Pages; null is printed as "ZERO".
    void pageEntered(const Page* page) const;
    void pageLeft(const Page* page) const;

    // Drawing: nested pairs appear as a tree, up to 7 deep.
    void beginPage(const Page& page, Rect area, DrawBit bit);
    void endPage(const Page& page, DrawBit bit);
    void beginWidget(const Widget& widget, Rect rect);
    void endWidget(const Widget& widget);
    void beginBorder(const Border& border);
    void endBorder(const Border& border);
    void beginFrame();
    void endFrame();

  private:
    static constexpr int MaxDepth = 7;

    void writeVarToValue(const char* variable, const char* value) const;
    void writeVarToValueBy(const char* variable, const char* value, const char* action) const;
    void writeVarToVariable(const char* destination, const char* source, const char* value) const;
    void deeper();
    void shallower();
    void setDepth(int depth);

    std::span<const char* const> userEventNames_;
    int depth_ = 0;
    char indent_[MaxDepth + 1] = "";
    std::uint32_t totalTime_ = 0;  ///< milliseconds
    std::uint32_t frames_ = 0;
    std::uint32_t maxTime_ = 0;  ///< milliseconds
    std::uint32_t minTime_ = 0xffffffff;
    std::uint32_t frameStart_ = 0;  ///< milliseconds of the steady clock
    bool frameTimed_ = false;       ///< the frame that is being drawn began with timing on
    const volatile TraceFlags* flags_ = nullptr;
};

}  // namespace Engine
