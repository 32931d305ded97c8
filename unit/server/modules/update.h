#pragma once

#include <functional>
#include <memory>

#include "unit/server/module.h"
#include "unit/server/modules/filetree.h"

namespace Unit {

/// Firmware and service jobs, staged: the files on the USB stick, checking and installing one, updating the modem and
/// the devices on the bus, exporting log files. One job runs at a time; a missing stick ends it in failure.
class Update final : public Module {
  public:
    Update(Store& values, std::shared_ptr<FileTree> tree);

    void powerUp() override;
    void tick(std::int64_t nanoseconds) override;

  private:
    /// A job in work: called with its progress up to 1, then once with the outcome.
    struct Job {
        double seconds;
        std::function<void(double part)> progress;
        std::function<void(bool good)> finish;
        bool needsUsb;
    };

    void listFiles();
    void checkFile();
    void begin(Job job);
    void installHost();
    void updateDevice();
    void updateBusDevice();
    void exportLogs();
    void makeFolders();
    void writeInfo();

    std::shared_ptr<FileTree> tree_;
    std::unique_ptr<Job> job_;
    double elapsed_ = 0;
    bool usbWasThere_ = false;

    Number usb_{store, "VarUsbState"}, fileCount_{store, "VarHostUpdateFileListSize"},
        fileState_{store, "VarHostUpdateFileState"}, deviceStart_{store, "VarDeviceUpdateStart"},
        deviceProgress_{store, "VarDeviceUpdateProgress"}, deviceState_{store, "VarDeviceUpdateState"},
        busProgress_{store, "VarKordelUpdateProgress"}, busIndex_{store, "VarKordelUpdateIndex"},
        busCount_{store, "VarKordelUpdateCount"}, busState_{store, "VarKordelUpdateState"},
        busDevices_{store, "VarKordelDeviceListSize"}, busSelected_{store, "VarKordelDeviceListIndex"},
        exportProgress_{store, "VarExportLogFilesProgress"}, removeLogs_{store, "VarRemoveLogFiles"},
        result_{store, "VarLastCommandResult"};
    Real progress_{store, "VarLastCommandProgress"};
    Flag hostStart_{store, "VarHostUpdateStart"}, busStart_{store, "VarKordelUpdateStart"},
        exportLogs_{store, "VarExportLogFiles"}, prepareUsb_{store, "VarPrepareUsbMedium"},
        writeInfo_{store, "VarWriteHwInfo"};
    Text fileName_{store, "VarHostUpdateFileName"}, fileVersion_{store, "VarHostUpdateFileFirmwareVersion"},
        productVersion_{store, "VarProductVersion"}, busPart_{store, "VarKordelUpdatePartName"},
        busName_{store, "VarKordelUpdateDeviceName"}, resultText_{store, "VarLastCommandResultText"};
    Column files_{store, "VarHostUpdateFileList", "FileName"},
        busConnected_{store, "VarKordelDeviceList", "DeviceConnected"},
        busNames_{store, "VarKordelDeviceList", "DeviceName"},
        busVersions_{store, "VarKordelDeviceList", "MainSwVersion"},
        busSerials_{store, "VarKordelDeviceList", "SerNumber"};
};

}  // namespace Unit
