// What benchmarks of the air share: a station whose library gives nothing but titles of a few
// seconds, so that transitions, requests and writes are frequent.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "BaseSql.h"
#include "BigLibrary.h"
#include "WholeBase.h"
#include "support/NoiseSound.h"

namespace zemo::bench {

struct ShortStation {
  int cards = 3000;
  int reportRows = 20000;  // of the years before
  int sounds = 10;         // files; the cards share them
  int titleMs = 6000;
  int exitMs = 1000;       // before the end
  int restMinutes = 1;     // of a title that has been played
  int requestMinutes = 1;  // what a request asks for
  bool allGenres = false;  // have a share, and not the first one alone
};

// Where one genre has a share a request lists a title of each variety and comes again soon; all
// genres are in its query.
inline void MakeShortStation(const std::string& folder, const ShortStation& form) {
  std::filesystem::create_directories(folder);
  for (int i = 0; i < form.sounds; ++i)
    test::MakeNoiseSound(folder + "/sound" + std::to_string(i) + ".wav", form.titleMs);
  const std::string path = folder + "/Triskin.MDB";
  {
    StationBase base(path);
    OpenWhole(base);
    base.Close();
  }
  std::vector<std::string> statements = ModelsSql();
  statements.push_back(CardsSql(form.cards));
  statements.push_back(ReportSql(form.reportRows));
  std::string noShare = "UPDATE Models SET JOUR = JOUR";
  for (int hour = 0; hour < 24; ++hour) noShare += ", TRANCHE" + TwoDigits(hour) + " = 0";
  if (!form.allGenres) statements.push_back(noShare + " WHERE GENRE <> 'GENRE 0'");
  statements.push_back("UPDATE Discotheque SET FILENAME = '" + folder + "/sound' || (CODE % " +
                       std::to_string(form.sounds) +
                       ") || '.wav', DUREE = " + std::to_string(form.titleMs) +
                       ", POINTSORTIE = " + std::to_string(form.exitMs) +
                       ", INTRO = 0, ECARTMINUTES = " + std::to_string(form.restMinutes));
  statements.push_back("UPDATE Cnf SET TempRequette = " + std::to_string(form.requestMinutes) +
                       ", DecalDiff = 0, EcartArtiste = 3");
  Execute(path, statements);
}

// No title is ever out of rotation for longer than its rest: a request takes one an artist.
inline void AllowEveryTitle(const std::string& folder) {
  Execute(folder + "/Triskin.MDB",
          {"UPDATE Discotheque SET AUTEUR = 'Artist ' || CODE, NBPASSJOUR = 1000, ECARTJOURS = 0",
           "UPDATE Cnf SET EcartArtiste = 1"});
}

}  // namespace zemo::bench
