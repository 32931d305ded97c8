// Makes the built-in fonts and images as constant data, or a picture of them.
#include <CLI/CLI.hpp>
#include <atomic>
#include <cstdio>
#include <exception>
#include <future>

#include "tools/assetc/assetwriter.h"
#include "tools/assetc/fontmaker.h"
#include "tools/assetc/fontspec.h"
#include "tools/assetc/iconlist.h"
#include "tools/assetc/rasterizer.h"
#include "tools/assetc/sheet.h"
#include "tools/texttable/texttable.h"

namespace {

struct Inputs {
    std::filesystem::path model;
    std::filesystem::path fontFolder = "/usr/share/fonts/truetype";
};

// Each code that a text needs, with the first text that needs it.
void addCodesOfTexts(NeededCodes& needed, const TextTable& texts) {
    texts.eachCharacter([&](const Text& text, const Language& language, char32_t code) {
        needed.emplace(
            code, text.place() + ": key " + std::to_string(text.key) + " '" + text.name + "', " + language.english);
    });
}

std::vector<FontData> makeFonts(const Inputs& inputs) {
    NeededCodes needed = readBaseSet(inputs.model / "fonts/baseset.tsv");
    addCodesOfTexts(needed, TextTable::read(inputs.model / "texts"));
    const std::vector<FontSpec> specs = readFontSpecs(inputs.model / "fonts/fonts.tsv");
    std::vector<FontData> fonts(specs.size());
    std::atomic<std::size_t> next = 0;
    const auto work = [&] {
        Rasterizer rasterizer(inputs.fontFolder);
        for (std::size_t i = next++; i < specs.size(); i = next++) fonts[i] = makeFont(rasterizer, specs[i], needed);
    };
    // A FreeType library serves one thread, so each worker has its own.
    std::future<void> helper = std::async(std::launch::async, work);
    work();
    helper.get();
    return fonts;
}

std::vector<ImageData> makeImages(const Inputs& inputs) {
    std::vector<ImageData> images;
    for (const IconEntry& icon : readIconList(inputs.model / "icons/icons.tsv")) images.push_back(drawIcon(icon));
    return images;
}

}  // namespace

int main(int argc, char** argv) try {
    CLI::App app("Makes the built-in fonts and images of the model.");
    Inputs inputs;
    std::filesystem::path out;
    app.add_option("--model", inputs.model, "folder with fonts/, icons/ and texts/")->required();
    app.add_option("--font-folder", inputs.fontFolder, "folder of the outline fonts");
    app.require_subcommand(1);
    CLI::App* data = app.add_subcommand("data", "write the constant data");
    data->add_option("folder", out, "folder of generated sources")->required();
    CLI::App* sheet = app.add_subcommand("sheet", "write fonts.png and icons.png, pictures to look at");
    sheet->add_option("folder", out, "folder of the pictures")->required();
    CLI11_PARSE(app, argc, argv);

    const auto fonts = makeFonts(inputs);
    const auto images = makeImages(inputs);
    if (data->parsed()) writeAssets(out, fonts, images);
    if (sheet->parsed()) writeSheets(out, fonts, images);
    return 0;
} catch (const std::exception& error) {
    std::fprintf(stderr, "assetc: %s\n", error.what());
    return 1;
}
