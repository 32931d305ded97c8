// Looking inside: any page, the rules in force, the atlas, and editing the model of a running unit.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>
#include <fstream>
#include <future>
#include <nlohmann/json.hpp>

#include "commandline.h"

namespace {

namespace fs = std::filesystem;
using nlohmann::json;
using testing::AllOf;
using testing::HasSubstr;
using testing::StartsWith;

/// A folder like a build's, with this build's programs, whose model may be written into.
class EditableBuild {
  public:
    explicit EditableBuild(fs::path folder) : folder_(std::move(folder)) {
        fs::create_directories(folder_ / "bin");
        fs::create_directories(folder_ / "source");
        fs::copy(TERN_SOURCE_DIR "/model", model(), fs::copy_options::recursive);
        std::ofstream(folder_ / "CMakeCache.txt")
            << "CMAKE_HOME_DIRECTORY:INTERNAL=" << (folder_ / "source").string() << "\n";
        const fs::path bin = TERN_BINARY_DIR "/bin";
        fs::copy_file(bin / "unitctl", unitctl());  // it finds the others beside itself
        for (const char* program : {"unit-server", "modelc"})
            fs::create_symlink(bin / program, folder_ / "bin" / program);
        fs::copy_file(bin / "gui-virtual", folder_ / "bin/gui-virtual");
        std::ofstream(folder_ / "build.ninja") << "rule link\n  command = cp " << (bin / "gui-virtual").string()
                                               << " bin/gui-new && mv bin/gui-new bin/gui-virtual && touch built\n"
                                               << "build gui-virtual: link\n";
    }

    fs::path unitctl() const { return folder_ / "bin/unitctl"; }
    fs::path model() const { return folder_ / "source/model"; }
    bool built() const { return fs::exists(folder_ / "built"); }

  private:
    fs::path folder_;
};

/// Saves the file until `live` has seen it: there is no telling from outside when it has begun to watch.
Outcome liveOnce(const EditableBuild& build, const TestUnit& unit, const fs::path& file, const std::string& text) {
    auto live = std::async(std::launch::async, [&] {
        return runProgram({build.unitctl().string(), "live", "--once", "--instance", unit.name()});
    });
    do std::ofstream(file) << text;
    while (live.wait_for(std::chrono::milliseconds(300)) != std::future_status::ready);
    return live.get();
}

}  // namespace

TEST(Inside, AnyPageIsShownAndTheUnitKeepsWhatItKnows) {
    TestUnit unit;
    unit.say({"start", "--lockstep", "--scene", "camera-recording"});
    unit.say({"set", "VarKnobLock", "1"});
    unit.say({"goto", "Menu_Root"});
    EXPECT_EQ(unit.say({"page"}), "Menu_Root");
    EXPECT_EQ(unit.say({"get", "VarKnobLock"}), "1");
    EXPECT_THAT(unit.ctl({"goto", "Menu_Rot"}).errors, HasSubstr("Did you mean Menu_Root?"));
    EXPECT_EQ(unit.say({"page"}), "Menu_Root");
    unit.say({"goto"});
    EXPECT_NE(unit.say({"page"}), "Menu_Root");
}

