#include "tools/modelc/expand.h"

#include <algorithm>
#include <functional>
#include <set>
#include <string_view>

#include "tools/modelc/overloaded.h"
#include "tools/modelc/staticvalue.h"
#include "tools/modelc/substitute.h"

namespace Modelc {

namespace {

constexpr int maxTemplateDepth = 32;
constexpr std::size_t maxMembers = 1'000'000;

using Members = std::vector<MemberPtr>;

/// What the user of a template wrote beyond its parameters, to be placed where the slots stand.
struct Filling {
    Members plain;
    std::map<std::string, Members> named;
    const Bindings* bindings = nullptr;  ///< of the place of use
    ExpansionPtr expansion;              ///< likewise
    const Filling* outer = nullptr;      ///< slots written inside the filling belong to the template around it
    mutable bool plainPlaced = false;
};

/// Where members go: the unit, the widget around them, and how they came here.
struct Place {
    UnitNode& unit;
    ObjectNode& object;
    ObjectNode* owner;  ///< null directly in a page or container
    ExpansionPtr expansion;
    const Filling* filling = nullptr;
};

class Expander {
  public:
    Expander(const std::vector<SourceTree>& sources, Diagnostics& diagnostics)
        : sources_(sources), diagnostics_(diagnostics) {}

    ModelTree run() {
        for (const auto& source : sources_)
            for (const auto& declaration : source.declarations) collect(*declaration);
        for (const auto& source : sources_)
            for (const auto& declaration : source.declarations) expandUnit(*declaration);
        finishGlobals();
        tree_.complete = members_ < maxMembers;
        return std::move(tree_);
    }

  private:
    // Names of the whole model.

    void collect(const Declaration& declaration) {
        std::visit(Overloaded{[&](const TemplateDecl& decl) {
                                  if (claim(decl.name, "template")) templates_[decl.name.text] = &decl;
                              },
                              [&](const ConstDecl& decl) {
                                  if (claim(decl.name, "constant"))
                                      globals_.bind(decl.name.text,
                                                    folded(Substitution(globals_, diagnostics_)(decl.value)));
                              },
                              [&](const RuleDecl& decl) {
                                  if (claim(decl.name, "rule")) tree_.rules[decl.name.text] = decl;
                              },
                              [&](const PageDecl& decl) { claim(decl.name, "page"); },
                              [&](const ContainerDecl& decl) { claim(decl.name, "container"); }, [](const auto&) {}},
                   declaration.node);
    }

    bool claim(const Name& name, const std::string& what) {
        static const std::set<std::string_view> reserved = {
            "SharedRules", "Engine", "Backend", "Assets", "Texts", "Icons", "Fonts", "Model", "std", "none", "touch"};
        if (reserved.contains(name.text) || name.text.starts_with("Var") || name.text.starts_with("Event_")) {
            diagnostics_.error(name.span, "'" + name.text + "' means something else already",
                               "give this " + what + " another name");
            return false;
        }
        const auto [first, fresh] = names_.try_emplace(name.text, name.span);
        if (fresh) return true;
        auto& report = diagnostics_.error(
            name.span, "there is already something called '" + name.text + "'",
            "pages, containers, templates, rules and constants share one space of names; rename this " + what);
        report.notes.push_back({first->second, "it is declared here"});
        return false;
    }

    void expandUnit(const Declaration& declaration) {
        std::visit(Overloaded{[&](const PageDecl& decl) {
                                  unit(UnitNode::Kind::Page, decl.name, declaration.span, decl.members);
                              },
                              [&](const ContainerDecl& decl) {
                                  unit(UnitNode::Kind::Container, decl.name, declaration.span, decl.members);
                              },
                              [&](const ExportDecl& decl) { tree_.exports.push_back(decl); },
                              [&](const RegisterDecl& decl) { tree_.registrations.push_back(decl); },
                              [&](const EditsDecl& decl) { tree_.edits.push_back(decl); },
                              [&](const StyleDecl& decl) {
                                  if (tree_.night != nullptr)
                                      diagnostics_.error(decl.night->span, "the night style has its condition already");
                                  tree_.night = decl.night;
                              },
                              [](const auto&) {}},
                   declaration.node);
    }

