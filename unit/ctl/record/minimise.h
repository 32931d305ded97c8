#pragma once

#include <functional>
#include <string>

#include "unit/ctl/record/recording.h"
#include "unit/ctl/record/replay.h"

namespace Unit {

/// How a recording fails: the product ends, hangs, or shows something else than was recorded.
struct Failure {
    std::string ended;
    std::string words;
    bool hangs = false;
    bool otherPicture = false;
    std::vector<std::byte> shown;  ///< the wrong picture

    bool operator==(const Failure&) const = default;
};

/// Shortens a recording that fails with a program as long as it goes on failing in the same way: first to the frame
/// that fails, then by frames, then by single inputs. Every recording that it keeps has been played.
///
/// Of a crash the result checks nothing else; of a wrong picture only its last frame: what was recorded in it is the
/// right picture, and what the program showed there every shortened recording shows too.
class Minimiser {
  public:
    /// `report` is told of each step.
    Minimiser(const Recording& recording, std::string gui, std::function<void(const std::string&)> report)
        : recording_(recording), gui_(std::move(gui)), report_(std::move(report)) {}

    /// Writes the shortest recording found within `seconds` to `file`. Throws Problem when the recording does not fail.
    void run(const std::string& file, double seconds);

  private:
    using Passes = std::vector<Recording::Events>;

    Failure play(const Recording& recording, ReplayOutcome& outcome) const;
    bool fails(const Passes& passes);
    void cutToFailure(const ReplayOutcome& outcome);
    void dropFrames();
    void dropInputs();
    bool timeLeft() const;

    const Recording& recording_;
    std::string gui_;
    std::function<void(const std::string&)> report_;
    std::string about_;
    std::string file_;
    Failure failure_;
    Passes passes_;
    std::vector<std::byte> picture_;  // the right one, in tiles
    double end_ = 0;                  // steady seconds
    unsigned tries_ = 0;
};

}  // namespace Unit
