#include "unit/ctl/record/recordingtoplay.h"

#include <cstdlib>
#include <filesystem>

#include "unit/ctl/inside/startpage.h"

namespace Unit {

namespace {

void change(const char* name, const std::string& value) {
    if (value.empty())
        ::unsetenv(name);
    else
        ::setenv(name, value.c_str(), 1);
}

}  // namespace

RecordingToPlay::RecordingToPlay(const Recording& recording, Platform::Virtual::OnDifference onDifference) {
    set("TERN_REPLAY", std::filesystem::absolute(recording.file()).string());
    set("TERN_REPLAY_STOP", onDifference == Platform::Virtual::OnDifference::Stop ? "1" : "");
    set("TZ", recording.tape().value("zone"));
    set("TERN_FAULTS", recording.tape().value("faults"));
}

RecordingToPlay::~RecordingToPlay() {
    for (const Setting& setting : settings_) change(setting.name, setting.before);
}

void RecordingToPlay::set(const char* name, const std::string& value) {
    const char* before = std::getenv(name);
    settings_.push_back({name, before != nullptr ? before : ""});
    change(name, value);
}

std::string RecordingToPlay::program(const Recording& recording, const std::string& gui, const std::string& folder) {
    const std::string page = recording.tape().value("page");
    if (page.empty()) return gui;
    const std::string copy = folder + "/gui-virtual";
    StartPage(gui).writeCopy(page, copy);
    return copy;
}

}  // namespace Unit