    void unit(UnitNode::Kind kind, const Name& name, Span span, const Members& members) {
        auto node = std::make_unique<UnitNode>();
        node->kind = kind;
        node->name = name;
        node->span = span;
        node->root.name = name;
        node->root.span = span;
        Place place{*node, node->root, nullptr, nullptr};
        expandMembers(members, globals_, place);
        tree_.units.push_back(std::move(node));
    }

    void finishGlobals() {
        const Substitution substitute(globals_, diagnostics_);
        for (auto& [name, rule] : tree_.rules) rule.value = substitute(rule.value);
        for (auto& decl : tree_.exports)
            for (const auto& item : decl.items) exported(decl, item, 0, globals_);
        for (auto& decl : tree_.registrations) decl.names = substitute(decl.names);
        if (tree_.night != nullptr) tree_.night = substitute(tree_.night);
        for (auto& decl : tree_.edits) {
            decl.variable = substitute(decl.variable);
            for (auto& row : decl.rows) {
                row.number = folded(substitute(row.number));
                row.working = substitute(row.working);
                row.source = substitute(row.source);
            }
        }
    }

    /// Puts what an item comes to behind the targets, from its repetition `loop` inwards.
    void exported(ExportDecl& decl, const ExportItem& item, std::size_t loop, const Bindings& bindings) {
        if (loop == item.loops.size()) {
            if (!tooMany(item.target->span)) decl.targets.push_back(Substitution(bindings, diagnostics_)(item.target));
            return;
        }
        forEach(item.loops[loop], bindings, [&](const Bindings& inner) { exported(decl, item, loop + 1, inner); });
    }

    // Members.

    void expandMembers(const Members& members, const Bindings& bindings, Place& place) {
        std::set<std::string> given;
        for (const auto& member : members) {
            if (tooMany(member->span)) return;
            if (const auto* property = std::get_if<PropertyDecl>(&member->node);
                property != nullptr && !given.insert(property->name.text).second)
                diagnostics_.error(property->name.span, "'" + property->name.text + "' is given twice",
                                   "keep one of them");
            expandMember(*member, bindings, place);
        }
    }

    bool tooMany(Span span) {
        if (++members_ < maxMembers) return false;
        if (members_ == maxMembers)
            diagnostics_.error(span, "the model grows beyond a million members here",
                               "look for a repetition inside a repetition");
        return true;
    }

    void expandMember(const Member& member, const Bindings& bindings, Place& place) {
        const Substitution substitute(bindings, diagnostics_);
        std::visit(Overloaded{[&](const PropertyDecl& decl) { property(decl, substitute, place); },
                              [&](const ObjectDecl& decl) { object(decl, member.span, bindings, place); },
                              [&](const ReactionDecl& decl) { reaction(decl, member.span, substitute, place); },
                              [&](const TimerDecl& decl) { timer(decl, member.span, substitute, place); },
                              [&](const TriggerDecl& decl) { trigger(decl, member.span, substitute, place); },
                              [&](const UserActionDecl& decl) { userAction(decl, member.span, substitute, place); },
                              [&](const SlotDecl& decl) { slot(decl, member.span, place); },
                              [&](const ForDecl& decl) { repetition(decl, bindings, place); },
                              [&](const StaticIfDecl& decl) { staticIf(decl, bindings, place); }},
                   member.node);
    }

    void property(const PropertyDecl& decl, const Substitution& substitute, Place& place) {
        PropertyDecl result{substitute(decl.name), folded(substitute(decl.value))};
        if (const auto* list = std::get_if<ListExpr>(&result.value->node)) {
            ListExpr numbers;
            for (const auto& item : list->items) numbers.items.push_back(folded(item));
            result.value = std::make_shared<Expr>(Expr{result.value->span, std::move(numbers)});
        }
        auto& all = place.object.properties;
        std::erase_if(all, [&](const PropertyDecl& one) { return one.name.text == result.name.text; });
        if (!isNone(result.value)) all.push_back(std::move(result));
    }

