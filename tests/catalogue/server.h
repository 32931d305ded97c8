#pragma once

#include <semaphore.h>

#include <cstdint>
#include <deque>
#include <thread>
#include <vector>

#include "apps/common/event/notify.h"
#include "apps/common/sharedmemory/sharedmemory.h"

/// A server in the test's own process: areas, gate and socket. It echoes nothing by itself.
class Server {
  public:
    Server();
    Server(const Server&) = delete;
    Server& operator=(const Server&) = delete;
    ~Server();

    unsigned char* area(unsigned index) { return static_cast<unsigned char*>(areas_[index].address()); }
    unsigned areaSize(unsigned index) const { return areas_[index].size(); }
    unsigned areaCount() const { return static_cast<unsigned>(areas_.size()); }
    /// The subscriptions, whose client is connected when this returns. They are read on a thread of their own, since
    /// the socket takes only some hundred of them unread.
    std::vector<Notify> takeSubscriptions();
    void send(std::uint32_t id);
    /// Whole records that have arrived so far.
    std::vector<Notify> received();
    /// Ids of the notices that have arrived.
    std::vector<std::uint32_t> receivedIds();

  private:
    std::deque<SharedMemory> areas_;
    sem_t* gate_;
    int listener_;
    int client_ = -1;
    std::vector<Notify> subscriptions_;
    std::thread reader_;
};
