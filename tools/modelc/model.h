// The model after expansion: concrete pages and containers, no templates, no repetition, every name substituted.
#pragma once

#include <map>
#include <memory>
#include <string>
#include <vector>

#include "tools/modelc/ast.h"

namespace Modelc {

/// Through which template uses and repetitions a piece came into being, innermost first.
struct Expansion {
    Span use;
    std::string what;
    std::shared_ptr<const Expansion> outer;
};
using ExpansionPtr = std::shared_ptr<const Expansion>;

/// A widget. Children in declared order, which is the order of drawing.
struct ObjectNode {
    Name type;
    Name name;  ///< may be empty
    Span span;
    ExpansionPtr expansion;
    ObjectNode* parent = nullptr;
    std::vector<PropertyDecl> properties;  ///< one a name: the last one given wins
    std::vector<std::unique_ptr<ObjectNode>> children;

    const PropertyDecl* property(std::string_view wanted) const;
};

/// A reaction, timer or the like with the widget that it stands in, null directly in a page or container.
template <typename Decl>
struct Owned {
    Decl decl;
    ObjectNode* owner = nullptr;
    Span span;
    ExpansionPtr expansion;
};

/// A page or a behaviour container.
struct UnitNode {
    enum class Kind { Page, Container };
    Kind kind = Kind::Page;
    Name name;
    Span span;
    ObjectNode root;  ///< properties and children of the unit itself
    // In the order of the source, across all widgets.
    std::vector<Owned<ReactionDecl>> reactions;
    std::vector<Owned<TimerDecl>> timers;
    std::vector<Owned<TriggerDecl>> triggers;
    std::vector<Owned<UserActionDecl>> userActions;
};

struct ModelTree {
    std::vector<std::unique_ptr<UnitNode>> units;  ///< in the order of the sources
    std::map<std::string, RuleDecl> rules;
    std::vector<ExportDecl> exports;
    std::vector<RegisterDecl> registrations;
    std::vector<EditsDecl> edits;
    bool complete = true;  ///< false when expansion had to stop: what is here makes no sense on its own
    ExprPtr night;         ///< the condition of the night style; null when no source names it

    const UnitNode* unit(std::string_view name) const;
};

}  // namespace Modelc
