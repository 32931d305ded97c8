#include "tools/modelc/model.h"

namespace Modelc {

const PropertyDecl* ObjectNode::property(std::string_view wanted) const {
    for (const auto& decl : properties)
        if (decl.name.text == wanted) return &decl;
    return nullptr;
}

const UnitNode* ModelTree::unit(std::string_view name) const {
    for (const auto& unit : units)
        if (unit->name.text == name) return unit.get();
    return nullptr;
}

}  // namespace Modelc
