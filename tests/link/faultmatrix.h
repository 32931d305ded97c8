#pragma once

#include <functional>
#include <string>
#include <vector>

#include "platform/virtual/faults.h"
#include "world.h"

// The fault matrix: each row is a case that runs. It makes one system call of one operation fail in every way listed,
// watches what the operation does, compares that with the row, and only then may the row stand in docs/faults.md.

enum class Phase { StartUp, Running };

enum class Outcome {
    Fatal,    ///< std::runtime_error with the row's text
    Retried,  ///< the operation makes the same call again
    Ignored,  ///< the operation goes on without
};

struct Fault {
    enum class Kind { Errno, Short, Answer } kind;
    long value;  ///< an errno, the bytes that move at most, or what the call returns

    Fault(int error) : kind(Kind::Errno), value(error) {}
    Fault(Kind given, long what) : kind(given), value(what) {}
};
using Faults = std::vector<Fault>;

Faults shorts(std::size_t from, std::size_t to);
Faults answers(long value);

/// A call of the seam, told from the others of its kind.
struct SeamCall {
    Call kind;
    const char* detail;  ///< which of several such calls, for the reader
    Platform::Virtual::Where where;

    SeamCall(Call given, Platform::Virtual::Where which = {}) : SeamCall(given, "", which) {}
    SeamCall(Call given, const char* told, Platform::Virtual::Where which = {})
        : kind(given), detail(told), where(which) {}
};

/// What a row's operation runs in.
struct Rig {
    World& world;
    std::function<void()> arm;   ///< sets the fault: what the operation needs comes before, the operation behind
    std::function<void()> done;  ///< the operation is over; to be called when more such calls follow in the same run
};

using Operation = void (*)(const Rig& rig);

struct FaultRow {
    const char* file;  ///< where the call stands
    const char* operation;
    Phase phase;
    Outcome outcome;
    Operation run;
    SeamCall call;
    Faults faults;
    /// Of a fatal row the exception's text without its place, "<error>" standing for the text of the errno; otherwise
    /// the effect in words, which `run` checks.
    const char* text;
};
using FaultRows = std::vector<FaultRow>;

/// The rows of one file, an operation after the other.
class FaultTable {
  public:
    explicit FaultTable(const char* file) : file_(file) {}

    /// The rows that follow are of this operation.
    void operation(const char* name, Phase phase);
    void fatal(Operation run, const SeamCall& call, const Faults& faults, const char* text);
    void retried(Operation run, const SeamCall& call, const Faults& faults, const char* text = "");
    void ignored(Operation run, const SeamCall& call, const Faults& faults, const char* text = "");

    const FaultRows& rows() const { return rows_; }

  private:
    const char* file_;
    const char* operation_ = "";
    Phase phase_ = Phase::StartUp;
    FaultRows rows_;
};

FaultRows logRows();
FaultRows sharedMemoryRows();
FaultRows eventPollRows();
FaultRows connectRows();
FaultRows serverRows();
FaultRows notifyRows();
FaultRows inputDeviceRows();
FaultRows delayedOpenRows();
FaultRows framebufferRows();

/// The name of the seam's function.
const char* functionName(Call call);

/// Runs every fault of the row, each in a fresh instance; a mismatch is a test failure. The row's line of the document.
std::string runRow(const FaultRow& row);
