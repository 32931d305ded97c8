#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <unistd.h>

#include <chrono>
#include <fstream>
#include <nlohmann/json.hpp>
#include <thread>

#include "commandline.h"

namespace {

using nlohmann::json;
using testing::AllOf;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::MatchesRegex;
using testing::Not;
using testing::StartsWith;

bool aliveSoon(const std::function<bool()>& condition) {
    for (int tenths = 0; tenths < 300; ++tenths) {
        if (condition()) return true;
        std::this_thread::sleep_for(std::chrono::milliseconds(100));
    }
    return false;
}

/// One line on stderr, nothing on stdout.
void expectRefused(const Outcome& outcome, const std::string& reason) {
    EXPECT_NE(outcome.status, 0);
    EXPECT_THAT(outcome.errors, AllOf(StartsWith("unitctl: "), HasSubstr(reason)));
    EXPECT_EQ(std::ranges::count(outcome.errors, '\n'), 1) << outcome.errors;
    EXPECT_EQ(outcome.out, "");
}

/// A unit in lockstep that shows its first page.
class Lockstep : public testing::Test {
  protected:
    void SetUp() override { ASSERT_EQ(unit.say({"start", "--lockstep"}), ""); }

    TestUnit unit;
};

}  // namespace

TEST_F(Lockstep, ValuesGoInAndOut) {
    EXPECT_EQ(unit.say({"set", "VarKnobLock", "1"}), "");
    EXPECT_EQ(unit.say({"get", "VarKnobLock"}), "1");
    unit.say({"poke", "VarKnobLock", "0"});
    EXPECT_EQ(unit.say({"get", "VarKnobLock"}), "0");
    unit.say({"set", "VarManualKnobValue", "0.1"});
    EXPECT_EQ(unit.say({"get", "VarManualKnobValue"}), "0.1");
    unit.say({"set", "VarFocusMotor.State", "1"});
    EXPECT_THAT(unit.say({"get", "VarFocusMotor.State"}), MatchesRegex("[0-9]+"));
    const auto described = json::parse(unit.say({"--json", "get", "VarFocusMotor.State"}));
    EXPECT_EQ(described.at("kind"), "enum");
    EXPECT_TRUE(described.contains("enum"));
    unit.say({"poke", "VarCamSpeedList[2].CamSpeed", "24"});
    EXPECT_EQ(unit.say({"get", "VarCamSpeedList[2].CamSpeed"}), "24");
    EXPECT_TRUE(std::filesystem::exists(unit.temporary("usr/share/qz-boot-logo.png"))) << "the unit has its boot logo";
}

TEST_F(Lockstep, EveryTextAndFloatComesBackAsItWentIn) {
    for (const std::string text : {"", "  a b", "a\nb", "\"A\"", "-1", "\xe2\x88\x9e"}) {
        EXPECT_EQ(unit.say({"set", "VarUserButton4_Name", "--", text}), "");
        EXPECT_EQ(unit.say({"get", "VarUserButton4_Name"}), text);
    }
    for (const std::string number : {"0.1", "16777216", "1e-42", "-3.4028235e+38", "inf"}) {
        unit.say({"set", "VarCamWhiteBalanceTintAct", "--", number});
        EXPECT_EQ(unit.say({"get", "VarCamWhiteBalanceTintAct"}), number);
    }
    unit.say({"set", "VarKnobAssignmentFlags", "0f01"});
    EXPECT_EQ(unit.say({"get", "VarKnobAssignmentFlags"}), "0f01");
}

TEST_F(Lockstep, NamesAndValuesThatCannotBeAreRefused) {
    expectRefused(unit.ctl({"get", "VarKnobLok"}), "Did you mean VarKnobLock?");
    expectRefused(unit.ctl({"set", "VarKnobLock", "7"}), "A flag is 0 or 1");
    expectRefused(unit.ctl({"poke", "VarJoystickX", "2"}), "out of range");
    expectRefused(unit.ctl({"get", "VarCamSpeedList[9999].CamSpeed"}), "has the rows 0 to");
    expectRefused(unit.ctl({"peek", "MemDynamic", "0", "0x7fffffff"}), "go beyond");
    expectRefused(unit.ctl({"peek", "MemNowhere", "0", "1"}), "There is no area");
    expectRefused(unit.ctl({"press", "usr1"}), "Did you mean user1?");
    expectRefused(unit.ctl({"touch", "240", "0"}), "off the display");
    expectRefused(unit.ctl({"pinch", "10", "200", "20", "200"}), "off the display");
    expectRefused(unit.ctl({"joystick", "0", "-1.5"}), "from -1 to 1");
    expectRefused(unit.ctl({"send", "4"}), "There is no notice");
    expectRefused(unit.ctl({"send", "VarKnobLock"}), "named after its variable");
    expectRefused(unit.ctl({"set", "VarCamWhiteBalanceTintAct", "1e39"}), "32 bits");
    expectRefused(unit.ctl({"watch", "VarKnobLok"}), "Did you mean VarKnobLock?");
    expectRefused(unit.ctl({"do", "hands", "knob", "2"}), "from 0.0 to 1.0");
    expectRefused(unit.ctl({"hostile", "split", "x"}), "no number");
    expectRefused(unit.ctl({"log", "-n", "-1"}), "See: unitctl log --help");
    expectRefused(unit.ctl({"trace", "drow", "1"}), "no trace word");
    expectRefused(unit.ctl({"step", "0"}), "not in range 1 to");
    expectRefused(unit.ctl({"touhc", "1", "1"}), "Did you mean touch?");
    expectRefused(unit.ctl({"start"}), "runs already");
}

