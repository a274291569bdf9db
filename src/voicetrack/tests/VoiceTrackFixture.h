// A list of two titles and the editor opened on the first: 180 s with an exit point of 5 s, so that
// the second comes in at 175 s; the second has an intro of 12 s.
#pragma once

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "engine/OperatorControls.h"
#include "platform/LevelTool.h"
#include "station/OnAirColumns.h"
#include "support/TestStation.h"
#include "voicetrack/VoiceTrackScreen.h"

namespace zemo {

struct VoiceTrackFixture : testing::Test {
  test::TestStation on;
  VoiceTrackEditor editor;

  void SetUp() override {
    on.Load();
    on.AppendCard(on.AddCard({.artist = "ADA", .title = "SONG", .exitMs = 5000}));
    on.AppendCard(
        on.AddCard({.lengthMs = 200000, .artist = "BOB", .title = "TUNE", .introSec = 12}));
    Open(1);
  }
  void TearDown() override { VoiceTracks::Form_Unload(on.station, editor); }

  void Open(int row) { OnAir::BntVoiceTrack_Click(on.station, editor, row); }
  void Wait(int64_t ms) { on.RunUntil(on.loop.MonotonicMs() + ms); }
  // The editor's own file of that CODE.
  std::string OwnFile(const std::string& name = "00000001.Wav") {
    return on.stationFolder.Path() + "VoiceTrack/" + name;
  }
  // A file from elsewhere becomes the track.
  std::string Load(int64_t lengthMs, const std::string& name = "link.wav") {
    const std::string file = on.MakeSound(name, lengthMs);
    VoiceTracks::BntLoadVT_Click(on.station, editor, file);
    return file;
  }
  std::string Cell(int row, int column) { return ColumnText(on.station.PL.Row(row), column); }
  std::string LastMessage() {
    const auto messages = on.Events("message");
    return messages.empty() ? "" : messages.back()["text"];
  }
  // The events `preview` as "at state slot", where `at` is ms since `begin`; with the volume behind
  // starts and changes of volume, and the length behind fades.
  std::vector<std::string> Join(int64_t begin) {
    std::vector<std::string> told;
    for (const test::Seen& event : on.Events("preview")) {
      std::string line =
          std::to_string(event.atMs - begin) + " " + event["state"] + " " + event["slot"];
      if (event["state"] == "fade") line += " " + event["ms"];
      if (event["state"] == "start" || event["state"] == "volume") line += " " + event["volume"];
      told.push_back(line);
    }
    return told;
  }
};

}  // namespace zemo
