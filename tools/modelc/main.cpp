// The model compiler: reads the model's sources and writes C++ constant data, or tells about the model.
#include <CLI/CLI.hpp>
#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <memory>
#include <sstream>

#include "tools/common/commandline.h"
#include "tools/common/inputerror.h"
#include "tools/modelc/census.h"
#include "tools/modelc/description.h"
#include "tools/modelc/edits.h"
#include "tools/modelc/emit.h"
#include "tools/modelc/expand.h"
#include "tools/modelc/fitlint.h"
#include "tools/modelc/lint.h"
#include "tools/modelc/loadnames.h"
#include "tools/modelc/lower.h"
#include "tools/modelc/parser.h"
#include "tools/modelc/why.h"

namespace fs = std::filesystem;
using namespace Modelc;

namespace {

struct Options {
    fs::path model;
    std::vector<fs::path> sources;
    fs::path out;
    std::string why;
    std::string who;
    std::vector<std::string> failOn;
    bool census = false;
    bool lint = false;
    bool json = false;
    bool print = false;
};

/// A source and its path from the folder that was given.
struct SourcePath {
    fs::path path;
    fs::path relative;
};

/// Files as they are, folders as all model sources below them by name.
std::vector<SourcePath> sourceFiles(const std::vector<fs::path>& given) {
    std::vector<SourcePath> files;
    for (const auto& path : given) {
        if (!fs::is_directory(path)) {
            files.push_back({path, path.filename()});
            continue;
        }
        std::vector<fs::path> found;
        for (const auto& entry : fs::recursive_directory_iterator(path))
            if (entry.path().extension() == ".tern") found.push_back(entry.path());
        if (found.empty()) throw InputError(path, 0, "no model source is in this folder; their names end in .tern");
        std::sort(found.begin(), found.end());
        for (const auto& one : found) files.push_back({one, fs::relative(one, path)});
    }
    return files;
}

std::unique_ptr<SourceFile> readSource(const fs::path& path) {
    std::ifstream file(path, std::ios::binary);
    if (!file) throw InputError(path, 0, "this source cannot be read; is the path right?");
    std::ostringstream text;
    text << file.rdbuf();
    return std::make_unique<SourceFile>(path.string(), text.str());
}

/// What the program itself posts: the engine's own events, joystick and keys.
LintOptions lintOptions() {
    LintOptions options;
    for (unsigned id = 0; id <= 14; ++id) options.postedByProgram.insert(id);
    for (unsigned id = 131; id <= 134; ++id) options.postedByProgram.insert(id);
    for (unsigned id = 138; id <= 187; ++id) options.postedByProgram.insert(id);
    return options;
}

/// A reaction that waits for an event which nobody posts is hardly meant so.
void warnOfSilence(const ModelTree& model, const Lowered& lowered, const Names& names, const Explanation& explanation,
                   Diagnostics& diagnostics) {
    for (const auto& finding : lint(model, lowered, names, explanation, lintOptions()))
        if (finding.check == Check::neverPosted)
            diagnostics.warning(finding.span, finding.message, "fire it somewhere, or take the reaction away");
}

int tell(const Options& options, const ModelTree& model, const Lowered& lowered, const Names& names,
         const Explanation& explanation) {
    if (options.census) printCensus(model, lowered, names, std::cout);
    if (options.print) print(lowered, std::cout);
    if (options.lint) {
        auto findings = lint(model, lowered, names, explanation, lintOptions());
        const auto unfit = lintTextFit(names, explanation);
        findings.insert(findings.end(), unfit.begin(), unfit.end());
        options.json ? printLintJson(findings, std::cout) : printLint(findings, std::cout);
        for (const auto& finding : findings)
            if (std::find(options.failOn.begin(), options.failOn.end(), finding.check) != options.failOn.end())
                return 1;
    }
    if (!options.why.empty() && !printWhy(explanation, options.why, std::cout)) {
        std::cerr << "Nothing is called " << options.why << "; write PAGE.WIDGET or PAGE.WIDGET.property.\n";
        return 1;
    }
    if (!options.who.empty() && !printWho(explanation, lowered, options.who, std::cout)) {
        std::cerr << "The model does not use " << options.who << ".\n";
        return 1;
    }
    return 0;
}

void writeDescription(const fs::path& path, const std::string& text) {
    std::ofstream file(path, std::ios::binary);
    if (!(file << text << "\n").flush()) throw InputError(path, 0, "this file cannot be written; is there room?");
}

int run(const Options& options) {
    const Names names = loadNames(options.model);
    Diagnostics diagnostics;
    std::vector<std::unique_ptr<SourceFile>> files;
    std::vector<SourceTree> trees;
    std::vector<EmittedSource> emitted;
    for (const auto& source : sourceFiles(options.sources)) {
        files.push_back(readSource(source.path));
        trees.push_back(parse(*files.back(), diagnostics));
        emitted.push_back({files.back().get(), stemOf(source.relative)});
    }
    ModelTree model = expand(trees, diagnostics);
    expandEdits(model, diagnostics);
    Explanation explanation;
    const Lowered lowered = lower(model, names, diagnostics, explanation);
    if (!diagnostics.hasErrors()) warnOfSilence(model, lowered, names, explanation, diagnostics);
    diagnostics.print(std::cerr);
    if (diagnostics.hasErrors()) {
        std::cerr << diagnostics.errorCount() << (diagnostics.errorCount() == 1 ? " error\n" : " errors\n");
        return 1;
    }
    if (!options.out.empty()) {
        emit(lowered, emitted, options.out);
        writeDescription(options.out / "description.json", describeModel(model, lowered, names, explanation));
    }
    return tell(options, model, lowered, names, explanation);
}

}  // namespace

int main(int argc, char** argv) try {
    Options options;
    CLI::App app("Compiles the model's sources, or tells about the model.", "modelc");
    app.add_option("--model", options.model, "folder of catalogue, texts, icons and fonts")->required();
    app.add_option("--out", options.out, "folder of the generated C++");
    app.add_flag("--census", options.census, "what the model is made of");
    app.add_flag("--lint", options.lint, "what works and is hardly meant so");
    app.add_flag("--json", options.json, "the lint's findings as JSON");
    app.add_option("--fail-on", options.failOn, "checks of the lint that end with status 1")
        ->allow_extra_args(false)
        ->check(CLI::IsMember(std::vector<std::string>(Check::all.begin(), Check::all.end())));
    app.add_flag("--print", options.print, "the lowered form");
    app.add_option("--why", options.why, "PAGE.WIDGET[.property]: which rules decide it");
    app.add_option("--who", options.who, "VARIABLE: what it drives and what writes it");
    app.add_option("sources", options.sources, "model sources, or folders of them")->required();
    if (const auto status = readCommandLine(app, argc, argv)) return *status;
    return run(options);
} catch (const std::exception& problem) {
    std::cerr << problem.what() << "\n";
    return 1;
}
