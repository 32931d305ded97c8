#include "apps/common/event/serverconnection.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <thread>
#include <vector>

#include "apps/common/log/log.h"
#include "server.h"
#include "world.h"

using testing::Contains;
using testing::ElementsAre;
using testing::EndsWith;
using testing::HasSubstr;

namespace {

struct Collector final : ServerConnection::EventHandler {
    std::vector<Notify> seen;
    void onNotify(const Notify& notify) override { seen.push_back(notify); }
};

class ServerConnectionTest : public WorldTest {
  protected:
    /// With the server gone first, closing does not wait for more of its data.
    ~ServerConnectionTest() override { server.die(); }

    void connect() {
        connection = std::make_unique<ServerConnection>(&poll);
        connection->setHandler(&handler);
        server.accept();
    }
    EventPoll::Result drain() {
        EventPoll::Result result;
        while ((result = poll.wait(0)) == EventPoll::Handled) {
        }
        return result;
    }
    std::string sendFailure() {
        return fatalTextOf([] { sendEvent(7, 0, 0); });
    }

    Server server;
    EventPoll poll;
    Collector handler;
    std::unique_ptr<ServerConnection> connection;
};

}  // namespace

TEST_F(ServerConnectionTest, ConnectsAndPassesTheGateOn) {
    connect();
    EXPECT_THAT(logTexts(), Contains("Waiting for server"));
    EXPECT_EQ(logTexts().back(), "Connected after 0 attempts");
    EXPECT_EQ(server.gateCount(), 1);
}

TEST_F(ServerConnectionTest, WritesTheWireForms) {
    connect();
    connection->send({257, 1, 2});
    connection->subscribe({7, 0, 0});
    connection->subscribeAll();
    sendEvent(602, 0, 3);
    EXPECT_EQ(server.received(), (std::vector<std::uint32_t>{257, 1, 2, 1, 0, 0, 7, 0, 0, 3, 0, 0, 602, 0, 3}));
}

TEST_F(ServerConnectionTest, NoticesComeInOrder) {
    connect();
    server.send({{7, 0, 0}, {1328, 1, 2}, {0xffffffff, 3, 4}});
    drain();
    ASSERT_EQ(handler.seen.size(), 3U);
    EXPECT_EQ(handler.seen[1], (Notify{1328, 1, 2}));
    EXPECT_EQ(handler.seen[2].id, 0xffffffffU);
}

TEST_F(ServerConnectionTest, OneReadTakes256Notices) {
    connect();
    server.send(std::vector<Notify>(300));
    EXPECT_EQ(poll.wait(0), EventPoll::Handled);
    EXPECT_EQ(handler.seen.size(), 256U);
    EXPECT_EQ(poll.wait(0), EventPoll::Handled);
    EXPECT_EQ(handler.seen.size(), 300U);
    EXPECT_EQ(poll.wait(0), EventPoll::TimedOut);
}

TEST_F(ServerConnectionTest, ASplitRecordIsDroppedAndToldOfAndTheStreamIsMisaligned) {
    for (std::size_t rest = 1; rest < sizeof(Notify); ++rest) {
        connect();
        handler.seen.clear();
        const Notify records[2] = {{7, 0, 0}, {8, 0, 0}};
        server.sendBytes(records, sizeof(Notify) + rest);
        EXPECT_EQ(poll.wait(0), EventPoll::Handled);
        EXPECT_EQ(handler.seen.size(), 1U);
        EXPECT_EQ(logTexts().back(), "Dropped " + std::to_string(rest) +
                                         " bytes of a split record, the records that follow are misaligned");
        EXPECT_EQ(server.gateCount(), 1);
        server.disconnect();
        drain();
        connection.reset();
    }
}

TEST_F(ServerConnectionTest, UnhandledNoticesAreLoggedByName) {
    static constexpr const char* names[] = {"Invalid", "Subscribe"};
    connect();
    connection->setHandler(nullptr);
    connection->setMessageNames(names);
    server.send({{1, 0, 0}, {2, 0, 0}});
    drain();
    EXPECT_THAT(logTexts(), Contains("Unhandled event: Subscribe"));
    EXPECT_THAT(logTexts(), Contains("Unhandled event: 2"));
}

