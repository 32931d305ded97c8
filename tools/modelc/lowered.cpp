#include "tools/modelc/lowered.h"

#include <algorithm>
#include <stdexcept>

namespace Modelc {

Pool& LoweredUnit::pool(std::string_view type, std::string_view array) {
    if (const auto found = byName_.find(array); found != byName_.end()) {
        if (found->second->type != type)
            throw std::logic_error("the array " + std::string(array) + " would hold " + std::string(type) + " beside " +
                                   found->second->type);
        return *found->second;
    }
    pools_.push_back(std::make_unique<Pool>(Pool{std::string(type), std::string(array), {}, {}}));
    byName_.emplace(array, pools_.back().get());
    return *pools_.back();
}

std::string LoweredUnit::addressOf(const Pool& pool, std::size_t index) const {
    return "&" + name_ + "::" + pool.name + "[" + std::to_string(index) + "]";
}

std::string LoweredUnit::add(std::string_view type, std::string_view array, std::string initialiser) {
    Pool& here = pool(type, array);
    here.elements.push_back(std::move(initialiser));
    return addressOf(here, here.elements.size() - 1);
}

std::string LoweredUnit::intern(std::string_view type, std::string_view array, std::string initialiser) {
    Pool& here = pool(type, array);
    const auto [entry, fresh] = here.interned.try_emplace(initialiser, here.elements.size());
    if (fresh) here.elements.push_back(std::move(initialiser));
    return addressOf(here, entry->second);
}

std::string LoweredUnit::reserve(std::string_view type, std::string_view array) {
    return add(type, array, {});
}

void LoweredUnit::describe(const std::string& address, std::string initialiser) {
    const std::size_t nameAt = address.rfind(':') + 1;
    const std::size_t bracket = address.rfind('[');
    Pool& here = *byName_.find(address.substr(nameAt, bracket - nameAt))->second;
    here.elements[std::stoul(address.substr(bracket + 1))] = std::move(initialiser);
}

std::string LoweredUnit::table(std::string_view type, std::string_view array, const std::vector<std::string>& entries) {
    if (entries.empty()) return "{}";
    Pool& here = pool(type, array);
    std::string key;
    for (const auto& entry : entries) key += entry + "\n";
    const auto [run, fresh] = here.interned.try_emplace(std::move(key), here.elements.size());
    if (fresh) here.elements.insert(here.elements.end(), entries.begin(), entries.end());
    return "part(" + name_ + "::" + here.name + ", " + std::to_string(run->second) + ", " +
           std::to_string(entries.size()) + ")";
}

std::string LoweredUnit::storage(std::string_view type, std::string_view array, std::size_t size) {
    auto found =
        std::find_if(storages_.begin(), storages_.end(), [&](const Storage& one) { return one.name == array; });
    if (found == storages_.end()) found = storages_.insert(storages_.end(), {std::string(type), std::string(array), 0});
    const std::size_t begin = found->size;
    found->size += size;
    return "part(" + name_ + "::" + found->name + ", " + std::to_string(begin) + ", " + std::to_string(size) + ")";
}

}  // namespace Modelc
