#pragma once

#include <memory>
#include <optional>

#include "unit/server/module.h"
#include "unit/server/modules/filetree.h"
#include "unit/server/modules/optics.h"
#include "unit/server/modules/programmedlens.h"
#include "unit/server/modules/recentfiles.h"

namespace Unit {

/// The lens: its scales as tables, what stands at the reading line, and the depth of field.
class Lens final : public Module {
  public:
    Lens(Store& values, std::shared_ptr<FileTree> tree);

    void factory() override;
    void powerUp() override;
    void tick(std::int64_t nanoseconds) override;

    /// A lens file of the tree, by its name there. What is missing or no lens file is told to the product.
    /// Another lens is in its place, one that was measured by hand.
    void put(ProgrammedLens lens);
    /// Null for a lens that is known or none.
    const ProgrammedLens* programmed() const { return programmed_ ? &*programmed_ : nullptr; }
    /// Of a distance in metres on the focus ring, 0 to 1; nothing without a lens.
    std::optional<double> positionOf(double metres) const;
    /// The near end of the focus ring in metres; 0 without a lens.
    double closest() const { return model_ != nullptr ? model_->closest : programmed_ ? programmed_->closest() : 0; }
    void loadFile(const std::string& name);

  private:
    /// One table of MemLens.
    struct Table {
        Table(Store& values, const std::string& name);
        Flag active, inverse;
        Number first, last, lower, upper, size;
        Column flags, axis, value, interpolated, main, sub;

        void show(const Scale& scale);
    };

    void put(const LensModel* model);
    void showScales(const Scale& metres, const Scale& feet, const Scale& stops, const Scale& lengths);
    void describe(const std::string& label, const std::string& brand, const std::string& serial);
    bool hasLens() const { return model_ != nullptr || programmed_; }
    void showValues();
    void showReading(double distance, double stop, double length);
    void showDepthOfField(double metres, double millimetres, double stop);

    std::shared_ptr<FileTree> tree_;
    Table metres_{store, "VarLensTableFocusMeter"}, feet_{store, "VarLensTableFocusImperial"},
        stops_{store, "VarLensTableIris"}, lengths_{store, "VarLensTableZoom"};
    Flag described_{store, "VarLensTableDescription.TableActive"},
        textActive_{store, "VarLensTableDescription.TextActive"},
        meterFitted_{store, "VarLensTableDescription.MeterScaleFitted"};
    Text text_{store, "VarLensTableDescription.LensText"}, brand_{store, "VarLensTableDescription.LensBrandName"},
        serial_{store, "VarLensTableDescription.SerialNumber"};
    Real zoomMinimum_{store, "VarLensZoomMinValue"}, zoomMaximum_{store, "VarLensZoomMaxValue"},
        actFocus_{store, "VarLensActFocus"}, near_{store, "VarDofNearValue"}, far_{store, "VarDofFarValue"},
        confusion_{store, "VarCircleofConfusion"};
    Number actIris_{store, "VarLensActIris"}, focalLength_{store, "VarFocalLength"},
        camLensType_{store, "VarCamLensType"};
    Real focusAt_{store, "VarFocusTargetValue"}, irisAt_{store, "VarIrisTargetValue"},
        zoomAt_{store, "VarZoomTargetValue"};
    Flag focusInverted_{store, "VarFocusTableInverted"}, irisInverted_{store, "VarIrisTableInverted"},
        zoomInverted_{store, "VarZoomTableInverted"}, focusInvertedShown_{store, "VarFocusTableInverted_GuiLocal"},
        irisInvertedShown_{store, "VarIrisTableInverted_GuiLocal"},
        zoomInvertedShown_{store, "VarZoomTableInverted_GuiLocal"};
    Flag clear_{store, "VarLensClearLda"}, invalidFile_{store, "VarLensFileInvalidFile"},
        notFound_{store, "VarFileNotFound"};
    Text wantedFile_{store, "VarLoadLensFileName"}, activeFile_{store, "VarActivateLensFileName"};
    RecentFiles recent_{store, "VarMruLensFileList", "VarMruLensFileListSize"};
    const LensModel* model_ = nullptr;
    std::optional<ProgrammedLens> programmed_;
};

}  // namespace Unit
