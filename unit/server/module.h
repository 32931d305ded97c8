#pragma once

#include <cstdint>
#include <functional>
#include <nlohmann/json_fwd.hpp>
#include <string>
#include <utility>
#include <vector>

#include "unit/server/variable.h"

namespace Unit {

/// One thing of a module that a scene, the command line or the panel can set beside the variables: what a person
/// would do with the hardware (plug a motor, turn the knob, put in a battery).
struct Setting {
    enum class Kind { Flag, Number, Choice, Text };

    std::string name;
    Kind kind;
    double minimum = 0;  ///< of a number
    double maximum = 0;
    std::vector<std::string> choices;
    std::function<void(const nlohmann::json&)> apply;
    std::function<nlohmann::json()> current;

    /// Whether `value` suits; the reason in `problem` when not.
    bool accepts(const nlohmann::json& value, std::string& problem) const;
    nlohmann::json describe() const;
};

/// One topic of the unit's behaviour. It owns its variables: what is not written by the product is written by one
/// module only. Everything happens on the thread of the server's loop; time comes in by `tick` alone.
class Module {
  public:
    using Hearing = std::pair<std::uint16_t, std::function<void()>>;

    Module(const char* name, Store& values) : store(values), name_(name) {}
    virtual ~Module() = default;
    Module(const Module&) = delete;
    Module& operator=(const Module&) = delete;

    const std::string& name() const { return name_; }
    const std::vector<Setting>& settings() const { return settings_; }
    const std::vector<Hearing>& hearings() const { return hearings_; }

    /// The settings that survive a restart, as they leave the factory.
    virtual void factory() {}
    /// Everything else, as it is when the unit is switched on. The settings are in place.
    virtual void powerUp() {}
    virtual void tick(std::int64_t nanoseconds) { (void)nanoseconds; }

  protected:
    /// `reaction` runs when the product or a person has changed the variable.
    void hear(const Variable& variable, std::function<void()> reaction) {
        hearings_.emplace_back(variable.id(), std::move(reaction));
    }
    void settingFlag(std::string name, std::function<void(bool)> apply, std::function<bool()> current);
    void settingNumber(std::string name, double minimum, double maximum, std::function<void(double)> apply,
                       std::function<double()> current);
    void settingChoice(std::string name, std::vector<std::string> choices, std::function<void(std::size_t)> apply,
                       std::function<std::size_t()> current);
    void settingText(std::string name, std::function<void(const std::string&)> apply,
                     std::function<std::string()> current);

    Store& store;

  private:
    std::string name_;
    std::vector<Setting> settings_;
    std::vector<Hearing> hearings_;
};

}  // namespace Unit
