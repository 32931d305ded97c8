#include "tools/catalogc/catalogue.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <limits>

#include "tools/catalogc/checks.h"
#include "tools/catalogc/enumfile.h"
#include "tools/common/inputerror.h"
#include "tools/common/tablefile.h"

namespace {

/// Subscribed last, and in this order; all others come before by rising id.
constexpr unsigned subscribedLast[] = {395, 396, 465, 31, 776};

/// A row of a table file with its cells by column name; what is wrong in it goes into the problems.
class RowReader {
  public:
    RowReader(const TableFile& table, const TableFile::Row& row, Problems& problems)
        : table_(table), row_(row), problems_(problems) {}

    const std::string& text(const char* column) const { return row_.cells[table_.column(column)]; }
    Place place() const { return {table_.path(), row_.line}; }
    void wrong(const std::string& message) const { problems_.add(place(), message); }

    unsigned number(const char* column) const {
        const std::string& cell = text(column);
        char* end = nullptr;
        const unsigned long value = std::strtoul(cell.c_str(), &end, 10);
        const bool digits =
            !cell.empty() && std::all_of(cell.begin(), cell.end(), [](char c) { return c >= '0' && c <= '9'; });
        if (digits && *end == '\0' && value <= 0x7fffffff) return static_cast<unsigned>(value);
        wrong("'" + cell + "' in the column '" + column + "' is no whole number; write digits only");
        return 0;
    }

    ValueKind kind(const char* allowed) const {
        const std::string& cell = text("kind");
        if (cell.size() == 1 && std::string(allowed).find(cell[0]) != std::string::npos)
            return static_cast<ValueKind>(cell[0]);
        wrong("'" + cell + "' is no kind; use one of " + allowed);
        return ValueKind::None;
    }

    Limit limit(const char* column) const {
        const std::string& cell = text(column);
        if (cell.empty()) return {};
        if (cell == "full") return {Limit::Form::Full, 0};
        if (cell == "dyn") return {Limit::Form::Moving, 0};
        char* end = nullptr;
        const double value = std::strtod(cell.c_str(), &end);
        if (*end != '\0' || !std::isfinite(value))
            wrong("'" + cell + "' is no limit; write a number, full, dyn, or nothing");
        return {Limit::Form::Fixed, value};
    }

  private:
    const TableFile& table_;
    const TableFile::Row& row_;
    Problems& problems_;
};

template <typename Function>
void eachRow(const std::filesystem::path& path, Problems& problems, Function function) {
    const TableFile table = TableFile::read(path);
    for (const TableFile::Row& row : table.rows()) function(RowReader(table, row, problems));
}

int areaOf(const Catalogue& catalogue, const RowReader& row) {
    const int area = catalogue.findArea(row.text("area"));
    if (area < 0) row.wrong("there is no memory area '" + row.text("area") + "'; areas.tsv lists them");
    return area;
}

void readValue(Catalogue& catalogue, const RowReader& row) {
    Value value{row.text("name"), row.kind("bifesm-"), -1, 0,          0, row.number("id"),
                row.limit("min"), row.limit("max"),    -1, row.place()};
    if (value.kind != ValueKind::None) {
        value.area = areaOf(catalogue, row);
        value.offset = row.number("offset");
        value.size = row.number("size");
    }
    catalogue.values.push_back(value);
}

void readField(Catalogue& catalogue, const RowReader& row) {
    const std::string& name = row.text("table");
    if (catalogue.tables.empty() || catalogue.tables.back().name != name) {
        if (catalogue.findTable(name) != nullptr)
            row.wrong("the fields of '" + name + "' must stand together; move this line to the others");
        Table table{
            name, std::nullopt, areaOf(catalogue, row), row.number("base"), row.number("stride"), row.number("rows"),
            {},   row.place()};
        if (!row.text("id").empty()) table.id = row.number("id");
        catalogue.tables.push_back(table);
    }
    Table& table = catalogue.tables.back();
    if (row.number("column") != table.fields.size())
        row.wrong("columns of a table count from 0; this one is " + std::to_string(table.fields.size()));
    if (row.number("base") != table.base || row.number("stride") != table.stride || row.number("rows") != table.rows)
        row.wrong("base, stride and rows must be those of the table's first line");
    table.fields.push_back(
        {row.text("field"), row.kind("bifes"), row.number("offset"), row.number("size"), -1, row.place()});
}

void readMessage(Catalogue& catalogue, const RowReader& row) {
    const std::string& subscribed = row.text("subscribed");
    if (subscribed != "yes" && subscribed != "no") row.wrong("'" + subscribed + "' is neither yes nor no");
    const Message message{row.number("id"), row.text("name"), subscribed == "yes", row.place()};
    if (message.id != catalogue.messages.size())
        row.wrong("ids rise by one a line; this one is " + std::to_string(catalogue.messages.size()));
    catalogue.messages.push_back(message);
}

void readLink(Catalogue& catalogue, const RowReader& row) {
    static const std::map<std::string, Link::Role> roles = {
        {"counter", Link::Role::Counter}, {"availability", Link::Role::Availability}, {"maximum", Link::Role::Maximum}};
    const auto role = roles.find(row.text("role"));
    if (role == roles.end())
        return row.wrong("'" + row.text("role") + "' is no role; use counter, availability or maximum");
    catalogue.links.push_back({role->second, row.text("of"), row.text("from"), row.text("property"), row.place()});
}

template <typename Items>
auto* findByName(Items& items, const std::string& name) {
    const auto found = std::find_if(items.begin(), items.end(), [&](const auto& item) { return item.name == name; });
    return found == items.end() ? nullptr : &*found;
}

/// Ties each user of an enum type to it.
void assignEnums(Catalogue& catalogue, Problems& problems) {
    std::map<std::string, int*> targets;
    for (Value& value : catalogue.values)
        if (value.kind == ValueKind::Enum) targets[value.name] = &value.enumType;
    for (Table& table : catalogue.tables)
        for (Field& field : table.fields)
            if (field.kind == ValueKind::Enum) targets[table.name + "." + field.name] = &field.enumType;
    for (std::size_t type = 0; type < catalogue.enums.size(); ++type) {
        for (const std::string& user : catalogue.enums[type].users) {
            const auto target = targets.find(user);
            if (target == targets.end())
                problems.add(catalogue.enums[type].place,
                             "'" + user + "' is no enum variable of the catalogue; correct the name or its kind");
            else if (*target->second >= 0)
                problems.add(catalogue.enums[type].place,
                             "'" + user + "' has the type " +
                                 catalogue.enums[static_cast<std::size_t>(*target->second)].name +
                                 " already; name it once");
            else
                *target->second = static_cast<int>(type);
        }
    }
}

}  // namespace

