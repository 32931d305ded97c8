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
};

std::vector<Fault> errors(const std::vector<int>& values);
std::vector<Fault> shorts(std::size_t from, std::size_t to);
std::vector<Fault> answers(long value);

/// What a row's operation runs in.
struct Rig {
    World& world;
    std::function<void()> arm;   ///< sets the fault: what the operation needs comes before, the operation behind
    std::function<void()> done;  ///< the operation is over; to be called when more such calls follow in the same run
};

struct FaultRow {
    const char* file = "";  ///< where the call stands
    const char* operation = "";
    Phase phase = Phase::Running;
    Platform::Virtual::Call call = Platform::Virtual::Call::Open;
    const char* detail = "";  ///< which of several such calls, for the reader
    Platform::Virtual::Where where = {};
    std::vector<Fault> faults = {};
    Outcome outcome = Outcome::Fatal;
    /// Of a fatal row the exception's text without its place, "<error>" standing for the text of the errno; otherwise
    /// the effect in words, which `run` checks.
    const char* text = "";
    void (*run)(const Rig& rig) = nullptr;
};

using FaultRows = std::vector<FaultRow>;

FaultRows logRows();
FaultRows sharedMemoryRows();
FaultRows eventPollRows();
FaultRows connectRows();
FaultRows serverRows();
FaultRows inputDeviceRows();
FaultRows framebufferRows();

/// The name of the seam's function.
const char* functionName(Platform::Virtual::Call call);

/// Runs every fault of the row, each in a fresh instance; a mismatch is a test failure. The row's line of the document.
std::string runRow(const FaultRow& row);
