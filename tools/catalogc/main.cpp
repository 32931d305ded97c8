#include <cstdio>
#include <exception>
#include <string_view>

#include "tools/catalogc/catalogue.h"
#include "tools/catalogc/checks.h"
#include "tools/catalogc/constantwriter.h"
#include "tools/catalogc/handlerwriter.h"
#include "tools/catalogc/layout.h"
#include "tools/catalogc/variablewriter.h"
#include "tools/texttable/texttable.h"

namespace {

/// Whether texts that enums name must have a row.
enum class Texts { Needed, MayMiss };

int run(const std::filesystem::path& model, const std::filesystem::path& output, Texts demand) {
    const TextTable texts = TextTable::read(model / "texts");
    Problems problems;
    const Catalogue catalogue = Catalogue::read(model / "catalogue", &texts, problems);
    if (demand == Texts::Needed) checkTexts(catalogue, problems);
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
    const bool mayMiss = argc == 4 && std::string_view(argv[1]) == "--texts-may-miss";
    if (argc != 3 && !mayMiss) {
        std::fputs(
            "usage: catalogc [--texts-may-miss] MODEL OUTPUT\n"
            "  checks MODEL/catalogue and writes what is made of it into OUTPUT\n",
            stderr);
        return 2;
    }
    try {
        return run(argv[argc - 2], argv[argc - 1], mayMiss ? Texts::MayMiss : Texts::Needed);
    } catch (const std::exception& error) {
        std::fprintf(stderr, "%s\n", error.what());
        return 1;
    }
}
