#include "tools/catalogc/checks.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <set>

#include "tools/texttable/texttable.h"

namespace {

constexpr unsigned firstUserEvent = 128;
constexpr char logThreshold[] = "VarAppGuiLogLevel";
constexpr unsigned mostEntries = 64;  // bits of the hidden mask

bool isWord(ValueKind kind) {
    return kind == ValueKind::Int || kind == ValueKind::Enum || kind == ValueKind::Float;
}

bool isIdentifier(const std::string& name) {
    const auto part = [](char c) { return std::isalnum(static_cast<unsigned char>(c)) != 0 || c == '_' || c == '.'; };
    return !name.empty() && std::isdigit(static_cast<unsigned char>(name[0])) == 0 &&
           std::all_of(name.begin(), name.end(), part);
}

class Checks {
  public:
    Checks(const Catalogue& catalogue, Problems& problems) : catalogue_(catalogue), problems_(problems) {}

    void run() {
        checkNames();
        for (const Value& value : catalogue_.values) checkValue(value);
        for (const Table& table : catalogue_.tables) checkTable(table);
        checkOverlaps();
        checkEvents();
        for (const EnumType& type : catalogue_.enums) checkEnum(type);
        for (const Link& link : catalogue_.links) checkLink(link);
        const Value* threshold = catalogue_.findValue(logThreshold);
        if (threshold == nullptr || threshold->kind != ValueKind::Int)
            problems_.add({}, std::string("the catalogue needs the int '") + logThreshold + "'; the log follows it");
    }

  private:
    void wrong(const Place& place, const std::string& message) { problems_.add(place, message); }

    /// In code a point is an underscore, so that names must differ in that spelling too.
    void checkName(const std::string& name, const Place& place) {
        std::string spelling = name;
        std::replace(spelling.begin(), spelling.end(), '.', '_');
        if (!isIdentifier(name)) wrong(place, "'" + name + "' is no name; use letters, digits, _ and one point");
        const auto [other, added] = names_.emplace(spelling, place.line);
        if (!added)
            wrong(place, "the name '" + name + "' is used in line " + std::to_string(other->second) +
                             " already; names are unique");
    }

    void checkNames() {
        for (const Value& value : catalogue_.values) checkName(value.name, value.place);
        for (const Table& table : catalogue_.tables) checkName(table.name, table.place);
        std::set<std::string> messages;
        for (const Message& message : catalogue_.messages)
            if (!messages.insert(message.name).second)
                wrong(message.place, "the message '" + message.name + "' stands twice");
    }

    void checkMessage(unsigned id, const std::string& group, const Place& place) {
        if (id >= catalogue_.messages.size())
            wrong(place, "there is no message " + std::to_string(id) + "; messages.tsv lists them");
        else if (const std::string& name = catalogue_.messages[id].name; name != group + "Changed")
            wrong(place, "message " + std::to_string(id) + " is '" + name + "', but this needs '" + group +
                             "Changed'; correct the id");
        const auto [other, added] = groups_.emplace(id, group);
        if (!added && other->second != group)
            wrong(place,
                  "message " + std::to_string(id) + " belongs to '" + other->second + "'; only a group shares an id");
    }

    void checkSize(ValueKind kind, unsigned size, const Place& place) {
        if (kind == ValueKind::Flag && size != 1) wrong(place, "a flag has 1 byte");
        if (isWord(kind) && size != 4) wrong(place, "a word has 4 bytes");
        if (size == 0) wrong(place, "the size is 0");
        if (size > 0xffff) wrong(place, "the size is above 65535 bytes");
    }

    void checkValue(const Value& value) {
        if (value.kind == ValueKind::None) return;
        checkMessage(value.id, value.group(), value.place);
        checkSize(value.kind, value.size, value.place);
        if (isWord(value.kind) && value.offset % 4 != 0)
            wrong(value.place, "a word stands at a multiple of 4; " + std::to_string(value.offset) + " is none");
        checkEnd(value.area, value.offset + value.size, value.place);
        checkLimits(value);
        if (value.kind == ValueKind::Enum && value.enumType < 0)
            wrong(value.place, "the enum '" + value.name + "' has no type; name it in enums.txt");
        if (value.kind == ValueKind::Mask && std::none_of(catalogue_.links.begin(), catalogue_.links.end(),
                                                          [&](const Link& link) { return link.from == value.name; }))
            wrong(value.place,
                  "nothing hangs on the bits of '" + value.name + "'; add an availability row to links.tsv");
    }

