#include <gmock/gmock.h>

#include <climits>
#include <type_traits>

#include "embedded-gui-engine/compare.h"
#include "embedded-gui-engine/compareprevious.h"
#include "embedded-gui-engine/condelse.h"
#include "embedded-gui-engine/conditionalvalue.h"
#include "embedded-gui-engine/or.h"
#include "embedded-gui-engine/result.h"
#include "fakes.h"

namespace Engine {
namespace {

/// The answers of all operators, in the order of their codes, for value `left`.
template <typename T>
std::vector<bool> compareAll(T left, T reference) {
    const FakeProvider<T> provider(left);
    std::vector<bool> answers;
    for (int code = 0; code <= 5; ++code) {
        answers.push_back(Compare<T>(&provider, reference, static_cast<CompareOperator>(code)).evaluate());
    }
    return answers;
}

// Equal, greater, less, greater or equal, less or equal, not equal.
const std::vector<bool> WhenEqual{true, false, false, true, true, false};
const std::vector<bool> WhenGreater{false, true, false, true, false, true};
const std::vector<bool> WhenLess{false, false, true, false, true, true};

TEST(Compare, OrdersEachType) {
    EXPECT_EQ(compareAll(5, 5), WhenEqual);
    EXPECT_EQ(compareAll(INT_MAX, INT_MIN), WhenGreater);
    EXPECT_EQ(compareAll(false, true), WhenLess);
    EXPECT_EQ(compareAll(0.99999994F, 1.0F), WhenLess) << "floats compare exactly";
    EXPECT_EQ(compareAll("ab", "ab"), WhenEqual);
    EXPECT_EQ(compareAll("b", "ab"), WhenGreater);
    EXPECT_EQ(compareAll("z", "\xc3\xa9"), WhenLess) << "bytes compare unsigned";
}

TEST(Compare, StaysHarmlessWithWhatIsMissing) {
    const FakeProvider<const char*> nothing(nullptr);
    EXPECT_TRUE(Compare<const char*>(&nothing, "").evaluate());
    EXPECT_FALSE(Compare<const char*>(&nothing, "a").evaluate());
    EXPECT_FALSE(Compare<int>(nullptr, 0).evaluate());
    const FakeProvider<int> five(5);
    EXPECT_FALSE(Compare<int>(&five, 5, static_cast<CompareOperator>(6)).evaluate());
}

template <typename T>
std::vector<bool> feed(ComparePrevious<T>& condition, FakeProvider<T>& provider,
                       std::initializer_list<std::type_identity_t<T>> values) {
    std::vector<bool> answers;
    for (T value : values) {
        provider.current = value;
        answers.push_back(condition.evaluate());
    }
    return answers;
}

TEST(ComparePrevious, TellsOfChangesBetweenEvaluations) {
    using Answers = std::vector<bool>;
    FakeProvider<int> number(0);
    ComparePrevious<int> any(&number);
    EXPECT_EQ(feed(any, number, {5, 5, 7, 5}), (Answers{false, false, true, true}));
    ComparePrevious<int> rise(&number, 3);
    EXPECT_EQ(feed(rise, number, {5, 5, 7, 10, 5}), (Answers{false, false, false, true, false}));
    ComparePrevious<int> fall(&number, -1);
    EXPECT_EQ(feed(fall, number, {7, 5, 5, 8}), (Answers{false, true, false, false}));
    ComparePrevious<int> always(&number, 0);
    EXPECT_EQ(feed(always, number, {1, 1, 1}), (Answers{false, true, true}));
    ComparePrevious<int> extreme(&number, INT_MIN);
    EXPECT_EQ(feed(extreme, number, {INT_MAX, INT_MIN, INT_MAX}), (Answers{false, true, false}));
    FakeProvider<bool> flag(false);
    ComparePrevious<bool> toggled(&flag);
    EXPECT_EQ(feed(toggled, flag, {true, false, false}), (Answers{false, true, false}));
}

TEST(ComparePrevious, HashesTexts) {
    EXPECT_EQ(ComparePrevious<const char*>::hash(""), 0U);
    EXPECT_EQ(ComparePrevious<const char*>::hash("\xc3\xa9"), 0x18c9U);
    FakeProvider<const char*> text("");
    ComparePrevious<const char*> condition(&text);
    EXPECT_EQ(feed(condition, text, {"a", "a", "b", nullptr}), (std::vector<bool>{false, false, true, true}));
}

/// Counts how often it was asked.
class Asked : public Condition {
  public:
    explicit Asked(bool first) : answer(first) {}
    bool evaluate() override {
        ++times;
        return answer;
    }
    bool answer;
    int times = 0;
};

TEST(Or, StopsAtTheFirstTrueCondition) {
    Asked no(false), yes(true), behind(true);
    Condition* const conditions[] = {nullptr, &no, &yes, &behind};
    EXPECT_TRUE(Or(conditions).evaluate());
    EXPECT_EQ(behind.times, 0);
    EXPECT_FALSE(Or(std::span(conditions, 2)).evaluate());
    EXPECT_FALSE(Or(std::span<Condition* const>()).evaluate());
}

TEST(ConditionalValue, TakesTheFirstUsableBranch) {
    Asked first(true), second(false), third(true), behind(true);
    CondElse otherwise;
    Result<int> one(1), two(2), three(3);
    const ConditionalEntry<int> entries[] = {{&first, nullptr}, {nullptr, &one}, {&second, &two},
                                             {&third, &three},  {&behind, &one}, {&otherwise, &one}};
    const ConditionalValue<int> value(entries);
    EXPECT_EQ(value.value(), 3);
    EXPECT_EQ(behind.times, 0);
    third.answer = behind.answer = false;
    EXPECT_EQ(value.value(), 1);
    EXPECT_STREQ(value.name(), "ConditionalValue");
    EXPECT_STREQ(one.name(), "Result");
}

TEST(ConditionalValue, EndsInTheZeroOfItsType) {
    Asked never(false);
    Result<Color> red(0xffff0000);
    const ConditionalEntry<Color> colors[] = {{&never, &red}};
    EXPECT_EQ(ConditionalValue<Color>(colors).value(), 0U);
    EXPECT_EQ(ConditionalValue<const char*>({}).value(), nullptr);
    EXPECT_EQ(ConditionalValue<ScalarVariable<int>*>({}).value(), nullptr);
    EXPECT_EQ(ConditionalValue<TextId>({}).value(), TextId{});
}

}  // namespace
}  // namespace Engine
