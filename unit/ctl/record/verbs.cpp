#include "unit/ctl/record/verbs.h"

#include <unistd.h>

#include <cstdio>
#include <filesystem>
#include <nlohmann/json.hpp>

#include "unit/ctl/installation.h"
#include "unit/ctl/launch.h"
#include "unit/ctl/problem.h"
#include "unit/ctl/productlog.h"
#include "unit/ctl/record/differencepictures.h"
#include "unit/ctl/record/minimise.h"
#include "unit/ctl/record/replay.h"
#include "unit/ctl/record/scratchunit.h"

namespace Unit {

namespace {

using nlohmann::json;

void warn(const std::string& text) {
    std::fprintf(stderr, "unitctl: %s\n", text.c_str());
}

std::string describeEnd(const ReplayOutcome& outcome, const Recording& recording) {
    const std::string frame = std::to_string(outcome.frames + 1);
    if (outcome.hangs) return "The product hangs in frame " + frame + ".";
    if (outcome.ended.empty()) return "";
    const bool same = outcome.ended == recording.end();
    return "The product ended " + outcome.ended + " in frame " + frame +
           (same ? ", as it was recorded" : ", other than it was recorded") +
           (outcome.words.empty() ? "." : ": " + outcome.words);
}

std::string describeDifference(const ReplayOutcome& outcome) {
    if (!outcome.difference) return "";
    return "Frame " + std::to_string(*outcome.difference) +
           (outcome.otherPicture ? " shows another picture than was recorded."
                                 : " sends other notices to the server than were recorded.");
}

std::string guiOf(const std::string& program) {
    const std::string gui = program.empty() ? Installation::own().programs + "/gui-virtual" : program;
    if (::access(gui.c_str(), X_OK) != 0)
        throw Problem("The program " + gui + " is missing. Build it, or install the unit anew.");
    return gui;
}

}  // namespace

void minimiseVerb(const MinimiseRequest& request) {
    const Recording recording(request.file);
    for (const auto& warning : recording.warnings()) warn(warning);
    Minimiser(recording, guiOf(request.program), [](const std::string& step) {
        std::printf("%s\n", step.c_str());
        std::fflush(stdout);
    }).run(request.out, request.seconds);
}

namespace {

/// The recording of a request, its warnings told.
Recording openRecording(const ReplayRequest& request, const std::string& gui) {
    Recording recording(request.file);
    for (const auto& warning : recording.warnings()) warn(warning);
    if (recording.program(gui) == Program::Other)
        warn(request.file + " was recorded with another build of the product. Pictures may rightly differ.");
    if (request.until && *request.until > recording.frames())
        throw Problem("The recording ends with frame " + std::to_string(recording.frames()) + ".");
    return recording;
}

}  // namespace

void stayVerb(const ReplayRequest& request, const Platform::Virtual::Place& place) {
    const Recording recording = openRecording(request, guiOf(""));
    UnitOptions options;
    options.place = place;
    options.pacing = Pacing::Lockstep;
    options.server = ServerUse::Foreign;
    options.record = Record::Off;
    options.tape = std::filesystem::absolute(request.file).string();
    options.tapeFrames = static_cast<unsigned>(request.until.value_or(recording.frames()));
    options.programs = Installation::own().programs;
    startInBackground(options);
    std::printf(
        "The unit \"%s\" stands at frame %u. Look at it (shot, page, get, why), let it go on (step), end it (stop).\n",
        place.name.c_str(), options.tapeFrames);
}

namespace {

json toJson(const ReplayOutcome& outcome, const Recording& recording, const std::string& page,
            const SavedDifference& pictures) {
    json answer = {{"frames", outcome.frames},
                   {"recorded", recording.frames()},
                   {"seconds", outcome.seconds},
                   {"page", page},
                   {"same", outcome.asRecorded(recording)}};
    if (outcome.difference) answer["difference"] = *outcome.difference;
    if (outcome.otherPicture) answer["pictures"] = pictures.files;
    if (!outcome.ended.empty()) answer["ended"] = outcome.ended;
    return answer;
}

std::string summaryOf(const ReplayOutcome& outcome, const Recording& recording) {
    const double played =
        static_cast<double>(outcome.frames) / static_cast<double>(std::max<std::uint64_t>(recording.frames(), 1));
    const double recordedSeconds = static_cast<double>(recording.duration()) / 1e9 * played;
    char summary[160];
    std::snprintf(summary, sizeof summary,
                  "%llu frames of %llu in %.2f s (%.0f times as fast as they were recorded), %s.",
                  static_cast<unsigned long long>(outcome.frames), static_cast<unsigned long long>(recording.frames()),
                  outcome.seconds, recordedSeconds / outcome.seconds,
                  outcome.asRecorded(recording) ? "all as recorded" : "not as recorded");
    return summary;
}

std::string toText(const ReplayOutcome& outcome, const Recording& recording, const SavedDifference& pictures) {
    std::string text;
    const auto line = [&](const std::string& more) { text += (text.empty() || more.empty() ? "" : "\n") + more; };
    line(describeEnd(outcome, recording));
    line(describeDifference(outcome));
    for (const auto& file : pictures.files) line("  " + file);
    line(pictures.remark);
    line(summaryOf(outcome, recording));
    return text;
}

}  // namespace

bool replayVerb(const ReplayRequest& request) {
    const std::string gui = guiOf(request.program);
    const Recording recording = openRecording(request, gui);
    const ScratchUnit unit("replay");
    Replay replay({.gui = gui,
                   .place = unit.place(),
                   .until = request.until,
                   .onDifference =
                       request.check ? Platform::Virtual::OnDifference::Stop : Platform::Virtual::OnDifference::GoOn});
    const ReplayOutcome outcome = replay.run(recording);
    if (!request.shot.empty()) writePicture(replay.driver(), request.shot);

    const std::string page = ProductLog(unit.place().folder).page();
    const auto pictures =
        outcome.otherPicture ? saveDifference(replay, *outcome.difference, request.pictures) : SavedDifference{};
    const std::string told =
        request.json ? toJson(outcome, recording, page, pictures).dump() : toText(outcome, recording, pictures);
    std::printf("%s\n", told.c_str());
    return !request.check || outcome.asRecorded(recording);
}

}  // namespace Unit
