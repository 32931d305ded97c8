// A page with three scale containers of 60 rows each, beside the fills alone that such a picture is made of. Both are
// drawn in turn in one run; the medians and their ratio are reported.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdio>
#include <deque>
#include <string>
#include <vector>

#include "backend/var.h"
#include "embedded-gui-engine/arraytablesource.h"
#include "embedded-gui-engine/framebuffer.h"
#include "embedded-gui-engine/group.h"
#include "embedded-gui-engine/label.h"
#include "embedded-gui-engine/markerindicator.h"
#include "embedded-gui-engine/page.h"
#include "embedded-gui-engine/scale.h"
#include "embedded-gui-engine/scalecontainer.h"
#include "model/assets.h"

namespace {

using namespace Engine;

constexpr unsigned int rowCount = 60;

/// A table of the backend with the cells of a lens table, filled: every fifth row has a number.
class LensTable {
  public:
    LensTable() {
        for (unsigned int row = 0; row < rowCount; ++row) {
            flags_.emplace_back("flags").setValue(row % 5 == 0 ? 3 : 1);
            axis_.emplace_back("axis").setValue(static_cast<int>(row * 100 + row * row));
            values_.emplace_back("value");
            std::snprintf(texts_[row].data(), texts_[row].size(), "%u", row);
            main_.emplace_back("main", Backend::Variable::noSlot, texts_[row].data(), 16u);
            sub_.emplace_back("sub", Backend::Variable::noSlot, texts_[0].data(), 0u);
        }
    }

    // What ArrayTableSource asks of a table.
    unsigned int rowDimension() const { return rowCount; }
    unsigned int rowSize() const { return rowCount; }
    const Backend::IntVar* getIntVariable(unsigned int column, unsigned int row) const {
        return column == 0 ? &flags_[row] : column == 1 ? &axis_[row] : nullptr;
    }
    const Backend::FloatVar* getFloatVariable(unsigned int, unsigned int row) const { return &values_[row]; }
    const Backend::StringVar* getStringVariable(unsigned int column, unsigned int row) const {
        return column == 3 ? &main_[row] : column == 4 ? &sub_[row] : nullptr;
    }

  private:
    std::array<std::array<char, 16>, rowCount> texts_{};
    std::deque<Backend::IntVar> flags_, axis_;
    std::deque<Backend::FloatVar> values_;
    std::deque<Backend::StringVar> main_, sub_;
};

/// One container as the lens data page has it: ticks, numbers, a read-out line.
struct Ruler {
    Ruler(std::int16_t x, std::int16_t width, const TableSource* table)
        : container({.x = x, .y = 34, .width = width, .height = 332}, {.position = 0.5F,
                                                                       .elements = elements,
                                                                       .follow = ScaleContainer::Follow::Centred,
                                                                       .magnification = 1,
                                                                       .table = table}) {
        container.setChildren(templates.data(), static_cast<std::uint16_t>(templates.size()));
    }

    Group major{{.width = 12, .height = 2, .background = 0xFFFFFFFF}, Layout::Fixed};
    Group medium{{.width = 8, .height = 1, .background = 0xFFFFFFFF}, Layout::Fixed};
    Group minor{{.width = 5, .height = 1, .background = 0xFFFFFFFF}, Layout::Fixed};
    Label number{{.x = 14, .y = -10, .width = 40, .height = 20, .font = &Assets::fonts[6]}};
    Group line{{.y = -1, .width = 67, .height = 3, .background = 0xFFFFFFFF}, Layout::Fixed};
    std::array<Object*, 5> templates{&major, &medium, &minor, &number, &line};
    std::array<ScaleContainerElement*, 2> elements{&scale, &marker};
    ScaleContainer container;
    Scale scale{&container, {.majorTick = &major, .mediumTick = &medium, .minorTick = &minor, .mainLabel = &number}};
    MarkerIndicator marker{&container, {.marker = &line}, 0.5F};
};

struct Scene {
    Scene() : painter(240, 400, 8, pixels.data(), 0) {
        page.setChildren(tops.data(), static_cast<std::uint16_t>(tops.size()));
    }

    void draw() { page.draw(painter); }
    /// The page's ground and the three windows.
    void fill() {
        painter.setBackground(0xFF000000);
        painter.clear();
        for (Ruler* ruler : rulers) painter.fill(ruler->container.absoluteRect());
    }
    void magnify(float magnification) {
        for (Ruler* ruler : rulers) ruler->container.setMagnification(magnification);
    }

    std::vector<unsigned int> pixels = std::vector<unsigned int>(240 * 400);
    Framebuffer<unsigned int> painter;
    LensTable table;
    ArrayTableSource<LensTable> source{&table};
    Ruler left{1, 44, &source}, middle{84, 67, &source}, right{172, 67, &source};
    std::array<Ruler*, 3> rulers{&left, &middle, &right};
    std::array<Object*, 3> tops{&left.container, &middle.container, &right.container};
    Page page{{}};
};

double microseconds(const auto& work) {
    const auto begin = std::chrono::steady_clock::now();
    work();
    return std::chrono::duration<double, std::micro>(std::chrono::steady_clock::now() - begin).count();
}

double median(std::vector<double> values) {
    const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::nth_element(values.begin(), middle, values.end());
    return *middle;
}

void drawThreeScales(benchmark::State& state) {
    Scene scene;
    scene.magnify(static_cast<float>(state.range(0)));
    scene.draw();
    if (std::count(scene.pixels.begin(), scene.pixels.end(), 0xFFFFFFFF) < 500)
        state.SkipWithError("the scales are not in the picture");
    std::vector<double> scales, fills;
    for (auto _ : state) {
        scales.push_back(microseconds([&] { scene.draw(); }));
        fills.push_back(microseconds([&] { scene.fill(); }));
    }
    state.counters["scales_us"] = median(scales);
    state.counters["fills_us"] = median(fills);
    state.counters["ratio"] = median(scales) / median(fills);
}
BENCHMARK(drawThreeScales)->ArgName("magnification")->Arg(1)->Arg(4)->Arg(9);

}  // namespace

BENCHMARK_MAIN();
