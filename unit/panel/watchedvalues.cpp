#include "unit/panel/watchedvalues.h"

namespace Unit {

void WatchedValues::watch(const std::vector<std::string>& names) {
    watched_.clear();
    for (const auto& name : names) {
        Watched one{.name = name, .cell = {}, .problem = {}, .told = {}};
        one.cell = Store::find(name, one.problem);
        watched_.push_back(std::move(one));
    }
}

std::vector<WatchedValues::News> WatchedValues::take(const Store& store) {
    std::vector<News> news;
    for (auto& one : watched_) {
        const std::string value = one.cell ? bareValue(store, *one.cell) : "";
        if (one.told == value) continue;
        one.told = value;
        news.push_back({one.name, value, one.cell ? valueName(store, *one.cell) : one.problem, one.cell.has_value()});
    }
    return news;
}

void WatchedValues::forget() {
    for (auto& one : watched_) one.told.reset();
}

}  // namespace Unit
