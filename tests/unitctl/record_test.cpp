// Recordings of a whole unit: what reached the product shows the same again, and what is not the same is found.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <nlohmann/json.hpp>

#include "commandline.h"

namespace {

namespace fs = std::filesystem;
using nlohmann::json;
using testing::HasSubstr;

void writeAll(const std::string& file, const std::string& bytes) {
    std::ofstream(file, std::ios::binary) << bytes;
}

/// Some use of the unit, of each kind of input.
void use(const TestUnit& unit) {
    unit.say({"press", "lm"});
    unit.say({"drag", "200", "300", "200", "60", "--ms", "200"});
    unit.say({"set", "VarKnob", "0.4"});
    unit.say({"press", "page"});
    unit.say({"press", "lm"});
}

/// A build of the product in which the grey of captions is green.
std::string productOfAnotherColor(const std::string& file) {
    std::string program = contentOf(TERN_BINARY_DIR "/bin/gui-virtual");
    const std::uint32_t grey = 0xffa5a5a5, green = 0xff00ff00;
    for (std::size_t at = 0; at + sizeof grey <= program.size(); at += sizeof grey)
        if (std::memcmp(program.data() + at, &grey, sizeof grey) == 0)
            std::memcpy(program.data() + at, &green, sizeof green);
    writeAll(file, program);
    fs::permissions(file, fs::perms::owner_all);
    return file;
}

}  // namespace

TEST(Recording, OfAFreeRunShowsTheSameAgainAndFindsAnotherColor) {
    TestUnit unit;
    ASSERT_EQ(unit.say({"start", "--scene", "zoom-feet-marks"}), "");
    use(unit);
    const std::string file = unit.temporary("free.rec");
    EXPECT_THAT(unit.say({"record", file}), HasSubstr(" frames in "));
    const std::string page = unit.say({"page"});
    unit.say({"stop"});
    for (int i = 0; i < 2; ++i) {
        const auto again = json::parse(unit.say({"--json", "replay", "--check", file}));
        EXPECT_TRUE(again.at("same").get<bool>()) << again;
        EXPECT_EQ(again.at("frames"), again.at("recorded"));
        EXPECT_GT(again.at("frames").get<int>(), 20);
        EXPECT_EQ(again.at("page"), page);
    }

    const std::string other = productOfAnotherColor(unit.temporary("gui-other"));
    const std::string pictures = unit.temporary("pictures");
    const Outcome found = unit.ctl({"--json", "replay", "--check", file, "--program", other, "--pictures", pictures});
    EXPECT_EQ(found.status, 1);
    EXPECT_THAT(found.errors, HasSubstr("another build"));
    const auto told = json::parse(found.out);
    EXPECT_FALSE(told.at("same").get<bool>());
    EXPECT_EQ(told.at("pictures").size(), 3u) << told;
    for (const auto& picture : told.at("pictures")) EXPECT_GT(fs::file_size(picture.get<std::string>()), 500u);
    EXPECT_NE(contentOf(told.at("pictures")[0]), contentOf(told.at("pictures")[1]));

    const std::string small = unit.temporary("small.rec");
    unit.say({"minimise", file, small, "--program", other, "--seconds", "10"});
    const auto sound = json::parse(unit.say({"--json", "replay", "--check", small}));
    EXPECT_LT(sound.at("frames").get<int>(), told.at("recorded").get<int>() / 2);
    EXPECT_EQ(unit.ctl({"replay", "--check", small, "--program", other, "--pictures", pictures}).status, 1);
    EXPECT_THAT(unit.ctl({"minimise", file, small}).errors, HasSubstr("nothing to look for"));
}

TEST(Recording, OfACrashCrashesInTheSameFrame) {
    TestUnit unit;
    ::setenv("TERN_FAULTS", "ioctl@/dev/fb0:60:EIO", 1);
    unit.say({"start", "--lockstep"});
    EXPECT_THAT(unit.ctl({"step", "100"}).errors, HasSubstr("The product ended by signal 6"));
    ::unsetenv("TERN_FAULTS");
    unit.say({"stop"});
    const std::string file = unit.temporary("crash.rec");
    EXPECT_THAT(unit.say({"record", file, "--earlier"}), HasSubstr("ended by signal 6"));
    const auto again = json::parse(unit.say({"--json", "replay", "--check", file}));
    EXPECT_EQ(again.at("ended"), "by signal 6 (Aborted)");
    EXPECT_TRUE(again.at("same").get<bool>());
    EXPECT_GE(again.at("frames").get<int>() + 1, again.at("recorded").get<int>());
    const std::string small = unit.temporary("small.rec");
    unit.say({"minimise", file, small, "--seconds", "5"});
    EXPECT_EQ(json::parse(unit.say({"--json", "replay", small})).at("ended"), "by signal 6 (Aborted)");
}

TEST(Recording, ThatIsNotGoodIsRefusedOrWarnedOf) {
    TestUnit unit;
    EXPECT_THAT(unit.ctl({"record", "x"}).errors, HasSubstr("Nothing has been recorded"));
    unit.say({"start", "--lockstep"});
    unit.say({"step", "10"});
    const std::string file = unit.temporary("good.rec"), bad = unit.temporary("bad.rec");
    EXPECT_THAT(unit.ctl({"record", file, "--earlier"}).errors, HasSubstr("No product of this unit has ended"));
    unit.say({"record", file});
    unit.say({"stop"});
    const std::string good = contentOf(file);

    unit.say({"replay", file, "--until", "5", "--stay"});
    EXPECT_EQ(json::parse(unit.say({"--json", "status"})).at("frames"), 6);  // the start is one more
    unit.say({"step", "2"});
    EXPECT_THAT(unit.ctl({"step", "100"}).errors, HasSubstr("The recording is over"));
    unit.ctl({"stop"});

    EXPECT_THAT(unit.ctl({"replay", unit.temporary("none")}).errors, HasSubstr("cannot be read"));
    EXPECT_THAT(unit.ctl({"replay", file, "--until", "100000"}).errors, HasSubstr("ends with frame"));
    writeAll(bad, "no recording at all, only words");
    EXPECT_THAT(unit.ctl({"replay", bad}).errors, HasSubstr("no recording"));
    std::string altered = good;
    altered[good.size() / 2] = static_cast<char>(altered[good.size() / 2] ^ 1);
    writeAll(bad, altered);
    EXPECT_THAT(unit.ctl({"replay", bad}).errors, HasSubstr("altered"));
    writeAll(bad, good.substr(0, good.size() - 20));
    const Outcome cut = unit.ctl({"replay", "--check", bad});
    EXPECT_EQ(cut.status, 0) << cut.errors;
    EXPECT_THAT(cut.errors, HasSubstr("cut short"));
}
