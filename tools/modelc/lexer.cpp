#include "tools/modelc/lexer.h"

#include <array>
#include <cctype>
#include <charconv>
#include <optional>

namespace Modelc {

namespace {

bool startsName(char c) {
    return std::isalpha(static_cast<unsigned char>(c)) != 0 || c == '_';
}
bool continuesName(char c) {
    return std::isalnum(static_cast<unsigned char>(c)) != 0 || c == '_';
}
bool isDigit(char c) {
    return std::isdigit(static_cast<unsigned char>(c)) != 0;
}

class Lexer {
  public:
    Lexer(const SourceFile& file, Diagnostics& diagnostics)
        : file_(file), text_(file.text()), diagnostics_(diagnostics) {}

    std::vector<Token> run() {
        while (skipBlanks(), at_ < text_.size()) {
            const std::size_t begin = at_;
            if (startsName(peek()) || pastesBehindDot())
                name();
            else if (isDigit(peek()))
                number();
            else if (peek() == '"')
                string();
            else if (peek() == '#')
                color();
            else
                punctuation();
            if (at_ == begin) ++at_;
        }
        push(TokenKind::End, text_.size());
        return std::move(tokens_);
    }

  private:
    char peek(std::size_t ahead = 0) const { return at_ + ahead < text_.size() ? text_[at_ + ahead] : '\0'; }
    Span spanFrom(std::size_t begin) const { return {&file_, begin, at_}; }

    Token& push(TokenKind kind, std::size_t begin) {
        Token token;
        token.kind = kind;
        token.span = spanFrom(begin);
        token.startsLine = startsLine_;
        startsLine_ = false;
        tokens_.push_back(std::move(token));
        return tokens_.back();
    }

    void skipBlanks() {
        for (;;) {
            if (peek() == '\n') {
                startsLine_ = true;
                ++at_;
            } else if (peek() != '\0' && std::isspace(static_cast<unsigned char>(peek())) != 0) {
                ++at_;
            } else if (peek() == '/' && peek(1) == '/') {
                while (at_ < text_.size() && peek() != '\n') ++at_;
            } else if (peek() == '/' && peek(1) == '*') {
                blockComment();
            } else {
                return;
            }
        }
    }

    void blockComment() {
        const std::size_t begin = at_;
        const std::size_t end = text_.find("*/", at_ + 2);
        if (end == std::string_view::npos) {
            diagnostics_.error({&file_, begin, begin + 2}, "this comment never ends", "close it with */");
            at_ = text_.size();
            return;
        }
        at_ = end + 2;
    }

    /// The length of a pasted part "{Name}" that begins here, 0 when there is none.
    std::size_t pastedLength() const {
        if (peek() != '{' || !startsName(peek(1))) return 0;
        std::size_t length = 2;
        while (continuesName(peek(length))) ++length;
        return peek(length) == '}' ? length + 1 : 0;
    }

    /// "Texts.{word}": a name may begin with a pasted part behind a point only, where no block can open.
    bool pastesBehindDot() const { return at_ > 0 && text_[at_ - 1] == '.' && pastedLength() > 0; }

    void name() {
        const std::size_t begin = at_;
        for (;;) {
            if (continuesName(peek()))
                ++at_;
            else if (const std::size_t pasted = pastedLength(); pasted > 0)
                at_ += pasted;
            else
                break;
        }
        Token& token = push(TokenKind::Name, begin);
        token.text = token.span.text();
    }

    void number() {
        const std::size_t begin = at_;
        while (isDigit(peek())) ++at_;
        if (peek() == '.' && isDigit(peek(1))) {
            ++at_;
            while (isDigit(peek())) ++at_;
            Token& token = push(TokenKind::Float, begin);
            token.text = token.span.text();
            token.number = std::stod(token.text.size() > 60 ? token.text.substr(0, 60) : token.text);
            return;
        }
        const std::size_t digitsEnd = at_;
        while (continuesName(peek())) ++at_;
        integer(begin, digitsEnd);
    }

