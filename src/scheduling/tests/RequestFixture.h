// A loaded station with a small library, model and report of its own, for the tests of requests.
#pragma once

#include <gtest/gtest.h>

#include <array>
#include <memory>
#include <string>
#include <vector>

#include "platform/EventLoop.h"
#include "scheduling/PercentageRequest.h"
#include "settings/SideFiles.h"
#include "station/BaseFiles.h"
#include "station/TextForms.h"
#include "store/SqlText.h"
#include "support/TestStation.h"
#include "support/WatchedLoop.h"

namespace zemo::test {

inline const std::string kAlways(24, '1');
inline constexpr int kSaturday = 6;  // 21 November 2026

struct TitleCard {
  std::string artist = "ARTIST", title = "TITLE", genre = "POP", variety = "NATIONAL";
  int lengthMs = 180000;
  int passes = 1, minutes = 0, days = 0, artistGap = 0;
  std::string hours = kAlways;  // of every weekday
  double lastdiff = 0;
  std::vector<std::string> diffusions{};  // the newest first
  std::string firstDay{}, lastDay{};      // "MMDD"
};

class RequestStation : public TestStation {
 public:
  explicit RequestStation(const std::string& begin = "2026-11-21 10:55:00") : TestStation(begin) {
    Load();
    Execute("DELETE * FROM Variete");
    Execute("UPDATE Cnf SET DecalDiff = 0");
    station.base.CheckCnf();
  }

  void Execute(const std::string& sql) { station.base.Db().Execute(sql); }
  // Another program renames a column.
  void RenameColumn(const std::string& table, const std::string& column) {
    Native("ALTER TABLE " + table + " RENAME COLUMN " + column + " TO X_" + column);
  }
  void SetCnf(const std::string& field, int value) {
    Execute("UPDATE Cnf SET " + field + " = " + std::to_string(value));
    station.base.CheckCnf();
  }
  void Variety(const std::string& name, int percent) {
    Execute("INSERT INTO Variete (POURCENT, VARIETE) VALUES (" + std::to_string(percent) + ", '" +
            SqlQuoted(name) + "')");
  }
  // The same per cent in every hour of the day (1 Monday to 7), or of the one hour given.
  void Model(int day, const std::string& genre, int percent, int hour = -1) {
    std::string fields, values;
    for (int h = 0; h < 24; ++h) {
      fields += ", TRANCHE" + TwoDigits(h);
      values += ", " + std::to_string(hour < 0 || hour == h ? percent : 0);
    }
    Execute("INSERT INTO Models (JOUR, GENRE" + fields + ") VALUES (" + std::to_string(day) +
            ", '" + SqlQuoted(genre) + "'" + values + ")");
  }
  void Position(int day, int hour, const std::string& genre) {
    Execute("INSERT INTO ModelSquelette (JOUR, TRANCHE" + TwoDigits(hour) + ") VALUES (" +
            std::to_string(day) + ", '" + SqlQuoted(genre) + "')");
  }
  int32_t Add(const TitleCard& card) {
    std::string fields, values;
    const auto text = [&](const std::string& field, const std::string& value) {
      fields += ", " + field;
      values += ", '" + SqlQuoted(value) + "'";
    };
    for (int day = 1; day <= 7; ++day) text("TRANCHE" + TwoDigits(day), card.hours);
    for (size_t i = 0; i < card.diffusions.size(); ++i)
      text("DIFFUSION" + TwoDigits(static_cast<int>(i) + 1), card.diffusions[i]);
    text("AUTEUR", card.artist);
    text("TITRE", card.title);
    text("GENRE", card.genre);
    text("VARIETE", card.variety);
    text("MMJJDebut", card.firstDay);
    text("MMJJFin", card.lastDay);
    const auto number = [](int value) { return ", " + std::to_string(value); };
    Execute(
        "INSERT INTO Discotheque (FILENAME, POINTSORTIE, INTRO, LASTDIFF, DUREE, NBPASSJOUR, "
        "ECARTMINUTES, ECARTJOURS, ECARTARTISTE" +
        fields + ") VALUES ('/music/" + SqlQuoted(card.title) + ".mp3', 1500, 12, " +
        SqlNumber(card.lastdiff) + number(card.lengthMs) + number(card.passes) +
        number(card.minutes) + number(card.days) + number(card.artistGap) + values + ")");
    return static_cast<int32_t>(station.base.Db().LastInsertCode());
  }
  int64_t Report(const std::string& artist, double dateNum, const std::string& genre = "POP") {
    Execute("INSERT INTO Rapport (AUTEUR, GENRE, DATENUM) VALUES ('" + SqlQuoted(artist) + "', '" +
            genre + "', " + SqlNumber(dateNum) + ")");
    return station.base.Db().LastInsertCode();
  }

  void Request(int minutes) {
    auto value = static_cast<int16_t>(minutes);
    RequestMusic(station, value);
  }
  std::vector<int32_t> Listed() const { return station.PL.Codes(); }
  RequestState& Requests() { return station.requests; }
  std::string LastError() const {
    const auto errors = Events("error");
    return errors.empty() ? "" : errors.back()["where"] + ": " + errors.back()["text"];
  }
};

// A row of PL that is music.
inline OnAirElement TitleElement(int32_t code, const std::string& artist,
                                 const std::string& genre = "POP") {
  OnAirElement element;
  element.title = artist;
  element.genre = genre;
  element.code = code;
  element.lengthMs = 180000;
  element.exitMs = 0;
  return element;
}

// A second station on the base of the first, whose yields are watched.
struct WatchedStation {
  explicit WatchedStation(RequestStation& s)
      : loop(s.loop),
        station(Platform{s.loop, loop, s.sound, s.stationFolder, s.machineFolder, s.soundFiles,
                         s.lengths, s.localValues, s.clipboard, s.messages, s.keyboard, s.system,
                         s.automaton, s.joystick}) {
    station.base.OpenOrCreateDatabase();
    SetSideFileNames(station);
    station.base.OpenAllTables();
  }
  WatchedLoop loop;
  Station station;
};

}  // namespace zemo::test
