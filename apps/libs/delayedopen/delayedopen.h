#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <utility>

/// Opens a device that may not be there yet: each poll tries once, until it succeeds or `timeout` seconds are over.
/// Opened and failed are final until `start`.
class DelayedOpen {
  public:
    enum State : int { Idle = 0, Retrying = 1, Opened = 2, Failed = 3 };
    using StateCallback = std::function<void(int state)>;

    explicit DelayedOpen(std::string path);
    DelayedOpen(const DelayedOpen&) = delete;
    DelayedOpen& operator=(const DelayedOpen&) = delete;
    virtual ~DelayedOpen();

    virtual void setTimeout(float seconds);
    /// Begins anew: idle, no attempts, and the timeout counts from now.
    virtual void start();
    /// One attempt unless it is decided already. True when the device is open. The first attempt after construction
    /// starts the timeout when `start` was not called.
    virtual bool poll();
    /// Tries every 100 ms until the device is open or has failed; true when it is open.
    virtual bool waitUntilDone();
    virtual bool hasFailed();

    /// Hears of each change of the state; may be empty.
    void setStateCallback(StateCallback callback) { stateCallback_ = std::move(callback); }
    int state() const { return state_; }
    const std::string& path() const { return path_; }

  protected:
    /// Opens the device; whether it is open now.
    virtual bool tryOpen() = 0;

  private:
    void changeState(int state);
    void attemptFailed(std::int64_t now);
    double secondsSinceStart(std::int64_t now) const;

    std::string path_;
    float timeout_ = 5.0F;
    int state_ = Idle;
    StateCallback stateCallback_;
    std::int64_t startTime_ = 0;
    int attempts_ = 0;
    bool started_ = false;
};