    /// Leaves out what a parameter left out; false when nothing is left.
    static bool events(std::vector<ExprPtr>& list) {
        std::erase_if(list, [](const ExprPtr& event) { return isNone(event); });
        return !list.empty();
    }

    void reaction(const ReactionDecl& decl, Span span, const Substitution& substitute, Place& place) {
        ReactionDecl result{substitute(decl.events), substitute(decl.condition), substitute(decl.actions)};
        if (events(result.events))
            place.unit.reactions.push_back({std::move(result), place.owner, span, place.expansion});
    }

    void timer(const TimerDecl& decl, Span span, const Substitution& substitute, Place& place) {
        TimerDecl result;
        result.name = decl.name;
        result.period = folded(substitute(decl.period));
        result.times = folded(substitute(decl.times));
        result.starts = substitute(decl.starts);
        result.stops = substitute(decl.stops);
        result.condition = substitute(decl.condition);
        result.ticks = substitute(decl.ticks);
        result.finish = substitute(decl.finish);
        events(result.stops);
        if (events(result.starts) || !result.name.empty())
            place.unit.timers.push_back({std::move(result), place.owner, span, place.expansion});
        else
            diagnostics_.error(span, "nothing starts this timer", "add  starts Event_...");
    }

    void trigger(const TriggerDecl& decl, Span span, const Substitution& substitute, Place& place) {
        TriggerDecl result{substitute(decl.event), decl.when, substitute(decl.condition),
                           folded(substitute(decl.threshold))};
        if (!isNone(result.event))
            place.unit.triggers.push_back({std::move(result), place.owner, span, place.expansion});
    }

    void userAction(const UserActionDecl& decl, Span span, const Substitution& substitute, Place& place) {
        UserActionDecl result = decl;
        result.name = substitute(decl.name);
        result.index = folded(substitute(decl.index));
        result.press = substitute(decl.press);
        result.release = substitute(decl.release);
        result.select = substitute(decl.select);
        result.deselect = substitute(decl.deselect);
        result.active = substitute(decl.active);
        result.enabled = substitute(decl.enabled);
        place.unit.userActions.push_back({std::move(result), place.owner, span, place.expansion});
    }

    void repetition(const ForDecl& decl, const Bindings& bindings, Place& place) {
        forEach(decl, bindings, [&](const Bindings& inner) { expandMembers(decl.body, inner, place); });
    }

    /// Calls `what` with the names of each item bound.
    void forEach(const ForDecl& decl, const Bindings& bindings, const std::function<void(const Bindings&)>& what) {
        const Substitution substitute(bindings, diagnostics_);
        std::vector<std::vector<ExprPtr>> items;
        if (decl.from != nullptr) {
            const auto from = staticNumber(substitute(decl.from), diagnostics_);
            const auto to = staticNumber(substitute(decl.to), diagnostics_);
            for (std::int64_t i = from.value_or(0); from && to && i <= *to && items.size() < maxMembers; ++i)
                items.push_back({std::make_shared<Expr>(Expr{decl.from->span, IntLiteral{i, false}})});
        } else {
            for (const auto& item : decl.items) items.push_back(substitute(item));
        }
        for (const auto& item : items) {
            if (item.size() != decl.names.size()) {
                diagnostics_.error(item.empty() ? decl.names.front().span : item.front()->span,
                                   "this item has " + std::to_string(item.size()) + " values for " +
                                       std::to_string(decl.names.size()) + " names",
                                   "write each item as (a, b, ...) with one value a name");
                continue;
            }
            Bindings inner(&bindings);
            for (std::size_t i = 0; i < item.size(); ++i) inner.bind(decl.names[i].text, item[i]);
            what(inner);
            if (members_ >= maxMembers) return;
        }
    }

