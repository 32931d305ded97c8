#include "unit/ctl/record/replay.h"

#include <signal.h>

#include <chrono>
#include <cstdlib>
#include <fstream>
#include <memory>

#include "platform/virtual/tape/replayer.h"
#include "unit/ctl/childprocess.h"
#include "unit/ctl/record/recordingtoplay.h"

namespace Unit {

using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;
using Platform::Virtual::OnDifference;
using Platform::Virtual::Replayer;

namespace {

constexpr auto patience = 20s;  // for one frame

}  // namespace

bool ReplayOutcome::asRecorded(const Recording& recording) const {
    if (difference || hangs) return false;
    return ended.empty() || ended == recording.end();
}

struct Replay::Running {
    Running(const ReplayOptions& options)
        : driver(options.place), product(options.gui, options.place.folder + "/product.out", SIGKILL) {}

    Platform::Virtual::Driver driver;
    ChildProcess product;
};

Replay::Replay(ReplayOptions options) : options_(std::move(options)) {
    running_ = std::make_unique<Running>(options_);
}

Replay::~Replay() {
    running_->product.signal(SIGKILL);  // it waits for a frame that does not come
    running_->product.end();
    running_->driver.instance().removeNames();
}

const Platform::Virtual::Driver& Replay::driver() const {
    return running_->driver;
}

std::string Replay::file(const char* name) const {
    return options_.place.folder + "/" + name;
}

ReplayOutcome Replay::run(const Recording& recording) {
    const auto begun = Clock::now();
    const std::uint64_t before = waits();
    start(recording);
    // One step more than there are frames: with it the product finds the end and leaves.
    running_->driver.step(static_cast<unsigned>(options_.until.value_or(recording.frames() + 1)));
    ReplayOutcome outcome;
    awaitEnd(outcome);
    outcome.frames = waits() - before;
    if (outcome.frames > 0) --outcome.frames;  // the first wait ends frame 0
    if (!outcome.ended.empty()) outcome.words = running_->product.lastWords();
    outcome.seconds = std::chrono::duration<double>(Clock::now() - begun).count();
    readResult(outcome);
    return outcome;
}

/// The product waits for its first frame from now on.
void Replay::start(const Recording& recording) {
    auto& [driver, product] = *running_;
    product.setProgram(RecordingToPlay::program(recording, options_.gui, options_.place.folder));
    driver.holdVsync();
    auto& control = driver.instance().control();
    control.permits = 0;
    control.resting = 0;
    const RecordingToPlay played(recording, options_.onDifference);
    ::setenv("TERN_INSTANCE", options_.place.name.c_str(), 1);
    ::setenv("TERN_INSTANCE_DIR", options_.place.folder.c_str(), 1);
    product.start({});
}

/// Until the product rests behind the last step, ends by itself or hangs.
void Replay::awaitEnd(ReplayOutcome& outcome) {
    std::uint64_t seen = 0;
    auto lastFrame = Clock::now();
    while (!outcome.hangs && !running_->driver.awaitRest(20)) {
        if (const auto end = running_->product.takeEnd()) {
            if (*end != "with status 0") outcome.ended = *end;
            return;
        }
        if (const std::uint64_t now = waits(); now != seen) {
            seen = now;
            lastFrame = Clock::now();
        }
        outcome.hangs = Clock::now() - lastFrame > patience;
    }
}

/// How often the product has waited for a frame.
std::uint64_t Replay::waits() const {
    return std::uint64_t{running_->driver.pans()} + running_->driver.vsyncWaits();
}

void Replay::readResult(ReplayOutcome& outcome) const {
    std::ifstream in(file(Replayer::resultFile));
    for (std::string key; in >> key;) {
        std::string rest;
        if (key == "difference") {
            std::uint64_t frame = 0;
            in >> frame >> rest;
            outcome.difference = frame;
            outcome.otherPicture = rest == "picture";
        } else {
            in >> rest;
        }
    }
}

}  // namespace Unit
