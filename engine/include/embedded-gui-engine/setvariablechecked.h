#pragma once

namespace Engine {

class BoolVariable;
class StringVariable;
template <typename T>
class VariableBase;

// The checked write: everything in the engine writes variables through these. With variable tracing on the value is
// logged first; a refused write is logged and answers false. The variable must not be null.
bool setVariableChecked(VariableBase<bool>& variable, bool value);
bool setVariableChecked(VariableBase<int>& variable, int value);
bool setVariableChecked(VariableBase<long long>& variable, long long value);
bool setVariableChecked(VariableBase<float>& variable, float value);
bool setVariableChecked(VariableBase<double>& variable, double value);
bool setVariableChecked(VariableBase<const char*>& variable, const char* value);

}  // namespace Engine
