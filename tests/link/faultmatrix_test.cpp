#include "faultmatrix.h"

#include <errno.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <regex>
#include <set>
#include <string>

namespace fs = std::filesystem;

namespace {

const fs::path root = TERN_SOURCE_DIR;
const fs::path document = root / "docs/faults.md";

FaultRows allRows() {
    FaultRows all;
    for (const auto& rows :
         {logRows(), sharedMemoryRows(), eventPollRows(), serverRows(), inputDeviceRows(), framebufferRows()}) {
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

/// "file: function" of each call of the seam in the floors that the matrix covers.
std::set<std::string> callsInSources() {
    const std::regex call("Platform::([a-z][A-Za-z]+)\\(");
    std::set<std::string> calls;
    for (const char* floor : {"apps/common", "apps/libs", "apps/gui/common"}) {
        for (const auto& entry : fs::recursive_directory_iterator(root / floor)) {
            const std::string text = entry.is_regular_file() ? fileText(entry.path()) : "";
            for (std::sregex_iterator match(text.begin(), text.end(), call), end; match != end; ++match) {
                if ((*match)[1] != "steadyNanoseconds") {
                    calls.insert(fs::relative(entry.path(), root).string() + ": " + (*match)[1].str());
                }
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
        const std::string name = std::string(row.file) + ": " + functionName(row.call);
        covered.insert(name);
        for (const auto& fault : row.faults) {
            if (fault.kind == Fault::Kind::Errno && fault.value == EINTR) interrupted.insert(name);
        }
    }
    const auto calls = callsInSources();
    EXPECT_EQ(covered, calls);
    EXPECT_EQ(interrupted, calls);
}
