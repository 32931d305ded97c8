// Resolved expressions: every name is known, every kind fits.
#pragma once

#include <memory>
#include <string>
#include <variant>
#include <vector>

#include "tools/modelc/names.h"
#include "tools/modelc/source.h"

namespace Modelc {

enum class Type {
    Bool,
    Int,
    Float,
    String,
    Color,
    Align,
    Text,
    Image,
    Font,
    Page,
    EnumVariable,
    IntVariable,
    FloatVariable
};

/// The word of a type in sources: flag, number, ...
std::string_view typeWord(Type type);
/// False when no type is called so.
bool typeOfWord(std::string_view word, Type& type);
/// The C++ type of a provider's value.
std::string_view cppType(Type type);

enum class Operator { Equal = 0, Greater = 1, Less = 2, GreaterEqual = 3, LessEqual = 4, NotEqual = 5 };
std::string_view operatorText(Operator op);
Operator negated(Operator op);
Operator mirrored(Operator op);

struct Value;
using ValuePtr = std::shared_ptr<const Value>;

/// `code` is the C++ constant, `text` what a person reads.
struct ConstantValue {
    std::string code;
    std::string text;
};
struct VariableValue {
    const VariableInfo* variable;
};
struct CompareValue {
    Operator op;
    ValuePtr left;
    ConstantValue right;
};
struct NotValue {
    ValuePtr operand;
};
struct JunctionValue {
    bool isAnd;
    std::vector<ValuePtr> operands;
};
/// First true branch wins; the branch of `else` has a null condition.
struct ChoiceValue {
    struct Branch {
        ValuePtr condition;
        ValuePtr value;
    };
    std::vector<Branch> branches;
};
/// A shared rule of the model: lowered once.
struct RuleValue {
    std::string name;
    ValuePtr value;
};
/// The text of an enum variable's present value.
struct EnumTextValue {
    const VariableInfo* variable;
};
/// A value through a format, and a filter behind it (empty: none).
struct FormattedValue {
    enum class Kind { Printf, Time, UnixTime, Metres, Feet, Hundredths };
    Kind kind;
    ValuePtr source;
    std::string format;
    std::string match;
};
/// The place of a float on the scale of a table.
struct PlaceValue {
    const VariableInfo* table;
    ValuePtr source;
};
/// A text of the tables whose holes are filled.
struct FilledValue {
    ValuePtr text;
    std::vector<ValuePtr> parts;
};

struct Value {
    Type type;
    Span span;
    std::variant<ConstantValue, VariableValue, CompareValue, NotValue, JunctionValue, ChoiceValue, RuleValue,
                 EnumTextValue, FormattedValue, FilledValue, PlaceValue>
        node;

    const ConstantValue* constant() const { return std::get_if<ConstantValue>(&node); }
};

/// Every variable that the value is made from, in the order in which it reads them, without repetition.
std::vector<const VariableInfo*> readVariables(const Value& value);

/// The value as a person would write it; for `why` and the printed form.
std::string describe(const Value& value);

}  // namespace Modelc
