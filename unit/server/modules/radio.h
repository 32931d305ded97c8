#pragma once

#include <vector>

#include "unit/server/module.h"

namespace Unit {

/// The radio module and the motor controller at its other end: switching on, searching, the link and its quality,
/// channel and region by module, and the scan of the band.
class Radio final : public Module {
  public:
    explicit Radio(Store& values);

    void factory() override;
    void powerUp() override;
    void tick(std::int64_t nanoseconds) override;

  private:
    void addSettings();
    void putModem(std::size_t type);
    void tuneAsModule();
    void setRegion(std::int32_t region);
    void setConnected(bool connected);
    bool usable() const;
    void enter(std::int32_t state);
    void showLink();
    void scan(double seconds);
    std::size_t moduleRow() const;

    Flag power_{store, "VarRadioPower"}, boost_{store, "VarRadioBoost"}, scanRequest_{store, "VarPerformRadioRssiScan"},
        modemConnected_{store, "VarOnewireModemConnected"};
    Number state_{store, "VarRadioState"}, channel_{store, "VarRadioChannel"}, region_{store, "VarRadioRegion"},
        quality_{store, "VarRadioLinkQuality"}, rssi_{store, "VarRadioRSSI"}, modem_{store, "VarModemType"},
        client_{store, "VarRadioClientNr"};
    Text version_{store, "VarModemVersionString"}, address_{store, "VarRadioMacAddress"},
        controllerAddress_{store, "VarRadioMotConMacAddress"};
    Mask regions_{store, "VarRadioRegionFlags"};
    Column moduleChannel_{store, "VarRadioModuleList", "Channel"}, moduleRegion_{store, "VarRadioModuleList", "Region"};
    std::vector<Real> results_;
    double elapsed_ = 0;
    double scanned_ = 0;  ///< seconds of this scan
    int linkQuality_ = 4;
    bool controller_ = true;
};

}  // namespace Unit
