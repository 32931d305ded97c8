#pragma once

#include <atomic>
#include <cstdint>
#include <cstring>
#include <deque>
#include <mutex>
#include <span>
#include <string_view>
#include <thread>
#include <vector>

#include "apps/common/event/notify.h"
#include "apps/common/sharedmemory/sharedmemory.h"
#include "model/catalogue/constants.h"

/// The least that a program needs of a server: all memory areas, the socket and the ready semaphore, in the test's own
/// process. Nothing is answered by itself: the test reads what was sent and sends what it wants.
class StubServer {
  public:
    StubServer();
    ~StubServer();
    StubServer(const StubServer&) = delete;
    StubServer& operator=(const StubServer&) = delete;

    /// All records that the program sent since the last call, whatever of them is still in the socket included.
    std::vector<Notify> received();
    void notify(std::uint32_t id);
    /// In one write: the program sees them in one go.
    void notify(std::span<const std::uint32_t> ids);
    /// Sends back to the program what it sent, as a server does to every subscriber.
    void echo(const std::vector<Notify>& records);

    template <typename T>
    void set(std::string_view name, T value) {
        std::memcpy(place(name), &value, sizeof value);
    }
    template <typename T>
    T get(std::string_view name) {
        T value;
        std::memcpy(&value, place(name), sizeof value);
        return value;
    }
    /// Sets a value and tells of it.
    template <typename T>
    void change(std::string_view name, T value) {
        set(name, value);
        notify(Catalogue::findValue(name)->id);
    }

    /// The usable bytes of an area.
    unsigned char* area(std::size_t index) { return static_cast<unsigned char*>(areas_[index].address()); }

  private:
    unsigned char* place(std::string_view name);
    /// Reads on a thread of its own, since a program that subscribes fills the socket before its first frame.
    void serve();
    void send(const std::vector<Notify>& records);
    bool readOnce();

    std::deque<SharedMemory> areas_;
    int listener_ = -1;
    std::atomic<int> connection_ = -1;
    std::atomic<bool> ends_ = false;
    std::mutex mutex_;
    std::vector<Notify> records_;  ///< with what is read, guarded by mutex_
    std::thread thread_;
};
