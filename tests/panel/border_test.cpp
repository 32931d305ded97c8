// What comes from a browser, before anything believes it.
#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <linux/input-event-codes.h>
#include <unistd.h>

#include <array>
#include <filesystem>
#include <fstream>

#include "apps/common/event/eventhandling.h"
#include "platform/virtual/virtual.h"
#include "unit/ctl/notices.h"
#include "unit/ctl/problem.h"
#include "unit/panel/access.h"
#include "unit/panel/heldinput.h"
#include "unit/panel/logtail.h"
#include "unit/panel/ratelimit.h"
#include "unit/panel/request.h"

namespace {

using namespace Unit;
using testing::HasSubstr;

template <typename What>
What parsed(const std::string& text) {
    std::string problem;
    const auto request = parseRequest(text, problem);
    EXPECT_TRUE(request) << text << ": " << problem;
    return request ? std::get<What>(request->what) : What{};
}

std::string refusal(const std::string& text) {
    std::string problem;
    EXPECT_FALSE(parseRequest(text, problem)) << text;
    return problem;
}

/// The records of the touch panel and of the keys that the product would read.
class Devices : public testing::Test {
  protected:
    using Record = std::array<int, 3>;

    std::vector<Record> read(const char* path) {
        std::vector<Record> records;
        char buffer[Platform::Virtual::Instance::pathLimit];
        const int fd = ::open(driver.instance().mapPath(path, buffer), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
        EventHandling::input_event record;
        while (::read(fd, &record, sizeof record) == sizeof record)
            if (record.type != EV_SYN) records.push_back({record.type, record.code, record.value});
        ::close(fd);
        return records;
    }
    std::vector<Record> touches() { return read("/dev/input/touchscreen0"); }
    std::vector<Record> keys() { return read("/dev/input/by-path/platform-gpio-keys1-event"); }

    Platform::Virtual::TemporaryInstance instance;
    Platform::Virtual::Driver driver;
    InputDevices devices{driver};
    HeldInput held{devices};
};

constexpr HeldInput::Person anna = 1, ben = 2;

}  // namespace

TEST(Access, OnlyThePageOfThisVeryPlaceMayOpenTheSocket) {
    for (const char* host : {"127.0.0.1:7340", "localhost:7340", "LocalHost", "127.0.0.1"})
        EXPECT_TRUE(isOwnHost(host)) << host;
    for (const char* host : {"", "evil.example", "localhost.evil.example", "127.0.0.1.evil.example:7340", "127.0.0.1:",
                             "127.0.0.1:73400000", "localhost:7340@evil", "10.0.0.7:7340", "0.0.0.0:7340"})
        EXPECT_FALSE(isOwnHost(host)) << host;
    EXPECT_TRUE(isOwnOrigin("http://localhost:7340", "localhost:7340"));
    EXPECT_FALSE(isOwnOrigin("", "localhost:7340"));
    EXPECT_FALSE(isOwnOrigin("null", "localhost:7340"));
    EXPECT_FALSE(isOwnOrigin("http://localhost:8080", "localhost:7340")) << "another program's page";
    EXPECT_FALSE(isOwnOrigin("https://localhost:7340", "localhost:7340"));
    EXPECT_FALSE(isOwnOrigin("http://evil.example", "evil.example")) << "a foreign name that points here";
}

TEST(Request, WhatABrowserMayAsk) {
    EXPECT_STREQ(parsed<Request::Key>(R"({"t":"key","key":"lm","down":true})").key->name, "lm");
    const auto touch = parsed<Request::Touch>(R"({"t":"touch","points":[null,[3,4]]})");
    EXPECT_FALSE(touch.contacts[0]);
    EXPECT_EQ(touch.contacts[1], (TouchPoint{3, 4}));
    EXPECT_EQ(parsed<Request::Do>(R"({"t":"do","module":"power","setting":"battery","value":9})").value, "9");
    EXPECT_EQ(parsed<Request::Do>(R"({"t":"do","module":"lens","setting":"lens","value":"a\"b"})").value, R"("a\"b")");
    EXPECT_EQ(parsed<Request::Set>(R"({"t":"set","name":"VarA[3].B","value":"x y"})").value, "x y");
    EXPECT_EQ(parsed<Request::Trace>(R"({"t":"trace","word":"draw","mask":4294967295})").mask, 0xffffffff);
    EXPECT_EQ(parsed<Request::Watch>(R"({"t":"watch","names":["VarA","VarB"]})").names.size(), 2U);
}

TEST(Request, WhatItMayNot) {
    for (const char* text : {"",
                             "{",
                             "[]",
                             "7",
                             "null",
                             "\xff\xfe",
                             R"({"t":"format"})",
                             R"({"t":7})",
                             R"({"t":"key"})",
                             R"({"t":"key","key":"lm","down":1})",
                             R"({"t":"key","key":"any","down":true})",
                             R"({"t":"touch","points":[[1,2],[3,4],[5,6]]})",
                             R"({"t":"touch","points":[[-1,2]]})",
                             R"({"t":"touch","points":[[1e9,2]]})",
                             R"({"t":"touch","points":[[1.5,2]]})",
                             R"({"t":"step","frames":0})",
                             R"({"t":"step","frames":100000})",
                             R"({"t":"trace","word":"draw","mask":-1})",
                             R"({"t":"credit","n":-1})",
                             R"({"t":"do","module":"lens","setting":"lens","value":["a"]})"})
        EXPECT_NE(refusal(text), "") << text;
    // What would become a second request to the server.
    EXPECT_THAT(refusal(R"({"t":"set","name":"VarA","value":"1\nscene /etc/passwd"})"), HasSubstr("one line"));
    EXPECT_THAT(refusal(R"({"t":"set","name":"VarA 1","value":"1"})"), HasSubstr("no word"));
    EXPECT_THAT(refusal(R"({"t":"scene","name":"../../etc/passwd"})"), HasSubstr("no word"));
    EXPECT_NE(refusal(R"({"t":"set","name":"VarA","value":")" + std::string(9000, 'x') + "\"}"), "");
    EXPECT_NE(refusal(std::string(8000, '[')), "");
}

