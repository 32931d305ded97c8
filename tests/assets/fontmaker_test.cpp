// Making fonts: what is refused, and that the same input gives the same bytes.
#include "tools/assetc/fontmaker.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "scratchfolder.h"
#include "tools/assetc/assetwriter.h"
#include "tools/assetc/iconlist.h"

using testing::HasSubstr;

namespace {

const std::filesystem::path model = std::filesystem::path(TERN_SOURCE_DIR) / "model";

FontData smallFont(const NeededCodes& needed) {
    Rasterizer rasterizer("/usr/share/fonts/truetype");
    return makeFont(rasterizer, readFontSpecs(model / "fonts/fonts.tsv").at(3), needed);
}

constexpr char iconHead[] = "index\tname\tfile\tformat\twidth\theight\tmeaning\n";

}  // namespace

TEST(FontMaker, NamesTheTextThatNeedsWhatNoFaceHas) {
    const std::string error = errorOf([] {
        smallFont({{U'A', ""}, {char32_t{0x0E01}, "menu.tsv:7: key 12 'back', German"}});
    });
    EXPECT_THAT(error, HasSubstr("menu.tsv:7: key 12 'back', German"));
    EXPECT_THAT(error, HasSubstr("U+0E01"));
    EXPECT_THAT(error, HasSubstr("font 3"));
    EXPECT_THAT(errorOf([] { smallFont({{char32_t{0xFFE5}, "here"}}); }), HasSubstr("above the range"));
}

TEST(FontMaker, TakesIdeographsAndSignsFromOtherFaces) {
    const FontData font = smallFont({{U' ', ""}, {U'A', ""}, {U'⌫', ""}, {U'焦', ""}});
    EXPECT_EQ(font.codes, (std::vector<std::uint16_t>{0, 10, 32, 'A', 0x232B, 0x7126}));
    EXPECT_GT(font.widths[5], font.widths[3]);
}

TEST(AssetWriter, SameInputGivesSameBytes) {
    const ScratchFolder first, second;
    const auto icons = readIconList(model / "icons/icons.tsv");
    for (const auto* folder : {&first, &second})
        writeAssets(folder->path(), {smallFont(readBaseSet(model / "fonts/baseset.tsv"))},
                    {drawIcon(icons.front()), drawIcon(icons.back())});
    for (const char* name :
         {"model/assets/assets.bin", "model/assets/assets.S", "model/assets/records.cpp", "model/images.h"})
        EXPECT_EQ(first.read(name), second.read(name)) << name;
}

TEST(AssetWriter, NamesImagesForCpp) {
    EXPECT_EQ(identifierOf("link-search-a"), "linkSearchA");
    EXPECT_EQ(identifierOf("delete"), "delete_");
}

TEST(IconList, RefusesWhatTheTableGetsWrong) {
    const ScratchFolder folder;
    const auto list = [&](const std::string& rows) {
        folder.write("icons.tsv", iconHead + rows);
        return errorOf([&] { readIconList(folder.path() / "icons.tsv"); });
    };
    EXPECT_THAT(list("1\ta\ta.svg\tMask8\t2\t2\t\n"), HasSubstr("should have the index 0"));
    EXPECT_THAT(list("0\ta\ta.svg\tMask8\t2\t2\t\n1\ta\ta.svg\tMask8\t2\t2\t\n"), HasSubstr("used twice"));
    EXPECT_THAT(list("0\ta\ta.svg\tMask9\t2\t2\t\n"), HasSubstr("use Mask8 or Argb8888"));
    EXPECT_THAT(list("0\ta\ta.svg\tMask8\t2\tx\t\n"), HasSubstr("icons.tsv:2"));
    EXPECT_THAT(list("0\ta\ta.svg\tMask8\n"), HasSubstr("4 cells"));
}

TEST(IconList, RefusesADrawingOfAnotherSize) {
    const ScratchFolder folder;
    folder.write("a.svg", "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"4\" height=\"4\"/>");
    IconEntry icon{"a", folder.path() / "a.svg", PixelFormat::Mask8, 4, 5, ""};
    EXPECT_THAT(errorOf([&] { drawIcon(icon); }), HasSubstr("the icon table says 4 x 5"));
    icon.file = folder.path() / "b.svg";
    EXPECT_THAT(errorOf([&] { drawIcon(icon); }), HasSubstr("cannot be read"));
}
