#pragma once

#include <functional>
#include <memory>

#include "unit/server/module.h"
#include "unit/server/modules/filetree.h"
#include "unit/server/modules/recentfiles.h"

namespace Unit {

/// The close-up lens in front of the lens: from a file or by its numbers, and what it makes of the focus range.
class Diopters final : public Module {
  public:
    /// `closest`: the near end of the focus range of the lens in metres, 0 without a lens.
    Diopters(Store& values, std::shared_ptr<FileTree> tree, std::function<double()> closest);

    void factory() override;
    void tick(std::int64_t nanoseconds) override;
    /// A file of the tree, by the tree's name.
    void loadFile(const std::string& name);

  private:
    void clear();
    void commitDistance();
    void show();

    std::shared_ptr<FileTree> tree_;
    std::function<double()> closest_;
    Flag active_{store, "VarDiopterActive"}, clear_{store, "VarDiopterClear"},
        warning_{store, "VarDiopterWarningActive"}, matches_{store, "VarDiopterMatchesLens"},
        commit_{store, "VarDiopterDistanceEditCommit"}, inches_{store, "VarDiopterDistanceInchToggle"},
        notFound_{store, "VarFileNotFound"};
    Text name_{store, "VarDiopterName"}, model_{store, "VarDiopterModel"}, limits_{store, "VarDiopterLimitString"},
        distanceText_{store, "VarDiopterDistanceString"}, wanted_{store, "VarLoadDiopterFileName"},
        file_{store, "VarDiopterActiveFileName"};
    Real power_{store, "VarDiopterPower"}, distance_{store, "VarDiopterDistance"},
        shim_{store, "VarDiopterShimThickness"}, shimTarget_{store, "VarDiopterShimThicknessTarget"},
        multiplier_{store, "VarDiopterMultiplier"}, nearest_{store, "VarDiopterMinFocus"},
        farthest_{store, "VarDiopterMaxFocus"}, major_{store, "VarDiopterDistanceEditMajor"},
        minor_{store, "VarDiopterDistanceEditMinor"}, pupil1_{store, "VarDiopterLensStaticEntrancePupil1"},
        pupil2_{store, "VarDiopterLensStaticEntrancePupil2"}, curveStart_{store, "VarDiopterCurveIrisStart"},
        actFocus_{store, "VarLensActFocus"};
    Number type_{store, "VarDiopterType"}, unit_{store, "VarDisplayUnit"}, length_{store, "VarFocalLength"},
        curveSize_{store, "VarDiopterCurveSize"};
    Column curve_{store, "VarDiopterCurve", "CurveValue"};
    RecentFiles recent_{store, "VarMruDiopterFileList", "VarMruDiopterFileListSize"};
};

}  // namespace Unit
