// A station with wires: its settings stand in the base before it is loaded, as on a machine that is
// switched on. Ticks come at every 100 ms. An idle station drains once, from 100 to 2600 ms.
#pragma once

#include <gtest/gtest.h>

#include <map>
#include <string>

#include "support/TestStation.h"

namespace zemo::test {

// The automaton is polled ahead: a contact that closes at a tick's own moment is asked for by that
// tick and read by the next.
constexpr int64_t kPolledMs = 100;

using Settings = std::map<std::string, int>;

class TriggerStation : public TestStation {
 public:
  TriggerStation(const std::string& begin, const Settings& settings) : TestStation(begin) {
    station.base.OpenOrCreateDatabase();
    station.base.CreateMissingTables([](const std::string&, int, const std::string&) {});
    station.base.OpenAllTables();
    station.base.SeedFixedRows();
    station.base.Close();
    for (const auto& [field, value] : settings) Set(field, std::to_string(value));
    Set("Jingles", "0");
  }

  // At every hour of every day any title will do.
  void MakeModels() {
    ModelOfOneGenre("POP");
    Sql("UPDATE Cnf SET EcartArtiste = 0");
  }
  // Titles for requests, each of its own artist.
  void AddTitles(int count) {
    for (int i = 1; i <= count; ++i)
      AddCard({.lengthMs = 180000, .artist = "ARTIST" + std::to_string(i)});
  }
  void AddLinkingElement(int64_t lengthMs) {
    Sql("INSERT INTO DiscothequeVirgule (FILENAME, DUREE, LIBELLE, POINTSORTIE, JingleRacro) "
        "VALUES ('" +
        MakeSound("racro.wav", lengthMs) + "', " + std::to_string(lengthMs) + ", 'RACRO', 0, 1)");
  }
  void AppendTitle(int64_t lengthMs) { AppendCard(AddCard({.lengthMs = lengthMs})); }
  // No music: it survives the change of the hour.
  void AppendJingle(int64_t lengthMs) {
    OnAirElement row;
    row.title = "JINGLE";
    row.file = MakeSound("jingle" + std::to_string(station.PL.Count()) + ".wav", lengthMs);
    row.code = -1;
    Append(row);
  }

  void Contact(int64_t atMs, int contact, bool closed) {
    At(atMs, [this, contact, closed] { automaton.SetContact(contact, closed); });
  }
  void Button(int64_t atMs, int button, bool down) {
    At(atMs, [this, button, down] { down ? joystick.Press(button) : joystick.Release(button); });
  }
  bool Led(int contact) const { return station.engine.Contacts[static_cast<size_t>(contact)]; }
  std::string PLCodes() const {
    std::string codes;
    for (const OnAirRow& row : station.PL)
      codes += (codes.empty() ? "" : ",") + std::to_string(row.code);
    return codes;
  }
  // "atMs text" of each word on the clipboard.
  std::string Words() const {
    std::string words;
    for (const Seen& one : Events("clipboard"))
      words += (words.empty() ? "" : "; ") + std::to_string(one.atMs) + " " + one["text"];
    return words;
  }
  std::string WordTexts() const {
    std::string words;
    for (const Seen& one : Events("clipboard")) words += (words.empty() ? "" : "; ") + one["text"];
    return words;
  }
  // "atMs on" or "atMs off" of each start and stop of the engine.
  std::string EngineTurns() const {
    std::string turns;
    for (const Seen& one : Events("engine"))
      turns += (turns.empty() ? "" : "; ") + std::to_string(one.atMs) +
               (one["running"] == "true" ? " on" : " off");
    return turns;
  }
};

}  // namespace zemo::test
