#pragma once

#include <string>

#include "unit/server/module.h"

namespace Unit {

/// The Bluetooth adapter: known devices, finding others, being found, and pairing a device whose state the product
/// puts to Pairing.
class Bluetooth final : public Module {
  public:
    explicit Bluetooth(Store& values);

    void powerUp() override;
    void tick(std::int64_t nanoseconds) override;

  private:
    void switchPower();
    void addDevice(std::size_t known, std::int32_t state);
    void pair(double seconds);

    Flag available_{store, "VarBluetoothAdapterAvailable"}, power_{store, "VarBluetoothPower"};
    Flag discoverable_{store, "VarBluetoothDiscoverable"}, scan_{store, "VarBluetoothScan"};
    Number count_{store, "VarBluetoothDeviceListSize"};
    Number firstState_{store, "VarBluetoothDeviceList[0].DeviceState"};
    Column addresses_{store, "VarBluetoothDeviceList", "DeviceAddress"};
    Column names_{store, "VarBluetoothDeviceList", "DeviceName"};
    Column states_{store, "VarBluetoothDeviceList", "DeviceState"};
    double scanned_ = 0, visible_ = 0, pairing_ = 0;
    bool powered_ = false;
};

}  // namespace Unit
