#include "unit/server/modules/overrides.h"

#include "model/catalogue/enums.h"

namespace Unit {

using Model::OverrideForGui;
using Model::OverrideToCam;

Overrides::Overrides(Store& values) : Module("overrides", values) {
    addAxis("Focus", "focus");
    addAxis("Iris", "iris");
    addAxis("Zoom", "zoom");
    addAxis("Aux", "aux");
    addOutput("VFZoomActive", "VF");
    addOutput("VFZoomPositionActive", "VF");
    for (const std::string output : {"SDI1", "SDI2"}) {
        for (const char* kind : {"ZoomActive", "ZoomPositionActive", "ZoomSmartActive"})
            addOutput(output + kind, output);
        addOutput(output + "TrackingZoomActive", "Tracking");
    }
    addOutput("VFTrackingZoomActive", "Tracking");
    hear(nudgeWanted_, [this] { nudge_.set(nudgeWanted_); });
}

void Overrides::addAxis(const std::string& axis, const char* setting) {
    const Number held(store, "VarOverride" + axis + "ForGui");
    const Number request(store, "VarOverride" + axis + "ToCam");
    held_.push_back(held);
    settingChoice(
        setting, {"none", "override", "catch"},
        [held](std::size_t choice) { held.set(static_cast<std::int32_t>(choice)); },
        [held] { return static_cast<std::size_t>(held.get()); });
    hear(request, [held, request] {
        const std::int32_t wanted = request.take();
        if (wanted == static_cast<std::int32_t>(OverrideToCam::Release)) held.set(OverrideForGui::None);
        if (wanted == static_cast<std::int32_t>(OverrideToCam::Take)) held.set(OverrideForGui::Catch);
    });
}

void Overrides::addOutput(const std::string& output, const std::string& enabled) {
    const Output made = {Flag(store, "Var" + output), Flag(store, "VarCam" + enabled + "ZoomEnabled")};
    outputs_.push_back(made);
    hear(made.active, [this, made] {
        if (!made.active || made.enabled) return;
        made.active.set(false);
        unsupported_.set(true);
        unsupported_.note();
    });
}

void Overrides::powerUp() {
    for (const Number& held : held_) held.set(OverrideForGui::None);
    nudgeWanted_.set(false);
    nudge_.set(false);
    unsupported_.set(false);
}

void Overrides::tick(std::int64_t) {
    const bool full = available_.is(Model::CamDataAvailable::Full);
    for (const Output& output : outputs_) {
        output.enabled.set(full);
        if (!full) output.active.set(false);
    }
}

}  // namespace Unit
