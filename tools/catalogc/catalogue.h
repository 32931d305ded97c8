#pragma once

#include <filesystem>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "tools/catalogc/problems.h"

class TextTable;

/// A value's kind, by its letter in the files.
enum class ValueKind : char { Flag = 'b', Int = 'i', Enum = 'e', Float = 'f', Text = 's', Mask = 'm', None = '-' };

struct Area {
    std::string name;
    unsigned size = 0;  ///< usable bytes
    Place place;
};

/// A limit of a number.
struct Limit {
    enum class Form { None, Full, Fixed, Moving };
    Form form = Form::None;
    double value = 0;  ///< for Fixed
};

/// A value with a place of its own. The part of the name before a point is its group: one message sets the whole group.
struct Value {
    std::string name;
    ValueKind kind = ValueKind::None;
    int area = -1;  ///< -1 without a place
    unsigned offset = 0;
    unsigned size = 0;
    unsigned id = 0;
    Limit minimum;
    Limit maximum;
    int enumType = -1;
    Place place;

    std::string group() const { return name.substr(0, name.find('.')); }
};

struct Field {
    std::string name;
    ValueKind kind = ValueKind::None;
    unsigned offset = 0;  ///< bytes, within the record
    unsigned size = 0;
    int enumType = -1;
    Place place;
};

struct Table {
    std::string name;
    std::optional<unsigned> id;  ///< none: the message of its group sets it
    int area = -1;
    unsigned base = 0;
    unsigned stride = 0;
    unsigned rows = 0;
    std::vector<Field> fields;
    Place place;

    std::string group() const { return name.substr(0, name.find('.')); }
};

struct Message {
    unsigned id = 0;
    std::string name;
    bool subscribed = false;
    Place place;
};

struct Event {
    unsigned id = 0;
    std::string name;
    Place place;
};

struct EnumEntry {
    int value = 0;
    std::string name;
    std::string text;  ///< name of a text; empty when the value is never shown
    std::string english;
    unsigned textKey = 0;  ///< 0 also while the texts have no row of the name
    bool hidden = false;
    Place place;
};

struct EnumType {
    std::string name;
    std::vector<std::string> users;  ///< variables, and table fields as TABLE.Field
    std::vector<EnumEntry> entries;
    Place place;
};

/// What hangs on what: the live count of a table, bits that say what is available, a limit that moves.
struct Link {
    enum class Role { Counter, Availability, Maximum };
    Role role = Role::Counter;
    std::string of;
    std::string from;
    std::string property;  ///< of availability: exists, enabled or alternative
    Place place;
};

/// The contract with the server, as the files of one folder tell it.
struct Catalogue {
    std::vector<Area> areas;  ///< in the order of opening
    std::vector<Value> values;
    std::vector<Table> tables;
    std::vector<Message> messages;  ///< by rising id, without a gap
    std::vector<Event> events;      ///< by rising id
    std::vector<EnumType> enums;
    std::vector<Link> links;

    /// Reads and checks. With anything in `problems` the result is incomplete. `texts` may be null: text keys stay 0.
    static Catalogue read(const std::filesystem::path& folder, const TextTable* texts, Problems& problems);

    const Value* findValue(const std::string& name) const;
    const Table* findTable(const std::string& name) const;
    const Link* findLink(Link::Role role, const std::string& of) const;
    int findArea(const std::string& name) const;
    /// The ids that the program subscribes, in order.
    std::vector<unsigned> subscriptions() const;
};
