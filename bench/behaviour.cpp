// The price of the engine's behaviour: notifications that change nothing, and texts. Each measurement has a peer of
// bare code in the same run.
#include <benchmark/benchmark.h>
#include <pcre.h>

#include <algorithm>
#include <array>
#include <cstdio>

#include "backend/var.h"
#include "embedded-gui-engine/compare.h"
#include "embedded-gui-engine/concatmodifier.h"
#include "embedded-gui-engine/condelse.h"
#include "embedded-gui-engine/conditionalvalue.h"
#include "embedded-gui-engine/formatmixed.h"
#include "embedded-gui-engine/hooks.h"
#include "embedded-gui-engine/icon.h"
#include "embedded-gui-engine/label.h"
#include "embedded-gui-engine/modifier.h"
#include "embedded-gui-engine/page.h"
#include "embedded-gui-engine/regexfilter.h"
#include "embedded-gui-engine/result.h"
#include "embedded-gui-engine/stringprovider.h"
#include "tests/support/allocations.h"

namespace {

using namespace Engine;

constexpr std::size_t ObserverCount = 40;

/// Forty icons on a page whose colours hang on one variable: a branch for an alarm value, one for a limit, a default.
struct ColoredPage {
    ColoredPage() {
        for (std::size_t i = 0; i < ObserverCount; ++i) {
            children[i] = &icons[i];
            observers[i] = &modifiers[i];
        }
        page.setChildren(children.data(), ObserverCount);
        variable.attach(observers.data(), ObserverCount);
        variable.setValue(1);
    }

    void forgetMarks() {
        for (Icon& icon : icons) icon.setFlag(Widget::FlagNeedsPaint, false);
    }
    std::size_t markedIcons() const {
        return static_cast<std::size_t>(std::count_if(
            icons.begin(), icons.end(), [](const Icon& icon) { return icon.hasFlag(Widget::FlagNeedsPaint); }));
    }

    template <typename T, std::size_t... I>
    static std::array<T, sizeof...(I)> repeated(std::index_sequence<I...>, auto make) {
        return {make(I)...};
    }
    template <typename T>
    static std::array<T, ObserverCount> repeated(auto make) {
        return repeated<T>(std::make_index_sequence<ObserverCount>(), make);
    }

