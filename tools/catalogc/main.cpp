#include <cstdio>
#include <exception>

#include "tools/catalogc/catalogue.h"
#include "tools/catalogc/checks.h"
#include "tools/catalogc/constantwriter.h"
#include "tools/catalogc/handlerwriter.h"
#include "tools/catalogc/layout.h"
#include "tools/catalogc/variablewriter.h"
#include "tools/texttable/texttable.h"

namespace {

int run(const std::filesystem::path& model, const std::filesystem::path& output) {
    const TextTable texts = TextTable::read(model / "texts");
    Problems problems;
    const Catalogue catalogue = Catalogue::read(model / "catalogue", &texts, problems);
    checkTexts(catalogue, texts, problems);
    if (!problems.none()) {
        std::fputs(problems.text().c_str(), stderr);
        return 1;
    }
    const Layout layout(catalogue);
    writeVariables(layout, output);
    writeHandler(layout, output);
    writeConstants(catalogue, output);
    writeServerHeader(catalogue, output);
    return 0;
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 3) {
        std::fputs(
            "usage: catalogc MODEL OUTPUT\n"
            "  checks MODEL/catalogue and writes what is made of it into OUTPUT\n",
            stderr);
        return 2;
    }
    try {
        return run(argv[1], argv[2]);
    } catch (const std::exception& error) {
        std::fprintf(stderr, "%s\n", error.what());
        return 1;
    }
}
