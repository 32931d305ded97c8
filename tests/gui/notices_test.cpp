// What the program does at a notice beyond its variables, over a stub server that echoes, in lockstep.
#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <fstream>

#include "product.h"

namespace {

class Notices : public testing::Test {
  protected:
    void begin() {
        product_.start();
        ASSERT_TRUE(product_.stepUntilLogged("USER Page: Home_LDD")) << product_.log();
        settle();
    }
    /// Frames with the server's echo, until nothing more is said.
    void settle(int frames = 6) {
        for (int i = 0; i < frames; ++i) {
            ASSERT_TRUE(product_.step());
            const auto records = product_.server().received();
            if (started_) product_.server().echo(records);
            sent_.insert(sent_.end(), records.begin(), records.end());
            started_ = true;
        }
    }
    std::ptrdiff_t sent(std::uint32_t id) const { return std::ranges::count(sent_, id, &Notify::id); }
    std::string file(const char* path) const { return Platform::Virtual::path(path); }

    Product product_;
    std::vector<Notify> sent_;
    bool started_ = false;
};

TEST_F(Notices, AMessageIsShownAnsweredAndFollowedByTheNext) {
    begin();
    auto& server = product_.server();
    server.change<std::int32_t>("VarMessageShow", 16);
    server.change<unsigned char>("VarFatalSystemError", 1);
    settle();
    EXPECT_EQ(server.get<unsigned char>("VarFatalSystemError"), 0);
    EXPECT_EQ(server.get<std::int32_t>("VarMessageShow"), 0);
    EXPECT_EQ(product_.pixel(120, 345), 0xff4c42u) << "the more important one stands on the screen";
    EXPECT_EQ(product_.pixel(200, 396), 0x000000u) << "with a key to close it";
    EXPECT_EQ(product_.pixel(40, 396), 0xff4c42u) << "and only one";
    server.change<std::int32_t>("VarSimulateButtonPress", 8);
    settle();
    EXPECT_EQ(product_.pixel(120, 345), 0x00b05bu) << "the lesser one comes next";
    server.change<std::int32_t>("VarSimulateButtonPress", 8);
    settle();
    EXPECT_EQ(server.get<unsigned char>("VarMessageIsVisible"), 0);
    const auto said = sent_.size();
    settle();
    EXPECT_EQ(sent_.size(), said) << "echoes end";
    EXPECT_EQ(product_.stop(), 0);
}

TEST_F(Notices, AMessageClosesItselfAndAnotherComesBackUntilAnswered) {
    begin();
    auto& server = product_.server();
    server.change<unsigned char>("VarEndSlateWarning", 1);
    settle();
    EXPECT_EQ(server.get<unsigned char>("VarMessageIsVisible"), 1);
    settle(200);
    EXPECT_EQ(server.get<unsigned char>("VarMessageIsVisible"), 0) << "after three seconds";
    for (int i = 0; i < 2; ++i) {
        server.change<unsigned char>("VarFileAlreadyExists", 1);
        settle();
        EXPECT_EQ(server.get<unsigned char>("VarMessageIsVisible"), 1);
        server.change<std::int32_t>("VarSimulateButtonPress", 6);
        settle();
        EXPECT_EQ(server.get<unsigned char>("VarMessageIsVisible"), 0);
    }
    EXPECT_EQ(product_.stop(), 0);
}

TEST_F(Notices, ColumnsMasksAndMotorsAreWorkedOutAtTheStartAndLater) {
    auto& server = product_.server();
    server.set<std::int32_t>("VarKnobAssignment", 1);
    server.set<std::int32_t>("VarSliderAssignment", 12345);
    server.set<unsigned char>("VarFocusMotor.CalRequest", 1);
    server.set<unsigned char>("VarFocusMotor.CalSkippable", 1);
    begin();
    EXPECT_EQ(server.get<std::int32_t>("VarFocusPositionX"), 160);
    EXPECT_EQ(server.get<std::int32_t>("VarSliderAssignment"), 0) << "an assignment that cannot be is taken back";
    EXPECT_EQ(server.get<std::uint16_t>("VarKnobAssignmentFlags"), 0x0f);
    EXPECT_EQ(server.get<unsigned char>("VarAllMotorsCalSkippable"), 1);
    server.change<unsigned char>("VarGuiRotate", 1);
    settle();
    EXPECT_EQ(server.get<std::int32_t>("VarFocusPositionX"), 0);
    server.change<unsigned char>("VarHwFullUnit", 1);
    server.change<unsigned char>("VarCinefadeAvailable", 0);
    settle();
    EXPECT_EQ(server.get<std::int32_t>("VarMultiSegmentFlags"), 0x6f);
    server.change<std::int32_t>("VarSimulateButtonDown", 99);
    settle();
    EXPECT_NE(product_.log().find("Can't simulate button 99"), std::string::npos);
    EXPECT_EQ(product_.stop(), 0);
}

TEST_F(Notices, ACaptureIsWrittenAndABadNameIsNot) {
    std::filesystem::create_directories(file("/tmp"));
    begin();
    auto& server = product_.server();
    const auto capture = [&](const char* name) {
        std::array<char, 128> field = {};
        std::string(name).copy(field.data(), field.size());
        server.change("VarGuiScreenCaptureName", field);
        settle(2);
    };
    capture("../evil");
    capture("home");
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(file("/tmp")))
        names.push_back(entry.path().filename());
    ASSERT_EQ(names.size(), 1u);
    EXPECT_TRUE(names[0].starts_with("gui-capture-") && names[0].ends_with("-home.png")) << names[0];
    EXPECT_EQ(product_.stop(), 0);
}

