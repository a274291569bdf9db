// Lists to be fitted, of cards that the base holds: lengths in seconds, names in column 0.
#pragma once

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "station/OnAirColumns.h"
#include "station/TextForms.h"
#include "support/TestStation.h"

namespace zemo::test {

struct Piece {
  std::string name;
  int seconds = 0;
  int exitMs = 0;
};

// A station at that moment, stopped, with nothing on air and no buffers, so that the list would
// begin now. It has no model, so that a request brings nothing.
class FittingStation : public testing::Test {
 protected:
  explicit FittingStation(const std::string& begin) : on(begin) {}
  void SetUp() override {
    on.Load();
    on.station.engine.BufferOffsetSec = 0;
    on.seen.clear();
  }
  // A card for each piece, at the end of the list; a piece called "jingle" becomes a jingle row.
  void List(const std::vector<Piece>& pieces) {
    for (const Piece& piece : pieces) {
      if (piece.name != "jingle") {
        on.AppendCard(on.AddCard(
            {.lengthMs = piece.seconds * 1000, .artist = piece.name, .exitMs = piece.exitMs}));
        continue;
      }
      OnAirElement element;
      element.title = piece.name;
      element.code = -1;
      element.lengthMs = piece.seconds * 1000;
      on.Append(element);
    }
  }
  void Break(int row, const std::string& moment, const std::string& length,
             const std::string& type = "Pubs") {
    on.station.GPubJour.SetCell(row, 0, moment);
    on.station.GPubJour.SetCell(row, 1, length);
    on.station.GPubJour.SetCell(row, 2, type);
  }
  void Set(const std::string& field, const std::string& value) {
    on.Set(field, value);
    on.station.base.CheckCnf();
  }
  std::string Names() const {
    std::string names;
    for (const OnAirRow& row : on.station.PL) names += (names.empty() ? "" : ",") + row.title;
    return names;
  }
  std::string Exits() const {
    std::string exits;
    for (const OnAirRow& row : on.station.PL)
      exits += (exits.empty() ? "" : ",") + ColumnText(row, Col::kExitMs);
    return exits;
  }
  EngineState& Engine() { return on.station.engine; }
  OnAirList& PL() { return on.station.PL; }

  TestStation on;
};

}  // namespace zemo::test
