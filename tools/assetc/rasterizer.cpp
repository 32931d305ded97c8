#include "tools/assetc/rasterizer.h"

#include FT_OUTLINE_H

#include <algorithm>

#include "tools/common/inputerror.h"

namespace {

constexpr char ideographFile[] = "droid/DroidSansFallbackFull.ttf";
constexpr char signFile[] = "dejavu/DejaVuSans.ttf";
constexpr char32_t capital = U'H';
constexpr char32_t ideograph = U'国';
constexpr char32_t firstIdeograph = 0x2E80;

int roundedPixels(FT_Pos value) {
    return static_cast<int>((value + 32) >> 6);
}

// Light hinting moves outlines vertically only, so advances stay those of the design, rounded to pixels.
constexpr FT_Int32 hinted = FT_LOAD_TARGET_LIGHT;

}  // namespace

Rasterizer::Rasterizer(const std::filesystem::path& fontFolder) : folder_(fontFolder) {
    if (FT_Init_FreeType(&library_)) throw InputError(fontFolder, 0, "FreeType could not be started");
}

Rasterizer::~Rasterizer() {
    FT_Done_FreeType(library_);
}

FT_Face Rasterizer::open(const std::string& file) {
    FT_Face& face = faces_[file];
    if (!face && FT_New_Face(library_, (folder_ / file).c_str(), 0, &face))
        throw InputError(folder_ / file, 0,
                         "this font cannot be opened; scripts/bootstrap installs the packages that hold it");
    return face;
}

void Rasterizer::use(const FontSpec& spec) {
    spec_ = spec;
    letters_ = source(spec.face, spec.size, capital);
    ideographs_ = source(ideographFile, spec.ideographSize, ideograph);
    ideographs_.bold = spec.boldIdeographs;
    signs_ = source(signFile, (spec.size * 2 + 1) / 3, capital);

    FT_Load_Char(letters_.face, capital, hinted);
    capitalHeight_ = roundedPixels(letters_.face->glyph->metrics.height);
}

Rasterizer::Source Rasterizer::source(const std::string& file, int size, char32_t guide) {
    Source result;
    result.face = open(file);
    FT_Set_Pixel_Sizes(result.face, 0, static_cast<FT_UInt>(size));
    if (FT_Load_Char(result.face, guide, hinted))
        throw InputError(folder_ / file, 0, "the font lacks its guide character");
    const FT_Glyph_Metrics& metrics = result.face->glyph->metrics;
    // In 26.6 units: the guide's middle lies on the line's middle, half a pixel goes down, where accents need it.
    const FT_Pos middleAboveBaseline = metrics.horiBearingY - metrics.height / 2;
    result.baseline = static_cast<int>((spec_.lineHeight * 32 + middleAboveBaseline + 32) >> 6);
    return result;
}

const Rasterizer::Source* Rasterizer::sourceOf(char32_t code, FT_UInt& index) const {
    const bool eastern = code >= firstIdeograph;
    for (const Source* candidate : {&letters_, eastern ? &ideographs_ : &signs_, eastern ? &signs_ : &ideographs_})
        if ((index = FT_Get_Char_Index(candidate->face, code)) != 0) return candidate;
    return nullptr;
}

std::optional<Glyph> Rasterizer::glyph(char32_t code) {
    FT_UInt index = 0;
    const Source* from = sourceOf(code, index);
    if (!from) return std::nullopt;
    if (FT_Load_Glyph(from->face, index, hinted)) return std::nullopt;
    const FT_GlyphSlot slot = from->face->glyph;
    if (from->bold) FT_Outline_Embolden(&slot->outline, spec_.ideographSize * 64 / 32);
    if (FT_Render_Glyph(slot, FT_RENDER_MODE_NORMAL)) return std::nullopt;

    Glyph glyph;
    glyph.code = code;
    glyph.advance = roundedPixels(slot->advance.x);
    glyph.bearing = slot->bitmap_left;
    glyph.top = from->baseline - slot->bitmap_top;
    glyph.width = static_cast<int>(slot->bitmap.width);
    glyph.height = static_cast<int>(slot->bitmap.rows);
    for (int y = 0; y < glyph.height; ++y) {
        const unsigned char* row = slot->bitmap.buffer + y * slot->bitmap.pitch;
        glyph.coverage.insert(glyph.coverage.end(), row, row + glyph.width);
    }
    return glyph;
}

Glyph Rasterizer::replacement() {
    Glyph box;
    const int line = std::max(1, spec_.size / 16);
    box.width = std::max(4, spec_.size * 2 / 5);
    box.height = capitalHeight_;
    box.bearing = line;
    box.advance = box.width + 2 * line;
    box.top = letters_.baseline - capitalHeight_;
    for (int y = 0; y < box.height; ++y)
        for (int x = 0; x < box.width; ++x) {
            const bool edge = x < line || y < line || x >= box.width - line || y >= box.height - line;
            box.coverage.push_back(edge ? 255 : 0);
        }
    return box;
}
