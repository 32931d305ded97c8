#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "fixture.h"

namespace Modelc {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

TEST(Lowering, MakesAConditionOnAPropertyIntoComparisonsAChoiceAndAModifier) {
    const SoundModel c(
        "page P { Label title { foreground: choose { VarCamState == Recording -> #ff8080 else -> #a5a5a5 } } }");
    EXPECT_THAT(c.elements("P", "numberCompares"),
                ElementsAre("Engine::Compare<int>(&VarCamState, 1, Engine::CompareOperator::Equal)"));
    EXPECT_THAT(c.elements("P", "colorChoices"),
                ElementsAre("Engine::ConditionalValue<Engine::Color>(part(P::colorBranches, 0, 2))"));
    EXPECT_THAT(c.elements("P", "setForegroundModifiers"),
                ElementsAre("Engine::Modifier<Engine::Widget, Engine::Color>(&P::labels[0], "
                            "&Engine::Widget::setForeground, &P::colorChoices[0])"));
    EXPECT_THAT(c.observersOf("VarCamState"), ElementsAre("P.title.foreground"));
}

TEST(Lowering, SharesWhatHasNoStateAndLowersARuleOnce) {
    const SoundModel c(
        "rule state: color = choose { VarFlag -> #111111 else -> #222222 }\n"
        "page P { Label { foreground: state } Label { foreground: state } Label { visible: VarNumber > 2 } Label { "
        "visible: VarNumber > 2 } }\n"
        "page Q { Label { foreground: state } }");
    EXPECT_EQ(c.elements("SharedRules", "colorChoices").size(), 1u);
    EXPECT_TRUE(c.elements("P", "colorChoices").empty());
    EXPECT_EQ(c.elements("P", "flagChoices").size(), 1u);
    EXPECT_EQ(c.observersOf("VarFlag").size(), 3u);
}

TEST(Lowering, ConjunctionsStopAtTheFirstFalseOperandAndFloatsAreNotTurnedRound) {
    const SoundModel c("page P { Label { visible: VarFlag && VarFloat < 1.5 } }");
    // not VarFlag -> false; not (VarFloat < 1.5), by its value and not by >=, since a NaN is neither; else true
    EXPECT_THAT(c.elements("P", "flagCompares"),
                ElementsAre("Engine::Compare<bool>(&VarFlag, false)", HasSubstr("flagChoices[0], false)")));
    EXPECT_THAT(c.elements("P", "floatCompares"),
                ElementsAre("Engine::Compare<float>(&VarFloat, 1.5f, Engine::CompareOperator::Less)"));
}

TEST(Lowering, KeepsTheDeclaredOrderOfReactionsAcrossWidgets) {
    const SoundModel c(
        "page P { on Event_KeyPressed { back } Group g { rect: 0, 0, 80, 33; on Event_TouchTouched { fire Event_Other "
        "} } "
        "on Event_KeyPressed if VarFlag { first { back if VarOther; navigate P } } }");
    const auto reactions = c.elements("P", "reactions");
    ASSERT_EQ(reactions.size(), 3u);
    EXPECT_THAT(reactions[1], HasSubstr("&P::groups[0], \"P.g.reaction1\""));
    EXPECT_THAT(c.elements("P", "reactionWidgets"), ElementsAre("nullptr", "&P::groups[0]", "nullptr"));
    EXPECT_THAT(c.observersOf("VarFlag"), ElementsAre("P.reaction2.enabled"));
    EXPECT_THAT(c.observersOf("VarOther"), ElementsAre("P.reaction2.back.enabled"));
}

TEST(Lowering, TemplatesRepetitionsAndPastedNamesLeaveNoTrace) {
    const SoundModel c(
        "template Row(label: text, index: number, opens: page = none) {\n"
        "  Group { rect: 0, index * 61, 240, 61; Label text { text: label } if opens != none { Icon { image: "
        "Icons.lock } }\n"
        "          on touch { navigate opens } slot } }\n"
        "page P { Row first { label: Texts.rec; index: 0; opens: P } Row(Texts.rec, 1) { Label extra { x: 3 } }\n"
        "  for Axis in Focus, Iris { Label l{Axis} { visible: !Var{Axis}Offset } } }\n"
        "export extra = P.extra");
    EXPECT_EQ(c.elements("P", "groups").size(), 2u);
    EXPECT_EQ(c.elements("P", "icons").size(), 1u);
    EXPECT_EQ(c.elements("P", "navigates").size(), 1u);
    EXPECT_THAT(c.elements("P", "setEnabledInverses"),
                ElementsAre(HasSubstr("&VarFocusOffset"), HasSubstr("&VarIrisOffset")));
    EXPECT_THAT(c.lowered.exports.front().addresses, ElementsAre("&P::labels[2]"));
}

TEST(Lowering, LabelsFollowValuesThroughTemplatesOfTheLanguage) {
    const SoundModel c(
        "page P { Label a { text: Texts.slot(VarName, VarNumber as \"%02i\") } Label b { text: Texts.rec } Label c { "
        "text: VarCamState } }");
    EXPECT_THAT(c.elements("P", "concats"),
                ElementsAre("Engine::ConcatModifier(part(P::partLists, 0, 2), Engine::TextId{2}, &P::labels[0])",
                            "Engine::ConcatModifier(part(P::partLists, 2, 1), Engine::TextId{1}, &P::labels[2])"));
    EXPECT_THAT(c.observersOf("VarLanguage"), ElementsAre("P.a.text", "P.b.text", "P.c.text", "P.c.text"));
    EXPECT_THAT(c.observersOf("VarName"), ElementsAre("P.a.text"));
}

TEST(Lowering, AnEditTableGivesItsReactionsWithTheResetFirst) {
    const SoundModel c(
        "container Settings { }\n"
        "edits VarEdit in Settings { 3 name: enum VarCamState from VarLanguage }\n"
        "page P { on Event_KeyPressed { edit name } }");
    EXPECT_THAT(c.elements("Settings", "setNumber"),
                ElementsAre("Engine::VarSetToValue<Engine::ScalarVariable<int>>(0, &VarEdit)"));
    EXPECT_THAT(c.elements("Settings", "reactions")[0], HasSubstr("groupMatchers[0]"));
    EXPECT_THAT(c.elements("Settings", "copyEnum"),
                ElementsAre("Engine::VarSetToVariable<Engine::EnumVariable>(&VarLanguage, &VarCamState)"));
    EXPECT_THAT(c.elements("P", "fires"), ElementsAre("Engine::FireEvent(194u)"));
}

}  // namespace
}  // namespace Modelc
