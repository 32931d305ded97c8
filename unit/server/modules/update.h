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

    std::shared_ptr<FileTree> tree_;
    std::unique_ptr<Job> job_;
    double elapsed_ = 0;
    bool usbWasThere_ = false;

    Number usb_, fileCount_, fileState_, deviceStart_, deviceProgress_, deviceState_, busProgress_, busIndex_,
        busCount_, busState_, busDevices_, busSelected_, exportProgress_, removeLogs_, result_;
    Real progress_;
    Flag hostStart_, busStart_, exportLogs_, prepareUsb_, writeInfo_;
    Text fileName_, fileVersion_, productVersion_, busPart_, busName_, resultText_;
    Column files_, busConnected_, busNames_, busVersions_, busSerials_;
};

}  // namespace Unit
