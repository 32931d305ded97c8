// The header by which programs in C share the areas.
#include <sstream>

#include "tools/catalogc/constantwriter.h"
#include "tools/catalogc/layout.h"
#include "tools/common/textfile.h"

namespace {

/// NAME_OFFSET and its like for a value.
void writePlaceMacros(std::ostringstream& out, const std::string& name, const std::string& area, unsigned offset,
                      unsigned size) {
    out << "#define " << name << "_AREA \"" << area << "\"\n#define " << name << "_OFFSET " << offset << "u\n#define "
        << name << "_SIZE " << size << "u\n";
}

const std::string& areaName(const Catalogue& catalogue, int area) {
    return catalogue.areas[static_cast<std::size_t>(area)].name;
}

void writeAreas(std::ostringstream& out, const Catalogue& catalogue) {
    out << "/* Areas, in the order of opening, with their usable bytes. */\n";
    for (const Area& area : catalogue.areas) out << "#define " << area.name << "_BYTES " << area.size << "u\n";
}

void writeMessages(std::ostringstream& out, const Catalogue& catalogue) {
    out << "/* Messages. */\n";
    for (const Message& message : catalogue.messages)
        out << "#define MSG_" << message.name << " " << message.id << "u\n";
}

void writeValues(std::ostringstream& out, const Catalogue& catalogue) {
    out << "/* Values. Kinds: b flag in one byte, i signed word, e enum word, f float, s text, m bit mask. */\n";
    for (const Value& value : catalogue.values) {
        if (value.area < 0) continue;
        out << "/* " << value.name << ": " << static_cast<char>(value.kind) << ", message " << value.id << " */\n";
        writePlaceMacros(out, identifier(value.name), areaName(catalogue, value.area), value.offset, value.size);
    }
}

void writeTable(std::ostringstream& out, const Catalogue& catalogue, const Table& table) {
    const std::string name = identifier(table.name);
    writePlaceMacros(out, name, areaName(catalogue, table.area), table.base, table.rows * table.stride);
    out << "#define " << name << "_STRIDE " << table.stride << "u\n#define " << name << "_ROWS " << table.rows << "u\n";
    for (const Field& field : table.fields)
        out << "#define " << name << "_" << field.name << "_OFFSET " << field.offset << "u /* "
            << static_cast<char>(field.kind) << " " << field.size << " */\n";
}

void writeTables(std::ostringstream& out, const Catalogue& catalogue) {
    out << "/* Tables: the first record, a record's bytes, the room in records; fields within a record. */\n";
    for (const Table& table : catalogue.tables) writeTable(out, catalogue, table);
}

void writeEnums(std::ostringstream& out, const Catalogue& catalogue) {
    out << "/* Values of the enums. */\n";
    for (const EnumType& type : catalogue.enums)
        for (const EnumEntry& entry : type.entries)
            out << "#define " << type.name << "_" << entry.name << " " << entry.value << "\n";
}

}  // namespace

void writeServerHeader(const Catalogue& catalogue, const std::filesystem::path& folder) {
    std::ostringstream out;
    out << "/* Generated from model/catalogue: the memory areas and messages that the hand unit's programs share.\n"
           "   Offsets count from the first byte behind an area's size word. A word is 32 bits, little-endian. */\n"
           "#ifndef TERN_AREAS_H\n#define TERN_AREAS_H\n";
    for (const auto writePart : {writeAreas, writeMessages, writeValues, writeTables, writeEnums}) {
        out << "\n";
        writePart(out, catalogue);
    }
    out << "\n#endif\n";
    writeIfChanged(folder / "tern-areas.h", out.str());
}
