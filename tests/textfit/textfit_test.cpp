#include "tools/textfit/textfit.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>

#include "embedded-gui-engine/lineborder.h"
#include "testfont.h"

namespace {

using Engine::Label;
using Engine::TextId;
using Engine::WidgetParams;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using TextFit::Fault;
using TextFit::Spot;
using TextTest::TestFont;

constexpr std::array<const char*, 6> english{"", "Unit", "Lens data", "one two", "Focus", "Iris"};
constexpr std::array<const char*, 6> german{"", "Einheit", "Objektivdaten", "eins zwei", "Sch\xC3\xA4rfe", ""};
constexpr std::array<const char*, 6> chinese{"", "\xE5\x8D\x95\xE5\x85\x83", "\xE9\x95\x9C\xE5\xA4\xB4", "", "", ""};
const std::array<TextFit::Language, 3> languages{{{"English", english}, {"German", german}, {"Chinese", chinese}}};

std::map<std::uint16_t, std::uint16_t> withForeignCharacters() {
    auto advances = TestFont::monospaced(5);
    for (const int code : {0xE4, 0x5355, 0x5143, 0x955C, 0x5934}) advances[static_cast<std::uint16_t>(code)] = 10;
    return advances;
}

class TextFitTest : public testing::Test {
  protected:
    WidgetParams params(std::int16_t width, std::int16_t height = 10) {
        WidgetParams result{.width = width, .height = height};
        result.font = font.font();
        return result;
    }

    /// "language:fault", the faults numbered as in Fault.
    static std::vector<std::string> faults(const Spot& spot, std::initializer_list<TextId> keys) {
        std::vector<std::string> result;
        for (const auto& finding : TextFit::measure(spot, languages, std::vector<TextId>(keys)))
            result.push_back(finding.language + ":" + std::to_string(static_cast<int>(finding.fault)) + ":" +
                             std::to_string(finding.needed) + ">" + std::to_string(finding.available));
        return result;
    }

    std::vector<std::string> faults(const Label& label, std::initializer_list<TextId> keys) {
        return faults(TextFit::spotOf(label, "page: label"), keys);
    }

    TestFont font{withForeignCharacters()};
};

TEST_F(TextFitTest, EveryLanguageIsMeasured) {
    EXPECT_THAT(faults(Label(params(35)), {TextId{1}}), IsEmpty());
    EXPECT_THAT(faults(Label(params(34)), {TextId{1}}), ElementsAre("German:0:35>34"));
    EXPECT_THAT(faults(Label(params(19)), {TextId{1}}),
                ElementsAre("English:0:20>19", "German:0:35>19", "Chinese:0:20>19"));
}

TEST_F(TextFitTest, BordersAndPaddingTakeTheirShare) {
    Engine::LineBorder border(0xFFFFFFFF, 0, 2);
    WidgetParams framed = params(43, 30);
    framed.border = &border;
    framed.padding = 2;
    EXPECT_THAT(faults(Label(framed), {TextId{1}}), IsEmpty());
    framed.width = 42;
    EXPECT_THAT(faults(Label(framed), {TextId{1}}), ElementsAre("German:0:35>34"));
}

TEST_F(TextFitTest, WantedOverflowsAreNoFaults) {
    EXPECT_THAT(faults(Label(params(20), {}, nullptr, Engine::Ellipsis::End), {TextId{1}}), IsEmpty());
    Spot scrolling = TextFit::spotOf(Label(params(20)), "page: label");
    scrolling.overflow = Spot::Overflow::Wanted;
    EXPECT_THAT(faults(scrolling, {TextId{1}}), IsEmpty());
}

TEST_F(TextFitTest, WrappedTextsMustFitInHeightAndKeepTheirWords) {
    WidgetParams wrapped = params(25, 20);
    wrapped.wrap = true;
    EXPECT_THAT(faults(Label(wrapped), {TextId{3}}), IsEmpty());
    EXPECT_THAT(faults(Label(wrapped), {TextId{2}}), ElementsAre("German:1:29>20", "German:2:65>25"));
    wrapped.height = 18;
    EXPECT_THAT(faults(Label(wrapped), {TextId{3}}), ElementsAre("English:1:19>18", "German:1:19>18"));
    wrapped.width = 10;
    wrapped.height = 40;
    EXPECT_THAT(faults(Label(wrapped), {TextId{1}}), ElementsAre("English:2:20>10", "German:2:35>10"))
        << "Chinese breaks anywhere";
    const Label growing(wrapped, {}, nullptr, Engine::Ellipsis::None, Engine::CaseMode::AsWritten,
                        Label::AutoHeight::On);
    EXPECT_THAT(faults(growing, {TextId{3}}), ElementsAre("English:2:15>10", "German:2:20>10"));
}

TEST_F(TextFitTest, InkCountsInHeight) {
    EXPECT_THAT(faults(Label(params(50, 9)), {TextId{1}}), IsEmpty());
    EXPECT_THAT(faults(Label(params(50, 8)), {TextId{1}}),
                ElementsAre("English:1:9>8", "German:1:9>8", "Chinese:1:9>8"));
}

TEST_F(TextFitTest, TextsAreMeasuredInTheirCase) {
    auto advances = TestFont::monospaced(5);
    advances['U'] = 9;
    TestFont wideCapitals(advances);
    WidgetParams small = params(20);
    small.font = wideCapitals.font();
    const auto faultsOf = [](const Label& label) {
        return TextFit::measureText(TextFit::spotOf(label, "label"), "English", TextId{4}, "menu").size();
    };
    EXPECT_EQ(faultsOf(Label(small)), 0u);
    EXPECT_EQ(faultsOf(Label(small, {}, nullptr, Engine::Ellipsis::None, Engine::CaseMode::Upper)), 1u);
}

TEST_F(TextFitTest, CharactersWithoutGlyphAndBrokenBytesAreTold) {
    TestFont ascii(TestFont::monospaced(5));
    WidgetParams plain = params(200);
    plain.font = ascii.font();
    EXPECT_THAT(faults(Label(plain), {TextId{4}}), ElementsAre("German:3:228>0"));
    const auto broken = TextFit::measureText(TextFit::spotOf(Label(plain), "page: label"), "Spanish", TextId{9},
                                             "ab\xE9"
                                             "c");
    ASSERT_EQ(broken.size(), 1u);
    EXPECT_EQ(broken[0].fault, Fault::NotUtf8);
    EXPECT_EQ(broken[0].needed, 2);
}

TEST_F(TextFitTest, FindingsSpeakToAPerson) {
    const auto findings =
        TextFit::measure(TextFit::spotOf(Label(params(30)), "Menu_Setup: title"), languages, std::array{TextId{1}});
    ASSERT_EQ(findings.size(), 1u);
    EXPECT_EQ(TextFit::describe(findings[0]),
              "Menu_Setup: title: German text 1 \"Einheit\" is 35 pixels wide where 30 fit: shorten it, widen the "
              "label, let it wrap or give it an ellipsis");
    TextFit::Finding glyph = findings[0];
    glyph.fault = Fault::NoGlyph;
    glyph.needed = 0xE4;
    EXPECT_THAT(TextFit::describe(glyph), HasSubstr("U+00E4"));
}

}  // namespace