TEST_F(ServerConnectionTest, AFloodIsTakenWhole) {
    connect();
    const int quiet = Log::Error;
    Log::threshold = &quiet;
    std::thread flood([&] {
        const std::vector<Notify> block(1000, Notify{9, 0, 0});
        for (int i = 0; i < 100; ++i) server.send(block);
    });
    while (handler.seen.size() < 100'000) poll.wait(-1);
    flood.join();
    EXPECT_EQ(handler.seen.size(), 100'000U);
    EXPECT_TRUE(connection->isOpen());
}

TEST_F(ServerConnectionTest, AfterAHangUpTheFirstSendIsFatal) {
    connect();
    server.send({{7, 0, 0}});
    server.disconnect();
    EXPECT_EQ(drain(), EventPoll::TimedOut);
    EXPECT_TRUE(handler.seen.empty()) << "what was not read yet is thrown away";
    EXPECT_FALSE(connection->isOpen());
    EXPECT_THAT(sendFailure(), EndsWith("Could not send message to server"));
}

TEST_F(ServerConnectionTest, AServerThatDiesBeforeTheFirstNoticeIsAHangUp) {
    connection = std::make_unique<ServerConnection>(&poll);
    server.die();
    EXPECT_EQ(drain(), EventPoll::TimedOut);
    EXPECT_FALSE(connection->isOpen());
    EXPECT_THAT(sendFailure(), EndsWith("Could not send message to server"));
}

TEST_F(ServerConnectionTest, AServerThatEndsOnlyItsSendingSideIsAHangUpToo) {
    connect();
    server.endSending();
    EXPECT_EQ(drain(), EventPoll::TimedOut) << "an ended stream stays readable for ever";
    EXPECT_FALSE(connection->isOpen());
}

TEST_F(ServerConnectionTest, WithoutAServerTheProcessEndsAfterTwentyTries) {
    server.removeGate();
    const unsigned before = Platform::Virtual::callCount(Call::SemOpen);
    EXPECT_THAT(fatalTextOf([&] { ServerConnection refused(&poll); }), EndsWith("sem_open: No such file or directory"));
    EXPECT_EQ(Platform::Virtual::callCount(Call::SemOpen) - before, 20U);
}

TEST_F(ServerConnectionTest, AServerThatDoesNotListenIsFatalAndLeavesTheGateOpen) {
    server.die();
    EXPECT_THAT(fatalTextOf([&] { ServerConnection refused(&poll); }), EndsWith("connect: Connection refused"));
    EXPECT_EQ(server.gateCount(), 1) << "the successor must not hang at the gate";
    EXPECT_EQ(poll.wait(0), EventPoll::TimedOut) << "nothing stays registered";
}

TEST_F(ServerConnectionTest, WithoutAConnectionNothingCanBeSent) {
    EXPECT_THAT(sendFailure(), EndsWith("Trying to post event without server connection"));
    connect();
    connection.reset();
    EXPECT_THAT(sendFailure(), EndsWith("Trying to post event without server connection"));
}

TEST_F(ServerConnectionTest, AServerThatDoesNotReadStallsTheSenderUntilASignal) {
    connect();
    poll.setTimer(1);
    EXPECT_THAT(fatalTextOf([] {
                    for (;;) sendEvent(7, 0, 0);
                }),
                EndsWith("Could not send message to server"));
    poll.setTimer(-1);
    takeAlarm(poll);
}

TEST_F(ServerConnectionTest, ClosingReadsAwayButNotForEver) {
    connect();
    std::thread endless([&] {
        const std::vector<Notify> block(1000);
        while (server.trySend(block)) {
        }
    });
    connection->close();
    EXPECT_FALSE(connection->isOpen());
    endless.join();
}

TEST_F(ServerConnectionTest, ReadNotifiesGivesWholeRecords) {
    connect();
    Notify records[4] = {};
    server.send({{7, 0, 0}, {8, 0, 0}});
    EXPECT_EQ(readNotifies(connection->descriptor(), records, 4), 2U);
    EXPECT_EQ(records[1].id, 8U);
    EXPECT_THAT(fatalTextOf([&] { readNotifies(-1, records, 4); }), EndsWith("Read error"));
}
