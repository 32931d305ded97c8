#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace Unit {

/// The page that a built product starts with, changed from outside. The shipping program has no switch for that: a copy
/// of it gets another address in the one word of the model's constant data that names the start page. All places are
/// found by the symbols of the program's own file.
class StartPage {
  public:
    /// Throws Problem when `program` is no product with symbols.
    explicit StartPage(std::string program);

    /// Every page of the program, by name.
    const std::vector<std::string>& pages() const { return names_; }
    /// Throws Problem, with what may have been meant, when the program has no such page.
    void requirePage(const std::string& page) const;
    /// Writes a copy that starts with `page`. Throws Problem.
    void writeCopy(const std::string& page, const std::string& file) const;

  private:
    struct Page {
        std::string name;
        std::uint64_t address;
    };

    void readSymbols();
    void placeStart(std::uint64_t linkAddress, std::uint64_t linkSize);

    std::string program_;
    std::string bytes_;
    std::vector<Page> pages_;
    std::vector<std::string> names_;
    std::size_t startOffset_ = 0;  // of the word, in the file
};

}  // namespace Unit