    void checkEnd(int area, unsigned end, const Place& place) {
        if (area >= 0 && end > catalogue_.areas[static_cast<std::size_t>(area)].size)
            wrong(place, "this ends at byte " + std::to_string(end) + ", past the end of " +
                             catalogue_.areas[static_cast<std::size_t>(area)].name + " (" +
                             std::to_string(catalogue_.areas[static_cast<std::size_t>(area)].size) + " bytes)");
    }

    void checkLimits(const Value& value) {
        for (const Limit& limit : {value.minimum, value.maximum}) {
            if (limit.form == Limit::Form::None) continue;
            if (value.kind != ValueKind::Int && value.kind != ValueKind::Float)
                wrong(value.place, "only numbers (i, f) have limits");
            const bool whole = limit.value == std::floor(limit.value) && std::abs(limit.value) <= 2147483647.0;
            if (value.kind == ValueKind::Int && limit.form == Limit::Form::Fixed && !whole)
                wrong(value.place, "the limits of an int are whole 32-bit numbers");
        }
        if (value.minimum.form == Limit::Form::Fixed && value.maximum.form == Limit::Form::Fixed &&
            value.minimum.value > value.maximum.value)
            wrong(value.place, "the minimum is above the maximum");
        if (value.minimum.form == Limit::Form::Moving) wrong(value.place, "a moving minimum is not supported");
        if (value.maximum.form == Limit::Form::Moving &&
            catalogue_.findLink(Link::Role::Maximum, value.name) == nullptr)
            wrong(value.place, "the maximum moves (dyn), but links.tsv does not say with what");
    }

    void checkTable(const Table& table) {
        if (table.id)
            checkMessage(*table.id, table.name, table.place);
        else if (table.group() == table.name)
            wrong(table.place, "a table without an id belongs to a group, and its name has a point");
        if (table.rows == 0 || table.rows > 0xffff || table.stride > 0xffff)
            wrong(table.place, "rows and stride lie between 1 and 65535");
        unsigned end = 0;
        std::set<std::string> names;
        for (const Field& field : table.fields) {
            checkField(table, field);
            if (!names.insert(field.name).second) wrong(field.place, "the field '" + field.name + "' stands twice");
            end = std::max(end, field.offset + field.size);
        }
        if (end > table.stride)
            wrong(table.place, "the fields need " + std::to_string(end) + " bytes, but a record has " +
                                   std::to_string(table.stride));
        checkEnd(table.area, table.base + (table.rows - 1) * table.stride + end, table.place);
    }

    void checkField(const Table& table, const Field& field) {
        checkSize(field.kind, field.size, field.place);
        if (isWord(field.kind) && ((table.base + field.offset) % 4 != 0 || table.stride % 4 != 0))
            wrong(field.place, "a word stands at a multiple of 4 in every record");
        if (field.kind == ValueKind::Enum && field.enumType < 0)
            wrong(field.place, "the enum '" + table.name + "." + field.name + "' has no type; name it in enums.txt");
        for (const Field& other : table.fields)
            if (&other < &field && field.offset < other.offset + other.size && other.offset < field.offset + field.size)
                wrong(field.place, "this overlaps the field '" + other.name + "'");
    }

    void checkOverlaps() {
        struct Extent {
            int area;
            unsigned begin, end;
            const std::string* name;
            const Place* place;
        };
        std::vector<Extent> extents;
        for (const Value& value : catalogue_.values)
            if (value.area >= 0)
                extents.push_back({value.area, value.offset, value.offset + value.size, &value.name, &value.place});
        for (const Table& table : catalogue_.tables)
            if (table.area >= 0)
                extents.push_back(
                    {table.area, table.base, table.base + table.rows * table.stride, &table.name, &table.place});
        std::sort(extents.begin(), extents.end(), [](const Extent& a, const Extent& b) {
            return std::pair(a.area, a.begin) < std::pair(b.area, b.begin);
        });
        for (std::size_t i = 1; i < extents.size(); ++i) {
            const Extent& before = extents[i - 1];
            const Extent& after = extents[i];
            if (before.area == after.area && after.begin < before.end)
                wrong(*after.place, "'" + *after.name + "' at byte " + std::to_string(after.begin) + " overlaps '" +
                                        *before.name + "', which ends at " + std::to_string(before.end));
        }
    }

