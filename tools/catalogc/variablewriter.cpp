#include "tools/catalogc/variablewriter.h"

#include <algorithm>
#include <map>
#include <sstream>

#include "tools/common/textfile.h"

namespace {

constexpr char head[] = "// Generated from model/catalogue.\n";
constexpr ValueKind kinds[] = {ValueKind::Flag, ValueKind::Int, ValueKind::Enum, ValueKind::Float, ValueKind::Text};

std::string number(std::size_t value) {
    return std::to_string(value);
}

std::string areaPointer(int area) {
    return "&Backend::areaBases[" + number(static_cast<std::size_t>(area)) + "]";
}

/// A float literal that reads back as the same float.
std::string floatLiteral(double value) {
    std::ostringstream out;
    out.precision(9);
    out << value;
    std::string text = out.str();
    if (text.find_first_of(".e") == std::string::npos) text += ".0";
    return text + "f";
}

class VariableWriter {
  public:
    VariableWriter(const Layout& layout, const std::filesystem::path& folder) : layout_(layout), folder_(folder) {}

    void write() const {
        writeHeader();
        writeFlags();
        writeNumbers(ValueKind::Int, "int");
        writeNumbers(ValueKind::Float, "float");
        writeEnums();
        writeTexts();
        writeTables();
        writeSlots();
    }

  private:
    const Catalogue& catalogue() const { return layout_.catalogue(); }

    void save(const char* name, const std::ostringstream& out) const {
        writeIfChanged(folder_ / name, head + out.str());
    }

    static void beginSource(std::ostringstream& out) {
        out << "#include \"model/catalogue/variables.h\"\n\n#include \"backend/areas.h\"\n\nnamespace Model {\n";
    }

    void writeHeader() const {
        std::ostringstream out;
        out << "#pragma once\n\n#include \"backend/syncpass.h\"\n#include \"backend/var.h\"\n\n"
               "/// The variables of the product. Values have their names; a cell of a table is reached through its "
               "table.\n"
               "namespace Model {\n\n";
        for (const ValueKind kind : kinds)
            out << "extern " << typeName(kind) << " " << arrayName(kind) << "[" << layout_.array(kind).size() << "];\n";
        out << "extern Backend::ArrayVar tables[" << layout_.tables().size() << "];\n\n"
            << "extern const Backend::VariableSet variables;\n"
               "/// The sync pass over all variables and tables.\n"
               "void syncAll(bool initial);\n"
               "/// The pass of each frame.\n"
               "void syncFrame();\n\n";
        for (const Variable& variable : layout_.variables())
            if (variable.value != nullptr)
                out << "inline constexpr " << typeName(variable.kind) << "& " << identifier(variable.name()) << " = "
                    << objectOf(variable) << ";\n";
        for (std::size_t i = 0; i < layout_.tables().size(); ++i)
            out << "inline constexpr Backend::ArrayVar& " << identifier(layout_.tables()[i]->name) << " = tables[" << i
                << "];\n";
        out << "\n}  // namespace Model\n";
        save("variables.h", out);
    }

    static std::string beginVariable(const Variable& variable) {
        return std::string("    ") + typeName(variable.kind) + "(\"" + variable.name() + "\", " + number(variable.slot);
    }

    void writeFlags() const {
        std::ostringstream out;
        beginSource(out);
        out << "\nconstinit Backend::BoolVar flags[] = {\n";
        for (const Variable* variable : layout_.array(ValueKind::Flag)) out << beginVariable(*variable) << "),\n";
        out << "};\n\n}  // namespace Model\n";
        save("flags.cpp", out);
    }

    /// Collects the different limits of a kind and writes each once.
    class LimitPool {
      public:
        explicit LimitPool(ValueKind kind) : kind_(kind) {}

        std::string pointer(double value) {
            const auto [entry, added] = places_.emplace(value, values_.size());
            if (added) values_.push_back(value);
            return "&limits[" + number(entry->second) + "]";
        }
        std::string text(const char* type) const {
            std::ostringstream out;
            out << "\nstatic constinit Backend::Variable::StaticValue<" << type << "> limits[] = {\n";
            for (const double value : values_) {
                out << "    Backend::Variable::StaticValue<" << type << ">(";
                if (kind_ == ValueKind::Int)
                    out << static_cast<long long>(value);
                else
                    out << floatLiteral(value);
                out << "),\n";
            }
            out << "};\n";
            return out.str();
        }

      private:
        ValueKind kind_;
        std::map<double, std::size_t> places_;
        std::vector<double> values_;
    };

