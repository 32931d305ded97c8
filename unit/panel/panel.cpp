#include "unit/panel/panel.h"

#include <fstream>
#include <nlohmann/json.hpp>

#include "unit/ctl/problem.h"
#include "unit/ctl/scenefile.h"
#include "unit/panel/catalogueindex.h"

namespace Unit {

using nlohmann::json;
using Id = WebServer::ClientId;

namespace {

// In ticks, of which a second has 60.
constexpr unsigned valuesEvery = 4;
constexpr unsigned logEvery = 6;
constexpr unsigned noticesEvery = 15;
constexpr unsigned statusEvery = 30;

constexpr std::size_t linesKept = 400;
constexpr std::size_t linesAtOnce = 200;
/// A page that is behind gets no more of what it can miss.
constexpr std::size_t behind = 1 << 20;

std::string textOf(const json& message) {
    return message.dump(-1, ' ', false, json::error_handler_t::replace);
}

std::shared_ptr<const std::string> shared(std::string text) {
    return std::make_shared<const std::string>(std::move(text));
}

json describeScenes() {
    json scenes = json::array();
    for (const auto& name : sceneNames()) {
        std::ifstream file(findScene(name));
        const json scene = json::parse(file, nullptr, false);
        const bool told = scene.is_object() && scene.contains("about") && scene["about"].is_string();
        scenes.push_back({{"name", name}, {"about", told ? scene["about"] : json("")}});
    }
    return scenes;
}

std::vector<WebFile> withCatalogue(std::span<const WebFile> page, std::string_view catalogue) {
    std::vector<WebFile> files(page.begin(), page.end());
    files.push_back({"/catalogue.json", "application/json", catalogue});
    return files;
}

std::uint32_t traceMask(const Store& store, const char* field) {
    return static_cast<std::uint32_t>(store.integer(*Store::find(std::string("VarTRACE_INFO_VARIABLE[0].") + field)));
}

}  // namespace

Panel::Panel(Platform::Virtual::Place place, std::uint16_t port, std::span<const WebFile> page)
    : place_(std::move(place)),
      driver_(place_),
      devices_(driver_),
      held_(devices_),
      display_(driver_),
      log_(place_.folder + "/dev/kmsg"),
      noticeFiles_(place_.folder),
      catalogue_(catalogueIndex()),
      files_(withCatalogue(page, catalogue_)),
      server_(port, files_, *this),
      address_("http://127.0.0.1:" + std::to_string(server_.port()) + "/"),
      backstage_(place_.folder, [this](std::function<void()> action) { server_.post(std::move(action)); }) {}

// Pages come and go.

void Panel::opened(Id id) {
    clients_.emplace(id, Client{});
    send(id, hello());
    std::vector<const LogLine*> lines;
    for (const auto& line : history_) lines.push_back(&line);
    send(id, describeLines(lines, false));
    send(id, describeNotices());
    if (!status_.is_null()) send(id, describeStatus());
    if (!settings_.empty()) server_.sendText(id, shared("{\"t\":\"settings\",\"modules\":" + settings_ + "}"));
    askStatus();
    askSettings();
}

void Panel::closed(Id id) {
    held_.letGo(id);
    clients_.erase(id);
}

json Panel::hello() const {
    json keys = json::array();
    for (const auto& key : namedKeys) keys.push_back(key.name);
    return {{"t", "hello"},
            {"instance", place_.name},
            {"width", driver_.width()},
            {"height", driver_.height()},
            {"keys", std::move(keys)},
            {"scenes", describeScenes()}};
}

// What pages are shown.

void Panel::tick() {
    ++ticks_;
    sendFrames();
    if (ticks_ % valuesEvery == 0) sendValues();
    if (ticks_ % logEvery == 0) sendLog();
    if (ticks_ % noticesEvery == 0) sendNotices();
    if (ticks_ % statusEvery == 0) {
        askStatus();
        askSettings();
    }
}

/// A client may go while it is sent something.
void Panel::eachClient(const std::function<void(Id, Client&)>& visit) {
    std::vector<Id> ids;
    for (const auto& [id, client] : clients_) ids.push_back(id);
    for (const Id id : ids)
        if (const auto client = clients_.find(id); client != clients_.end()) visit(id, client->second);
}

void Panel::sendFrames() {
    display_.refresh();
    eachClient([this](Id id, Client& client) {
        if (client.credit == 0 || client.frame == display_.frame()) return;
        client.frame = display_.frame();
        std::string tiles = client.differ.encode(display_.picture(), display_.frame());
        if (tiles.empty()) return;
        --client.credit;
        server_.sendBinary(id, shared(std::move(tiles)));
    });
}

/// Null while the unit's server does not run.
const Store* Panel::store() {
    if (!memory_) try {
            memory_ = std::make_unique<Memory>(driver_.instance());
        } catch (const Problem&) {
            return nullptr;
        }
    return &memory_->store();
}

void Panel::sendValues() {
    const Store* values = store();
    if (values == nullptr) return;
    eachClient([&](Id id, Client& client) {
        if (client.values.empty() || server_.waiting(id) > behind) return;
        json changed = json::array();
        for (const auto& news : client.values.take(*values)) {
            json one = {{"name", news.name}, {"value", news.value}};
            if (!news.word.empty()) one[news.known ? "word" : "problem"] = news.word;
            changed.push_back(std::move(one));
        }
        if (!changed.empty()) send(id, {{"t", "values"}, {"values", std::move(changed)}});
    });
}

json Panel::describeLines(const std::vector<const LogLine*>& lines, bool gap) const {
    json told = json::array();
    for (const LogLine* line : lines) told.push_back({line->level, line->program, line->place, line->text});
    return {{"t", "log"}, {"lines", std::move(told)}, {"gap", gap}};
}

void Panel::sendLog() {
    const auto lines = log_.take();
    const bool gap = log_.takeGap();
    for (const auto& line : lines)
        if (line.level >= defaultLevel) history_.push_back(line);
    while (history_.size() > linesKept) history_.pop_front();
    if (lines.empty()) return;
    eachClient([&](Id id, Client& client) {
        std::vector<const LogLine*> wanted;
        for (const auto& line : lines)
            if (line.level >= client.logLevel) wanted.push_back(&line);
        bool cut = gap;
        if (server_.waiting(id) > behind) wanted.clear();
        if (wanted.size() > linesAtOnce) {
            wanted.erase(wanted.begin(), wanted.end() - linesAtOnce);
            cut = true;
        }
        if (!wanted.empty()) send(id, describeLines(wanted, cut));
    });
}

json Panel::describeNotices() const {
    json told = json::array();
    for (const auto& notice : notices_)
        told.push_back({{"key", notice.key},
                        {"problem", notice.tone == Notices::Tone::Problem},
                        {"title", notice.title},
                        {"text", notice.text}});
    return {{"t", "notices"}, {"notices", std::move(told)}};
}

void Panel::sendNotices() {
    auto now = noticeFiles_.all();
    if (now == notices_) return;
    notices_ = std::move(now);
    broadcast(textOf(describeNotices()));
}

void Panel::askStatus() {
    if (statusUnderWay_) return;
    statusUnderWay_ = backstage_.ask(Backstage::Whom::Supervisor, "status", [this](const Backstage::Answer& given) {
        statusUnderWay_ = false;
        takeStatus(given);
    });
}

void Panel::takeStatus(const Backstage::Answer& given) {
    json now = given.ok ? json::parse(given.text, nullptr, false) : json();
    if (!now.is_object()) now = json();
    const auto serverOf = [](const json& status) { return status.is_null() ? json() : status.value("server", json()); };
    // Another server has other memory areas.
    if (serverOf(now) != serverOf(status_)) memory_.reset();
    status_ = std::move(now);
    broadcast(textOf(describeStatus()));
}

json Panel::describeStatus() const {
    json told = {{"t", "status"}, {"up", !status_.is_null()}};
    if (!status_.is_null())
        for (const char* one : {"pacing", "page", "restarts", "lastEnd", "product", "server", "time"})
            if (status_.contains(one)) told[one] = status_[one];
    told["pans"] = driver_.pans();
    told["passes"] = driver_.pans() + driver_.vsyncWaits();
    if (!memory_) return told;
    const Store& values = memory_->store();
    told["missed"] = values.integer(*Store::find("VarGuiMissedFrames"));
    json tracing = json::object();
    for (const auto& [word, field] :
         {std::pair{"draw", "DrawFlags"}, {"event", "EventFlags"}, {"var", "VarFlags"}, {"page", "PageFlags"}})
        tracing[word] = traceMask(values, field);
    told["trace"] = std::move(tracing);
    return told;
}

void Panel::askSettings() {
    if (settingsUnderWay_) return;
    settingsUnderWay_ = backstage_.ask(Backstage::Whom::Server, "settings", [this](const Backstage::Answer& given) {
        settingsUnderWay_ = false;
        if (!given.ok || given.text == settings_) return;
        settings_ = given.text;
        broadcast("{\"t\":\"settings\",\"modules\":" + settings_ + "}");
    });
}

void Panel::broadcast(const std::string& text) {
    const auto message = shared(text);
    eachClient([&](Id id, Client&) {
        if (server_.waiting(id) <= behind) server_.sendText(id, message);
    });
}

void Panel::send(Id id, const json& message) {
    server_.sendText(id, shared(textOf(message)));
}

}  // namespace Unit
