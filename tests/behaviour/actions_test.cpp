#include "embedded-gui-engine/actions.h"

#include <gmock/gmock.h>

#include "embedded-gui-engine/setvariablechecked.h"
#include "fakes.h"

namespace Engine {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

TEST(SetVariableChecked, LogsARefusalAndChangesNothing) {
    LogCapture log;
    FakeScalar<int> number(3, "VarNumber");
    number.refuses = true;
    EXPECT_FALSE(setVariableChecked(number, 500));
    FakeScalar<float> real(1.5F, "VarReal");
    real.refuses = true;
    EXPECT_FALSE(setVariableChecked(real, 2.25F));
    FakeBool flag(false, "VarFlag");
    flag.refuses = true;
    EXPECT_FALSE(setVariableChecked(flag, true));
    FakeString text("old", "VarText");
    text.refuses = true;
    EXPECT_FALSE(setVariableChecked(text, nullptr));
    EXPECT_THAT(
        LogCapture::lines(),
        ElementsAre("1 Could not set variable VarNumber to 500.", "1 Could not set variable VarReal to 2.250000.",
                    "1 Could not set variable VarFlag to true.", "1 Could not set variable VarText to ."));
    EXPECT_EQ(number.value(), 3);
}

TEST(SetVariableChecked, TracesTheValueWhenAsked) {
    LogCapture log;
    FakeScalar<float> real(0, "VarReal");
    FakeString text("", "VarText");
    setVariableChecked(real, 1.5F);
    EXPECT_THAT(LogCapture::lines(), IsEmpty());
    VariableTrace trace(4);
    setVariableChecked(real, 1.5F);
    setVariableChecked(text, "0123456789012345678901234567890123456789");
    EXPECT_THAT(LogCapture::lines(), ElementsAre("4 VAR(toVal) 'VarReal' = 1.500",
                                                 "4 VAR(toVal) 'VarText' = 0123456789012345678901234567890"));
    EXPECT_STREQ(text.value(), "0123456789012345678901234567890123456789") << "only the trace is cut";
}

TEST(VariableActions, WriteThroughTheCheckedWay) {
    FakeBool flag(false);
    VarSetToValue<BoolVariable> set(true, &flag);
    EXPECT_TRUE(set.execute());
    EXPECT_TRUE(flag.value());
    set.setValue(false);
    EXPECT_TRUE(flag.value()) << "a new value is for later runs";
    set.execute();
    EXPECT_FALSE(flag.value());

    FakeEnum from(2), to(0);
    EXPECT_TRUE(VarSetToVariable<EnumVariable>(&to, &from).execute());
    EXPECT_EQ(to.value(), 2);
    to.refuses = true;
    EXPECT_FALSE(VarSetToVariable<EnumVariable>(&to, &from).execute());

    EXPECT_TRUE(VarNegate(&flag).execute());
    EXPECT_TRUE(flag.value());
}

TEST(VariableActions, Step) {
    FakeScalar<int> number(10);
    VarIncrement<ScalarVariable<int>> up(&number, 5, nullptr, Action::Enabled | Action::Wrap);
    EXPECT_TRUE(up.execute());
    EXPECT_EQ(number.value(), 15);
    EXPECT_TRUE(number.wrapped);
    VarDecrement<ScalarVariable<int>> down(&number);
    EXPECT_TRUE(down.execute());
    EXPECT_EQ(number.value(), 14);
    EXPECT_FALSE(number.wrapped);
    EXPECT_STREQ(down.name(), "VarIncrement");
    number.refuses = true;
    EXPECT_FALSE(up.execute());
}

TEST(VariableActions, RefuseAMissingVariable) {
    LogCapture log;
    FakeString text("x");
    EXPECT_FALSE(VarSetToValue<StringVariable>("a", nullptr).execute());
    EXPECT_FALSE(VarSetToVariable<StringVariable>(&text, nullptr).execute());
    EXPECT_FALSE(VarSetToVariable<StringVariable>(nullptr, &text).execute());
    EXPECT_FALSE(VarIncrement<ScalarVariable<float>>(nullptr).execute());
    EXPECT_FALSE(VarNegate(nullptr).execute());
    EXPECT_THAT(LogCapture::lines(),
                ElementsAre("0 VarSetToValue: Variable is 0.", "0 VarSetToVariable: Source and/or destination is 0.",
                            "0 VarSetToVariable: Source and/or destination is 0.", "0 VarIncrement: Variable is 0.",
                            "0 VarNegate: Variable is 0."));
    EXPECT_EQ(text.writes, 0);
}

TEST(VariableActions, TraceWhoWroteWhat) {
    LogCapture log;
    VariableTrace trace(4 | 8);
    FakeBool flag(false, "VarFlag"), other(true, "VarOther");
    VarSetToValue<BoolVariable>(true, &flag, "_id").execute();
    VarSetToVariable<BoolVariable>(&flag, &other).execute();
    EXPECT_THAT(LogCapture::lines(),
                ElementsAre("4 VAR(toVal) 'VarFlag' = true by Action _id", "4 VAR(toVal) 'VarFlag' = true",
                            "4 VAR(toVar) 'VarFlag' = 'VarOther' (true)", "4 VAR(toVal) 'VarFlag' = true"));
}

TEST(VariableActions, NotifyBeforeTheyReturn) {
    FakeBool first(false), second(false);
    class Follower : public Observer {
      public:
        Follower(FakeBool& source, FakeBool& target) : source_(source), target_(target) {}
        void update(std::intptr_t, std::intptr_t) override { setVariableChecked(target_, source_.value()); }

      private:
        FakeBool& source_;
        FakeBool& target_;
    } follower(first, second);
    first.observers = {&follower};
    VarSetToValue<BoolVariable>(true, &first).execute();
    EXPECT_TRUE(second.value());
}

}  // namespace
}  // namespace Engine
