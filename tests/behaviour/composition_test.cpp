#include <gmock/gmock.h>

#include <string>

#include "embedded-gui-engine/behaviorcontainer.h"
#include "embedded-gui-engine/concatmodifier.h"
#include "embedded-gui-engine/enumtranslator.h"
#include "embedded-gui-engine/label.h"
#include "embedded-gui-engine/result.h"
#include "embedded-gui-engine/singleeventmatcher.h"
#include "embedded-gui-engine/stringprovider.h"
#include "embedded-gui-engine/useraction.h"
#include "embedded-gui-engine/userbutton.h"
#include "embedded-gui-engine/varsettovalue.h"
#include "fakes.h"

namespace Engine {
namespace {

using testing::ElementsAre;

int language = 0;

const char* textOf(TextId id) {
    switch (id.key) {
        case 1: return language == 0 ? "%0 of %1" : "%1: %0";
        case 102: return language == 0 ? "Unit" : "Einheit";
        default: return nullptr;
    }
}

std::string filled(const char* text, std::span<StringProviderBase* const> parts = {}, std::size_t length = 256) {
    std::string buffer(length, '#');
    fillTemplate(buffer.data(), length, text, parts);
    return buffer.c_str();
}

TEST(ConcatTemplate, FillsItsHoles) {
    const Result<const char*> ab("ab"), cd("cd");
    char storage[2][16] = {};
    StringProvider<const char*> first("%s", &ab, nullptr, storage[0]), second("%s", &cd, nullptr, storage[1]);
    first.update();
    second.update();
    StringProviderBase* const parts[] = {&first, nullptr, &second};
    EXPECT_EQ(filled("%0-%2-%0", parts), "ab-cd-ab");
    EXPECT_EQ(filled("100%% %x %", parts), "100% %x %");
    EXPECT_EQ(filled("text:%0"), "text:E@6");
    EXPECT_EQ(filled("%1|%9", parts), "E@1|E@4");
    EXPECT_EQ(filled("xx%0y%2", parts, 4), "xxy") << "a part that does not fit whole is left out";
    EXPECT_EQ(filled("\xff%0\xc3", parts),
              "\xff"
              "ab\xc3");
    EXPECT_EQ(filled(std::string(10000, '%').c_str()), std::string(255, '%'));
}

TEST(ConcatModifier, FollowsValuesTemplateAndLanguage) {
    const TextTables texts(textOf);
    language = 0;
    FakeScalar<int> number(3), total(9);
    char storage[2][16] = {};
    StringProvider<int> first("%i", &number, nullptr, storage[0]), second("%i", &total, nullptr, storage[1]);
    StringProviderBase* const parts[] = {&first, &second};
    Label label(WidgetParams{});
    ConcatModifier concat(parts, TextId{1}, &label);
    concat.link();
    first.link();
    second.link();
    EXPECT_STREQ(label.text(), "3 of 9");
    number.observers = {&first};
    number.setValue(4);
    EXPECT_STREQ(label.text(), "4 of 9");
    language = 3;
    concat.update();
    EXPECT_STREQ(label.text(), "9: 4");
    concat.setTemplate(TextId{102});
    EXPECT_STREQ(label.text(), "Einheit");
    concat.setTemplate(TextId{7});
    EXPECT_STREQ(label.text(), "") << "a key without a text";
}

TEST(Translator, ReadsTheCurrentLanguage) {
    LogCapture log;
    const TextTables texts(textOf);
    FakeEnum unit(2);
    const Translator<EnumVariable> translator(&unit);
    language = 0;
    EXPECT_STREQ(translator.value(), "Unit");
    language = 3;
    EXPECT_STREQ(translator.value(), "Einheit");
    unit.setValue(-1);
    EXPECT_STREQ(translator.value(), "?");
    const Translator<EnumVariable> unlinked(nullptr);
    EXPECT_STREQ(unlinked.value(), ":-(");
    EXPECT_STREQ(unlinked.name(), "Translator");
    EXPECT_THAT(LogCapture::lines(), ElementsAre("0 No Variable set in Translator"));
}

/// Writes its name into a list.
class Noted : public Action {
  public:
    Noted(std::vector<std::string>& list, const char* name) : Action(name), list_(list) {}
    bool execute() override {
        list_.emplace_back(name_);
        return false;
    }
    const char* name() const override { return name_; }

  private:
    std::vector<std::string>& list_;
};

/// A container of two functions and one button, pressed by event 200 and released by 201.
class UserButtonTest : public testing::Test {
  protected:
    std::vector<std::string> done;
    Noted press0{done, "press0"}, release0{done, "release0"}, select0{done, "select0"}, deselect0{done, "deselect0"};
    Noted press1{done, "press1"}, select1{done, "select1"}, off{done, "off"};
    Action* const press0List[3] = {&off, nullptr, &press0};
    Action* const release0List[1] = {&release0};
    Action* const select0List[1] = {&select0};
    Action* const deselect0List[1] = {&deselect0};
    Action* const press1List[1] = {&press1};
    Action* const select1List[1] = {&select1};
    UserAction function0{{.pressActions = press0List,
                          .releaseActions = release0List,
                          .selectActions = select0List,
                          .deselectActions = deselect0List,
                          .activeValue = true}};
    UserAction function1{{.pressActions = press1List, .selectActions = select1List}};
    UserAction* const functions[2] = {&function0, &function1};
    SingleEventMatcher pressed{200}, released{201};
    FakeScalar<int> index{-1};
    FakeBool active{true};
    UserButton button{{.pressMatcher = &pressed,
                       .releaseMatcher = &released,
                       .indexProvider = &index,
                       .activeVariable = &active,
                       .container = &container}};
    UserButton* const buttons[1] = {&button};
    BehaviorContainer container{{}, functions, buttons};

    void SetUp() override {
        off.setEnabled(false);
        index.observers = {&button};
    }
};

TEST_F(UserButtonTest, SelectsAndDeselectsWithTheIndex) {
    button.update();
    EXPECT_FALSE(active.value()) << "no function: not active";
    index.setValue(0);
    EXPECT_TRUE(active.value());
    button.update(16);
    EXPECT_EQ(active.writes, 2) << "the active variable is written on a difference only";
    index.setValue(1);
    EXPECT_FALSE(active.value());
    index.setValue(7);
    EXPECT_THAT(done, ElementsAre("select0", "deselect0", "select1"));
    EXPECT_EQ(button.current(), nullptr);
}

TEST_F(UserButtonTest, RunsTheAssignedFunction) {
    EXPECT_FALSE(button.onEvent(200));
    index.setValue(0);
    done.clear();
    EXPECT_TRUE(container.afterDispatch(200));
    EXPECT_TRUE(button.onEvent(201));
    EXPECT_FALSE(button.onEvent(202));
    EXPECT_THAT(done, ElementsAre("press0", "release0"));
    function0.setEnabled(false);
    EXPECT_TRUE(button.onEvent(200)) << "the event is handled, though a disabled function does nothing";
    EXPECT_FALSE(function0.isEnabled());
    button.setEnabled(false);
    EXPECT_FALSE(button.onEvent(200));
    EXPECT_THAT(done, ElementsAre("press0", "release0"));
}

TEST_F(UserButtonTest, FollowsItsContainersEnable) {
    index.setValue(0);
    done.clear();
    container.setEnabled(false);
    EXPECT_EQ(button.current(), nullptr);
    EXPECT_FALSE(active.value());
    container.setEnabled(true);
    EXPECT_EQ(button.current(), &function0);
    EXPECT_THAT(done, ElementsAre("deselect0", "select0"));
}

}  // namespace
}  // namespace Engine
