#include <gtest/gtest.h>

#include <fstream>

#include "tests/unit/world.h"

namespace fs = std::filesystem;
using nlohmann::json;

namespace {

std::vector<std::string> problemsOf(World& world, const json& scene) {
    std::vector<std::string> problems;
    world->applyScene(scene, problems);
    return problems;
}

}  // namespace

TEST(Scenes, OfTheRepositoryAllLoad) {
    int scenes = 0;
    for (const auto& file : fs::directory_iterator(fs::path(TERN_SOURCE_DIR) / "unit/scenes")) {
        World world;
        std::vector<std::string> problems;
        EXPECT_TRUE(world->loadScene(file.path(), problems)) << file.path() << ": " << problems.front();
        world.run(2);
        ++scenes;
    }
    EXPECT_GE(scenes, 9);
}

TEST(Scenes, TellAllMistakesAtOnceAndChangeNothing) {
    World world;
    world.write("VarLanguage", "German");
    const auto problems = problemsOf(world, {{"values", {{"VarNone", 1}, {"VarKnob", 7}, {"VarLanguage", "English"}}},
                                             {"modules", {{"lens", {{"lens", "fisheye"}}}, {"kitchen", {{"oven", 1}}}}},
                                             {"extra", 1}});
    EXPECT_EQ(problems.size(), 5U);
    EXPECT_EQ(world.get("VarLanguage"), "3");
}

TEST(Scenes, BeginFromTheFactoryAndLeaveTheProductsOwnValues) {
    World world;
    world.write({{"VarLanguage", "German"}, {"VarFocusPositionX", "160"}});
    world->store().clearNotices();
    EXPECT_TRUE(problemsOf(world, {{"values", {{"VarGuiRotate", true}}}}).empty());
    world.expect({{"VarLanguage", "0"}, {"VarFocusPositionX", "160"}});
    const auto& notices = world->store().notices();
    const auto noted = [&notices](const char* name) {
        return std::count(notices.begin(), notices.end(), Unit::Store::find(name)->id);
    };
    EXPECT_EQ(noted("VarLanguage"), 1);
    EXPECT_EQ(noted("VarGuiRotate"), 1);
    EXPECT_EQ(noted("VarRadioBoost"), 0);
}

TEST(Settings, SurviveARestartAndADamagedFile) {
    World world;
    world.write({{"VarLanguage", "German"}, {"VarUserButton4_Name", "A\"\u00e9"}});
    world.run(1.1);
    world.restart();
    EXPECT_EQ(world.get("VarLanguage"), "3");
    EXPECT_EQ(world.get("VarUserButton4_Name"), "A\"\u00e9");
    std::ofstream(World::folder() / "settings.json")
        << R"({"VarLanguage": "99", "VarGone": "1", "VarSoundVolume": "7"})";
    world.restart();
    world.expect({{"VarLanguage", "0"}, {"VarSoundVolume", "7"}});
    std::ofstream(World::folder() / "settings.json") << "{";
    world.restart();
    EXPECT_EQ(world.get("VarLanguage"), "0");
}

TEST(Settings, FactoryResetPutsThemBackAndSaysWhenItIsDone) {
    World world;
    world.write({{"VarLanguage", "German"}, {"VarKnobAssignment", "Zoom"}, {"VarFactoryReset", "1"}});
    world.expect(
        {{"VarLanguage", "0"}, {"VarKnobAssignment", "1"}, {"VarFactoryReset", "0"}, {"VarFactoryResetFinished", "1"}});
}

TEST(Setups, AreSavedUnderACheckedNameAndTakenOverFromTheBrowser) {
    World world;
    world.write({{"VarLanguage", "German"}, {"VarUserSetupAddNew", "1"}});
    world.expect({{"VarUserSetupSave", "SETUP1"}, {"VarUserSetupFileCheckDone", "1"}});
    world.write("VarUserSetupAcceptSaveFileName", "1");
    EXPECT_TRUE(fs::exists(World::folder() / "files/internal/setups/SETUP1.setup"));
    world.write("VarUserSetupSave", "SETUP1");
    EXPECT_EQ(world.get("VarUserSetupOverwriteFile"), "1");
    world.write("VarUserSetupSave", "../up");
    EXPECT_EQ(world.get("VarUserSetupSaveValid"), "0");
    world.write({{"VarLanguage", "English"}, {"VarFileBrowserType", "UserSetupFiles"}});
    for (int row = 0; row < 8; ++row) {
        world.write("VarFileBrowserHighlightIndex", std::to_string(row));
        if (world.get("VarFileBrowserSelectionName") == "setups") break;
    }
    world.write({{"VarFileBrowserOperation", "ExpandCurrent"}, {"VarFileBrowserOperationStart", "1"}});
    world.write("VarFileBrowserHighlightIndex",
                std::to_string(static_cast<int>(world.number("VarFileBrowserHighlightIndex")) + 1));
    EXPECT_EQ(world.get("VarFileBrowserSelectionName"), "SETUP1.setup");
    world.write("VarFileBrowserOperationStart", "1");
    EXPECT_EQ(world.get("VarLanguage"), "3");
}
