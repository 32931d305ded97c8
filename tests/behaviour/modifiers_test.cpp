#include "embedded-gui-engine/modifier.h"

#include <gmock/gmock.h>

#include <cstring>

#include "backend/var.h"
#include "embedded-gui-engine/booliconmodifier.h"
#include "embedded-gui-engine/compare.h"
#include "embedded-gui-engine/condelse.h"
#include "embedded-gui-engine/conditionalvalue.h"
#include "embedded-gui-engine/icon.h"
#include "embedded-gui-engine/infomodifier.h"
#include "embedded-gui-engine/label.h"
#include "embedded-gui-engine/level.h"
#include "embedded-gui-engine/result.h"
#include "embedded-gui-engine/varsettovalue.h"
#include "embedded-gui-engine/warningsmodifier.h"
#include "fakes.h"

namespace Engine {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

TEST(Modifier, ReachesMembersOfEveryBase) {
    Icon icon(WidgetParams{});
    FakeBool off(false);
    Modifier<Widget, bool>(&icon, &Object::setEnabled, &off).update();
    EXPECT_FALSE(icon.hasFlag(Object::FlagEnabled)) << "a virtual member of the second base";
    FakeBool on(true);
    Modifier<Widget, bool>(&icon, &Object::setDisabled, &on).update();
    EXPECT_TRUE(icon.hasFlag(Object::FlagDisabled));
    const Result<Color> red(0xffff0000);
    Modifier<Widget, Color>(&icon, &Widget::setHaloColor, &red).update();
    EXPECT_EQ(icon.haloColor(), 0xffff0000);
    const Result<Painter::Align> end(Painter::Align::End);
    Modifier<Widget, Painter::Align>(&icon, &Widget::setHorizontalAlign, &end).update();
    EXPECT_EQ(icon.horizontalAlign(), Painter::Align::End);
}

TEST(Modifier, HoldsNumbersWithinTheSettersRange) {
    Icon icon(WidgetParams{});
    FakeProvider<int> position(17);
    Modifier<Widget, int, std::int16_t> x(&icon, &Widget::setX, &position);
    Modifier<Widget, int, std::uint16_t> padding(&icon, &Widget::setPadding, &position);
    x.update();
    EXPECT_EQ(icon.x(), 17);
    position.current = 70000;
    x.update();
    EXPECT_EQ(icon.x(), 32767);
    position.current = -5;
    padding.update();
    EXPECT_EQ(icon.padding(), 0);
}

TEST(Modifier, FollowsItsConditionAndWritesZeroWithoutDefault) {
    FakeBool alarm(false);
    Compare<bool> isAlarm(&alarm, true);
    Result<Color> red(0xffff0000);
    const ConditionalEntry<Color> entries[] = {{&isAlarm, &red}};
    const ConditionalValue<Color> color(entries);
    Icon icon(WidgetParams{.foreground = 0xff123456});
    Modifier<Widget, Color> modifier(&icon, &Widget::setForeground, &color);
    alarm.observers = {&modifier};
    alarm.setValue(true);
    EXPECT_EQ(icon.currentForeground(), 0xffff0000);
    alarm.setValue(false);
    EXPECT_EQ(icon.currentForeground(), 0U);
}

TEST(Modifier, ReadsItsProviderOnceAndLivesWithoutOne) {
    const FakeProvider<bool> provider(true);
    VarSetToValue<BoolVariable> action(false, nullptr);
    Modifier<Action, bool>(&action, &Action::setEnabled, &provider).update();
    EXPECT_EQ(provider.reads, 1);
    InverseModifier<Action>(&action, &Action::setEnabled, &provider).update();
    EXPECT_FALSE(action.isEnabled());
    Modifier<Action, bool>(&action, &Action::setEnabled, nullptr).update();
    InverseModifier<Action>(&action, &Action::setEnabled, nullptr).update();
    EXPECT_FALSE(action.isEnabled());
}

TEST(Modifier, ReplacesAnActionsValue) {
    FakeScalar<float> variable(0);
    VarSetToValue<ScalarVariable<float>> action(1.0F, &variable);
    const FakeProvider<float> other(2.5F);
    Modifier<VarSetToValue<ScalarVariable<float>>, float>(&action, &VarSetToValue<ScalarVariable<float>>::setValue,
                                                          &other)
        .update();
    action.execute();
    EXPECT_EQ(variable.value(), 2.5F);
}

TEST(MinMaxValueModifier, PushesLimitsBeforeTheValue) {
    struct Recorder {
        void setMinimum(float value) { calls.push_back("min " + std::to_string(static_cast<int>(value))); }
        void setMaximum(float value) { calls.push_back("max " + std::to_string(static_cast<int>(value))); }
        void setValue(int value) { calls.push_back("int " + std::to_string(value)); }
        void setValue(float value) { calls.push_back("float " + std::to_string(static_cast<int>(value))); }
        std::vector<std::string> calls;
    } recorder;
    FakeScalar<int> number(7);
    FakeScalar<float> real(8);
    MinMaxValueModifier<Recorder, int>(&recorder, &number, Limits::FollowVariable).update();
    MinMaxValueModifier<Recorder, float>(&recorder, &real).update();
    EXPECT_THAT(recorder.calls, ElementsAre("min -100", "max 100", "int 7", "float 8"));

    Level level(WidgetParams{});
    MinMaxValueModifier<Level, float>(&level, &real, Limits::FollowVariable).update();
}

TEST(BoolIconModifier, ChoosesAnImage) {
    const Image yes{}, no{};
    Icon icon(WidgetParams{});
    FakeBool flag(true);
    BoolIconModifier modifier(&icon, &yes, &no, &flag);
    modifier.update();
    EXPECT_EQ(icon.image(), &yes);
    flag.setValue(false);
    modifier.update();
    EXPECT_EQ(icon.image(), &no);
    BoolIconModifier(&icon, &yes, &no, nullptr).update();
    EXPECT_EQ(icon.image(), &no);
}

/// A table of ints by column and row, and of records.
struct FakeArray {
    const char* name() const { return "VarTable"; }
    unsigned int rowSize() const { return 3; }
    unsigned int width() const { return recordSize; }
    unsigned int rowDimension() const { return liveRows; }
    int properties(unsigned int row) const { return row == 1 ? 0 : PropertyExists; }
    const unsigned char* address() const { return records; }
    template <typename T>
    const ValueProvider<T>* getVariable(unsigned int column, unsigned int row) const {
        return column < 2 && row < 3 ? cells[column][row] : nullptr;
    }

