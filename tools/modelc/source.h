#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace Modelc {

/// One source text. Lives as long as the compilation: spans, tokens and trees point into it.
class SourceFile {
  public:
    SourceFile(std::string path, std::string text);

    const std::string& path() const { return path_; }
    std::string_view text() const { return text_; }

    struct Position {
        int line = 1;    ///< from 1
        int column = 1;  ///< from 1, counted in characters, not in bytes
    };
    Position position(std::size_t offset) const;
    /// The line that holds `offset`, without its line feed.
    std::string_view lineAt(std::size_t offset) const;

  private:
    std::size_t lineIndex(std::size_t offset) const;

    std::string path_;
    std::string text_;
    std::vector<std::size_t> lineStarts_;
};

/// A piece of a source: bytes `begin` up to, not including, `end`. `file` is null for what no source says.
struct Span {
    const SourceFile* file = nullptr;
    std::size_t begin = 0;
    std::size_t end = 0;

    std::string_view text() const {
        return file != nullptr ? file->text().substr(begin, end - begin) : std::string_view{};
    }
};

/// From the start of `first` to the end of `last`, which must be of one file.
inline Span join(Span first, Span last) {
    return {first.file, first.begin, last.end};
}

}  // namespace Modelc
