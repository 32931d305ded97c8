#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <bit>
#include <climits>
#include <cmath>
#include <limits>

#include "backend/var.h"
#include "recorder.h"

using namespace Backend;
using namespace Backend::Variable;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

std::vector<std::string> journal;

constinit StaticValue<int> one(1);
constinit StaticValue<int> ten(10);
constinit IntVar limitVariable("Limit", noSlot, nullptr, nullptr);
constinit IntVar limited("Limited", noSlot, &one, &ten);
constinit IntVar moving("Moving", noSlot, &one, &limitVariable);

constexpr EnumValue sparseValues[] = {{0, {10}}, {3, {13}}, {7, {17}}, {9, {19}}};
constinit EnumTable sparseType(sparseValues, 4, 0b0100);
constexpr EnumValue denseValues[] = {{0, {20}}, {1, {21}}, {2, {22}}};
constinit EnumTable denseType(denseValues, 3);

}  // namespace

TEST(Variables, AProgramsWriteRunsTheCallbackAndThenTheObserversAtOnce) {
    journal.clear();
    static IntVar outer("Outer");
    static FloatVar inner("Inner");
    static Recorder first(journal, "first", [] { inner.setValue(inner.value() + 1); });
    static Recorder second(journal, "second");
    static Recorder nested(journal, "nested");
    static Engine::Observer* const outerObservers[] = {&first, &second};
    static Engine::Observer* const innerObservers[] = {&nested};
    outer.attach(outerObservers, 2);
    inner.attach(innerObservers, 1);
    outer.setCallback([] { journal.push_back("callback " + std::to_string(outer.value())); });

    Engine::ScalarVariable<int>& engineFace = outer;
    EXPECT_TRUE(engineFace.setValue(5));
    EXPECT_THAT(journal, ElementsAre("callback 5", "first", "nested", "second"));
    journal.clear();
    EXPECT_TRUE(engineFace.setValue(5));
    EXPECT_THAT(journal, IsEmpty());
}

TEST(Variables, AServersValueIsTakenAsItComesAndWaits) {
    journal.clear();
    static IntVar variable("Server", noSlot, &one, &ten);
    static Recorder observer(journal, "heard");
    static Engine::Observer* const observers[] = {&observer};
    variable.attach(observers, 1);
    variable.setCallback([] { journal.push_back("callback"); });

    EXPECT_TRUE(variable.receive(-400));
    EXPECT_EQ(variable.value(), -400);
    EXPECT_THAT(journal, IsEmpty());
    EXPECT_EQ(variable.flags() & FlagsPending, FlagsPending);
    variable.syncData(false);
    variable.syncData(false);
    EXPECT_THAT(journal, ElementsAre("heard"));
    EXPECT_FALSE(variable.receive(-400));
    variable.syncData(false);
    variable.syncData(true);
    EXPECT_THAT(journal, ElementsAre("heard", "heard"));

    variable.receive(4);
    variable.setValue(5);  // tells what was waiting, once
    variable.syncData(false);
    EXPECT_THAT(journal, ElementsAre("heard", "heard", "callback", "heard"));
}

TEST(Variables, WritesOutsideFixedAndMovingLimitsAreRefused) {
    EXPECT_TRUE(limited.setValue(10));
    EXPECT_FALSE(limited.setValue(11));
    EXPECT_FALSE(limited.setValue(0));
    EXPECT_EQ(limited.value(), 10);

    limitVariable.setValue(3);
    EXPECT_EQ(moving.max(), 3);
    EXPECT_FALSE(moving.setValue(4));
    EXPECT_TRUE(moving.setValue(3));
    limitVariable.setValue(2);
    EXPECT_EQ(moving.value(), 3);
    limitVariable.setValue(0);  // no value left
    EXPECT_FALSE(moving.increment(1, true));
    EXPECT_EQ(moving.value(), 3);

    IntVar open("Open");
    EXPECT_EQ(open.min(), INT_MIN);
    EXPECT_EQ(open.max(), INT_MAX);
}

TEST(Variables, IncrementsStayInsideOrWrap) {
    struct Case {
        int from, step;
        bool wrap;
        int to;
    };
    for (const Case& c : {Case{9, 1, false, 10}, Case{9, 5, false, 10}, Case{10, 1, true, 1}, Case{9, 5, true, 1},
                          Case{2, -5, false, 1}, Case{1, -1, true, 10}, Case{5, 0, true, 5},
                          Case{5, INT_MAX, false, 10}, Case{5, INT_MIN, true, 10}}) {
        limited.receive(c.from);
        EXPECT_TRUE(limited.increment(c.step, c.wrap));
        EXPECT_EQ(limited.value(), c.to) << c.from << " + " << c.step;
    }
    IntVar open("Open");
    open.setValue(INT_MAX);
    EXPECT_TRUE(open.increment(1, false));
    EXPECT_EQ(open.value(), INT_MAX);
    EXPECT_TRUE(open.increment(1, true));
    EXPECT_EQ(open.value(), INT_MIN);
}

TEST(Variables, FloatsCompareByBits) {
    static StaticValue<float> low(-1.0f);
    static StaticValue<float> high(1.0f);
    FloatVar free("Free");
    EXPECT_TRUE(free.receive(-0.0f));
    EXPECT_TRUE(free.receive(std::numeric_limits<float>::quiet_NaN()));
    EXPECT_FALSE(free.receive(std::numeric_limits<float>::quiet_NaN()));
    FloatVar bounded("Bounded", noSlot, &low, &high);
    EXPECT_FALSE(bounded.setValue(std::numeric_limits<float>::quiet_NaN()));
    EXPECT_EQ(std::bit_cast<std::uint32_t>(bounded.value()), 0u);
    EXPECT_TRUE(bounded.setValue(1.0f));
    EXPECT_TRUE(bounded.increment(0.25f, true));
    EXPECT_EQ(bounded.value(), -1.0f);
}

