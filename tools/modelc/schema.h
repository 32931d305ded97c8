// What the engine's classes offer to the language: one row a property.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "tools/modelc/value.h"

namespace Modelc {

/// A property whose value may be a constant, given to the constructor, or a rule, pushed by a modifier.
struct PropertySchema {
    std::string_view name;
    Type type;
    std::string_view field;     ///< of the parameter record, or empty: an argument of the constructor (`place`)
    std::string_view setter;    ///< member that a modifier calls; empty: constant only
    std::string_view target;    ///< class whose member it is
    std::string_view argument;  ///< what the setter takes when it is not the type itself
    std::string_view document;  ///< one line for people
};

/// A property with a fixed set of words.
struct WordSchema {
    std::string_view name;
    std::string_view enumeration;                                      ///< C++ enumeration
    std::vector<std::pair<std::string_view, std::string_view>> words;  ///< word in sources, enumerator
};

struct ClassSchema {
    std::string_view name;   ///< in sources and in the engine
    std::string_view array;  ///< of the unit
    std::vector<PropertySchema> properties;
    std::vector<WordSchema> words;
    std::vector<std::string_view> special;  ///< properties that the lowering treats by itself
    bool hasChildren = false;
    /// Of the elements of a scale container, which are no widgets: the names of their template widgets, the children.
    std::vector<std::string_view> templates = {};

    bool isElement() const { return !templates.empty(); }
    bool holdsElements() const { return name == "ScaleContainer"; }
};

/// Null for an unknown class.
const ClassSchema* classSchema(std::string_view name);
const std::vector<ClassSchema>& classSchemas();

/// Of all widgets.
const std::vector<PropertySchema>& widgetProperties();
const std::vector<PropertySchema>& pageProperties();

}  // namespace Modelc
