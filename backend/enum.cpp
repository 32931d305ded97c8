#include "backend/enum.h"

namespace Backend::Variable {
namespace {

constexpr int everyProperty = Engine::PropertyExists | Engine::PropertyEnabled | Engine::PropertyAlternative;
constexpr int choosable = Engine::PropertyExists | Engine::PropertyEnabled;

}  // namespace

int Enum<int>::size() const {
    return type_ != nullptr ? static_cast<int>(type_->count()) : 0;
}

bool Enum<int>::setValue(int value) {
    if (type_ == nullptr || type_->indexOf(value) == EnumTable::notFound || !withinLimits(value)) return false;
    write(value);
    return true;
}

bool Enum<int>::increment(int step, bool wrap) {
    const unsigned int choices = selectableCount();
    if (choices == 0) return false;
    const int direction = step < 0 ? -1 : 1;
    unsigned int steps = step < 0 ? 0u - static_cast<unsigned int>(step) : static_cast<unsigned int>(step);
    if (wrap && steps > choices) steps = (steps - 1) % choices + 1;
    const unsigned int start = type_->indexOf(stored());
    unsigned int index = start;
    for (; steps > 0; --steps) {
        const unsigned int next = following(index, direction, wrap);
        if (next == EnumTable::notFound) break;
        index = next;
    }
    return index == start || setValue(type_->entry(index).value);
}

const char* Enum<int>::name() const {
    return providedName();
}

int Enum<int>::value() const {
    return stored();
}

int Enum<int>::flags() const {
    return (isSync() ? 0 : FlagsPending) | (type_ != nullptr ? FlagsLimited : 0);
}

int Enum<int>::properties(int value) const {
    const unsigned int index = type_ != nullptr ? type_->indexOf(value) : EnumTable::notFound;
    return index == EnumTable::notFound ? 0 : propertiesOfEntry(index);
}

Engine::TextId Enum<int>::textKey(int value) const {
    const unsigned int index = type_ != nullptr ? type_->indexOf(value) : EnumTable::notFound;
    return index == EnumTable::notFound ? Engine::TextId{} : type_->entry(index).text;
}

void Enum<int>::refreshAvailability() {
    if (availability_ != nullptr && availability_->refresh()) mark();
}

bool Enum<int>::selectable(unsigned int index) const {
    return (propertiesOfEntry(index) & choosable) == choosable && withinLimits(type_->entry(index).value);
}

unsigned int Enum<int>::selectableCount() const {
    unsigned int count = 0;
    for (unsigned int i = 0; type_ != nullptr && i < type_->count(); ++i) count += selectable(i) ? 1 : 0;
    return count;
}

/// The next entry that may be chosen. From a value outside of the table the search begins at the near end.
unsigned int Enum<int>::following(unsigned int index, int direction, bool wrap) const {
    const unsigned int first = direction > 0 ? 0 : type_->count() - 1;
    const unsigned int last = direction > 0 ? type_->count() - 1 : 0;
    for (unsigned int walked = 0; walked < type_->count(); ++walked) {
        if (index == last && !wrap) return EnumTable::notFound;
        index = index == last || index == EnumTable::notFound ? first : index + static_cast<unsigned int>(direction);
        if (selectable(index)) return index;
    }
    return EnumTable::notFound;
}

int Enum<int>::propertiesOfEntry(unsigned int index) const {
    if (!type_->offered(index)) return 0;
    return availability_ != nullptr ? availability_->applied(everyProperty, index) : everyProperty;
}

}  // namespace Backend::Variable