TEST(Variables, AnEnumHoldsOnlyWhatItsTableHolds) {
    EnumVar variable("Enum", noSlot, &sparseType);
    EXPECT_TRUE(variable.setValue(7));  // hidden values can be held
    EXPECT_FALSE(variable.setValue(1));
    EXPECT_EQ(variable.value(), 7);
    EXPECT_EQ(variable.textKey(7), Engine::TextId{17});
    EXPECT_EQ(variable.textKey(2), Engine::TextId{});
    EXPECT_EQ(variable.properties(7), 0);
    EXPECT_EQ(variable.properties(3) & 3, 3);
    EXPECT_EQ(variable.properties(-1), 0);
    EXPECT_EQ(variable.size(), 4);
    variable.receive(-1);
    EXPECT_EQ(variable.value(), -1);

    EnumVar bare("Bare");
    EXPECT_FALSE(bare.setValue(0));
    EXPECT_FALSE(bare.increment(1, true));
    EXPECT_EQ(bare.properties(0), 0);
}

TEST(Variables, AnEnumStepsOverWhatMayNotBeChosen) {
    EnumVar variable("Enum", noSlot, &sparseType);
    const auto stepped = [&](int step, bool wrap) {
        EXPECT_TRUE(variable.increment(step, wrap));
        return variable.value();
    };
    EXPECT_EQ(stepped(1, false), 3);
    EXPECT_EQ(stepped(1, false), 9);  // over the hidden 7
    EXPECT_EQ(stepped(1, false), 9);
    EXPECT_EQ(stepped(1, true), 0);
    EXPECT_EQ(stepped(-1, false), 0);
    EXPECT_EQ(stepped(-2, true), 3);
    EXPECT_EQ(stepped(INT_MAX, false), 9);
    EXPECT_EQ(stepped(INT_MIN, true), 0);  // 2^31 steps back among three values are two
    variable.receive(55);
    EXPECT_EQ(stepped(1, false), 0);
    variable.receive(55);
    EXPECT_EQ(stepped(-1, false), 9);
}

TEST(Variables, AvailabilityBitsAreTakenWithTheirMessage) {
    static unsigned char area[4] = {0, 0b101, 0, 0};
    static unsigned char* base = area;
    static MemoryMappedRead<unsigned char*, GuiType::Array> bits(&base, 1);
    static unsigned char caches[2];
    static AvailableFlag flag;
    flag.configAvailableVariables(&bits, 1, AvailableFlag::Exists);
    flag.configAvailableVariableCaches(&caches[0], &caches[1], 1, AvailableFlag::Exists);
    static EnumVar variable("Available", noSlot, &denseType, &flag);

    variable.refreshAvailability();
    EXPECT_FALSE(variable.isSync());
    EXPECT_EQ(variable.properties(0) & 3, 3);
    EXPECT_EQ(variable.properties(1) & 1, 0);
    EXPECT_TRUE(variable.increment(1, false));
    EXPECT_EQ(variable.value(), 2);
    variable.syncData(false);
    area[1] = 0b111;
    EXPECT_EQ(variable.properties(1) & 1, 0);
    variable.refreshAvailability();
    EXPECT_EQ(variable.properties(1) & 1, 1);
    variable.syncData(false);
    variable.refreshAvailability();
    EXPECT_TRUE(variable.isSync());
}

TEST(Variables, TextsStayInsideTheirStorage) {
    char block[20] = "............!......";
    StringVar first("First");
    StringVar second("Second");
    first.configStorage(block, 12, 6);
    second.configStorage(block + 6, 6);
    EXPECT_EQ(first.size(), 6);
    EXPECT_TRUE(second.setValue("right"));
    EXPECT_TRUE(first.setValue("left5"));
    EXPECT_FALSE(first.setValue("toolong"));
    EXPECT_FALSE(first.setValue("sixsix"));
    EXPECT_FALSE(first.setValue(nullptr));
    EXPECT_STREQ(first.value(), "left5");
    EXPECT_STREQ(second.value(), "right");
    EXPECT_EQ(block[12], '!');
    EXPECT_TRUE(first.setValue(first.value() + 2));  // from inside its own storage
    EXPECT_STREQ(first.value(), "ft5");

    const char unterminated[] = {'a', 'b', 'c', 'd'};
    EXPECT_TRUE(first.receive(unterminated, 4));
    EXPECT_STREQ(first.value(), "abcd");
    EXPECT_TRUE(first.receive("abc\xe4\xb8\xad", 7));
    EXPECT_STREQ(first.value(), "abc");
    EXPECT_TRUE(first.receive("\x80\x80\x80\x80\x80\x80\x80", 7));  // no character to keep whole
    EXPECT_EQ(std::string(first.value()).size(), 5u);
    StringVar bare("Bare");
    EXPECT_FALSE(bare.receive("x", 2));
    EXPECT_FALSE(bare.setValue(""));
    EXPECT_STREQ(bare.value(), "");
}

TEST(Variables, AFlagTogglesAndShowsTheCommonTexts) {
    BoolVar flag("Flag");
    EXPECT_TRUE(flag.toggle());
    EXPECT_TRUE(flag.value());
    Flag<bool>::configTexts({1}, {2});
    EXPECT_EQ(flag.textKey(true), Engine::TextId{2});
    Flag<bool>::configTexts({}, {});
}
