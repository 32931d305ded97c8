#pragma once

namespace Backend::Variable {

/// The name of a variable: a text with static storage, never null.
class NameProvider {
  public:
    NameProvider(const NameProvider&) = delete;
    NameProvider& operator=(const NameProvider&) = delete;

    const char* providedName() const { return name_; }

  protected:
    constexpr explicit NameProvider(const char* name) : name_(name) {}
    ~NameProvider() = default;

  private:
    const char* name_;
};

}  // namespace Backend::Variable
