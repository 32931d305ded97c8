#pragma once

#include <semaphore.h>

#include <cstdint>

namespace Unit {

/// The semaphore that lets the clients in one by one: posted once the server listens, taken by each client before it
/// connects and posted again after. Removed with this object.
class Gate {
  public:
    Gate() = default;
    ~Gate();
    Gate(const Gate&) = delete;
    Gate& operator=(const Gate&) = delete;

    void open();
    void close();
    /// A client that dies between taking and posting would shut everybody out: when nobody has posted for
    /// `patience`, this does it.
    void tick(std::int64_t nanoseconds);

  private:
    static constexpr std::int64_t patience = 3'000'000'000;

    sem_t* semaphore_ = SEM_FAILED;
    std::int64_t shutSince_ = 0;
};

}  // namespace Unit
