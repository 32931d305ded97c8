#pragma once

#include <cstdint>
#include <span>

namespace Engine {

class List;
class Widget;

/// What a page tells its tree.
enum class PagePhase : int { Entering = 0, Leaving = 1 };

/// A node of the static tree of pages and widgets. The tree never changes its shape after the link step.
class Object {
  public:
    enum Flag : std::uint32_t {
        FlagEnabled = 0x1,            ///< shown
        FlagDisabled = 0x2,           ///< greyed out, not operable
        FlagPageActive = 0x40,        ///< pages: entered and not yet left
        FlagDrawingDeferred = 0x400,  ///< pages: the deferred widgets are being drawn
        FlagRedrawing = 0x20000,      ///< pages: a redraw is in progress
        FlagFocusableByNature = 0x100000,
        FlagIsWidget = 0x200000,  ///< what isWidget and isPage answer, for walks that every widget pays for
        FlagIsPage = 0x400000
    };

    virtual void setParent(Object* parent) { parent_ = parent; }
    virtual Object* getParent() const { return parent_; }
    virtual bool isPage() const { return false; }
    virtual bool isWidget() const { return false; }
    virtual List* asList() { return nullptr; }
    /// Asks for a redraw of the object's area.
    virtual void invalidate() = 0;
    /// Recomputes the geometry from the model's data.
    virtual void relayout() = 0;
    virtual void onPageState(PagePhase phase);
    /// Stores the children, which may hold null entries, and becomes their parent. The array is not owned and must
    /// live as long as the object.
    virtual void setChildren(Object* const* children, std::uint16_t count);
    /// The parent when it is a widget, else null.
    virtual Widget* parentWidget() const;
    virtual void setEnabled(bool enabled);
    virtual void setDisabled(bool disabled);
    virtual bool isFocusableTree() const;

    /// Links the children that the constructor was given: the same as setChildren with them.
    void linkChildren() { setChildren(children_, childCount_); }

    bool isEnabledInTree() const;
    bool isDisabledInTree() const;

    void setFlag(std::uint32_t mask, bool on) { flags_ = on ? flags_ | mask : flags_ & ~mask; }
    bool hasFlag(std::uint32_t mask) const { return (flags_ & mask) != 0; }
    std::uint32_t flags() const { return flags_; }

    std::span<Object* const> children() const { return {children_, childCount_}; }
    std::uint16_t childCount() const { return childCount_; }
    /// Null for an index out of range.
    Object* childAt(int index) const { return index >= 0 && index < childCount_ ? children_[index] : nullptr; }
    const char* name() const { return name_; }
    void setName(const char* name) { name_ = name; }

    /// The object at the top of the tree: the page once the tree is linked.
    const Object& root() const;
    Object& root() { return const_cast<Object&>(static_cast<const Object*>(this)->root()); }

  protected:
    constexpr Object() = default;
    constexpr Object(const char* name, std::uint32_t flags, std::span<Object* const> children)
        : flags_(flags),
          childCount_(static_cast<std::uint16_t>(children.size())),
          children_(children.data()),
          name_(name) {}
    ~Object() = default;

    /// The stored parent, for walks that must not pay for a virtual call a step. A page has none.
    static const Object* upFrom(const Object& object) { return object.parent_; }

    std::uint32_t flags_ = FlagEnabled;
    std::uint16_t childCount_ = 0;
    Object* const* children_ = nullptr;
    const char* name_ = nullptr;  ///< may be null
    Object* parent_ = nullptr;
};

/// The object as a widget; null when it is null or none.
Widget* asWidget(Object* object);

}  // namespace Engine
