#include "tools/modelc/edits.h"

#include <map>

#include "tools/modelc/staticvalue.h"

namespace Modelc {

namespace {

ExprPtr named(Span span, std::string name) {
    return std::make_shared<Expr>(Expr{span, NameExpr{{std::move(name)}}});
}
ExprPtr number(Span span, std::int64_t value) {
    return std::make_shared<Expr>(Expr{span, IntLiteral{value, false}});
}

ActionPtr setAction(Span span, ExprPtr target, ExprPtr value) {
    ActionStmt action;
    action.span = span;
    action.verbSpan = span;
    action.verb = "set";
    action.operands = {std::move(target), std::move(value)};
    return std::make_shared<ActionStmt>(std::move(action));
}

Owned<ReactionDecl> reaction(Span span, std::vector<ExprPtr> events, ExprPtr condition, ActionPtr action) {
    return {{std::move(events), std::move(condition), {std::move(action)}}, nullptr, span, nullptr};
}

void reportTwins(const EditsDecl& table, Diagnostics& diagnostics) {
    std::map<std::int64_t, Span> numbers;
    std::map<std::string, Span> names;
    for (const auto& row : table.rows) {
        const auto value = staticNumber(row.number, diagnostics);
        if (!value) continue;
        if (*value == 0)
            diagnostics.error(row.number->span, "0 says that nothing is being edited",
                              "give the setting another number");
        if (const auto [first, fresh] = numbers.try_emplace(*value, row.number->span); !fresh)
            diagnostics.error(row.number->span, "the number " + std::to_string(*value) + " stands twice")
                .notes.push_back({first->second, "it stands here first"});
        if (const auto [first, fresh] = names.try_emplace(row.name.text, row.name.span); !fresh)
            diagnostics.error(row.name.span, "the setting '" + row.name.text + "' stands twice")
                .notes.push_back({first->second, "it stands here first"});
    }
}

}  // namespace

void expandEdits(ModelTree& model, Diagnostics& diagnostics) {
    for (const auto& table : model.edits) {
        reportTwins(table, diagnostics);
        UnitNode* container = nullptr;
        for (const auto& unit : model.units)
            if (unit->kind == UnitNode::Kind::Container && unit->name.text == table.container.text)
                container = unit.get();
        if (container == nullptr) {
            diagnostics.error(table.container.span, "there is no container '" + table.container.text + "'",
                              "declare it:  container " + table.container.text + " { }");
            continue;
        }
        const Span span = table.container.span;
        const ExprPtr confirmed = named(span, "Event_EditConfirmed");
        std::vector<Owned<ReactionDecl>> made;
        made.push_back(reaction(span, {confirmed, named(span, "Event_EditCanceled")}, nullptr,
                                setAction(span, table.variable, number(span, 0))));
        for (const auto& row : table.rows) {
            if (row.source == nullptr) continue;
            const ExprPtr chosen =
                std::make_shared<Expr>(Expr{row.span, BinaryExpr{"==", row.span, table.variable, row.number}});
            made.push_back(reaction(row.span, {confirmed}, chosen, setAction(row.span, row.source, row.working)));
        }
        container->reactions.insert(container->reactions.begin(), made.begin(), made.end());
    }
}

}  // namespace Modelc
