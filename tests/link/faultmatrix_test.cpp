#include "faultmatrix.h"

#include <errno.h>
#include <gtest/gtest.h>

#include <cctype>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <set>
#include <string>

namespace fs = std::filesystem;

namespace {

const fs::path root = TERN_SOURCE_DIR;
const fs::path document = root / "docs/faults.md";

FaultRows allRows() {
    FaultRows all;
    for (const auto& rows : {logRows(), sharedMemoryRows(), eventPollRows(), connectRows(), serverRows(), notifyRows(),
                             inputDeviceRows(), delayedOpenRows(), framebufferRows()}) {
        all.insert(all.end(), rows.begin(), rows.end());
    }
    return all;
}

std::string fileText(const fs::path& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

std::string runAndWrite(const FaultRows& rows) {
    std::string text =
        "# What a failing system call leads to\n\n"
        "Written by `tests/link`: every line was run, each fault of it alone, before it could stand here. Do not "
        "edit;\n"
        "run `TERN_UPDATE_FAULTS=1 build/release/bin/link-tests --gtest_filter='FaultMatrix.*'` and read what "
        "changed.\n\n"
        "*fatal*: a log line and `std::runtime_error` with that text behind the place, normally the end of the "
        "process;\n"
        "`<error>` is the text of the errno. *retried*: the same call is made again. *ignored*: the operation goes "
        "on.\n";
    std::string section;
    for (const auto& row : rows) {
        if (section != row.file) {
            section = row.file;
            text += "\n## `" + section +
                    "`\n\n| Operation | Call | Phase | Fault | Outcome |\n| --- | --- | --- | --- | --- |\n";
        }
        text += runRow(row) + "\n";
    }
    return text;
}

/// The functions of the seam that a source calls, but for the clock, which cannot fail.
std::set<std::string> seamCallsIn(const std::string& text) {
    const std::string seam = "Platform::";
    std::set<std::string> names;
    for (auto at = text.find(seam); at != text.npos; at = text.find(seam, at + 1)) {
        const auto begin = at + seam.size();
        auto end = begin;
        while (end < text.size() && std::isalnum(static_cast<unsigned char>(text[end])) != 0) ++end;
        const std::string name = text.substr(begin, end - begin);
        if (text[end] == '(' && name != "steadyNanoseconds") names.insert(name);
    }
    return names;
}

/// "file: function" of each call of the seam in the floors that the matrix covers.
std::set<std::string> callsInSources() {
    std::set<std::string> calls;
    for (const char* floor : {"apps/common", "apps/libs", "apps/gui/common"}) {
        for (const auto& entry : fs::recursive_directory_iterator(root / floor)) {
            if (!entry.is_regular_file()) continue;
            for (const auto& name : seamCallsIn(fileText(entry.path()))) {
                calls.insert(fs::relative(entry.path(), root).string() + ": " + name);
            }
        }
    }
    return calls;
}

}  // namespace

TEST(FaultMatrix, EveryRowHoldsAndTheDocumentIsCurrent) {
    const std::string text = runAndWrite(allRows());
    if (std::getenv("TERN_UPDATE_FAULTS") != nullptr && !HasFailure())
        std::ofstream(document, std::ios::binary) << text;
    EXPECT_TRUE(fileText(document) == text) << "docs/faults.md is stale; it tells how to write it anew";
}

TEST(FaultMatrix, EveryCallHasARowAndOneForAnInterruption) {
    std::set<std::string> covered;
    std::set<std::string> interrupted;
    for (const auto& row : allRows()) {
        const std::string name = std::string(row.file) + ": " + functionName(row.call.kind);
        covered.insert(name);
        for (const auto& fault : row.faults) {
            if (fault.kind == Fault::Kind::Errno && fault.value == EINTR) interrupted.insert(name);
        }
    }
    const auto calls = callsInSources();
    EXPECT_EQ(covered, calls);
    EXPECT_EQ(interrupted, calls);
}
