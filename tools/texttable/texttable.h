#pragma once

#include <filesystem>
#include <functional>
#include <map>
#include <string>
#include <vector>

/// A language of the product. Its position in the list is its number.
struct Language {
    std::string column;   ///< name of the column in the text files
    std::string english;  ///< English name, for messages
    std::string own;      ///< its name in itself
};

/// One text in all languages, in UTF-8, escapes resolved. An empty translation is a missing one.
struct Text {
    int key = 0;
    std::string name;  ///< letters, digits and underscores, a letter first
    std::vector<std::string> translations;
    std::filesystem::path file;
    int line = 0;

    std::string place() const { return file.string() + ":" + std::to_string(line); }
    const std::string& english() const { return translations.front(); }
    /// The translation, or the English text where it is missing.
    const std::string& in(std::size_t language) const {
        return translations[language].empty() ? english() : translations[language];
    }
};

/// All texts of the model: every .tsv file of a folder, each with the columns key, name and one a language. The
/// languages stand in languages.tsv of the same folder; English is the first.
class TextTable {
  public:
    /// Keys run from 0 to keyCount - 1; keys without a row are empty texts, 0 always is.
    static constexpr int keyCount = 1454;
    /// Together with key 0 these keys stay empty: their rows take their text at run time. One of them has a text.
    static constexpr int firstReserved = 988, lastReserved = 1450, textWithinReserved = 1000;
    static constexpr bool isReserved(int key) {
        return key >= firstReserved && key <= lastReserved && key != textWithinReserved;
    }

    /// Throws InputError with all that is wrong, one line a problem: keys out of range, reserved or used twice, names
    /// that are no identifiers or used twice, translations whose placeholders (%0, %1 ...) differ from the English
    /// ones.
    static TextTable read(const std::filesystem::path& folder);

    const std::vector<Language>& languages() const { return languages_; }
    /// By rising key.
    const std::vector<Text>& texts() const { return texts_; }
    /// Null if no text has the name.
    const Text* find(const std::string& name) const;
    /// The position of the language of this column. Throws InputError if there is none.
    std::size_t language(const std::string& column) const;

    using CharacterVisit = std::function<void(const Text&, const Language&, char32_t)>;
    /// Each character but the line feed, of each text in each language.
    void eachCharacter(const CharacterVisit& visit) const;

    /// Rewrites the files of `folder`: `change` sees each text in the order of the files and may alter its
    /// translations. Everything else, comments included, stays as it is.
    static void rewrite(const std::filesystem::path& folder, const std::function<void(Text&)>& change);

  private:
    void readLanguages(const std::filesystem::path& path);
    void readTexts(const std::filesystem::path& path);
    std::string problems() const;

    std::filesystem::path folder_;
    std::vector<Language> languages_;
    std::vector<Text> texts_;
    std::map<std::string, std::size_t> byName_;
};

/// The placeholders of a text in ascending order, "%0" as 0; one that stands twice is listed twice.
std::vector<int> placeholdersOf(const std::string& text);
