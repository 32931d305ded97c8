#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "apps/common/event/notify.h"
#include "platform/system.h"

/// The other end of a server connection: gate, listening socket and at most one client.
class Server {
  public:
    static constexpr const char* gateName = "/message-broker-ready";
    static constexpr const char* socketPath = "/var/volatile/message-broker.socket";

    Server();
    Server(const Server&) = delete;
    Server& operator=(const Server&) = delete;
    ~Server();

    void accept();
    void disconnect();
    void endSending();
    /// Closes all sockets; the gate stays.
    void die();
    void removeGate();
    int gateCount() const;

    void send(const std::vector<Notify>& notices);
    bool trySend(std::span<const Notify> notices);
    void sendBytes(const void* data, std::size_t size);
    /// All words that have arrived so far.
    std::vector<std::uint32_t> received();

  private:
    sem_t* gate_;
    int listener_;
    int client_ = -1;
};
