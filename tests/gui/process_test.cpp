// The program from its start to its end, over a stub server, in lockstep.
#include <gtest/gtest.h>

#include <fstream>

#include "product.h"

namespace {

std::size_t countOf(const std::vector<Notify>& records, std::uint32_t id) {
    std::size_t count = 0;
    for (const auto& record : records) count += record.id == id ? 1 : 0;
    return count;
}

TEST(Process, SubscribesInOrderShowsItsPageAndEndsOnSigterm) {
    Product product;
    product.server().set<unsigned char>("VarGuiDesignIsNightStyle", 1);
    product.server().set<std::int32_t>("VarCamState", 1);
    product.start();
    ASSERT_TRUE(product.stepUntilLogged("USER Page: Home_LDD")) << product.log();

    const auto records = product.server().received();
    std::vector<std::uint32_t> subscribed;
    for (std::size_t i = 0; i + 1 < records.size() && records[i].id == 1; i += 2)
        subscribed.push_back(records[i + 1].id);
    ASSERT_EQ(subscribed.size(), Catalogue::subscriptions.size());
    for (std::size_t i = 0; i < subscribed.size(); ++i) ASSERT_EQ(subscribed[i], Catalogue::subscriptions[i]) << i;

    EXPECT_EQ(product.pixel(120, 33), 0xff8080u) << "the rule carries the colour of a recording camera";
    EXPECT_EQ(product.stop(), 0);
}

TEST(Process, ShowsAChangeOfTheServerInTheSameFrame) {
    Product product;
    product.start();
    ASSERT_TRUE(product.stepUntilLogged("USER Page: Home_LDD")) << product.log();
    ASSERT_TRUE(product.step(3));
    product.server().received();
    const auto pans = product.driver().pans();
    ASSERT_TRUE(product.step(5));
    EXPECT_EQ(product.driver().pans(), pans) << "an idle frame draws nothing";

    product.server().change<std::int32_t>("VarCamState", 6);
    ASSERT_TRUE(product.step(1));
    EXPECT_EQ(product.driver().pans(), pans + 1);
    EXPECT_EQ(product.pixel(120, 33), 0xffc880u);
    EXPECT_EQ(product.stop(), 0);
}

TEST(Process, CountsMissedFramesAndSendsItsOwnWritesOnce) {
    Product product;
    product.server().set<unsigned char>("VarJoystickControlsGui", 1);
    product.start();
    ASSERT_TRUE(product.stepUntilLogged("USER Page: Home_LDD")) << product.log();
    // Beside the subscription of the id there is the one notice of the page that was entered. The server reads on a
    // thread of its own: it has read it all when it has read the answer to a later change.
    const auto joystick = Catalogue::findValue("VarJoystickControlsGui")->id;
    std::vector<Notify> records;
    for (int tries = 0; tries < 100 && countOf(records, joystick) < 2; ++tries) {
        ASSERT_TRUE(product.step());
        for (const Notify& record : product.server().received()) records.push_back(record);
    }
    EXPECT_EQ(countOf(records, joystick), 2u);
    EXPECT_EQ(product.server().get<unsigned char>("VarJoystickControlsGui"), 0);

    ASSERT_TRUE(product.step());
    const int before = product.server().get<std::int32_t>("VarGuiMissedFrames");
    product.driver().advanceClock(100'000'000);
    ASSERT_TRUE(product.step(2));
    EXPECT_GE(product.server().get<std::int32_t>("VarGuiMissedFrames"), before + 5);
    EXPECT_EQ(product.stop(), 0);
}

TEST(Process, TestPicturesFillTheDisplayAndUnknownOnesLeaveIt) {
    Product product;
    product.start();
    ASSERT_TRUE(product.stepUntilLogged("USER Page: Home_LDD"));
    for (const auto& [picture, color] :
         {std::pair<int, std::uint32_t>{1, 0xff0000}, {2, 0x00ff00}, {3, 0x0000ff}, {4, 0xffffff}, {5, 0x000000}}) {
        product.server().set<std::int32_t>("VarServiceModeDisplayTest", picture);
        ASSERT_TRUE(product.step(2));
        EXPECT_EQ(product.pixel(0, 0), color);
        EXPECT_EQ(product.pixel(239, 399), color);
    }
    product.server().set<std::int32_t>("VarServiceModeDisplayTest", 6);
    ASSERT_TRUE(product.step(2));
    EXPECT_EQ(product.pixel(10, 0), 0x000000u);
    EXPECT_EQ(product.pixel(70, 399), 0xfe0000u);
    const auto pans = product.driver().pans();
    product.server().set<std::int32_t>("VarServiceModeDisplayTest", 7);
    ASSERT_TRUE(product.step(2));
    EXPECT_EQ(product.driver().pans(), pans + 2);
    EXPECT_EQ(product.stop(), 0);
}

TEST(Process, StartsWithWhateverTheAreasHold) {
    for (const int fill : {0x00, 0xff, 0x5a}) {
        Product product;
        for (std::size_t i = 0; i < Catalogue::areas.size(); ++i)
            std::memset(product.server().area(i), fill, Catalogue::areas[i].size);
        product.server().set<std::int32_t>("VarServiceModeDisplayTest", 0);
        product.server().set<unsigned char>("VarScreenSaverActive", 0);
        product.server().set<std::int32_t>("VarAppGuiLogLevel", 0);
        product.start();
        EXPECT_TRUE(product.stepUntilLogged("USER Page: Home_LDD")) << fill;
        EXPECT_TRUE(product.step(30));
        EXPECT_EQ(product.stop(), 0) << fill;
    }
}

TEST(Process, ADisplayOfAnotherDepthIsRefusedBeforeItIsDrawnOn) {
    Product product;
    Platform::Virtual::Instance::current().setScreen(240, 400, 16);
    product.start();
    EXPECT_EQ(product.waitForEnd(), -1) << "the supervisor starts it again";
    EXPECT_NE(product.log().find("/dev/fb0: the display has 16 bits a pixel, 32 are needed."), std::string::npos)
        << product.log();
    EXPECT_EQ(product.driver().pans(), 1u) << "the one that opens the display";
}

TEST(Process, ATextVerificationIsRefusedAfterAFullStart) {
    Product product;
    product.start({"-r", "-t", "3"});
    EXPECT_EQ(product.waitForEnd(), 1);
    std::ifstream errors(Platform::Virtual::Instance::current().place().folder + "/stderr");
    const std::string text((std::istreambuf_iterator<char>(errors)), std::istreambuf_iterator<char>());
    EXPECT_EQ(
        text,
        "You must compile the GUI with GUI_TEXT_VERIFICATION enabled.\nCan't run text verification with index 3.\n");
}

}  // namespace
