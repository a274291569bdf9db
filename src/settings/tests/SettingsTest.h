// What the tests of the side files share: a station with its file names set, and the bytes of a
// file.
#pragma once

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "settings/SideFiles.h"
#include "station/tests/FakePlatform.h"

namespace zemo {

struct SettingsTest : testing::Test {
  FakePlatform fake;
  Station& station = fake.station;
  EngineLists& lists = station.lists;

  SettingsTest() { SetSideFileNames(station); }

  void StationFileIs(const std::string& name, std::string bytes) {
    fake.stationFolder.files[name] = std::move(bytes);
  }
  void MachineFileIs(const std::string& name, std::string bytes) {
    fake.machineFolder.files[name] = std::move(bytes);
  }
  std::string StationFile(const std::string& name) {
    return fake.stationFolder.Read(name).value_or("(no file)");
  }
  std::string MachineFile(const std::string& name) {
    return fake.machineFolder.Read(name).value_or("(no file)");
  }
};

using Texts = std::vector<std::string>;

}  // namespace zemo
