#include "embedded-gui-engine/object.h"

#include "embedded-gui-engine/widget.h"

namespace Engine {

void Object::onPageState(PagePhase phase) {
    for (Object* child : children())
        if (child != nullptr) child->onPageState(phase);
}

void Object::setChildren(Object* const* children, std::uint16_t count) {
    children_ = children;
    childCount_ = children != nullptr ? count : std::uint16_t{0};
    for (Object* child : this->children())
        if (child != nullptr) child->setParent(this);
    invalidate();
}

Widget* Object::parentWidget() const {
    return asWidget(getParent());
}

void Object::setEnabled(bool enabled) {
    if (hasFlag(FlagEnabled) == enabled) return;
    invalidate();
    setFlag(FlagEnabled, enabled);
    invalidate();
}

void Object::setDisabled(bool disabled) {
    if (hasFlag(FlagDisabled) == disabled) return;
    setFlag(FlagDisabled, disabled);
    invalidate();
}

bool Object::isFocusableTree() const {
    if (hasFlag(FlagFocusableByNature)) return true;
    for (const Object* child : children())
        if (child != nullptr && child->isFocusableTree()) return true;
    return false;
}

bool Object::isEnabledInTree() const {
    for (const Object* object = this; object != nullptr; object = object->parent_)
        if (!object->hasFlag(FlagEnabled)) return false;
    return true;
}

bool Object::isDisabledInTree() const {
    for (const Object* object = this; object != nullptr; object = object->parent_)
        if (object->hasFlag(FlagDisabled)) return true;
    return false;
}

const Object& Object::root() const {
    const Object* object = this;
    while (object->parent_ != nullptr) object = object->parent_;
    return *object;
}

Widget* asWidget(Object* object) {
    return object != nullptr && object->hasFlag(Object::FlagIsWidget) ? static_cast<Widget*>(object) : nullptr;
}

}  // namespace Engine