TEST(RateLimit, LetsABurstPassAndThenItsRate) {
    RateLimit limit(10, 5);
    RateLimit::Time now = RateLimit::Time{} + std::chrono::hours(1);
    for (int i = 0; i < 5; ++i) EXPECT_TRUE(limit.pass(now));
    EXPECT_FALSE(limit.pass(now));
    now += std::chrono::milliseconds(100);
    EXPECT_TRUE(limit.pass(now));
    EXPECT_FALSE(limit.pass(now));
    now += std::chrono::hours(1);
    for (int i = 0; i < 5; ++i) EXPECT_TRUE(limit.pass(now));
    EXPECT_FALSE(limit.pass(now));
}

TEST_F(Devices, AKeyIsDownAsLongAsAnybodyHoldsIt) {
    const NamedKey& key = namedKeys[4];  // lm
    held.key(anna, key, true);
    held.key(ben, key, true);
    held.key(anna, key, false);
    EXPECT_EQ(keys(), (std::vector<Record>{{EV_KEY, 260, 1}}));
    held.letGo(ben);
    held.letGo(ben);
    EXPECT_EQ(keys(), (std::vector<Record>{{EV_KEY, 260, 0}}));
}

TEST_F(Devices, TheTouchPanelIsOneHandsUntilItLetsGo) {
    held.touch(anna, {TouchPoint{10, 20}, {}});
    const auto begin = touches();
    ASSERT_EQ(begin.size(), 4U);
    EXPECT_EQ(begin[1][1], ABS_MT_TRACKING_ID);
    held.touch(ben, {TouchPoint{99, 99}, {}});
    EXPECT_EQ(touches(), std::vector<Record>{}) << "ben's finger is not there";
    held.touch(anna, {TouchPoint{10, 20}, TouchPoint{50, 20}});
    EXPECT_EQ(touches().size(), 4U) << "the second finger only";
    held.touch(anna, {TouchPoint{10, 20}, TouchPoint{50, 20}});
    EXPECT_EQ(touches(), std::vector<Record>{});
    held.letGo(anna);
    EXPECT_EQ(touches(), (std::vector<Record>{{EV_ABS, ABS_MT_SLOT, 0},
                                              {EV_ABS, ABS_MT_TRACKING_ID, -1},
                                              {EV_ABS, ABS_MT_SLOT, 1},
                                              {EV_ABS, ABS_MT_TRACKING_ID, -1}}));
    held.touch(ben, {TouchPoint{99, 99}, {}});
    EXPECT_EQ(touches().size(), 4U);
}

