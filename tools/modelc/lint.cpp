#include "tools/modelc/lint.h"

#include <algorithm>
#include <map>
#include <nlohmann/json.hpp>
#include <optional>
#include <ostream>

#include "tools/modelc/schema.h"

namespace Modelc {

namespace {

constexpr int screenWidth = 240;
constexpr int screenHeight = 400;
constexpr int smallestTouch = 30;

class Linter {
  public:
    Linter(const ModelTree& model, const Lowered& lowered, const Names& names, const Explanation& explanation,
           const LintOptions& options)
        : model_(model), lowered_(lowered), names_(names), explanation_(explanation), options_(options) {}

    std::vector<LintFinding> run() {
        pages();
        events();
        touches();
        for (const auto& unit : model_.units)
            if (unit->kind == UnitNode::Kind::Page) {
                outside(unit->root, 0, 0, unit->name.text);
                notBuilt(unit->root, *unit);
            }
        return std::move(findings_);
    }

  private:
    void report(std::string check, std::string place, std::string message, Span span = {}) {
        findings_.push_back({std::move(check), std::move(place), std::move(message), span});
    }

    bool isPage(const std::string& name) const {
        const UnitNode* unit = model_.unit(name);
        return unit != nullptr && unit->kind == UnitNode::Kind::Page;
    }

    static std::string unitOf(const std::string& address) { return address.substr(1, address.find(':') - 1); }

    void pages() {
        std::set<std::string> reached;
        std::vector<std::string> open;
        const auto reach = [&](const std::string& name) {
            if (isPage(name) && reached.insert(name).second) open.push_back(name);
        };
        if (!lowered_.start.empty()) reach(unitOf(lowered_.start));
        for (const auto& address : lowered_.overlays) reach(unitOf(address));
        for (const auto& visit : explanation_.visits)
            if (!isPage(visit.from)) reach(visit.to);
        while (!open.empty()) {
            const std::string from = open.back();
            open.pop_back();
            for (const auto& visit : explanation_.visits)
                if (visit.from == from) reach(visit.to);
        }
        std::set<std::string> overlays;
        for (const auto& address : lowered_.overlays) overlays.insert(unitOf(address));
        for (const auto& unit : model_.units) {
            if (unit->kind != UnitNode::Kind::Page) continue;
            const std::string& name = unit->name.text;
            if (!reached.contains(name))
                report(Check::unreachablePage, name, "no page or container leads to this page", unit->name.span);
            const bool leaves = std::any_of(explanation_.visits.begin(), explanation_.visits.end(),
                                            [&](const auto& visit) { return visit.from == name; });
            if (!leaves && !overlays.contains(name))
                report(Check::deadEnd, name, "no reaction of this page leaves it", unit->name.span);
        }
    }

    std::string eventName(unsigned id) const {
        for (const auto& [name, number] : names_.events)
            if (number == id) return name;
        return std::to_string(id);
    }

    void events() {
        std::set<unsigned> posted = options_.postedByProgram;
        std::set<unsigned> heard;
        for (const auto& post : explanation_.posts) posted.insert(post.event);
        for (const auto& hear : explanation_.hears) heard.insert(hear.event);
        std::set<unsigned> told;
        for (const auto& hear : explanation_.hears)
            if (!posted.contains(hear.event) && told.insert(hear.event).second)
                report(Check::neverPosted, hear.place, "nobody posts " + eventName(hear.event), hear.span);
        for (const auto& post : explanation_.posts)
            if (!heard.contains(post.event) && told.insert(post.event).second)
                report(Check::neverHeard, post.place, "nobody hears " + eventName(post.event));
    }

    static std::optional<int> number(const ObjectNode& object, std::string_view name, std::size_t inRect) {
        const PropertyDecl* decl = object.property(name);
        const PropertyDecl* rect = object.property("rect");
        const Expr* expr = decl != nullptr ? decl->value.get() : nullptr;
        if (expr == nullptr && rect != nullptr)
            if (const auto* list = std::get_if<ListExpr>(&rect->value->node);
                list != nullptr && list->items.size() == 4)
                expr = list->items[inRect].get();
        if (expr == nullptr) return 0;
        const auto* literal = std::get_if<IntLiteral>(&expr->node);
        return literal != nullptr ? std::optional<int>(static_cast<int>(literal->value)) : std::nullopt;
    }

    void touches() {
        for (const auto& touch : explanation_.touched) {
            const auto width = number(*touch.widget, "width", 2);
            const auto height = number(*touch.widget, "height", 3);
            if (!width || !height || (*width >= smallestTouch && *height >= smallestTouch)) continue;
            report(Check::smallTouchTarget, touch.place,
                   "this touch target is " + std::to_string(*width) + " x " + std::to_string(*height) +
                       " pixels, and a finger needs 30",
                   touch.span);
        }
    }

    void notBuilt(const ObjectNode& parent, const UnitNode& unit) {
        for (const auto& child : parent.children) {
            const PropertyDecl* text = child->property("text");
            const auto* name = text != nullptr ? std::get_if<NameExpr>(&text->value->node) : nullptr;
            if (name != nullptr && name->parts.back() == "not_built_yet")
                report(Check::notBuilt, unit.name.text, "this page says that something is not built yet",
                       unit.name.span);
            notBuilt(*child, unit);
        }
    }

    void outside(const ObjectNode& parent, int x, int y, const std::string& path) {
        for (const auto& child : parent.children) {
            if (const ClassSchema* schema = classSchema(child->type.text); schema != nullptr && schema->isElement())
                continue;  // its templates are moved to their places
            const auto left = number(*child, "x", 0), top = number(*child, "y", 1);
            const auto width = number(*child, "width", 2), height = number(*child, "height", 3);
            const std::string own = path + "." + (child->name.text.empty() ? child->type.text : child->name.text);
            if (!left || !top || !width || !height) continue;
            const int atX = x + *left, atY = y + *top;
            if (atX >= screenWidth || atY >= screenHeight || atX + *width <= 0 || atY + *height <= 0)
                report(Check::outsideScreen, own, "this widget lies outside the screen", child->type.span);
            outside(*child, atX, atY, own);
        }
    }

    const ModelTree& model_;
    const Lowered& lowered_;
    const Names& names_;
    const Explanation& explanation_;
    const LintOptions& options_;
    std::vector<LintFinding> findings_;
};

}  // namespace

std::vector<LintFinding> lint(const ModelTree& model, const Lowered& lowered, const Names& names,
                              const Explanation& explanation, const LintOptions& options) {
    return Linter(model, lowered, names, explanation, options).run();
}

void printLint(const std::vector<LintFinding>& findings, std::ostream& out) {
    for (const auto& finding : findings) {
        if (finding.span.file != nullptr)
            out << finding.span.file->path() << ":" << finding.span.file->position(finding.span.begin).line << ": ";
        out << finding.place << ": " << finding.message << " [" << finding.check << "]\n";
    }
    out << findings.size() << (findings.size() == 1 ? " finding\n" : " findings\n");
}

void printLintJson(const std::vector<LintFinding>& findings, std::ostream& out) {
    nlohmann::json list = nlohmann::json::array();
    for (const auto& finding : findings) {
        nlohmann::json one = {{"check", finding.check}, {"place", finding.place}, {"message", finding.message}};
        if (finding.span.file != nullptr) {
            one["file"] = finding.span.file->path();
            one["line"] = finding.span.file->position(finding.span.begin).line;
        }
        list.push_back(std::move(one));
    }
    out << list.dump(2) << "\n";
}

}  // namespace Modelc
