#include "unit/ctl/main/commandline.h"

#include <unistd.h>

#include <cstdio>

#include "unit/ctl/installation.h"
#include "unit/ctl/main/insideverbs.h"
#include "unit/ctl/scenefile.h"

namespace Unit {

namespace {

/// What is connected to a unit that nobody has told a scene.
constexpr const char* defaultScene = "default";

/// Also a part of paths and of shared names, so that not every text will do.
void checkInstanceName(const std::string& name) {
    constexpr const char* allowed = "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789-_.";
    constexpr std::size_t longest = 64;
    if (name.size() > longest || name.starts_with('.') || name.find_first_not_of(allowed) != std::string::npos)
        throw CLI::ValidationError("\"" + name.substr(0, longest) + "\" is no name for a unit; use up to 64 letters, " +
                                   "digits, '-', '_' and '.'");
}

}  // namespace

Platform::Virtual::Place placeOf(const std::string& name) {
    checkInstanceName(name);
    auto place = Platform::Virtual::Place::fromEnvironment();
    return name.empty() || name == place.name ? place : Platform::Virtual::Place::named(name);
}

std::vector<std::string> verbNames(const CLI::App& app) {
    std::vector<std::string> names;
    for (const CLI::App* verb : app.get_subcommands([](const CLI::App*) { return true; }))
        names.push_back(verb->get_name());
    return names;
}

CommandLine::CommandLine(Arguments& given) : given_(given) {
    app.require_subcommand(1);
    app.fallthrough();
    app.add_option("--instance", given.instance, "Name of the unit; TERN_INSTANCE or \"default\" without it");
    app.add_flag("--json", given.json, "The result as JSON");
    addStartVerbs();
    addUnitVerbs();
    addValueVerbs();
    addInputVerbs();
    addHardwareVerbs();
    addLookVerbs();
    addNoticeVerb();
    addCompletion();
    addInsideVerbs(app,
                   {.place = [&given] { return placeOf(given.instance); }, .json = [&given] { return given.json; }});
}

CLI::App* CommandLine::add(const char* name, const char* help, std::function<void()> action) {
    CLI::App* made = app.add_subcommand(name, help);
    made->callback(std::move(action));
    return made;
}

CLI::App* CommandLine::verb(const char* name, const char* help, std::function<void(Client&)> action) {
    return add(name, help, [this, action = std::move(action)] {
        Client client(placeOf(given_.instance), given_.json ? Output::Json : Output::Text);
        action(client);
    });
}

void CommandLine::addStartVerbs() {
    auto& a = given_;
    auto* start = add("start", "Start a unit; returns once the product has drawn", [this] {
        startInBackground(unitOptions());
        if (given_.json) std::printf("{\"started\":\"%s\"}\n", placeOf(given_.instance).name.c_str());
    });
    auto* run = add("run", "Start a unit and stay until Ctrl-C, telling what happens", [this] { runUnit(); });
    auto* panel =
        verb("panel", "Address of the front panel; starts it when none runs", [&a](Client& c) { c.panel(a.port); });
    run->add_flag("--no-panel", a.noPanel, "Without the front panel in the browser");
    run->add_option("--shot", a.file, "Write the first settled picture to this PNG file, and end");
    start->add_flag("--panel", a.panel, "With the front panel in the browser");
    for (auto* one : {start, run}) {
        one->add_option("--scene", a.scene, "A scene file, or the name of one that comes with the unit");
        one->add_flag("--lockstep", a.lockstep, "Time passes by \"step\" and by input only");
        one->add_flag("--no-server", a.noServer, "Another server serves this unit");
        one->add_option("--page", a.page, "Start with this page");
        one->add_flag("--no-recording", a.noRecording, "Write down nothing for unitctl record");
    }
    for (auto* one : {start, run, panel})
        one->add_option("--port", a.port, "Port of the front panel; one that is free without it");
}

UnitOptions CommandLine::unitOptions() const {
    const Arguments& given = given_;
    const bool asFromFactory = given.lockstep && given.scene.empty();
    return {.place = placeOf(given.instance),
            .scene = given.scene.empty() ? "" : findScene(given.scene),
            .hardware = asFromFactory ? "" : findScene(defaultScene),
            .pacing = given.lockstep ? Pacing::Lockstep : Pacing::Free,
            .server = given.noServer ? ServerUse::Foreign : ServerUse::Own,
            .record = given.noRecording ? Record::Off : Record::On,
            .page = given.page,
            .panel = given.panel ? PanelUse::Own : PanelUse::None,
            .panelPort = given.port,
            .programs = Installation::own().programs};
}

void CommandLine::runUnit() {
    if (!given_.file.empty()) return shootFirst();
    given_.panel = !given_.noPanel;
    runInForeground(unitOptions());
}

/// A unit that nobody has named is made for the picture, and goes with it.
void CommandLine::shootFirst() {
    given_.panel = false;
    auto options = unitOptions();
    if (options.scene.empty()) options.scene = findScene(defaultScene);
    const bool named = !given_.instance.empty();
    options.place = Platform::Virtual::Place::named(named ? given_.instance : "shot-" + std::to_string(::getpid()));
    struct Made {
        ~Made() {
            if (goes) instance.remove();
        }
        Platform::Virtual::Instance instance;
        bool goes;
    } made{Platform::Virtual::Instance(options.place), !named};
    shootFirstPage(std::move(options), given_.file);
}

}  // namespace Unit
