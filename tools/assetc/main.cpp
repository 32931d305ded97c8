// Makes the built-in fonts and images as constant data, or a picture of them.
#include <CLI/CLI.hpp>
#include <atomic>
#include <cstdio>
#include <exception>
#include <future>

#include "tools/assetc/assetwriter.h"
#include "tools/assetc/canvas.h"
#include "tools/assetc/fontmaker.h"
#include "tools/assetc/fontspec.h"
#include "tools/assetc/iconlist.h"
#include "tools/assetc/rasterizer.h"
#include "tools/assetc/sheet.h"
#include "tools/common/commandline.h"
#include "tools/common/inputerror.h"
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

// A picture of the drawing's own size, on black.
void writePicture(const IconEntry& drawing, const std::filesystem::path& file) {
    Canvas canvas(drawing.width, drawing.height, 0);
    canvas.draw(drawIcon(drawing), 0, 0, 1, 0);
    canvas.writePng(file);
}

}  // namespace

int main(int argc, char** argv) try {
    CLI::App app("Makes the built-in fonts and images of the model.", "assetc");
    Inputs inputs;
    std::filesystem::path out;
    app.add_option("--model", inputs.model, "folder with fonts/, icons/ and texts/");
    app.add_option("--font-folder", inputs.fontFolder, "folder of the outline fonts");
    app.require_subcommand(1);
    CLI::App* data = app.add_subcommand("data", "write the constant data");
    data->add_option("folder", out, "folder of generated sources")->required();
    CLI::App* sheet = app.add_subcommand("sheet", "write fonts.png and icons.png, pictures to look at");
    sheet->add_option("folder", out, "folder of the pictures")->required();
    IconEntry drawing = {.name = "picture", .file = {}, .format = PixelFormat::Argb8888, .meaning = {}};
    CLI::App* picture = app.add_subcommand("picture", "write a vector drawing as a PNG file");
    picture->add_option("drawing", drawing.file, "the SVG file")->required();
    picture->add_option("width", drawing.width, "of the drawing, pixels")->required();
    picture->add_option("height", drawing.height, "of the drawing, pixels")->required();
    picture->add_option("file", out, "the PNG file")->required();
    if (const auto status = readCommandLine(app, argc, argv)) return *status;

    if (picture->parsed()) {
        writePicture(drawing, out);
        return 0;
    }
    if (inputs.model.empty()) throw InputError("--model", 0, "missing: name the folder with fonts/, icons/ and texts/");

    const auto fonts = makeFonts(inputs);
    const auto images = makeImages(inputs);
    if (data->parsed()) writeAssets(out, fonts, images);
    if (sheet->parsed()) writeSheets(out, fonts, images);
    return 0;
} catch (const std::exception& error) {
    std::fprintf(stderr, "assetc: %s\n", error.what());
    return 1;
}
