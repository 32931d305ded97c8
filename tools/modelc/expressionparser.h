#pragma once

#include <algorithm>
#include <initializer_list>

#include "tools/modelc/ast.h"
#include "tools/modelc/diagnostics.h"
#include "tools/modelc/lexer.h"

namespace Modelc {

/// The token stream and the expressions of the language; the parser of declarations stands on it.
class ExpressionParser {
  protected:
    /// Thrown after a report; caught where parsing can go on.
    struct Recover {};

    ExpressionParser(std::vector<Token> tokens, Diagnostics& diagnostics)
        : tokens_(std::move(tokens)), diagnostics_(diagnostics) {}

    /// Holds one level of nesting; refuses the 201st.
    class Depth {
      public:
        explicit Depth(ExpressionParser& parser);
        ~Depth() { --parser_.depth_; }
        Depth(const Depth&) = delete;
        Depth& operator=(const Depth&) = delete;

      private:
        ExpressionParser& parser_;
    };

    // Tokens.
    const Token& peek(std::size_t ahead = 0) const { return tokens_[std::min(at_ + ahead, tokens_.size() - 1)]; }
    const Token& last() const { return tokens_[at_ == 0 ? 0 : at_ - 1]; }
    bool atEnd() const { return peek().kind == TokenKind::End; }
    const Token& advance();
    /// How many brackets of any kind are open here.
    int nesting() const { return nesting_; }
    bool accept(std::string_view punctuation);
    bool acceptWord(std::string_view word);
    void expect(std::string_view punctuation, std::string_view where);
    void expectWord(std::string_view word, std::string_view where);
    Name name(std::string_view what);

    [[noreturn]] void fail(Span span, std::string message, std::string help);
    std::size_t failedAt() const { return failedAt_; }
    static std::string hintFor(const Token& token, std::initializer_list<std::string_view> words);
    Diagnostics& diagnostics() { return diagnostics_; }

    // Expressions, loosest first.
    ExprPtr expression();
    ExprPtr postfix();  ///< a primary with its calls, cells, and formats
    ExprPtr primary();
    /// Expressions separated by commas up to `closing`, which is consumed.
    std::vector<ExprPtr> listUntil(std::string_view closing);

    template <typename Node>
    static ExprPtr make(Span span, Node node) {
        return std::make_shared<Expr>(Expr{span, std::move(node)});
    }

  private:
    ExprPtr binary(int level);
    ExprPtr unary();
    ExprPtr dottedName();
    ExprPtr choose();
    ExprPtr nightDay();
    ExprPtr measure(FormatExpr expr);
    ExprPtr place();
    ExprPtr format(ExprPtr value);

    std::vector<Token> tokens_;
    Diagnostics& diagnostics_;
    std::size_t at_ = 0;
    std::size_t failedAt_ = static_cast<std::size_t>(-1);
    int depth_ = 0;
    int nesting_ = 0;
};

}  // namespace Modelc
