#include "platform/virtual/tape/tape.h"

#include <cstdlib>
#include <memory>

namespace Platform::Virtual {

namespace {

struct Tapes {
    std::unique_ptr<Recorder> recorder;
    std::unique_ptr<Replayer> replayer;

    Tapes() {
        const char* record = std::getenv("TERN_RECORD");
        const char* about = std::getenv("TERN_RECORD_ABOUT");
        if (const char* replay = std::getenv("TERN_REPLAY"); replay != nullptr && *replay != '\0')
            replayer = std::make_unique<Replayer>(
                Instance::current(), replay,
                std::getenv("TERN_REPLAY_STOP") != nullptr ? OnDifference::Stop : OnDifference::GoOn);
        else if (record != nullptr && *record != '\0')
            recorder = std::make_unique<Recorder>(Instance::current(), record, about != nullptr ? about : "");
    }
};

// Never destroyed: the log speaks until the very end of the process.
Tapes& tapes() {
    static Tapes& tapes = *new Tapes;
    return tapes;
}

}  // namespace

Recorder* recorder() {
    return tapes().recorder.get();
}

Replayer* replayer() {
    return tapes().replayer.get();
}

}  // namespace Platform::Virtual
