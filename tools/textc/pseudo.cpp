#include "tools/textc/pseudo.h"

#include <cctype>
#include <map>

namespace {

const std::map<char, const char*> accented = {{'a', "á"}, {'c', "ç"}, {'e', "é"}, {'g', "ğ"}, {'i', "í"},
                                              {'l', "ł"}, {'n', "ñ"}, {'o', "ö"}, {'s', "š"}, {'u', "ü"},
                                              {'y', "ý"}, {'z', "ž"}, {'A', "Å"}, {'C', "Ç"}, {'E', "É"},
                                              {'I', "Í"}, {'N', "Ñ"}, {'O', "Ö"}, {'S', "Š"}, {'U', "Ü"}};

std::string pseudoLine(const std::string& line) {
    if (line.empty()) return line;
    std::string result = "[";
    std::size_t letters = 0;
    for (std::size_t i = 0; i < line.size(); ++i) {
        const auto found = accented.find(line[i]);
        result += found == accented.end() ? std::string(1, line[i]) : found->second;
        if (std::isalpha(static_cast<unsigned char>(line[i]))) ++letters;
    }
    return result + std::string((letters + 2) / 3, '~') + "]";
}

}  // namespace

std::string pseudoText(const std::string& english) {
    std::string result, line;
    for (const char c : english) {
        if (c != '\n') {
            line += c;
            continue;
        }
        result += pseudoLine(line) + "\n";
        line.clear();
    }
    return result + pseudoLine(line);
}