    const ValueProvider<int>* cells[2][3]{};
    unsigned int liveRows = 3;
    unsigned int recordSize = 32;
    const unsigned char* records = nullptr;
};

TEST(ArrayModifierFormat, FollowsOneCell) {
    LogCapture log;
    const Result<int> first(11), third(33);
    FakeArray array;
    array.cells[1][0] = &first;
    array.cells[1][2] = &third;
    char storage[16] = "";
    StringProvider<int> text("(%i)", nullptr, nullptr, storage);
    ArrayModifierFormat<FakeArray, int> format(&array, 1, &text);
    Result<int> row(2);
    Modifier<ArrayModifier, int> modifier(&format, &ArrayModifier::setRow, &row);
    modifier.update();
    EXPECT_STREQ(text.text(), "(33)");
    row.setValue(-1);
    modifier.update();
    EXPECT_STREQ(text.text(), "(33)");
    EXPECT_THAT(LogCapture::lines(), IsEmpty());
    row.setValue(9);
    modifier.update();
    EXPECT_STREQ(text.text(), "(33)");
    EXPECT_THAT(LogCapture::lines(), ElementsAre("0 Couldn't get variable from array VarTable, column 1, row 9."));
    row.setValue(0);
    modifier.update();
    EXPECT_STREQ(text.text(), "(11)");
}

TEST(ArrayModifierFormat, TakesTheCellsOfABackendTable) {
    using namespace Backend::Variable;
    Backend::IntVar cells[2] = {Backend::IntVar("T.Number"), Backend::IntVar("T.Number")};
    const Column columns[] = {{CellKind::Int, cells, 1, 0, 4}};
    std::int32_t records[2] = {7, 8};
    auto* const area = reinterpret_cast<unsigned char*>(records);
    const Backend::ArrayVar array("T", 1, 2, {columns, &area, 0, sizeof records[0]});
    cells[1].setValue(42);
    char storage[16] = "";
    StringProvider<int> text("<%i>", nullptr, nullptr, storage);
    ArrayModifierFormat<Backend::ArrayVar, int>(&array, 0, &text).setRow(1);
    EXPECT_STREQ(text.text(), "<42>");

    Label label(WidgetParams{}, {}, "kept");
    Label* const shown[] = {&label};
    InfoModifier<Backend::ArrayVar>(&array, {.labels = shown}).update();
    WarningsModifier<Backend::ArrayVar>(&array, {.labels = shown}).update();
    EXPECT_STREQ(label.text(), "kept") << "records that are too short are not read";
}

const char* textOf(TextId id) {
    switch (id.key) {
        case 1: return "Lens %s at %i";
        case 2: return "Motor %u %.1f";
        default: return "";
    }
}

struct Record {
    std::int32_t message;
    std::uint32_t unused[3];
    char word[4];
    std::int32_t number;
    std::uint32_t rest[2];
};
static_assert(sizeof(Record) == 32);

TEST(InfoModifier, RendersTheLiveRecords) {
    const TextTables texts(textOf);
    const Record records[3] = {{0, {}, {'B', 'C', 'D', 0}, -4, {}}, {1000, {}, {}, 0, {}}, {-1, {}, {}, 0, {}}};
    FakeArray array;
    array.records = reinterpret_cast<const unsigned char*>(records);
    Label labels[4] = {Label(WidgetParams{}, {}, "a"), Label(WidgetParams{}, {}, "b"), Label(WidgetParams{}, {}, "c"),
                       Label(WidgetParams{}, {}, "d")};
    Label* const shown[] = {&labels[0], &labels[1], nullptr, &labels[3]};
    const TextId ids[] = {{1}, {2}};
    class Refresher : public Observer {
      public:
        void update(std::intptr_t, std::intptr_t) override { ++times; }
        int times = 0;
    } refresher;
    InfoModifier<FakeArray> modifier(&array, {.refresher = &refresher, .labels = shown, .textIds = ids});
    array.liveRows = 2;
    modifier.update();
    EXPECT_EQ(refresher.times, 1);
    EXPECT_STREQ(labels[0].text(), "Lens BCD at -4");
    EXPECT_STREQ(labels[1].text(), "UNDEFINED");
    array.liveRows = 0x80000000;
    modifier.update();
    EXPECT_STREQ(labels[3].text(), "d") << "a live count beyond the table is not believed";
    array.records = nullptr;
    modifier.update();
    InfoModifier<FakeArray>(nullptr, {.labels = shown}).update();
}

TEST(WarningsModifier, TakesTheRowAsItsMessage) {
    const TextTables texts(textOf);
    unsigned char records[3 * 24] = {};
    const std::uint32_t arguments[] = {7, 0x3fc00000};
    std::memcpy(records + 2 * 24 + 8, arguments, sizeof arguments);
    FakeArray array;
    array.recordSize = 24;
    array.records = records;
    Label labels[3] = {Label(WidgetParams{}, {}, "a"), Label(WidgetParams{}, {}, "b"), Label(WidgetParams{}, {}, "c")};
    Label* const shown[] = {&labels[0], &labels[1], &labels[2]};
    const TextId ids[] = {{3}, {1}, {2}};
    WarningsModifier<FakeArray>(&array, {.labels = shown, .textIds = ids}).update();
    EXPECT_STREQ(labels[0].text(), "");
    EXPECT_STREQ(labels[1].text(), "b") << "the row does not exist";
    EXPECT_STREQ(labels[2].text(), "Motor 7 1.5");
}

}  // namespace
}  // namespace Engine
