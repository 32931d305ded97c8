// Arbitrary bytes as a model source: every pass may report, none may crash, hang or run out of memory.
#include <cstddef>
#include <cstdint>
#include <string>

#include "tools/modelc/edits.h"
#include "tools/modelc/expand.h"
#include "tools/modelc/lower.h"
#include "tools/modelc/parser.h"

using namespace Modelc;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const Names names;
    const SourceFile file("fuzz.tern", std::string(reinterpret_cast<const char*>(data), size));
    Diagnostics diagnostics;
    std::vector<SourceTree> trees;
    trees.push_back(parse(file, diagnostics));
    ModelTree model = expand(trees, diagnostics);
    expandEdits(model, diagnostics);
    Explanation explanation;
    lower(model, names, diagnostics, explanation);
    return 0;
}
