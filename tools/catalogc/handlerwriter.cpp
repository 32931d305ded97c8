#include "tools/catalogc/handlerwriter.h"

#include <algorithm>
#include <map>
#include <sstream>

#include "tools/common/textfile.h"

namespace {

constexpr char head[] = "// Generated from model/catalogue.\n";
constexpr char logThreshold[] = "VarAppGuiLogLevel";

struct Row {
    unsigned id;
    std::string target;  ///< object, in the namespace of the variables
    unsigned offset;
    unsigned size;
    int area;
    const char* kind;
};

/// All rows by rising id; those of one id values first, in the order of the catalogue, then tables.
std::vector<Row> rowsOf(const Layout& layout) {
    static const std::map<ValueKind, const char*> kinds = {{ValueKind::Flag, "Flag"},
                                                           {ValueKind::Int, "Int"},
                                                           {ValueKind::Enum, "Enum"},
                                                           {ValueKind::Float, "Float"},
                                                           {ValueKind::Text, "String"}};
    const Catalogue& catalogue = layout.catalogue();
    std::vector<Row> rows;
    for (const Value& value : catalogue.values)
        if (kinds.contains(value.kind))
            rows.push_back({value.id, objectOf(*layout.find(value.name)), value.offset, value.size, value.area,
                            kinds.at(value.kind)});
    for (const Table& table : catalogue.tables) {
        const auto inGroup = [&](const Value& value) {
            return value.group() == table.group() && value.name != table.name;
        };
        const auto member = std::find_if(catalogue.values.begin(), catalogue.values.end(), inGroup);
        const unsigned id = table.id ? *table.id : member->id;
        rows.push_back(
            {id, "tables[" + std::to_string(*layout.tableIndex(table.name)) + "]", table.base, 0, table.area, "Table"});
    }
    for (const Link& link : catalogue.links) {
        if (link.role != Link::Role::Availability) continue;
        const Value& mask = *catalogue.findValue(link.from);
        const auto table = layout.tableIndex(link.of);
        rows.push_back({mask.id, table ? "tables[" + std::to_string(*table) + "]" : objectOf(*layout.find(link.of)),
                        mask.offset, mask.size, mask.area, table ? "TableAvailability" : "EnumAvailability"});
    }
    std::stable_sort(rows.begin(), rows.end(), [](const Row& a, const Row& b) { return a.id < b.id; });
    return rows;
}

class HandlerWriter {
  public:
    HandlerWriter(const Layout& layout, const std::filesystem::path& folder)
        : layout_(layout), folder_(folder), rows_(rowsOf(layout)) {}

    void write() const {
        writeIfChanged(folder_ / "handler.h",
                       std::string(head) +
                           "#pragma once\n\n#include \"backend/handlertable.h\"\n\nnamespace Model {\n\n"
                           "/// The table of the product for the one handler.\nextern const Backend::HandlerTable "
                           "handlerTable;\n\n}  // namespace Model\n");
        std::ostringstream out;
        out << head
            << "#include \"model/catalogue/handler.h\"\n\n#include <array>\n#include <utility>\n\n#include "
               "\"model/catalogue/variables.h\"\n\nnamespace Model {\nnamespace {\n\nusing enum Backend::RowKind;\n\n";
        writeAreas(out);
        writeRows(out);
        writeCallbacks(out);
        writeSubscriptions(out);
        writeNames(out);
        writeTable(out);
        writeIfChanged(folder_ / "handler.cpp", out.str());
    }

  private:
    void writeAreas(std::ostringstream& out) const {
        out << "constexpr Backend::AreaDefinition areas[] = {\n";
        for (const Area& area : layout_.catalogue().areas)
            out << "    {\"" << area.name << "\", " << area.size << "},\n";
        out << "};\n\n";
    }

    void writeRows(std::ostringstream& out) const {
        out << "constexpr Backend::HandlerRow rows[] = {\n";
        for (const Row& row : rows_)
            out << "    {&" << row.target << ", " << row.offset << ", " << row.id << ", " << row.size << ", "
                << row.area << ", " << row.kind << "},\n";
        out << "};\n\nconstexpr std::uint16_t firstRow[] = {";
        const std::size_t ids = layout_.catalogue().messages.size();
        for (std::size_t id = 0; id <= ids; ++id) {
            const auto first = std::lower_bound(rows_.begin(), rows_.end(), id,
                                                [](const Row& row, std::size_t wanted) { return row.id < wanted; });
            out << (id % 16 == 0 ? "\n    " : " ") << first - rows_.begin() << ",";
        }
        out << "\n};\n\n";
    }

    static void writeCallbacks(std::ostringstream& out) {
        out << "/// The change callback of a row's variable.\ntemplate <std::size_t row>\nvoid changed() {\n    "
               "Backend::publishRow(rows[row]);\n}\n\n"
               "template <std::size_t row>\nconstexpr auto callbackOf() {\n    void (*callback)() = nullptr;\n    if "
               "constexpr (rows[row].kind <= String) callback = &changed<row>;\n    return callback;\n}\n\n"
               "template <std::size_t... row>\nconstexpr auto allCallbacks(std::index_sequence<row...>) {\n    return "
               "std::array<void (*)(), sizeof...(row)>{callbackOf<row>()...};\n}\n\n"
               "constexpr auto callbacks = allCallbacks(std::make_index_sequence<std::size(rows)>());\n\n";
    }

    void writeSubscriptions(std::ostringstream& out) const {
        out << "constexpr std::uint16_t subscriptions[] = {";
        int column = 0;
        for (const unsigned id : layout_.catalogue().subscriptions())
            out << (column++ % 16 == 0 ? "\n    " : " ") << id << ",";
        out << "\n};\n\n";
    }

    void writeNames(std::ostringstream& out) const {
        out << "constexpr const char* messageNames[] = {\n";
        for (const Message& message : layout_.catalogue().messages) out << "    \"" << message.name << "\",\n";
        out << "};\n\n";
    }

    void writeTable(std::ostringstream& out) const {
        const Value* threshold = layout_.catalogue().findValue(logThreshold);
        out << "}  // namespace\n\nconst Backend::HandlerTable handlerTable = {areas, rows, firstRow, callbacks, "
               "subscriptions, messageNames, "
            << threshold->area << ", " << threshold->offset << "};\n\n}  // namespace Model\n";
    }

    const Layout& layout_;
    std::filesystem::path folder_;
    std::vector<Row> rows_;
};

}  // namespace

void writeHandler(const Layout& layout, const std::filesystem::path& folder) {
    HandlerWriter(layout, folder).write();
}
