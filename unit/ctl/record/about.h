#pragma once

#include <string>

namespace Unit {

struct RecordedUnit {
    std::string program;  ///< file of the product
    std::string page;     ///< that it was made to start with; may be empty
    std::string scene;    ///< may be empty
    bool lockstep;
};

/// What a recording is of, as the text in its head has it.
std::string aboutRecording(const RecordedUnit& unit);

/// Changes whenever an area, a value's place or a message does: then a recording's memory means something else.
std::string catalogueFingerprint();
/// Of a program's file, with all that was built into it. Empty when it cannot be read.
std::string programFingerprint(const std::string& file);

/// Where the unit in `folder` records its product, and where the product that ran before it was recorded.
std::string currentRecording(const std::string& folder);
std::string earlierRecording(const std::string& folder);
/// The product of the unit in `folder` has ended: `how` belongs to its recording.
void noteEnd(const std::string& folder, const std::string& how);
std::string endOf(const std::string& recording);

/// Makes the recording of the product that has ended the earlier one, and has the next one that this process starts
/// write a new one, as long as this object lives.
class RecordingToBegin {
  public:
    RecordingToBegin(const std::string& folder, const std::string& about);
    ~RecordingToBegin();
    RecordingToBegin(const RecordingToBegin&) = delete;
    RecordingToBegin& operator=(const RecordingToBegin&) = delete;
};

}  // namespace Unit
