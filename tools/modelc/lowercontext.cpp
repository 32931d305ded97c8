#include "tools/modelc/lowercontext.h"

#include <algorithm>

namespace Modelc {

namespace {

/// Depth first: objects without a name are transparent.
const ObjectNode* childNamed(const ObjectNode& parent, const std::string& name) {
    for (const auto& child : parent.children)
        if (child->name.text == name) return child.get();
    for (const auto& child : parent.children)
        if (child->name.text.empty())
            if (const ObjectNode* found = childNamed(*child, name)) return found;
    return nullptr;
}

void collectNames(const ObjectNode& parent, std::vector<std::string_view>& names) {
    for (const auto& child : parent.children) {
        if (!child->name.text.empty())
            names.push_back(child->name.text);
        else
            collectNames(*child, names);
    }
}

}  // namespace

const ObjectNode* LoweringContext::findWidget(const ExprPtr& expr, const UnitNode* unit) {
    const auto* name = std::get_if<NameExpr>(&expr->node);
    if (name == nullptr) {
        diagnostics.error(expr->span, "a widget is expected here",
                          "name it by its path, such as  Home_LDD.softUL.label");
        return nullptr;
    }
    std::size_t at = 0;
    if (const UnitNode* other = model.unit(name->parts.front()); other != nullptr && name->parts.size() > 1) {
        unit = other;
        at = 1;
    }
    const ObjectNode* place = unit != nullptr ? &unit->root : nullptr;
    for (; place != nullptr && at < name->parts.size(); ++at) {
        const ObjectNode* next = childNamed(*place, name->parts[at]);
        if (next == nullptr) {
            std::vector<std::string_view> known;
            collectNames(*place, known);
            diagnostics.error(expr->span, "there is no widget '" + name->parts[at] + "' in '" + place->name.text + "'",
                              didYouMean(name->parts[at], known));
            return nullptr;
        }
        place = next;
    }
    if (place == nullptr) diagnostics.error(expr->span, "there is no page '" + name->parts.front() + "'");
    return place;
}

ExpansionScope::ExpansionScope(Diagnostics& diagnostics, const ExpansionPtr& expansion) : diagnostics_(diagnostics) {
    std::vector<const Expansion*> chain;
    for (const Expansion* one = expansion.get(); one != nullptr; one = one->outer.get()) chain.push_back(one);
    for (auto one = chain.rbegin(); one != chain.rend(); ++one, ++depth_)
        diagnostics_.enterExpansion((*one)->use, "in an expansion of '" + (*one)->what + "'");
}

ExpansionScope::~ExpansionScope() {
    for (; depth_ > 0; --depth_) diagnostics_.leaveExpansion();
}

}  // namespace Modelc
