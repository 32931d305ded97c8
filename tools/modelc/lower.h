#pragma once

#include "tools/modelc/diagnostics.h"
#include "tools/modelc/lowered.h"
#include "tools/modelc/model.h"
#include "tools/modelc/names.h"
#include "tools/modelc/resolve.h"

namespace Modelc {

/// What the passes that look at a finished model (census, lint, why) need beside its objects.
struct Explanation {
    struct Rule {
        std::string place;  ///< "Home_LDD.softUL.foreground", "Home_LDD.reaction 12.enabled"
        Span span;
        ValuePtr value;  ///< constants too
    };
    struct Post {
        unsigned event;
        std::string place;
    };
    struct Hear {
        unsigned event;
        std::string place;
        Span span;
    };
    struct Write {
        std::string variable;
        std::string place;
        Span span;
    };
    struct Visit {
        std::string from;
        std::string to;  ///< empty for a way back
    };
    struct Shown {
        const ObjectNode* label;
        std::string place;
        ValuePtr value;
    };
    struct Touched {
        const ObjectNode* widget;
        std::string place;
        Span span;
    };

    std::vector<Rule> rules;
    std::vector<Post> posts;
    std::vector<Hear> hears;
    std::vector<Write> writes;
    std::vector<Visit> visits;
    std::vector<Shown> shown;      ///< what each label may show
    std::vector<Touched> touched;  ///< widgets that a touch must hit
};

/// Checks the model against the engine's classes and turns it into engine objects. What is wrong is reported, and the
/// rest still lowered, so that all errors are found in one run.
Lowered lower(const ModelTree& model, const Names& names, Diagnostics& diagnostics, Explanation& explanation);

}  // namespace Modelc
