#include "tools/modelc/emit.h"

#include <algorithm>
#include <cctype>
#include <fstream>
#include <ostream>
#include <set>
#include <sstream>
#include <stdexcept>

namespace Modelc {

namespace fs = std::filesystem;

namespace {

constexpr const char* notice = "// Generated from the model's sources. Changes belong there.\n";

std::string sourceName(const LoweredUnit& unit) {
    return "unit_" + unit.name() + ".cpp";
}
std::string headerName(const LoweredUnit& unit) {
    return "unit_" + unit.name() + ".h";
}

std::string header(const LoweredUnit& unit) {
    std::ostringstream out;
    out << notice << "#pragma once\n\n#include \"model/runtime/generated.h\"\n\nnamespace Model::" << unit.name()
        << " {\n\n";
    for (const auto& pool : unit.pools())
        out << "extern " << pool->type << " " << pool->name << "[" << pool->elements.size() << "];\n";
    for (const auto& storage : unit.storages())
        out << "extern " << storage.type << " " << storage.name << "[" << storage.size << "];\n";
    out << "extern const UnitLink link;\n\n}  // namespace Model::" << unit.name() << "\n";
    return out.str();
}

/// The units whose arrays a text names, beside its own.
void namedUnits(const std::string& text, const std::set<std::string>& units, std::set<std::string>& found) {
    for (std::size_t at = text.find("::"); at != std::string::npos; at = text.find("::", at + 2)) {
        std::size_t begin = at;
        while (begin > 0 && (std::isalnum(static_cast<unsigned char>(text[begin - 1])) != 0 || text[begin - 1] == '_'))
            --begin;
        if (const std::string name = text.substr(begin, at - begin); units.contains(name)) found.insert(name);
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

std::string source(const LoweredUnit& unit, const std::set<std::string>& units) {
    std::set<std::string> named;
    for (const auto& pool : unit.pools())
        for (const auto& element : pool->elements) namedUnits(element, units, named);
    named.insert(unit.name());
    std::ostringstream out;
    out << notice;
    for (const auto& name : named) out << "#include \"unit_" << name << ".h\"\n";
    out << "\nnamespace Model::" << unit.name() << " {\n\n";
    for (const auto& storage : unit.storages())
        out << "constinit " << storage.type << " " << storage.name << "[" << storage.size << "] = {};\n";
    for (const auto& pool : unit.pools()) {
        out << "constinit " << pool->type << " " << pool->name << "[" << pool->elements.size() << "] = {\n";
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
    return out.str();
}

std::string includes(const Lowered& lowered) {
    std::string result = notice;
    for (const auto& unit : lowered.units) result += "#include \"" + headerName(*unit) + "\"\n";
    return result;
}

std::string observers(const Lowered& lowered) {
    std::ostringstream out;
    out << includes(lowered) << "\nnamespace Model {\n\n";
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
    out << "\nstatic const ObserverTie ties[] = {\n"
        << ties.str() << (number == 0 ? "    {nullptr, {}},\n" : "") << "};\n";
    out << "const std::span<const ObserverTie> observerTies(ties, " << number << ");\n\n}  // namespace Model\n";
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

std::string modelSource(const Lowered& lowered) {
    std::ostringstream out;
    out << includes(lowered) << "#include \"model.h\"\n\nnamespace Model {\n\n";
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
    out << "const ModelLink modelLink = {unitLinks, observerTies, " << span("overlayPages", lowered.overlays) << ", "
        << span("behaviorContainers", lowered.containers) << ", " << (lowered.start.empty() ? "nullptr" : lowered.start)
        << "};\n\n}  // namespace Model\n";
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

std::vector<std::string> emit(const Lowered& lowered, const fs::path& folder) {
    fs::create_directories(folder);
    std::set<std::string> units;
    for (const auto& unit : lowered.units) units.insert(unit->name());
    std::map<std::string, std::string> files;
    for (const auto& unit : lowered.units) {
        files[headerName(*unit)] = header(*unit);
        files[sourceName(*unit)] = source(*unit, units);
    }
    files["observers.cpp"] = observers(lowered);
    files["model.h"] = modelHeader(lowered);
    files["model.cpp"] = modelSource(lowered);

    std::vector<std::string> sources;
    for (const auto& [name, text] : files) {
        writeIfChanged(folder / name, text);
        if (name.ends_with(".cpp")) sources.push_back(name);
    }
    for (const auto& entry : fs::directory_iterator(folder))
        if (const std::string name = entry.path().filename().string();
            name.starts_with("unit_") && !files.contains(name))
            fs::remove(entry.path());
    return sources;
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
