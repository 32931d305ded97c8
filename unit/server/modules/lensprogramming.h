#pragma once

#include <array>
#include <memory>
#include <span>

#include "unit/server/module.h"
#include "unit/server/modules/filetree.h"
#include "unit/server/modules/lens.h"

namespace Unit {

/// Measuring the rings of a lens by hand: each engraved value is chosen, the axis moved to it, and the place taken
/// over; then the lens is saved as a file and used. Leaving in between forgets it.
class LensProgramming final : public Module {
  public:
    LensProgramming(Store& values, std::shared_ptr<FileTree> tree, Lens& lens);

    void powerUp() override;
    void tick(std::int64_t nanoseconds) override;

  private:
    static constexpr std::size_t axisCount = 3;

    struct Axis {
        Real target;
        ProgrammedLens::Marks ProgrammedLens::*marks;
    };

    void listenToWizard();
    void listenToMarks();
    void listenToFile();
    void prepare();
    void begin();
    void beginAxis();
    void setMark();
    void deleteMark();
    void finishAxis();
    void moveBy(int values);
    void moveMark();
    void snap();
    void pushAxis(double seconds);
    void showValue();
    void propose();
    void checkName();
    void save();

    Axis* active();
    ProgrammedLens::Marks& marks() { return lens_.*active()->marks; }
    std::span<const double> engraved() const;
    double value() const;  ///< that is to be set, in metres, T-stops or millimetres
    std::vector<ProgrammedLens::Mark>::iterator markOf(double value);
    std::filesystem::path fileOf(const std::string& name) const;
    void showLens();

    std::shared_ptr<FileTree> tree_;
    Lens& shown_;
    ProgrammedLens lens_;
    std::array<Axis, axisCount> axes_;
    std::size_t index_ = 0;  ///< of the engraved value
    double grabbed_ = -1;    ///< value of the mark that is being moved

    Flag wizard_{store, "VarLensProgrammingActive"}, editing_{store, "VarLensEditingActive"},
        prepare_{store, "VarLensProgrammingPrepare"}, set_{store, "VarLensProgrammingSetButtonPressed"},
        finish_{store, "VarLensProgrammingFinishButtonPressed"},
        delete_{store, "VarLensProgrammingDeleteButtonPressed"},
        saveButton_{store, "VarLensProgrammingSaveButtonPressed"}, more_{store, "VarLensProgrammingIncrement"},
        less_{store, "VarLensProgrammingDecrement"}, morePossible_{store, "VarLensProgrammingIncrementPossible"},
        lessPossible_{store, "VarLensProgrammingDecrementPossible"}, visible_{store, "VarLensProgrammingValueVisible"},
        added_{store, "VarLensProgrammingValueAlreadyAdded"}, number_{store, "VarLensProgrammingValueEngraved"},
        line_{store, "VarLensProgrammingLineEngraved"}, serialValid_{store, "VarLensProgrammingSerialNumberValid"},
        randomSerial_{store, "VarLensProgrammingSerialNumberSetRandom"}, invalidMark_{store, "VarLensFileInvalidMark"},
        moveStart_{store, "VarLensEditingMoveStart"}, moveStop_{store, "VarLensEditingMoveStop"},
        snap_{store, "VarLensEditingSnap"}, accept_{store, "VarLensFileAcceptSaveFileName"},
        overwrite_{store, "VarLensFileOverwriteFile"}, saved_{store, "VarLensFileSaveSuccessful"},
        exists_{store, "VarFileAlreadyExists"};
    Number axis_{store, "VarLensProgrammingActiveAxis"}, stage_{store, "VarLensProgrammingAxisStage"},
        unit_{store, "VarLensProgrammingUnit"}, brand_{store, "VarLensProgrammingBrand"},
        length_{store, "VarLensProgrammingFocalLength_Local"}, type_{store, "VarLensProgrammingValueIsTypeOf"},
        pad_{store, "VarLensProgrammingForcePadPressed"}, feet_{store, "VarLensProgrammingValueFeet"};
    Real metres_{store, "VarLensProgrammingValueMeter"}, inches_{store, "VarLensProgrammingValueInch"},
        stop_{store, "VarLensProgrammingValueIris"}, zoom_{store, "VarLensProgrammingValueZoom"},
        stick_{store, "VarJoystickY"};
    Text serial_{store, "VarLensProgrammingSerialNumber"}, lensType_{store, "VarLensProgrammingType"},
        otherBrand_{store, "VarLensProgrammingBrandTemp_Local"}, name_{store, "VarLensFileSave"},
        activeFile_{store, "VarActivateLensFileName"};
};

}  // namespace Unit
