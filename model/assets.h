#pragma once

#include "embedded-gui-engine/image.h"
#include "embedded-gui-engine/pregeneratedfont.h"

/// The built-in fonts and images: constant data that the build makes from model/fonts and model/icons.
namespace Assets {

inline constexpr int fontCount = 9;
inline constexpr int imageCount = 71;

/// All records in one block: the images lie directly behind the fonts.
struct Records {
    Engine::FontRecord fonts[fontCount];
    Engine::Image images[imageCount];
};
static_assert(sizeof(void*) != 4 || sizeof(Records) == fontCount * 64 + imageCount * 20);

extern const Records records;

/// The font objects that all widgets share, largest line first; see model/fonts/fonts.tsv. Their selected glyph is
/// their only state.
extern Engine::PreGeneratedFont fonts[fontCount];

}  // namespace Assets
