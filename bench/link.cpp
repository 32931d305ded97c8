// What the link to the server costs above the bare system calls: a million notices drained through EventPoll and
// ServerConnection to an empty handler, against a loop of reads of the same size on the same socket. Both take turns
// within one iteration, and only the reader's CPU time counts. "calls" is the least that the link can cost: the same
// loop of an epoll wait and a read, without anything of ours.
//
// The calls go through the Linux twin. The system-wide names that they use are made in a namespace of the program's
// own.
//
// In the Batch cases the peer fills the socket while the clock stands still, then the reader drains it: no scheduling
// is measured. In the Peer cases another process writes all the time and the reader waits for it, as in the product.
#include <benchmark/benchmark.h>
#include <fcntl.h>
#include <sched.h>
#include <sys/epoll.h>
#include <sys/mount.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <time.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <vector>

#include "apps/common/event/serverconnection.h"
#include "apps/common/log/log.h"
#include "platform/system.h"

namespace {

constexpr std::size_t noticeCount = 1'000'000;
constexpr std::size_t blockSize = 3072;
constexpr std::size_t streamSize = noticeCount * sizeof(Notify);
constexpr const char* gateName = "/message-broker-ready";
constexpr const char* socketPath = "/var/volatile/message-broker.socket";

double threadSeconds() {
    timespec time;
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) * 1e-9;
}

void require(bool good, const char* what) {
    if (good) return;
    std::perror(what);
    std::exit(1);
}

constexpr std::uint32_t lastId = 1328;

/// Makes /dev/shm and /var private and empty, so that no unit that runs on this machine is met.
void enterOwnNamespace() {
    require(::unshare(CLONE_NEWNS) == 0 || ::unshare(CLONE_NEWUSER | CLONE_NEWNS) == 0, "unshare");
    require(::mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0, "making the mounts private");
    for (const char* folder : {"/dev/shm", "/var"}) require(::mount("tmpfs", folder, "tmpfs", 0, nullptr) == 0, folder);
    require(::mkdir("/var/volatile", 0700) == 0, "/var/volatile");
}

/// Empty but for the mark of the stream's last notice.
struct Handler final : ServerConnection::EventHandler {
    bool atEnd = false;
    void onNotify(const Notify& notify) override {
        if (notify.id == lastId) atEnd = true;
    }
};

/// A connected pair: the product's side and the peer's descriptor.
class Link {
  public:
    Link() {
        Log::threshold = &quiet_;
        gate_ = Platform::semOpen(gateName, O_CREAT, 0666, 1);
        const int listener = Platform::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
        require(gate_ != SEM_FAILED && Platform::bindUnix(listener, socketPath) == 0, "server");
        require(Platform::listen(listener, 1) == 0, "listen");
        connection_ = new ServerConnection(&poll_);
        connection_->setHandler(&handler);
        peer = Platform::accept(listener, SOCK_CLOEXEC);
        require(peer >= 0, "accept");
        ::close(listener);
    }
    Link(const Link&) = delete;
    Link& operator=(const Link&) = delete;
    ~Link() {
        ::close(peer);
        delete connection_;
        Platform::semClose(gate_);
        Platform::semUnlink(gateName);
        Platform::unlinkPath(socketPath);
        Log::threshold = nullptr;
    }

    EventPoll::Result wait(int timeoutMs) { return poll_.wait(timeoutMs); }
    int socket() const { return connection_->descriptor(); }

    Handler handler;
    int peer = -1;

  private:
    const int quiet_ = Log::Error + 1;
    sem_t* gate_ = nullptr;
    EventPoll poll_;
    ServerConnection* connection_ = nullptr;
};

/// `length` bytes of notices, the very last of the stream marked.
const Notify* pieceOf(std::size_t length, bool last) {
    static std::vector<Notify> notices(blockSize / sizeof(Notify), Notify{7, 0, 0});
    const Notify* piece = &notices[notices.size() - length / sizeof(Notify)];
    notices.back().id = last ? lastId : 7;
    return piece;
}

/// Writes `size`-byte pieces until the socket is full or `left` is used up; what was written.
std::size_t fill(int peer, std::size_t size, std::size_t left) {
    std::size_t written = 0;
    while (written < left) {
        const std::size_t length = std::min(size, left - written);
        const Notify* piece = pieceOf(length, written + length == left);
        const ssize_t got = ::send(peer, piece, length, MSG_DONTWAIT | MSG_NOSIGNAL);
        if (got < 0) break;
        written += static_cast<std::size_t>(got);
    }
    return written;
}

template <typename Drain>
double drainBatches(Link& link, std::size_t writeSize, Drain drain) {
    double seconds = 0;
    for (std::size_t left = streamSize; left > 0;) {
        const std::size_t batch = fill(link.peer, writeSize, left);
        left -= batch;
        const double begin = threadSeconds();
        drain(batch);
        seconds += threadSeconds() - begin;
    }
    return seconds;
}

double linkBatches(Link& link, std::size_t writeSize) {
    return drainBatches(link, writeSize, [&](std::size_t) {
        while (link.wait(0) == EventPoll::Handled) {
        }
    });
}

/// epoll_wait and read alternately, as the link does it, by itself.
class TwoCalls {
  public:
    explicit TwoCalls(int socket) : socket_(socket), epoll_(::epoll_create1(EPOLL_CLOEXEC)) {
        epoll_event event = {};
        event.events = EPOLLIN;
        require(::epoll_ctl(epoll_, EPOLL_CTL_ADD, socket, &event) == 0, "epoll_ctl");
    }
    TwoCalls(const TwoCalls&) = delete;
    TwoCalls& operator=(const TwoCalls&) = delete;
    ~TwoCalls() { ::close(epoll_); }

