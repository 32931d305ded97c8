#pragma once

#include <array>
#include <iosfwd>
#include <set>
#include <string>
#include <vector>

#include "tools/modelc/lower.h"

namespace Modelc {

/// The lint's checks, as --fail-on and the report name them.
namespace Check {
inline constexpr const char* unreachablePage = "unreachable-page";
inline constexpr const char* deadEnd = "dead-end";
inline constexpr const char* neverPosted = "never-posted";
inline constexpr const char* neverHeard = "never-heard";
inline constexpr const char* smallTouchTarget = "small-touch-target";
inline constexpr const char* notBuilt = "not-built";
inline constexpr const char* outsideScreen = "outside-screen";
inline constexpr const char* textFit = "text-fit";
inline constexpr std::array all = {unreachablePage,  deadEnd,  neverPosted,   neverHeard,
                                   smallTouchTarget, notBuilt, outsideScreen, textFit};
}  // namespace Check

/// Something that works and is hardly meant so.
struct LintFinding {
    std::string check;  ///< one of Check::all
    std::string place;
    std::string message;
    Span span;  ///< may be nowhere
};

struct LintOptions {
    /// Events that the program itself posts (keys, joystick, gestures) and hears.
    std::set<unsigned> postedByProgram;
};

/// Unreachable pages, dead ends, events that nobody posts or nobody hears, touch targets below 30 pixels, widgets
/// outside the screen, rows that say that they are not built yet.
std::vector<LintFinding> lint(const ModelTree& model, const Lowered& lowered, const Names& names,
                              const Explanation& explanation, const LintOptions& options);

void printLint(const std::vector<LintFinding>& findings, std::ostream& out);
/// One array of objects: check, place, message, file, line.
void printLintJson(const std::vector<LintFinding>& findings, std::ostream& out);

}  // namespace Modelc
