#include "tools/assetc/assetwriter.h"

#include <cctype>
#include <sstream>

#include "tools/common/textfile.h"

namespace {

constexpr char marker[] = "// Made by assetc from model/fonts and model/icons. Do not edit.\n";

// Collects the bytes of all tables and atlases, and the assembler lines that give each a symbol.
class Blob {
  public:
    explicit Blob(std::filesystem::path file) : file_(std::move(file)) {}

    template <typename T>
    void add(const std::string& symbol, const std::vector<T>& values) {
        bytes_.resize((bytes_.size() + 3) / 4 * 4);
        lines_ << "    .globl " << symbol << "\n    .balign 4\n"
               << symbol << ":\n    .incbin \"" << file_.string() << "\", " << bytes_.size() << ", "
               << values.size() * sizeof(T) << "\n    .size " << symbol << ", . - " << symbol << "\n    .type "
               << symbol << ", %object\n";
        if constexpr (sizeof(T) == 1)
            bytes_.append(values.begin(), values.end());
        else
            for (const T value : values) append(static_cast<std::uint32_t>(value), sizeof(T));
    }

    const std::string& bytes() const { return bytes_; }
    std::string assembly() const {
        return std::string(marker) + "    .section .rodata\n" + lines_.str() +
               "    .balign 4\n    .section .note.GNU-stack, \"\", %progbits\n";
    }

  private:
    // The target is little-endian, whatever the machine is that this runs on.
    void append(std::uint32_t value, std::size_t size) {
        for (std::size_t i = 0; i < size; ++i) bytes_ += static_cast<char>(value >> (8 * i));
    }

    std::filesystem::path file_;
    std::string bytes_;
    std::ostringstream lines_;
};

struct Table {
    const char* name;
    const char* type;
};

// In the order in which they lie in memory; the atlas follows.
constexpr Table fontTables[] = {{"Codes", "std::uint16_t"},    {"Bearings", "std::int16_t"},
                                {"Advances", "std::uint16_t"}, {"Heights", "std::uint16_t"},
                                {"Widths", "std::uint16_t"},   {"Ys", "std::int16_t"},
                                {"Xs", "std::uint32_t"},       {"Atlas", "std::uint8_t"}};

std::string fontSymbol(int index, const char* table) {
    return "assetFont" + std::to_string(index) + table;
}
std::string imageSymbol(std::size_t index) {
    return "assetImage" + std::to_string(index);
}

void addFont(Blob& blob, const FontData& font) {
    const auto add = [&](const char* table, const auto& values) {
        blob.add(fontSymbol(font.spec.index, table), values);
    };
    add("Codes", font.codes);
    add("Bearings", font.bearings);
    add("Advances", font.advances);
    add("Heights", font.heights);
    add("Widths", font.widths);
    add("Ys", font.ys);
    add("Xs", font.xs);
    add("Atlas", font.atlas);
}

void declareSymbols(std::ostream& out, const std::vector<FontData>& fonts, std::size_t images) {
    out << "extern \"C\" {\n";
    for (const FontData& font : fonts)
        for (const Table& table : fontTables)
            out << "extern const " << table.type << " " << fontSymbol(font.spec.index, table.name) << "[];\n";
    for (std::size_t i = 0; i < images; ++i) out << "extern const std::uint8_t " << imageSymbol(i) << "[];\n";
    out << "}\n\n";
}

void writeImageRecord(std::ostream& out, std::size_t size, int width, int height, PixelFormat format,
                      const std::string& symbol) {
    out << "{" << size << ", " << width << ", " << height << ", " << static_cast<std::uint32_t>(format) << ", "
        << symbol << "}";
}

void writeFontRecord(std::ostream& out, const FontData& font) {
    const auto symbol = [&](const char* table) { return fontSymbol(font.spec.index, table); };
    out << "        {";
    writeImageRecord(out, font.atlas.size(), font.atlasWidth, font.atlasHeight, PixelFormat::Mask8, symbol("Atlas"));
    out << ", " << font.glyphCount() << ", " << symbol("Xs") << ", " << symbol("Ys") << ", " << symbol("Widths") << ", "
        << symbol("Heights") << ", " << symbol("Advances") << ", " << symbol("Bearings") << ", " << fontCodeLimit
        << ", " << symbol("Codes") << ", " << font.spec.baseline << ", " << font.spec.digitWidth << ", "
        << font.spec.lineHeight << ", 0},\n";
}

std::string recordsSource(const std::vector<FontData>& fonts, const std::vector<ImageData>& images) {
    std::ostringstream out;
    out << marker << "#include \"model/assets.h\"\n\n";
    declareSymbols(out, fonts, images.size());
    out << "constexpr Assets::Records Assets::records = {\n    {\n";
    for (const FontData& font : fonts) writeFontRecord(out, font);
    out << "    },\n    {\n";
    for (std::size_t i = 0; i < images.size(); ++i) {
        out << "        ";
        writeImageRecord(out, images[i].pixels.size(), images[i].width, images[i].height, images[i].format,
                         imageSymbol(i));
        out << ",\n";
    }
    out << "    },\n};\n\nconstinit Engine::PreGeneratedFont Assets::fonts[fontCount] = {\n";
    for (const FontData& font : fonts)
        out << "    Engine::PreGeneratedFont(records.fonts[" << font.spec.index << "]),\n";
    out << "};\n";
    return out.str();
}

std::string imageNames(const std::vector<ImageData>& images) {
    std::ostringstream out;
    out << marker << "#pragma once\n\n#include \"model/assets.h\"\n\n"
        << "/// The built-in images by name. Mask images take the painter's foreground.\nnamespace Images {\n\n";
    for (std::size_t i = 0; i < images.size(); ++i)
        out << "inline constexpr const Engine::Image& " << identifierOf(images[i].name) << " = Assets::records.images["
            << i << "];  ///< " << images[i].width << " x " << images[i].height << "\n";
    out << "\n}  // namespace Images\n";
    return out.str();
}

}  // namespace

std::string identifierOf(const std::string& imageName) {
    std::string name;
    bool upper = false;
    for (const char c : imageName) {
        if (c == '-') {
            upper = true;
            continue;
        }
        name += upper ? static_cast<char>(std::toupper(static_cast<unsigned char>(c))) : c;
        upper = false;
    }
    return name == "delete" ? name + "_" : name;
}

void writeAssets(const std::filesystem::path& folder, const std::vector<FontData>& fonts,
                 const std::vector<ImageData>& images) {
    const auto assets = folder / "model/assets";
    Blob blob("assets.bin");
    for (const FontData& font : fonts) addFont(blob, font);
    for (std::size_t i = 0; i < images.size(); ++i) blob.add(imageSymbol(i), images[i].pixels);
    writeIfChanged(assets / "assets.bin", blob.bytes());
    writeIfChanged(assets / "assets.S", blob.assembly());
    writeIfChanged(assets / "records.cpp", recordsSource(fonts, images));
    writeIfChanged(folder / "model/images.h", imageNames(images));
}
