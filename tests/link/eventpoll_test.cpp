#include "apps/common/event/eventpoll.h"

#include <fcntl.h>
#include <netinet/in.h>
#include <poll.h>
#include <signal.h>
#include <sys/epoll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <functional>
#include <vector>

#include "world.h"

using testing::ElementsAre;
using testing::EndsWith;

namespace {

struct Recorder final : EventPoll::Callback {
    std::vector<int> seen;
    void onPollEvent(int what) override { seen.push_back(what); }
};

class EventPollTest : public WorldTest {
  protected:
    EventPollTest() { EXPECT_EQ(socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends), 0); }
    ~EventPollTest() override {
        ::close(ends[0]);
        ::close(ends[1]);
    }
    void sendByte() { EXPECT_EQ(::write(ends[1], "x", 1), 1); }

    int ends[2] = {-1, -1};
    EventPoll poll;
    Recorder client;
};

/// Two ends of a connection that knows urgent data.
struct TcpPair {
    int receiver = -1;
    int sender = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    TcpPair() {
        sockaddr_in address = {};
        address.sin_family = AF_INET;
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        auto* const name = reinterpret_cast<sockaddr*>(&address);
        socklen_t size = sizeof address;
        const int listener = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
        EXPECT_EQ(::bind(listener, name, size), 0);
        EXPECT_EQ(::listen(listener, 1), 0);
        EXPECT_EQ(::getsockname(listener, name, &size), 0);
        EXPECT_EQ(::connect(sender, name, size), 0);
        receiver = ::accept(listener, nullptr, nullptr);
        ::close(listener);
    }
    TcpPair(const TcpPair&) = delete;
    TcpPair& operator=(const TcpPair&) = delete;
    ~TcpPair() {
        ::close(receiver);
        ::close(sender);
    }
};

bool isEpollHandle(int fd) {
    std::error_code none;
    return std::filesystem::read_symlink("/proc/self/fd/" + std::to_string(fd), none) == "anon_inode:[eventpoll]";
}

/// A stop request stays for the life of the process, so what asks for one runs in a process of its own.
using EventPollDeathTest = EventPollTest;

void runInChild(const std::function<bool()>& check) {
    EXPECT_EXIT(std::_Exit(check() ? 0 : 1), testing::ExitedWithCode(0), "");
}

}  // namespace

TEST_F(EventPollTest, AReadableDescriptorCallsItsClientOnceAWait) {
    poll.add(ends[0], &client, EPOLLIN);
    EXPECT_TRUE(logTexts().front().starts_with("Add new client " + std::to_string(ends[0]) + "/"));
    EXPECT_EQ(poll.wait(0), EventPoll::TimedOut);
    sendByte();
    EXPECT_EQ(poll.wait(0), EventPoll::Handled);
    EXPECT_THAT(client.seen, ElementsAre(EventPoll::Readable));
    poll.remove(ends[0]);
    EXPECT_EQ(logTexts().back(), "Remove  client " + std::to_string(ends[0]));
    EXPECT_EQ(poll.wait(0), EventPoll::TimedOut);
}

TEST_F(EventPollTest, AHangUpGoesBeforeWhatCanStillBeRead) {
    poll.add(ends[0], &client, EPOLLIN);
    sendByte();
    ::shutdown(ends[1], SHUT_RDWR);
    EXPECT_EQ(poll.wait(0), EventPoll::Handled);
    EXPECT_THAT(client.seen, ElementsAre(EventPoll::HangUp));
}

TEST_F(EventPollTest, PriorityDataGoesBeforeTheRest) {
    const TcpPair tcp;
    poll.add(tcp.receiver, &client, EPOLLIN | EPOLLPRI);
    EXPECT_EQ(::send(tcp.sender, "ab", 2, 0), 2);
    EXPECT_EQ(::send(tcp.sender, "!", 1, MSG_OOB), 1);
    pollfd arrived = {tcp.receiver, POLLPRI, 0};
    ASSERT_EQ(::poll(&arrived, 1, 5000), 1);
    EXPECT_EQ(poll.wait(0), EventPoll::Handled);
    EXPECT_THAT(client.seen, ElementsAre(EventPoll::Priority));
}

TEST_F(EventPollTest, AnErrorAloneCallsNobodyAndCountsAsHandled) {
    int pipe[2];
    ASSERT_EQ(::pipe2(pipe, O_CLOEXEC), 0);
    ::close(pipe[0]);
    poll.add(pipe[1], &client, 0);
    EXPECT_EQ(poll.wait(0), EventPoll::Handled);
    EXPECT_TRUE(client.seen.empty());
    ::close(pipe[1]);
}