    /// "full" is the type's range for an int, and for a float a range wide enough for every quantity.
    std::string limitPointer(const Variable& variable, const Limit& limit, double full, LimitPool& pool) const {
        switch (limit.form) {
            case Limit::Form::None: return "nullptr";
            case Limit::Form::Full: return variable.kind == ValueKind::Int ? "nullptr" : pool.pointer(full);
            case Limit::Form::Fixed: return pool.pointer(limit.value);
            case Limit::Form::Moving:
                return "&" + objectOf(*layout_.find(catalogue().findLink(Link::Role::Maximum, variable.name())->from));
        }
        return "nullptr";
    }

    void writeNumbers(ValueKind kind, const char* type) const {
        constexpr double widest = 1e38;
        std::ostringstream objects;
        LimitPool pool(kind);
        objects << "\nconstinit " << typeName(kind) << " " << arrayName(kind) << "[] = {\n";
        for (const Variable* variable : layout_.array(kind)) {
            objects << beginVariable(*variable);
            if (variable->value != nullptr) {
                const std::string lowest = limitPointer(*variable, variable->value->minimum, -widest, pool);
                const std::string highest = limitPointer(*variable, variable->value->maximum, widest, pool);
                if (lowest != "nullptr" || highest != "nullptr") objects << ", " << lowest << ", " << highest;
            }
            objects << "),\n";
        }
        std::ostringstream out;
        beginSource(out);
        out << pool.text(type) << objects.str() << "};\n\n}  // namespace Model\n";
        save(kind == ValueKind::Int ? "ints.cpp" : "floats.cpp", out);
    }

    std::size_t maskBytes(const std::string& mask) const { return catalogue().findValue(mask)->size; }

    /// The bits, caches and flag of everything that has availability of one sort (enums or tables).
    std::string availabilityOf(const std::vector<std::string>& names,
                               std::map<std::string, std::string>& pointers) const {
        std::ostringstream caches, reads, flags;
        for (const std::string& name : names) {
            const Link* link = catalogue().findLink(Link::Role::Availability, name);
            if (link == nullptr) continue;
            const Value& mask = *catalogue().findValue(link->from);
            const std::string id = identifier(name);
            caches << "unsigned char " << id << "Bits[2][" << mask.size << "];\n";
            reads << "constinit Backend::Variable::MemoryMappedRead<unsigned char*, GuiType::Array> " << id << "Read("
                  << areaPointer(mask.area) << ", " << mask.offset << ");\n";
            std::string property = link->property;
            property[0] = static_cast<char>(property[0] - 'a' + 'A');
            flags << "constinit Backend::Variable::AvailableFlag " << id << "Available(&" << id << "Read, " << id
                  << "Bits[0], " << id << "Bits[1], " << mask.size << ", Backend::Variable::AvailableFlag::" << property
                  << ");\n";
            pointers[name] = "&" + id + "Available";
        }
        return caches.str() + reads.str() + flags.str();
    }

    std::string enumTypes() const {
        std::ostringstream values, types;
        types << "constinit Backend::Variable::EnumTable types[] = {\n";
        for (const EnumType& type : catalogue().enums) {
            std::uint64_t hidden = 0;
            values << "constexpr Backend::Variable::EnumValue " << type.name << "Values[] = {";
            for (std::size_t i = 0; i < type.entries.size(); ++i) {
                values << (i % 8 == 0 ? "\n    " : " ") << "{" << type.entries[i].value << ", {"
                       << type.entries[i].textKey << "}},";
                if (type.entries[i].hidden) hidden |= std::uint64_t{1} << i;
            }
            values << "\n};\n";
            types << "    Backend::Variable::EnumTable(" << type.name << "Values, " << type.entries.size() << ", "
                  << hidden << "u),\n";
        }
        return values.str() + types.str() + "};\n";
    }

    void writeEnums() const {
        std::vector<std::string> names;
        for (const Variable* variable : layout_.array(ValueKind::Enum))
            if (variable->value != nullptr) names.push_back(variable->name());
        std::map<std::string, std::string> availability;
        const std::string flags = availabilityOf(names, availability);
        std::ostringstream out;
        beginSource(out);
        out << "namespace {\n\n"
            << enumTypes() << "\n"
            << flags << "\n}  // namespace\n\nconstinit Backend::EnumVar enums[] = {\n";
        for (const Variable* variable : layout_.array(ValueKind::Enum)) {
            out << beginVariable(*variable) << ", &types[" << variable->enumType() << "]";
            const auto found = variable->value != nullptr ? availability.find(variable->name()) : availability.end();
            if (found != availability.end()) out << ", " << found->second;
            out << "),\n";
        }
        out << "};\n\n}  // namespace Model\n";
        save("enums.cpp", out);
    }

