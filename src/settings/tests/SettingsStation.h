// A loaded station with its settings screen, the devices that it tries out, and the bytes of the
// files that it writes. The clock stands on Saturday 21 November 2026.
#pragma once

#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <vector>

#include "platform/SettingsDevices.h"
#include "settings/SettingsControls.h"
#include "settings/SettingsCouplings.h"
#include "settings/SettingsScreen.h"
#include "support/TestStation.h"

namespace zemo::test {

struct FakeDevices : SettingsDevices {
  std::vector<std::string> names = {"Studio", "Headphones"};
  std::vector<std::string> keys = {"usb.1", "pci.2"};
  std::vector<std::string> done;
  bool prelistenClosed = true;
  bool failing = false;

  void Do(const std::string& what) {
    if (failing) throw DeviceError("the device fails for the test");
    done.push_back(what);
  }
  std::vector<std::string> OutputNames() override { return names; }
  std::vector<std::string> OutputKeys() override { return keys; }
  void SelectOutput(int device) override { Do("output " + std::to_string(device)); }
  bool PrelistenClosed() const override { return prelistenClosed; }
  void SelectPrelisten(int device) override { Do("prelisten " + std::to_string(device)); }
};

class SettingsStation : public testing::Test {
 protected:
  SettingsStation() : on("2026-11-21 12:00:00") {
    on.Load();
    on.seen.clear();
  }
  void Load() { SettingsLoad(station, devices); }
  std::optional<std::string> Set(const std::string& control, const std::string& value) {
    const SettingsControl* found = FindSettingsControl(control);
    if (found == nullptr) return "no control " + control;
    return SetControl(station, devices, *found, value);
  }
  std::string Stored(const std::string& field) {
    return on.SqlText("SELECT " + field + " FROM Cnf");
  }
  std::string StationFile(const std::string& name) {
    return on.stationFolder.Read(name).value_or("(no file)");
  }
  std::string MachineFile(const std::string& name) {
    return on.machineFolder.Read(name).value_or("(no file)");
  }
  // The next operation on a file of the station fails.
  void NextFileFails() {
    on.stationFolder.fault.count = 0;
    on.stationFolder.fault.number = 1;
  }
  // "where number text" of each error since the load.
  std::vector<std::string> Errors() const {
    std::vector<std::string> errors;
    for (const Seen& error : on.Events("error"))
      errors.push_back(error["where"] + " " + error["number"] + " " + error["text"]);
    return errors;
  }

  TestStation on;
  FakeDevices devices;
  Station& station = on.station;
  SettingsScreen& screen = station.settings;
};

using Texts = std::vector<std::string>;

}  // namespace zemo::test