TEST_F(EventPollTest, ClientsMayBeCallablesOrNobody) {
    std::vector<int> seen;
    EventPoll::FunctionCallback function([&](int what) { seen.push_back(what); });
    poll.add(ends[0], &function, EPOLLIN);
    sendByte();
    poll.wait(0);
    EXPECT_THAT(seen, ElementsAre(EventPoll::Readable));
    poll.remove(ends[0]);

    EventPoll::FunctionCallback empty(nullptr);
    poll.add(ends[0], &empty, EPOLLIN);
    EXPECT_THROW(poll.wait(0), std::bad_function_call);
    poll.remove(ends[0]);

    poll.add(ends[0], nullptr, EPOLLIN);
    EXPECT_EQ(poll.wait(0), EventPoll::Handled);
    EXPECT_EQ(logTexts().back(), "Unhandled event: 00000001");
}

TEST_F(EventPollTest, OneWaitHandlesEightDescriptors) {
    int copies[10];
    sendByte();
    for (int& copy : copies) {
        copy = ::dup(ends[0]);
        poll.add(copy, &client, EPOLLIN);
    }
    poll.wait(0);
    EXPECT_EQ(client.seen.size(), 8U);
    for (const int copy : copies) ::close(copy);
}

TEST_F(EventPollTest, AClosedHandleRefusesAllButRemove) {
    poll.close();
    poll.close();
    poll.remove(ends[0]);
    EXPECT_THAT(fatalTextOf([&] { poll.add(ends[0], &client, EPOLLIN); }),
                EndsWith("add called on an already closed handle"));
    EXPECT_THAT(fatalTextOf([&] { poll.wait(0); }), EndsWith("wait called on an already closed handle"));
}

TEST_F(EventPollTest, TheHandleIsNotInherited) {
    for (int fd = 3; fd < 64; ++fd) {
        const int flags = ::fcntl(fd, F_GETFD);
        if (flags >= 0 && isEpollHandle(fd)) {
            EXPECT_NE(flags & FD_CLOEXEC, 0) << fd;
        }
    }
}

TEST_F(EventPollTest, TheTimerEndsAWaitAndIsPeriodic) {
    poll.setTimer(1);
    EXPECT_EQ(poll.wait(-1), EventPoll::TimerExpired);
    EXPECT_EQ(poll.wait(-1), EventPoll::TimerExpired);
    poll.setTimer(-1);
    poll.setTimer(-1);
    takeAlarm(poll);
    EXPECT_EQ(poll.wait(0), EventPoll::TimedOut);
}

TEST_F(EventPollTest, ItsTimerGoesWithIt) {
    const unsigned before = Platform::Virtual::callCount(Call::TimerDelete);
    {
        EventPoll other;
        other.setTimer(60'000);
    }
    EXPECT_EQ(Platform::Virtual::callCount(Call::TimerDelete), before + 1);
}

TEST_F(EventPollTest, WhileOneSignalIsHandledTheOthersWait) {
    for (const int number : {SIGINT, SIGTERM, SIGALRM}) {
        struct sigaction action = {};
        ASSERT_EQ(::sigaction(number, nullptr, &action), 0);
        for (const int other : {SIGINT, SIGTERM, SIGALRM, SIGUSR1}) EXPECT_EQ(sigismember(&action.sa_mask, other), 1);
    }
}

TEST_F(EventPollTest, AnAlarmBesideEventsIsToldAfterThem) {
    poll.add(ends[0], &client, EPOLLIN);
    sendByte();
    ::raise(SIGALRM);
    EXPECT_EQ(poll.wait(0), EventPoll::TimerExpired);
    EXPECT_THAT(client.seen, ElementsAre(EventPoll::Readable));
    EXPECT_EQ(poll.wait(0), EventPoll::Handled);
}

TEST_F(EventPollDeathTest, TwoSignalsGiveTwoLinesAndOneStop) {
    runInChild([&] {
        ::raise(SIGTERM);
        ::raise(SIGINT);
        const bool stopped = EventPoll::stopRequested() && poll.wait(0) == EventPoll::Stopped;
        const auto texts = logTexts();
        return stopped && texts == std::vector<std::string>{"SIG 2: Interrupt", "SIG 15: Terminated"} &&
               poll.wait(0) == EventPoll::Stopped && logTexts().size() == 2;
    });
}

TEST_F(EventPollDeathTest, AWaitMayIgnoreTheStop) {
    runInChild([&] {
        poll.add(ends[0], &client, EPOLLIN);
        sendByte();
        ::raise(SIGTERM);
        return poll.wait(0, true) == EventPoll::Handled && client.seen.size() == 1;
    });
}

TEST_F(EventPollTest, ADeadSocketDoesNotKillTheProcess) {
    ::close(ends[1]);
    ends[1] = -1;
    EXPECT_EQ(::write(ends[0], "x", 1), -1);
    EXPECT_EQ(errno, EPIPE);
}
