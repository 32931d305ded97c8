#include "model/catalogue/constants.h"

#include <algorithm>
#include <string>

namespace Catalogue {
namespace {

template <typename Item>
const Item* findByName(std::span<const Item> items, std::string_view name) {
    const auto found = std::lower_bound(items.begin(), items.end(), name,
                                        [](const Item& item, std::string_view wanted) { return item.name < wanted; });
    return found != items.end() && found->name == name ? &*found : nullptr;
}

}  // namespace

const Value* findValue(std::string_view name) {
    if (const Value* found = findByName(values, name)) return found;
    const std::string bare(name);
    if (const Value* found = findByName(values, bare + ".State")) return found;
    return findByName(values, bare + ".TableActive");
}

const Table* findTable(std::string_view name) {
    return findByName(tables, name);
}

const char* entryName(const EnumType& type, std::int32_t value) {
    for (const EnumEntry& entry : type.entries)
        if (entry.value == value) return entry.name;
    return nullptr;
}

}  // namespace Catalogue
