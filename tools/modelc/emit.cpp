#include "tools/modelc/emit.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <fstream>
#include <ostream>
#include <set>
#include <sstream>
#include <stdexcept>
#include <string_view>

namespace Modelc {

namespace fs = std::filesystem;

namespace {

constexpr const char* notice = "// Generated from the model's sources. Changes belong there.\n";

/// Which files the arrays of each unit stand in.
class Stems {
  public:
    Stems(const Lowered& lowered, const std::vector<EmittedSource>& sources) {
        std::map<const SourceFile*, std::string> byFile;
        std::set<std::string> seen = {"rules", "observers", "model"};
        for (const auto& source : sources) {
            if (!seen.insert(source.stem).second)
                throw std::runtime_error("two sources would become " + source.stem + ".cpp; rename " +
                                         source.file->path());
            byFile[source.file] = source.stem;
        }
        for (const auto& unit : lowered.units)
            byUnit_[unit->name()] = unit->file() != nullptr ? byFile.at(unit->file()) : "rules";
    }

    const std::string& of(const std::string& unit) const { return byUnit_.at(unit); }
    bool known(const std::string& unit) const { return byUnit_.contains(unit); }

  private:
    std::map<std::string, std::string> byUnit_;
};

using Units = std::vector<const LoweredUnit*>;

std::string header(const Units& units) {
    std::ostringstream out;
    out << notice << "#pragma once\n\n#include \"model/runtime/generated.h\"\n";
    for (const LoweredUnit* unit : units) {
        out << "\nnamespace Model::" << unit->name() << " {\n\n";
        for (const auto& pool : unit->pools())
            out << "extern " << pool->type << " " << pool->name << "[" << pool->elements.size() << "];\n";
        for (const auto& storage : unit->storages())
            out << "extern " << storage.type << " " << storage.name << "[" << storage.size << "];\n";
        out << "extern const UnitLink link;\n\n}  // namespace Model::" << unit->name() << "\n";
    }
    return out.str();
}

/// The files whose arrays a text names.
void namedStems(const std::string& text, const Stems& stems, std::set<std::string>& found) {
    for (std::size_t at = text.find("::"); at != std::string::npos; at = text.find("::", at + 2)) {
        std::size_t begin = at;
        while (begin > 0 && (std::isalnum(static_cast<unsigned char>(text[begin - 1])) != 0 || text[begin - 1] == '_'))
            --begin;
        if (const std::string name = text.substr(begin, at - begin); stems.known(name)) found.insert(stems.of(name));
    }
}

void pointerTable(std::ostream& out, const std::string& type, const std::string& name,
                  const std::vector<std::string>& entries) {
    if (entries.empty()) return;
    out << "static " << type << " " << name << "[] = {\n";
    for (const auto& entry : entries) out << "    " << entry << ",\n";
    out << "};\n";
}

std::string span(const std::string& name, const std::vector<std::string>& entries) {
    return entries.empty() ? "{}" : name;
}

/// Objects that the running program never writes, or hardly ever, stand together, apart from those that it does write:
/// so the pages that they lie in stay those of the file.
bool isHardlyWritten(const Pool& pool) {
    static constexpr std::array<std::string_view, 18> classes = {"Result<",
                                                                 "Compare<",
                                                                 "ConditionalValue<",
                                                                 "Or",
                                                                 "CondElse",
                                                                 "Translator<",
                                                                 "SingleEventMatcher",
                                                                 "GroupEventMatcher",
                                                                 "Modifier<",
                                                                 "InverseModifier<",
                                                                 "MinMaxValueModifier<",
                                                                 "FireEvent",
                                                                 "VarSetToValue<",
                                                                 "VarSetToVariable<",
                                                                 "VarNegate",
                                                                 "NavigateTo",
                                                                 "HistoryGoBack",
                                                                 "ActionGroup"};
    constexpr std::string_view space = "Engine::";
    if (!pool.type.starts_with(space)) return false;
    const std::string_view name = std::string_view(pool.type).substr(space.size());
    return std::any_of(classes.begin(), classes.end(), [&](std::string_view one) {
        return name == one || (one.ends_with('<') && name.starts_with(one));
    });
}

void defineUnit(std::ostream& out, const LoweredUnit& unit) {
    out << "\nnamespace Model::" << unit.name() << " {\n\n";
    for (const auto& storage : unit.storages())
        out << "constinit " << storage.type << " " << storage.name << "[" << storage.size << "] = {};\n";
    for (const auto& pool : unit.pools()) {
        out << (isHardlyWritten(*pool) ? "[[gnu::section(\"model_constant\")]] " : "") << "constinit " << pool->type
            << " " << pool->name << "[" << pool->elements.size() << "] = {\n";
        for (const auto& element : pool->elements) out << "    " << element << ",\n";
        out << "};\n";
    }
    pointerTable(out, "Engine::Object* const", "linkParents", unit.parents);
    pointerTable(out, "const BorderLink", "linkBorders", unit.borders);
    pointerTable(out, "Engine::RegexFilter* const", "linkFilters", unit.regexFilters);
    pointerTable(out, "Engine::ConcatModifier* const", "linkConcats", unit.concatModifiers);
    pointerTable(out, "Engine::StringProviderBase* const", "linkStrings", unit.stringProviders);
    out << "constinit const UnitLink link = {\"" << unit.name() << "\", " << span("linkParents", unit.parents) << ", "
        << span("linkBorders", unit.borders) << ", " << span("linkFilters", unit.regexFilters) << ", "
        << span("linkConcats", unit.concatModifiers) << ", " << span("linkStrings", unit.stringProviders)
        << "};\n\n}  // namespace Model::" << unit.name() << "\n";
}

std::string source(const std::string& stem, const Units& units, const Stems& stems) {
    std::set<std::string> named = {stem};
    for (const LoweredUnit* unit : units)
        for (const auto& pool : unit->pools())
            for (const auto& element : pool->elements) namedStems(element, stems, named);
    std::ostringstream out;
    out << notice;
    for (const auto& name : named) out << "#include \"" << name << ".h\"\n";
    for (const LoweredUnit* unit : units) defineUnit(out, *unit);
    return out.str();
}

std::string includes(const std::map<std::string, Units>& files) {
    std::string result = notice;
    for (const auto& [stem, units] : files)
        if (!units.empty()) result += "#include \"" + stem + ".h\"\n";
    return result;
}

std::string observers(const Lowered& lowered, const std::string& heads) {
    std::ostringstream out;
    out << heads << "\nnamespace Model {\n\n";
    int number = 0;
    std::ostringstream ties;
    for (const auto& [name, list] : lowered.observers) {
        std::vector<std::string> addresses;
        for (const auto& observation : list)
            if (std::find(addresses.begin(), addresses.end(), observation.address) == addresses.end())
                addresses.push_back(observation.address);
        const std::string array = "observers" + std::to_string(number++);
        out << "// " << name << "\n";
        pointerTable(out, "Engine::Observer* const", array, addresses);
        ties << "    {" << lowered.variables.at(name)->address << ", " << array << "},\n";
    }
    out << "\nconstinit const ObserverTie observerTies[" << std::max(number, 1) << "] = {\n"
        << ties.str() << (number == 0 ? "    {nullptr, {}},\n" : "") << "};\n\n}  // namespace Model\n";
    return out.str();
}

std::string observersHeader(const Lowered& lowered) {
    std::ostringstream out;
    out << notice
        << "#pragma once\n\n#include \"model/runtime/modellink.h\"\n\nnamespace Model {\n\nextern const ObserverTie "
           "observerTies["
        << std::max<std::size_t>(lowered.observers.size(), 1) << "];\n\n}  // namespace Model\n";
    return out.str();
}

std::string modelHeader(const Lowered& lowered) {
    std::ostringstream out;
    out << notice << "#pragma once\n\n#include \"model/runtime/generated.h\"\n\nnamespace Model {\n\n";
    for (const auto& one : lowered.exports) {
        out << "extern " << one.type << "* const " << one.name;
        if (one.isList) out << "[" << one.addresses.size() << "]";
        out << ";\n";
    }
    out << "\n}  // namespace Model\n";
    return out.str();
}

std::string modelSource(const Lowered& lowered, const std::string& heads) {
    std::ostringstream out;
    out << heads << "#include \"model.h\"\n#include \"observers.h\"\n\nnamespace Model {\n\n";
    for (const auto& one : lowered.exports) {
        out << "constinit " << one.type << "* const " << one.name
            << (one.isList ? "[" + std::to_string(one.addresses.size()) + "] = {" : " = ");
        for (std::size_t i = 0; i < one.addresses.size(); ++i) out << (i > 0 ? ", " : "") << one.addresses[i];
        out << (one.isList ? "};\n" : one.addresses.empty() ? "nullptr;\n" : ";\n");
    }
    pointerTable(out, "Engine::Page* const", "overlayPages", lowered.overlays);
    pointerTable(out, "Engine::BehaviorContainer* const", "behaviorContainers", lowered.containers);
    out << "static const UnitLink* const unitLinks[] = {\n";
    for (const auto& unit : lowered.units) out << "    &" << unit->name() << "::link,\n";
    out << "};\n";
    out << "constinit const ModelLink modelLink = {unitLinks, " << (lowered.observers.empty() ? "{}" : "observerTies")
        << ", " << span("overlayPages", lowered.overlays) << ", " << span("behaviorContainers", lowered.containers)
        << ", " << (lowered.start.empty() ? "nullptr" : lowered.start) << "};\n\n}  // namespace Model\n";
    return out.str();
}

void writeIfChanged(const fs::path& path, const std::string& text) {
    if (std::ifstream existing(path, std::ios::binary); existing) {
        const std::string old((std::istreambuf_iterator<char>(existing)), std::istreambuf_iterator<char>());
        if (old == text) return;
    }
    std::ofstream file(path, std::ios::binary);
    file << text;
    file.close();
    if (!file) throw std::runtime_error(path.string() + " cannot be written; is there room, and may you write there?");
}

}  // namespace

std::string stemOf(const fs::path& relative) {
    std::string stem = relative.parent_path().string();
    if (!stem.empty()) stem += '_';
    stem += relative.stem().string();
    for (char& c : stem)
        if (std::isalnum(static_cast<unsigned char>(c)) == 0) c = '_';
    return stem;
}

void emit(const Lowered& lowered, const std::vector<EmittedSource>& sources, const fs::path& folder) {
    fs::create_directories(folder);
    const Stems stems(lowered, sources);
    std::map<std::string, Units> files = {{"rules", {}}};
    for (const auto& one : sources) files[one.stem];
    for (const auto& unit : lowered.units) files[stems.of(unit->name())].push_back(unit.get());
    for (const auto& [stem, units] : files) {
        writeIfChanged(folder / (stem + ".h"), header(units));
        writeIfChanged(folder / (stem + ".cpp"), source(stem, units, stems));
    }
    const std::string heads = includes(files);
    writeIfChanged(folder / "observers.h", observersHeader(lowered));
    writeIfChanged(folder / "observers.cpp", observers(lowered, heads + "#include \"observers.h\"\n"));
    writeIfChanged(folder / "model.h", modelHeader(lowered));
    writeIfChanged(folder / "model.cpp", modelSource(lowered, heads));
}

void print(const Lowered& lowered, std::ostream& out) {
    for (const auto& unit : lowered.units) {
        out << unit->name() << "\n";
        for (const auto& pool : unit->pools()) {
            out << "  " << pool->name << ": " << pool->type << "\n";
            for (std::size_t i = 0; i < pool->elements.size(); ++i)
                out << "    [" << i << "] " << pool->elements[i] << "\n";
        }
    }
    for (const auto& [name, list] : lowered.observers) {
        out << name << "\n";
        for (const auto& observation : list) out << "  " << observation.what << "  " << observation.address << "\n";
    }
}

}  // namespace Modelc
