#include "tools/assetc/fontspec.h"

#include "tools/common/tablefile.h"

std::vector<FontSpec> readFontSpecs(const std::filesystem::path& path) {
    const TableFile table = TableFile::read(path);
    std::vector<FontSpec> specs;
    for (const auto& row : table.rows()) {
        const auto number = [&](const char* column) { return table.number(row, table.column(column)); };
        FontSpec spec;
        spec.index = number("index");
        spec.lineHeight = number("lineHeight");
        spec.digitWidth = number("digitWidth");
        spec.baseline = number("baseline");
        spec.size = number("size");
        spec.ideographSize = number("ideographSize");
        spec.boldIdeographs = row.cells[table.column("ideographWeight")] == "bold";
        spec.face = row.cells[table.column("face")];
        if (spec.index != static_cast<int>(specs.size())) table.fail(row, "fonts must be listed in order, from 0 on");
        specs.push_back(spec);
    }
    return specs;
}

NeededCodes readBaseSet(const std::filesystem::path& path) {
    const TableFile table = TableFile::read(path);
    const auto code = [&](const TableFile::Row& row, const char* column) -> char32_t {
        const std::string& cell = row.cells[table.column(column)];
        if (cell.empty() || cell.size() > 4 || cell.find_first_not_of("0123456789ABCDEF") != std::string::npos)
            table.fail(row, "'" + cell + "' is not a code point of up to four hexadecimal digits");
        return static_cast<char32_t>(std::stoul(cell, nullptr, 16));
    };
    NeededCodes codes;
    for (const auto& row : table.rows()) {
        const char32_t first = code(row, "first"), last = code(row, "last");
        if (last < first) table.fail(row, "the range ends before it begins");
        for (char32_t c = first; c <= last; ++c)
            codes.emplace(c, table.path().string() + ":" + std::to_string(row.line));
    }
    return codes;
}
