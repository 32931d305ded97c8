#include "unit/panel/request.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <nlohmann/json.hpp>
#include <stdexcept>

namespace Unit {

using nlohmann::json;

namespace {

constexpr std::size_t longestName = 160;
constexpr std::size_t longestValue = 4 << 10;
constexpr int highestLevel = 7;
constexpr int farOff = 10'000;  // beyond every display

/// Why a message is refused. Stays in this file.
class Refusal : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

const json& member(const json& object, const char* name) {
    const auto found = object.find(name);
    if (found == object.end()) throw Refusal(std::string("\"") + name + "\" is missing");
    return *found;
}

std::string textOf(const json& object, const char* name, std::size_t longest) {
    const json& value = member(object, name);
    if (!value.is_string()) throw Refusal(std::string("\"") + name + "\" is no text");
    auto text = value.get<std::string>();
    const auto isControl = [](char c) { return static_cast<unsigned char>(c) < ' ' || c == 0x7f; };
    if (text.size() > longest || std::ranges::any_of(text, isControl))
        throw Refusal(std::string("\"") + name + "\" is too long, or not one line");
    return text;
}

/// A word that cannot be taken for anything else in a request to the server.
std::string wordOf(const json& object, const char* name) {
    auto word = textOf(object, name, longestName);
    const auto fits = [](char c) {
        return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') ||
               std::string_view("_-.[]").find(c) != std::string_view::npos;
    };
    if (word.empty() || !std::ranges::all_of(word, fits)) throw Refusal(std::string("\"") + name + "\" is no word");
    return word;
}

template <typename Integer>
Integer integerOf(const json& value, const char* name, Integer lowest, Integer highest) {
    if (!value.is_number_integer() || value < lowest || value > highest)
        throw Refusal(std::string("\"") + name + "\" is no number from " + std::to_string(lowest) + " to " +
                      std::to_string(highest));
    return value.get<Integer>();
}

bool flagOf(const json& object, const char* name) {
    const json& value = member(object, name);
    if (!value.is_boolean()) throw Refusal(std::string("\"") + name + "\" is neither true nor false");
    return value.get<bool>();
}

Request::Key keyOf(const json& object) {
    const std::string name = wordOf(object, "key");
    for (const NamedKey& key : namedKeys)
        if (name == key.name) return {&key, flagOf(object, "down")};
    throw Refusal("There is no key \"" + name + "\"");
}

Request::Touch touchOf(const json& object) {
    const json& points = member(object, "points");
    Request::Touch touch;
    if (!points.is_array() || points.size() > touch.contacts.size()) throw Refusal("\"points\" are no two points");
    for (std::size_t slot = 0; slot < points.size(); ++slot) {
        const json& point = points[slot];
        if (point.is_null()) continue;
        if (!point.is_array() || point.size() != 2) throw Refusal("A point is [x, y] or null");
        touch.contacts[slot] = TouchPoint{integerOf(point[0], "x", 0, farOff), integerOf(point[1], "y", 0, farOff)};
    }
    return touch;
}

Request::Do doOf(const json& object) {
    const json& value = member(object, "value");
    if (value.is_string())
        return {wordOf(object, "module"), wordOf(object, "setting"),
                json(textOf(object, "value", longestValue)).dump()};
    if (!value.is_boolean() && !value.is_number()) throw Refusal("\"value\" is no flag, number or text");
    return {wordOf(object, "module"), wordOf(object, "setting"), value.dump()};
}

Request::Trace traceOf(const json& object) {
    static const std::map<std::string, const char*> fields = {
        {"draw", "DrawFlags"}, {"event", "EventFlags"}, {"var", "VarFlags"}, {"page", "PageFlags"}};
    const auto found = fields.find(wordOf(object, "word"));
    if (found == fields.end()) throw Refusal("\"word\" is none of draw, event, var, page");
    return {found->second, integerOf<std::uint32_t>(member(object, "mask"), "mask", 0, 0xffffffff)};
}

Request::Watch watchOf(const json& object) {
    const json& names = member(object, "names");
    if (!names.is_array() || names.size() > Request::mostWatched)
        throw Refusal("\"names\" are no list of at most " + std::to_string(Request::mostWatched));
    Request::Watch watch;
    for (const json& name : names) watch.names.push_back(wordOf({{"name", name}}, "name"));
    return watch;
}

Request requestOf(const json& object) {
    if (!object.is_object()) throw Refusal("A message is a JSON object");
    Request request;
    if (object.contains("n")) request.number = integerOf<std::uint32_t>(object["n"], "n", 0, 0xffffffff);
    const std::string word = wordOf(object, "t");
    if (word == "credit")
        request.what = Request::Credit{};
    else if (word == "key")
        request.what = keyOf(object);
    else if (word == "touch")
        request.what = touchOf(object);
    else if (word == "do")
        request.what = doOf(object);
    else if (word == "set")
        request.what = Request::Set{wordOf(object, "name"), textOf(object, "value", longestValue)};
    else if (word == "scene")
        request.what = Request::Scene{wordOf(object, "name")};
    else if (word == "trace")
        request.what = traceOf(object);
    else if (word == "watch")
        request.what = watchOf(object);
    else if (word == "loglevel")
        request.what = Request::LogLevel{integerOf(member(object, "level"), "level", 0, highestLevel)};
    else if (word == "step")
        request.what = Request::Step{integerOf(member(object, "frames"), "frames", 1U, Request::mostFrames)};
    else
        throw Refusal("There is no request \"" + word + "\"");
    return request;
}

}  // namespace

std::optional<Request> parseRequest(std::string_view text, std::string& problem) {
    const json object = text.size() <= Request::longest ? json::parse(text, nullptr, false) : json();
    try {
        return requestOf(object);
    } catch (const Refusal& refusal) {
        problem = refusal.what();
        return std::nullopt;
    }
}

}  // namespace Unit
