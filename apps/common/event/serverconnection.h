#pragma once

#include <cstdint>
#include <span>

#include "apps/common/event/eventpoll.h"
#include "apps/common/event/notify.h"

/// The socket to the server. Values never cross it: they lie in shared memory, and the socket carries notices that
/// something changed. There is no reconnection: a hang-up closes the socket, the first send after it is fatal, and a
/// supervisor outside starts the process anew.
///
/// The socket is blocking for writes: a server that does not read stalls the sender, until a signal ends the write.
class ServerConnection final : public EventPoll::Callback {
  public:
    class EventHandler {
      public:
        virtual void onNotify(const Notify& notify) = 0;

      protected:
        ~EventHandler() = default;
    };

    /// Waits at the server's gate (a semaphore that the server posts when it is ready and each client passes on),
    /// connects, registers with `poll` (not owned, must outlive this) and becomes the connection of `sendEvent`.
    /// Blocks while the gate is closed; fatal when there is no gate or no server.
    explicit ServerConnection(EventPoll* poll);
    ServerConnection(const ServerConnection&) = delete;
    ServerConnection& operator=(const ServerConnection&) = delete;
    ~ServerConnection() override;

    /// Null: notices are logged only. Set within onNotify it takes over from the next block of 256 notices on.
    void setHandler(EventHandler* handler) { handler_ = handler; }
    /// The name of each message id, for the log; not copied. Ids beyond the table are logged as numbers.
    void setMessageNames(std::span<const char* const> names) { names_ = names; }

    void send(const Notify& notify);
    /// One write of two records: the subscribe message and `notify` with the id in question.
    void subscribe(const Notify& notify);
    void subscribeAll();

    void onPollEvent(int what) override;
    void close();

    bool isOpen() const { return socketFd_ >= 0; }
    /// The socket, -1 when closed; stays owned by this.
    int descriptor() const { return socketFd_; }
    EventPoll* eventPoll() const { return poll_; }

  private:
    void openSocket();
    void connect();
    void writeRecords(const Notify* records, std::size_t count);
    void readRecords();
    void deliver(std::span<const Notify> block) const;
    void logUnhandled(std::uint32_t id) const;
    void closeSocket();

    EventPoll* poll_;
    int socketFd_ = -1;
    EventHandler* handler_ = nullptr;
    std::span<const char* const> names_;
};
