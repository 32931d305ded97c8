#include "tools/modelc/source.h"

#include <algorithm>

namespace Modelc {

SourceFile::SourceFile(std::string path, std::string text) : path_(std::move(path)), text_(std::move(text)) {
    lineStarts_.push_back(0);
    for (std::size_t i = 0; i < text_.size(); ++i)
        if (text_[i] == '\n') lineStarts_.push_back(i + 1);
}

std::size_t SourceFile::lineIndex(std::size_t offset) const {
    const auto after = std::upper_bound(lineStarts_.begin(), lineStarts_.end(), offset);
    return static_cast<std::size_t>(after - lineStarts_.begin()) - 1;
}

SourceFile::Position SourceFile::position(std::size_t offset) const {
    offset = std::min(offset, text_.size());
    const std::size_t line = lineIndex(offset);
    int column = 1;
    for (std::size_t i = lineStarts_[line]; i < offset; ++i)
        if ((static_cast<unsigned char>(text_[i]) & 0xc0U) != 0x80U) ++column;
    return {static_cast<int>(line) + 1, column};
}

std::string_view SourceFile::lineAt(std::size_t offset) const {
    const std::size_t start = lineStarts_[lineIndex(std::min(offset, text_.size()))];
    const std::size_t end = std::min(text_.find('\n', start), text_.size());
    return std::string_view(text_).substr(start, end - start);
}

}  // namespace Modelc
