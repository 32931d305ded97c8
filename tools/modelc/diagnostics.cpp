#include "tools/modelc/diagnostics.h"

#include <algorithm>
#include <cctype>
#include <ostream>

namespace Modelc {

namespace {

std::size_t characters(std::string_view text) {
    return static_cast<std::size_t>(std::count_if(
        text.begin(), text.end(), [](char c) { return (static_cast<unsigned char>(c) & 0xc0U) != 0x80U; }));
}

void printPlace(std::ostream& out, Span span, std::string_view word, std::string_view message) {
    if (span.file == nullptr) {
        out << word << ": " << message << "\n";
        return;
    }
    const auto at = span.file->position(span.begin);
    out << span.file->path() << ":" << at.line << ":" << at.column << ": " << word << ": " << message << "\n";

    const std::string_view line = span.file->lineAt(span.begin);
    out << "    " << line << "\n    ";
    for (std::size_t i = 0, column = 1; column < static_cast<std::size_t>(at.column) && i < line.size(); ++i) {
        if ((static_cast<unsigned char>(line[i]) & 0xc0U) == 0x80U) continue;
        out << (line[i] == '\t' ? '\t' : ' ');
        ++column;
    }
    const std::size_t restOfLine =
        characters(line) - std::min(characters(line), static_cast<std::size_t>(at.column - 1));
    const std::size_t width = std::max<std::size_t>(1, std::min(characters(span.text()), restOfLine));
    out << '^' << std::string(width - 1, '~') << "\n";
}

std::string folded(std::string_view text) {
    std::string result;
    for (const char c : text)
        if (c != '_') result += static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    return result;
}

/// Edits (insert, delete, replace, swap of neighbours) between two names; gives up above `limit`.
std::size_t distance(const std::string& a, const std::string& b, std::size_t limit) {
    if (std::max(a.size(), b.size()) - std::min(a.size(), b.size()) > limit) return limit + 1;
    std::vector<std::size_t> before(b.size() + 1);
    std::vector<std::size_t> last(b.size() + 1);
    std::vector<std::size_t> now(b.size() + 1);
    for (std::size_t j = 0; j <= b.size(); ++j) last[j] = j;
    for (std::size_t i = 1; i <= a.size(); ++i) {
        now[0] = i;
        for (std::size_t j = 1; j <= b.size(); ++j) {
            now[j] = std::min({last[j] + 1, now[j - 1] + 1, last[j - 1] + (a[i - 1] == b[j - 1] ? 0U : 1U)});
            if (i > 1 && j > 1 && a[i - 1] == b[j - 2] && a[i - 2] == b[j - 1])
                now[j] = std::min(now[j], before[j - 2] + 1);
        }
        before.swap(last);
        last.swap(now);
    }
    return last[b.size()];
}

}  // namespace

Diagnostic& Diagnostics::add(Severity severity, Span span, std::string message, std::string help) {
    all_.push_back({severity, span, std::move(message), std::move(help), {}});
    for (auto note = expansions_.rbegin(); note != expansions_.rend(); ++note) all_.back().notes.push_back(*note);
    return all_.back();
}

Diagnostic& Diagnostics::error(Span span, std::string message, std::string help) {
    ++errors_;
    return add(Severity::Error, span, std::move(message), std::move(help));
}

Diagnostic& Diagnostics::warning(Span span, std::string message, std::string help) {
    return add(Severity::Warning, span, std::move(message), std::move(help));
}

void Diagnostics::print(std::ostream& out) const {
    std::vector<const Diagnostic*> ordered;
    for (const auto& diagnostic : all_) ordered.push_back(&diagnostic);
    std::stable_sort(ordered.begin(), ordered.end(), [](const Diagnostic* a, const Diagnostic* b) {
        const std::string_view fileA = a->span.file != nullptr ? std::string_view(a->span.file->path()) : "";
        const std::string_view fileB = b->span.file != nullptr ? std::string_view(b->span.file->path()) : "";
        return fileA != fileB ? fileA < fileB : a->span.begin < b->span.begin;
    });
    for (const Diagnostic* diagnostic : ordered) {
        printPlace(out, diagnostic->span, diagnostic->severity == Severity::Error ? "error" : "warning",
                   diagnostic->message);
        if (!diagnostic->help.empty()) out << "    help: " << diagnostic->help << "\n";
        for (const auto& note : diagnostic->notes) printPlace(out, note.span, "note", note.message);
    }
}

std::string didYouMean(std::string_view name, const std::vector<std::string_view>& candidates) {
    const std::string wanted = folded(name);
    std::size_t best = std::max<std::size_t>(1, wanted.size() / 3);
    std::string_view found;
    for (const std::string_view candidate : candidates) {
        const std::size_t d = distance(wanted, folded(candidate), best);
        if (d < best || (d == best && found.empty())) {
            best = d;
            found = candidate;
        }
    }
    return found.empty() ? std::string{} : "did you mean '" + std::string(found) + "'?";
}

std::string withArticle(std::string_view word) {
    const bool vowel = !word.empty() && std::string_view("AEIOU").find(word.front()) != std::string_view::npos;
    return (vowel ? "an " : "a ") + std::string(word);
}

}  // namespace Modelc
