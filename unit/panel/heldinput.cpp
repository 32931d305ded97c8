#include "unit/panel/heldinput.h"

#include <algorithm>

#include "unit/ctl/problem.h"

namespace Unit {

void HeldInput::key(Person person, const NamedKey& key, bool down) {
    auto& holders = keys_[&key];
    const bool before = !holders.empty();
    if (down)
        holders.insert(person);
    else
        holders.erase(person);
    if (before == !holders.empty()) return;
    try {
        devices_.key(key, down);
    } catch (const Problem&) {
        // A press that nobody saw is none; a release may be tried again.
        if (down) holders.clear();
        throw;
    }
}

void HeldInput::touch(Person person, const Contacts& contacts) {
    if (toucher_ && *toucher_ != person) return;
    devices_.contacts(contacts);
    const bool any = std::ranges::any_of(contacts, [](const auto& contact) { return contact.has_value(); });
    toucher_ = any ? std::optional(person) : std::nullopt;
}

void HeldInput::letGo(Person person) {
    try {
        for (auto& [key, holders] : keys_)
            if (holders.contains(person)) this->key(person, *key, false);
        if (toucher_ == person) touch(person, {});
    } catch (const Problem&) {
        // The product does not read: it is being started anew, and begins without anything held.
        toucher_.reset();
    }
}

}  // namespace Unit
