// The price of the product's variables: the frame's sync pass, a server's notice, the replay at start. Each has a peer
// in the same run that does the same with bare means.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstring>
#include <deque>
#include <vector>

#include "backend/areas.h"
#include "embedded-gui-engine/compare.h"
#include "embedded-gui-engine/condelse.h"
#include "embedded-gui-engine/conditionalvalue.h"
#include "embedded-gui-engine/icon.h"
#include "embedded-gui-engine/modifier.h"
#include "embedded-gui-engine/page.h"
#include "embedded-gui-engine/result.h"
#include "model/catalogue/handler.h"
#include "model/catalogue/messages.h"
#include "model/catalogue/places.h"
#include "model/catalogue/variables.h"
#include "tests/support/allocations.h"

namespace {

using namespace Engine;

constexpr std::size_t modifierCount = 5500;
constexpr std::size_t perVariable = 40;

/// A colour that hangs on one number: a branch for an alarm value, one for a limit, a default.
struct NumberColor {
    explicit NumberColor(const Backend::IntVar& number)
        : isAlarm(&number, 100000), isHigh(&number, 50000, CompareOperator::Greater) {}

    Compare<int> isAlarm;
    Compare<int> isHigh;
    CondElse otherwise;
    Result<Color> red{0xffff0000}, yellow{0xffffff00}, white{0xffffffff};
    ConditionalEntry<Color> entries[3] = {{&isAlarm, &red}, {&isHigh, &yellow}, {&otherwise, &white}};
    ConditionalValue<Color> color{entries};
};

/// The variables that tell: numbers of the catalogue with the whole int range, so that any value may be written.
std::vector<Backend::IntVar*> openNumbers() {
    std::vector<Backend::IntVar*> numbers;
    for (Backend::IntVar& number : Model::ints)
        if (!number.limited()) numbers.push_back(&number);
    return numbers;
}

/// 5,500 colour modifiers on one page, 40 a variable, and memory areas of the process's own.
struct World {
    World() {
        const std::vector<Backend::IntVar*> numbers = openNumbers();
        for (std::size_t i = 0; i < modifierCount; ++i) {
            if (i % perVariable == 0) colors.emplace_back(*numbers[i / perVariable]);
            Icon& icon = icons.emplace_back(WidgetParams{.width = 20, .height = 20});
            observers.push_back(&modifiers.emplace_back(&icon, &Widget::setForeground, &colors.back().color));
            children.push_back(&icon);
        }
        page.setChildren(children.data(), static_cast<std::uint16_t>(children.size()));
        for (std::size_t i = 0; i < modifierCount; i += perVariable)
            numbers[i / perVariable]->attach(&observers[i],
                                             static_cast<unsigned>(std::min(perVariable, modifierCount - i)));
        told = numbers.front();
        openAreas();
        Model::syncAll(true);
        for (Icon& icon : icons) icon.setFlag(Widget::FlagNeedsPaint, false);
    }

    void openAreas() {
        for (const Backend::AreaDefinition& area : Model::handlerTable.areas) {
            Backend::areaBases[areas.size()] = areas.emplace_back(area.size + 4).data();
        }
    }
    void fillAreas(unsigned char byte) {
        for (auto& area : areas) std::fill(area.begin(), area.end(), byte);
    }
    bool untouched() const {
        return std::none_of(icons.begin(), icons.end(),
                            [](const Icon& icon) { return icon.hasFlag(Widget::FlagNeedsPaint); });
    }