    void checkEvents() {
        unsigned next = 0;
        std::set<std::string> names;
        for (const Event& event : catalogue_.events) {
            if (event.id == firstUserEvent) next = firstUserEvent;
            if (event.id != next++) wrong(event.place, "ids rise by one a line, from 0 and again from 128");
            if (!names.insert(event.name).second) wrong(event.place, "the event '" + event.name + "' stands twice");
        }
    }

    void checkEnum(const EnumType& type) {
        std::set<int> values;
        std::set<std::string> names;
        for (const EnumEntry& entry : type.entries) {
            if (!values.insert(entry.value).second)
                wrong(entry.place, "the value " + std::to_string(entry.value) + " stands twice in " + type.name);
            if (!names.insert(entry.name).second)
                wrong(entry.place, "the name '" + entry.name + "' stands twice in " + type.name);
            if (entry.hidden && static_cast<std::size_t>(&entry - type.entries.data()) >= mostEntries)
                wrong(entry.place, "only the first 64 values of a type can be hidden");
        }
        if (type.entries.empty()) wrong(type.place, "the type " + type.name + " has no values");
        if (type.users.empty()) wrong(type.place, "no variable has the type " + type.name);
        if (!enumNames_.insert(type.name).second) wrong(type.place, "the type " + type.name + " stands twice");
    }

    void checkLink(const Link& link) {
        const Value* from = catalogue_.findValue(link.from);
        const Value* of = catalogue_.findValue(link.of);
        const Table* table = catalogue_.findTable(link.of);
        if (from == nullptr) return wrong(link.place, "there is no variable '" + link.from + "'");
        if (of == nullptr && table == nullptr)
            return wrong(link.place, "there is no variable or table '" + link.of + "'");
        switch (link.role) {
            case Link::Role::Counter:
                if (table == nullptr || from->kind != ValueKind::Int)
                    wrong(link.place, "a counter is an int (i), of a table");
                break;
            case Link::Role::Maximum:
                if (of == nullptr || of->kind != ValueKind::Int || from->kind != ValueKind::Int)
                    wrong(link.place, "a moving maximum is an int (i), of an int");
                break;
            case Link::Role::Availability: checkAvailability(link, *from, of, table); break;
        }
    }

    void checkAvailability(const Link& link, const Value& from, const Value* of, const Table* table) {
        if (from.kind != ValueKind::Mask) wrong(link.place, "'" + from.name + "' is no bit mask (m)");
        if (of != nullptr && (of->kind != ValueKind::Enum || of->enumType < 0))
            return wrong(link.place, "availability is of an enum or a table");
        if (link.property != "exists" && link.property != "enabled" && link.property != "alternative")
            wrong(link.place, "the property is exists, enabled or alternative");
        const std::size_t entries =
            of != nullptr ? catalogue_.enums[static_cast<std::size_t>(of->enumType)].entries.size() : table->rows;
        if (from.size * 8 < entries)
            wrong(link.place, "'" + from.name + "' has " + std::to_string(from.size * 8) + " bits, but '" + link.of +
                                  "' has " + std::to_string(entries) + " entries");
    }

    const Catalogue& catalogue_;
    Problems& problems_;
    std::map<std::string, int> names_;
    std::map<unsigned, std::string> groups_;
    std::set<std::string> enumNames_;
};

}  // namespace

void checkCatalogue(const Catalogue& catalogue, Problems& problems) {
    Checks(catalogue, problems).run();
}

void checkTexts(const Catalogue& catalogue, const TextTable& texts, Problems& problems) {
    for (const EnumType& type : catalogue.enums) {
        for (const EnumEntry& entry : type.entries) {
            if (entry.text.empty()) continue;
            const Text* text = texts.find(entry.text);
            if (text == nullptr)
                problems.add(entry.place, "there is no text '" + entry.text +
                                              "'; add a row of this name to the texts, or write - for no text");
            else if (!entry.english.empty() && entry.english != text->english())
                problems.add(entry.place, "the text '" + entry.text + "' is \"" + text->english() + "\", not \"" +
                                              entry.english + "\"; make them equal");
        }
    }
}
