#pragma once

#include <cstdint>

namespace Engine {

/// A verb of the model: a static object that does one thing when executed. Whoever runs actions skips null and
/// disabled ones.
class Action {
  public:
    enum Flag : std::uint32_t {
        Enabled = 1,
        Wrap = 2,
        Forward = 4,
        ResetAll = 8,            ///< EditReset: its second argument
        StopAfterFirst = 32      ///< ActionGroup: stop after the first enabled action
    };

    /// False means refused or nothing done.
    virtual bool execute() = 0;
    /// The name that the model gave, else the word of the class.
    virtual const char* name() const = 0;

    /// Changes the enabled bit only.
    void setEnabled(bool enabled) {
        if (enabled != isEnabled()) flags_ ^= Enabled;
    }
    bool isEnabled() const { return (flags_ & Enabled) != 0; }
    std::uint32_t flags() const { return flags_; }

  protected:
    constexpr explicit Action(const char* name = nullptr, std::uint32_t flags = Enabled) : flags_(flags), name_(name) {}
    ~Action() = default;

    const char* nameOr(const char* word) const { return name_ != nullptr ? name_ : word; }

    std::uint32_t flags_;
    const char* name_;  ///< may be null
};

}  // namespace Engine