TEST_F(Notices, TheSlideshowShowsPicturesAndEndsAtABrokenOne) {
    const std::string folder = file("/media/usb/TERN/IMAGES/");
    std::filesystem::create_directories(folder);
    std::filesystem::copy(TERN_BINARY_DIR "/gen/share/qz-boot-logo.png", folder + "a.png");
    auto& server = product_.server();
    server.set<std::int32_t>("VarScreenSaverMode", 10);
    server.set<std::int32_t>("VarUsbState", 1);
    begin();
    server.change<unsigned char>("VarScreenSaverActive", 1);
    settle();
    EXPECT_EQ(product_.pixel(120, 200), 0xffffffu) << "the thick line of the picture";
    server.change<unsigned char>("VarScreenSaverActive", 0);
    settle();
    std::ofstream(folder + "a.png", std::ios::trunc) << "\x89PNG\r\n\x1a\nnothing behind it";
    server.change<unsigned char>("VarScreenSaverActive", 1);
    settle();
    EXPECT_EQ(server.get<unsigned char>("VarScreenSaverActive"), 0);
    EXPECT_EQ(product_.pixel(120, 345), 0x00b05bu) << "a message tells why";
    std::filesystem::remove_all(folder);
    server.change<unsigned char>("VarScreenSaverActive", 1);
    settle();
    EXPECT_NE(product_.log().find("Could not find images on USB"), std::string::npos);
    EXPECT_EQ(product_.stop(), 0);
}

TEST_F(Notices, TheBootLogoStandsForTwoSeconds) {
    std::filesystem::create_directories(file("/usr/share"));
    std::filesystem::copy(TERN_BINARY_DIR "/gen/share/qz-boot-logo.png", file("/usr/share/qz-boot-logo.png"));
    const auto before = product_.driver().time();
    product_.start();
    ASSERT_TRUE(product_.driver().awaitRest());
    for (int i = 0; i < 3 && product_.pixel(120, 200) != 0xffffffu; ++i) ASSERT_TRUE(product_.step());
    EXPECT_EQ(product_.pixel(120, 200), 0xffffffu);
    ASSERT_TRUE(product_.step());
    EXPECT_GE(product_.driver().time() - before, 2'000'000'000);
    EXPECT_EQ(product_.stop(), 0);
}

}  // namespace
