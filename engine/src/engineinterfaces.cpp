#include "embedded-gui-engine/hooks.h"
#include "embedded-gui-engine/setvariablechecked.h"
#include "embedded-gui-engine/trace.h"
#include "embedded-gui-engine/variablebase.h"

namespace Engine {
namespace {

template <typename T>
bool traceAndSet(VariableBase<T>& variable, T value) {
    Trace::instance().varToValue(variable.name(), value);
    return variable.setValue(value);
}

}  // namespace

bool setVariableChecked(VariableBase<int>& variable, int value) {
    if (traceAndSet(variable, value)) return true;
    engineLog(1, __FILE_NAME__, __LINE__, "Could not set variable %s to %i.", variable.name(), value);
    return false;
}

bool setVariableChecked(VariableBase<long long>& variable, long long value) {
    if (traceAndSet(variable, value)) return true;
    engineLog(1, __FILE_NAME__, __LINE__, "Could not set variable %s to %lli.", variable.name(), value);
    return false;
}

bool setVariableChecked(VariableBase<float>& variable, float value) {
    if (traceAndSet(variable, value)) return true;
    engineLog(1, __FILE_NAME__, __LINE__, "Could not set variable %s to %f.", variable.name(),
              static_cast<double>(value));
    return false;
}

bool setVariableChecked(VariableBase<double>& variable, double value) {
    if (traceAndSet(variable, value)) return true;
    engineLog(1, __FILE_NAME__, __LINE__, "Could not set variable %s to %f.", variable.name(), value);
    return false;
}

bool setVariableChecked(VariableBase<const char*>& variable, const char* value) {
    if (traceAndSet(variable, value)) return true;
    engineLog(1, __FILE_NAME__, __LINE__, "Could not set variable %s to %s.", variable.name(),
              value != nullptr ? value : "");
    return false;
}

bool setVariableChecked(VariableBase<bool>& variable, bool value) {
    if (traceAndSet(variable, value)) return true;
    engineLog(1, __FILE_NAME__, __LINE__, "Could not set variable %s to %s.", variable.name(),
              value ? "true" : "false");
    return false;
}

}  // namespace Engine
