#pragma once

#include <cstddef>
#include <span>

namespace Backend {
struct VariableSet;
namespace Variable {
class Subject;
}
}  // namespace Backend

namespace Engine {
class BehaviorContainer;
class Border;
class ConcatModifier;
class GuiManager;
class Object;
class Observer;
class Page;
class RegexFilter;
class StringProviderBase;
class Widget;
}  // namespace Engine

namespace Model {

struct BorderLink {
    Engine::Border* border;
    Engine::Widget* owner;
};

/// What the link phase does with one page or container. All arrays are constant data.
struct UnitLink {
    const char* name;
    std::span<Engine::Object* const> parents;  ///< objects with children, top down
    std::span<const BorderLink> borders;
    std::span<Engine::RegexFilter* const> filters;
    std::span<Engine::ConcatModifier* const> concats;
    std::span<Engine::StringProviderBase* const> strings;  ///< those that no variable ever tells
};

/// A variable and all that observes it, in the order in which they hear of a change.
struct ObserverTie {
    Backend::Variable::Subject* subject;
    std::span<Engine::Observer* const> observers;
};

/// The whole model as the compiler made it.
struct ModelLink {
    std::span<const UnitLink* const> units;
    std::span<const ObserverTie> ties;
    std::span<Engine::Page* const> overlays;
    std::span<Engine::BehaviorContainer* const> containers;
    Engine::Page* start;  ///< null without a start page
};

/// The link phase. Objects hold their constant data and the addresses of each other already; what is left, in this
/// order: children learn their parents and borders their owners, expressions are compiled, texts that follow no
/// variable take their value; observers are attached to their variables; every variable notifies once. A second call
/// does nothing.
void link(const ModelLink& model, const Backend::VariableSet& variables);

}  // namespace Model
