#pragma once

#include "unit/server/module.h"

namespace Unit {

/// The distance camera (CDM): it sees how much of the picture lies how far away, as a curve between two distances,
/// and measures where most of it lies.
class DepthCamera final : public Module {
  public:
    explicit DepthCamera(Store& values);

    void powerUp() override;
    void tick(std::int64_t nanoseconds) override;

  private:
    void keepRange();
    /// How much of the picture lies there, 0 to 255.
    double amountAt(double metres) const;
    void takePicture();

    Real near_{store, "VarCdmNearDistance"}, far_{store, "VarCdmFarDistance"}, displayMin_{store, "VarCdmDisplayMin"},
        displayMax_{store, "VarCdmDisplayMax"}, measured_{store, "VarCdmMeasuredDistance"};
    Number intervals_{store, "VarCdmNrOfIntervals"}, index_{store, "VarCdmDataPointIndex"},
        value_{store, "VarCdmDataPointValue"}, count_{store, "VarCdmCoordinatesListSize"};
    Flag add_{store, "VarCdmAddDistanceValue"}, automatic_{store, "VarCdmAutoValue"},
        request_{store, "VarCdmRequestPacket"};
    Column valid_{store, "VarCdmCoordinatesList", "Valid"}, x_{store, "VarCdmCoordinatesList", "X"},
        y_{store, "VarCdmCoordinatesList", "Y"}, xPart_{store, "VarCdmCoordinatesList", "XNormalized"},
        yPart_{store, "VarCdmCoordinatesList", "YNormalized"};
    bool there_ = false;
    double subject_ = 3;
    double since_ = 0;
};

}  // namespace Unit
