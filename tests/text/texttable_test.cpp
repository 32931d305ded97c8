#include "embedded-gui-engine/texttable.h"

#include <gtest/gtest.h>

#include <array>
#include <string>

#include "embedded-gui-engine/hooks.h"
#include "embedded-gui-engine/textforid.h"

namespace {

using Engine::LanguageTexts;
using Engine::TextId;

class Language final : public Engine::ValueProvider<int> {
  public:
    const char* name() const override { return "VarLanguage"; }
    int value() const override { return number; }
    int number = 0;
};

constexpr std::array<const char*, 3> english{"", "Unit", "Torque"};
constexpr std::array<const char*, 3> german{"", "Einheit", "Drehmoment"};
constexpr std::array<LanguageTexts, 2> languages{LanguageTexts(english), LanguageTexts(german)};

class TextTable : public testing::Test {
  protected:
    ~TextTable() override { Engine::hooks() = {}; }

    std::string text(std::uint32_t key) { return Engine::textForId(TextId{key}); }

    Language language;
};

TEST_F(TextTable, TextsAreEmptyUntilTheLanguageIsThere) {
    EXPECT_EQ(text(1), "");
    Engine::setTextTable(languages, nullptr);
    EXPECT_EQ(text(1), "");
    Engine::setTextTable(languages, &language);
    EXPECT_EQ(text(1), "Unit");
}

TEST_F(TextTable, FollowsTheLanguageAndSurvivesWrongNumbers) {
    Engine::setTextTable(languages, &language);
    language.number = 1;
    EXPECT_EQ(text(1), "Einheit");
    for (const int wrong : {2, -1, 1 << 30}) {
        language.number = wrong;
        EXPECT_EQ(text(2), "Torque");
    }
    EXPECT_EQ(text(3), "");
    EXPECT_EQ(text(0xFFFFFFFF), "");
}

}  // namespace
