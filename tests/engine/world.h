// A small hand-made world for scenario tests: a clock, a journal of what happened, a manager, and simple model
// classes. Everything that a test declares in it lives as long as the fixture.
#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <deque>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "embedded-gui-engine/action.h"
#include "embedded-gui-engine/behaviorcontainer.h"
#include "embedded-gui-engine/framebuffer.h"
#include "embedded-gui-engine/group.h"
#include "embedded-gui-engine/guimanager.h"
#include "embedded-gui-engine/hooks.h"
#include "embedded-gui-engine/page.h"
#include "embedded-gui-engine/reaction.h"
#include "embedded-gui-engine/singleeventmatcher.h"
#include "embedded-gui-engine/systemevents.h"
#include "embedded-gui-engine/trace.h"

namespace Engine::Test {

using Journal = std::vector<std::string>;

/// An action that does what the test says.
class Do : public Action {
  public:
    Do(std::string word, std::function<bool()> what, std::uint32_t flags = Enabled)
        : Action(nullptr, flags), word_(std::move(word)), what_(std::move(what)) {}
    bool execute() override { return what_(); }
    const char* name() const override { return word_.c_str(); }

  private:
    std::string word_;
    std::function<bool()> what_;
};

/// A plain rectangle.
class Box : public Widget {
  public:
    explicit Box(const WidgetParams& params) : Widget(params) {}
    void draw(Painter& painter, Rect rect) override { contentRect(painter, rect); }
};

/// A rectangle that can have the focus.
class Field : public Box {
  public:
    using Box::Box;
    bool isFocusable() const override { return true; }
    bool isFocused() const override { return focused; }
    void setFocused(bool on) override { focused = on; }
    bool focused = false;
};

/// A rectangle that takes touches.
class Pad : public Box {
  public:
    using Box::Box;
    bool acceptsTouch() const override { return true; }
    bool handleTouch(const TouchEvent& event) override {
        events.push_back(event);
        return answer;
    }
    std::vector<TouchEvent> events;
    bool answer = true;
};

/// A framebuffer over memory of its own.
class Screen {
  public:
    Screen(std::uint32_t width, std::uint32_t height)
        : pixels_(std::size_t{width} * height), painter(width, height, 8, pixels_.data(), 0) {}
    const std::vector<unsigned>& pixels() const { return pixels_; }
    /// The picture as the viewer sees it, whatever the rotation; letters by `letter`.
    std::vector<std::string> picture(const std::function<char(unsigned)>& letter) const;

  private:
    std::vector<unsigned> pixels_;

  public:
    Framebuffer<unsigned> painter;
};

class World : public testing::Test {
  protected:
    World();
    ~World() override;

    /// Declares a reaction that writes `word` into the journal.
    Reaction* says(EventId event, const char* word, const Reactionee* owner = nullptr);
    Reaction* does(EventId event, std::function<void()> what);
    Action* action(const char* word, bool answer = true, std::uint32_t flags = Action::Enabled);
    const EventMatcher* on(EventId event);
    /// Keeps an array alive and gives it as constant data.
    template <typename T>
    std::span<T* const> list(std::initializer_list<T*> items);

    void passMillis(int ms) { nanoseconds += std::int64_t{ms} * 1'000'000; }
    void touch(TouchEvent::Phase phase, int x, int y, int finger = 0) { manager.handleTouch({x, y, phase, finger}); }
    void down(int x, int y) { touch(TouchEvent::Phase::Down, x, y); }
    void move(int x, int y) { touch(TouchEvent::Phase::Move, x, y); }
    void up(int x, int y) { touch(TouchEvent::Phase::Up, x, y); }
    bool cycle() { return manager.processEvents(true); }
    void send(EventId event) {
        manager.postEvent(event);
        cycle();
    }
    /// A container that writes every touch and swipe event into the journal.
    void listenToGestures();
    /// What was written since the last call.
    Journal said() { return std::exchange(journal, {}); }
    bool logged(const std::string& text) const;

    static std::int64_t nanoseconds;
    static Journal logLines;

    Journal journal;
    GuiManager manager;
    TraceFlags traceFlags{};

  private:
    std::deque<Do> actions_;
    std::deque<SingleEventMatcher> matchers_;
    std::deque<Reaction> reactions_;
    std::deque<std::shared_ptr<void>> arrays_;
    std::deque<BehaviorContainer> containers_;
    GuiManager* before_;
};

template <typename T>
std::span<T* const> World::list(std::initializer_list<T*> items) {
    auto array = std::make_shared<std::vector<T*>>(items);
    arrays_.push_back(array);
    return {array->data(), array->size()};
}

}  // namespace Engine::Test