    Backend::IntVar variable{"VarBench"};
    Compare<int> isAlarm{&variable, 1000};
    Compare<int> isHigh{&variable, 500, CompareOperator::Greater};
    CondElse otherwise;
    Result<Color> red{0xffff0000}, yellow{0xffffff00}, white{0xffffffff};
    ConditionalEntry<Color> entries[3] = {{&isAlarm, &red}, {&isHigh, &yellow}, {&otherwise, &white}};
    ConditionalValue<Color> color{entries};
    std::array<Icon, ObserverCount> icons =
        repeated<Icon>([](std::size_t) { return Icon(WidgetParams{.width = 20, .height = 20}); });
    std::array<Modifier<Widget, Color>, ObserverCount> modifiers = repeated<Modifier<Widget, Color>>(
        [this](std::size_t i) { return Modifier<Widget, Color>(&icons[i], &Widget::setForeground, &color); });
    std::array<Object*, ObserverCount> children{};
    std::array<Observer*, ObserverCount> observers{};
    Page page{PageParams{}};
};

/// Reports the allocations of one round, and fails when there were any.
void requireNoAllocation(benchmark::State& state, std::size_t before) {
    if (allocations != before) state.SkipWithError("it allocated");
}

/// One written variable with forty colour modifiers whose result stays the same.
void unchangedObservers(benchmark::State& state) {
    ColoredPage model;
    model.forgetMarks();
    const std::size_t before = allocations;
    int value = 1;
    for (auto _ : state) {
        value = value == 1 ? 2 : 1;
        model.variable.setValue(value);
    }
    requireNoAllocation(state, before);
    if (model.markedIcons() != 0) state.SkipWithError("a widget asked for a repaint");
}
BENCHMARK(unchangedObservers);

/// The same with a changing colour, so that each widget marks itself.
void changedObservers(benchmark::State& state) {
    ColoredPage model;
    model.forgetMarks();
    int value = 1;
    for (auto _ : state) {
        value = value == 1 ? 1000 : 1;
        model.variable.setValue(value);
    }
    if (model.markedIcons() != ObserverCount) state.SkipWithError("a widget did not ask for a repaint");
}
BENCHMARK(changedObservers);

/// The peer: forty virtual calls that each compare one integer.
void fortyVirtualCalls(benchmark::State& state) {
    class Comparing : public Observer {
      public:
        void update(std::intptr_t value, std::intptr_t) override { same_ += value == last_ ? 1 : 0; }

      private:
        std::intptr_t last_ = 5;
        int same_ = 0;
    };
    std::array<Comparing, ObserverCount> comparing;
    std::array<Observer*, ObserverCount> observers;
    for (std::size_t i = 0; i < ObserverCount; ++i) observers[i] = &comparing[i];
    for (auto _ : state) {
        for (Observer* observer : observers) {
            benchmark::DoNotOptimize(observer);
            observer->update(5, 0);
        }
    }
}
BENCHMARK(fortyVirtualCalls);

const char* benchText(TextId) {
    return "%0 of %1";
}

/// From a written variable through provider and template to an unchanged label.
void valueToLabel(benchmark::State& state) {
    hooks().textForId = benchText;
    Backend::FloatVar variable("VarBench");
    const Result<const char*> unit("m");
    char storage[2][32] = {};
    StringProvider<float> number("%.1f", &variable, nullptr, storage[0]);
    StringProvider<const char*> text("%s", &unit, nullptr, storage[1]);
    StringProviderBase* const parts[] = {&number, &text};
    Label label(WidgetParams{});
    ConcatModifier concat(parts, TextId{1}, &label);
    concat.link();
    text.link();
    Observer* const observers[] = {&number};
    variable.attach(observers, 1);
    const std::size_t before = allocations;
    float value = 1.5F;
    for (auto _ : state) {
        value = value == 1.5F ? 1.52F : 1.5F;  // both show as 1.5
        variable.setValue(value);
    }
    requireNoAllocation(state, before);
}
BENCHMARK(valueToLabel);

void plainSnprintf(benchmark::State& state) {
    char buffer[256];
    double value = 1.5;
    for (auto _ : state) {
        benchmark::DoNotOptimize(value);
        std::snprintf(buffer, sizeof buffer, "%.1f", value);
        benchmark::DoNotOptimize(buffer);
    }
}
BENCHMARK(plainSnprintf);

template <typename T>
void provider(benchmark::State& state, const char* format, T value, RegexFilter* filter) {
    const Result<T> result(value);
    char storage[64] = "";
    StringProvider<T> text(format, &result, filter, storage);
    text.link();
    const std::size_t before = allocations;
    for (auto _ : state) text.update();
    requireNoAllocation(state, before);
}
void floatProvider(benchmark::State& state) {
    provider<float>(state, "%.1f", 1.5F, nullptr);
}
void textProvider(benchmark::State& state) {
    provider<const char*>(state, "A: %s", "A001_C003.mov", nullptr);
}
void filteredProvider(benchmark::State& state) {
    static constinit RegexFilter filter("^(.*)\\.[^.]+$");
    provider<const char*>(state, "%s", "A001_C003.mov", &filter);
}
BENCHMARK(floatProvider);
BENCHMARK(textProvider);
BENCHMARK(filteredProvider);

/// The peer of the filter: the library's bare match.
void plainPcre(benchmark::State& state) {
    const char* error = nullptr;
    int offset = 0;
    pcre* code = pcre_compile("^(.*)\\.[^.]+$", 0, &error, &offset, nullptr);
    int ovector[33];
    for (auto _ : state) {
        benchmark::DoNotOptimize(pcre_exec(code, nullptr, "A001_C003.mov", 13, 0, 0, ovector, 33));
    }
    pcre_free(code);
}
BENCHMARK(plainPcre);

/// The library's bound on the worst text of a pathological expression.
void pathologicalFilter(benchmark::State& state) {
    static constinit RegexFilter filter("(a+)+$");
    filter.link();
    char subject[256];
    std::snprintf(subject, sizeof subject, "%0250d", 0);
    for (char& character : subject) character = character == '0' ? 'a' : character;
    subject[249] = 'b';
    char out[RegexFilter::TextSize];
    for (auto _ : state) filter.apply(subject, out);
}
BENCHMARK(pathologicalFilter);

void mixedFormat(benchmark::State& state) {
    const std::uint32_t words[] = {0x00444342, 7, 0x3fc00000};
    char buffer[256];
    for (auto _ : state) {
        formatMixed(buffer, sizeof buffer, "Lens %s motor %i at %.2f", words);
        benchmark::DoNotOptimize(buffer);
    }
}
BENCHMARK(mixedFormat);

void mixedSnprintf(benchmark::State& state) {
    const char* text = "BCD";
    int number = 7;
    double real = 1.5;
    char buffer[256];
    for (auto _ : state) {
        benchmark::DoNotOptimize(text);
        std::snprintf(buffer, sizeof buffer, "Lens %s motor %i at %.2f", text, number, real);
        benchmark::DoNotOptimize(buffer);
    }
}
BENCHMARK(mixedSnprintf);

}  // namespace

BENCHMARK_MAIN();
