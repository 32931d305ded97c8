#include "tools/modelc/fitlint.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <map>
#include <optional>
#include <set>
#include <string_view>

#include "model/assets.h"
#include "tools/textfit/textfit.h"

namespace Modelc {

namespace {

constexpr std::array<const char*, 4> languageNames = {"English", "Chinese", "Spanish", "German"};

class FitLinter {
  public:
    FitLinter(const Names& names, const Explanation& explanation) : explanation_(explanation) {
        for (const auto& [name, text] : names.texts) byKey_[text.key] = &text;
        for (const auto& rule : explanation.rules)
            if (const auto* constant = rule.value->constant()) constants_.try_emplace(rule.place, constant->code);
    }

    std::vector<LintFinding> run() {
        for (const auto& shown : explanation_.shown) measure(shown);
        return std::move(findings_);
    }

  private:
    void measure(const Explanation::Shown& shown) {
        if (word(*shown.label, "fit") == "wanted") return;
        const auto spot = spotOf(shown);
        if (!spot) return;
        std::set<std::uint32_t> keys;
        collect(*shown.value, keys);
        for (const std::uint32_t key : keys) {
            const auto text = byKey_.find(key);
            if (text == byKey_.end()) continue;
            for (std::size_t language = 0; language < text->second->languages.size(); ++language)
                report(shown, TextFit::measureText(*spot, languageNames[std::min<std::size_t>(language, 3)], {key},
                                                   text->second->languages[language].c_str()));
        }
    }

    void report(const Explanation::Shown& shown, const std::vector<TextFit::Finding>& faults) {
        for (const auto& fault : faults) {
            const PropertyDecl* decl = shown.label->property("text");
            findings_.push_back({Check::textFit, shown.place, TextFit::describe(fault),
                                 decl != nullptr ? decl->value->span : shown.label->span});
        }
    }

    static void collect(const Value& value, std::set<std::uint32_t>& keys) {
        if (const auto* constant = value.constant(); constant != nullptr && value.type == Type::Text)
            keys.insert(static_cast<std::uint32_t>(
                std::strtoul(constant->code.c_str() + constant->code.find('{') + 1, nullptr, 10)));
        if (const auto* choice = std::get_if<ChoiceValue>(&value.node))
            for (const auto& branch : choice->branches) collect(*branch.value, keys);
        if (const auto* rule = std::get_if<RuleValue>(&value.node)) collect(*rule->value, keys);
        const auto* text = std::get_if<EnumTextValue>(&value.node);
        if (text != nullptr && text->variable->enumType != nullptr)
            for (const auto& one : text->variable->enumType->values)
                if (one.textKey != 0) keys.insert(one.textKey);
    }

    std::optional<int> number(const std::string& place, const char* property) const {
        const auto found = constants_.find(place + "." + property);
        return found != constants_.end() ? std::optional<int>(std::atoi(found->second.c_str())) : std::nullopt;
    }

    static std::string_view word(const ObjectNode& object, std::string_view property) {
        const PropertyDecl* decl = object.property(property);
        const auto* name = decl != nullptr ? std::get_if<NameExpr>(&decl->value->node) : nullptr;
        return name != nullptr ? std::string_view(name->parts.front()) : std::string_view{};
    }

    /// Nothing when the place or the font follow a rule: then only the running program knows.
    std::optional<TextFit::Spot> spotOf(const Explanation::Shown& shown) const {
        const auto width = number(shown.place, "width");
        const auto height = number(shown.place, "height");
        const auto font = constants_.find(shown.place + ".font");
        if (!width || !height || font == constants_.end()) return std::nullopt;
        TextFit::Spot spot;
        spot.name = shown.place;
        spot.font = &Assets::fonts[std::atoi(font->second.c_str() + font->second.find('[') + 1)];
        spot.width = *width;
        spot.height = *height;
        spot.padding = number(shown.place, "padding").value_or(0);
        spot.wrap = constants_.contains(shown.place + ".wrap") && constants_.at(shown.place + ".wrap") == "true";
        spot.autoHeight = word(*shown.label, "autoHeight") == "on";
        const std::string_view ellipsis = word(*shown.label, "ellipsis");
        spot.ellipsis = ellipsis == "end"     ? Engine::Ellipsis::End
                        : ellipsis == "start" ? Engine::Ellipsis::Start
                                              : Engine::Ellipsis::None;
        const std::string_view letters = word(*shown.label, "case");
        spot.caseMode = letters == "upper"   ? Engine::CaseMode::Upper
                        : letters == "lower" ? Engine::CaseMode::Lower
                        : letters == "words" ? Engine::CaseMode::Words
                                             : Engine::CaseMode::AsWritten;
        const auto align = constants_.find(shown.place + ".verticalAlign");
        if (align != constants_.end())
            spot.verticalAlign = align->second.ends_with("Centre") ? Engine::Painter::Align::Centre
                                 : align->second.ends_with("End")  ? Engine::Painter::Align::End
                                                                   : Engine::Painter::Align::Start;
        return spot;
    }

    const Explanation& explanation_;
    std::map<std::uint32_t, const TextInfo*> byKey_;
    std::map<std::string, std::string> constants_;
    std::vector<LintFinding> findings_;
};

}  // namespace

std::vector<LintFinding> lintTextFit(const Names& names, const Explanation& explanation) {
    return FitLinter(names, explanation).run();
}

}  // namespace Modelc
