#include "tools/modelc/parser.h"

#include "tools/modelc/expressionparser.h"

namespace Modelc {

namespace {

bool isAnyOf(const Token& token, std::initializer_list<std::string_view> words) {
    for (const std::string_view word : words)
        if (token.isWord(word)) return true;
    return false;
}

class Parser : private ExpressionParser {
  public:
    Parser(const SourceFile& file, Diagnostics& diagnostics)
        : ExpressionParser(lex(file, diagnostics), diagnostics), file_(file) {}

    SourceTree run() {
        SourceTree tree;
        tree.file = &file_;
        while (!atEnd()) {
            const Token& first = peek();
            try {
                auto node = declaration();
                tree.declarations.push_back(
                    std::make_shared<Declaration>(Declaration{join(first.span, last().span), std::move(node)}));
            } catch (const Recover&) {
                skipToDeclaration();
            }
        }
        return tree;
    }

  private:
    // Declarations.

    decltype(Declaration::node) declaration() {
        if (acceptWord("page")) return named<PageDecl>("page");
        if (acceptWord("container")) return named<ContainerDecl>("container");
        if (acceptWord("template")) return templateDecl();
        if (acceptWord("rule")) return ruleDecl();
        if (acceptWord("const")) return constDecl();
        if (acceptWord("export")) return exportDecl();
        if (acceptWord("style")) return styleDecl();
        if (acceptWord("register")) return registerDecl();
        if (acceptWord("start")) return RegisterDecl{RegisterDecl::What::Start, {expression()}};
        if (acceptWord("edits")) return editsDecl();
        fail(peek().span, "a declaration is expected here",
             hintFor(peek(), {"page", "container", "template", "rule", "const", "export", "style", "register", "start",
                              "edits"}));
    }

    template <typename Decl>
    Decl named(std::string_view what) {
        Decl decl;
        decl.name = name("the " + std::string(what) + "'s name");
        decl.members = block();
        return decl;
    }

    TemplateDecl templateDecl() {
        TemplateDecl decl;
        decl.name = name("the template's name");
        if (accept("(")) {
            while (!peek().is(")") && !atEnd()) {
                Parameter parameter;
                parameter.name = name("a parameter's name");
                expect(":", "between a parameter's name and its type");
                parameter.type = name("the parameter's type");
                if (accept("=")) parameter.fallback = expression();
                decl.parameters.push_back(std::move(parameter));
                if (!accept(",")) break;
            }
            expect(")", "behind the parameters");
        }
        decl.members = block();
        return decl;
    }

    RuleDecl ruleDecl() {
        RuleDecl decl;
        decl.name = name("the rule's name");
        expect(":", "between a rule's name and its type");
        decl.type = name("the rule's type");
        expect("=", "before the rule's expression");
        decl.value = expression();
        return decl;
    }

    ConstDecl constDecl() {
        ConstDecl decl;
        decl.name = name("the constant's name");
        expect("=", "before the constant's value");
        decl.value = expression();
        return decl;
    }

    ExportDecl exportDecl() {
        ExportDecl decl;
        decl.name = name("the name that the program sees");
        expect("=", "before what is exported");
        decl.isList = accept("[");
        if (!decl.isList) {
            decl.items.push_back({{}, expression()});
            return decl;
        }
        while (!peek().is("]") && !atEnd()) {
            decl.items.push_back(exportItem());
            if (!accept(",")) break;
        }
        expect("]", "to close the list");
        return decl;
    }

    ExportItem exportItem() {
        ExportItem item;
        while (acceptWord("for")) item.loops.push_back(forHead());
        if (!item.loops.empty()) expect(":", "between the repetitions and what is exported");
        item.target = expression();
        return item;
    }

    StyleDecl styleDecl() {
        expectWord("night", "behind 'style'");
        expectWord("when", "behind 'style night'");
        return {expression()};
    }

    RegisterDecl registerDecl() {
        RegisterDecl decl{};
        if (acceptWord("overlays"))
            decl.what = RegisterDecl::What::Overlays;
        else if (acceptWord("containers"))
            decl.what = RegisterDecl::What::Containers;
        else
            fail(peek().span, "'register' takes overlays or containers", {});
        do decl.names.push_back(expression());
        while (accept(","));
        return decl;
    }

    EditsDecl editsDecl() {
        EditsDecl decl;
        decl.variable = expression();
        expectWord("in", "between the variable of the edit number and the container of its reactions");
        decl.container = name("the container's name");
        expect("{", "before the rows");
        while (!peek().is("}") && !atEnd()) {
            const Token& first = peek();
            EditRow row;
            row.number = expression();
            row.name = name("the setting's name");
            expect(":", "behind the setting's name");
            row.kind = name("the popup's kind");
            row.working = expression();
            if (acceptWord("from")) row.source = expression();
            row.span = join(first.span, last().span);
            decl.rows.push_back(std::move(row));
            accept(";");
        }
        expect("}", "behind the rows");
        return decl;
    }

