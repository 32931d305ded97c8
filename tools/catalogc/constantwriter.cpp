#include "tools/catalogc/constantwriter.h"

#include <algorithm>
#include <sstream>

#include "tools/catalogc/layout.h"
#include "tools/common/textfile.h"

namespace {

constexpr char head[] = "// Generated from model/catalogue.\n";
constexpr unsigned firstUserEvent = 128;

/// Messages that speak to the server itself come before the first change notice.
constexpr unsigned firstNotice = 6;

class ConstantWriter {
  public:
    ConstantWriter(const Catalogue& catalogue, const std::filesystem::path& folder)
        : catalogue_(catalogue), folder_(folder) {
        for (const Value& value : catalogue.values) values_.push_back(&value);
        for (const Table& table : catalogue.tables) tables_.push_back(&table);
        std::sort(values_.begin(), values_.end(), [](const Value* a, const Value* b) { return a->name < b->name; });
        std::sort(tables_.begin(), tables_.end(), [](const Table* a, const Table* b) { return a->name < b->name; });
    }

    void write() const {
        writeData();
        writeMessages();
        writeEvents();
        writeEnums();
        writePlaces();
    }

  private:
    void save(const char* name, const std::ostringstream& out) const {
        writeIfChanged(folder_ / name, head + out.str());
    }

    static std::string limitText(const Limit& limit) {
        static constexpr const char* forms[] = {"None", "Full", "Fixed", "Moving"};
        std::ostringstream out;
        out.precision(17);
        out << "{Limit::Form::" << forms[static_cast<int>(limit.form)] << ", " << limit.value << "}";
        return out.str();
    }

    static std::string kindText(ValueKind kind) { return std::string("Kind('") + static_cast<char>(kind) + "')"; }

    void writeValues(std::ostringstream& out) const {
        out << "constexpr Value valueData[] = {\n";
        for (const Value* value : values_)
            out << "    {\"" << value->name << "\", " << kindText(value->kind) << ", " << value->area << ", "
                << value->enumType << ", " << value->id << ", " << value->offset << ", " << value->size << ", "
                << limitText(value->minimum) << ", " << limitText(value->maximum) << "},\n";
        out << "};\n\n";
    }

    unsigned idOf(const Table& table) const {
        if (table.id) return *table.id;
        return std::find_if(catalogue_.values.begin(), catalogue_.values.end(),
                            [&](const Value& value) { return value.group() == table.group(); })
            ->id;
    }

    std::ptrdiff_t counterOf(const Table& table) const {
        const Link* link = catalogue_.findLink(Link::Role::Counter, table.name);
        if (link == nullptr) return -1;
        return std::find_if(values_.begin(), values_.end(),
                            [&](const Value* value) { return value->name == link->from; }) -
               values_.begin();
    }

    void writeTables(std::ostringstream& out) const {
        std::ostringstream tables;
        for (const Table* table : tables_) {
            out << "constexpr Field " << identifier(table->name) << "Fields[] = {\n";
            for (const Field& field : table->fields)
                out << "    {\"" << field.name << "\", " << kindText(field.kind) << ", " << field.enumType << ", "
                    << field.offset << ", " << field.size << "},\n";
            out << "};\n";
            tables << "    {\"" << table->name << "\", " << idOf(*table) << ", " << table->area << ", " << table->base
                   << ", " << table->stride << ", " << table->rows << ", " << identifier(table->name) << "Fields, "
                   << counterOf(*table) << "},\n";
        }
        out << "constexpr Table tableData[] = {\n" << tables.str() << "};\n\n";
    }

    void writeEnumData(std::ostringstream& out) const {
        std::ostringstream types;
        for (const EnumType& type : catalogue_.enums) {
            out << "constexpr EnumEntry " << type.name << "Entries[] = {\n";
            for (const EnumEntry& entry : type.entries)
                out << "    {" << entry.value << ", \"" << entry.name << "\"},\n";
            out << "};\n";
            types << "    {\"" << type.name << "\", " << type.name << "Entries},\n";
        }
        out << "constexpr EnumType enumData[] = {\n" << types.str() << "};\n\n";
    }

