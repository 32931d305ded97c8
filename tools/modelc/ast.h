// The syntax tree of model sources. Trees are immutable once parsed and shared: expansion builds new nodes around
// old ones. Every node knows the span that it came from.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "tools/modelc/source.h"

namespace Modelc {

struct Expr;
using ExprPtr = std::shared_ptr<const Expr>;

// Expressions.

struct BoolLiteral {
    bool value;
};
struct IntLiteral {
    std::int64_t value;
    bool isTime;
};
struct FloatLiteral {
    double value;
};
struct StringLiteral {
    std::string value;
};
struct ColorLiteral {
    std::uint32_t value;
};
/// A name, possibly dotted: VarCamState, Texts.rec, softUL.label, Recording.
struct NameExpr {
    std::vector<std::string> parts;
};
struct UnaryExpr {
    std::string op;
    ExprPtr operand;
};  ///< "!" or "-"
struct BinaryExpr {
    std::string op;
    Span opSpan;
    ExprPtr left;
    ExprPtr right;
};
/// First true branch wins. The branch of `else` has a null condition and stands last.
struct ChooseExpr {
    struct Branch {
        ExprPtr condition;
        ExprPtr value;
    };
    std::vector<Branch> branches;
};
struct NightDayExpr {
    ExprPtr night;
    ExprPtr day;
};
/// A text with holes filled: Texts.slot(VarName, VarX as "%02i").
struct CallExpr {
    ExprPtr callee;
    std::vector<ExprPtr> arguments;
};
/// A cell of a table, VarTable[row].Field; the field is empty for tables of one column.
struct IndexExpr {
    ExprPtr table;
    ExprPtr row;
    std::string field;
};
/// VALUE as "format" [match "expression"]; as time "..."; as unixtime "..."; as metres; as feet; as hundredths.
struct FormatExpr {
    enum class Kind { Printf, Time, UnixTime, Metres, Feet, Hundredths };
    Kind kind;
    ExprPtr value;
    std::string format;
    Span formatSpan;
    std::string match;
};
/// place of VALUE in TABLE
struct PlaceExpr {
    ExprPtr value;
    ExprPtr table;
};
struct ListExpr {
    std::vector<ExprPtr> items;
};

struct Expr {
    Span span;
    std::variant<BoolLiteral, IntLiteral, FloatLiteral, StringLiteral, ColorLiteral, NameExpr, UnaryExpr, BinaryExpr,
                 ChooseExpr, NightDayExpr, CallExpr, IndexExpr, FormatExpr, PlaceExpr, ListExpr>
        node;
};

// Statements inside reactions.

struct ActionStmt;
using ActionPtr = std::shared_ptr<const ActionStmt>;

/// A word and its operands: what they mean is the checker's table. `set X = Y`, `fire Event_A`, `navigate Page`...
struct ActionStmt {
    Span span;
    std::string verb;  ///< set copy toggle increase decrease fire navigate back clearHistory focus edit first all ...
    Span verbSpan;
    std::vector<ExprPtr> operands;
    bool wrap = false;
    std::string name;                 ///< by which it can be exported; empty for none
    std::vector<ActionPtr> children;  ///< of first and all
    ExprPtr condition;                ///< `if COND` behind the action; null when it is always enabled
};

// Declarations inside objects.

struct Name {
    std::string text;
    Span span;
};

struct ObjectDecl;
struct Member;
using MemberPtr = std::shared_ptr<const Member>;

struct PropertyDecl {
    Name name;
    ExprPtr value;
};
struct ReactionDecl {
    std::vector<ExprPtr> events;
    ExprPtr condition;  ///< decides when the event is scanned, not when the actions run; may be null
    std::vector<ActionPtr> actions;
};
struct TimerDecl {
    std::string name;  ///< by which it can be exported; empty for none
    ExprPtr period;    ///< milliseconds
    ExprPtr times;     ///< -1 for ever, 0 once without a finish, else the number of ticks
    std::vector<ExprPtr> starts;
    std::vector<ExprPtr> stops;
    ExprPtr condition;  ///< drives `enabled`; may be null
    std::vector<ActionPtr> ticks;
    std::vector<ActionPtr> finish;
};
struct TriggerDecl {
    enum class When { Rising, Every, Change };
    ExprPtr event;
    When when;
    ExprPtr condition;  ///< for Change the value that is watched
    ExprPtr threshold;  ///< for Change, may be null
};
struct UserActionDecl {
    Name name;
    ExprPtr index;  ///< place in the container's list, may be null: the next one
    std::vector<ActionPtr> press, release, select, deselect;
    ExprPtr active;   ///< value that the button's active variable takes; may be null
    ExprPtr enabled;  ///< may be null
};
struct SlotDecl {
    Name name;
};  ///< where what the user of a template wrote goes; empty name: the plain slot
/// Repetition: each item is a tuple with one value a name.
struct ForDecl {
    std::vector<Name> names;
    std::vector<std::vector<ExprPtr>> items;
    ExprPtr from, to;  ///< of a range, `to` included; null for a list
    std::vector<MemberPtr> body;
};
/// Decided while compiling, from parameters and constants.
struct StaticIfDecl {
    ExprPtr condition;
    std::vector<MemberPtr> then, otherwise;
};

/// A widget, or the use of a template.
struct ObjectDecl {
    Name type;
    Name name;  ///< may be empty
    std::vector<ExprPtr> arguments;
    std::vector<MemberPtr> members;
};

struct Member {
    Span span;
    std::variant<PropertyDecl, ObjectDecl, ReactionDecl, TimerDecl, TriggerDecl, UserActionDecl, SlotDecl, ForDecl,
                 StaticIfDecl>
        node;
};

// Declarations of a source.

struct Parameter {
    Name name;
    Name type;
    ExprPtr fallback;
};
struct PageDecl {
    Name name;
    std::vector<MemberPtr> members;
};
struct ContainerDecl {
    Name name;
    std::vector<MemberPtr> members;
};
struct TemplateDecl {
    Name name;
    std::vector<Parameter> parameters;
    std::vector<MemberPtr> members;
};
struct RuleDecl {
    Name name;
    Name type;
    ExprPtr value;
};  ///< rule NAME: type = expression
struct ConstDecl {
    Name name;
    ExprPtr value;
};
/// What a list of exports holds at one place: a target, or  for NAMES in ITEMS: target  with repetitions inside each
/// other.
struct ExportItem {
    std::vector<ForDecl> loops;  ///< without bodies, the outermost first
    ExprPtr target;
};
struct ExportDecl {
    Name name;
    std::vector<ExportItem> items;
    bool isList;
    std::vector<ExprPtr> targets = {};  ///< what the items come to
};
/// style night when CONDITION
struct StyleDecl {
    ExprPtr night;
};
/// register overlays A, B / register containers A, B / start PAGE
struct RegisterDecl {
    enum class What { Overlays, Containers, Start };
    What what;
    std::vector<ExprPtr> names;
};
/// One setting of the edit table: number, name, kind, the variable worked on, the one it is copied from (may be null).
struct EditRow {
    Span span;
    ExprPtr number;
    Name name;
    Name kind;
    ExprPtr working;
    ExprPtr source;
};
/// edits VARIABLE in CONTAINER { rows }
struct EditsDecl {
    ExprPtr variable;
    Name container;
    std::vector<EditRow> rows;
};

struct Declaration {
    Span span;
    std::variant<PageDecl, ContainerDecl, TemplateDecl, RuleDecl, ConstDecl, ExportDecl, StyleDecl, RegisterDecl,
                 EditsDecl, ForDecl>
        node;
};

struct SourceTree {
    const SourceFile* file = nullptr;
    std::vector<std::shared_ptr<const Declaration>> declarations;
};

}  // namespace Modelc
