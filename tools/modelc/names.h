// Everything that a model source may name and that other files declare: variables, enum values, events, texts, icons,
// fonts.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace Modelc {

/// Kinds of variables, by the letters of the catalogue.
enum class VariableKind { Flag, Int, Enum, Float, String, Table };

struct EnumInfo {
    struct Value {
        int number;
        std::string name;
        std::uint32_t textKey;
    };
    std::string name;
    std::vector<Value> values;

    const Value* value(std::string_view wanted) const;
};

struct VariableInfo {
    std::string name;
    VariableKind kind = VariableKind::Flag;
    const EnumInfo* enumType = nullptr;  ///< of enums, may be null while a type has no values told
    int size = 0;                        ///< of strings: bytes with the terminator
    std::string address;                 ///< C++ expression of the variable object's address
    int slot = 0;                        ///< order of the sync pass; cells lie behind all others
};

struct TableInfo {
    struct Column {
        std::string field;
        VariableKind kind;
        int size;
    };
    std::string name;
    int rows = 0;
    std::vector<Column> columns;
};

struct TextInfo {
    std::uint32_t key = 0;
    std::string name;
    std::vector<std::string> languages;  ///< English first
};

struct ImageInfo {
    std::string name;
    std::string address;
    int width = 0;
    int height = 0;
};

class Names {
  public:
    std::map<std::string, EnumInfo, std::less<>> enums;
    std::map<std::string, VariableInfo, std::less<>> variables;  ///< members and bare group names among them
    std::map<std::string, TableInfo, std::less<>> tables;
    std::map<std::string, unsigned, std::less<>> events;
    std::map<std::string, TextInfo, std::less<>> texts;
    std::map<std::string, ImageInfo, std::less<>> icons;
    std::map<std::string, std::string, std::less<>> fonts;  ///< name to C++ address

    const VariableInfo* variable(std::string_view name) const;
    /// The cell of a table; null when row or field do not exist.
    const VariableInfo* cell(const TableInfo& table, int row, std::string_view field) const;
    /// Its name reads TABLE[ROW].FIELD.
    void addCell(VariableInfo cell) { cells_[cell.name] = std::move(cell); }

    /// Names of one map, for suggestions.
    template <typename Map>
    static std::vector<std::string_view> keys(const Map& map) {
        std::vector<std::string_view> result;
        for (const auto& [name, value] : map) result.push_back(name);
        return result;
    }

  private:
    std::map<std::string, VariableInfo, std::less<>> cells_;
};

}  // namespace Modelc