TEST(Inside, RulesAreToldWithTheValuesInForce) {
    TestUnit unit;
    unit.say({"start", "--lockstep", "--scene", "camera-recording"});
    const auto asked = [&](const std::vector<std::string>& words) { return json::parse(unit.say(words)); };
    // Something on the lens page that the camera's state alone decides, whatever the page looks like these days.
    json place;
    const json who = asked({"--json", "who", "VarCamState"});
    for (const auto& driven : who.at("drives"))
        if (driven.at("place").get<std::string>().ends_with(".foreground")) place = driven.at("place");
    ASSERT_TRUE(place.is_string());
    const auto recording = asked({"--json", "why", place}).at("rules").at(0);
    const std::string told = unit.say({"why", place});
    EXPECT_THAT(told, AllOf(HasSubstr("yes  "), HasSubstr("VarCamState is Recording"), HasSubstr(".tern:"),
                            HasSubstr(" = " + recording.at("now").get<std::string>())));
    unit.say({"set", "VarCamState", "Standby"});
    EXPECT_THAT(unit.say({"why", place}), AllOf(HasSubstr("no   "), HasSubstr("VarCamState is Standby")));

    EXPECT_THAT(unit.say({"who", "VarCamState"}),
                AllOf(HasSubstr("= 0 (Standby)"), HasSubstr(place.get<std::string>())));
    EXPECT_THAT(unit.say({"who", "VarFuncLDD"}), HasSubstr("Beside the server it is written by\n  Home_LDD.reaction"));
    EXPECT_THAT(unit.ctl({"who", "VarCamStat"}).errors, HasSubstr("Did you mean VarCamState?"));
    EXPECT_THAT(unit.ctl({"why", place.get<std::string>() + "s"}).errors,
                HasSubstr("Did you mean " + place.get<std::string>()));
}

TEST(Inside, TheAtlasIsTheSameTwiceAndTellsWhatIsNot) {
    TestUnit unit;
    const std::string first = unit.temporary("first"), second = unit.temporary("second");
    EXPECT_THAT(unit.say({"atlas", first, "--pages", "Home_Lens", "--scene", "no-lens"}),
                HasSubstr("16 pictures, 0 could"));
    const std::string german = first + "/no-lens/Home_Lens-German-day-left.png";
    EXPECT_GT(fs::file_size(german), 500u);

    auto list = json::parse(contentOf(first + "/atlas.json"));
    list.at(2).at("fingerprint") = 1;
    list.at(3).at("page") = "Gone_Page";
    std::ofstream(first + "/atlas.json") << list;
    const Outcome compared =
        unit.ctl({"atlas", second, "--pages", "Home_Lens", "--scene", "no-lens", "--jobs", "1", "--against", first});
    EXPECT_EQ(compared.status, 1);
    EXPECT_THAT(compared.out, HasSubstr("2 differ from"));  // one changed, one new; what is gone was not asked for
    EXPECT_THAT(contentOf(second + "/index.html"),
                AllOf(HasSubstr("class=\"changed\""), HasSubstr("difference.png"), HasSubstr("class=\"new\"")));
    EXPECT_THAT(unit.ctl({"atlas", second, "--pages", "Nowhere*"}).errors, HasSubstr("No page matches"));
    EXPECT_THAT(unit.ctl({"atlas", second, "--against", unit.temporary("none")}).errors, HasSubstr("no atlas"));
}

TEST(Inside, LiveEditingShowsErrorsAndThenTheResult) {
    TestUnit unit;
    fs::create_directories(unit.folder());
    fs::permissions(unit.folder(), fs::perms::owner_all);
    const EditableBuild build(unit.temporary("build"));
    const auto start = runProgram({build.unitctl().string(), "start", "--lockstep", "--instance", unit.name()});
    ASSERT_EQ(start.status, 0) << start.errors;
    unit.say({"goto", "Home_Lens"});
    const fs::path source = build.model() / "pages/start_page.tern";
    const std::string good = contentOf(source);

    const Outcome broken = liveOnce(build, unit, source, good + "\npage Wrong { backgrund: white }\n");
    EXPECT_THAT(broken.out, AllOf(HasSubstr("pages/start_page.tern was saved"), HasSubstr("did you mean 'background'?"),
                                  HasSubstr("stays as it was")));
    EXPECT_FALSE(build.built());
    EXPECT_EQ(unit.say({"page"}), "Home_Lens");

    const Outcome mended = liveOnce(build, unit, source, good);
    EXPECT_THAT(mended.out, HasSubstr("Shown after"));
    EXPECT_TRUE(build.built());
    EXPECT_EQ(unit.say({"page"}), "Home_Lens");
    EXPECT_EQ(json::parse(unit.say({"--json", "status"})).at("restarts"), 0);
}
