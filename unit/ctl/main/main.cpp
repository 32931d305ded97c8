// unitctl: one command line over a virtual unit.
#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <string>

#include "unit/ctl/main/commandline.h"
#include "unit/ctl/nearest.h"

namespace {

using namespace Unit;

constexpr int exitUsage = 2;

void complain(const std::string& problems) {
    for (std::size_t start = 0; start < problems.size();) {
        const auto end = std::min(problems.find('\n', start), problems.size());
        if (end > start) std::fprintf(stderr, "unitctl: %s\n", problems.substr(start, end - start).c_str());
        start = end + 1;
    }
}

/// The verb that was given, with a blank behind it.
std::string verbOf(const CLI::App& app) {
    const auto given = app.get_subcommands();
    return given.empty() ? "" : given.front()->get_name() + " ";
}

/// What CLI11 says about a word that is no verb does not name what was meant.
std::string unknownVerb(const CLI::App& app, int argc, char** argv) {
    const auto names = verbNames(app);
    for (int i = 1; i < argc; ++i) {
        const std::string word = argv[i];
        if (word == "--instance") ++i;
        if (word.starts_with('-')) continue;
        if (std::ranges::find(names, word) != names.end()) return "";
        return "There is no verb \"" + word + "\"." + suggestion(word, names) + " See them: unitctl --help";
    }
    return "";
}

}  // namespace

int main(int argc, char** argv) {
    Arguments given;
    CommandLine line(given);
    try {
        if (const auto problem = unknownVerb(line.app, argc, argv); !problem.empty()) {
            complain(problem);
            return exitUsage;
        }
        line.app.parse(argc, argv);
        return EXIT_SUCCESS;
    } catch (const CLI::Success& help) {
        return line.app.exit(help);
    } catch (const CLI::RuntimeError& told) {
        return told.get_exit_code();
    } catch (const CLI::ParseError& error) {
        complain(std::string(error.what()) + ". See: unitctl " + verbOf(line.app) + "--help");
        return exitUsage;
    } catch (const std::exception& problem) {
        complain(problem.what());
        return EXIT_FAILURE;
    }
}
