#include "unit/ctl/record/recording.h"

#include <cstdio>
#include <filesystem>

#include "unit/ctl/problem.h"
#include "unit/ctl/record/about.h"

namespace Unit {

using Platform::Virtual::Event;
using Platform::Virtual::Tape;
using Platform::Virtual::TapeWriter;

namespace {

constexpr std::int64_t frameTime = 1'000'000'000 / 60;
constexpr int smallest = 9;
constexpr std::size_t blockSize = std::size_t{1} << 20;

}  // namespace

Recording::Recording(const std::string& file) : file_(file), tape_(Platform::Virtual::readTape(file)) {
    if (tape_.state == Tape::State::Foreign) throw Problem(file + ": " + tape_.problem);
    if (tape_.state == Tape::State::Altered)
        throw Problem(file + ": " + tape_.problem + " What it would show is not what was recorded: get it anew.");
    parse();
    checkOrigin();
}

void Recording::parse() {
    std::span<const std::byte> rest = tape_.events;
    Event event;
    while (!rest.empty()) {
        if (!take(rest, event))
            throw Problem(file_ + ": It makes no sense in frame " + std::to_string(passes_.size()) + ".");
        if (event.kind == Event::Kind::Pass) {
            if (!passes_.empty()) duration_ += frameTime + Platform::Virtual::unzigzag(event.number);
            passes_.emplace_back();
        }
        if (passes_.empty()) throw Problem(file_ + ": It does not begin with a pass.");
        passes_.back().push_back(event);
    }
    if (passes_.empty()) throw Problem(file_ + ": It is cut short before its first frame.");
    if (tape_.state == Tape::State::Unfinished)
        warnings_.push_back(file_ + ": " + tape_.problem + " What is left ends with frame " + std::to_string(frames()) +
                            ".");
}

void Recording::checkOrigin() {
    if (const std::string other = tape_.value("catalogue"); other != catalogueFingerprint())
        throw Problem(file_ + " was recorded with another catalogue (" + other + ", this program has " +
                      catalogueFingerprint() +
                      "): its memory would mean something else. Replay it with a build of then.");
}

bool Recording::endedByItself() const {
    return !end().empty() && end() != "with status 0";
}

Program Recording::program(const std::string& gui) const {
    return tape_.value("program") == programFingerprint(gui) ? Program::Same : Program::Other;
}

void writeRecording(const std::string& file, const std::string& about, const std::vector<Recording::Events>& passes) {
    TapeWriter writer(file, about, smallest, TapeWriter::Tail::None);
    std::vector<std::byte> bytes;
    for (const auto& pass : passes) {
        bytes.clear();
        for (const Event& event : pass) append(bytes, event);
        writer.add(bytes);
        if (writer.pending() > blockSize) writer.closeBlock();
    }
    writer.finish();
    if (!writer.good()) throw Problem(file + " cannot be written. Is there room, and may you write there?");
}

std::string saveRecording(const std::string& folder, Run run, const std::string& file) {
    const std::string from = run == Run::Current ? currentRecording(folder) : earlierRecording(folder);
    std::error_code none;
    if (!std::filesystem::exists(from, none))
        throw Problem(run == Run::Current ? "Nothing has been recorded in " + folder + ". Start the unit: unitctl start"
                                          : "No product of this unit has ended yet: leave --earlier out.");
    const Recording recording(from);
    std::string about = recording.tape().about;
    if (const std::string end = endOf(from); !end.empty()) about += "end=" + end + "\n";
    writeRecording(file, about, recording.passes());
    char text[160];
    std::snprintf(text, sizeof text, "%llu frames in %.1f s, %llu bytes%s",
                  static_cast<unsigned long long>(recording.frames()), static_cast<double>(recording.duration()) / 1e9,
                  static_cast<unsigned long long>(std::filesystem::file_size(file, none)),
                  endOf(from).empty() ? "" : (". The product ended " + endOf(from)).c_str());
    return text;
}

}  // namespace Unit