    // Members.

    std::vector<MemberPtr> block() {
        const Depth depth(*this);
        const Token& open = peek();
        expect("{", "to open the block");
        const int level = nesting();
        std::vector<MemberPtr> members;
        while (!peek().is("}") && !atEnd()) {
            const Token& first = peek();
            try {
                auto node = member();
                members.push_back(std::make_shared<Member>(Member{join(first.span, last().span), std::move(node)}));
            } catch (const Recover&) {
                skipToMember(level);
            }
            while (accept(";") || accept(",")) {
            }
        }
        if (!accept("}")) diagnostics().error(open.span, "this block never ends", "close it with }");
        return members;
    }

    decltype(Member::node) member() {
        if (peek(1).is(":")) return propertyDecl();
        if (acceptWord("on")) return reactionDecl();
        if (acceptWord("timer")) return timerDecl();
        if (acceptWord("trigger")) return triggerDecl();
        if (acceptWord("userAction")) return userActionDecl();
        if (acceptWord("slot")) return slotDecl();
        if (acceptWord("for")) return forDecl();
        if (acceptWord("if")) return staticIf();
        if (peek().kind == TokenKind::Name) return objectDecl();
        fail(peek().span, "a property, a widget or a reaction is expected here",
             "for instance  foreground: #ffffff  or  Label title { }");
    }

    PropertyDecl propertyDecl() {
        PropertyDecl decl;
        decl.name = name("the property's name");
        expect(":", "behind the property's name");
        decl.value = expression();
        // Geometry is written as one property with several numbers: rect: 0, 34, 240, 318
        if (peek().is(",") && !peek().startsLine) {
            ListExpr list;
            list.items.push_back(decl.value);
            while (accept(",")) list.items.push_back(expression());
            const Span span = join(list.items.front()->span, last().span);
            decl.value = make(span, std::move(list));
        }
        return decl;
    }

    ObjectDecl objectDecl() {
        ObjectDecl decl;
        decl.type = name("the widget's class or a template's name");
        if (peek().kind == TokenKind::Name && !peek().startsLine) decl.name = name("the object's name");
        if (accept("(")) decl.arguments = listUntil(")");
        decl.members = block();
        return decl;
    }

    SlotDecl slotDecl() {
        SlotDecl decl;
        if (peek().kind == TokenKind::Name && !peek().startsLine && !peek(1).is(":"))
            decl.name = name("the slot's name");
        return decl;
    }

    std::vector<ExprPtr> eventList() {
        std::vector<ExprPtr> events;
        do events.push_back(postfix());
        while (accept(","));
        return events;
    }

    ReactionDecl reactionDecl() {
        ReactionDecl decl;
        decl.events = eventList();
        if (acceptWord("if")) decl.condition = expression();
        decl.actions = actionBlock();
        return decl;
    }

    TimerDecl timerDecl() {
        TimerDecl decl;
        const Token& first = last();
        decl.period = postfix();
        if (acceptWord("forever"))
            decl.times = make(last().span, IntLiteral{-1, false});
        else if (acceptWord("times"))
            decl.times = postfix();
        else if (acceptWord("once"))
            decl.times = make(last().span, IntLiteral{0, false});
        else
            fail(join(first.span, last().span), "how often does this timer tick?", "add  once,  times 10  or  forever");
        if (acceptWord("named")) decl.name = name("the timer's name").text;
        if (acceptWord("starts")) decl.starts = eventList();
        if (acceptWord("stops")) decl.stops = eventList();
        if (acceptWord("if")) decl.condition = expression();
        if (peek().is("{")) decl.ticks = actionBlock();
        if (acceptWord("finally")) decl.finish = actionBlock();
        return decl;
    }

    TriggerDecl triggerDecl() {
        TriggerDecl decl{};
        decl.event = postfix();
        if (acceptWord("when"))
            decl.when = TriggerDecl::When::Rising;
        else if (acceptWord("every"))
            decl.when = TriggerDecl::When::Every;
        else if (acceptWord("on") && acceptWord("change"))
            decl.when = TriggerDecl::When::Change;
        else
            fail(peek().span, "when does this trigger fire?",
                 "write  when CONDITION  for its rising edge,  every CONDITION  for each update, or  on change "
                 "VARIABLE");
        decl.condition = expression();
        if (decl.when == TriggerDecl::When::Change && acceptWord("by")) decl.threshold = expression();
        return decl;
    }