TEST_F(Lockstep, ASceneTellsAllItsMistakesAtOnce) {
    const auto file = unit.temporary("scene.json");
    std::ofstream(file) << R"({"values": {"VarNowhere": 1, "VarKnobLok": 1, "VarKnobLock": 3}})";
    const Outcome outcome = unit.ctl({"scene", file.string()});
    EXPECT_EQ(outcome.status, 1);
    for (const char* name : {"VarNowhere", "VarKnobLok", "VarKnobLock:"}) EXPECT_THAT(outcome.errors, HasSubstr(name));
}

TEST_F(Lockstep, NothingMovesButByStepsAndInput) {
    const auto frames = [&] { return json::parse(unit.say({"status", "--json"})).at("frames").get<unsigned>(); };
    const unsigned before = frames();
    unit.say({"down", "lm"});
    unit.say({"set", "VarKnobLock", "1"});
    unit.say({"up", "lm"});
    EXPECT_EQ(frames(), before);
    unit.say({"step", "5"});
    EXPECT_EQ(frames(), before + 5);
    unit.say({"touch", "120", "200", "--ms", "100"});
    EXPECT_EQ(frames(), before + 11);
    EXPECT_THAT(unit.say({"log", "-n", "100"}),
                AllOf(HasSubstr("touch/0 at 120x200"), HasSubstr("release/0 at 120x200")));
}

TEST_F(Lockstep, TheProductIsSeenFromOutside) {
    EXPECT_THAT(unit.say({"page"}), Not(IsEmpty()));
    EXPECT_THAT(unit.say({"pixel", "0", "0"}), MatchesRegex("#[0-9a-f]{6}"));
    const std::string ids = unit.say({"subscriptions"});
    EXPECT_EQ(std::ranges::count(ids, '\n') + 1, 1291);
    unit.say({"journal"});
    EXPECT_EQ(unit.say({"journal"}), "");
}

TEST_F(Lockstep, AProductThatDiesIsStartedAgain) {
    const auto status = [&] { return json::parse(unit.say({"status", "--json"})); };
    ::kill(status().at("product").get<pid_t>(), SIGKILL);
    EXPECT_TRUE(aliveSoon([&] { return status().at("restarts") == 1; }));
    EXPECT_THAT(status().at("lastEnd").get<std::string>(), HasSubstr("signal 9"));
    EXPECT_THAT(contentOf(unit.temporary("unit.out")), HasSubstr("It is started again"));
    EXPECT_EQ(unit.say({"step", "5"}), "");
}

TEST(Unitctl, TheSameInputGivesTheSamePixelsAndNoticesInUnitsSideBySide) {
    TestUnit units[2];
    std::string pictures[2], journals[2];
    for (const auto& unit : units) unit.say({"start", "--lockstep", "--scene", "camera-recording"});
    for (const std::vector<std::string>& words : {std::vector<std::string>{"press", "lm"},
                                                  {"drag", "120", "300", "120", "100"},
                                                  {"do", "hands", "knob", "0.3"},
                                                  {"press", "page"},
                                                  {"joystick", "0", "-1", "--ms", "300"},
                                                  {"step", "60"}})
        for (const auto& unit : units) unit.say(words);
    for (int i = 0; i < 2; ++i) {
        const auto file = units[i].temporary("a.png");
        units[i].say({"shot", file.string()});
        pictures[i] = contentOf(file);
        journals[i] = units[i].say({"journal"});
    }
    EXPECT_THAT(pictures[0], StartsWith("\x89PNG"));
    EXPECT_EQ(pictures[0], pictures[1]);
    EXPECT_THAT(journals[0], HasSubstr("Changed"));
    EXPECT_EQ(journals[0], journals[1]);
}

