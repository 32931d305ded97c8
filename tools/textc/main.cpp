// Checks the texts, makes the language tables of the build, and serves translators.
#include <CLI/CLI.hpp>
#include <cstdio>
#include <exception>
#include <iostream>

#include "tools/common/commandline.h"
#include "tools/common/textfile.h"
#include "tools/textc/exchange.h"
#include "tools/textc/textwriter.h"
#include "tools/texttable/texttable.h"

namespace {

struct Options {
    std::filesystem::path texts, path;
    std::string language, pseudo;
};

int check(const Options& options) {
    const TextTable table = TextTable::read(options.texts);
    const int used = static_cast<int>(table.texts().size());
    int free = 0;
    auto text = table.texts().begin();
    for (int key = 1; key < TextTable::keyCount; ++key) {
        if (text != table.texts().end() && text->key == key)
            ++text;
        else if (!TextTable::isReserved(key))
            ++free;
    }
    std::cout << used << " texts, " << TextTable::keyCount - used << " empty keys, " << free
              << " of them free for texts, " << table.languages().size() << " languages\n";
    return 0;
}

int generate(const Options& options) {
    const TextTable table = TextTable::read(options.texts);
    std::optional<std::size_t> pseudo;
    if (!options.pseudo.empty()) pseudo = table.language(options.pseudo);
    writeTexts(options.path, table, pseudo);
    return 0;
}

int missing(const Options& options) {
    const TextTable table = TextTable::read(options.texts);
    int count = 0;
    for (std::size_t i = 1; i < table.languages().size(); ++i)
        if (options.language.empty() || table.language(options.language) == i)
            count += listMissing(table, i, std::cout);
    std::cout << count << " missing\n";
    return count ? 2 : 0;
}

int exportSheet(const Options& options) {
    const TextTable table = TextTable::read(options.texts);
    writeIfChanged(options.path, exportLanguage(table, table.language(options.language)));
    return 0;
}

int importSheet(const Options& options) {
    std::cout << importLanguage(options.texts, options.language, options.path, std::cout) << " texts changed\n";
    TextTable::read(options.texts);
    return 0;
}

}  // namespace

int main(int argc, char** argv) try {
    CLI::App app("Checks the texts of the model, makes the language tables, exchanges languages with translators.",
                 "textc");
    Options options;
    int (*run)(const Options&) = nullptr;
    const auto command = [&](const char* name, const char* what, int (*function)(const Options&)) {
        CLI::App* added = app.add_subcommand(name, what);
        added->callback([&run, function] { run = function; });
        return added;
    };
    app.add_option("--texts", options.texts, "folder of the text files")->required();
    app.require_subcommand(1);
    command("check", "check all texts and count them", check);
    CLI::App* made = command("generate", "write the language tables as C++", generate);
    made->add_option("folder", options.path, "folder of generated sources")->required();
    made->add_option("--pseudo", options.pseudo, "language whose table is to hold the pseudo-language");
    command("missing", "list the texts without a translation", missing)
        ->add_option("language", options.language, "column of one language; all of them without it");
    CLI::App* out = command("export", "write one language as a spreadsheet (CSV)", exportSheet);
    CLI::App* in = command("import", "take the translations of a spreadsheet into the text files", importSheet);
    for (CLI::App* exchange : {out, in}) {
        exchange->add_option("language", options.language, "column of the language")->required();
        exchange->add_option("sheet", options.path, "the CSV file")->required();
    }
    if (const auto status = readCommandLine(app, argc, argv)) return *status;
    return run(options);
} catch (const std::exception& error) {
    std::fprintf(stderr, "textc: %s\n", error.what());
    return 1;
}
