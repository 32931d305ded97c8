#pragma once

#include <sys/types.h>

#include <bitset>
#include <cstdint>
#include <memory>
#include <span>
#include <vector>

#include "apps/common/event/eventpoll.h"
#include "apps/common/event/notify.h"
#include "unit/server/store.h"

namespace Unit {

/// One client of the message socket. The socket does not block: what the peer does not take waits here.
class BrokerClient {
  public:
    explicit BrokerClient(int fd);
    ~BrokerClient();
    BrokerClient(const BrokerClient&) = delete;
    BrokerClient& operator=(const BrokerClient&) = delete;

    int fd() const { return fd_; }
    pid_t pid() const { return pid_; }  ///< of the peer
    bool ended() const { return ended_; }
    /// Reads what is there; the whole records are appended to `records`.
    void read(std::vector<Notify>& records);
    /// Handles `record` when it speaks to the server itself. Whether it did.
    bool subscribe(const Notify& record);
    bool wants(std::uint32_t id) const { return all_ || (id < Store::idLimit && wanted_[id]); }
    bool wantsAll() const { return all_; }
    const std::vector<std::uint16_t>& subscriptions() const { return order_; }  ///< in the order of the requests

    void queue(const Notify& record);
    /// Writes what the peer takes. `tail` bytes of the last record stay behind, unless they are all that is left.
    void flush(std::size_t tail = 0);
    std::size_t waiting() const { return out_.size(); }

  private:
    static constexpr std::size_t outLimit = 4 << 20;

    void want(std::uint32_t id, bool wanted);

    int fd_;
    pid_t pid_ = 0;
    bool ended_ = false;
    std::vector<char> in_;
    std::vector<char> out_;
    std::uint32_t request_ = 0;  ///< a subscribe or unsubscribe whose second record is still to come
    bool all_ = false;
    std::bitset<Store::idLimit> wanted_;
    std::vector<std::uint16_t> order_;
};

/// The message socket: clients, their subscriptions, and the echo of each notice to every subscriber, the sender
/// included.
class Broker final : public EventPoll::Callback {
  public:
    class Listener {
      public:
        /// A notice of a client. Its echo is already on its way.
        virtual void onNotice(const Notify& notice) = 0;

      protected:
        ~Listener() = default;
    };

    static constexpr const char* socketPath = "/var/volatile/message-broker.socket";

    Broker(EventPoll& poll, Listener& listener) : poll_(poll), listener_(listener) {}
    ~Broker() override;

    void open();
    void close();
    bool isOpen() const { return listening_ >= 0; }

    /// Whether notices are handled as they come. Otherwise they wait for `drain`, which makes lockstep runs repeatable;
    /// clients are let in and subscribe all the same, since they block until somebody reads.
    void setImmediate(bool immediate) { immediate_ = immediate; }
    /// Accepts and reads until nothing is left, and handles the notices in the order in which they were read.
    void drain();
    void announce(std::uint16_t id) { announce(Notify{id, 0, 0}); }
    void announce(const Notify& notice);
    void flush();
    /// Drops the clients that have gone. Not while their events are handled.
    void reap();

    // Misbehaviour for tests of the product.
    void setDeaf(bool deaf);
    void setSilent(bool silent) { silent_ = silent; }
    /// Bytes of the last record of each write that come with the next one; 0 for whole records.
    void setTail(std::size_t tail) { tail_ = tail; }

    const std::vector<std::unique_ptr<BrokerClient>>& clients() const { return clients_; }
    /// The notices that clients have sent since the last call, the oldest ones lost beyond `journalLimit`.
    std::vector<Notify> takeJournal();

    void onPollEvent(int what) override;

  private:
    static constexpr std::size_t journalLimit = 65536;

    void watch(int fd, bool on);
    void watchAll(bool on);
    void readEverything();
    void handleInbox();
    bool acceptAll();
    bool readAll();
    void take(BrokerClient& client, const Notify& record);

    EventPoll& poll_;
    Listener& listener_;
    int listening_ = -1;
    bool immediate_ = true;
    bool deaf_ = false;
    bool silent_ = false;
    std::size_t tail_ = 0;
    std::vector<std::unique_ptr<BrokerClient>> clients_;
    std::vector<Notify> records_;
    std::vector<Notify> inbox_;
    std::vector<Notify> journal_;
};

}  // namespace Unit
