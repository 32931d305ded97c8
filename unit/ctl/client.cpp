#include "unit/ctl/client.h"

#include <fnmatch.h>

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <nlohmann/json.hpp>

#include "unit/ctl/launch.h"
#include "unit/ctl/nearest.h"
#include "unit/ctl/problem.h"
#include "unit/ctl/productlog.h"
#include "unit/ctl/scenefile.h"
#include "unit/ctl/supervisor.h"
#include "unit/ctl/wire.h"

namespace Unit {

using nlohmann::json;

namespace {

/// A step of many frames may take long; a product that hangs is told of by the supervisor.
constexpr int stepPatience = 3'600'000;

bool matches(const std::string& glob, const std::string& name) {
    return glob.empty() || ::fnmatch(glob.c_str(), name.c_str(), 0) == 0;
}

json numberOrText(const Store& store, const Cell& cell) {
    switch (cell.kind) {
        case Catalogue::Kind::Flag: return store.integer(cell) != 0;
        case Catalogue::Kind::Int:
        case Catalogue::Kind::Enum: return store.integer(cell);
        case Catalogue::Kind::Float: return store.real(cell);
        default: return store.show(cell);
    }
}

json describe(const Store& store, const Cell& cell, const std::string& name) {
    json answer = {
        {"name", name}, {"kind", kindName(cell.kind)}, {"id", cell.id}, {"value", numberOrText(store, cell)}};
    if (const auto enumName = valueName(store, cell); !enumName.empty()) answer["enum"] = enumName;
    return answer;
}

json limitOf(const Catalogue::Limit& limit) {
    return limit.form == Catalogue::Limit::Form::Fixed ? json(limit.value) : json();
}

std::string rowsText(std::size_t rows) {
    return rows == 1 ? "[0]" : "[0-" + std::to_string(rows - 1) + "]";
}

/// A glob that nothing can match is a slip of the finger.
void requireMatch(const std::string& glob) {
    const auto named = [&](const auto& one) { return matches(glob, one.name); };
    if (std::ranges::any_of(Catalogue::values, named) || std::ranges::any_of(Catalogue::tables, named)) return;
    throw Problem("No name matches \"" + glob + "\"." + didYouMean(glob) + " See all of them: unitctl list");
}

std::string messageName(std::size_t id) {
    const char* name = id < Catalogue::messages.size() ? Catalogue::messages[id].name : nullptr;
    return name != nullptr ? name : "";
}

/// What a module's setting can be put to, in a few words.
std::string takes(const json& described) {
    const std::string kind = described.at("kind");
    if (kind == "flag") return "true or false";
    if (kind == "number") return described.at("minimum").dump() + " to " + described.at("maximum").dump();
    if (kind != "choice") return "a text";
    std::string all;
    for (const auto& choice : described.at("choices")) all += (all.empty() ? "" : ", ") + choice.get<std::string>();
    return all;
}

}  // namespace

void Client::print(const std::string& text, const json& value) const {
    if (output_ == Output::Json) {
        std::printf("%s\n", value.dump(-1, ' ', false, json::error_handler_t::replace).c_str());
    } else if (!text.empty()) {
        std::printf("%s\n", text.c_str());
    }
}

// The unit's processes.

std::string Client::askSupervisor(const std::string& request, int milliseconds) {
    LineConnection connection;
    if (!connection.connect(Supervisor::socketPath(place_.folder)))
        throw Problem("No unit \"" + place_.name + "\" runs. Start it: unitctl start --instance " + place_.name);
    const std::string answer = connection.ask(request, milliseconds);
    std::string rest;
    if (request == "stop") connection.read(rest, milliseconds);  // its end
    return answer;
}

json Client::unitStatus() {
    return json::parse(askSupervisor("status"));
}

void Client::requireUnit() {
    askSupervisor("status");
}

bool Client::hasServer() {
    return LineConnection().connect(Supervisor::serverSocketPath(place_.folder));
}

std::string Client::askServer(const std::string& request) {
    requireUnit();
    LineConnection connection;
    if (!connection.connect(Supervisor::serverSocketPath(place_.folder)))
        throw Problem("The unit \"" + place_.name +
                      "\" has no server of its own that could tell. Start it without --no-server.");
    return connection.ask(request);
}

/// Of a unit whose processes have all been killed.
void Client::clearLeftovers() {
    LockFile lock;
    if (!std::filesystem::exists(place_.folder) || !lock.take(Supervisor::lockPath(place_.folder))) return;
    if (LockFile::isHeld(Supervisor::serverLockPath(place_.folder))) return;
    const Platform::Virtual::Instance instance(place_);
    instance.removeNames();
}

void Client::stop() {
    clearLeftovers();
    askSupervisor("stop", 30'000);
    print("", {{"stopped", place_.name}});
}

void Client::status() {
    const json answer = unitStatus();
    std::string text;
    for (const auto& [key, value] : answer.items())
        text += (text.empty() ? "" : "\n") + key + " " + (value.is_string() ? value.get<std::string>() : value.dump());
    print(text, answer);
}

void Client::scene(const std::string& file) {
    askServer("scene " + findScene(file));
    print("", {{"scene", file}});
}

void Client::step(unsigned frames) {
    askSupervisor("step " + std::to_string(frames), stepPatience);
    print("", {{"stepped", frames}});
}

void Client::panel(unsigned port) {
    const std::string address = askSupervisor("panel " + std::to_string(port), 30'000);
    print(address, {{"panel", address}});
}

// Values.

void Client::list(const std::string& glob) const {
    json all = json::array();
    std::string text;
    const auto add = [&](const std::string& name, json described) {
        if (!matches(glob, name)) return;
        text += (text.empty() ? "" : "\n") + name;
        all.push_back(std::move(described));
    };
    for (const auto& value : Catalogue::values) {
        if (value.area == Catalogue::noArea || value.kind == Catalogue::Kind::None) continue;
        add(value.name, {{"name", value.name},
                         {"kind", kindName(value.kind)},
                         {"id", value.id},
                         {"area", Catalogue::areas[static_cast<std::size_t>(value.area)].name},
                         {"offset", value.offset},
                         {"size", value.size},
                         {"minimum", limitOf(value.minimum)},
                         {"maximum", limitOf(value.maximum)}});
    }
    for (const auto& table : Catalogue::tables)
        for (const auto& field : table.fields)
            add(table.name + rowsText(table.rows) + "." + field.name,
                {{"name", std::string(table.name) + "[]." + field.name},
                 {"kind", kindName(field.kind)},
                 {"id", table.id},
                 {"area", Catalogue::areas[static_cast<std::size_t>(table.area)].name},
                 {"offset", table.base + field.offset},
                 {"size", field.size},
                 {"rows", table.rows},
                 {"stride", table.stride}});
    if (all.empty()) throw Problem("No name matches \"" + glob + "\". See all of them: unitctl list");
    print(text, all);
}

Memory& Client::memory() {
    requireUnit();
    if (!memory_) memory_ = std::make_unique<Memory>(driver().instance());
    return *memory_;
}

Cell Client::find(const std::string& name) const {
    std::string problem;
    const auto cell = Store::find(name, problem);
    if (!cell) throw Problem(problem);
    return *cell;
}

void Client::get(const std::string& name) {
    const Cell cell = find(name);
    const Store& store = memory().store();
    if (output_ == Output::Json)
        print("", describe(store, cell, name));
    else
        std::printf("%s\n", bareValue(store, cell).c_str());
}

void Client::write(const Cell& cell, const std::string& name, const std::string& value) {
    std::string problem;
    const auto bytes = Store::parse(cell, value, problem);
    if (!bytes) throw Problem(name + ": " + problem);
    std::ranges::copy(*bytes, memory().store().bytes(cell).begin());
}

/// As if the value came from the server.
void Client::announce(std::uint32_t id) {
    if (hasServer())
        askServer("send " + std::to_string(id));
    else
        sendNotice(driver().instance(), id);
}

void Client::set(const std::string& name, const std::string& value) {
    const Cell cell = find(name);
    write(cell, name, value);
    announce(cell.id);
    if (output_ == Output::Json) print("", describe(memory().store(), cell, name));
}

void Client::poke(const std::string& name, const std::string& value) {
    const Cell cell = find(name);
    write(cell, name, value);
    if (output_ == Output::Json) print("", describe(memory().store(), cell, name));
}

void Client::send(std::uint32_t id) {
    constexpr std::uint32_t firstNotice = 7;  // the ids before speak to the server itself
    if (id < firstNotice || id >= Catalogue::messages.size())
        throw Problem("There is no notice " + std::to_string(id) + "; they go from " + std::to_string(firstNotice) +
                      " to " + std::to_string(Catalogue::messages.size() - 1) + ".");
    requireUnit();
    announce(id);
    print("", {{"id", id}, {"name", messageName(id)}});
}

void Client::peek(const std::string& area, std::size_t offset, std::size_t length) {
    const auto bytes = memory().bytes(area, offset, length);
    constexpr std::size_t perLine = 16;
    std::string text, digits;
    char piece[24];
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        if (i % perLine == 0) {
            std::snprintf(piece, sizeof piece, "%s%06zx:", i == 0 ? "" : "\n", offset + i);
            text += piece;
        }
        std::snprintf(piece, sizeof piece, " %02x", std::to_integer<unsigned>(bytes[i]));
        text += piece;
        digits += piece + 1;
    }
    print(text, {{"area", area}, {"offset", offset}, {"bytes", digits}});
}

void Client::watch(const std::string& glob) {
    requireMatch(glob);
    requireUnit();
    LineConnection connection;
    if (!connection.connect(Supervisor::serverSocketPath(place_.folder)))
        throw Problem("The unit \"" + place_.name + "\" has no server of its own that could tell of changes.");
    connection.ask("watch");
    const Store& store = memory().store();
    for (std::string line; connection.read(line, -1);) {
        const auto space = line.find(' ');
        const bool sent = line.starts_with("sent ");
        const auto id = space == std::string::npos ? 0 : std::strtoul(line.c_str() + space + 1, nullptr, 10);
        for (const auto& value : Catalogue::values) {
            if (value.id != id || value.area == Catalogue::noArea || !matches(glob, value.name)) continue;
            const Cell cell = find(value.name);
            json described = describe(store, cell, value.name);
            described["from"] = sent ? "product" : "server";
            print(std::string(value.name) + " " + bareValue(store, cell), described);
        }
        for (const auto& table : Catalogue::tables)
            if (table.id == id && matches(glob, table.name))
                print(table.name, {{"name", table.name}, {"id", id}, {"from", sent ? "product" : "server"}});
        std::fflush(stdout);
    }
}

void Client::journal() {
    const json ids = json::parse(askServer("journal"));
    std::string text;
    json named = json::array();
    for (const auto& id : ids) {
        const std::string name = messageName(id.get<std::size_t>());
        text += (text.empty() ? "" : "\n") + id.dump() + " " + name;
        named.push_back({{"id", id}, {"name", name}});
    }
    print(text, named);
}

void Client::subscriptions() {
    const json ids = json::parse(askServer("subscriptions"));
    std::string text;
    for (const auto& id : ids) text += (text.empty() ? "" : "\n") + id.dump();
    print(text, ids);
}

// What people do to the hardware, and what the server does to the product.

void Client::configure(const std::string& module, const std::string& setting, const std::string& value) {
    askServer("do " + module + " " + setting + " " + value);
    print("", {{"module", module}, {"setting", setting}, {"value", value}});
}

void Client::settings(const std::string& module) {
    const json all = json::parse(askServer("settings"));
    if (!module.empty() && !all.contains(module)) {
        std::vector<std::string> names;
        for (const auto& [name, ignored] : all.items()) names.push_back(name);
        throw Problem("There is no module \"" + module + "\"." + suggestion(module, names) +
                      " See them: unitctl settings");
    }
    std::string text;
    for (const auto& [name, settings] : all.items()) {
        if (!module.empty() && module != name) continue;
        for (const auto& [setting, described] : settings.items())
            text += (text.empty() ? "" : "\n") + name + " " + setting + " " + described.at("value").dump() + " (" +
                    takes(described) + ")";
    }
    print(text, module.empty() ? all : all.at(module));
}

void Client::hostile(const std::vector<std::string>& mode) {
    std::string request = "hostile";
    for (const auto& word : mode) request += " " + word;
    askServer(request);
    print("", {{"hostile", mode}});
}

// What the product shows and says.

Platform::Virtual::Driver& Client::driver() {
    if (!driver_) {
        requireUnit();  // a look must not make an instance
        driver_ = std::make_unique<Platform::Virtual::Driver>(place_);
    }
    return *driver_;
}

void Client::page() {
    requireUnit();
    const std::string name = ProductLog(place_.folder).page();
    if (name.empty()) throw Problem("The product has not logged a page yet. Is its log level above 3? unitctl log");
    print(name, {{"page", name}});
}

void Client::trace(const std::string& word, std::uint32_t mask) {
    static constexpr std::pair<const char*, const char*> words[] = {
        {"draw", "DrawFlags"}, {"event", "EventFlags"}, {"var", "VarFlags"}, {"page", "PageFlags"}};
    for (const auto& [name, field] : words) {
        if (word != name) continue;
        const Cell cell = find(std::string("VarTRACE_INFO_VARIABLE[0].") + field);
        memory().store().setInteger(cell, static_cast<std::int32_t>(mask));
        print("", {{"trace", word}, {"mask", mask}});
        return;
    }
    throw Problem("There is no trace word \"" + word + "\"; there are draw, event, var and page.");
}

void Client::log(std::size_t lines) const {
    const ProductLog log(place_.folder);
    std::error_code ignored;
    if (!std::filesystem::exists(log.file(), ignored))
        throw Problem("A unit \"" + place_.name + "\" has not run yet. Start it: unitctl start --instance " +
                      place_.name);
    std::string text;
    for (const auto& line : log.last(lines)) text += (text.empty() ? "" : "\n") + line;
    print(text, log.last(lines));
}

void Client::shot(const std::string& file) {
    writePicture(driver(), file);
    print("", {{"file", file}, {"width", driver().width()}, {"height", driver().height()}});
}

void Client::pixel(TouchPoint point) {
    checkPoint(point);
    const auto picture = driver().shot();
    const auto index = static_cast<std::size_t>(point.y) * picture.width + static_cast<std::size_t>(point.x);
    if (index >= picture.pixels.size()) throw Problem("The display shows nothing yet.");
    char text[8];
    std::snprintf(text, sizeof text, "#%06x", picture.pixels[index] & 0xffffffU);
    print(text, {{"x", point.x}, {"y", point.y}, {"color", text}});
}

void Client::postNotice(const Notices::Notice& notice) {
    requireUnit();
    Notices(place_.folder).post(notice);
    print("", {{"notice", notice.key}});
}

void Client::removeNotice(const std::string& key) {
    requireUnit();
    if (!Notices(place_.folder).remove(key)) throw Problem("There is no notice \"" + key + "\".");
    print("", {{"removed", key}});
}

}  // namespace Unit
