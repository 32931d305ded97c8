#pragma once

#include <string>
#include <vector>

#include "unit/server/module.h"

namespace Unit {

/// The camera at the other end of the cable: a cinema camera that tells everything, or a partner's that only runs,
/// stops and tells its speed. Recording, the lists of what can be set, user buttons, monitor outputs.
class Camera final : public Module {
  public:
    explicit Camera(Store& values);

    void powerUp() override;
    void tick(std::int64_t nanoseconds) override;

  private:
    enum class Type { None, Orvo, Partner };

    /// A request flag that turns a state over.
    struct Toggle {
        Flag request, state;
    };

    void put(Type type);
    void describe();
    void listSettings();
    void listMedia();
    void addSettings();
    void listenToRows();
    void listenToOwnValues();
    void listenToSwitches();
    void listenToToggles();
    void listenToUserButtons();
    void clearLists();
    void showSpeed(std::size_t row);
    void showShutter(std::size_t row);
    void showExposureIndex(std::size_t row);
    void showFilter(std::size_t row);
    void showWhiteBalance(std::size_t row);
    void showExposureTime(std::size_t row);
    void recordPressed();
    void setRecording(bool recording);
    void showLens();
    void run(double seconds);

    // What it is, and what it does.
    Number available_{store, "VarCamDataAvailable"}, state_{store, "VarCamState"}, type_{store, "VarCamType"};
    Text firmware_{store, "VarCamFWVersion"}, name_{store, "VarCamIndex"}, codec_{store, "VarCamMediaCodec"},
        sensor_{store, "VarCamSensorMode"}, resolution_{store, "VarCamRecResolution"};
    Flag fileTransfer_{store, "VarCamLensFileTransferSupport"}, calAll_{store, "VarCamCalAllMotorsEnabled"};
    Column supplyWarning_{store, "VarCamSupply", "CamSupplyWarning"}, supply_{store, "VarCamSupply", "CamSupplyValue"};
    Number front_{store, "VarCamFrontFilterType"}, rear_{store, "VarCamRearFilterType"};
    Text frontName_{store, "VarCamFrontFilterName"}, rearName_{store, "VarCamRearFilterName"};

    // Recording.
    Flag recordButton_{store, "VarButtonRecord"}, recordKey_{store, "VarRecButtonPressed"};
    Number footage_{store, "VarCamFootage"}, footageUnit_{store, "VarCamFootageUnit"};
    Flag warning_{store, "VarCamRemainingTimeWarning"};

    // What can be set: the row that is asked for, a value of one's own, the value now, and the list.
    Number speedSet_{store, "VarCamSpeedSet"}, speeds_{store, "VarCamSpeedListSize"};
    Real speedCustom_{store, "VarCamSpeedCustomSet"}, speedAct_{store, "VarCamSpeedAct"};
    Column speedList_{store, "VarCamSpeedList", "CamSpeed"};

    Number shutterSet_{store, "VarCamShutterSet"}, shutters_{store, "VarCamShutterListSize"};
    Real shutterCustom_{store, "VarCamShutterCustomSet"}, shutterAct_{store, "VarCamShutterAct"};
    Column shutterList_{store, "VarCamShutterList", "CamShutter"};

    Number timeSet_{store, "VarCamExposureTimeSet"}, times_{store, "VarCamExposureTimeListSize"};
    Number timeCustom_{store, "VarCamExposureTimeCustomSet"}, exposureTimeAct_{store, "VarCamExposureTimeAct"};
    Flag timeValid_{store, "VarCamExposureTimeValid"};
    Column timeList_{store, "VarCamExposureTimeList", "CamExposureTime"};

    Number indexSet_{store, "VarCamExposureIndexSet"}, indices_{store, "VarCamExposureIndexListSize"};
    Text indexAct_{store, "VarCamExposureIndexAct"};
    Column indexList_{store, "VarCamExposureIndexList", "CamExposureIndex"};

    Number filterSet_{store, "VarCamNdFilterSet"}, filters_{store, "VarCamNdFilterListSize"};
    Real filterAct_{store, "VarCamNdFilterAct"};
    Text filterText_{store, "VarCamNdFilterActString"};
    Column filterList_{store, "VarCamNdFilterList", "CamNdFilter"};

    Number wbSet_{store, "VarCamWhiteBalanceSet"}, balances_{store, "VarCamWhiteBalanceListSize"};
    Number wbCustom_{store, "VarCamWhiteBalanceCustomSet"}, wbAct_{store, "VarCamWhiteBalanceAct"};
    Real wbTintCustom_{store, "VarCamWhiteBalanceCustomTintSet"}, wbTint_{store, "VarCamWhiteBalanceTintAct"};
    Column wbList_{store, "VarCamWhiteBalanceList", "CamWhiteBalance"},
        wbTintList_{store, "VarCamWhiteBalanceList", "CamWhiteBalanceTint"},
        wbLabelList_{store, "VarCamWhiteBalanceList", "CamWhiteBalanceLabel"};

    Flag highSpeedSet_{store, "VarCamHighSpeedModeSet"}, highSpeed_{store, "VarCamHighSpeedModeAct"},
        highSpeedSupport_{store, "VarCamHighSpeedModeSupport"};
    Number sdiStatusSet_{store, "VarCamSDIStatusInfoSet"}, sdiStatus_{store, "VarCamSDIStatusInfoAct"};

    // Lists to choose from, and the user buttons.
    Number setups_{store, "VarCamUserSetupListSize"}, setupTexts_{store, "VarCamUserSetupDescListSize"},
        infos_{store, "VarCamLiveCamInfoListSize"}, monitors_{store, "VarCamMonOutListSize"},
        buttons_{store, "VarCamUserButtonsNumber"};
    Column setupList_{store, "VarCamUserSetupList", "CamUserSetup"},
        setupLabels_{store, "VarCamUserSetupList", "CamUserSetupLabel"},
        setupTextList_{store, "VarCamUserSetupDescList", "Text"}, infoList_{store, "VarCamLiveCamInfoList", "Text"},
        monitorList_{store, "VarCamMonOutList", "Text"}, monitorFunctions_{store, "VarCamMonOutFunctionList", "Text"},
        buttonLabels_{store, "VarCamUserButtons", "UbLabel"}, buttonStates_{store, "VarCamUserButtons", "UbStatus"};

    // The lens, and what the camera tells of it.
    Number lensType_{store, "VarCamLensType"}, lensIris_{store, "VarLensActIris"}, lensLength_{store, "VarFocalLength"};
    Real lensFocus_{store, "VarLensActFocus"};
    Real distanceMeter_{store, "VarCamFocusDistanceMeter"}, distanceInch_{store, "VarCamFocusDistanceInch"},
        distanceRaw_{store, "VarCamFocusDistanceRaw"}, stopRaw_{store, "VarCamTStopRaw"},
        lengthRaw_{store, "VarCamFocalLengthRaw"}, focalLength_{store, "VarCamFocalLength"};
    Number distanceFeet_{store, "VarCamFocusDistanceFeet"}, stopPart_{store, "VarCamTStopPart"};
    Text stopText_{store, "VarCamTStopString"}, stopFull_{store, "VarCamTStopFull"};

    std::vector<Toggle> toggles_;
    double mediaMinutes_ = 42;
    bool recordWasDown_ = false;
};

}  // namespace Unit
