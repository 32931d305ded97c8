#pragma once

#include <cstdint>
#include <span>
#include <string_view>

/// The catalogue as constant data, for programs that meet the unit in its memory areas without being the user
/// interface.
namespace Catalogue {

enum class Kind : char { Flag = 'b', Int = 'i', Enum = 'e', Float = 'f', Text = 's', Mask = 'm', None = '-' };

struct Area {
    const char* name;
    std::uint32_t size;  ///< usable bytes, the size word in front not counted
};

/// Form and number of a limit. `Full` is the whole range of the type; `Moving` is the value of another variable.
struct Limit {
    enum class Form : std::uint8_t { None, Full, Fixed, Moving };
    Form form;
    double value;  ///< for Fixed
};

constexpr std::int16_t noArea = -1;
constexpr std::int16_t noEnumType = -1;

struct Value {
    const char* name;  ///< a member of a group has a point in it
    Kind kind;
    std::int16_t area;  ///< index into `areas`; noArea for a value without a place
    std::int16_t enumType;
    std::uint16_t id;  ///< of the message that announces it
    std::uint32_t offset;
    std::uint32_t size;
    Limit minimum;
    Limit maximum;
};

struct Field {
    const char* name;
    Kind kind;
    std::int16_t enumType;
    std::uint16_t offset;  ///< bytes, within the record
    std::uint16_t size;
};

struct Table {
    const char* name;
    std::uint16_t id;
    std::int16_t area;
    std::uint32_t base;  ///< of the first record
    std::uint16_t stride;
    std::uint16_t rows;  ///< capacity
    std::span<const Field> fields;
    std::int16_t counter;  ///< index into `values` of the live count; -1: all rows are live
};

struct Message {
    const char* name;  ///< its id is its index
    bool subscribed;   ///< by the user interface
};

struct EnumEntry {
    std::int32_t value;
    const char* name;
};

struct EnumType {
    const char* name;
    std::span<const EnumEntry> entries;
};

extern const std::span<const Area> areas;    ///< in the order of opening
extern const std::span<const Value> values;  ///< by name
extern const std::span<const Table> tables;  ///< by name
extern const std::span<const Message> messages;
extern const std::span<const EnumType> enumTypes;
/// The subscribed ids, in the order in which the user interface subscribes them.
extern const std::span<const std::uint16_t> subscriptions;
/// The events of the user interface from 128 up, by name.
extern const std::span<const char* const> userEventNames;

// Null when there is none of that name. A bare motor is its State, a bare lens table its TableActive.
const Value* findValue(std::string_view name);
const Table* findTable(std::string_view name);
/// Of an entry of `type`; null when the type has no such value.
const char* entryName(const EnumType& type, std::int32_t value);

}  // namespace Catalogue
