#pragma once

#include <memory>

#include "unit/server/module.h"
#include "unit/server/modules/filetree.h"
#include "unit/server/modules/recentfiles.h"
#include "unit/server/modules/ringdrawing.h"
#include "unit/server/modules/ringfile.h"

namespace Unit {

/// The knob's exchangeable rings: the one that is on it, programming one mark by mark, its file, sending it to the
/// ring's chip, and its drawing on the USB stick.
class Rings final : public Module {
  public:
    Rings(Store& values, std::shared_ptr<FileTree> tree);

    void powerUp() override;
    void tick(std::int64_t nanoseconds) override;
    void loadFile(const std::string& name);

  private:
    enum class Fixed { None, Metres, Feet, Iris };

    /// A table of marks with its live count.
    struct MarkTable {
        MarkTable(Store& values, const std::string& name);
        Number count;
        Column position, main, sub, value, flags, index;

        /// As many of `marks` as fit, from the `first` one on.
        void show(const RingFile& ring, const std::vector<RingFile::Mark>& marks, std::size_t first) const;
    };

    void listenToProgramming();
    void listenToFiles();
    void putFixed(Fixed ring);
    void showFixed();
    void act();
    void begin();
    void addOrRemove();
    void commitEdit();
    void proposeNext(int direction);
    void checkName();
    void saveFile();
    void startUpload();
    void endUpload(bool good);
    void exportDrawing();
    void importFiles();
    void showMarks();
    void showDrawing();
    RingDrawingStyle style() const;
    double shownValue() const;  ///< that the next mark gets
    double knob() const { return static_cast<double>(knob_.get()); }
    std::vector<RingFile::Mark>::iterator near();
    std::filesystem::path fileOf(const std::string& name) const;

    std::shared_ptr<FileTree> tree_;
    RingFile ring_;
    MarkTable around_, grab_, majorMarks_, minorMarks_;
    Fixed fixed_ = Fixed::None;
    double uploading_ = -1;  ///< seconds that it takes already; negative when there is none
    double moving_ = -1;     ///< value of the mark that is being moved

    Flag active_{store, "VarRingProgrammingActive"}, editing_{store, "VarRingProgrammingEditingActive"},
        custom_{store, "VarCustomRingActive"}, clear_{store, "VarCustomRingClear"},
        invalid_{store, "VarCustomRingInvalidFile"}, actionStart_{store, "VarCustomRingActionStart"},
        import_{store, "VarCustomRingImportStart"}, export_{store, "VarCustomRingExportSelected"},
        press_{store, "VarRingProgrammingMultiInputPressed"}, commit_{store, "VarRingProgrammingEditCommit"},
        more_{store, "VarRingProgrammingIncrement"}, less_{store, "VarRingProgrammingDecrement"},
        morePossible_{store, "VarRingProgrammingIncrementPossible"},
        lessPossible_{store, "VarRingProgrammingDecrementPossible"},
        invalidMark_{store, "VarRingProgrammingInvalidMark"}, added_{store, "VarRingProgrammingValueAlreadyAdded"},
        full_{store, "VarRingProgrammingMaxNumberReached"}, leftHand_{store, "VarRingProgrammingLeftHandMode"},
        inches_{store, "VarRingProgrammingInchToggle"}, checkDone_{store, "VarRingFileCheckDone"},
        overwrite_{store, "VarRingProgrammingOverwriteFile"}, accept_{store, "VarRingFileAcceptSaveFileName"},
        saved_{store, "VarRingFileSaveSuccessful"}, upload_{store, "VarRingProgrammingUploadStart"},
        uploadFile_{store, "VarRingFileUploadStart"}, cancel_{store, "VarRingUploadCancel"},
        done_{store, "VarRingProgrammingDone"}, exportPossible_{store, "VarRingProgrammingExportPossible"},
        importPossible_{store, "VarRingProgrammingImportPossible"}, moveStart_{store, "VarRingProgrammingMoveStart"},
        moveStop_{store, "VarRingProgrammingMoveStop"}, moves_{store, "VarRingProgrammingMoveActive"},
        drawing_{store, "VarSvgExportActive"}, draw_{store, "VarSvgExportStart"},
        fixedNone_{store, "VarPreMarkedRingNone"}, fixedValid_{store, "VarPreMarkedValueValid"},
        detect_{store, "VarPreMarkedRingAutoDet"};
    Number action_{store, "VarCustomRingAction"}, axis_{store, "VarRingProgrammingAxis"},
        unit_{store, "VarRingProgrammingUnit"}, usb_{store, "VarUsbState"}, result_{store, "VarLastCommandResult"},
        fixedFeet_{store, "VarPreMarkedRingFeet"}, fixedOpen_{store, "VarPreMarkedIrisOpen"},
        fixedEnd_{store, "VarPreMarkedIrisEnd"};
    Real progress_{store, "VarLastCommandProgress"}, major_{store, "VarRingProgrammingValueMajor"},
        minor_{store, "VarRingProgrammingValueMinor"}, editMajor_{store, "VarRingProgrammingEditMajor"},
        editMinor_{store, "VarRingProgrammingEditMinor"}, knob_{store, "VarKnob"},
        fixedMetres_{store, "VarPreMarkedRingMeter"}, fixedInches_{store, "VarPreMarkedRingInch"};
    Text ringName_{store, "VarRingProgrammingRingName"}, fileName_{store, "VarRingProgrammingFileName"},
        activeFile_{store, "VarActiveRingFileName"}, resultText_{store, "VarLastCommandResultText"};
    RecentFiles recent_{store, "VarMruCustomRingFileList", "VarMruCustomRingFileListSize"};
};

}  // namespace Unit
