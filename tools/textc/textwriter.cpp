#include "tools/textc/textwriter.h"

#include <set>
#include <sstream>

#include "tools/common/textfile.h"
#include "tools/textc/pseudo.h"

namespace {

constexpr char marker[] = "// Made by textc from model/texts. Do not edit.\n";

// The names are made for the model language, which has no keywords of C++.
std::string identifier(const std::string& name) {
    static const std::set<std::string> keywords = {
        "and",      "asm",     "auto",     "bool",      "break",    "case",     "catch",     "char",   "class",
        "concept",  "const",   "continue", "default",   "delete",   "do",       "double",    "else",   "enum",
        "explicit", "export",  "extern",   "false",     "float",    "for",      "friend",    "goto",   "if",
        "import",   "inline",  "int",      "long",      "module",   "mutable",  "namespace", "new",    "not",
        "operator", "or",      "private",  "protected", "public",   "register", "requires",  "return", "short",
        "signed",   "sizeof",  "static",   "struct",    "switch",   "template", "this",      "throw",  "true",
        "try",      "typedef", "typename", "union",     "unsigned", "using",    "virtual",   "void",   "volatile",
        "while",    "xor"};
    return keywords.contains(name) ? name + "_" : name;
}

std::string literal(const std::string& text) {
    std::string result = "\"";
    for (const char c : text) {
        if (c == '\n')
            result += "\\n";
        else if (c == '\t')
            result += "\\t";
        else if (c == '"' || c == '\\')
            result += std::string("\\") + c;
        else
            result += c;
    }
    return result + "\"";
}

std::string header(const TextTable& texts) {
    std::ostringstream out;
    out << marker
        << "#pragma once\n\n#include \"embedded-gui-engine/textid.h\"\n#include \"embedded-gui-engine/texttable.h\"\n\n"
        << "/// The texts of the product: keys by name, and the tables that hold them.\nnamespace Texts {\n\n"
        << "inline constexpr int keyCount = " << TextTable::keyCount << ";\n"
        << "inline constexpr int languageCount = " << texts.languages().size() << ";\n\n"
        << "/// By language, then by key. No entry is null; a key without a text has \"\".\n"
        << "extern const Engine::LanguageTexts tables[languageCount];\n\n";
    for (const Text& text : texts.texts())
        out << "inline constexpr Engine::TextId " << identifier(text.name) << "{" << text.key << "};\n";
    out << "\n}  // namespace Texts\n";
    return out.str();
}

void writeTable(std::ostream& out, const TextTable& texts, std::size_t language, bool isPseudo) {
    out << "constexpr const char* " << texts.languages()[language].column << "[Texts::keyCount] = {\n";
    auto text = texts.texts().begin();
    for (int key = 0; key < TextTable::keyCount; ++key) {
        std::string shown;
        if (text != texts.texts().end() && text->key == key) {
            shown = isPseudo ? pseudoText(text->english()) : text->in(language);
            ++text;
        }
        out << "    " << literal(shown) << ",\n";
    }
    out << "};\n\n";
}

}  // namespace

void writeTexts(const std::filesystem::path& folder, const TextTable& texts, std::optional<std::size_t> pseudo) {
    std::ostringstream out;
    out << marker << "#include \"model/texts.h\"\n\nnamespace {\n\n";
    for (std::size_t i = 0; i < texts.languages().size(); ++i) writeTable(out, texts, i, pseudo == i);
    out << "}  // namespace\n\nconstinit const Engine::LanguageTexts Texts::tables[languageCount] = {";
    for (std::size_t i = 0; i < texts.languages().size(); ++i) out << (i ? ", " : "") << texts.languages()[i].column;
    out << "};\n";
    writeIfChanged(folder / "model/texts.h", header(texts));
    writeIfChanged(folder / "model/texts.cpp", out.str());
}
