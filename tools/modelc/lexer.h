#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "tools/modelc/diagnostics.h"
#include "tools/modelc/source.h"

namespace Modelc {

enum class TokenKind {
    Name,     ///< identifier; may hold pasted parts in braces: Var{Axis}Motor
    Integer,  ///< with an optional unit: 500ms, 2s
    Float,
    String,
    Color,  ///< #rrggbb (opaque) or #aarrggbb
    Punctuation,
    End
};

struct Token {
    TokenKind kind = TokenKind::End;
    Span span;
    std::string text;          ///< the name, the punctuation, or the string's contents with escapes resolved
    std::int64_t integer = 0;  ///< of Integer (milliseconds when `isTime`) and Color (0xaarrggbb)
    double number = 0;         ///< of Float
    bool isTime = false;       ///< the integer carried the unit ms or s
    bool startsLine = false;   ///< nothing but white space stands before it on its line

    bool is(std::string_view punctuation) const { return kind == TokenKind::Punctuation && text == punctuation; }
    bool isWord(std::string_view word) const { return kind == TokenKind::Name && text == word; }
};

/// All tokens of a source, closed by one End. Malformed pieces are reported and left out.
std::vector<Token> lex(const SourceFile& file, Diagnostics& diagnostics);

}  // namespace Modelc
