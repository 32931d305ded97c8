#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "platform/virtual/instance.h"
#include "unit/ctl/record/recording.h"

namespace Unit {

struct ReplayRequest {
    std::string file;
    bool check = false;                  ///< end at the first difference, and call it a failure
    std::optional<std::uint64_t> until;  ///< the last frame
    std::string program;                 ///< to play it to; empty for the one beside this program
    std::string shot;                    ///< PNG file for the last picture; empty for none
    std::string pictures;                ///< folder for the pictures of a difference
    bool json = false;
};

struct MinimiseRequest {
    std::string file;
    std::string out;
    std::string program;  ///< empty for the one beside this program
    double seconds = 60;
};

/// Tells each step on stdout. Throws Problem.
void minimiseVerb(const MinimiseRequest& request);

/// Leaves a unit that stands at the frame `until`, or at the last one, to be looked into: `step` goes on. Throws
/// Problem.
void stayVerb(const ReplayRequest& request, const Platform::Virtual::Place& place);

/// Prints what came of it. False when a check has found something. Throws Problem.
bool replayVerb(const ReplayRequest& request);

}  // namespace Unit