    void writeData() const {
        std::ostringstream out;
        out << "#include \"model/catalogue/constants.h\"\n\nnamespace Catalogue {\nnamespace {\n\nconstexpr Area "
               "areaData[] = {\n";
        for (const Area& area : catalogue_.areas) out << "    {\"" << area.name << "\", " << area.size << "},\n";
        out << "};\n\n";
        writeValues(out);
        writeTables(out);
        writeEnumData(out);
        out << "constexpr Message messageData[] = {\n";
        for (const Message& message : catalogue_.messages)
            out << "    {\"" << message.name << "\", " << (message.subscribed ? "true" : "false") << "},\n";
        out << "};\n\nconstexpr std::uint16_t subscriptionData[] = {";
        int column = 0;
        for (const unsigned id : catalogue_.subscriptions()) out << (column++ % 16 == 0 ? "\n    " : " ") << id << ",";
        out << "\n};\n\nconstexpr const char* eventNames[] = {\n";
        for (const Event& event : catalogue_.events)
            if (event.id >= firstUserEvent) out << "    \"" << event.name << "\",\n";
        out << "};\n\n}  // namespace\n\n"
               "const std::span<const Area> areas = areaData;\nconst std::span<const Value> values = valueData;\nconst "
               "std::span<const Table> tables = tableData;\n"
               "const std::span<const Message> messages = messageData;\nconst std::span<const EnumType> enumTypes = "
               "enumData;\n"
               "const std::span<const std::uint16_t> subscriptions = subscriptionData;\nconst std::span<const char* "
               "const> userEventNames = eventNames;\n\n}  // namespace Catalogue\n";
        save("data.cpp", out);
    }

    void writeMessages() const {
        std::ostringstream out;
        out << "#pragma once\n\n#include <cstdint>\n\nnamespace Messages {\n\n/// Ids of the change notices. Some "
               "variables have names that end like a notice, hence the namespace.\nenum "
               "Id : std::uint32_t {\n";
        for (const Message& message : catalogue_.messages)
            if (message.id >= firstNotice) out << "    " << message.name << " = " << message.id << ",\n";
        out << "};\n\n}  // namespace Messages\n";
        save("messages.h", out);
    }

    void writeEvents() const {
        std::ostringstream out;
        out << "#pragma once\n\nnamespace Model {\n\n/// The events of the product. The engine's own are in its "
               "header.\nenum UserEvent : unsigned int {\n";
        for (const Event& event : catalogue_.events)
            if (event.id >= firstUserEvent) out << "    " << event.name << " = " << event.id << ",\n";
        out << "};\n\n}  // namespace Model\n";
        save("events.h", out);
    }

    void writeEnums() const {
        std::ostringstream out;
        out << "#pragma once\n\n/// The values of the enum variables.\nnamespace Model {\n";
        for (const EnumType& type : catalogue_.enums) {
            out << "\nenum class " << type.name << " : int {\n";
            for (const EnumEntry& entry : type.entries) out << "    " << entry.name << " = " << entry.value << ",\n";
            out << "};\n";
        }
        out << "\n}  // namespace Model\n";
        save("enums.h", out);
    }

    void writePlaces() const {
        std::ostringstream out;
        out << "#pragma once\n\n#include <cstdint>\n\n/// Where each value lies.\nnamespace Places {\n\n/// The memory "
               "areas, in the order of opening.\nenum class Area : std::uint8_t {\n";
        for (const Area& area : catalogue_.areas) out << "    " << area.name << ",\n";
        out << "};\n\nstruct Place {\n    Area area;\n    std::uint32_t offset;  ///< bytes, behind the size word\n    "
               "std::uint32_t size;    ///< bytes\n    std::uint16_t id;      ///< of the message that announces "
               "it\n};\n\n";
        for (const Value* value : values_)
            if (value->area >= 0)
                out << "inline constexpr Place " << identifier(value->name)
                    << " = {Area::" << catalogue_.areas[static_cast<std::size_t>(value->area)].name << ", "
                    << value->offset << ", " << value->size << ", " << value->id << "};\n";
        for (const Table* table : tables_)
            out << "inline constexpr Place " << identifier(table->name)
                << " = {Area::" << catalogue_.areas[static_cast<std::size_t>(table->area)].name << ", " << table->base
                << ", " << table->rows * table->stride << ", " << idOf(*table) << "};\n";
        out << "\n}  // namespace Places\n";
        save("places.h", out);
    }

    const Catalogue& catalogue_;
    std::filesystem::path folder_;
    std::vector<const Value*> values_;
    std::vector<const Table*> tables_;
};

}  // namespace

void writeConstants(const Catalogue& catalogue, const std::filesystem::path& folder) {
    ConstantWriter(catalogue, folder).write();
}
