#include "apps/gui/main/options.h"

#include <unistd.h>

#include <cstdlib>

std::optional<Options> parseOptions(int argc, char** argv, std::FILE* errors) {
    Options options;
    optind = 1;
    for (int option = ::getopt(argc, argv, "rt:"); option != -1; option = ::getopt(argc, argv, "rt:")) {
        if (option == 't') {
            options.verifyTexts = true;
            options.language = static_cast<int>(std::strtol(optarg, nullptr, 10));
        } else if (option != 'r') {
            std::fprintf(errors, "Usage: %s [OPTION]...\n", argv[0]);
            std::fprintf(errors, "  -t INDEX         run text translation test for language with INDEX\n");
            return std::nullopt;
        }
    }
    return options;
}
