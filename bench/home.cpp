// What the home page costs: product and stand-in server in this process, every figure beside its peer of the same run.
//
//   redraw       the whole page, its tables with 60 rows, every fifth with a number, beside the fill of its
//                background alone
//   everything   one pass in which all subscribed values have changed at once, beside a pass with the same notices and
//   no
//                change
//   idle         a pass in which nothing happens, beside the system calls that it makes
#include <benchmark/benchmark.h>
#include <fcntl.h>
#include <sched.h>
#include <sys/epoll.h>
#include <sys/stat.h>
#include <time.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstring>
#include <stdexcept>
#include <string>
#include <vector>

#include "embedded-gui-engine/framebuffer.h"
#include "embedded-gui-engine/guimanager.h"
#include "model/catalogue/constants.h"
#include "tests/support/allocations.h"
#include "tests/support/stubserver.h"
#include "tests/support/wholeunit.h"

namespace {

double threadSeconds() {
    timespec time;
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) * 1e-9;
}

/// Seconds of one call, measured over `count` of them.
template <typename Call>
double secondsOf(int count, Call&& call) {
    const double begin = threadSeconds();
    for (int i = 0; i < count; ++i) call();
    return (threadSeconds() - begin) / count;
}

double median(std::vector<double>& values) {
    std::ranges::nth_element(values, values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2));
    return values[values.size() / 2];
}

WholeUnit& unit() {
    static WholeUnit theUnit("zoom-feet-marks");
    return theUnit;
}

/// A live table of `rows` ticks over the whole axis, every fifth with a number.
void fillTable(const std::string& name, int rows) {
    for (int row = 0; row < rows; ++row) {
        const std::string at = name + ".Rows[" + std::to_string(row) + "].";
        const bool numbered = row % 5 == 0;
        unit().poke(at + "TableEntryFlags", numbered ? "3" : "1");
        unit().poke(at + "EncoderValue", std::to_string(65535 * row / (rows - 1)));
        unit().poke(at + "EngravedValue", std::to_string(row));
        unit().poke(at + "InterpolEngravedVal", std::to_string(row));
        unit().poke(at + "PrimaryEngravedValueAsString", numbered ? std::to_string(row) : "");
    }
    unit().poke(name + ".ListSize", std::to_string(rows));
    unit().set(name + ".TableActive", "1");
}

void showThreeScales() {
    unit().act("lens", "lens", "zoom-25-250");
    for (const char* motor : {"focus", "iris", "zoom"}) unit().act("motors", motor, "ready");
    unit().settle();
    for (const char* table :
         {"VarLensTableFocusMeter", "VarLensTableFocusImperial", "VarLensTableIris", "VarLensTableZoom"})
        fillTable(table, 60);
    unit().settle();
    if (unit().page() != "Home_LDD") throw std::runtime_error("the unit shows " + unit().page());
}

void redraw(benchmark::State& state) {
    showThreeScales();
    Engine::GuiManager& manager = Engine::GuiManager::instance();
    auto* screen = static_cast<Engine::Framebuffer<unsigned int>*>(manager.painter());
    std::vector<unsigned int> pixels(std::size_t{240} * 400);
    std::vector<double> pages;
    std::vector<double> fills;
    for ([[maybe_unused]] auto iteration : state) {
        screen->setPixels(pixels.data());
        const double seconds = secondsOf(1, [&] {
            manager.drawFrame();
            manager.finishFrame();
        });
        fills.push_back(secondsOf(1, [&] {
            screen->resetClipStack();
            screen->setBackground(0xff000000);
            screen->clear();
        }));
        pages.push_back(seconds);
        state.SetIterationTime(seconds);
    }
    state.counters["page_us"] = median(pages) * 1e6;
    state.counters["fill_us"] = median(fills) * 1e6;
}
BENCHMARK(redraw)->UseManualTime()->Iterations(2000)->Unit(benchmark::kMicrosecond);

/// What would send the pass elsewhere, so that it would cost less: other pictures than the page, files, and requests
/// that are answered by further changes.
bool leadsAway(const std::string& name) {
    static constexpr std::array names = {
        "VarScreenSaverActive",  "VarServiceModeDisplayTest", "VarServiceModeEnabled", "VarGuiScreenCaptureName",
        "VarMessageShow",        "VarMessageIsVisible",       "VarSimulateButtonDown", "VarSimulateButtonUp",
        "VarSimulateButtonPress"};
    return std::ranges::find(names, name) != names.end();
}

