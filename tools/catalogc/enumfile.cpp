#include "tools/catalogc/enumfile.h"

#include <algorithm>
#include <charconv>
#include <sstream>

#include "tools/common/textfile.h"
#include "tools/texttable/texttable.h"

namespace {

class EnumParser {
  public:
    EnumParser(const std::filesystem::path& path, const TextTable* texts, Problems& problems)
        : path_(path), texts_(texts), problems_(problems) {}

    std::vector<EnumType> parse(const std::string& content) {
        std::istringstream lines(content);
        for (std::string line; std::getline(lines, line);) {
            ++line_;
            if (line.find_first_not_of(" \t\r") == std::string::npos || line[0] == '#') continue;
            std::istringstream words(line);
            if (continues_)
                takeUsers(words);
            else if (line.rfind("enum ", 0) == 0)
                beginType(words);
            else if (types_.empty())
                wrong("a value before the first 'enum NAME = VARIABLES'");
            else
                takeEntry(line, words);
        }
        return std::move(types_);
    }

  private:
    void wrong(const std::string& message) { problems_.add({path_, line_}, message); }

    void beginType(std::istringstream& words) {
        std::string keyword, name, equals;
        words >> keyword >> name >> equals;
        if (equals != "=") return wrong("write 'enum NAME = VARIABLES'");
        types_.push_back({name, {}, {}, {path_, line_}});
        takeUsers(words);
    }

    void takeUsers(std::istringstream& words) {
        continues_ = false;
        for (std::string word; words >> word;) {
            if (word == "\\")
                continues_ = true;
            else
                types_.back().users.push_back(word);
        }
    }

    void takeEntry(const std::string& line, std::istringstream& words) {
        EnumEntry entry;
        std::string number, extra;
        words >> number >> entry.name >> entry.text;
        const auto [end, error] = std::from_chars(number.data(), number.data() + number.size(), entry.value);
        if (error != std::errc() || end != number.data() + number.size() || entry.text.empty())
            return wrong("write 'VALUE NameInCode text_name', with - for no text");
        entry.place = {path_, line_};
        if (words >> extra && extra == "hidden") entry.hidden = true;
        const std::size_t quote = line.find('"');
        if (quote != std::string::npos) entry.english = line.substr(quote + 1, line.rfind('"') - quote - 1);
        if (extra != "hidden" && !extra.empty() && extra[0] != '"')
            wrong("'" + extra + "' is no mark; only hidden is one");
        resolveText(entry);
        types_.back().entries.push_back(entry);
    }

    void resolveText(EnumEntry& entry) const {
        if (entry.text == "-") return entry.text.clear();
        const Text* text = texts_ != nullptr ? texts_->find(entry.text) : nullptr;
        if (text != nullptr) entry.textKey = static_cast<unsigned>(text->key);
    }

    std::filesystem::path path_;
    const TextTable* texts_;
    Problems& problems_;
    std::vector<EnumType> types_;
    int line_ = 0;
    bool continues_ = false;
};

}  // namespace

std::vector<EnumType> parseEnums(const std::filesystem::path& path, const std::string& content, const TextTable* texts,
                                 Problems& problems) {
    return EnumParser(path, texts, problems).parse(content);
}

std::vector<EnumType> readEnumFile(const std::filesystem::path& path, const TextTable* texts, Problems& problems) {
    return parseEnums(path, readTextFile(path), texts, problems);
}
