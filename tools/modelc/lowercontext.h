// What the parts of the lowering share.
#pragma once

#include <map>
#include <string>

#include "tools/modelc/lower.h"
#include "tools/modelc/lowervalues.h"

namespace Modelc {

struct LoweringContext {
    const ModelTree& model;
    const Names& names;
    Diagnostics& diagnostics;
    Lowered& lowered;
    Explanation& explanation;
    Resolver resolver;
    std::map<std::string, std::string> ruleAddresses;
    std::map<std::string, const EditRow*> edits;         ///< settings of the edit table by name
    std::map<std::string, const EditsDecl*> editTables;  ///< the table of each setting
    std::map<std::string, std::string> regexAddresses;   ///< each distinct expression once
    std::map<const ObjectNode*, std::string> widgetAddresses;
    std::map<const ObjectNode*, std::string> widgetPaths;
    /// Actions and timers with a name, by Page.name.
    struct NamedObject {
        std::string type;
        std::string address;
    };
    std::map<std::string, NamedObject> namedObjects = {};

    LoweredUnit& rules() { return *lowered.units.front(); }

    void observe(const std::vector<const VariableInfo*>& variables, const std::string& observer,
                 const std::string& what) {
        for (const VariableInfo* variable : variables) observe(variable, observer, what);
    }
    void observe(const VariableInfo* variable, const std::string& observer, const std::string& what) {
        lowered.observers[variable->name].push_back({observer, what});
        use(variable);
    }
    void use(const VariableInfo* variable) { lowered.variables[variable->name] = variable; }
    void useAll(const Value& value) {
        for (const VariableInfo* variable : readVariables(value)) use(variable);
    }

    /// The widget that a path names, Page.widget.widget or from inside `unit` without the page; null after a report.
    const ObjectNode* findWidget(const ExprPtr& expr, const UnitNode* unit);
};

/// Reports while the expansion that a node came from is shown.
class ExpansionScope {
  public:
    ExpansionScope(Diagnostics& diagnostics, const ExpansionPtr& expansion);
    ~ExpansionScope();
    ExpansionScope(const ExpansionScope&) = delete;
    ExpansionScope& operator=(const ExpansionScope&) = delete;

  private:
    Diagnostics& diagnostics_;
    int depth_ = 0;
};

}  // namespace Modelc
