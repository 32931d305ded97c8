#include "tools/modelc/resolve.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

#include "tools/modelc/cppliteral.h"
#include "tools/modelc/staticvalue.h"

namespace Modelc {

namespace {

ValuePtr make(Type type, Span span, decltype(Value::node) node) {
    return std::make_shared<Value>(Value{type, span, std::move(node)});
}

std::string kindWord(VariableKind kind) {
    switch (kind) {
        case VariableKind::Flag: return "a flag";
        case VariableKind::Int: return "a number";
        case VariableKind::Enum: return "an enum";
        case VariableKind::Float: return "a float";
        case VariableKind::String: return "a string";
        case VariableKind::Table: return "a table";
    }
    return "a variable";
}

Type typeOf(VariableKind kind) {
    switch (kind) {
        case VariableKind::Flag: return Type::Bool;
        case VariableKind::Float: return Type::Float;
        case VariableKind::String: return Type::String;
        default: return Type::Int;
    }
}

std::optional<Operator> comparisonOperator(const std::string& op) {
    for (const Operator one : {Operator::Equal, Operator::Greater, Operator::Less, Operator::GreaterEqual,
                               Operator::LessEqual, Operator::NotEqual})
        if (operatorText(one) == op) return one;
    return std::nullopt;
}

std::optional<Type> variableType(const VariableInfo& variable) {
    switch (variable.kind) {
        case VariableKind::Enum: return Type::EnumVariable;
        case VariableKind::Int: return Type::IntVariable;
        case VariableKind::Float: return Type::FloatVariable;
        default: return std::nullopt;
    }
}

/// The words of an alignment, across and down.
constexpr std::pair<std::string_view, const char*> aligns[] = {
    {"start", "Engine::Painter::Align::Start"},   {"left", "Engine::Painter::Align::Start"},
    {"top", "Engine::Painter::Align::Start"},     {"centre", "Engine::Painter::Align::Centre"},
    {"center", "Engine::Painter::Align::Centre"}, {"end", "Engine::Painter::Align::End"},
    {"right", "Engine::Painter::Align::End"},     {"bottom", "Engine::Painter::Align::End"},
};

}  // namespace

// Values.

ValuePtr Resolver::value(const ExprPtr& unfolded, Type type) {
    const ExprPtr expr = folded(unfolded);
    const Span span = expr->span;
    if (const auto* node = std::get_if<ChooseExpr>(&expr->node)) return choice(*node, span, type);
    if (const auto* node = std::get_if<NightDayExpr>(&expr->node)) return nightDay(*node, span, type);
    if (const auto* node = std::get_if<NameExpr>(&expr->node)) return named(*expr, *node, type);
    if (const auto* node = std::get_if<PlaceExpr>(&expr->node)) return placeOnScale(*node, span, type);
    if (const auto* node = std::get_if<IndexExpr>(&expr->node)) {
        const VariableInfo* found = cell(*expr, *node);
        return found != nullptr ? variableValue(*found, span, type) : nullptr;
    }
    if (type == Type::Bool) {
        if (const auto* node = std::get_if<UnaryExpr>(&expr->node); node != nullptr && node->op == "!") {
            ValuePtr operand = value(node->operand, Type::Bool);
            return operand != nullptr ? make(Type::Bool, span, NotValue{std::move(operand)}) : nullptr;
        }
        if (const auto* node = std::get_if<BinaryExpr>(&expr->node)) return binary(*expr, *node);
    }
    if (std::holds_alternative<BinaryExpr>(expr->node) || std::holds_alternative<UnaryExpr>(expr->node))
        return mismatch(
            span, "a calculation", type,
            "variables cannot be calculated with; let the server give the result, or choose between constants");
    const auto literal = constant(expr, type);
    return literal ? make(type, span, *literal) : nullptr;
}

ValuePtr Resolver::choice(const ChooseExpr& choose, Span span, Type type) {
    ChoiceValue result;
    bool whole = true;
    for (const auto& branch : choose.branches) {
        ValuePtr when = branch.condition != nullptr ? condition(branch.condition) : nullptr;
        ValuePtr then = value(branch.value, type);
        whole = whole && then != nullptr && (branch.condition == nullptr || when != nullptr);
        result.branches.push_back({std::move(when), std::move(then)});
    }
    if (choose.branches.empty())
        return mismatch(span, "an empty choice", type, "add branches:  CONDITION -> VALUE  and  else -> VALUE");
    if (choose.branches.back().condition != nullptr && type != Type::Bool)
        diagnostics_.warning(
            {span.file, span.begin, span.begin + 6}, "this choice has no 'else'",
            "when no branch is true it gives nothing: transparent black, 0, no text; say so with  else -> ...");
    return whole ? make(type, span, std::move(result)) : nullptr;
}

ValuePtr Resolver::nightDay(const NightDayExpr& pair, Span span, Type type) {
    if (model_.night == nullptr) {
        diagnostics_.error(span, "the model does not say when it is night", "declare  style night when CONDITION");
        return nullptr;
    }
    ValuePtr night = value(pair.night, type);
    ValuePtr day = value(pair.day, type);
    ValuePtr when = condition(model_.night);
    if (night == nullptr || day == nullptr || when == nullptr) return nullptr;
    return make(type, span, ChoiceValue{{{std::move(when), std::move(night)}, {nullptr, std::move(day)}}});
}

ValuePtr Resolver::placeOnScale(const PlaceExpr& place, Span span, Type type) {
    if (type != Type::Float) return mismatch(span, "a place on a scale", type, "a place is a fraction of the scale");
    ValuePtr source = value(place.value, Type::Float);
    const VariableInfo* table = variable(place.table);
    if (source == nullptr || table == nullptr) return nullptr;
    if (table->kind != VariableKind::Table) {
        diagnostics_.error(place.table->span, "'" + table->name + "' is no table", "name the rows of a scale");
        return nullptr;
    }
    return make(Type::Float, span, PlaceValue{table, std::move(source)});
}

ValuePtr Resolver::named(const Expr& expr, const NameExpr& name, Type type) {
    std::string whole = name.parts.front();
    for (std::size_t i = 1; i < name.parts.size(); ++i) whole += "." + name.parts[i];
    if (model_.rules.contains(whole)) return rule(whole, expr.span, type);
    if (const VariableInfo* found = names_.variable(whole)) return variableValue(*found, expr.span, type);
    const auto found = namedConstant(expr, name, type);
    return found ? make(type, expr.span, *found) : nullptr;
}

ValuePtr Resolver::rule(const std::string& name, Span span, Type type) {
    const RuleDecl& decl = model_.rules.at(name);
    Type declared{};
    if (!typeOfWord(decl.type.text, declared)) {
        if (!rules_.contains(name)) {
            std::vector<std::string_view> words;
            for (int i = 0; i <= static_cast<int>(Type::FloatVariable); ++i)
                words.push_back(typeWord(static_cast<Type>(i)));
            diagnostics_.error(decl.type.span, "there is no type '" + decl.type.text + "'",
                               didYouMean(decl.type.text, words));
            rules_[name] = nullptr;
        }
        return nullptr;
    }
    if (declared != type) {
        mismatch(span, "the rule '" + name + "' of type " + std::string(typeWord(declared)), type);
        return nullptr;
    }
    if (std::find(openRules_.begin(), openRules_.end(), name) != openRules_.end()) {
        diagnostics_.error(span, "the rule '" + name + "' reaches itself", "a rule may not be made from itself");
        return nullptr;
    }
    if (!rules_.contains(name)) {
        openRules_.push_back(name);
        ValuePtr resolved = value(decl.value, declared);
        openRules_.pop_back();
        rules_[name] = std::move(resolved);
    }
    const ValuePtr& resolved = rules_.at(name);
    if (resolved == nullptr || resolved->constant() != nullptr) return resolved;
    return make(type, span, RuleValue{name, resolved});
}

ValuePtr Resolver::variableValue(const VariableInfo& variable, Span span, Type type) {
    if (variableType(variable) == type) return make(type, span, ConstantValue{variable.address, variable.name});
    if (typeOf(variable.kind) == type) return make(type, span, VariableValue{&variable});
    std::string help;
    if (type == Type::Bool && variable.kind != VariableKind::String)
        help = "compare it, for instance  " + variable.name + " != 0";
    if (type == Type::String) help = "give it a format, for instance  " + variable.name + " as \"%i\"";
    return mismatch(span, "'" + variable.name + "', which is " + kindWord(variable.kind) + ",", type, std::move(help));
}

// Conditions.

ValuePtr Resolver::binary(const Expr& expr, const BinaryExpr& node) {
    if (node.op != "&&" && node.op != "||") return comparison(expr, node);
    JunctionValue result{node.op == "&&", {}};
    bool whole = true;
    for (const auto& side : {node.left, node.right}) {
        ValuePtr operand = condition(side);
        whole = whole && operand != nullptr;
        const auto* nested = operand != nullptr ? std::get_if<JunctionValue>(&operand->node) : nullptr;
        if (nested != nullptr && nested->isAnd == result.isAnd)
            result.operands.insert(result.operands.end(), nested->operands.begin(), nested->operands.end());
        else
            result.operands.push_back(std::move(operand));
    }
    return whole ? make(Type::Bool, expr.span, std::move(result)) : nullptr;
}

bool Resolver::couldBeVariable(const ExprPtr& expr) const {
    if (std::holds_alternative<IndexExpr>(expr->node)) return true;
    const auto* name = std::get_if<NameExpr>(&expr->node);
    if (name == nullptr) return false;
    std::string whole = name->parts.front();
    for (std::size_t i = 1; i < name->parts.size(); ++i) whole += "." + name->parts[i];
    return whole.starts_with("Var") || names_.variables.contains(whole);
}

ValuePtr Resolver::comparison(const Expr& expr, const BinaryExpr& node) {
    const auto op = comparisonOperator(node.op);
    if (!op) return mismatch(expr.span, "a calculation", Type::Bool, "compare a variable with a constant");
    const bool leftIs = couldBeVariable(node.left);
    const bool rightIs = couldBeVariable(node.right);
    if (leftIs == rightIs) {
        diagnostics_.error(expr.span,
                           leftIs ? "two variables cannot be compared with each other" : "nothing here can change",
                           "a comparison has a variable on one side and a constant on the other");
        return nullptr;
    }
    const VariableInfo* found = variable(leftIs ? node.left : node.right);
    if (found == nullptr) return nullptr;
    if (found->kind == VariableKind::Table)
        return mismatch(node.left->span, "a table", Type::Bool, "compare its live row count or a cell");
    const auto right = constantFor(*found, leftIs ? node.right : node.left);
    if (!right) return nullptr;
    ValuePtr left = make(typeOf(found->kind), node.left->span, VariableValue{found});
    return make(Type::Bool, expr.span, CompareValue{leftIs ? *op : mirrored(*op), std::move(left), *right});
}

// Texts.

ValuePtr Resolver::content(const ExprPtr& expr) {
    if (const auto* node = std::get_if<StringLiteral>(&expr->node))
        return make(Type::String, expr->span, ConstantValue{cppString(node->value), "\"" + node->value + "\""});
    if (const auto* node = std::get_if<FormatExpr>(&expr->node)) return formatted(*expr, *node);
    if (const auto* node = std::get_if<CallExpr>(&expr->node)) return filled(*expr, *node);
    if (couldBeVariable(expr)) return part(expr);
    return value(expr, Type::Text);
}

ValuePtr Resolver::part(const ExprPtr& expr) {
    if (const auto* node = std::get_if<FormatExpr>(&expr->node)) return formatted(*expr, *node);
    const VariableInfo* found = variable(expr);
    if (found == nullptr) return nullptr;
    switch (found->kind) {
        case VariableKind::Enum: return make(Type::String, expr->span, EnumTextValue{found});
        case VariableKind::Table:
            return mismatch(expr->span, "the table '" + found->name + "'", Type::String, "name one of its cells");
        default: break;
    }
    const std::string format = found->kind == VariableKind::String  ? "%s"
                               : found->kind == VariableKind::Float ? "%.1f"
                                                                    : "%i";
    if (found->kind == VariableKind::Flag)
        return mismatch(expr->span, "'" + found->name + "', which is a flag,", Type::String,
                        "choose between two texts:  choose { " + found->name + " -> Texts.a else -> Texts.b }");
    ValuePtr source = make(typeOf(found->kind), expr->span, VariableValue{found});
    return make(Type::String, expr->span, FormattedValue{FormattedValue::Kind::Printf, std::move(source), format, {}});
}

ValuePtr Resolver::formatted(const Expr& expr, const FormatExpr& node) {
    ValuePtr source;
    if (node.kind >= FormatExpr::Kind::Metres) {
        source = value(node.value, node.kind == FormatExpr::Kind::Hundredths ? Type::Int : Type::Float);
        if (source == nullptr) return nullptr;
        const auto measure = static_cast<FormattedValue::Kind>(node.kind);
        return make(Type::String, expr.span, FormattedValue{measure, std::move(source), node.format, {}});
    }
    if (couldBeVariable(node.value)) {
        const VariableInfo* found = variable(node.value);
        if (found == nullptr) return nullptr;
        if (found->kind == VariableKind::Enum && node.format.find('s') != std::string::npos)
            source = make(Type::String, node.value->span, EnumTextValue{found});
        else
            source = variableValue(*found, node.value->span, typeOf(found->kind));
    } else {
        source = value(node.value, Type::String);
    }
    if (source == nullptr) return nullptr;
    const auto kind = static_cast<FormattedValue::Kind>(node.kind);
    if (kind != FormattedValue::Kind::Printf && source->type != Type::Int)
        return mismatch(node.value->span, "a value that is no number", Type::Int, "a time is a number of seconds");
    if (kind == FormattedValue::Kind::Printf) {
        const std::string fault = formatFault(node.format, source->type);
        if (!fault.empty()) {
            diagnostics_.error(node.formatSpan, fault,
                               "numbers take %i %d %u, floats %f %g, strings and enum texts %s; %% is a percent sign");
            return nullptr;
        }
    }
    return make(Type::String, expr.span, FormattedValue{kind, std::move(source), node.format, node.match});
}

ValuePtr Resolver::filled(const Expr& expr, const CallExpr& node) {
    ValuePtr text = value(node.callee, Type::Text);
    FilledValue result{text, {}};
    bool whole = text != nullptr;
    for (const auto& argument : node.arguments) {
        result.parts.push_back(part(argument));
        whole = whole && result.parts.back() != nullptr;
    }
    if (!whole) return nullptr;
    if (text->constant() != nullptr)
        if (const TextInfo* info = textOf(*text->constant())) checkPlaceholders(*info, result.parts.size(), expr.span);
    return make(Type::String, expr.span, std::move(result));
}

const TextInfo* Resolver::textOf(const ConstantValue& constant) const {
    const auto found = names_.texts.find(constant.text.starts_with("Texts.") ? constant.text.substr(6) : constant.text);
    return found != names_.texts.end() ? &found->second : nullptr;
}

void Resolver::checkPlaceholders(const TextInfo& text, std::size_t parts, Span span) {
    for (const auto& language : text.languages)
        for (std::size_t i = 0; i + 1 < language.size(); ++i) {
            if (language[i] != '%') continue;
            const char digit = language[++i];
            if (digit < '0' || digit > '9' || static_cast<std::size_t>(digit - '0') < parts) continue;
            diagnostics_.error(span,
                               "the text '" + text.name + "' has the hole %" + std::string(1, digit) + ", and only " +
                                   std::to_string(parts) + " values are given",
                               "the text reads \"" + language + "\"");
            return;
        }
}

// Variables, events, constants.

const VariableInfo* Resolver::variable(const ExprPtr& expr) {
    if (const auto* node = std::get_if<IndexExpr>(&expr->node)) return cell(*expr, *node);
    const auto* name = std::get_if<NameExpr>(&expr->node);
    if (name == nullptr) {
        diagnostics_.error(expr->span, "a variable is expected here");
        return nullptr;
    }
    std::string whole = name->parts.front();
    for (std::size_t i = 1; i < name->parts.size(); ++i) whole += "." + name->parts[i];
    if (const VariableInfo* found = names_.variable(whole)) return found;
    diagnostics_.error(expr->span, "there is no variable '" + whole + "'",
                       didYouMean(whole, Names::keys(names_.variables)));
    return nullptr;
}

const VariableInfo* Resolver::cell(const Expr& expr, const IndexExpr& node) {
    const auto* name = std::get_if<NameExpr>(&node.table->node);
    const auto table = name != nullptr ? names_.tables.find(name->parts.front()) : names_.tables.end();
    if (table == names_.tables.end()) {
        const std::string written(node.table->span.text());
        diagnostics_.error(node.table->span, "there is no table '" + written + "'",
                           didYouMean(written, Names::keys(names_.tables)));
        return nullptr;
    }
    const auto row = staticNumber(node.row, diagnostics_);
    if (!row) return nullptr;
    const TableInfo& info = table->second;
    const std::string field = node.field.empty() && info.columns.size() == 1 ? info.columns.front().field : node.field;
    if (const VariableInfo* found =
            *row >= 0 && *row < info.rows ? names_.cell(info, static_cast<int>(*row), field) : nullptr)
        return found;
    if (*row < 0 || *row >= info.rows) {
        diagnostics_.error(node.row->span,
                           "the table '" + info.name + "' has the rows 0 to " + std::to_string(info.rows - 1));
        return nullptr;
    }
    std::vector<std::string_view> fields;
    std::string list;
    for (const auto& column : info.columns) {
        fields.push_back(column.field);
        list += (list.empty() ? "" : ", ") + column.field;
    }
    const std::string guess = didYouMean(field, fields);
    diagnostics_.error(
        expr.span,
        field.empty() ? "which field of the table?" : "the table '" + info.name + "' has no field '" + field + "'",
        guess.empty() ? "it has " + list : guess);
    return nullptr;
}

std::optional<unsigned> Resolver::event(const ExprPtr& expr) {
    const auto* name = std::get_if<NameExpr>(&expr->node);
    if (name != nullptr && name->parts.size() == 1) {
        const std::string wanted = name->parts.front() == "touch" ? "Event_TouchTouched" : name->parts.front();
        if (const auto found = names_.events.find(wanted); found != names_.events.end()) return found->second;
        diagnostics_.error(expr->span, "there is no event '" + wanted + "'",
                           didYouMean(wanted, Names::keys(names_.events)));
        return std::nullopt;
    }
    diagnostics_.error(expr->span, "an event is expected here", "events are called Event_...");
    return std::nullopt;
}

std::optional<ConstantValue> Resolver::constantFor(const VariableInfo& variable, const ExprPtr& expr) {
    if (variable.kind != VariableKind::Enum) return constant(expr, typeOf(variable.kind));
    const auto* name = std::get_if<NameExpr>(&expr->node);
    if (name == nullptr) return constant(expr, Type::Int);
    const std::string& wanted = name->parts.back();
    if (variable.enumType == nullptr) {
        diagnostics_.error(expr->span, "the values of '" + variable.name + "' have no names yet",
                           "name them in the enum file, or write the number");
        return std::nullopt;
    }
    if (const auto* value = variable.enumType->value(wanted))
        return ConstantValue{std::to_string(value->number), value->name};
    std::vector<std::string_view> values;
    std::string list;
    for (const auto& one : variable.enumType->values) {
        values.push_back(one.name);
        list += (list.empty() ? "" : ", ") + one.name;
    }
    const std::string guess = didYouMean(wanted, values);
    diagnostics_.error(expr->span, "'" + variable.name + "' has no value '" + wanted + "'",
                       guess.empty() ? "its values are " + list : guess);
    return std::nullopt;
}

std::optional<ConstantValue> Resolver::constant(const ExprPtr& unfolded, Type type) {
    const ExprPtr expr = folded(unfolded);
    if (const auto* node = std::get_if<NameExpr>(&expr->node)) return namedConstant(*expr, *node, type);
    const std::string written(expr->span.text());
    if (const auto* node = std::get_if<BoolLiteral>(&expr->node); node != nullptr && type == Type::Bool)
        return ConstantValue{node->value ? "true" : "false", written};
    if (const auto* node = std::get_if<IntLiteral>(&expr->node)) {
        if (type == Type::Int || type == Type::Float) {
            if (node->value > 0x7fffffffLL || node->value < -0x80000000LL) {
                diagnostics_.error(expr->span, "this number does not fit into 32 bits");
                return std::nullopt;
            }
            const std::string digits = node->value == -0x80000000LL ? "(-2147483647 - 1)" : std::to_string(node->value);
            return ConstantValue{type == Type::Float ? std::to_string(node->value) + ".0f" : digits,
                                 std::to_string(node->value)};
        }
    }
    if (const auto* node = std::get_if<FloatLiteral>(&expr->node); node != nullptr && type == Type::Float)
        return ConstantValue{cppFloat(node->value), written};
    if (const auto* node = std::get_if<StringLiteral>(&expr->node); node != nullptr && type == Type::String)
        return ConstantValue{cppString(node->value), written};
    if (const auto* node = std::get_if<ColorLiteral>(&expr->node); node != nullptr && type == Type::Color) {
        char code[16];
        std::snprintf(code, sizeof code, "0x%08xu", node->value);
        return ConstantValue{code, written};
    }
    mismatch(expr->span, "'" + written + "'", type);
    return std::nullopt;
}

std::optional<ConstantValue> Resolver::namedConstant(const Expr& expr, const NameExpr& name, Type type) {
    const std::string& first = name.parts.front();
    const std::string& last = name.parts.back();
    const std::string written = first + (name.parts.size() > 1 ? "." + last : "");
    if (type == Type::Align) {
        for (const auto& [word, code] : aligns)
            if (last == word) return ConstantValue{code, last};
    } else if (type == Type::Text && first == "Texts") {
        if (const auto found = names_.texts.find(last); found != names_.texts.end())
            return ConstantValue{"Engine::TextId{" + std::to_string(found->second.key) + "}", written};
    } else if (type == Type::Image && first == "Icons") {
        if (const auto found = names_.icons.find(last); found != names_.icons.end())
            return ConstantValue{found->second.address, written};
    } else if (type == Type::Font && first == "Fonts") {
        if (const auto found = names_.fonts.find(last); found != names_.fonts.end())
            return ConstantValue{found->second, written};
    } else if (type == Type::Page && name.parts.size() == 1) {
        if (const UnitNode* page = model_.unit(first); page != nullptr && page->kind == UnitNode::Kind::Page)
            return ConstantValue{"&" + first + "::page[0]", first};
    }
    unknown(expr, name, type);
    return std::nullopt;
}

// Reports.

std::nullptr_t Resolver::unknown(const Expr& expr, const NameExpr& name, Type type) {
    const std::string& last = name.parts.back();
    std::string whole = name.parts.front();
    for (std::size_t i = 1; i < name.parts.size(); ++i) whole += "." + name.parts[i];
    const auto report = [&](const std::string& what, std::vector<std::string_view> candidates, std::string fallback) {
        std::string guess = didYouMean(last, candidates);
        diagnostics_.error(expr.span, "there is no " + what + " '" + whole + "'",
                           guess.empty() ? std::move(fallback) : std::move(guess));
        return nullptr;
    };
    switch (type) {
        case Type::Align:
            return report("alignment", {"start", "centre", "end", "left", "right", "top", "bottom"},
                          "there are start, centre and end");
        case Type::Text:
            return report("text", Names::keys(names_.texts),
                          "texts are named Texts.NAME; add the row to the text table");
        case Type::Image: return report("icon", Names::keys(names_.icons), "icons are named Icons.NAME");
        case Type::Font: return report("font", Names::keys(names_.fonts), "fonts are named Fonts.NAME");
        case Type::Page: {
            std::vector<std::string_view> pages;
            for (const auto& unit : model_.units)
                if (unit->kind == UnitNode::Kind::Page) pages.push_back(unit->name.text);
            return report("page", pages, {});
        }
        default: break;
    }
    if (whole.starts_with("Var")) return report("variable", Names::keys(names_.variables), {});
    std::vector<std::string_view> rules;
    for (const auto& [ruleName, decl] : model_.rules) rules.push_back(ruleName);
    return report("rule or constant", rules, "a " + std::string(typeWord(type)) + " is expected here");
}

std::nullptr_t Resolver::mismatch(Span span, std::string_view what, Type wanted, std::string help) {
    diagnostics_.error(span, std::string(what) + " stands where a " + std::string(typeWord(wanted)) + " is expected",
                       std::move(help));
    return nullptr;
}

}  // namespace Modelc
