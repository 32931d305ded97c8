#include "apps/common/log/log.h"

#include <errno.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <stdexcept>
#include <string>

#include "world.h"

using testing::AllOf;
using testing::EndsWith;
using testing::HasSubstr;
using testing::StartsWith;

namespace {

constexpr std::size_t prefixWidth = 22;
constexpr std::size_t levelWidth = 12;

class LogTest : public WorldTest {};

/// What stands after the prefix of the program and the level's text.
std::string messageOf(const std::string& line) {
    return line.substr(prefixWidth + levelWidth);
}

template <typename Call>
std::string thrownBy(Call call) {
    try {
        call();
    } catch (const std::runtime_error& error) {
        return error.what();
    }
    return "nothing thrown";
}

}  // namespace

TEST_F(LogTest, ALineIsPrefixLevelPlaceAndText) {
    Log::log(nullptr, Log::Warn, "some/folder/file.cpp", 42, "value %i of %s", 7, "nine");
    const std::string line = lastLogLine();
    EXPECT_EQ(line.substr(0, prefixWidth), "          link-tests  ");
    EXPECT_EQ(line.substr(prefixWidth), "Warn                    file.cpp:  42 value 7 of nine");
}

TEST_F(LogTest, TheThresholdIsReadAtEachCall) {
    int limit = Log::LogLight;
    Log::log(&limit, Log::LogMost, "f", 1, "below");
    Log::log(&limit, Log::LogLight, "f", 1, "at");
    limit = Log::Warn;
    Log::log(&limit, Log::LogLight, "f", 1, "below now");
    Log::log(nullptr, Log::DebugAll, "f", 1, "no threshold");
    EXPECT_EQ(logTexts(), (std::vector<std::string>{"at", "no threshold"}));
}

TEST_F(LogTest, LevelsOutsideTheTableAreDrawnToItsEnds) {
    Log::log(nullptr, -3, "f", 1, "x");
    EXPECT_THAT(lastLogLine(), HasSubstr("DebugAll    "));
    Log::log(nullptr, 99, "f", 1, "x");
    EXPECT_THAT(lastLogLine(), HasSubstr("Error       "));
}

TEST_F(LogTest, ALongLineIsCut) {
    Log::log(nullptr, Log::Warn, "f", 1, "%s", std::string(2000, 'x').c_str());
    EXPECT_EQ(messageOf(lastLogLine()).size(), std::size_t{Log::lineLimit});
    EXPECT_THAT(lastLogLine(), EndsWith("xxx"));
    Log::log(nullptr, Log::Warn, std::string(2000, 'y').c_str(), 1, "text");
    EXPECT_EQ(messageOf(lastLogLine()).size(), std::size_t{Log::lineLimit});
}

TEST_F(LogTest, TextFromOutsideIsNeverAFormat) {
    const char* const hostile = "%n%s%s%999999d";
    Log::log(nullptr, Log::Warn, "f", 1, "name %s", hostile);
    EXPECT_THAT(lastLogLine(), EndsWith("name %n%s%s%999999d"));
    Log::logWithHeader(nullptr, "f", 1, hostile, "%s", hostile);
    EXPECT_EQ(lastLogLine(), hostile);
    errno = ENOENT;
    EXPECT_THAT(thrownBy([&] { Log::errnoFatal("f", 1, hostile); }), HasSubstr("%n%s%s%999999d: No such file"));
    EXPECT_THAT(thrownBy([&] { Log::fatal("f", 1, "%s", hostile); }), EndsWith(hostile));
}

TEST_F(LogTest, TheEngineHasLevelsOfItsOwn) {
    const std::pair<int, const char*> levels[] = {{0, "Error "},      {1, "Warn "},     {2, "LogLight "},
                                                  {3, "DebugLight "}, {4, "LogLight "}, {5, "DebugLight "},
                                                  {-1, "DebugLight "}};
    for (const auto& [level, text] : levels) {
        Log::engineLog(level, "f", 1, "x");
        EXPECT_THAT(lastLogLine().substr(prefixWidth), StartsWith(text)) << "engine level " << level;
    }
}

TEST_F(LogTest, FatalFormsWriteWhatTheyThrow) {
    const int nothingPasses = 100;
    Log::threshold = &nothingPasses;
    EXPECT_EQ(thrownBy([] { Log::fatal("a/b.cpp", 5, "bad %i", 1); }), "               b.cpp:   5 bad 1");
    EXPECT_EQ(lastLogLine().substr(prefixWidth), "Error                      b.cpp:   5 bad 1");
    errno = EACCES;
    EXPECT_THAT(thrownBy([] { Log::errnoFatal("f", 1, "open"); }), EndsWith(" open: Permission denied"));
    EXPECT_EQ(errno, EACCES);
    EXPECT_THAT(thrownBy([] { Log::errnoFatalLog("f", 1, "open"); }), EndsWith(" open: Permission denied"));
    EXPECT_THAT(lastLogLine(), AllOf(HasSubstr("LogLight    "), EndsWith(" open: Permission denied")));
}

TEST_F(LogTest, TheHeaderStandsOnALineOfItsOwn) {
    Log::logWithHeader(nullptr, "f", 1, "Header", "%i lines", 2);
    EXPECT_THAT(logText(), EndsWith("Warn                           f:   1 Header:\n2 lines\n"));
}

TEST_F(LogTest, ALineThatCannotBeWrittenIsToldOnStderr) {
    Platform::Virtual::failCall(Call::Writev, ENOSPC);
    testing::internal::CaptureStderr();
    errno = EBUSY;
    Log::log(nullptr, Log::Warn, "f", 1, "lost");
    EXPECT_EQ(errno, EBUSY);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "FATAL: Logging: Write failed: No space left on device\n");
    Log::log(nullptr, Log::Warn, "f", 1, "kept");
    EXPECT_EQ(logTexts().back(), "kept");
}

TEST_F(LogTest, AMissingDeviceIsToldForEachLine) {
    Log::setDevice("/dev/absent");
    testing::internal::CaptureStderr();
    Log::log(nullptr, Log::Warn, "f", 1, "lost");
    Log::log(nullptr, Log::Warn, "f", 1, "lost");
    const std::string once = "FATAL: Logging: Write failed: No such file or directory\n";
    EXPECT_EQ(testing::internal::GetCapturedStderr(), once + once);
}
