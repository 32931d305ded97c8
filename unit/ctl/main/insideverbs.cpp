#include "unit/ctl/main/insideverbs.h"

#include <cstdio>
#include <memory>

#include "unit/ctl/inside/askunit.h"
#include "unit/ctl/inside/atlas.h"
#include "unit/ctl/inside/live.h"
#include "unit/ctl/inside/why.h"
#include "unit/ctl/installation.h"
#include "unit/ctl/problem.h"
#include "unit/ctl/record/recording.h"
#include "unit/ctl/record/verbs.h"
#include "unit/ctl/scenefile.h"

namespace Unit {

namespace {

/// What the command line of these verbs says. It lives as long as the callbacks do.
struct Given {
    Chosen chosen;
    std::string file, page, name;
    bool earlier = false;
    bool once = false;
    bool stay = false;
    AtlasOptions atlas;
    ReplayRequest replay;
    MinimiseRequest minimise;
};

CLI::App* add(CLI::App& app, const char* name, const char* help, std::function<void()> action) {
    CLI::App* made = app.add_subcommand(name, help);
    made->callback(std::move(action));
    return made;
}

/// A verb's own failure, which it has told on stdout.
void requireSuccess(bool good) {
    if (!good) throw CLI::RuntimeError(EXIT_FAILURE);
}

void addRecordVerbs(CLI::App& app, const std::shared_ptr<Given>& given) {
    auto* record = add(app, "record", "Save all that has reached the product since its start", [given] {
        const auto told =
            saveRecording(given->chosen.place().folder, given->earlier ? Run::Earlier : Run::Current, given->file);
        if (given->chosen.json())
            std::printf("{\"recorded\":true}\n");
        else
            std::printf("%s\n", told.c_str());
    });
    record->add_option("file", given->file)->required();
    record->add_flag("--earlier", given->earlier, "Of the product that ran before this one, and ended");

    auto* replay = add(app, "replay", "Play a recording to the product and compare what it shows", [given] {
        given->replay.json = given->chosen.json();
        if (given->stay) return stayVerb(given->replay, given->chosen.place());
        requireSuccess(replayVerb(given->replay));
    });
    replay->add_option("file", given->replay.file)->required();
    replay->add_flag("--check", given->replay.check, "End at the first frame that is not as recorded, with status 1");
    replay->add_option("--program", given->replay.program, "Another build of gui-virtual");
    replay->add_option("--until", given->replay.until, "The last frame to play");
    replay->add_flag("--stay", given->stay, "Leave it as a unit that stands at its last frame, to be looked into");
    replay->add_option("--shot", given->replay.shot, "Write the last picture to this PNG file");
    replay->add_option("--pictures", given->replay.pictures, "Folder for the pictures of a difference");

    auto* minimise = add(app, "minimise", "Shorten a recording that fails, as long as it fails in the same way",
                         [given] { minimiseVerb(given->minimise); });
    minimise->add_option("file", given->minimise.file)->required();
    minimise->add_option("out", given->minimise.out)->required();
    minimise->add_option("--program", given->minimise.program, "The build of gui-virtual that it fails with");
    minimise->add_option("--seconds", given->minimise.seconds, "How long to look")->capture_default_str();
}

void addPageVerbs(CLI::App& app, const std::shared_ptr<Given>& given) {
    auto* jump = add(app, "goto", "Start the product again with another page; what the unit knows stays", [given] {
        askUnit(given->chosen.place(), given->page.empty() ? "goto" : "goto " + given->page);
        if (given->chosen.json()) std::printf("{\"page\":\"%s\"}\n", given->page.c_str());
    });
    jump->add_option("page", given->page, "Without it as the product starts by itself");
}

void addRuleVerbs(CLI::App& app, const std::shared_ptr<Given>& given) {
    add(app, "why", "Which rules decide a widget or a property, with the values in force",
        [given] { whyVerb(given->chosen.place(), given->name, given->chosen.json()); })
        ->add_option("place", given->name, "PAGE.WIDGET or PAGE.WIDGET.property")
        ->required();
    add(app, "who", "What a variable drives and what writes it",
        [given] { whoVerb(given->chosen.place(), given->name, given->chosen.json()); })
        ->add_option("name", given->name)
        ->required();
}

void addLiveVerb(CLI::App& app, const std::shared_ptr<Given>& given) {
    auto* live = add(app, "live", "Rebuild and show the model whenever a source of it is saved", [given] {
        Live(given->chosen.place(), [](const std::string& line) {
            std::printf("%s\n", line.c_str());
            std::fflush(stdout);
        }).run(given->once ? Live::Saves::One : Live::Saves::All);
    });
    live->add_flag("--once", given->once, "End after the first save");
}

void addAtlasVerb(CLI::App& app, const std::shared_ptr<Given>& given) {
    auto* atlas = add(app, "atlas", "Pictures of every page in every language, style and hand, as one sheet", [given] {
        AtlasOptions options = given->atlas;
        options.scenes.clear();
        for (const auto& scene : given->atlas.scenes) options.scenes.push_back(findScene(scene));
        options.programs = Installation::own().programs;
        requireSuccess(Atlas(options, [](const std::string& line) {
                           std::printf("%s\n", line.c_str());
                           std::fflush(stdout);
                       }).run());
    });
    given->atlas.scenes = {"zoom-feet-marks"};
    atlas->add_option("folder", given->atlas.folder)->required();
    atlas->add_option("--scene", given->atlas.scenes, "Scenes to take the pages with")->capture_default_str();
    atlas->add_option("--pages", given->atlas.glob, "Only these pages, for instance 'Home_*'");
    atlas->add_option("--against", given->atlas.against, "Folder of an earlier atlas; status 1 when pictures differ");
    atlas->add_option("--jobs", given->atlas.jobs, "Units side by side")
        ->capture_default_str()
        ->check(CLI::Range(1U, 64U));
}

}  // namespace

void addInsideVerbs(CLI::App& app, const Chosen& chosen) {
    const auto given = std::make_shared<Given>();
    given->chosen = chosen;
    addRecordVerbs(app, given);
    addPageVerbs(app, given);
    addAtlasVerb(app, given);
    addLiveVerb(app, given);
    addRuleVerbs(app, given);
}

}  // namespace Unit
