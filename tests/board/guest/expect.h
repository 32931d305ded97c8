#pragma once

#include <functional>
#include <stdexcept>
#include <string>

namespace Board {

/// What was expected and what was found; ends the check, not the run.
class Failure : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

/// Throws Failure with `otherwise` when `holds` is false.
void expect(bool holds, const std::string& otherwise);
/// `what` is a sentence's beginning: "the pans of two seconds".
void expectBetween(const std::string& what, long long found, long long least, long long most);

/// Seconds of the board's own clock, which passes by the instructions executed and not by the host's.
double now();
void sleepFor(double seconds);
bool waitUntil(double seconds, const std::function<bool()>& holds);

}  // namespace Board
