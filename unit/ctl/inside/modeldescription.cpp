#include "unit/ctl/inside/modeldescription.h"

#include <algorithm>
#include <fstream>
#include <set>

#include "unit/ctl/problem.h"

namespace Unit {

using Json = ModelDescription::Json;

ModelDescription::ModelDescription(const std::string& file) {
    std::ifstream in(file);
    all_ = Json::parse(in, nullptr, false);
    if (all_.is_discarded() || !all_.is_object() || !all_.contains("rules"))
        throw Problem("The model's description " + file +
                      " is missing or damaged. Build the product (ninja gui-virtual), or install the unit anew.");
}

const Json* ModelDescription::find(const char* map, const std::string& key) const {
    const auto entries = all_.find(map);
    if (entries == all_.end()) return nullptr;
    const auto found = entries->find(key);
    return found != entries->end() ? &*found : nullptr;
}

std::vector<ModelDescription::Rule> ModelDescription::rulesOf(const std::string& place) const {
    std::vector<Rule> rules;
    for (const Json& rule : all_.at("rules")) {
        const std::string& name = rule.at("place").get_ref<const std::string&>();
        const bool below = name.starts_with(place + ".") && name.find('.', place.size() + 1) == std::string::npos;
        if (name == place || below) rules.push_back({name, rule.value("at", ""), &rule.at("value")});
    }
    return rules;
}

std::vector<ModelDescription::Rule> ModelDescription::visibleAround(const std::string& place) const {
    std::vector<Rule> rules;
    for (const Json& rule : all_.at("rules")) {
        const std::string& name = rule.at("place").get_ref<const std::string&>();
        constexpr std::string_view property = ".visible";
        if (!name.ends_with(property)) continue;
        const std::string owner = name.substr(0, name.size() - property.size());
        if (owner == place || place.starts_with(owner + "."))
            rules.push_back({name, rule.value("at", ""), &rule.at("value")});
    }
    std::ranges::sort(rules, {}, [](const Rule& rule) { return rule.place.size(); });
    return rules;
}

std::vector<std::string> ModelDescription::places() const {
    std::set<std::string> names;
    for (const Json& rule : all_.at("rules")) {
        const std::string& name = rule.at("place").get_ref<const std::string&>();
        names.insert(name);
        names.insert(name.substr(0, name.rfind('.')));
    }
    return {names.begin(), names.end()};
}

std::vector<std::string> ModelDescription::variables() const {
    std::set<std::string> names;
    for (const char* map : {"drives", "writes"})
        if (const auto entries = all_.find(map); entries != all_.end())
            for (const auto& [name, value] : entries->items()) names.insert(name);
    return {names.begin(), names.end()};
}

}  // namespace Unit
