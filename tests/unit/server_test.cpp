// The whole server in this process, met by clients over its sockets.
#include "unit/server/server.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <sys/socket.h>

#include <algorithm>
#include <cstring>
#include <memory>
#include <nlohmann/json.hpp>

#include "platform/system.h"
#include "platform/virtual/virtual.h"

using nlohmann::json;

namespace {

class Peer {
  public:
    explicit Peer(const char* path) : fd_(Platform::socket(AF_UNIX, SOCK_STREAM, 0)) {
        EXPECT_EQ(Platform::connectUnix(fd_, path), 0) << path;
        Platform::fcntl(fd_, F_SETFL, O_NONBLOCK);
    }
    ~Peer() { Platform::close(fd_); }
    Peer(const Peer&) = delete;
    Peer& operator=(const Peer&) = delete;

    void send(const void* data, std::size_t size) {
        EXPECT_EQ(Platform::write(fd_, data, size), static_cast<ssize_t>(size));
    }
    void send(std::uint32_t id) {
        const Notify record = {id, 0, 0};
        send(&record, sizeof record);
    }
    void subscribe(std::uint32_t id) {
        send(1);
        send(id);
    }
    /// What has come until now; -1 as its size when the other side has hung up.
    std::string bytes() {
        std::string all;
        char block[4096];
        ssize_t got;
        while ((got = Platform::read(fd_, block, sizeof block)) > 0) all.append(block, static_cast<std::size_t>(got));
        ended_ = got == 0;
        return all;
    }
    std::vector<std::uint32_t> ids() {
        const std::string all = bytes();
        std::vector<std::uint32_t> ids;
        for (std::size_t at = 0; at + sizeof(Notify) <= all.size(); at += sizeof(Notify)) {
            std::uint32_t id;
            std::memcpy(&id, all.data() + at, sizeof id);
            ids.push_back(id);
        }
        return ids;
    }
    bool ended() {
        bytes();
        return ended_;
    }

  private:
    int fd_;
    bool ended_ = false;
};

constexpr std::uint32_t knobAssignment = 26, sliderAssignment = 27;

class ServerTest : public testing::Test {
  protected:
    ServerTest() { start(); }

    void start() {
        server_ = std::make_unique<Unit::Server>(
            Unit::Surroundings{.folder = Platform::Virtual::path("/tmp"), .wallClock = false}, Unit::Pace::Lockstep);
        server_->open();
    }
    std::string ask(const std::string& line) { return server_->answer(line); }
    void turn() {
        for (int i = 0; i < 4; ++i) server_->turn(0);
    }

    Platform::Virtual::TemporaryInstance instance_;
    std::unique_ptr<Unit::Server> server_;
};

}  // namespace

TEST_F(ServerTest, EchoesToEverySubscriberTheSenderIncluded) {
    Peer sender(Unit::Broker::socketPath), other(Unit::Broker::socketPath), all(Unit::Broker::socketPath);
    sender.subscribe(knobAssignment);
    other.subscribe(sliderAssignment);
    all.send(3);
    turn();
    sender.send(knobAssignment);
    ask("tick");
    const auto echoed = sender.ids();
    EXPECT_EQ(std::count(echoed.begin(), echoed.end(), knobAssignment), 1);
    EXPECT_TRUE(other.ids().empty());
    const auto everything = all.ids();
    EXPECT_EQ(std::count(everything.begin(), everything.end(), knobAssignment), 1);
    EXPECT_EQ(ask("journal"), "ok [26]");
    EXPECT_EQ(ask("journal"), "ok []");
}

TEST_F(ServerTest, InLockstepNoticesWaitForATickButSubscribingDoesNot) {
    Peer client(Unit::Broker::socketPath);
    for (std::uint32_t id = 7; id < 1300; ++id) {  // more than a socket holds
        client.subscribe(id);
        if (id % 50 == 0) turn();
    }
    client.send(knobAssignment);
    turn();
    EXPECT_TRUE(client.ids().empty());
    ask("drain");
    EXPECT_EQ(client.ids(), std::vector<std::uint32_t>{knobAssignment});
    EXPECT_EQ(json::parse(ask("subscriptions").substr(3)).size(), 1293U);
}

TEST_F(ServerTest, PutsTogetherRecordsThatComeInPieces) {
    Peer client(Unit::Broker::socketPath);
    client.subscribe(knobAssignment);
    const Notify record = {knobAssignment, 0, 0};
    client.send(&record, 5);
    ask("drain");
    client.send(reinterpret_cast<const char*>(&record) + 5, 7);
    ask("drain");
    EXPECT_EQ(client.ids(), std::vector<std::uint32_t>{knobAssignment});
    client.send(70000);
    client.subscribe(70000);
    ask("drain");
    EXPECT_EQ(ask("journal"), "ok [26]");
}

TEST_F(ServerTest, LeavesNothingBehindAndStartsOverWhatAKilledOneLeft) {
    server_.reset();
    for (const char* name : {"/MemDynamic", "/MemApp"}) EXPECT_LT(Platform::shmOpen(name, O_RDWR, 0), 0);
    EXPECT_EQ(Platform::semOpen("/message-broker-ready", 0), SEM_FAILED);
    sem_t* stale = Platform::semOpen("/message-broker-ready", O_CREAT, 0666, 0);
    start();
    Platform::semClose(stale);
    sem_t* gate = Platform::semOpen("/message-broker-ready", 0);
    ASSERT_NE(gate, SEM_FAILED);
    EXPECT_EQ(sem_trywait(gate), 0);
    // A client that dies here would shut everybody out.
    for (int tick = 0; tick < 200; ++tick) ask("tick");
    EXPECT_EQ(sem_trywait(gate), 0);
    Platform::semClose(gate);
}