TEST(Unitctl, AServerThatRunsAlreadyKeepsItsAreas) {
    TestUnit unit;
    ASSERT_EQ(unit.say({"start"}), "");
    const auto status = json::parse(unit.say({"status", "--json"}));
    ::kill(status.at("supervisor").get<pid_t>(), SIGKILL);
    EXPECT_TRUE(aliveSoon([&] { return unit.sharedObjects().empty(); })) << "the server outlives its supervisor";

    const pid_t server = unit.startServer();
    ASSERT_TRUE(aliveSoon([&] { return unit.sharedObjects().size() == 24; }));
    expectRefused(unit.ctl({"start"}), "--no-server");
    EXPECT_EQ(unit.sharedObjects().size(), 24U);
    ASSERT_EQ(unit.say({"start", "--no-server"}), "");
    EXPECT_EQ(unit.say({"set", "VarKnobLock", "1"}), "");
    EXPECT_EQ(unit.say({"stop"}), "");
    EXPECT_EQ(unit.sharedObjects().size(), 24U);
    endProcess(server, SIGKILL);
    expectRefused(unit.ctl({"stop"}), "No unit");
    EXPECT_THAT(unit.sharedObjects(), IsEmpty()) << "what a killed server left is not taken away";
    expectRefused(unit.ctl({"start", "--no-server"}), "No server");
}

TEST(Unitctl, WithoutAUnitEachVerbSaysHowToStartOne) {
    const TestUnit unit;
    for (const std::vector<std::string>& words : {std::vector<std::string>{"stop"},
                                                  {"status"},
                                                  {"get", "VarKnobLock"},
                                                  {"set", "VarKnobLock", "1"},
                                                  {"step"},
                                                  {"press", "ul"},
                                                  {"touch", "1", "1"},
                                                  {"page"},
                                                  {"shot", "x.png"},
                                                  {"journal"},
                                                  {"watch"}})
        expectRefused(unit.ctl(words), "unitctl start --instance " + unit.name());
    EXPECT_FALSE(std::filesystem::exists(unit.folder())) << "looking made an instance";
    EXPECT_THAT(unit.say({"list", "VarKnobLock"}), "VarKnobLock");
}

TEST(Unitctl, ASceneThatIsWrongKeepsTheUnitFromStarting) {
    const TestUnit unit;
    const std::string file = testing::TempDir() + "/" + unit.name() + ".json";
    std::ofstream(file) << R"({"values": {"VarNowhere": 1, "VarElsewhere": 1}})";
    const Outcome outcome = unit.ctl({"start", "--scene", file});
    EXPECT_EQ(outcome.status, 1);
    EXPECT_THAT(outcome.errors, AllOf(HasSubstr("VarNowhere"), HasSubstr("VarElsewhere")));
    std::filesystem::remove(file);
}

TEST(Unitctl, BashCompletesVerbsNamesKeysAndScenes) {
    const auto complete = [](const std::string& words, int at) {
        const std::string script =
            "source " TERN_SOURCE_DIR "/unit/ctl/completion.bash; COMP_WORDS=(" TERN_BINARY_DIR "/bin/unitctl " +
            words + "); COMP_CWORD=" + std::to_string(at) + "; _unitctl; echo \"${COMPREPLY[*]}\"";
        return runProgram({"/bin/bash", "-c", script}).out;
    };
    EXPECT_EQ(complete("jo", 1), "journal joystick\n");
    EXPECT_EQ(complete("--instance x press us", 4), "user1 user2 user3\n");
    EXPECT_EQ(complete("get --json VarKnobLo", 3), "VarKnobLock\n");
    EXPECT_EQ(complete("start --scene zo", 3), "zoom-feet-marks\n");
}

TEST(Unitctl, AProductThatHangsInFreeRunIsKilledAndStartedAgain) {
    TestUnit unit;
    ASSERT_EQ(unit.say({"start"}), "");
    expectRefused(unit.ctl({"step"}), "runs free");
    const auto status = [&] { return json::parse(unit.say({"status", "--json"})); };
    ::kill(status().at("product").get<pid_t>(), SIGSTOP);
    EXPECT_TRUE(aliveSoon([&] { return status().at("restarts") == 1; }));
    EXPECT_THAT(contentOf(unit.temporary("unit.out")), HasSubstr("it hangs, and is killed"));
}

TEST(Unitctl, APictureOfTheFirstPageNeedsNothingElse) {
    const std::string file = testing::TempDir() + "/unitctl-" + std::to_string(::getpid()) + ".png";
    const Outcome outcome = runProgram({TERN_BINARY_DIR "/bin/unitctl", "run", "--shot", file});
    EXPECT_EQ(outcome.status, 0) << outcome.errors;
    EXPECT_THAT(contentOf(file), StartsWith("\x89PNG"));
    EXPECT_GT(contentOf(file).size(), 2000U) << "an empty screen";
    std::filesystem::remove(file);
    for (const auto& entry : std::filesystem::directory_iterator("/dev/shm"))
        EXPECT_THAT(entry.path().filename().string(), Not(HasSubstr("-shot-" + std::to_string(::getpid()))));
}