/// Another value than it has, one that it can have.
void flip(const Catalogue::Value& value, unsigned char* place, int turn) {
    switch (value.kind) {
        case Catalogue::Kind::Flag: *place = static_cast<unsigned char>(turn); break;
        case Catalogue::Kind::Int:
        case Catalogue::Kind::Enum: std::memcpy(place, &turn, sizeof turn); break;
        case Catalogue::Kind::Float: {
            const float fraction = turn != 0 ? 0.75F : 0.25F;
            std::memcpy(place, &fraction, sizeof fraction);
            break;
        }
        case Catalogue::Kind::Text: std::memcpy(place, turn != 0 ? "B" : "A", 2); break;
        default: break;
    }
}

void changeEverything(int turn) {
    for (const Catalogue::Value& value : Catalogue::values)
        if (value.area != Catalogue::noArea && !leadsAway(value.name))
            flip(value, unit().server().area(static_cast<std::size_t>(value.area)) + value.offset, turn);
}

void everything(benchmark::State& state) {
    showThreeScales();
    std::vector<std::uint32_t> ids(Catalogue::subscriptions.begin(), Catalogue::subscriptions.end());
    // That notice alone asks for a picture file, which is no part of the frame's work.
    std::erase(ids, Catalogue::findValue("VarGuiScreenCaptureName")->id);
    std::vector<double> changed;
    std::vector<double> same;
    int turn = 0;
    const auto pass = [&] {
        unit().server().received();
        unit().server().notify(ids);
        unit().driver().advanceClock(1'000'000'000 / 60);
        return secondsOf(1, [] { unit().pass(); });
    };
    for ([[maybe_unused]] auto iteration : state) {
        changeEverything(turn ^= 1);
        changed.push_back(pass());
        same.push_back(pass());
        state.SetIterationTime(changed.back());
    }
    unit().scene("zoom-feet-marks");
    state.counters["changed_us"] = median(changed) * 1e6;
    state.counters["same_us"] = median(same) * 1e6;
    state.counters["values"] = static_cast<double>(ids.size());
}
BENCHMARK(everything)->UseManualTime()->Iterations(500)->Unit(benchmark::kMicrosecond);

/// The calls of an idle pass, by themselves: a poll without time, a read of each of four devices that have nothing to
/// say, a yield, and a blank that is there already.
class BareCalls {
  public:
    BareCalls() : epoll_(::epoll_create1(EPOLL_CLOEXEC)) {
        for (int& fifo : fifos_) {
            int ends[2];
            if (::pipe2(ends, O_CLOEXEC | O_NONBLOCK) != 0) throw std::runtime_error("pipe");
            fifo = ends[0];
        }
        epoll_event event = {};
        event.events = EPOLLIN;
        ::epoll_ctl(epoll_, EPOLL_CTL_ADD, fifos_[0], &event);
    }
    void make() const {
        epoll_event events[8];
        benchmark::DoNotOptimize(::epoll_wait(epoll_, events, 8, 0));
        char record[16];
        for (const int fifo : fifos_) benchmark::DoNotOptimize(::read(fifo, record, sizeof record));
        benchmark::DoNotOptimize(::sched_yield());
    }

  private:
    int epoll_;
    std::array<int, 4> fifos_{};
};

void idle(benchmark::State& state) {
    showThreeScales();
    const BareCalls calls;
    std::vector<double> passes;
    std::vector<double> bare;
    passes.reserve(static_cast<std::size_t>(state.max_iterations));
    bare.reserve(static_cast<std::size_t>(state.max_iterations));
    const std::size_t before = allocations;
    for ([[maybe_unused]] auto iteration : state) {
        passes.push_back(secondsOf(8, [] { unit().pass(); }));
        bare.push_back(secondsOf(8, [&] { calls.make(); }));
        state.SetIterationTime(passes.back());
    }
    state.counters["allocations"] = static_cast<double>(allocations - before);
    state.counters["pass_us"] = median(passes) * 1e6;
    state.counters["calls_us"] = median(bare) * 1e6;
}
BENCHMARK(idle)->UseManualTime()->Iterations(5000)->Unit(benchmark::kMicrosecond);

}  // namespace

BENCHMARK_MAIN();
