#include "embedded-gui-engine/regexfilter.h"

#include <pcre.h>

#include <cstring>

#include "embedded-gui-engine/hooks.h"

namespace Engine {
namespace {

/// Three ints for each of the whole match and ten groups.
constexpr int OvectorSize = 33;

/// The library recurses on the stack with about half a kilobyte a level, so this is a bound of 1 MB and of about a
/// millisecond.
constexpr unsigned long MatchLimit = 20000;
constexpr unsigned long RecursionLimit = 2000;

pcre_extra limits() {
    pcre_extra extra{};
    extra.flags = PCRE_EXTRA_MATCH_LIMIT | PCRE_EXTRA_MATCH_LIMIT_RECURSION;
    extra.match_limit = MatchLimit;
    extra.match_limit_recursion = RecursionLimit;
    return extra;
}

}  // namespace

void RegexFilter::link() {
    if (state_ == State::Linked) return;
    state_ = State::Linked;
    if (expression_ == nullptr || *expression_ == '\0') return;
    const char* error = "";
    int offset = 0;
    code_ = pcre_compile(expression_, 0, &error, &offset, nullptr);
    if (code_ == nullptr) engineLog(1, __FILE_NAME__, __LINE__, "RegEx error at character %i: %s", offset, error);
}

void RegexFilter::setExpression(const char* expression) {
    if (code_ != nullptr) pcre_free(code_);
    *this = RegexFilter(expression);
    link();
}

void RegexFilter::apply(const char* subject, char (&out)[TextSize]) {
    int ovector[OvectorSize];
    const pcre_extra extra = limits();
    const int count =
        pcre_exec(code_, &extra, subject, static_cast<int>(std::strlen(subject)), 0, 0, ovector, OvectorSize);
    if ((count == PCRE_ERROR_MATCHLIMIT || count == PCRE_ERROR_RECURSIONLIMIT) && !limitReported_) {
        limitReported_ = true;
        engineLog(1, __FILE_NAME__, __LINE__,
                  "RegEx \"%.64s\" takes too long for the text \"%.64s\", which is not shown; simplify the expression.",
                  expression_, subject);
    }
    substituteRegex(subject, ovector, count, out, static_cast<int>(TextSize));
}

int substituteRegex(const char* subject, const int* ovector, int count, char* out, int outLength) {
    int length = 0;
    out[0] = '\0';
    for (int group = 1; group < count; ++group) {
        const int copied =
            pcre_copy_substring(subject, const_cast<int*>(ovector), count, group, out + length, outLength - length);
        if (copied < 0) break;
        length += copied;
    }
    return length;
}

}  // namespace Engine
