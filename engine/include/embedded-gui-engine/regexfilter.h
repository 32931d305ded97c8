#pragma once

#include <cstddef>
#include <cstdint>

struct real_pcre;

namespace Engine {

/// A regular expression that reduces a text to its capture groups. The model declares one object for each distinct
/// expression, which many providers share; it is compiled once, in the link phase. Until then, and when the expression
/// is faulty, it does not filter.
class RegexFilter {
  public:
    /// Bytes of a filtered text, the terminator included.
    static constexpr std::size_t TextSize = 256;

    /// `expression` is not copied; null or "" is no filter.
    constexpr explicit RegexFilter(const char* expression) : expression_(expression) {}

    /// Compiles the expression unless that was done. A faulty expression is logged once.
    void link();
    /// Replaces the expression, frees the old pattern and compiles the new one.
    void setExpression(const char* expression);

    bool isCompiled() const { return code_ != nullptr; }

    /// Writes the groups 1 to 10 of the first match one after another; "" without a match or a group. The work of a
    /// match is limited; a text that exceeds the limit has no match, which is logged once. Only when compiled.
    void apply(const char* subject, char (&out)[TextSize]);

  private:
    enum class State : std::uint8_t { Unlinked, Linked };

    const char* expression_;
    real_pcre* code_ = nullptr;
    State state_ = State::Unlinked;
    bool limitReported_ = false;
};

/// Appends the groups 1 to `count` - 1 of a match, stopping at the first that does not fit; the result is the length.
/// `out` becomes "" when `count` is below 2: then there was no match or there is no group.
int substituteRegex(const char* subject, const int* ovector, int count, char* out, int outLength);

}  // namespace Engine