    UserActionDecl userActionDecl() {
        UserActionDecl decl;
        if (peek().kind == TokenKind::Integer || peek(1).kind == TokenKind::Name) decl.index = primary();
        decl.name = name("the user action's name");
        expect("{", "before the user action's lists");
        while (!peek().is("}") && !atEnd()) {
            if (acceptWord("press"))
                decl.press = actionBlock();
            else if (acceptWord("release"))
                decl.release = actionBlock();
            else if (acceptWord("select"))
                decl.select = actionBlock();
            else if (acceptWord("deselect"))
                decl.deselect = actionBlock();
            else if (acceptWord("active"))
                expect(":", "behind 'active'"), decl.active = expression();
            else if (acceptWord("enabled"))
                expect(":", "behind 'enabled'"), decl.enabled = expression();
            else
                fail(peek().span, "this has no place in a user action",
                     "there are press, release, select, deselect, active: and enabled:");
        }
        expect("}", "behind the user action");
        return decl;
    }

    ForDecl forDecl() {
        ForDecl decl = forHead();
        decl.body = block();
        return decl;
    }

    ForDecl forHead() {
        ForDecl decl;
        do decl.names.push_back(name("the name that is repeated"));
        while (accept(","));
        expectWord("in", "behind the names");
        ExprPtr first = forItem(decl);
        if (first != nullptr && accept("..")) {
            decl.from = std::move(first);
            decl.to = postfix();
        } else {
            if (first != nullptr) decl.items.push_back({std::move(first)});
            while (accept(","))
                if (ExprPtr item = forItem(decl)) decl.items.push_back({std::move(item)});
        }
        return decl;
    }

    /// A single value, or null after a tuple, which goes into the items at once.
    ExprPtr forItem(ForDecl& decl) {
        if (!accept("(")) return postfix();
        decl.items.push_back(listUntil(")"));
        return nullptr;
    }

    StaticIfDecl staticIf() {
        StaticIfDecl decl;
        decl.condition = expression();
        decl.then = block();
        if (acceptWord("else")) decl.otherwise = block();
        return decl;
    }

    // Actions.

    std::vector<ActionPtr> actionBlock() {
        const Depth depth(*this);
        const Token& open = peek();
        expect("{", "before the actions");
        const int level = nesting();
        std::vector<ActionPtr> actions;
        while (!peek().is("}") && !atEnd()) {
            try {
                actions.push_back(action());
            } catch (const Recover&) {
                skipToMember(level);
            }
            while (accept(";") || accept(",")) {
            }
        }
        if (!accept("}")) diagnostics().error(open.span, "this list of actions never ends", "close it with }");
        return actions;
    }

    ActionPtr action() {
        if (peek().kind != TokenKind::Name)
            fail(peek().span, "an action is expected here",
                 "an action begins with a word, such as  set, fire  or  navigate");
        ActionStmt stmt;
        stmt.verb = advance().text;
        stmt.verbSpan = last().span;
        if (stmt.verb == "first" || stmt.verb == "all") {
            stmt.children = actionBlock();
        } else if (stmt.verb == "clear") {
            expectWord("history", "behind 'clear'");
            stmt.verb = "clearHistory";
        } else if (stmt.verb != "back") {
            operands(stmt);
        }
        if (acceptWord("wrap")) stmt.wrap = true;
        if (acceptWord("named")) stmt.name = name("the action's name").text;
        if (peek().isWord("if") && !peek().startsLine) {
            advance();
            stmt.condition = expression();
        }
        stmt.span = join(stmt.verbSpan, last().span);
        return std::make_shared<ActionStmt>(std::move(stmt));
    }

    /// X; X = Y; X by Y; X, Y: separators are words for the reader, the verb's table says what must stand there.
    void operands(ActionStmt& stmt) {
        if (peek().startsLine || peek().is("}") || peek().isWord("named")) return;
        stmt.operands.push_back(expression());
        while (accept("=") || accept(",") || acceptWord("by") || acceptWord("to"))
            stmt.operands.push_back(expression());
    }

    // Recovery: what follows a mistake begins at a word that opens something, on a line of its own.

    void skipToDeclaration() {
        while (!atEnd()) {
            if (peek().startsLine &&
                isAnyOf(peek(), {"page", "container", "template", "rule", "const", "export", "style", "register",
                                 "start", "edits"}) &&
                peek().span.begin != failedAt())
                return;
            advance();
        }
    }

    /// To the next line that begins with a name, or to the end of the block, whose inside has `level` brackets open.
    void skipToMember(int level) {
        bool moved = false;
        while (!atEnd()) {
            if (nesting() <= level &&
                (peek().is("}") || (moved && peek().startsLine && peek().kind == TokenKind::Name)))
                return;
            advance();
            moved = true;
        }
    }

    const SourceFile& file_;
};

}  // namespace

SourceTree parse(const SourceFile& file, Diagnostics& diagnostics) {
    return Parser(file, diagnostics).run();
}

}  // namespace Modelc
