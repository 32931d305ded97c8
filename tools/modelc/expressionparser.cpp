#include "tools/modelc/expressionparser.h"

#include <algorithm>
#include <array>

namespace Modelc {

namespace {

constexpr int maxDepth = 200;

// Operators by level, loosest first.
const std::array<std::vector<std::string_view>, 5> operators = {{
    {"||"},
    {"&&"},
    {"==", "!=", "<=", ">=", "<", ">"},
    {"+", "-"},
    {"*", "/"},
}};

std::string describe(const Token& token) {
    switch (token.kind) {
        case TokenKind::End: return "the end of the file";
        case TokenKind::String: return "a text";
        default: return "'" + std::string(token.span.text()) + "'";
    }
}

}  // namespace

ExpressionParser::Depth::Depth(ExpressionParser& parser) : parser_(parser) {
    if (++parser_.depth_ <= maxDepth) return;
    --parser_.depth_;
    parser_.fail(parser_.peek().span, "this is nested too deeply",
                 "split it: name an inner part as a rule or a template");
}

const Token& ExpressionParser::advance() {
    const Token& token = peek();
    if (token.is("{") || token.is("(") || token.is("[")) ++nesting_;
    if (token.is("}") || token.is(")") || token.is("]")) --nesting_;
    if (!atEnd()) ++at_;
    return token;
}

bool ExpressionParser::accept(std::string_view punctuation) {
    if (!peek().is(punctuation)) return false;
    advance();
    return true;
}

bool ExpressionParser::acceptWord(std::string_view word) {
    if (!peek().isWord(word)) return false;
    advance();
    return true;
}

void ExpressionParser::expect(std::string_view punctuation, std::string_view where) {
    if (accept(punctuation)) return;
    fail(peek().span,
         "'" + std::string(punctuation) + "' is expected " + std::string(where) + ", here stands " + describe(peek()),
         {});
}

void ExpressionParser::expectWord(std::string_view word, std::string_view where) {
    if (acceptWord(word)) return;
    fail(peek().span,
         "'" + std::string(word) + "' is expected " + std::string(where) + ", here stands " + describe(peek()), {});
}

Name ExpressionParser::name(std::string_view what) {
    if (peek().kind != TokenKind::Name)
        fail(peek().span, std::string(what) + " is expected, here stands " + describe(peek()), {});
    const Token& token = advance();
    return {token.text, token.span};
}

void ExpressionParser::fail(Span span, std::string message, std::string help) {
    diagnostics_.error(span, std::move(message), std::move(help));
    failedAt_ = span.begin;
    throw Recover{};
}

std::string ExpressionParser::hintFor(const Token& token, std::initializer_list<std::string_view> words) {
    return token.kind == TokenKind::Name ? didYouMean(token.text, std::vector<std::string_view>(words)) : std::string{};
}

ExprPtr ExpressionParser::expression() {
    return binary(0);
}

ExprPtr ExpressionParser::binary(int level) {
    if (level == static_cast<int>(operators.size())) return unary();
    const Depth depth(*this);
    ExprPtr left = binary(level + 1);
    for (;;) {
        const Token& token = peek();
        const auto& here = operators[static_cast<std::size_t>(level)];
        const bool found =
            token.kind == TokenKind::Punctuation && std::find(here.begin(), here.end(), token.text) != here.end();
        if (!found || (token.startsLine && token.is("-"))) return left;
        advance();
        ExprPtr right = binary(level + 1);
        const Span span = join(left->span, right->span);
        left = make(span, BinaryExpr{token.text, token.span, std::move(left), std::move(right)});
    }
}

ExprPtr ExpressionParser::unary() {
    if (!peek().is("!") && !peek().is("-")) return postfix();
    const Depth depth(*this);
    const Token& op = advance();
    ExprPtr operand = unary();
    const Span span = join(op.span, operand->span);
    if (op.is("-")) {  // a sign in front of a number is part of the number
        if (const auto* number = std::get_if<IntLiteral>(&operand->node))
            return make(span, IntLiteral{-number->value, number->isTime});
        if (const auto* number = std::get_if<FloatLiteral>(&operand->node))
            return make(span, FloatLiteral{-number->value});
    }
    return make(span, UnaryExpr{op.text, std::move(operand)});
}

ExprPtr ExpressionParser::postfix() {
    ExprPtr value = primary();
    for (;;) {
        if (peek().is("(") && !peek().startsLine) {
            advance();
            auto arguments = listUntil(")");
            value = make(join(value->span, last().span), CallExpr{value, std::move(arguments)});
        } else if (peek().is("[") && !peek().startsLine) {
            advance();
            ExprPtr row = expression();
            expect("]", "behind the row");
            const std::string field = accept(".") ? name("the field's name").text : std::string();
            value = make(join(value->span, last().span), IndexExpr{value, std::move(row), field});
        } else if (peek().isWord("as")) {
            value = format(std::move(value));
        } else {
            return value;
        }
    }
}

ExprPtr ExpressionParser::format(ExprPtr value) {
    advance();
    FormatExpr expr{FormatExpr::Kind::Printf, std::move(value), {}, {}, {}};
    if (acceptWord("time"))
        expr.kind = FormatExpr::Kind::Time;
    else if (acceptWord("unixtime"))
        expr.kind = FormatExpr::Kind::UnixTime;
    else if (peek().isWord("metres") || peek().isWord("feet") || peek().isWord("hundredths"))
        return measure(std::move(expr));
    if (peek().kind != TokenKind::String)
        fail(peek().span, "a format is expected behind 'as'", "for instance  VarRadioChannel as \"%02i\"");
    expr.format = peek().text;
    expr.formatSpan = advance().span;
    if (acceptWord("match")) {
        if (peek().kind != TokenKind::String) fail(peek().span, "a regular expression is expected behind 'match'", {});
        expr.match = advance().text;
    }
    const Span span = join(expr.value->span, last().span);
    return make(span, std::move(expr));
}

/// A measure has its own form.
ExprPtr ExpressionParser::measure(FormatExpr expr) {
    const Token& word = advance();
    expr.kind = word.isWord("feet")     ? FormatExpr::Kind::Feet
                : word.isWord("metres") ? FormatExpr::Kind::Metres
                                        : FormatExpr::Kind::Hundredths;
    expr.format = word.text;
    expr.formatSpan = word.span;
    const Span span = join(expr.value->span, word.span);
    return make(span, std::move(expr));
}

ExprPtr ExpressionParser::place() {
    const Token& word = advance();
    advance();
    PlaceExpr expr{postfix(), {}};
    expectWord("in", "between the value and the table of a scale");
    expr.table = postfix();
    const Span span = join(word.span, expr.table->span);
    return make(span, std::move(expr));
}

ExprPtr ExpressionParser::primary() {
    const Depth depth(*this);
    const Token& token = peek();
    switch (token.kind) {
        case TokenKind::Integer: advance(); return make(token.span, IntLiteral{token.integer, token.isTime});
        case TokenKind::Float: advance(); return make(token.span, FloatLiteral{token.number});
        case TokenKind::String: advance(); return make(token.span, StringLiteral{token.text});
        case TokenKind::Color:
            advance();
            return make(token.span, ColorLiteral{static_cast<std::uint32_t>(token.integer)});
        case TokenKind::Name: return dottedName();
        default: break;
    }
    if (accept("(")) {
        ExprPtr inner = expression();
        expect(")", "to close the bracket");
        return inner;
    }
    if (accept("[")) {
        auto items = listUntil("]");
        return make(join(token.span, last().span), ListExpr{std::move(items)});
    }
    fail(token.span, "a value is expected, here stands " + describe(token), {});
}

ExprPtr ExpressionParser::dottedName() {
    if (peek().isWord("true") || peek().isWord("false")) {
        const Token& token = advance();
        return make(token.span, BoolLiteral{token.text == "true"});
    }
    if (peek().isWord("choose") && peek(1).is("{")) return choose();
    if (peek().isWord("place") && peek(1).isWord("of")) return place();
    if (peek().isWord("night") && !peek(1).is(":")) return nightDay();
    const Token& first = advance();
    NameExpr expr{{first.text}};
    while (peek().is(".") && peek(1).kind == TokenKind::Name && !peek().startsLine) {
        advance();
        expr.parts.push_back(advance().text);
    }
    return make(join(first.span, last().span), std::move(expr));
}

ExprPtr ExpressionParser::choose() {
    const Token& word = advance();
    expect("{", "behind 'choose'");
    ChooseExpr expr;
    while (!peek().is("}") && !atEnd()) {
        ChooseExpr::Branch branch;
        if (!expr.branches.empty() && expr.branches.back().condition == nullptr)
            fail(peek().span, "no branch can follow 'else'", "put it in front: the first true branch wins");
        if (!acceptWord("else")) branch.condition = expression();
        expect("->", "between a branch's condition and its value");
        branch.value = expression();
        expr.branches.push_back(std::move(branch));
        accept(",");
    }
    expect("}", "behind the branches");
    return make(join(word.span, last().span), std::move(expr));
}

ExprPtr ExpressionParser::nightDay() {
    const Token& word = advance();
    ExprPtr night = unary();
    expectWord("day", "between the night value and the day value");
    ExprPtr day = unary();
    const Span span = join(word.span, day->span);
    return make(span, NightDayExpr{std::move(night), std::move(day)});
}

std::vector<ExprPtr> ExpressionParser::listUntil(std::string_view closing) {
    std::vector<ExprPtr> items;
    while (!peek().is(closing) && !atEnd()) {
        items.push_back(expression());
        if (!accept(",")) break;
    }
    expect(closing, "to close the list");
    return items;
}

}  // namespace Modelc