    /// 0 when there is nothing within the timeout.
    std::size_t read(int timeoutMs) {
        epoll_event events[8];
        if (::epoll_wait(epoll_, events, 8, timeoutMs) <= 0) return 0;
        char buffer[blockSize];
        const ssize_t got = ::read(socket_, buffer, sizeof buffer);
        benchmark::DoNotOptimize(buffer);
        return got > 0 ? static_cast<std::size_t>(got) : 0;
    }

  private:
    int socket_;
    int epoll_;
};

double callBatches(Link& link, std::size_t writeSize) {
    TwoCalls calls(link.socket());
    return drainBatches(link, writeSize, [&](std::size_t) {
        while (calls.read(0) > 0) {
        }
    });
}

double bareBatches(Link& link, std::size_t writeSize) {
    return drainBatches(link, writeSize, [&](std::size_t batch) {
        char buffer[blockSize];
        for (ssize_t got; batch > 0 && (got = ::read(link.socket(), buffer, sizeof buffer)) > 0;) {
            benchmark::DoNotOptimize(buffer);
            batch -= static_cast<std::size_t>(got);
        }
    });
}

/// Another process that writes the whole stream.
class Peer {
  public:
    Peer(const Link& link, std::size_t writeSize) : process_(::fork()) {
        if (process_ != 0) return;
        for (std::size_t left = streamSize; left > 0;) {
            const std::size_t length = std::min(writeSize, left);
            const ssize_t got = ::write(link.peer, pieceOf(length, length == left), length);
            if (got != static_cast<ssize_t>(length)) ::_exit(1);
            left -= length;
        }
        ::_exit(0);
    }
    Peer(const Peer&) = delete;
    Peer& operator=(const Peer&) = delete;
    ~Peer() {
        int status = 0;
        require(::waitpid(process_, &status, 0) == process_ && status == 0, "peer");
    }

  private:
    pid_t process_;
};

double linkFromPeer(Link& link, std::size_t writeSize) {
    const Peer peer(link, writeSize);
    const double begin = threadSeconds();
    while (!link.handler.atEnd) link.wait(-1);
    return threadSeconds() - begin;
}

double callsFromPeer(Link& link, std::size_t writeSize) {
    const Peer peer(link, writeSize);
    TwoCalls calls(link.socket());
    const double begin = threadSeconds();
    for (std::size_t left = streamSize; left > 0;) left -= calls.read(-1);
    return threadSeconds() - begin;
}

double bareFromPeer(Link& link, std::size_t writeSize) {
    const Peer peer(link, writeSize);
    const double begin = threadSeconds();
    char buffer[blockSize];
    std::size_t left = streamSize;
    for (ssize_t got; left > 0 && (got = ::read(link.socket(), buffer, sizeof buffer)) > 0;) {
        benchmark::DoNotOptimize(buffer);
        left -= static_cast<std::size_t>(got);
    }
    return threadSeconds() - begin;
}

using Measure = double (*)(Link& link, std::size_t writeSize);

void compare(benchmark::State& state, Measure bare, Measure calls, Measure through, std::size_t writeSize) {
    Link link;
    double bareSeconds = 0;
    double callSeconds = 0;
    double linkSeconds = 0;
    for ([[maybe_unused]] auto iteration : state) {
        bareSeconds += bare(link, writeSize);
        callSeconds += calls(link, writeSize);
        link.handler.atEnd = false;
        const double seconds = through(link, writeSize);
        require(link.handler.atEnd, "the last notice was lost");
        linkSeconds += seconds;
        state.SetIterationTime(seconds);
    }
    const auto rounds = static_cast<double>(state.iterations());
    state.counters["bare_ms"] = bareSeconds / rounds * 1e3;
    state.counters["calls_ms"] = callSeconds / rounds * 1e3;
    state.counters["link_ms"] = linkSeconds / rounds * 1e3;
    state.counters["calls_to_bare"] = callSeconds / bareSeconds;
    state.counters["link_to_bare"] = linkSeconds / bareSeconds;
}

void blocksBatch(benchmark::State& state) {
    compare(state, bareBatches, callBatches, linkBatches, blockSize);
}
void singlesBatch(benchmark::State& state) {
    compare(state, bareBatches, callBatches, linkBatches, sizeof(Notify));
}
void blocksPeer(benchmark::State& state) {
    compare(state, bareFromPeer, callsFromPeer, linkFromPeer, blockSize);
}
void singlesPeer(benchmark::State& state) {
    compare(state, bareFromPeer, callsFromPeer, linkFromPeer, sizeof(Notify));
}

BENCHMARK(blocksBatch)->UseManualTime()->Iterations(30)->Unit(benchmark::kMillisecond);
BENCHMARK(blocksPeer)->UseManualTime()->Iterations(30)->Unit(benchmark::kMillisecond);
BENCHMARK(singlesBatch)->UseManualTime()->Iterations(5)->Unit(benchmark::kMillisecond);
BENCHMARK(singlesPeer)->UseManualTime()->Iterations(5)->Unit(benchmark::kMillisecond);

}  // namespace

int main(int argc, char** argv) {
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
    enterOwnNamespace();
    benchmark::RunSpecifiedBenchmarks();
}