    void staticIf(const StaticIfDecl& decl, const Bindings& bindings, Place& place) {
        const auto decided = staticCondition(Substitution(bindings, diagnostics_)(decl.condition), diagnostics_);
        if (decided) expandMembers(*decided ? decl.then : decl.otherwise, bindings, place);
    }

    void slot(const SlotDecl& decl, Span span, Place& place) {
        const Filling* filling = place.filling;
        if (filling == nullptr) {
            diagnostics_.error(span, "a slot has a meaning inside a template only");
            return;
        }
        Place inner{place.unit, place.object, place.owner, filling->expansion, filling->outer};
        if (decl.name.text.empty()) {
            filling->plainPlaced = true;
            expandMembers(filling->plain, *filling->bindings, inner);
        } else if (const auto found = filling->named.find(decl.name.text); found != filling->named.end()) {
            expandMembers(found->second, *filling->bindings, inner);
        }
    }

    // Objects.

    void object(const ObjectDecl& decl, Span span, const Bindings& bindings, Place& place) {
        if (const auto found = templates_.find(decl.type.text); found != templates_.end()) {
            useTemplate(*found->second, decl, bindings, place);
            return;
        }
        if (!decl.arguments.empty())
            diagnostics_.error(decl.arguments.front()->span, "only templates take values in brackets",
                               "give a property instead");
        auto node = std::make_unique<ObjectNode>();
        node->type = decl.type;
        node->name = Substitution(bindings, diagnostics_)(decl.name);
        node->span = span;
        node->expansion = place.expansion;
        node->parent = &place.object;
        Place inner{place.unit, *node, node.get(), place.expansion, place.filling};
        place.object.children.push_back(std::move(node));
        expandMembers(decl.members, bindings, inner);
    }

    void useTemplate(const TemplateDecl& decl, const ObjectDecl& use, const Bindings& bindings, Place& place) {
        if (depth_ >= maxTemplateDepth) {
            diagnostics_.error(use.type.span, "the template '" + decl.name.text + "' reaches itself here",
                               "a template may not use itself, nor by way of another");
            return;
        }
        Bindings inner(&globals_);
        Filling filling;
        filling.bindings = &bindings;
        filling.expansion = place.expansion;
        filling.outer = place.filling;
        bindParameters(decl, use, bindings, inner, filling);

        ++depth_;
        diagnostics_.enterExpansion(use.type.span, "used here, in an expansion of '" + decl.name.text + "'");
        Place body{place.unit, place.object, place.owner,
                   std::make_shared<Expansion>(Expansion{use.type.span, decl.name.text, place.expansion}), &filling};
        const std::size_t before = place.object.children.size();
        expandMembers(decl.members, inner, body);
        diagnostics_.leaveExpansion();
        --depth_;

        nameRoots(place.object, before, Substitution(bindings, diagnostics_)(use.name));
        if (!filling.plain.empty() && !filling.plainPlaced)
            diagnostics_
                .error(filling.plain.front()->span, "the template '" + decl.name.text + "' has no place for this",
                       parameterHint(decl, *filling.plain.front()))
                .notes.push_back({decl.name.span, "it has no 'slot'"});
    }

    /// A template with one root lends it the name of its use; several roots get it as a prefix.
    static void nameRoots(ObjectNode& parent, std::size_t first, const Name& name) {
        if (name.text.empty()) return;
        const bool single = parent.children.size() == first + 1;
        for (std::size_t i = first; i < parent.children.size(); ++i) {
            Name& own = parent.children[i]->name;
            if (single)
                own = name;
            else if (!own.text.empty())
                own.text = name.text + "_" + own.text;
        }
    }