Catalogue Catalogue::read(const std::filesystem::path& folder, const TextTable* texts, Problems& problems) {
    Catalogue catalogue;
    try {
        eachRow(folder / "areas.tsv", problems, [&](const RowReader& row) {
            catalogue.areas.push_back({row.text("area"), row.number("size"), row.place()});
        });
        eachRow(folder / "catalogue.tsv", problems, [&](const RowReader& row) { readValue(catalogue, row); });
        eachRow(folder / "tables.tsv", problems, [&](const RowReader& row) { readField(catalogue, row); });
        eachRow(folder / "messages.tsv", problems, [&](const RowReader& row) { readMessage(catalogue, row); });
        eachRow(folder / "events.tsv", problems, [&](const RowReader& row) {
            catalogue.events.push_back({row.number("id"), row.text("name"), row.place()});
        });
        eachRow(folder / "links.tsv", problems, [&](const RowReader& row) { readLink(catalogue, row); });
        catalogue.enums = readEnumFile(folder / "enums.txt", texts, problems);
    } catch (const InputError& error) {
        problems.add({error.what(), 0}, "read this file first");
        return catalogue;
    }
    assignEnums(catalogue, problems);
    checkCatalogue(catalogue, problems);
    return catalogue;
}

const Value* Catalogue::findValue(const std::string& name) const {
    return findByName(values, name);
}

const Table* Catalogue::findTable(const std::string& name) const {
    return findByName(tables, name);
}

const Link* Catalogue::findLink(Link::Role role, const std::string& of) const {
    const auto found =
        std::find_if(links.begin(), links.end(), [&](const Link& link) { return link.role == role && link.of == of; });
    return found == links.end() ? nullptr : &*found;
}

int Catalogue::findArea(const std::string& name) const {
    const Area* found = findByName(areas, name);
    return found == nullptr ? -1 : static_cast<int>(found - areas.data());
}

std::vector<unsigned> Catalogue::subscriptions() const {
    std::vector<unsigned> ids;
    const auto last = [](unsigned id) {
        return std::find(std::begin(subscribedLast), std::end(subscribedLast), id) != std::end(subscribedLast);
    };
    for (const Message& message : messages)
        if (message.subscribed && !last(message.id)) ids.push_back(message.id);
    for (const unsigned id : subscribedLast)
        if (id < messages.size() && messages[id].subscribed) ids.push_back(id);
    return ids;
}
