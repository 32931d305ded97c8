// Sources that carry their expected errors: "//! words" on a line asks for a finding there whose message or help holds
// the words. Every finding must be asked for and every ask must be met.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include "fixture.h"

namespace fs = std::filesystem;

namespace Modelc {
namespace {

struct Ask {
    int line;
    std::string words;
    bool met = false;
};

std::vector<Ask> asksOf(const std::string& text) {
    std::vector<Ask> asks;
    std::istringstream lines(text);
    std::string line;
    for (int number = 1; std::getline(lines, line); ++number)
        for (std::size_t at = line.find("//!"); at != std::string::npos; at = line.find("//!", at + 3)) {
            const std::size_t end = std::min(line.find("//!", at + 3), line.size());
            std::string words = line.substr(at + 3, end - at - 3);
            words.erase(0, words.find_first_not_of(' '));
            words.erase(words.find_last_not_of(' ') + 1);
            asks.push_back({number, words});
        }
    return asks;
}

void check(const fs::path& path) {
    std::ifstream file(path);
    const std::string text((std::istreambuf_iterator<char>(file)), std::istreambuf_iterator<char>());
    const Compilation compilation(text);
    auto asks = asksOf(text);
    ASSERT_FALSE(asks.empty()) << path << " asks for nothing";
    for (const auto& finding : compilation.diagnostics.all()) {
        const int line = finding.span.file != nullptr ? finding.span.file->position(finding.span.begin).line : 0;
        const std::string said = finding.message + " " + finding.help;
        const auto ask = std::find_if(asks.begin(), asks.end(), [&](const Ask& one) {
            return !one.met && one.line == line && said.find(one.words) != std::string::npos;
        });
        if (ask == asks.end())
            ADD_FAILURE() << path << ":" << line << ": not asked for: " << said;
        else
            ask->met = true;
    }
    for (const auto& ask : asks)
        EXPECT_TRUE(ask.met) << path << ":" << ask.line << ": nothing said of \"" << ask.words << "\"";
}

TEST(Errors, AreFoundWhereTheyAreWithTheMend) {
    int files = 0;
    for (const auto& entry : fs::directory_iterator(fs::path(TERN_SOURCE_DIR) / "tests/modelc/errors")) {
        check(entry.path());
        ++files;
    }
    EXPECT_GT(files, 4);
}

TEST(Errors, ShowTheLineTheSmallestSpanAndTheWayThroughTemplates) {
    const Compilation compilation(
        "template Row(label: text) { Label { text: label } }\n"
        "page P { Row { label: Texts.rek } }\n");
    EXPECT_EQ(compilation.messages(),
              "test.tern:2:23: error: there is no text 'Texts.rek'\n"
              "    page P { Row { label: Texts.rek } }\n"
              "                          ^~~~~~~~~\n"
              "    help: did you mean 'rec'?\n"
              "test.tern:2:10: note: in an expansion of 'Row'\n"
              "    page P { Row { label: Texts.rek } }\n"
              "             ^~~\n");
}

TEST(Errors, OfHostileSourcesEndInAMessage) {
    const std::string deep(5000, '(');
    for (const std::string& text :
         {std::string("page P { x: ") + deep, std::string("page {{{{{{"), std::string("\"never"),
          std::string("/* never"), std::string("template A { B {} } template B { A {} } page P { A {} }"),
          std::string("page P { for i in 0..3000000 { Label { } } }"),
          std::string("page P { for i in 0..2000 { for j in 0..2000 { Label { } } } }"),
          std::string("\xff\xfe\0page", 7), std::string("page P { Label { x: 99999999999999999999 } }"),
          std::string("rule a: color = b rule b: color = a page P { background: a }")}) {
        const Compilation compilation(text);
        EXPECT_TRUE(compilation.diagnostics.hasErrors()) << text.substr(0, 60);
    }
}

}  // namespace
}  // namespace Modelc
