#pragma once

#include <string>
#include <vector>

#include "platform/virtual/tape/replayer.h"
#include "unit/ctl/record/recording.h"

namespace Unit {

/// Has the next product that this process starts play a recording, as long as this object lives: with the time zone and
/// the faults of then.
class RecordingToPlay {
  public:
    RecordingToPlay(const Recording& recording, Platform::Virtual::OnDifference onDifference);
    ~RecordingToPlay();
    RecordingToPlay(const RecordingToPlay&) = delete;
    RecordingToPlay& operator=(const RecordingToPlay&) = delete;

    /// The program that plays it: `gui`, or when the recorded product was made to start with a page, a copy of it that
    /// does so, in `folder`.
    static std::string program(const Recording& recording, const std::string& gui, const std::string& folder);

  private:
    struct Setting {
        const char* name;
        std::string before;
    };

    void set(const char* name, const std::string& value);

    std::vector<Setting> settings_;
};

}  // namespace Unit
