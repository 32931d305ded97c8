// One client of the message socket, met over a pair of sockets.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/socket.h>
#include <unistd.h>

#include <optional>

#include "unit/server/broker.h"

namespace {

struct ClientAndReader {
    int ends[2] = {-1, -1};
    ClientAndReader() {
        EXPECT_EQ(::socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0, ends), 0);
        client.emplace(ends[0]);
    }
    ~ClientAndReader() { ::close(ends[1]); }
    ClientAndReader(const ClientAndReader&) = delete;
    ClientAndReader& operator=(const ClientAndReader&) = delete;

    void queue(std::size_t count) {
        for (std::size_t i = 0; i < count; ++i) client->queue({next++, 0, 0});
    }
    /// Reads as the product does: whole records only, the bytes of a split one are lost.
    void readAll() {
        Notify block[256];
        ssize_t got;
        while ((got = ::read(ends[1], block, sizeof block)) > 0)
            for (std::size_t i = 0; i < static_cast<std::size_t>(got) / sizeof(Notify); ++i)
                inOrder = block[i].id == seen++ && inOrder;
    }

    std::optional<Unit::BrokerClient> client;
    std::uint32_t next = 0;
    std::uint32_t seen = 0;
    bool inOrder = true;
};

}  // namespace

TEST(BrokerClient, APeerThatFallsBehindIsGivenWholeRecords) {
    for (const std::size_t before : {0, 1000, 5000, 7000, 10'000}) {
        ClientAndReader link;
        link.queue(before);
        link.client->flush();
        link.queue(50'000);
        for (int pass = 0; pass < 100 && link.client->waiting() > 0; ++pass) {
            link.client->flush();
            link.readAll();
        }
        EXPECT_EQ(link.seen, before + 50'000) << before;
        EXPECT_TRUE(link.inOrder) << before;
    }
}
