#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>

#include "platform/virtual/driver.h"
#include "platform/virtual/tape/replayer.h"
#include "unit/ctl/record/recording.h"

namespace Unit {

struct ReplayOptions {
    std::string gui;                     ///< the program to play it to
    Platform::Virtual::Place place;      ///< of the instance it runs in; what is in it is overwritten
    std::optional<std::uint64_t> until;  ///< the last frame to be played
    Platform::Virtual::OnDifference onDifference = Platform::Virtual::OnDifference::GoOn;
};

struct ReplayOutcome {
    std::uint64_t frames = 0;  ///< played to their end
    std::string ended;         ///< how the product ended by itself, in frame frames + 1; empty when it did not
    std::string words;         ///< what it said then
    bool hangs = false;
    std::optional<std::uint64_t> difference;  ///< the first frame that is not as it was recorded
    bool otherPicture = false;                ///< it is another picture; otherwise other notices were sent
    double seconds = 0;                       ///< of real time

    bool asRecorded(const Recording& recording) const;
};

/// Plays a recording to a program, as fast as that goes. The product stands still at the last frame when this returns,
/// unless it has ended, and goes with the object.
class Replay {
  public:
    explicit Replay(ReplayOptions options);
    ~Replay();
    Replay(const Replay&) = delete;
    Replay& operator=(const Replay&) = delete;

    ReplayOutcome run(const Recording& recording);

    const Platform::Virtual::Driver& driver() const;
    /// A file that the product has left in the instance.
    std::string file(const char* name) const;

  private:
    struct Running;

    void start(const Recording& recording);
    void awaitEnd(ReplayOutcome& outcome);
    std::uint64_t waits() const;
    void readResult(ReplayOutcome& outcome) const;

    ReplayOptions options_;
    std::unique_ptr<Running> running_;
};

}  // namespace Unit
