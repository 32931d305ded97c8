#include "backend/flag.h"

namespace Backend::Variable {
namespace {

constinit Engine::TextId offText;
constinit Engine::TextId onText;

}  // namespace

int Flag<bool>::size() const {
    return sizeof(bool);
}

bool Flag<bool>::setValue(bool value) {
    write(value);
    return true;
}

bool Flag<bool>::toggle() {
    return setValue(!stored());
}

Engine::TextId Flag<bool>::textKey(bool value) const {
    return value ? onText : offText;
}

const char* Flag<bool>::name() const {
    return providedName();
}

bool Flag<bool>::value() const {
    return stored();
}

int Flag<bool>::properties(bool /*value*/) const {
    return Engine::PropertyExists | Engine::PropertyEnabled | Engine::PropertyAlternative;
}

int Flag<bool>::flags() const {
    return isSync() ? 0 : FlagsPending;
}

void Flag<bool>::configTexts(Engine::TextId off, Engine::TextId on) {
    offText = off;
    onText = on;
}

}  // namespace Backend::Variable