TEST_F(Devices, AProductThatReadsNothingIsToldOf) {
    const auto press = [&] {
        for (int i = 0; i < 10'000; ++i) held.key(anna, namedKeys[4], i % 2 == 0);
    };
    EXPECT_THROW(press(), Problem);
    held.letGo(anna);
}

TEST(LogTail, LinesComeOnceAndWholeAndTheLogMayBeginAnew) {
    const std::string file = testing::TempDir() + "panel-log-" + std::to_string(::getpid());
    std::ofstream(file) << "         gui-virtual  Warn                saved.cpp:  55 Skipped: 0\nhalf";
    LogTail tail(file);
    EXPECT_EQ(tail.take(), (std::vector<LogLine>{{6, "gui-virtual", "saved.cpp:55", "Skipped: 0"}}));
    EXPECT_EQ(tail.take(), std::vector<LogLine>{});
    std::ofstream(file, std::ios::app) << " a line\n";
    EXPECT_EQ(tail.take(), (std::vector<LogLine>{{7, "", "", "half a line"}}));
    std::ofstream(file, std::ios::trunc) << " x  DebugAll  a.cpp:1  two spaces\n";
    EXPECT_EQ(tail.take(), (std::vector<LogLine>{{0, "x", "a.cpp:1", " two spaces"}}));
    EXPECT_FALSE(tail.takeGap());

    std::ofstream flood(file, std::ios::app);
    for (std::size_t i = 0; i < LogTail::window / 10; ++i) flood << "x  Error  a.cpp:1 " << i << '\n';
    flood.close();
    const auto lines = tail.take();
    EXPECT_TRUE(tail.takeGap());
    ASSERT_FALSE(lines.empty());
    EXPECT_EQ(lines.front().level, 7);
    EXPECT_EQ(lines.front().program, "x") << "no piece of a line";
    EXPECT_EQ(lines.back().text, std::to_string(LogTail::window / 10 - 1));
    std::filesystem::remove(file);
}

TEST(Notices, AnyProcessPutsThemUpAndTakesThemDown) {
    const Platform::Virtual::TemporaryInstance instance;
    const std::string folder = Platform::Virtual::Instance::current().place().folder;
    const Notices board(folder);
    EXPECT_TRUE(board.all().empty());
    const Notices::Notice wrong = {"model", Notices::Tone::Problem, "1 error", "line 3\nline 4"};
    board.post(wrong);
    board.post({"build", Notices::Tone::Info, "two\nlines", ""});
    EXPECT_EQ(Notices(folder).all(),
              (std::vector<Notices::Notice>{{"build", Notices::Tone::Info, "two lines", ""}, wrong}));
    std::ofstream(folder + "/notices/other") << "no notice";
    EXPECT_EQ(board.all().size(), 2U);
    EXPECT_TRUE(board.remove("build"));
    EXPECT_FALSE(board.remove("build"));
    EXPECT_FALSE(board.remove("../control"));
    EXPECT_THROW(board.post({"../up", Notices::Tone::Info, "", ""}), Problem);
}
