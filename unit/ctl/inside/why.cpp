#include "unit/ctl/inside/why.h"

#include <cstdio>

#include "unit/ctl/inside/askunit.h"
#include "unit/ctl/inside/modeldescription.h"
#include "unit/ctl/installation.h"
#include "unit/ctl/memory.h"
#include "unit/ctl/nearest.h"
#include "unit/ctl/problem.h"

namespace Unit {

using nlohmann::json;

namespace {

/// The memory of a unit that runs.
class Present {
  public:
    explicit Present(const Platform::Virtual::Place& place)
        : instance_((askUnit(place, "status"), place)), memory_(instance_) {}

    const Store& store() { return memory_.store(); }

  private:
    Platform::Virtual::Instance instance_;
    Memory memory_;
};

std::string headline(const std::string& place, const json& evaluated, const std::string& at) {
    return place + " = " + valueNow(evaluated) + (at.empty() ? "" : "   " + at) + "\n";
}

void print(const json& answer, const std::string& text, bool asJson) {
    std::printf("%s",
                asJson ? (answer.dump(-1, ' ', false, json::error_handler_t::replace) + "\n").c_str() : text.c_str());
}

/// The enclosing widgets that are hidden now, and by what.
std::string tellHidden(const ModelDescription& model, const std::string& place, const Store& store, json& answer) {
    std::string text;
    for (const auto& rule : model.visibleAround(place)) {
        const json value = ModelDescription::evaluate(*rule.value, store);
        if (rule.place == place + ".visible" || valueNow(value) != "false") continue;
        answer["hiddenBy"].push_back(rule.place);
        text += "not to be seen: " + headline(rule.place, value, rule.at) + tellValue(value, "    ");
    }
    return text;
}

}  // namespace

void whyVerb(const Platform::Virtual::Place& place, const std::string& name, bool asJson) {
    const ModelDescription model(Installation::own().description);
    const auto rules = model.rulesOf(name);
    if (rules.empty())
        throw Problem("Nothing is called " + name + "; write PAGE.WIDGET or PAGE.WIDGET.property." +
                      suggestion(name, model.places()));
    Present present(place);
    json answer = {{"rules", json::array()}};
    std::string text, constants;
    for (const auto& rule : rules) {
        const json value = ModelDescription::evaluate(*rule.value, present.store());
        answer["rules"].push_back({{"place", rule.place}, {"at", rule.at}, {"now", valueNow(value)}, {"value", value}});
        if (ModelDescription::isConstant(value) && rules.size() > 1) {
            constants +=
                (constants.empty() ? "always: " : ", ") + rule.place.substr(name.size() + 1) + " " + valueNow(value);
            continue;
        }
        text += headline(rule.place, value, rule.at) + tellValue(value, "  ");
        if (const json* events = model.heard(rule.place.substr(0, rule.place.rfind('.'))))
            text += "  on " + events->dump() + "\n";
    }
    const std::string widget = rules.size() == 1 && rules[0].place == name ? name.substr(0, name.rfind('.')) : name;
    text += tellHidden(model, widget, present.store(), answer);
    print(answer, text + (constants.empty() ? "" : constants + "\n"), asJson);
}

namespace {

std::string tellPlace(const std::string& name, const Cell& cell, const Store& store, json& answer) {
    const std::string word = valueName(store, cell);
    const std::string value = bareValue(store, cell);
    const auto& area = Catalogue::areas[static_cast<std::size_t>(cell.area)];
    answer["value"] = value;
    return name + " = " + value + (word.empty() ? "" : " (" + word + ")") + "   " + kindName(cell.kind) + " at " +
           area.name + " " + std::to_string(cell.offset) + ", notice " + std::to_string(cell.id) + "\n";
}

std::string tellDriven(const ModelDescription& model, const json* driven, const Store& store, json& answer) {
    if (driven == nullptr) return "It drives nothing.\n";
    std::string text = "It drives, in this order\n";
    for (const auto& one : *driven) {
        const std::string what = one.get<std::string>();
        const auto rules = model.rulesOf(what);
        const bool known = !rules.empty() && rules[0].place == what;
        const std::string now = known ? valueNow(ModelDescription::evaluate(*rules[0].value, store)) : std::string();
        answer["drives"].push_back({{"place", what}, {"at", known ? rules[0].at : ""}, {"now", now}});
        text += "  " + what + (known ? " = " + now + "   " + rules[0].at : "") + "\n";
    }
    return text;
}

std::string tellWriters(const ModelDescription& model, const json* writers, json& answer) {
    if (writers == nullptr) return "Only the server writes it.\n";
    std::string text = "Beside the server it is written by\n";
    for (const auto& write : *writers) {
        const std::string what = write.at("place");
        const json* events = model.heard(what.substr(0, what.rfind(".set ")));
        answer["writes"].push_back(write);
        text += "  " + what + (events != nullptr ? " on " + events->dump() : "") + "   " + write.value("at", "") + "\n";
    }
    return text;
}

}  // namespace

void whoVerb(const Platform::Virtual::Place& place, const std::string& name, bool asJson) {
    const ModelDescription model(Installation::own().description);
    const json* driven = model.driven(name);
    const json* writers = model.writers(name);
    std::string problem;
    const auto cell = Store::find(name, problem);
    if (!cell && driven == nullptr && writers == nullptr) throw Problem(problem);
    Present present(place);
    json answer = {{"name", name}, {"drives", json::array()}, {"writes", json::array()}};
    std::string text = cell ? tellPlace(name, *cell, present.store(), answer) : "";
    text += tellDriven(model, driven, present.store(), answer);
    text += tellWriters(model, writers, answer);
    print(answer, text, asJson);
}

}  // namespace Unit
