// What pages ask of the panel.
#include <algorithm>
#include <variant>

#include "unit/ctl/problem.h"
#include "unit/ctl/scenefile.h"
#include "unit/panel/panel.h"

namespace Unit {

using Id = WebServer::ClientId;

void Panel::received(Id id, std::string_view text) {
    const auto client = clients_.find(id);
    if (client == clients_.end()) return;
    std::string problem;
    const auto request = parseRequest(text, problem);
    if (!request) return send(id, {{"t", "refused"}, {"text", problem}});
    try {
        obey(id, client->second, *request);
    } catch (const Problem& why) {
        answer(id, *request, {false, why.what()});
    }
}

void Panel::obey(Id id, Client& client, const Request& request) {
    const Asked asked = {id, client, request};
    std::visit([&](const auto& what) { perform(asked, what); }, request.what);
}

void Panel::perform(const Asked& asked, const Request::Credit&) {
    asked.client.credit = std::min(asked.client.credit + 1, mostCredit);
}

void Panel::perform(const Asked& asked, const Request::Key& key) {
    held_.key(asked.by, *key.key, key.down);
}

void Panel::perform(const Asked& asked, const Request::Touch& touch) {
    const int width = static_cast<int>(driver_.width()), height = static_cast<int>(driver_.height());
    for (const auto& contact : touch.contacts)
        if (contact && (contact->x >= width || contact->y >= height)) throw Problem("The point is off the display.");
    held_.touch(asked.by, touch.contacts);
}

void Panel::perform(const Asked& asked, const Request::Do& one) {
    change(asked, "do " + one.module + " " + one.setting + " " + one.value);
}

void Panel::perform(const Asked& asked, const Request::Set& one) {
    change(asked, "set " + one.name + " " + one.value);
}

void Panel::perform(const Asked& asked, const Request::Scene& scene) {
    const auto names = sceneNames();
    if (std::ranges::find(names, scene.name) == names.end()) throw Problem("There is no scene \"" + scene.name + "\".");
    change(asked, "scene " + findScene(scene.name));
}

void Panel::perform(const Asked& asked, const Request::Trace& trace) {
    change(asked, "poke VarTRACE_INFO_VARIABLE[0]." + trace.field + " " +
                      std::to_string(static_cast<std::int32_t>(trace.mask)));
}

void Panel::perform(const Asked& asked, const Request::Watch& watch) {
    asked.client.values.watch(watch.names);
}

void Panel::perform(const Asked& asked, const Request::LogLevel& log) {
    asked.client.logLevel = log.level;
}

void Panel::perform(const Asked& asked, const Request::Step& step) {
    ask(asked, Backstage::Whom::Supervisor, "step " + std::to_string(step.frames));
}

/// Something after which the modules may stand otherwise. A control that is being moved wants no answers, and its
/// place is told in time.
void Panel::change(const Asked& asked, const std::string& line) {
    ask(asked, Backstage::Whom::Server, line);
    if (!std::holds_alternative<Request::Do>(asked.request.what) || asked.request.number) askSettings();
}

void Panel::ask(const Asked& asked, Backstage::Whom whom, const std::string& line) {
    // The page may be gone by the time of the answer.
    const auto then = [this, id = asked.by, request = asked.request](const Backstage::Answer& given) {
        answer(id, request, given);
    };
    if (!backstage_.ask(whom, line, then)) throw Problem("That was too much at once; try again.");
}

void Panel::answer(Id id, const Request& request, const Backstage::Answer& given) {
    if (request.number) send(id, {{"t", "answer"}, {"n", *request.number}, {"ok", given.ok}, {"text", given.text}});
}

}  // namespace Unit
