#pragma once

#include <memory>
#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

#include "tools/modelc/edits.h"
#include "tools/modelc/expand.h"
#include "tools/modelc/lower.h"
#include "tools/modelc/parser.h"

namespace Modelc {

/// A small world of names, so that tests do not hang on the product's catalogue.
inline Names testNames() {
    Names names;
    EnumInfo state{"CamState", {{0, "Standby", 59}, {1, "Recording", 58}, {6, "Waiting", 3}}};
    names.enums["CamState"] = state;
    const auto add = [&](const char* name, VariableKind kind) {
        VariableInfo info;
        info.name = name;
        info.kind = kind;
        info.size = 30;
        info.address = std::string("&") + name;
        if (kind == VariableKind::Enum) info.enumType = &names.enums["CamState"];
        names.variables[name] = info;
    };
    add("VarNight", VariableKind::Flag);
    add("VarFlag", VariableKind::Flag);
    add("VarOther", VariableKind::Flag);
    add("VarCamState", VariableKind::Enum);
    add("VarNumber", VariableKind::Int);
    add("VarEdit", VariableKind::Int);
    add("VarFloat", VariableKind::Float);
    add("VarName", VariableKind::String);
    add("VarLanguage", VariableKind::Enum);
    add("VarFocusOffset", VariableKind::Flag);
    add("VarIrisOffset", VariableKind::Flag);
    names.tables["VarTable"] = {"VarTable", 3, {{"Name", VariableKind::String, 15}, {"Value", VariableKind::Float, 4}}};
    for (int row = 0; row < 3; ++row)
        for (const auto& column : names.tables["VarTable"].columns) {
            VariableInfo cell;
            cell.name = "VarTable[" + std::to_string(row) + "]." + column.field;
            cell.kind = column.kind;
            cell.size = column.size;
            cell.address = "&" + column.field + std::to_string(row);
            names.addCell(cell);
        }
    add("VarRuler.Rows", VariableKind::Table);
    names.events = {{"Event_PageEntered", 0},     {"Event_TouchStart", 5},    {"Event_TouchTouched", 7},
                    {"Event_KeyPressed", 138},    {"Event_Other", 139},       {"Event_EditEnumShow", 194},
                    {"Event_EditConfirmed", 192}, {"Event_EditCanceled", 191}};
    names.texts["rec"] = {58, "rec", {"REC", "REC"}};
    names.texts["slot"] = {2, "slot", {"UB %0 [%1]", "UB %0 [%1]"}};
    names.icons["lock"] = {"lock", "&icon0", 9, 13};
    names.fonts["rows"] = "&font3";
    return names;
}

/// One source through all passes up to the lowered form.
class Compilation {
  public:
    explicit Compilation(const std::string& text, Names given = testNames())
        : names(std::move(given)), file(std::make_unique<SourceFile>("test.tern", text)) {
        std::vector<SourceTree> trees;
        trees.push_back(parse(*file, diagnostics));
        model = expand(trees, diagnostics);
        expandEdits(model, diagnostics);
        lowered = lower(model, names, diagnostics, explanation);
    }

    std::string messages() const {
        std::ostringstream out;
        diagnostics.print(out);
        return out.str();
    }

    /// The initialisers of one array of a unit.
    std::vector<std::string> elements(const std::string& unit, const std::string& array) const {
        for (const auto& one : lowered.units)
            for (const auto& pool : one->pools())
                if (one->name() == unit && pool->name == array) return pool->elements;
        return {};
    }

    std::vector<std::string> observersOf(const std::string& variable) const {
        std::vector<std::string> result;
        if (const auto found = lowered.observers.find(variable); found != lowered.observers.end())
            for (const auto& observation : found->second) result.push_back(observation.what);
        return result;
    }

    Names names;
    std::unique_ptr<SourceFile> file;
    Diagnostics diagnostics;
    ModelTree model;
    Explanation explanation;
    Lowered lowered;
};

/// A source in which no pass finds an error.
class SoundModel : public Compilation {
  public:
    explicit SoundModel(const std::string& text) : Compilation(text) {
        if (diagnostics.hasErrors()) throw std::runtime_error(messages());
    }
};

}  // namespace Modelc
