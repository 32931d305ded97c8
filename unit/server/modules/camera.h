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
    void listenToSettings();
    void listenToToggles();
    void clearLists();
    void showSpeed(std::size_t row);
    void showShutter(std::size_t row);
    void showExposureIndex(std::size_t row);
    void showFilter(std::size_t row);
    void showWhiteBalance(std::size_t row);
    void recordPressed();
    void setRecording(bool recording);
    void showLens();
    void run(double seconds);

    Number available_, unit_, state_, type_, footageUnit_, footage_, wbAct_, exposureTimeAct_;
    Number speedSet_, shutterSet_, indexSet_, wbSet_, filterSet_, timeSet_, setupSet_;
    Number speeds_, shutters_, indices_, balances_, filters_, times_, setups_, setupTexts_, infos_, monitors_;
    Number front_, rear_, buttons_, sdiStatusSet_, sdiStatus_;
    Number distanceFeet_;
    Real speedAct_, shutterAct_, filterAct_, wbTint_, speedCustom_, shutterCustom_, wbTintCustom_;
    Number wbCustom_, timeCustom_;
    Real distanceMeter_, distanceInch_, distanceRaw_, stopRaw_, lengthRaw_, focalLength_;
    Number stopPart_;
    Text stopText_, stopFull_;
    Text firmware_, indexAct_, filterText_, name_, codec_, sensor_, resolution_, frontName_, rearName_;
    Flag warning_, timeValid_, recordButton_, recordKey_, highSpeed_, highSpeedSet_, highSpeedSupport_, fileTransfer_,
        calAll_;
    Column speedList_, shutterList_, indexList_, wbList_, wbTintList_, wbLabelList_, filterList_, timeList_, setupList_,
        setupLabels_, setupTextList_, infoList_, monitorList_, monitorFunctions_, supplyWarning_, supply_,
        buttonLabels_, buttonStates_;
    Real lensFocus_;
    Number lensIris_, lensLength_, lensType_;
    std::vector<Toggle> toggles_;
    double mediaMinutes_ = 42;
    bool recordWasDown_ = false;
};

}  // namespace Unit
