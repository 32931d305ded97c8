#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "unit/ctl/record/replay.h"

namespace Unit {

struct SavedDifference {
    std::vector<std::string> files;
    std::string remark;  ///< what there is to say about them; may be empty
};

/// Writes the pictures of a frame that is not as it was recorded into `folder` as PNG files: what was recorded, what is
/// shown, and where they differ (red, over the recorded one darkened). Throws Problem.
SavedDifference saveDifference(const Replay& replay, std::uint64_t frame, const std::string& folder);

}  // namespace Unit
