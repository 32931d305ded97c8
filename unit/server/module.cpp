#include "unit/server/module.h"

#include <algorithm>
#include <nlohmann/json.hpp>

namespace Unit {

using nlohmann::json;

bool Setting::accepts(const json& value, std::string& problem) const {
    switch (kind) {
        case Kind::Flag:
            if (value.is_boolean()) return true;
            problem = name + " is true or false.";
            return false;
        case Kind::Number:
            if (value.is_number() && value.get<double>() >= minimum && value.get<double>() <= maximum) return true;
            problem = name + " is a number from " + json(minimum).dump() + " to " + json(maximum).dump() + ".";
            return false;
        case Kind::Choice:
            if (value.is_string() &&
                std::find(choices.begin(), choices.end(), value.get<std::string>()) != choices.end())
                return true;
            problem = name + " is one of " + json(choices).dump() + ".";
            return false;
        case Kind::Text:
            if (value.is_string()) return true;
            problem = name + " is a text.";
            return false;
    }
    return false;
}

json Setting::describe() const {
    json described = {{"value", current()}};
    switch (kind) {
        case Kind::Flag: described["kind"] = "flag"; break;
        case Kind::Number:
            described["kind"] = "number";
            described["minimum"] = minimum;
            described["maximum"] = maximum;
            break;
        case Kind::Choice:
            described["kind"] = "choice";
            described["choices"] = choices;
            break;
        case Kind::Text: described["kind"] = "text"; break;
    }
    return described;
}

void Module::settingFlag(std::string name, std::function<void(bool)> apply, std::function<bool()> current) {
    settings_.push_back({.name = std::move(name),
                         .kind = Setting::Kind::Flag,
                         .choices = {},
                         .apply = [apply](const json& value) { apply(value.get<bool>()); },
                         .current = [current] { return json(current()); }});
}

void Module::settingNumber(std::string name, double minimum, double maximum, std::function<void(double)> apply,
                           std::function<double()> current) {
    settings_.push_back({.name = std::move(name),
                         .kind = Setting::Kind::Number,
                         .minimum = minimum,
                         .maximum = maximum,
                         .choices = {},
                         .apply = [apply](const json& value) { apply(value.get<double>()); },
                         .current = [current] { return json(current()); }});
}

void Module::settingChoice(std::string name, std::vector<std::string> choices, std::function<void(std::size_t)> apply,
                           std::function<std::size_t()> current) {
    const auto put = [apply, choices](const json& value) {
        const auto found = std::find(choices.begin(), choices.end(), value.get<std::string>());
        apply(static_cast<std::size_t>(found - choices.begin()));
    };
    settings_.push_back({.name = std::move(name),
                         .kind = Setting::Kind::Choice,
                         .choices = choices,
                         .apply = put,
                         .current = [current, choices] { return json(choices.at(current())); }});
}

void Module::settingText(std::string name, std::function<void(const std::string&)> apply,
                         std::function<std::string()> current) {
    settings_.push_back({.name = std::move(name),
                         .kind = Setting::Kind::Text,
                         .choices = {},
                         .apply = [apply](const json& value) { apply(value.get<std::string>()); },
                         .current = [current] { return json(current()); }});
}

}  // namespace Unit
