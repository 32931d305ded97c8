// Making the nine fonts, as a build does: all texts and the base set, on one thread.
#include <benchmark/benchmark.h>

#include "tools/assetc/fontmaker.h"
#include "tools/texttable/texttable.h"

namespace {

const std::filesystem::path model = std::filesystem::path(TERN_SOURCE_DIR) / "model";

NeededCodes neededCodes() {
    NeededCodes needed = readBaseSet(model / "fonts/baseset.tsv");
    TextTable::read(model / "texts").eachCharacter([&](const Text& text, const Language&, char32_t code) {
        needed.emplace(code, text.place());
    });
    return needed;
}

void makeNineFonts(benchmark::State& state) {
    const NeededCodes needed = neededCodes();
    for (auto _ : state) {
        Rasterizer rasterizer("/usr/share/fonts/truetype");
        for (const FontSpec& spec : readFontSpecs(model / "fonts/fonts.tsv"))
            benchmark::DoNotOptimize(makeFont(rasterizer, spec, needed).atlas.data());
    }
}
BENCHMARK(makeNineFonts)->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();