TEST_F(ServerTest, AnswersRequestsInLinesAndTellsWatchers) {
    Peer control(Unit::ControlSocket::socketPath);
    const std::string requests =
        "set VarLanguage German\nget VarLanguage\nget VarLanguag\r\nwatch\nset VarSoundVolume 3\n";
    control.send(requests.data(), 10);
    turn();
    control.send(requests.data() + 10, requests.size() - 10);
    turn();
    const auto id = Unit::Store::find("VarSoundVolume")->id;
    EXPECT_EQ(control.bytes(),
              "ok\nok 3\nerror There is no variable VarLanguag. Did you mean VarLanguage?\nok\nchanged " +
                  std::to_string(id) + "\nok\n");
}

TEST_F(ServerTest, RefusesWrongRequestsWithoutHarm) {
    for (const char* wrong : {"",
                              "nothing",
                              "set",
                              "set VarKnob",
                              "set VarKnob 2",
                              "get",
                              "tick soon",
                              "tick -1",
                              "lockstep perhaps",
                              "send 99999",
                              "scene /nowhere.json",
                              "do",
                              "do lens",
                              "do lens lens",
                              "do lens lens fisheye",
                              "do hands knob high",
                              "hostile",
                              "hostile split 12",
                              "hostile truncate MemNone",
                              "hostile torn VarKnob",
                              "poke VarKnob x"})
        EXPECT_EQ(ask(wrong).substr(0, 6), "error ") << wrong;
}

TEST_F(ServerTest, TheSameRequestsGiveTheSameMemory) {
    const auto run = [this] {
        server_.reset();
        std::filesystem::remove(Platform::Virtual::path("/tmp/settings.json"));
        start();
        ask("scene " TERN_SOURCE_DIR "/unit/scenes/zoom-feet-marks.json");
        ask("do motors iris new");
        for (int tick = 0; tick < 300; ++tick) {
            if (tick == 100) ask("do hands knob 0.8");
            ask("tick");
        }
        std::string all;
        for (const auto& value : Catalogue::values)
            if (const auto cell = Unit::Store::find(value.name))
                all += server_->simulation().store().show(*cell) + "\n";
        return all;
    };
    EXPECT_EQ(run(), run());
}

TEST_F(ServerTest, SplitsRecordsStormsAndSendsUnknownIds) {
    Peer client(Unit::Broker::socketPath);
    client.subscribe(knobAssignment);
    ask("drain");
    ask("hostile split 5");
    ask("send 26");
    EXPECT_EQ(client.bytes().size(), 7U);
    ask("hostile off");
    ask("drain");
    EXPECT_EQ(client.bytes().size(), 5U);
    ask("hostile unknown");
    ask("tick");
    const auto ids = client.ids();
    EXPECT_EQ(std::count(ids.begin(), ids.end(), 0xffffffffU), 1);
    ask("hostile off");
    ask("hostile storm 2600");  // twice through all ids
    ask("tick");
    const auto storm = client.ids();
    EXPECT_GE(std::count(storm.begin(), storm.end(), knobAssignment), 2);
}

TEST_F(ServerTest, ADeafServerReadsNothingUntilItIsOver) {
    Peer client(Unit::Broker::socketPath);
    client.subscribe(knobAssignment);
    ask("drain");
    ask("hostile deaf");
    client.send(knobAssignment);
    ask("tick");
    EXPECT_TRUE(client.ids().empty());
    ask("hostile off");
    ask("tick");
    EXPECT_EQ(client.ids(), std::vector<std::uint32_t>{knobAssignment});
}

TEST_F(ServerTest, ARestartHangsUpAndComesBack) {
    Peer client(Unit::Broker::socketPath);
    client.subscribe(knobAssignment);
    ask("drain");
    ask("hostile restart 3");
    ask("tick");
    EXPECT_TRUE(client.ended());
    EXPECT_FALSE(json::parse(ask("status").substr(3))["open"]);
    for (int tick = 0; tick < 3; ++tick) ask("tick");
    Peer next(Unit::Broker::socketPath);
    next.subscribe(knobAssignment);
    ask("drain");
    next.send(knobAssignment);
    ask("drain");
    EXPECT_EQ(next.ids(), std::vector<std::uint32_t>{knobAssignment});
}

TEST_F(ServerTest, DamagedAreasMeetOnlyWhoOpensThemLater) {
    EXPECT_EQ(ask("hostile truncate MemLens 100"), "ok");
    EXPECT_EQ(ask("do lens lens prime-35"), "ok");
    SharedMemory lens("MemLens", 59292);
    lens.open();
    EXPECT_THROW(lens.address(), std::runtime_error);
    EXPECT_EQ(ask("hostile header MemApp 71"), "ok");
    SharedMemory app("MemApp", 72);
    app.open();
    EXPECT_THROW(app.address(), std::runtime_error);
    ask("hostile off");
    SharedMemory again("MemApp", 72);
    again.open();
    EXPECT_NO_THROW(again.address());
    EXPECT_EQ(ask("hostile torn VarUserButton4_Name"), "ok");
    EXPECT_EQ(ask("get VarUserButton4_Name").substr(0, 9), "ok xxxxxx");
}
