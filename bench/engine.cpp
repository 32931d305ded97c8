// The three figures of the engine's core: an event's way to its reaction, an idle refresh cycle, and what a widget
// costs beyond the fill that it draws.
#include <benchmark/benchmark.h>
#include <time.h>

#include <chrono>
#include <deque>
#include <vector>

#include "embedded-gui-engine/action.h"
#include "embedded-gui-engine/behaviorcontainer.h"
#include "embedded-gui-engine/framebuffer.h"
#include "embedded-gui-engine/guimanager.h"
#include "embedded-gui-engine/hooks.h"
#include "embedded-gui-engine/page.h"
#include "embedded-gui-engine/singleeventmatcher.h"
#include "embedded-gui-engine/timer.h"
#include "embedded-gui-engine/userbutton.h"
#include "embedded-gui-engine/widget.h"

namespace {

using namespace Engine;

constexpr EventId TheEvent = 200;
constexpr int PageReactions = 140, OverlayReactions = 60, ContainerReactions = 20;
constexpr int Overlays = 4, Containers = 11, Timers = 19, UserButtons = 9;
constexpr int Width = 240, Height = 400;

class Count : public Action {
  public:
    bool execute() override { return ++count != 0; }
    const char* name() const override { return "Count"; }
    long count = 0;
};

class Fill : public Widget {
  public:
    explicit Fill(const WidgetParams& params) : Widget(params) {}
    void draw(Painter& painter, Rect rect) override { contentRect(painter, rect); }
};

/// A page, overlays and containers in the product's numbers; one reaction of the page listens to the event.
class Model {
  public:
    Model() {
        hooks().steadyNanoseconds = [] {
            return std::int64_t{std::chrono::steady_clock::now().time_since_epoch().count()};
        };
        GuiManager::setInstance(&manager);
        auto& own = manyReactions(PageReactions);
        own[PageReactions / 2] = &listening;
        for (int i = 0; i < Timers; ++i)
            timerList.push_back(&timers.emplace_back(TimerParams{.interval = 500, .startMatcher = &other}));
        for (int i = 0; i < UserButtons; ++i)
            buttonList.push_back(&buttons.emplace_back(UserButtonParams{.pressMatcher = &other}));
        page = &pages.emplace_back(PageParams{.name = "Largest", .behavior = {.reactions = own, .timers = timerList}});
        for (int i = 0; i < Overlays; ++i)
            overlayList.push_back(&pages.emplace_back(
                PageParams{.noBackground = true, .behavior = {.reactions = manyReactions(OverlayReactions)}}));
        for (int i = 0; i < Containers; ++i)
            containerList.push_back(&containers.emplace_back(
                ReactableParams{.reactions = manyReactions(ContainerReactions)}, std::span<UserAction* const>{},
                i == 0 ? std::span<UserButton* const>(buttonList) : std::span<UserButton* const>{}));
        manager.setOverlays(overlayList);
        manager.setContainers(containerList);
        manager.finishInitialization();
        manager.setActivePage(page);
    }
    ~Model() { GuiManager::setInstance(nullptr); }

    std::vector<Reaction*>& manyReactions(int count) {
        auto& list = lists.emplace_back();
        for (int i = 0; i < count; ++i)
            list.push_back(&reactions.emplace_back(actions, &matchers.emplace_back(static_cast<EventId>(300 + i))));
        return list;
    }

    Count action;
    Action* const actions[1] = {&action};
    SingleEventMatcher wanted{TheEvent}, other{201};
    Reaction listening{actions, &wanted};
    std::deque<SingleEventMatcher> matchers;
    std::deque<Reaction> reactions;
    std::deque<std::vector<Reaction*>> lists;
    std::deque<Timer> timers;
    std::vector<Timer*> timerList;
    std::deque<UserButton> buttons;
    std::vector<UserButton*> buttonList;
    std::deque<Page> pages;
    Page* page = nullptr;
    std::vector<Page*> overlayList;
    std::deque<BehaviorContainer> containers;
    std::vector<BehaviorContainer*> containerList;
    GuiManager manager;
};

void eventToReaction(benchmark::State& state) {
    Model model;
    for (auto _ : state) {
        model.manager.postEvent(TheEvent);
        benchmark::DoNotOptimize(model.manager.processEvents(true));
    }
    if (model.action.count != static_cast<long>(state.iterations())) state.SkipWithError("an event was lost");
}
BENCHMARK(eventToReaction);

void idleCycle(benchmark::State& state) {
    Model model;
    for (auto _ : state) benchmark::DoNotOptimize(model.manager.processEvents(true));
}
BENCHMARK(idleCycle);

constexpr int Tiles = 400;

Rect tile(int index) {
    return {static_cast<std::int16_t>(index % 10 * 24), static_cast<std::int16_t>(index / 10 % 10 * 40), 24, 40};
}

/// A screen and a page of 400 widgets of 24 x 40 pixels with nothing but their background.
class TiledPage {
  public:
    TiledPage() : pixels(Width * Height), screen(Width, Height, 8, pixels.data(), 0) {
        for (int i = 0; i < Tiles; ++i) {
            const Rect rect = tile(i);
            children.push_back(&widgets.emplace_back(WidgetParams{
                .x = rect.x, .y = rect.y, .width = rect.width, .height = rect.height, .background = color(i)}));
        }
        page = &pages.emplace_back(PageParams{.noBackground = true, .children = children});
        page->linkChildren();
    }
    static Color color(int index) { return 0xFF000000u + static_cast<Color>(index); }
    void fillAlone() {
        for (int i = 0; i < Tiles; ++i) {
            screen.setBackground(color(i));
            screen.fill(tile(i));
        }
    }

    std::vector<unsigned> pixels;
    Framebuffer<unsigned> screen;
    std::deque<Fill> widgets;
    std::vector<Object*> children;
    std::deque<Page> pages;
    Page* page = nullptr;
};

/// Of this thread alone: the machine's other work does not count.
std::int64_t cpuNanoseconds() {
    timespec time{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return std::int64_t{time.tv_sec} * 1'000'000'000 + time.tv_nsec;
}

// Both sides take turns in one loop, so that whatever else the machine does falls on both.
void widgetsAgainstFills(benchmark::State& state) {
    TiledPage tiles;
    std::int64_t inWidgets = 0, inFills = 0;
    for (auto _ : state) {
        const std::int64_t start = cpuNanoseconds();
        tiles.page->draw(tiles.screen);
        benchmark::ClobberMemory();
        const std::int64_t middle = cpuNanoseconds();
        tiles.fillAlone();
        benchmark::ClobberMemory();
        inWidgets += middle - start;
        inFills += cpuNanoseconds() - middle;
    }
    const auto nanoseconds = [&](std::int64_t time) {
        return static_cast<double>(time) / static_cast<double>(state.iterations()) / Tiles;
    };
    state.counters["ns_per_widget"] = nanoseconds(inWidgets);
    state.counters["ns_per_fill"] = nanoseconds(inFills);
    state.counters["ratio"] = nanoseconds(inWidgets) / nanoseconds(inFills);
}
BENCHMARK(widgetsAgainstFills);

}  // namespace

BENCHMARK_MAIN();
