#pragma once

#include <iosfwd>
#include <string>
#include <string_view>
#include <vector>

#include "tools/modelc/source.h"

namespace Modelc {

enum class Severity { Error, Warning };

/// One finding: where, what, and what to do about it.
struct Diagnostic {
    struct Note {
        Span span;
        std::string message;
    };

    Severity severity = Severity::Error;
    Span span;
    std::string message;
    std::string help;         ///< what to change; may be empty
    std::vector<Note> notes;  ///< further places that explain it
};

/// Collects the findings of all passes. The result stays valid for whoever adds notes until the next report.
class Diagnostics {
  public:
    Diagnostic& error(Span span, std::string message, std::string help = {});
    Diagnostic& warning(Span span, std::string message, std::string help = {});

    bool hasErrors() const { return errors_ > 0; }
    int errorCount() const { return errors_; }
    const std::vector<Diagnostic>& all() const { return all_; }

    /// Every place that expansion went through is added as a note to what is reported while it is on the stack.
    void enterExpansion(Span use, std::string what) { expansions_.push_back({use, std::move(what)}); }
    void leaveExpansion() { expansions_.pop_back(); }

    /// In the order of the sources: file, then place.
    void print(std::ostream& out) const;

  private:
    Diagnostic& add(Severity severity, Span span, std::string message, std::string help);

    std::vector<Diagnostic> all_;
    std::vector<Diagnostic::Note> expansions_;
    int errors_ = 0;
};

/// "did you mean 'x'?" when one of `candidates` lies close to `name`, else empty.
std::string didYouMean(std::string_view name, const std::vector<std::string_view>& candidates);

/// "a Label", "an Icon".
std::string withArticle(std::string_view word);

}  // namespace Modelc
