#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "fixture.h"

namespace Modelc {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

TEST(Scales, ContainersHoldElementsWhoseTemplatesAreTheirChildren) {
    const SoundModel c(
        "page P { Label before { } ScaleContainer focus { rect: 0, 34, 67, 332\n"
        "  table: VarRuler.Rows; follow: centred; magnification: 4.0; reversed: VarFlag; position: VarFloat\n"
        "  visibleStart: VarFloat\n"
        "  Scale ruler { subLabelPlace: follows; Group majorTick { layout: fixed } Label mainLabel { } }\n"
        "  RangeIndicator { from: 0.25; to: VarFloat; visible: VarOther; Group band { layout: fixed } }\n"
        "  MarkerIndicator { value: VarFloat; Icon marker { y: -4 } Icon below { } }\n"
        "  ObjectIndicator { table: VarRuler.Rows; span: 40; Icon object { } } } }");
    EXPECT_THAT(
        c.elements("P", "scaleContainers"),
        ElementsAre(AllOf(
            HasSubstr("Engine::ScaleContainer::Params{.position = 0.0f, .elements = part(P::elementLists, 0, 4), "
                      ".follow = Engine::ScaleContainer::Follow::Centred, .magnification = 4.0f"),
            HasSubstr(
                "Direction::Down, .table = &P::tableSources[0], .visibleStart = &VarFloat, .visibleEnd = nullptr"),
            HasSubstr("part(P::childLists, "))));
    EXPECT_THAT(c.elements("P", "childLists"),
                ElementsAre("&P::groups[0]", "&P::labels[1]", "&P::groups[1]", "&P::icons[0]", "&P::icons[1]",
                            "&P::icons[2]", "&P::labels[0]", "&P::scaleContainers[0]"));
    EXPECT_THAT(c.elements("P", "elementLists"),
                ElementsAre("&P::scales[0]", "&P::ranges[0]", "&P::markers[0]", "&P::objectIndicators[0]"));
    EXPECT_THAT(c.elements("P", "scales"),
                ElementsAre("Engine::Scale(&P::scaleContainers[0], {.majorTick = &P::groups[0], .mainLabel = "
                            "&P::labels[1]}, Engine::Scale::SubLabel::FollowsMainLabel, true)"));
    EXPECT_THAT(c.elements("P", "ranges"),
                ElementsAre("Engine::RangeIndicator(&P::scaleContainers[0], &P::groups[1], 0.25f, 0.0f, true)"));
    EXPECT_THAT(c.elements("P", "markers"),
                ElementsAre("Engine::MarkerIndicator(&P::scaleContainers[0], {.marker = &P::icons[0], .below = "
                            "&P::icons[1]}, 0.0f, true)"));
    EXPECT_THAT(c.elements("P", "objectIndicators"),
                ElementsAre("Engine::ObjectIndicator(&P::scaleContainers[0], &P::tableSources[0], &P::icons[2], 40, "
                            "true)"));
    EXPECT_EQ(c.elements("P", "tableSources").size(), 1u) << "both read the same table";
    EXPECT_THAT(c.observersOf("VarRuler.Rows"), ElementsAre("P.focus.table", "P.focus.ObjectIndicator2.table"));
    EXPECT_THAT(c.observersOf("VarFlag"), ElementsAre("P.focus.reversed"));
    EXPECT_THAT(c.elements("P", "ScaleContainerElementsetEnabledModifiers"),
                ElementsAre("Engine::Modifier<Engine::ScaleContainerElement, bool>(&P::ranges[0], "
                            "&Engine::ScaleContainerElement::setEnabled, &VarOther)"));
}

TEST(Scales, APinchReadsAndWritesOneVariableWithinLimits) {
    const SoundModel c(
        "page P { PinchScaleWidget { rect: 0, 0, 68, 332; value: VarFloat; minimum: VarFloat; maximum: 9.0 } }");
    EXPECT_THAT(c.elements("P", "pinches"), ElementsAre(HasSubstr("&VarFloat, &VarFloat, 1.0f, 9.0f)")));
    EXPECT_THAT(c.elements("P", "PinchScaleWidgetsetMinimumModifiers"),
                ElementsAre(HasSubstr("&Engine::PinchScaleWidget::setMinimum")));
    ASSERT_EQ(c.explanation.writes.size(), 1u);
    EXPECT_EQ(c.explanation.writes.front().variable, "VarFloat");
}

TEST(Scales, APlaceOnAScaleFollowsTheValueAndTheTable) {
    const SoundModel c(
        "page P { ScaleContainer s { table: VarRuler.Rows\n"
        "  RangeIndicator { from: place of VarFloat in VarRuler.Rows; Group band { layout: fixed } }\n"
        "  FixedIndicator { Group figure { layout: fixed } } } }");
    EXPECT_THAT(c.elements("P", "places"), ElementsAre("Engine::ScalePlace(&P::tableSources[0], &VarFloat)"));
    EXPECT_THAT(c.elements("P", "fixedIndicators"),
                ElementsAre("Engine::FixedIndicator(&P::scaleContainers[0], &P::groups[1], true)"));
    EXPECT_THAT(c.observersOf("VarRuler.Rows"), testing::Contains("P.s.RangeIndicator0.from"));
    EXPECT_THAT(c.observersOf("VarFloat"), ElementsAre("P.s.RangeIndicator0.from"));
}

TEST(Scales, MeasuresAreWrittenInTheirOwnForm) {
    const SoundModel c(
        "page P { Label a { text: VarFloat as metres } Label b { text: VarFloat as feet }\n"
        "  Label c { text: VarNumber as hundredths } Label d { text: Texts.slot(VarFloat as feet, VarName) } }");
    EXPECT_THAT(c.elements("P", "lengthStrings"),
                ElementsAre(HasSubstr("System::Metres, &VarFloat"), HasSubstr("System::Feet, &VarFloat"),
                            HasSubstr("System::Feet")));
    EXPECT_THAT(c.elements("P", "hundredthsStrings"), ElementsAre(HasSubstr("(&VarNumber, ")));
}

TEST(Scales, ListsOfExportsMayRepeat) {
    const SoundModel c(
        "page P { for n in 0..1 { Group a{n} { Icon in { } } Group b{n} { } } }\n"
        "export all = [for side in a, b for n in 0..1: P.{side}{n}, P.a0.in]\n"
        "export inner = [for n in 0..1: P.a{n}.in]");
    EXPECT_THAT(c.lowered.exports[0].addresses,
                ElementsAre("&P::groups[0]", "&P::groups[2]", "&P::groups[1]", "&P::groups[3]", "&P::icons[0]"));
    EXPECT_EQ(c.lowered.exports[0].type, "Engine::Widget");
    EXPECT_EQ(c.lowered.exports[1].type, "Engine::Icon");
}

}  // namespace
}  // namespace Modelc
