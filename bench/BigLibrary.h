// What benchmarks share: a library of any size that is played in, with models for every weekday and
// a long report, as statements for a station's base.
#pragma once

#include <string>
#include <vector>

#include "station/TextForms.h"

namespace zemo::bench {

inline constexpr int kGenres = 12;  // "GENRE 0" to "GENRE 11"

inline std::string NumbersTo(int count) {
  return "WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < " +
         std::to_string(count) + ") ";
}

// Eight broadcasts a card, genres, varieties and artists as a station has them; allowed at all
// hours.
inline std::string CardsSql(int cards) {
  std::string fields, values;
  for (int day = 1; day <= 7; ++day) {
    fields += ", TRANCHE" + TwoDigits(day);
    values += ", '111111111111111111111111'";
  }
  for (int last = 1; last <= 8; ++last) {
    fields += ", DIFFUSION" + TwoDigits(last);
    values += ", printf('%02d/%02d/2026 à %02d:%02d', 1 + i % 28, " + std::to_string(11 - last) +
              ", i % 24, i % 60)";
  }
  const std::string artists = std::to_string(cards / 12 + 1);
  return NumbersTo(cards) +
         "INSERT INTO Discotheque (FILENAME, DUREE, INTRO, AUTEUR, TITRE, GENRE, VARIETE, ANNEE, "
         "NBPASSJOUR, ECARTMINUTES, ECARTJOURS, ECARTARTISTE, POINTSORTIE, LABEL, LASTDIFF" +
         fields + ") SELECT '/music/artist ' || (i * 7919 % " + artists +
         ") || '/title ' || i || " +
         "'.mp3', 150000 + i * 31 % 120000, i % 20, 'Artist ' || (i * 7919 % " + artists +
         "), 'Title ' || i, 'GENRE ' || (i % " + std::to_string(kGenres) +
         "), CASE i % 5 WHEN 0 THEN 'INTERNATIONAL' ELSE 'NATIONAL' END, '1999', 1 + i % 3, 120, "
         "i % 4, 0, 0, 'Label ' || (i % 90), 46300 + (i * 104729 % 40000) / 1000.0" +
         values + " FROM n";
}

// Each genre 8 per cent and one position of the skeleton, at every hour; 60 to 40 for the
// varieties.
inline std::vector<std::string> ModelsSql() {
  std::string fields, shares, genres;
  for (int hour = 0; hour < 24; ++hour) {
    fields += ", TRANCHE" + TwoDigits(hour);
    shares += ", 8";
    genres += ", 'GENRE ' || (i % " + std::to_string(kGenres) + ")";
  }
  std::vector<std::string> statements;
  for (int day = 1; day <= 7; ++day) {
    const std::string number = std::to_string(day);
    statements.push_back(NumbersTo(kGenres) + "INSERT INTO Models (JOUR, GENRE" + fields +
                         ") SELECT " + number + ", 'GENRE ' || (i % " + std::to_string(kGenres) +
                         ")" + shares + " FROM n");
    statements.push_back(NumbersTo(kGenres) + "INSERT INTO ModelSquelette (JOUR" + fields +
                         ") SELECT " + number + genres + " FROM n");
  }
  statements.push_back("UPDATE Variete SET POURCENT = 60 WHERE VARIETE = 'NATIONAL'");
  statements.push_back("UPDATE Variete SET POURCENT = 40 WHERE VARIETE = 'INTERNATIONAL'");
  statements.push_back("UPDATE Cnf SET CheckNational = 0");
  return statements;
}

inline std::string ReportSql(int rows) {
  return NumbersTo(rows) +
         "INSERT INTO Rapport (LADATE, HEURE, AUTEUR, TITRE, GENRE, VARIETE, DATENUM) SELECT "
         "'21/11/2026', '10:00:00', 'Artist ' || (i % 4000), 'Title ' || i, CASE i % 4 WHEN 0 THEN "
         "'JINGLE' ELSE 'GENRE 1' END, 'NATIONAL', 45700 + i / 400.0 FROM n";
}

}  // namespace zemo::bench
