#include "tools/modelc/loadnames.h"

#include <cctype>
#include <stdexcept>

#include "tools/catalogc/catalogue.h"
#include "tools/catalogc/layout.h"
#include "tools/common/tablefile.h"
#include "tools/texttable/texttable.h"

namespace Modelc {

namespace {

VariableKind kindOf(ValueKind kind) {
    switch (kind) {
        case ValueKind::Flag: return VariableKind::Flag;
        case ValueKind::Enum: return VariableKind::Enum;
        case ValueKind::Float: return VariableKind::Float;
        case ValueKind::Text: return VariableKind::String;
        default: return VariableKind::Int;
    }
}

std::string addressOf(const Variable& variable) {
    return "&Model::" + objectOf(variable);
}

/// "link-search-a" is Icons.linkSearchA.
std::string camelCase(const std::string& dashed) {
    std::string result;
    for (std::size_t i = 0; i < dashed.size(); ++i) {
        if (dashed[i] != '-')
            result += dashed[i];
        else if (++i < dashed.size())
            result += static_cast<char>(std::toupper(static_cast<unsigned char>(dashed[i])));
    }
    return result;
}

class Loader {
  public:
    explicit Loader(Names& names) : names_(names) {}

    void texts(const TextTable& table) {
        for (const auto& text : table.texts()) {
            TextInfo info{static_cast<std::uint32_t>(text.key), text.name, {}};
            for (std::size_t language = 0; language < table.languages().size(); ++language)
                info.languages.push_back(text.in(language));
            names_.texts[text.name] = std::move(info);
        }
    }

    void catalogue(const Catalogue& catalogue) {
        for (const auto& type : catalogue.enums) {
            EnumInfo info{type.name, {}};
            for (const auto& entry : type.entries) info.values.push_back({entry.value, entry.name, entry.textKey});
            names_.enums[type.name] = std::move(info);
        }
        for (const auto& event : catalogue.events) names_.events[event.name] = event.id;
        const Layout layout(catalogue);
        for (const auto& variable : layout.variables())
            if (variable.value != nullptr) add(catalogue, variable, variable.value->name);
        for (const auto& value : catalogue.values) bareGroup(catalogue, layout, value.group());
        for (const Table* table : layout.tables()) addTable(catalogue, layout, *table);
    }

    void icons(const TableFile& file) {
        const std::size_t index = file.column("index"), name = file.column("name");
        for (const auto& row : file.rows()) {
            const std::string camel = camelCase(row.cells[name]);
            names_.icons[camel] = {camel, "&Assets::records.images[" + std::to_string(file.number(row, index)) + "]", 0,
                                   0};
        }
    }

    /// Fonts are numbered: font0, the largest, and so on.
    void fonts(const TableFile& file) {
        const std::size_t index = file.column("index");
        for (const auto& row : file.rows()) {
            const std::string number = std::to_string(file.number(row, index));
            names_.fonts["font" + number] = "&Assets::fonts[" + number + "]";
        }
    }

  private:
    VariableInfo infoOf(const Catalogue& catalogue, const Variable& variable, const std::string& name) const {
        VariableInfo info;
        info.name = name;
        info.kind = kindOf(variable.kind);
        info.size = static_cast<int>(variable.size());
        info.address = addressOf(variable);
        info.slot = static_cast<int>(variable.slot);
        if (variable.enumType() >= 0)
            info.enumType = &names_.enums.at(catalogue.enums[static_cast<std::size_t>(variable.enumType())].name);
        return info;
    }

    void add(const Catalogue& catalogue, const Variable& variable, const std::string& name) {
        names_.variables[name] = infoOf(catalogue, variable, name);
    }

    /// A group's own name stands for one of its members.
    void bareGroup(const Catalogue& catalogue, const Layout& layout, const std::string& group) {
        if (names_.variables.contains(group)) return;
        if (const Variable* member = layout.find(group)) add(catalogue, *member, group);
    }

    void addTable(const Catalogue& catalogue, const Layout& layout, const Table& table) {
        TableInfo info{table.name, static_cast<int>(table.rows), {}};
        for (const auto& field : table.fields)
            info.columns.push_back({field.name, kindOf(field.kind), static_cast<int>(field.size)});
        for (unsigned row = 0; row < table.rows; ++row)
            for (unsigned column = 0; column < table.fields.size(); ++column)
                if (const Variable* cell = layout.findCell(table, column, row)) {
                    const std::string name = table.name + "[" + std::to_string(row) + "]." + table.fields[column].name;
                    names_.addCell(infoOf(catalogue, *cell, name));
                }
        VariableInfo whole;
        whole.name = table.name;
        whole.kind = VariableKind::Table;
        whole.address = "&Model::tables[" + std::to_string(layout.tableIndex(table.name).value_or(0)) + "]";
        names_.variables[table.name] = whole;
        names_.tables[table.name] = std::move(info);
    }

    Names& names_;
};

}  // namespace

Names loadNames(const std::filesystem::path& model) {
    Names names;
    Loader loader(names);
    const TextTable texts = TextTable::read(model / "texts");
    loader.texts(texts);
    Problems problems;
    const Catalogue catalogue = Catalogue::read(model / "catalogue", &texts, problems);
    if (!problems.none()) throw std::runtime_error(problems.text());
    loader.catalogue(catalogue);
    loader.icons(TableFile::read(model / "icons/icons.tsv"));
    loader.fonts(TableFile::read(model / "fonts/fonts.tsv"));
    return names;
}

}  // namespace Modelc
