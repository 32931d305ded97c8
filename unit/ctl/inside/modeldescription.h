#pragma once

#include <nlohmann/json.hpp>
#include <optional>
#include <string>
#include <vector>

#include "unit/server/store.h"

namespace Unit {

/// The rules of the model that was built, as its compiler has described them (tools/modelc/description.h), with the
/// values in force put in.
class ModelDescription {
  public:
    using Json = nlohmann::json;

    /// Throws Problem when the file is missing or no description.
    explicit ModelDescription(const std::string& file);

    struct Rule {
        std::string place;
        std::string at;
        const Json* value;
    };
    /// The rules of a widget, or the one of a property. Empty when there is nothing of that name.
    std::vector<Rule> rulesOf(const std::string& place) const;
    /// The visible-rules of what the place lies in, the place itself included, outermost first.
    std::vector<Rule> visibleAround(const std::string& place) const;
    const Json* driven(const std::string& variable) const { return find("drives", variable); }
    const Json* writers(const std::string& variable) const { return find("writes", variable); }
    const Json* heard(const std::string& place) const { return find("hears", place); }
    std::vector<std::string> places() const;
    std::vector<std::string> variables() const;

    /// A rule's value as it is with what `store` holds: the same tree, each node with "now", its text, and each
    /// condition with "holds". Branches of a choice that are not asked have neither.
    static Json evaluate(const Json& value, const Store& store);
    static bool isConstant(const Json& value) { return value.contains("constant"); }

  private:
    const Json* find(const char* map, const std::string& key) const;

    Json all_;
};

/// An evaluated value as text, a line a condition, each begun by `indent`. For a constant empty.
std::string tellValue(const nlohmann::json& evaluated, const std::string& indent);
/// What stands behind "=": the value in force.
std::string valueNow(const nlohmann::json& evaluated);
/// Whether an evaluated condition is fulfilled.
bool holds(const nlohmann::json& evaluated);

}  // namespace Unit