    void integer(std::size_t begin, std::size_t digitsEnd) {
        const std::string_view unit = text_.substr(digitsEnd, at_ - digitsEnd);
        std::int64_t value = 0;
        const auto parsed = std::from_chars(text_.data() + begin, text_.data() + digitsEnd, value);
        if (parsed.ec != std::errc() || value > 0xffffffffLL) {
            diagnostics_.error(spanFrom(begin), "this number is too large", "numbers have 32 bits");
            value = 0;
        }
        if (!unit.empty() && unit != "ms" && unit != "s")
            diagnostics_.error({&file_, digitsEnd, at_}, "'" + std::string(unit) + "' is no unit",
                               "numbers are plain, or times in ms or s");
        Token& token = push(TokenKind::Integer, begin);
        token.text = token.span.text();
        token.isTime = unit == "ms" || unit == "s";
        token.integer = unit == "s" ? value * 1000 : value;
    }

    std::optional<char> escape(char c) const {
        switch (c) {
            case 'n': return '\n';
            case 't': return '\t';
            case '"': return '"';
            case '\\': return '\\';
            default: return std::nullopt;
        }
    }

    void string() {
        const std::size_t begin = at_++;
        std::string contents;
        while (at_ < text_.size() && peek() != '"' && peek() != '\n') {
            if (peek() != '\\') {
                contents += text_[at_++];
                continue;
            }
            const auto resolved = escape(peek(1));
            if (!resolved)
                diagnostics_.error({&file_, at_, at_ + 2}, "this escape is unknown", "there are \\n \\t \\\" and \\\\");
            else
                contents += *resolved;
            at_ += peek(1) == '\0' ? 1 : 2;
        }
        if (peek() == '"')
            ++at_;
        else
            diagnostics_.error(spanFrom(begin), "this text never ends", "close it with \" on the same line");
        push(TokenKind::String, begin).text = std::move(contents);
    }

    void color() {
        const std::size_t begin = at_++;
        while (continuesName(peek())) ++at_;
        const std::string_view digits = text_.substr(begin + 1, at_ - begin - 1);
        std::uint32_t value = 0;
        const auto parsed = std::from_chars(digits.data(), digits.data() + digits.size(), value, 16);
        const bool whole = parsed.ec == std::errc() && parsed.ptr == digits.data() + digits.size();
        if (!whole || (digits.size() != 6 && digits.size() != 8)) {
            diagnostics_.error(spanFrom(begin), "this is no colour", "write #rrggbb, or #aarrggbb with alpha in front");
            value = 0xff000000U;
        } else if (digits.size() == 6) {
            value |= 0xff000000U;
        }
        push(TokenKind::Color, begin).integer = value;
    }

    void punctuation() {
        static constexpr std::array<std::string_view, 28> all = {
            "->", "==", "!=", "<=", ">=", "&&", "||", "..", "{", "}", "(", ")", "[", "]",
            ":",  ";",  ",",  ".",  "=",  "<",  ">",  "!",  "+", "-", "*", "/", "?", "%"};
        for (const std::string_view one : all) {
            if (text_.substr(at_, one.size()) != one) continue;
            const std::size_t begin = at_;
            at_ += one.size();
            push(TokenKind::Punctuation, begin).text = one;
            return;
        }
        const std::size_t begin = at_++;
        while (at_ < text_.size() && (static_cast<unsigned char>(peek()) & 0xc0U) == 0x80U) ++at_;
        diagnostics_.error(spanFrom(begin), "this character has no meaning here",
                           "outside of texts the language is plain ASCII");
    }

    const SourceFile& file_;
    std::string_view text_;
    Diagnostics& diagnostics_;
    std::size_t at_ = 0;
    bool startsLine_ = true;
    std::vector<Token> tokens_;
};

}  // namespace

std::vector<Token> lex(const SourceFile& file, Diagnostics& diagnostics) {
    return Lexer(file, diagnostics).run();
}

}  // namespace Modelc