    static std::string parameterHint(const TemplateDecl& decl, const Member& member) {
        const auto* property = std::get_if<PropertyDecl>(&member.node);
        if (property == nullptr) return {};
        std::vector<std::string_view> names;
        for (const auto& parameter : decl.parameters) names.push_back(parameter.name.text);
        return didYouMean(property->name.text, names);
    }

    void bindParameters(const TemplateDecl& decl, const ObjectDecl& use, const Bindings& bindings, Bindings& inner,
                        Filling& filling) {
        const Substitution substitute(bindings, diagnostics_);
        std::set<std::string> bound;
        const auto bind = [&](const std::string& name, ExprPtr value) {
            if (bound.insert(name).second) inner.bind(name, folded(value));
        };
        for (std::size_t i = 0; i < use.arguments.size(); ++i) {
            if (i < decl.parameters.size())
                bind(decl.parameters[i].name.text, substitute(use.arguments[i]));
            else
                diagnostics_.error(use.arguments[i]->span, "'" + decl.name.text + "' takes " +
                                                               std::to_string(decl.parameters.size()) + " values");
        }
        for (const auto& member : use.members) sortMember(decl, member, substitute, bound, bind, filling);
        for (const auto& parameter : decl.parameters) {
            if (bound.contains(parameter.name.text)) continue;
            if (parameter.fallback != nullptr) {
                inner.bind(parameter.name.text, folded(Substitution(inner, diagnostics_)(parameter.fallback)));
                continue;
            }
            auto& report = diagnostics_.error(
                use.type.span, "'" + decl.name.text + "' needs a value for '" + parameter.name.text + "'",
                "add  " + parameter.name.text + ": ...");
            report.notes.push_back({parameter.name.span, "declared here, without a value to fall back on"});
            inner.bind(parameter.name.text, std::make_shared<Expr>(Expr{use.type.span, NameExpr{{"none"}}}));
        }
    }

    template <typename Bind>
    void sortMember(const TemplateDecl& decl, const MemberPtr& member, const Substitution& substitute,
                    const std::set<std::string>& bound, const Bind& bind, Filling& filling) {
        if (const auto* property = std::get_if<PropertyDecl>(&member->node)) {
            const bool known =
                std::any_of(decl.parameters.begin(), decl.parameters.end(),
                            [&](const Parameter& parameter) { return parameter.name.text == property->name.text; });
            if (known) {
                if (bound.contains(property->name.text))
                    diagnostics_.error(property->name.span, "'" + property->name.text + "' is given twice");
                bind(property->name.text, substitute(property->value));
                return;
            }
        }
        if (const auto* object = std::get_if<ObjectDecl>(&member->node);
            object != nullptr && hasSlot(decl.members, object->type.text)) {
            auto& named = filling.named[object->type.text];
            named.insert(named.end(), object->members.begin(), object->members.end());
            return;
        }
        filling.plain.push_back(member);
    }

    static bool hasSlot(const Members& members, const std::string& name) {
        return std::any_of(members.begin(), members.end(), [&](const MemberPtr& member) {
            if (const auto* slot = std::get_if<SlotDecl>(&member->node)) return slot->name.text == name;
            if (const auto* object = std::get_if<ObjectDecl>(&member->node)) return hasSlot(object->members, name);
            if (const auto* repeated = std::get_if<ForDecl>(&member->node)) return hasSlot(repeated->body, name);
            if (const auto* decided = std::get_if<StaticIfDecl>(&member->node))
                return hasSlot(decided->then, name) || hasSlot(decided->otherwise, name);
            return false;
        });
    }

    const std::vector<SourceTree>& sources_;
    Diagnostics& diagnostics_;
    ModelTree tree_;
    Bindings globals_;
    std::map<std::string, const TemplateDecl*> templates_;
    std::map<std::string, Span> names_;
    std::size_t members_ = 0;
    int depth_ = 0;
};

}  // namespace

ModelTree expand(const std::vector<SourceTree>& sources, Diagnostics& diagnostics) {
    return Expander(sources, diagnostics).run();
}

}  // namespace Modelc