    std::deque<NumberColor> colors;
    std::deque<Icon> icons;
    std::deque<Modifier<Widget, Color>> modifiers;
    std::vector<Observer*> observers;
    std::vector<Object*> children;
    Page page{PageParams{}};
    Backend::IntVar* told = nullptr;
    std::deque<std::vector<unsigned char>> areas;
};

World& world() {
    static World instance;
    return instance;
}

void requireNoAllocation(benchmark::State& state, std::size_t before) {
    if (allocations != before) state.SkipWithError("it allocated");
}

void idleSync(benchmark::State& state) {
    world();
    const std::size_t before = allocations;
    for (auto _ : state) Model::syncFrame();
    requireNoAllocation(state, before);
    state.counters["variables"] = Model::variables.slotCount;
    state.counters["bytes"] = sizeof Model::flags + sizeof Model::ints + sizeof Model::enums + sizeof Model::floats +
                              sizeof Model::strings + sizeof Model::tables;
}
BENCHMARK(idleSync);

/// Peer: the same frame by asking every variable and table.
void idleWalk(benchmark::State& state) {
    world();
    const Backend::VariableSet& set = Model::variables;
    for (auto _ : state) {
        for (unsigned i = 0; i < set.slotCount; ++i) set.slots[i]->syncData(false);
        for (unsigned i = 0; i < set.tableCount; ++i) benchmark::DoNotOptimize(set.tables[i]->isSync());
    }
}
BENCHMARK(idleWalk);

void oneChangedWithFortyObservers(benchmark::State& state) {
    World& model = world();
    const std::size_t before = allocations;
    int value = 1;
    for (auto _ : state) {
        value = 3 - value;
        model.told->receive(value);
        Model::syncFrame();
    }
    requireNoAllocation(state, before);
    if (!model.untouched()) state.SkipWithError("a widget asked for a repaint");
}
BENCHMARK(oneChangedWithFortyObservers);

/// Peer: forty calls of the observers and nothing else.
void fortyUpdates(benchmark::State& state) {
    World& model = world();
    for (auto _ : state)
        for (std::size_t i = 0; i < perVariable; ++i) model.observers[i]->update();
}
BENCHMARK(fortyUpdates);

/// The rows of all variables with a message of their own: a value each, in any kind.
std::vector<const Backend::HandlerRow*> messageRows() {
    std::vector<const Backend::HandlerRow*> rows;
    for (const Backend::HandlerRow& row : Model::handlerTable.rows)
        if (row.kind < Backend::RowKind::Table) rows.push_back(&row);
    return rows;
}

/// Every message variable gets another value and all are told in one pass.
void allMessagesChanged(benchmark::State& state) {
    World& model = world();
    const std::vector<const Backend::HandlerRow*> rows = messageRows();
    const std::size_t before = allocations;
    unsigned char byte = 1;
    for (auto _ : state) {
        byte = byte == 0 ? 1 : 0;
        for (const Backend::HandlerRow* row : rows) {
            model.areas[row->area][row->offset] = byte;
            Backend::applyRow(*row);
        }
        Model::syncFrame();
    }
    requireNoAllocation(state, before);
    state.counters["variables"] = static_cast<double>(rows.size());
}
BENCHMARK(allMessagesChanged)->Unit(benchmark::kMicrosecond);

/// A notice of a number, from the id to the variable, each time with another value.
void noticeOfANumber(benchmark::State& state) {
    World& model = world();
    const Places::Place& place = Places::VarZoomTargetValue;
    unsigned char* bytes = model.areas[static_cast<std::size_t>(place.area)].data() + place.offset;
    const std::size_t before = allocations;
    for (auto _ : state) {
        ++*bytes;
        benchmark::DoNotOptimize(Backend::applyMessage(Model::handlerTable, Messages::VarZoomTargetValueChanged));
    }
    requireNoAllocation(state, before);
    Model::syncFrame();
}
BENCHMARK(noticeOfANumber);

/// Peer: the word itself.
void wordOfANumber(benchmark::State& state) {
    World& model = world();
    const Places::Place& place = Places::VarZoomTargetValue;
    unsigned char* bytes = model.areas[static_cast<std::size_t>(place.area)].data() + place.offset;
    float value = 0;
    for (auto _ : state) {
        ++*bytes;
        benchmark::ClobberMemory();
        std::memcpy(&value, bytes, sizeof value);
        benchmark::DoNotOptimize(value);
    }
}
BENCHMARK(wordOfANumber);

void replay() {
    for (const std::uint16_t id : Model::handlerTable.subscriptions) Backend::applyMessage(Model::handlerTable, id);
}

/// The replay of all ids; with an argument every byte of every area has changed since the last.
void startReplay(benchmark::State& state) {
    World& model = world();
    const std::size_t before = allocations;
    unsigned char byte = 0;
    for (auto _ : state) {
        if (state.range(0) != 0) {
            state.PauseTiming();
            model.fillAreas(byte ^= 1);
            state.ResumeTiming();
        }
        replay();
    }
    requireNoAllocation(state, before);
}
BENCHMARK(startReplay)->Arg(0)->Arg(1)->Unit(benchmark::kMicrosecond);

/// Peer: a copy of all areas.
void copyAreas(benchmark::State& state) {
    World& model = world();
    auto copies = model.areas;
    for (auto _ : state)
        for (std::size_t i = 0; i < copies.size(); ++i)
            std::memcpy(copies[i].data(), model.areas[i].data(), copies[i].size());
}
BENCHMARK(copyAreas)->Unit(benchmark::kMicrosecond);

}  // namespace

BENCHMARK_MAIN();
