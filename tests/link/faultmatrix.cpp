#include "faultmatrix.h"

#include <errno.h>
#include <gtest/gtest.h>
#include <string.h>

#include <stdexcept>
#include <utility>

namespace {

struct Observed {
    Outcome outcome = Outcome::Ignored;
    std::string text;
};

const char* nameOf(Phase phase) {
    return phase == Phase::StartUp ? "start-up" : "running";
}

const char* nameOf(Outcome outcome) {
    switch (outcome) {
        case Outcome::Fatal: return "fatal";
        case Outcome::Retried: return "retried";
        default: return "ignored";
    }
}

std::string nameOf(const Fault& fault) {
    switch (fault.kind) {
        case Fault::Kind::Errno: return strerrorname_np(static_cast<int>(fault.value));
        case Fault::Kind::Short: return std::to_string(fault.value) + " bytes";
        default: return "result " + std::to_string(fault.value);
    }
}

/// Sets one fault and sees when it strikes.
class Trap {
  public:
    Trap(const FaultRow& row, const Fault& fault) : row_(row), fault_(fault) {}

    void set() {
        auto andLater = row_.call.where;
        andLater.andLater = true;
        Platform::Virtual::onCall(
            row_.call.kind, [this] { calls_ += over_ ? 0 : 1; }, andLater);
        switch (fault_.kind) {
            case Fault::Kind::Errno:
                Platform::Virtual::failCall(row_.call.kind, static_cast<int>(fault_.value), row_.call.where);
                break;
            case Fault::Kind::Short:
                Platform::Virtual::shortenCall(row_.call.kind, static_cast<std::size_t>(fault_.value), row_.call.where);
                break;
            case Fault::Kind::Answer:
                Platform::Virtual::answerCall(row_.call.kind, fault_.value, row_.call.where);
                break;
        }
        errno = 0;
    }
    void end() { over_ = true; }
    bool struck() const { return calls_ > 0; }
    bool calledAgain() const { return calls_ > 1; }

  private:
    const FaultRow& row_;
    const Fault& fault_;
    int calls_ = 0;  // from the one that the fault strikes on
    bool over_ = false;
};

/// The exception's text as it stands in the document: without the place, and the same for every errno.
std::string generalText(const std::string& what, const Fault& fault) {
    std::string text = what.substr(what.find_first_of(' ', what.find_first_of("0123456789", what.find(':'))) + 1);
    const std::string error = strerror(static_cast<int>(fault.value));
    const auto at = text.find(error);
    if (fault.kind == Fault::Kind::Errno && at != text.npos) text.replace(at, error.size(), "<error>");
    return text;
}

Observed observe(const FaultRow& row, const Fault& fault) {
    World world;
    Trap trap(row, fault);
    Observed observed{Outcome::Ignored, row.text};
    try {
        row.run({world, [&] { trap.set(); }, [&] { trap.end(); }});
        observed.outcome = trap.calledAgain() ? Outcome::Retried : Outcome::Ignored;
    } catch (const std::runtime_error& error) {
        observed = {Outcome::Fatal, generalText(error.what(), fault)};
    }
    EXPECT_TRUE(trap.struck()) << "the call was never made";
    return observed;
}

std::string faultList(const Faults& faults) {
    const Fault& first = faults.front();
    if (first.kind == Fault::Kind::Short && faults.size() > 1) {
        return "cut short, " + std::to_string(first.value) + " to " + nameOf(faults.back());
    }
    std::string list;
    for (const auto& fault : faults) list += (list.empty() ? "" : ", ") + nameOf(fault);
    return list;
}

}  // namespace

Faults shorts(std::size_t from, std::size_t to) {
    Faults faults;
    for (std::size_t size = from; size <= to; ++size) faults.emplace_back(Fault::Kind::Short, static_cast<long>(size));
    return faults;
}

Faults answers(long value) {
    return {{Fault::Kind::Answer, value}};
}

void FaultTable::operation(const char* name, Phase phase) {
    operation_ = name;
    phase_ = phase;
}

void FaultTable::fatal(Operation run, const SeamCall& call, const Faults& faults, const char* text) {
    rows_.push_back({file_, operation_, phase_, Outcome::Fatal, run, call, faults, text});
}

void FaultTable::retried(Operation run, const SeamCall& call, const Faults& faults, const char* text) {
    rows_.push_back({file_, operation_, phase_, Outcome::Retried, run, call, faults, text});
}

void FaultTable::ignored(Operation run, const SeamCall& call, const Faults& faults, const char* text) {
    rows_.push_back({file_, operation_, phase_, Outcome::Ignored, run, call, faults, text});
}

const char* functionName(Call call) {
    static constexpr const char* names[] = {
        "open",         "close",     "read",       "write",       "writev",       "ioctl",       "fcntl",
        "ftruncate",    "fileSize",  "mmap",       "munmap",      "unlinkPath",   "poll",        "epollCreate",
        "epollControl", "epollWait", "schedYield", "shmOpen",     "shmUnlink",    "semOpen",     "semWait",
        "semPost",      "semClose",  "semUnlink",  "socket",      "connectUnix",  "bindUnix",    "listen",
        "accept",       "shutdown",  "sigaction",  "timerCreate", "timerSettime", "timerDelete", "sleepNanoseconds",
    };
    static_assert(std::size(names) == static_cast<std::size_t>(Call::Count_));
    return names[static_cast<std::size_t>(call)];
}

std::string runRow(const FaultRow& row) {
    std::string text = row.text;
    Outcome outcome = row.outcome;
    for (const auto& fault : row.faults) {
        SCOPED_TRACE(std::string(row.operation) + ": " + functionName(row.call.kind) + " " + row.call.detail + ", " +
                     nameOf(row.phase) + ", " + nameOf(fault));
        const Observed observed = observe(row, fault);
        EXPECT_STREQ(nameOf(observed.outcome), nameOf(row.outcome));
        EXPECT_EQ(observed.text, row.text);
        text = observed.text;
        outcome = observed.outcome;
    }
    const std::string quoted = outcome == Outcome::Fatal ? " `" + text + "`" : text.empty() ? "" : ": " + text;
    const std::string detail = row.call.detail[0] != '\0' ? std::string(" ") + row.call.detail : "";
    return std::string("| `") + row.operation + "` | `" + functionName(row.call.kind) + "`" + detail + " | " +
           nameOf(row.phase) + " | " + faultList(row.faults) + " | " + nameOf(outcome) + quoted + " |";
}
