#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "platform/virtual/tape/event.h"
#include "platform/virtual/tape/tapefile.h"

namespace Unit {

enum class Program { Same, Other };

/// A recording in memory, checked as a whole. Frame 0 is the start of the product up to its first wait for the
/// display; each further frame is one pass of it.
class Recording {
  public:
    /// Throws Problem, in words for a person, when the file is no recording, has been altered, or is of another
    /// catalogue. What still means something goes into warnings().
    explicit Recording(const std::string& file);
    Recording(const Recording&) = delete;
    Recording(Recording&&) = default;

    const std::string& file() const { return file_; }
    const Platform::Virtual::Tape& tape() const { return tape_; }
    const std::vector<std::string>& warnings() const { return warnings_; }
    /// Passes that were over when the recording ended.
    std::uint64_t frames() const { return passes_.size() - 1; }
    /// The time from the first pass to the last one, in nanoseconds.
    std::int64_t duration() const { return duration_; }
    /// How the recorded product ended; empty when it did not, or nobody knows.
    std::string end() const { return tape_.value("end"); }
    bool endedByItself() const;
    Program program(const std::string& gui) const;

    using Events = std::vector<Platform::Virtual::Event>;
    /// The events of each pass; the first one of a pass is that which begins it. They point into this object.
    const std::vector<Events>& passes() const { return passes_; }

  private:
    void parse();
    void checkOrigin();

    std::string file_;
    Platform::Virtual::Tape tape_;
    std::vector<std::string> warnings_;
    std::vector<Events> passes_;
    std::int64_t duration_ = 0;
};

/// Writes passes as a recording of its own, finished and packed as small as it gets. Throws Problem.
void writeRecording(const std::string& file, const std::string& about, const std::vector<Recording::Events>& passes);

/// Saves what was recorded of the unit in `folder` so far as a file to keep: of the product that runs, or of the one
/// that ran before it. Returns what to tell. Throws Problem.
enum class Run { Current, Earlier };
std::string saveRecording(const std::string& folder, Run run, const std::string& file);

}  // namespace Unit
