// The requests of the control socket.
#include <algorithm>
#include <charconv>
#include <exception>
#include <map>
#include <nlohmann/json.hpp>
#include <optional>
#include <vector>

#include "model/catalogue/constants.h"
#include "unit/server/server.h"

namespace Unit {

using nlohmann::json;

namespace {

std::string ok(const std::string& payload = "") {
    return payload.empty() ? "ok" : "ok " + payload;
}

/// One line whatever the problem's text holds.
std::string error(std::string problem) {
    for (char& c : problem)
        if (c == '\n' || c == '\r') c = ' ';
    return "error " + problem;
}

/// As JSON in one line, whatever bytes its texts hold.
std::string lineOf(const json& value) {
    return value.dump(-1, ' ', false, json::error_handler_t::replace);
}

/// A text as one line: escaped as in JSON, without the quotation marks.
std::string oneLine(const std::string& text) {
    const std::string quoted = lineOf(text);
    return quoted.substr(1, quoted.size() - 2);
}

/// The first word; `rest` becomes what follows the one blank behind it, since a text may begin with blanks.
std::string takeWord(std::string& rest) {
    const auto start = std::min(rest.find_first_not_of(' '), rest.size());
    const auto end = std::min(rest.find(' ', start), rest.size());
    std::string word = rest.substr(start, end - start);
    rest.erase(0, end + 1);
    return word;
}

template <typename Integer>
bool toNumber(const std::string& text, Integer& value) {
    const auto [end, failed] = std::from_chars(text.data(), text.data() + text.size(), value);
    return failed == std::errc() && end == text.data() + text.size();
}

/// What `set` and `poke` ask for.
struct Assignment {
    Cell cell;
    std::vector<std::byte> bytes;
};

std::optional<Assignment> parseAssignment(std::string rest, std::string& problem) {
    const std::string name = takeWord(rest);
    const auto cell = Store::find(name, problem);
    if (!cell) return std::nullopt;
    auto bytes = Store::parse(*cell, rest, problem);
    if (bytes) return Assignment{*cell, std::move(*bytes)};
    problem = name + ": " + problem;
    return std::nullopt;
}

}  // namespace

std::string Server::answer(std::string_view line) {
    using Request = std::string (Server::*)(const std::string& rest);
    static const std::map<std::string, Request> requests = {
        {"tick", &Server::answerTick},
        {"drain", &Server::answerDrain},
        {"lockstep", &Server::answerLockstep},
        {"scene", &Server::answerScene},
        {"set", &Server::answerSet},
        {"poke", &Server::answerPoke},
        {"get", &Server::answerGet},
        {"send", &Server::answerSend},
        {"do", &Server::answerConfigure},
        {"settings", &Server::answerSettings},
        {"hostile", &Server::answerHostile},
        {"journal", &Server::answerJournal},
        {"subscriptions", &Server::answerSubscriptions},
        {"status", &Server::answerStatus},
    };
    std::string rest(line);
    const std::string verb = takeWord(rest);
    if (const auto found = requests.find(verb); found != requests.end()) {
        try {
            return (this->*found->second)(rest);
        } catch (const std::exception& problem) {
            return error(problem.what());  // a request never ends the server
        }
    }
    std::string known = "watch";
    for (const auto& [name, ignored] : requests) known += " " + name;
    return error("There is no request \"" + verb + "\"; there are " + known + ".");
}

std::string Server::answerTick(const std::string& rest) {
    std::int64_t nanoseconds = tickPeriod;
    if (!rest.empty() && !toNumber(rest, nanoseconds)) return error("Say tick NANOSECONDS.");
    if (nanoseconds < 0) return error("Time does not run backwards.");
    if (pace_ == Pace::Free) return error("The server runs free; say lockstep on first.");
    broker_.drain();
    announceChanges();
    tick(nanoseconds);
    broker_.flush();
    broker_.reap();
    return ok();
}

std::string Server::answerDrain(const std::string&) {
    broker_.drain();
    announceChanges();
    broker_.flush();
    return ok();
}

std::string Server::answerLockstep(const std::string& rest) {
    if (rest != "on" && rest != "off") return error("Say lockstep on or lockstep off.");
    setPace(rest == "on" ? Pace::Lockstep : Pace::Free);
    return ok();
}

std::string Server::answerScene(const std::string& rest) {
    std::vector<std::string> problems;
    if (!simulation_.loadScene(rest, problems)) {
        std::string all;
        for (const std::string& problem : problems) all += (all.empty() ? "" : " | ") + problem;
        return error(all);
    }
    announceChanges();
    broker_.flush();
    return ok();
}

std::string Server::answerSet(const std::string& rest) {
    std::string problem;
    const auto given = parseAssignment(rest, problem);
    if (!given) return error(problem);
    simulation_.store().setBytes(given->cell, given->bytes);
    return answerNotice(given->cell.id);
}

std::string Server::answerPoke(const std::string& rest) {
    std::string problem;
    const auto given = parseAssignment(rest, problem);
    if (!given) return error(problem);
    std::ranges::copy(given->bytes, simulation_.store().bytes(given->cell).begin());
    return ok();
}

std::string Server::answerGet(const std::string& rest) {
    std::string problem;
    const auto cell = Store::find(rest, problem);
    return cell ? ok(oneLine(simulation_.store().show(*cell))) : error(problem);
}

std::string Server::answerSend(const std::string& rest) {
    std::uint16_t id = 0;
    if (!toNumber(rest, id) || id >= Catalogue::messages.size())
        return error("Say send ID, with an id below " + std::to_string(Catalogue::messages.size()) + ".");
    return answerNotice(id);
}

std::string Server::answerNotice(std::uint16_t id) {
    simulation_.store().note(id);
    simulation_.changed(id);
    announceChanges();
    broker_.flush();
    return ok();
}

std::string Server::answerConfigure(const std::string& rest) {
    std::string value = rest;
    const std::string module = takeWord(value);
    const std::string setting = takeWord(value);
    json parsed = json::parse(value, nullptr, false);
    if (parsed.is_discarded()) parsed = value;  // a bare word is a text
    std::string problem;
    if (!simulation_.configure(module, setting, parsed, problem)) return error(problem);
    announceChanges();
    broker_.flush();
    return ok();
}

std::string Server::answerSettings(const std::string&) {
    return ok(lineOf(simulation_.describe()));
}

std::string Server::answerHostile(const std::string& rest) {
    std::string problem;
    return hostile_.set(rest, problem) ? ok() : error(problem);
}

std::string Server::answerStatus(const std::string&) {
    json clients = json::array();
    for (const auto& client : broker_.clients())
        clients.push_back({{"pid", client->pid()},
                           {"subscriptions", client->subscriptions().size()},
                           {"all", client->wantsAll()},
                           {"waiting", client->waiting()}});
    const json answer = {{"pace", pace_ == Pace::Free ? "free" : "lockstep"},
                         {"open", broker_.isOpen()},
                         {"ticks", ticks_},
                         {"clients", clients}};
    return ok(answer.dump());
}

std::string Server::answerJournal(const std::string&) {
    broker_.drain();
    json ids = json::array();
    for (const Notify& notice : broker_.takeJournal()) ids.push_back(notice.id);
    announceChanges();
    broker_.flush();
    return ok(ids.dump());
}

std::string Server::answerSubscriptions(const std::string&) {
    broker_.drain();
    // The product asks for messages one by one; a tool that watches takes all.
    for (auto client = broker_.clients().rbegin(); client != broker_.clients().rend(); ++client)
        if (!(*client)->subscriptions().empty()) return ok(json((*client)->subscriptions()).dump());
    return ok("[]");
}

}  // namespace Unit
