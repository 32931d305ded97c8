#pragma once

#include <CLI/CLI.hpp>
#include <cstdio>
#include <optional>
#include <string>

/// Reads a tool's command line. The status to end with when it is wrong (2, after a line on stderr that says what) or
/// asks for help (0); nothing when the tool is to go on.
inline std::optional<int> readCommandLine(CLI::App& app, int argc, char** argv) try {
    app.parse(argc, argv);
    return std::nullopt;
} catch (const CLI::Success& help) {
    return app.exit(help);
} catch (const CLI::ParseError& error) {
    constexpr int wrongCommandLine = 2;
    // A word that nobody knows says more than what is missing in its place.
    const auto unknown = app.remaining();
    const std::string problem = unknown.empty() ? error.what() : "There is no \"" + unknown.front() + "\"";
    const char* name = app.get_name().c_str();
    std::fprintf(stderr, "%s: %s. See: %s --help\n", name, problem.c_str(), name);
    return wrongCommandLine;
}