    /// All texts lie in one block; a text's storage ends where the next begins.
    void writeTexts() const {
        std::ostringstream objects;
        std::size_t bytes = 0;
        for (const Variable* variable : layout_.array(ValueKind::Text)) {
            objects << beginVariable(*variable) << ", text + " << bytes << ", " << variable->size() << "),\n";
            bytes += variable->size();
        }
        std::ostringstream out;
        beginSource(out);
        out << "\nstatic char text[" << bytes << "];\n\nconstinit Backend::StringVar strings[] = {\n"
            << objects.str() << "};\n\n}  // namespace Model\n";
        save("strings.cpp", out);
    }

    void writeColumns(std::ostringstream& out, const Table& table) const {
        static const std::map<ValueKind, const char*> cellKinds = {{ValueKind::Flag, "Flag"},
                                                                   {ValueKind::Int, "Int"},
                                                                   {ValueKind::Enum, "Enum"},
                                                                   {ValueKind::Float, "Float"},
                                                                   {ValueKind::Text, "String"}};
        out << "constexpr Backend::Variable::Column " << identifier(table.name) << "Columns[] = {\n";
        for (unsigned column = 0; column < table.fields.size(); ++column) {
            const Field& field = table.fields[column];
            const Variable& first = *layout_.findCell(table, column, 0);
            out << "    {Backend::Variable::CellKind::" << cellKinds.at(field.kind) << ", " << arrayName(field.kind)
                << " + " << first.index << ", " << Layout::cellStep(table, column) << ", " << field.offset << ", "
                << field.size << "},\n";
        }
        out << "};\n";
    }

    void writeTables() const {
        std::ostringstream out, objects;
        beginSource(out);
        std::vector<std::string> names;
        for (const Table* table : layout_.tables()) names.push_back(table->name);
        std::map<std::string, std::string> availability;
        out << "namespace {\n\n" << availabilityOf(names, availability);
        std::size_t slot = layout_.variables().size();
        for (const Table* table : layout_.tables()) {
            writeColumns(out, *table);
            std::string counter = "nullptr";
            if (const Link* link = catalogue().findLink(Link::Role::Counter, table->name)) {
                const Value& count = *catalogue().findValue(link->from);
                counter = "&" + identifier(table->name) + "Counter";
                out << "constinit Backend::Variable::MemoryMappedRead<unsigned int*, unsigned int> "
                    << counter.substr(1) << "(" << areaPointer(count.area) << ", " << count.offset << ");\n";
            }
            objects << "    Backend::ArrayVar(\"" << table->name << "\", " << table->fields.size() << ", "
                    << table->rows << ", {" << identifier(table->name) << "Columns, " << areaPointer(table->area)
                    << ", " << table->base << ", " << table->stride << "}, " << slot++ << ", " << counter << ", "
                    << (availability.contains(table->name) ? availability[table->name] : "nullptr") << "),\n";
        }
        out << "\n}  // namespace\n\nconstinit Backend::ArrayVar tables[] = {\n"
            << objects.str() << "};\n\n}  // namespace Model\n";
        save("tables.cpp", out);
    }

    void writeSlots() const {
        std::ostringstream out;
        beginSource(out);
        out << "namespace {\n\nconstexpr Backend::Variable::Subject* slots[] = {";
        for (const Variable& variable : layout_.variables())
            out << (variable.slot % 8 == 0 ? "\n    " : " ") << "&" << objectOf(variable) << ",";
        out << "\n};\n\nconstexpr Backend::Variable::Array* tableList[] = {";
        for (std::size_t i = 0; i < layout_.tables().size(); ++i)
            out << (i % 8 == 0 ? "\n    " : " ") << "&tables[" << i << "],";
        out << "\n};\n\n}  // namespace\n\n"
               "const Backend::VariableSet variables = {slots, "
            << layout_.variables().size() << ", tableList, " << layout_.tables().size() << "};\n\n"
            << "void syncAll(bool initial) { Backend::syncAll(variables, initial); }\n\nvoid syncFrame() { "
               "Backend::syncAll(variables, false); }\n\n}  // namespace Model\n";
        save("slots.cpp", out);
    }

    const Layout& layout_;
    std::filesystem::path folder_;
};

}  // namespace

void writeVariables(const Layout& layout, const std::filesystem::path& folder) {
    VariableWriter(layout, folder).write();
}
