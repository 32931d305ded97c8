#include "unit/server/hostile.h"

#include <algorithm>
#include <charconv>
#include <sstream>
#include <stdexcept>

#include "model/catalogue/constants.h"

namespace Unit {

namespace {

/// The words behind the mode. What is no such word is thrown as std::invalid_argument.
class Arguments {
  public:
    explicit Arguments(const std::string& text) : stream_(text) {}

    std::string word() {
        std::string word;
        stream_ >> word;
        return word;
    }
    /// `otherwise` when there is no further word.
    unsigned number(unsigned otherwise) {
        const std::string text = word();
        if (text.empty()) return otherwise;
        unsigned value = 0;
        const auto [end, failed] = std::from_chars(text.data(), text.data() + text.size(), value);
        if (failed != std::errc() || end != text.data() + text.size())
            throw std::invalid_argument("\"" + text + "\" is no number.");
        return value;
    }
    std::size_t area() {
        const std::string wanted = word();
        for (std::size_t index = 0; index < Catalogue::areas.size(); ++index)
            if (wanted == Catalogue::areas[index].name) return index;
        throw std::invalid_argument("There is no area \"" + wanted + "\".");
    }

  private:
    std::istringstream stream_;
};

}  // namespace

bool Hostile::set(const std::string& text, std::string& problem) {
    try {
        begin(text);
        return true;
    } catch (const std::invalid_argument& refused) {
        problem = refused.what();
        return false;
    }
}

void Hostile::begin(const std::string& text) {
    Arguments arguments(text);
    const std::string mode = arguments.word();
    if (mode == "off") {
        off();
    } else if (mode == "split") {
        split(arguments.number(5));
    } else if (mode == "storm") {
        storm_ = arguments.number(300);
    } else if (mode == "unknown") {
        unknown_ = true;
    } else if (mode == "deaf") {
        broker_.setDeaf(true);
    } else if (mode == "silent") {
        broker_.setSilent(true);
    } else if (mode == "torn") {
        tear(arguments.word());
    } else if (mode == "truncate") {
        const std::size_t area = arguments.area();
        areas_.truncate(area, arguments.number(Catalogue::areas[area].size / 2));
    } else if (mode == "header") {
        const std::size_t area = arguments.area();
        areas_.forgeHeader(area, arguments.number(Catalogue::areas[area].size + 1));
    } else if (mode == "restart") {
        restart_ = true;
        restartTicks_ = arguments.number(60);
    } else {
        throw std::invalid_argument(std::string("The hostile modes are ") + help + ".");
    }
}

void Hostile::split(unsigned tail) {
    if (tail == 0 || tail >= sizeof(Notify)) throw std::invalid_argument("A record is split after 1 to 11 bytes.");
    broker_.setTail(tail);
}

void Hostile::off() {
    storm_ = 0;
    unknown_ = false;
    broker_.setTail(0);
    broker_.setDeaf(false);
    broker_.setSilent(false);
    areas_.restoreHeaders();
}

void Hostile::tear(const std::string& name) {
    if (name.empty()) return tearAll();
    std::string problem;
    const auto cell = Store::find(name, problem);
    if (!cell) throw std::invalid_argument(problem);
    if (cell->kind != Catalogue::Kind::Text) throw std::invalid_argument(name + " is no text.");
    tear(*cell);
}

void Hostile::tearAll() {
    for (const auto& value : Catalogue::values)
        if (const auto cell = Store::find(value.name); cell && cell->kind == Catalogue::Kind::Text) tear(*cell);
}

/// No byte ends the text, and its last one begins a character that never comes.
void Hostile::tear(const Cell& text) {
    const auto field = store_.bytes(text);
    std::fill(field.begin(), field.end(), std::byte{'x'});
    field.back() = std::byte{0xe2};
    store_.note(text.id);
}

void Hostile::tick() {
    if (storm_ > 0) sendStorm();
    if (unknown_) sendUnknown();
}

void Hostile::sendStorm() {
    const auto all = Catalogue::subscriptions;
    for (unsigned i = 0; i < storm_; ++i) broker_.announce(all[stormAt_++ % all.size()]);
}

void Hostile::sendUnknown() {
    const auto beyond = static_cast<std::uint32_t>(Catalogue::messages.size());
    for (const std::uint32_t id : {0U, 1U, 5U, beyond, 70000U, 0x80000000U, 0xffffffffU}) {
        for (const auto& client : broker_.clients()) client->queue(Notify{id, 0xdeadbeef, id});
    }
}

bool Hostile::takeRestart(unsigned& ticks) {
    if (!restart_) return false;
    restart_ = false;
    ticks = restartTicks_;
    return true;
}

}  // namespace Unit
