// What is said to a running unit.
#include <cctype>
#include <cstdio>

#include "model/catalogue/constants.h"
#include "unit/ctl/main/commandline.h"
#include "unit/ctl/nearest.h"
#include "unit/ctl/problem.h"
#include "unit/ctl/scenefile.h"
#include "unit/server/hostile.h"

namespace Unit {

namespace {

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

}  // namespace

void CommandLine::addUnitVerbs() {
    auto& a = given_;
    verb("stop", "End a unit", [](Client& c) { c.stop(); });
    verb("status", "What runs", [](Client& c) { c.status(); });
    needs(verb("scene", "Switch the unit on anew with a scene", [&a](Client& c) { c.scene(a.scene); }), "file",
          a.scene);
    verb("step", "Lockstep: let frames pass", [&a](Client& c) { c.step(a.frames); })
        ->add_option("frames", a.frames)
        ->check(CLI::Range(1U, 100'000U));
}

void CommandLine::addValueVerbs() {
    auto& a = given_;
    verb("list", "Names of values", [&a](Client& c) { c.list(a.glob); })->add_option("glob", a.glob);
    needs(verb("get", "A value", [&a](Client& c) { c.get(a.name); }), "name", a.name);
    needs(verb("set", "Store a value and tell of it", [&a](Client& c) { c.set(a.name, a.value); }), "name", a.name,
          "value", a.value);
    needs(verb("poke", "Store a value and say nothing", [&a](Client& c) { c.poke(a.name, a.value); }), "name", a.name,
          "value", a.value);
    needs(verb("send", "A notice by its id or name", [&a](Client& c) { c.send(noticeId(a.id)); }), "id", a.id);
    needs(
        verb("peek", "Bytes of a memory area", [&a](Client& c) { c.peek(a.name, number(a.offset), number(a.length)); }),
        "area", a.name, "offset", a.offset, "length", a.length);
    verb("watch", "Changes as they happen", [&a](Client& c) { c.watch(a.glob); })->add_option("glob", a.glob);
    verb("journal", "Notices that the product has sent since the last call", [](Client& c) { c.journal(); });
    verb("subscriptions", "Ids that the product has subscribed, in order", [](Client& c) { c.subscriptions(); });
}

void CommandLine::addInputVerbs() {
    auto& a = given_;
    auto& n = a.numbers;
    needs(verb("down", "A key goes down", [&a](Client& c) { c.key(a.name, true); }), "key", a.name);
    needs(verb("up", "A key comes up", [&a](Client& c) { c.key(a.name, false); }), "key", a.name);
    auto* press = verb("press", "A key goes down and comes up", [&a](Client& c) { c.press(a.name, a.milliseconds); });
    auto* touch = verb("touch", "A contact", [&a, &n](Client& c) { c.touch({n[0], n[1]}, a.milliseconds); });
    auto* drag = verb("drag", "A contact that moves", [&a, &n](Client& c) {
        c.drag({n[0], n[1]}, {n[2], n[3]}, a.milliseconds);
    });
    auto* pinch = verb("pinch", "Two contacts around a point; their distance changes", [&a, &n](Client& c) {
        c.pinch({n[0], n[1]}, n[2], n[3], a.milliseconds);
    });
    auto* joystick = verb("joystick", "Hold the stick", [&a](Client& c) { c.joystick(a.x, a.y, a.milliseconds); });
    needs(press, "key", a.name);
    needs(touch, "x", n[0], "y", n[1]);
    needs(drag, "x1", n[0], "y1", n[1], "x2", n[2], "y2", n[3]);
    needs(pinch, "x", n[0], "y", n[1], "from", n[2], "to", n[3]);
    needs(joystick, "x", a.x, "y", a.y);
    for (auto* one : {press, touch, drag, pinch, joystick})
        one->add_option("--ms", a.milliseconds, "How long it lasts, in milliseconds")
            ->capture_default_str()
            ->check(CLI::Range(1U, 600'000U));
}

void CommandLine::addHardwareVerbs() {
    auto& a = given_;
    needs(verb("do", "What a person does to the hardware: a setting of one of the server's modules",
               [&a](Client& c) { c.configure(a.name, a.word, a.value); }),
          "module", a.name, "setting", a.word, "value", a.value);
    verb("settings", "The modules' settings, with what they take and what they are", [&a](Client& c) {
        c.settings(a.name);
    })->add_option("module", a.name);
    verb("hostile", "Let the server misbehave; \"off\" ends it", [&a](Client& c) { c.hostile(a.words); })
        ->add_option("mode", a.words, Hostile::help)
        ->required();
}

void CommandLine::addLookVerbs() {
    auto& a = given_;
    auto& n = a.numbers;
    verb("page", "Name of the active page", [](Client& c) { c.page(); });
    needs(verb("trace", "Trace flags of the product: draw, event, var or page",
               [&a](Client& c) { c.trace(a.word, number(a.mask)); }),
          "word", a.word, "mask", a.mask);
    verb("log", "The end of the unit's log", [&a](Client& c) { c.log(a.lines); })
        ->add_option("-n", a.lines, "Lines")
        ->check(CLI::Range(0UL, 1'000'000UL));
    needs(verb("shot", "The shown picture as a PNG file", [&a](Client& c) { c.shot(a.file); }), "file", a.file);
    auto* pixel = verb("pixel", "Colour of a shown pixel", [&n](Client& c) { c.pixel({n[0], n[1]}); });
    needs(pixel, "x", n[0], "y", n[1]);
}

void CommandLine::addNoticeVerb() {
    auto& a = given_;
    auto* notice = verb("notice", "A notice over the display, seen in the panel", [&a](Client& c) {
        if (a.remove) return c.removeNotice(a.name);
        c.postNotice({a.name, a.problem ? Notices::Tone::Problem : Notices::Tone::Info, a.word, a.value});
    });
    notice->add_option("key", a.name, "Another notice of this key takes its place")->required();
    notice->add_option("title", a.word);
    notice->add_option("text", a.value);
    notice->add_flag("--problem", a.problem, "Something is wrong");
    notice->add_flag("--remove", a.remove, "Take it away");
}

void CommandLine::addCompletion() {
    add("complete", "Words for the shell's completion: verbs, keys or scenes", [this] { printCompletions(); })
        ->add_option("what", given_.word)
        ->required()
        ->check(CLI::IsMember({"verbs", "keys", "scenes"}));
}

void CommandLine::printCompletions() const {
    std::vector<std::string> words;
    if (given_.word == "verbs") words = verbNames(app);
    if (given_.word == "scenes") words = sceneNames();
    if (given_.word == "keys")
        for (const auto& key : namedKeys) words.push_back(key.name);
    for (const auto& word : words) std::printf("%s\n", word.c_str());
}

}  // namespace Unit
