#pragma once

#include <array>
#include <iosfwd>
#include <set>
#include <string>
#include <vector>

#include "tools/modelc/lower.h"

namespace Modelc {

inline constexpr std::array lintChecks = {"unreachable-page",   "dead-end",  "never-posted",   "never-heard",
                                          "small-touch-target", "not-built", "outside-screen", "text-fit"};

/// Something that works and is hardly meant so.
struct LintFinding {
    std::string check;  ///< one of lintChecks
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
