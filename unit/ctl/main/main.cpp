// unitctl: one command line over a virtual unit.
#include <CLI/CLI.hpp>
#include <cctype>
#include <cstdio>
#include <exception>
#include <filesystem>
#include <string>
#include <vector>

#include "model/catalogue/constants.h"
#include "unit/ctl/client.h"
#include "unit/ctl/installation.h"
#include "unit/ctl/launch.h"
#include "unit/ctl/main/insideverbs.h"
#include "unit/ctl/nearest.h"
#include "unit/ctl/problem.h"
#include "unit/ctl/scenefile.h"
#include "unit/server/hostile.h"

namespace {

using namespace Unit;

constexpr int exitUsage = 2;
/// What is connected to a unit that nobody has told a scene.
constexpr const char* defaultScene = "default";

struct Arguments {
    std::string instance;
    bool json = false;
    bool lockstep = false;
    bool noServer = false;
    bool noRecording = false;
    bool noPanel = false;
    bool panel = false;
    std::uint16_t port = 0;
    bool problem = false;
    bool remove = false;
    std::string scene, page, name, value, file, glob, word, mask;
    unsigned frames = 1;
    unsigned milliseconds = 100;
    unsigned long lines = 20;
    std::string id, offset, length;
    std::vector<std::string> words;
    std::vector<int> numbers = std::vector<int>(4);
    double x = 0, y = 0;
};

void complain(const std::string& problems) {
    for (std::size_t start = 0; start < problems.size();) {
        const auto end = std::min(problems.find('\n', start), problems.size());
        if (end > start) std::fprintf(stderr, "unitctl: %s\n", problems.substr(start, end - start).c_str());
        start = end + 1;
    }
}

/// Also a part of paths and of shared names, so that not every text will do.
void checkInstanceName(const std::string& name) {
    constexpr const char* allowed = "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789-_.";
    constexpr std::size_t longest = 64;
    if (name.size() > longest || name.starts_with('.') || name.find_first_not_of(allowed) != std::string::npos)
        throw CLI::ValidationError("\"" + name.substr(0, longest) + "\" is no name for a unit; use up to 64 letters, " +
                                   "digits, '-', '_' and '.'");
}

Platform::Virtual::Place placeOf(const std::string& name) {
    checkInstanceName(name);
    auto place = Platform::Virtual::Place::fromEnvironment();
    return name.empty() || name == place.name ? place : Platform::Virtual::Place::named(name);
}

UnitOptions unitOptions(const Arguments& given) {
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

/// A number that a person writes in decimal or, with 0x in front, in hexadecimal.
std::uint32_t number(const std::string& text) {
    std::size_t end = 0;
    unsigned long value = 0;
    try {
        value = std::stoul(text, &end, 0);
    } catch (const std::exception&) {
    }
    if (end == 0 || end != text.size() || value > 0xffffffffUL || text.starts_with('-'))
        throw Problem("\"" + text + "\" is no number; write 123 or 0x7b.");
    return static_cast<std::uint32_t>(value);
}

/// Of a notice that is named by its number or as in the journal.
std::uint32_t noticeId(const std::string& text) {
    if (text.empty() || std::isalpha(static_cast<unsigned char>(text[0])) == 0) return number(text);
    std::vector<std::string> names;
    for (std::size_t id = 0; id < Catalogue::messages.size(); ++id) {
        const char* name = Catalogue::messages[id].name;
        if (name != nullptr && text == name) return static_cast<std::uint32_t>(id);
        if (name != nullptr) names.emplace_back(name);
    }
    const std::string meant = text.ends_with("Changed") ? text : text + "Changed";
    throw Problem("There is no notice " + text + "." + suggestion(meant, names) +
                  " A notice is named after its variable, as in the journal.");
}

/// Every verb's name, for the completion and for who mistypes one.
std::vector<std::string> verbNames(const CLI::App& app) {
    std::vector<std::string> names;
    for (const CLI::App* verb : app.get_subcommands([](const CLI::App*) { return true; }))
        names.push_back(verb->get_name());
    return names;
}

class CommandLine {
  public:
    explicit CommandLine(Arguments& given) : given_(given) {
        app.require_subcommand(1);
        app.fallthrough();
        app.add_option("--instance", given.instance, "Name of the unit; TERN_INSTANCE or \"default\" without it");
        app.add_flag("--json", given.json, "The result as JSON");
        addUnitVerbs();
        addValueVerbs();
        addHandVerbs();
        addLookVerbs();
        addInsideVerbs(app, {.place = [&given] { return placeOf(given.instance); },
                             .named = [&given] { return !given.instance.empty(); },
                             .json = [&given] { return given.json; }});
    }

    CLI::App app{"Starts, drives and looks into a virtual unit. Table cells are NAME[row].Field."};

  private:
    /// A verb that speaks to a running unit.
    CLI::App* verb(const char* name, const char* help, std::function<void(Client&)> action) {
        return add(name, help, [this, action = std::move(action)] {
            Client client(placeOf(given_.instance), given_.json ? Output::Json : Output::Text);
            action(client);
        });
    }
    CLI::App* add(const char* name, const char* help, std::function<void()> action) {
        CLI::App* made = app.add_subcommand(name, help);
        made->callback(std::move(action));
        return made;
    }
    void addTime(CLI::App* verb) {
        verb->add_option("--ms", given_.milliseconds, "How long it lasts, in milliseconds")
            ->capture_default_str()
            ->check(CLI::Range(1U, 600'000U));
    }

    void addUnitVerbs();
    void addValueVerbs();
    void addHandVerbs();
    void addLookVerbs();

    Arguments& given_;
};

void CommandLine::addUnitVerbs() {
    auto& a = given_;
    auto* start = add("start", "Start a unit; returns once the product has drawn", [&a] {
        startInBackground(unitOptions(a));
        if (a.json) std::printf("{\"started\":\"%s\"}\n", placeOf(a.instance).name.c_str());
    });
    auto* run = add("run", "Start a unit and stay until Ctrl-C, telling what happens", [&a] {
        a.panel = a.file.empty() && !a.noPanel;
        if (a.file.empty()) return runInForeground(unitOptions(a));
        const std::string own = "shot-" + std::to_string(::getpid());
        auto options = unitOptions(a);
        if (options.scene.empty()) options.scene = findScene(defaultScene);
        options.place = Platform::Virtual::Place::named(a.instance.empty() ? own : a.instance);
        const Platform::Virtual::Instance instance(options.place);
        struct Cleaner {
            const Platform::Virtual::Instance* made;
            ~Cleaner() {
                if (made != nullptr) made->remove();
            }
        } cleaner{a.instance.empty() ? &instance : nullptr};
        shootFirstPage(std::move(options), a.file);
    });
    run->add_flag("--no-panel", a.noPanel, "Without the front panel in the browser");
    start->add_flag("--panel", a.panel, "With the front panel in the browser");
    run->add_option("--shot", a.file, "Write the first settled picture to this PNG file, and end");
    for (auto* one : {start, run}) {
        one->add_option("--scene", a.scene, "A scene file, or the name of one that comes with the unit");
        one->add_flag("--lockstep", a.lockstep, "Time passes by \"step\" and by input only");
        one->add_flag("--no-server", a.noServer, "Another server serves this unit");
        one->add_option("--page", a.page, "Start with this page");
        one->add_flag("--no-recording", a.noRecording, "Write down nothing for unitctl record");
    }
    auto* panel =
        verb("panel", "Address of the front panel; starts it when none runs", [&a](Client& c) { c.panel(a.port); });
    for (auto* one : {start, run, panel})
        one->add_option("--port", a.port, "Port of the front panel; one that is free without it");
    verb("stop", "End a unit", [](Client& c) { c.stop(); });
    verb("status", "What runs", [](Client& c) { c.status(); });
    verb("scene", "Switch the unit on anew with a scene", [&a](Client& c) { c.scene(a.scene); })
        ->add_option("file", a.scene)
        ->required();
    verb("step", "Lockstep: let frames pass", [&a](Client& c) { c.step(a.frames); })
        ->add_option("frames", a.frames)
        ->check(CLI::Range(1U, 100'000U));
}

void CommandLine::addValueVerbs() {
    auto& a = given_;
    verb("list", "Names of values", [&a](Client& c) { c.list(a.glob); })->add_option("glob", a.glob);
    verb("get", "A value", [&a](Client& c) { c.get(a.name); })->add_option("name", a.name)->required();
    auto* set = verb("set", "Store a value and tell of it", [&a](Client& c) { c.set(a.name, a.value); });
    auto* poke = verb("poke", "Store a value and say nothing", [&a](Client& c) { c.poke(a.name, a.value); });
    for (auto* one : {set, poke}) {
        one->add_option("name", a.name)->required();
        one->add_option("value", a.value)->required();
    }
    verb("send", "A notice by its id or name", [&a](Client& c) { c.send(noticeId(a.id)); })
        ->add_option("id", a.id)
        ->required();
    auto* peek =
        verb("peek", "Bytes of a memory area", [&a](Client& c) { c.peek(a.name, number(a.offset), number(a.length)); });
    peek->add_option("area", a.name)->required();
    peek->add_option("offset", a.offset)->required();
    peek->add_option("length", a.length)->required();
    verb("watch", "Changes as they happen", [&a](Client& c) { c.watch(a.glob); })->add_option("glob", a.glob);
    verb("journal", "Notices that the product has sent since the last call", [](Client& c) { c.journal(); });
    verb("subscriptions", "Ids that the product has subscribed, in order", [](Client& c) { c.subscriptions(); });
}

void CommandLine::addHandVerbs() {
    auto& a = given_;
    auto* down = verb("down", "A key goes down", [&a](Client& c) { c.key(a.name, true); });
    auto* up = verb("up", "A key comes up", [&a](Client& c) { c.key(a.name, false); });
    auto* press = verb("press", "A key goes down and comes up", [&a](Client& c) { c.press(a.name, a.milliseconds); });
    for (auto* one : {down, up, press}) one->add_option("key", a.name)->required();
    const auto point = [&a](std::size_t index) { return TouchPoint{a.numbers[index], a.numbers[index + 1]}; };
    auto* touch = verb("touch", "A contact", [&a, point](Client& c) { c.touch(point(0), a.milliseconds); });
    auto* drag =
        verb("drag", "A contact that moves", [&a, point](Client& c) { c.drag(point(0), point(2), a.milliseconds); });
    auto* pinch = verb("pinch", "Two contacts around a point; their distance changes",
                       [&a, point](Client& c) { c.pinch(point(0), a.numbers[2], a.numbers[3], a.milliseconds); });
    const auto numbers = [&a](CLI::App* to, std::initializer_list<const char*> names) {
        std::size_t index = 0;
        for (const char* name : names) to->add_option(name, a.numbers[index++])->required();
    };
    numbers(touch, {"x", "y"});
    numbers(drag, {"x1", "y1", "x2", "y2"});
    numbers(pinch, {"x", "y", "from", "to"});
    auto* act = verb("do", "What a person does to the hardware: a setting of one of the server's modules",
                     [&a](Client& c) { c.configure(a.name, a.word, a.value); });
    act->add_option("module", a.name)->required();
    act->add_option("setting", a.word)->required();
    act->add_option("value", a.value)->required();
    verb("settings", "The modules' settings, with what they take and what they are", [&a](Client& c) {
        c.settings(a.name);
    })->add_option("module", a.name);
    verb("hostile", "Let the server misbehave; \"off\" ends it", [&a](Client& c) { c.hostile(a.words); })
        ->add_option("mode", a.words, Hostile::help)
        ->required();
    auto* joystick = verb("joystick", "Hold the stick", [&a](Client& c) { c.joystick(a.x, a.y, a.milliseconds); });
    joystick->add_option("x", a.x)->required();
    joystick->add_option("y", a.y)->required();
    for (auto* one : {press, touch, drag, pinch, joystick}) addTime(one);
}

void CommandLine::addLookVerbs() {
    auto& a = given_;
    verb("page", "Name of the active page", [](Client& c) { c.page(); });
    auto* trace = verb("trace", "Trace flags of the product: draw, event, var or page",
                       [&a](Client& c) { c.trace(a.word, number(a.mask)); });
    trace->add_option("word", a.word)->required();
    trace->add_option("mask", a.mask)->required();
    verb("log", "The end of the unit's log", [&a](Client& c) { c.log(a.lines); })
        ->add_option("-n", a.lines, "Lines")
        ->check(CLI::Range(0UL, 1'000'000UL));
    verb("shot", "The shown picture as a PNG file", [&a](Client& c) { c.shot(a.file); })
        ->add_option("file", a.file)
        ->required();
    auto* pixel = verb("pixel", "Colour of a shown pixel", [&a](Client& c) { c.pixel({a.numbers[0], a.numbers[1]}); });
    pixel->add_option("x", a.numbers[0])->required();
    pixel->add_option("y", a.numbers[1])->required();
    auto* notice = verb("notice", "A notice over the display, seen in the panel", [&a](Client& c) {
        if (a.remove) return c.removeNotice(a.name);
        c.postNotice({a.name, a.problem ? Notices::Tone::Problem : Notices::Tone::Info, a.word, a.value});
    });
    notice->add_option("key", a.name, "Another notice of this key takes its place")->required();
    notice->add_option("title", a.word);
    notice->add_option("text", a.value);
    notice->add_flag("--problem", a.problem, "Something is wrong");
    notice->add_flag("--remove", a.remove, "Take it away");
    add("complete", "Words for the shell's completion: verbs, keys or scenes",
        [this] {
            std::vector<std::string> words = verbNames(app);
            if (given_.word == "scenes") words = sceneNames();
            if (given_.word == "keys") {
                words.clear();
                for (const auto& key : namedKeys) words.push_back(key.name);
            }
            for (const auto& word : words) std::printf("%s\n", word.c_str());
        })
        ->add_option("what", a.word)
        ->required()
        ->check(CLI::IsMember({"verbs", "keys", "scenes"}));
}

/// The verb that was given, with a blank behind it.
std::string verbOf(const CLI::App& app) {
    const auto given = app.get_subcommands();
    return given.empty() ? "" : given.front()->get_name() + " ";
}

/// What CLI11 says about a word that is no verb does not name what was meant.
std::string unknownVerb(const CLI::App& app, int argc, char** argv) {
    const auto names = verbNames(app);
    for (int i = 1; i < argc; ++i) {
        const std::string word = argv[i];
        if (word == "--instance") ++i;
        if (word.starts_with('-')) continue;
        if (std::ranges::find(names, word) != names.end()) return "";
        return "There is no verb \"" + word + "\"." + suggestion(word, names) + " See them: unitctl --help";
    }
    return "";
}

}  // namespace

int main(int argc, char** argv) {
    Arguments given;
    CommandLine line(given);
    try {
        if (const auto problem = unknownVerb(line.app, argc, argv); !problem.empty()) {
            complain(problem);
            return exitUsage;
        }
        line.app.parse(argc, argv);
        return EXIT_SUCCESS;
    } catch (const CLI::Success& help) {
        return line.app.exit(help);
    } catch (const CLI::RuntimeError& told) {
        return told.get_exit_code();
    } catch (const CLI::ParseError& error) {
        complain(std::string(error.what()) + ". See: unitctl " + verbOf(line.app) + "--help");
        return exitUsage;
    } catch (const std::exception& problem) {
        complain(problem.what());
        return EXIT_FAILURE;
    }
}
