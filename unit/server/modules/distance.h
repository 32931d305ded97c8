#pragma once

#include <functional>
#include <optional>

#include "unit/server/module.h"

namespace Unit {

/// Distance measuring by devices of two kinds, each of which may take one of two places: one that reads a single
/// distance (CTM), one or two that also know limits (FocusBug). They look at a subject that a person moves.
class Distance final : public Module {
  public:
    /// `positionOf` gives the place of a distance in metres on the focus ring; nothing without a lens.
    Distance(Store& values, std::function<std::optional<double>(double metres)> positionOf);

    void factory() override;
    void powerUp() override;
    void tick(std::int64_t nanoseconds) override;

  private:
    /// A pair of limits that is edited in working copies and put to use as a whole.
    struct Range {
        Range(Store& values, const std::string& name, const std::string& commit, const std::string& valid,
              const std::string& shown);
        Real lower, upper, lowerSet, upperSet;
        Flag active, activeSet, valid, clear, commit;
        Text lowerText, upperText;
        Flag icon;

        bool contains(double metres) const;
        void put();
        void drop() const;
    };

    struct Reading {
        Reading(Store& values, const std::string& name);
        Number state;
        Real metres;
        Number feet;
        Real inches;

        void show(std::int32_t newState, double distance) const;
    };

    void mirrorSettings();
    void listenToRange(Range& range);
    void listenToMarks();
    void listenToEditing();
    void nextSource();
    void nextFieldOfView();
    void measure(double seconds);
    void showSource();
    void showTexts();
    bool connected(std::int32_t type) const;
    std::optional<double> measured(std::int32_t type) const;

    std::function<std::optional<double>(double)> positionOf_;
    std::vector<std::pair<Number, Number>> numbers_;  ///< what is asked for, what is in force
    std::vector<std::pair<Real, Real>> reals_;
    std::vector<std::pair<Flag, Flag>> flags_;
    std::vector<Real> marks_;
    Range limits_, lockout_;
    Reading ctm_, first_, second_;
    Number source_{store, "VarDmdSource"}, activePlace_{store, "VarDmdActiveSource"},
        bugs_{store, "VarFocusBugDeviceCount"};
    Number type1_{store, "VarDmdType1"}, type2_{store, "VarDmdType2"}, top_{store, "VarDmdTypeTop"},
        bottom_{store, "VarDmdTypeBottom"};
    Number damping_{store, "VarCtmDampFactor"}, displayUnit_{store, "VarDisplayUnit"};
    Number fieldOfView_{store, "VarFocusBugFieldOfView"}, fieldOfViewSet_{store, "VarFocusBugFieldOfViewSet"};
    Number switchRequest_{store, "VarFocusBugSwitchSourceAndFOV"}, clearMark_{store, "VarFocusBugMarkerClearIndex"};
    Flag clearMarks_{store, "VarFocusBugMarkerClearAllValue"}, nextPlace_{store, "VarDmdTypeSwitchNext"},
        nextSource_{store, "VarFocusBugSwitchToNextSource"}, noSwitch_{store, "VarDmdSourceSwitchDisabled"},
        tracking_{store, "VarFocusTrackingActive"};
    Real target_{store, "VarDmdTargetValue"}, place1_{store, "VarDmd1PosNorm"}, place2_{store, "VarDmd2PosNorm"},
        focus_{store, "VarFocusTargetValue"}, offset_{store, "VarFocusBugPlaneOffset"},
        crossover_{store, "VarFocusBugCrossoverDistance"};
    Text offsetText_{store, "VarFocusBugUIPlaneOffset"}, crossoverText_{store, "VarFocusBugUICrossoverDistance"};
    Flag more_{store, "VarFocusBugUIIncrement"}, less_{store, "VarFocusBugUIDecrement"},
        morePossible_{store, "VarFocusBugUIIncrementPossible"}, lessPossible_{store, "VarFocusBugUIDecrementPossible"},
        editConfirm_{store, "VarFocusBugUIEditConfirm"};
    Real editMetres_{store, "VarFocusBugUIEditMeter"};
    Number editFeet_{store, "VarFocusBugUIEditFeet"}, editInches_{store, "VarFocusBugUIEditInch"};
    bool ctmThere_ = false;
    double subject_ = 3;   ///< metres to what the devices look at
    double smoothed_ = 3;  ///< what the CTM makes of it
};

}  // namespace Unit
