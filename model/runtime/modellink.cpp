#include "model/runtime/modellink.h"

#include "backend/subject.h"
#include "backend/syncpass.h"
#include "embedded-gui-engine/border.h"
#include "embedded-gui-engine/concatmodifier.h"
#include "embedded-gui-engine/object.h"
#include "embedded-gui-engine/regexfilter.h"
#include "embedded-gui-engine/stringprovider.h"

namespace Model {

namespace {

void linkUnit(const UnitLink& unit) {
    for (Engine::Object* parent : unit.parents) parent->linkChildren();
    for (const BorderLink& one : unit.borders) one.border->setOwner(one.owner);
    for (Engine::RegexFilter* filter : unit.filters) filter->link();
    for (Engine::ConcatModifier* concat : unit.concats) concat->adoptParts();
    for (Engine::StringProviderBase* provider : unit.strings) provider->link();
}

}  // namespace

void link(const ModelLink& model, const Backend::VariableSet& all) {
    static const ModelLink* linked = nullptr;
    if (linked == &model) return;
    linked = &model;
    for (const UnitLink* unit : model.units) linkUnit(*unit);
    for (const ObserverTie& tie : model.ties)
        tie.subject->attach(tie.observers.data(), static_cast<unsigned>(tie.observers.size()));
    Backend::syncAll(all, true);
}

}  // namespace Model
