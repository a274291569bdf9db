// Generated reports, clocks and writes of everybody at any moment: whatever a request finds in
// memory of the report is what the base's queries give in that moment, and a purge takes the rows
// that its query names.
#include <gtest/gtest.h>

#include "reports/KnownReport.h"
#include "reports/ReportPurge.h"
#include "scheduling/RecentReport.h"
#include "scheduling/RotationRules.h"
#include "scheduling/tests/KnownTableCases.h"
#include "station/TimeForms.h"

namespace zemo {
namespace {

constexpr int kManyRows = 400;       // on some ten pages
constexpr double kClockDay = 46347;  // 21 November 2026
constexpr double kMinuteOfDay = 1.0 / (24 * 60);

class ReportCases : public test::KnownTableCases {
 public:
  explicit ReportCases(unsigned seed)
      : KnownTableCases(seed, {.table = "Rapport",
                               .casesAStation = 25,
                               .mostHappens = 6,
                               .moreKinds = 2,
                               .readAhead = ReadReportAhead}) {}

 private:
  // Small slices, so that passes take several; pages of one mark, or some of them.
  void Forget() override {
    It().knownReport =
        std::make_shared<KnownReport>(KnownReport::Sizes{.window = Pick(0, 2) ? 24 : 200,
                                                         .sliceCodes = 40,
                                                         .runBits = Pick(0, 1) ? 2 : 7,
                                                         .slicePages = 2});
  }
  void Fill() override {
    plain_ = Pick(0, 3) > 0;
    fat_ = Pick(0, 1) == 1;
    Rows(Pick(0, 1) ? Pick(0, 60) : kManyRows);
  }
  // In the order of their moments, as the air makes them.
  void Rows(int count) {
    ForeignRows(count, [this](int n) { return Insertion(std::to_string(kClockDay - n / 100.0)); });
  }
  // Mostly it goes on, so that the rows come in the order of their moments.
  void BeginCase() override {
    minute_ = (minute_ + Pick(1, 5)) % (24 * 60);
    if (Pick(0, 14) == 0)
      SetClock({2026, 11, Pick(18, 23), Pick(0, 23), Pick(0, 59), 0, 0});
    else
      SetClock({2026, 11, 21, minute_ / 60, minute_ % 60, Pick(0, 59), 0});
  }
  void EndCase() override {
    if (Pick(0, 9) == 0) Purge();
  }

  // --- values ---

  std::string Moment() {
    static constexpr const char* kOdd[] = {"NULL", "'abc'", "x'41'", "9e999", "-9e999", "'46340'"};
    if (!plain_ && Pick(0, 9) == 0) return OneOf(kOdd);
    if (Pick(0, 30) == 0) return "NULL";
    if (Pick(0, 3) == 0) return std::to_string(kClockDay - Pick(0, 12) / 4.0);  // some are equal
    if (Pick(0, 25) == 0) return std::to_string(kClockDay + Pick(0, 400) / 100.0);
    return std::to_string(DateSerial(It().Now()));
  }
  std::string Artist() {
    static constexpr const char* kArtists[] = {
        "'Artist A'", "'ARTIST A'", "'artist b'",        "''",           "NULL",
        "'Élan'",     "'ÉLAN'",     "x'41FF42'",         "' Artist A '", "'K'",
        "'soul'",     "'ſoul'",     "'soul' || char(0)", "'L''Ami'",     "'Rare'"};
    return OneOf(kArtists);
  }
  std::string Genre() {
    static constexpr const char* kGenres[] = {"'POP'", "'ROCK'",    "'PUB'", "'jingle'", "'TOP-H'",
                                              "NULL",  "x'505542'", "''",    "'JINGLÉ'", "'POP'"};
    return OneOf(kGenres);
  }
  std::string Insertion(const std::string& moment) {
    const std::string label = Pick(0, 5) && !fat_ ? "'L'" : "printf('%.600c', 'x')";
    return "INSERT INTO Rapport (AUTEUR, TITRE, GENRE, DATENUM, LABEL) VALUES (" + Artist() +
           ", 'TITLE', " + Genre() + ", " + moment + ", " + label + ")";
  }
  std::string SomeCode() {
    const int back = Pick(0, 1) ? Pick(0, 30) : Pick(0, kManyRows);
    return "(SELECT MAX(CODE) - " + std::to_string(back) + " FROM Rapport)";
  }
  std::string Write() override {
    switch (Pick(0, 15)) {
      case 14:
      case 15:  // as of just now
        return "UPDATE Rapport SET DATENUM = " + std::to_string(DateSerial(It().Now())) +
               " WHERE CODE = " + SomeCode();
      case 0:
        return "DELETE FROM Rapport WHERE CODE = " + SomeCode();
      case 1:
        return Pick(0, 9) ? "DELETE FROM Rapport WHERE CODE % 7 = 4" : "DELETE FROM Rapport";
      case 2:
        return "UPDATE OR REPLACE Rapport SET CODE = CODE + 17 WHERE CODE = " + SomeCode();
      case 3:
        return "UPDATE Toph SET SURIMPRESSION = SURIMPRESSION + 1";
      case 4:
        return "UPDATE Rapport SET DATENUM = " + Moment() + " WHERE CODE = " + SomeCode();
      case 5:
        return "UPDATE Rapport SET AUTEUR = " + Artist() + " WHERE CODE >= " + SomeCode();
      case 6:
        return "UPDATE Rapport SET GENRE = " + Genre() + " WHERE CODE = " + SomeCode();
      case 8:
        return "DELETE FROM Rapport WHERE CODE BETWEEN " + SomeCode() + " AND " + SomeCode();
      case 7:
        return "DELETE FROM Rapport WHERE DATENUM <= " +
               std::to_string(kClockDay - Pick(0, 40) / 10.0);
      default:
        return Insertion(Moment());
    }
  }

  // --- what happens ---

  void HappenMore(int kind) override {
    if (kind == 0) return BackAndForth();
    Tell("many rows");
    Rows(Pick(0, 70));
  }
  // Another program writes back what this one wrote, byte by byte.
  void BackAndForth() {
    const std::string where = " WHERE CODE = " + std::to_string(Pick(1, kManyRows));
    const bool moment = Pick(0, 1) == 1;
    const std::string now = "DATENUM = " + std::to_string(DateSerial(It().Now()));
    const std::string before = moment ? "DATENUM = 46300.25" : "AUTEUR = 'soul'";
    Foreign("UPDATE Rapport SET " + before + where);
    ReadAll();
    Own("UPDATE Rapport SET " + (moment ? now : "AUTEUR = 'Rare'") + where);
    CompareNow();
    Foreign("UPDATE Rapport SET " + before + where);
    if (Pick(0, 1)) ReadAll();
    CompareNow();
  }
  void Change(Recordset& row) override {
    row.Set("AUTEUR", std::string("Rare"));
    row.Set("DATENUM", kClockDay + 0.25);
  }

  // --- both ways ---

  std::vector<std::string> PlainNewestArtists(int count) {
    const std::string select =
        "SELECT TOP ? Auteur, DATENUM FROM Rapport Where Genre NOT In('TOP-H','JINGLE','PUB') "
        "ORDER BY ";
    auto rows = Db().OpenRecordset(select + "DATENUM DESC", {count});
    const double now = DateSerial(It().Now());
    if (!rows->Eof() && AsReal(rows->Field("DATENUM")) - now >= kMinuteOfDay)
      rows = Db().OpenRecordset(select + "CODE DESC", {count});
    std::vector<std::string> artists;
    for (; !rows->Eof(); rows->MoveNext()) artists.push_back(rows->Text("Auteur"));
    return artists;
  }
  bool PlainAllowed(const std::string& artist, int gap) {
    const auto newest = Db().OpenRecordset(
        "SELECT TOP 1 Auteur, CODE FROM Rapport Where Auteur = ? ORDER BY DATENUM DESC", {artist});
    return newest->Eof() || It().requests.DernierCodeRapport - newest->Int("CODE") >= gap;
  }
  void CompareGaps() {
    static constexpr const char* kAsked[] = {"Artist A", "artist a", "ARTIST B", "élan",
                                             "Élan",     "",         "k",        "SOUL",
                                             "ſOUL",     "Rare",     "l'ami",    "nobody"};
    for (const char* artist : kAsked) {
      const int gap = Pick(0, 5) ? Pick(1, 30) : Pick(1, kManyRows);
      bool allowed = true;
      CheckArtistGapInReport(It(), artist, static_cast<int16_t>(gap), allowed);
      EXPECT_EQ(allowed, PlainAllowed(artist, gap)) << artist << " " << gap;
    }
  }
  void Compare() override {
    const int count = Pick(0, 9) ? Pick(1, 12) : Pick(1, 60);
    EXPECT_EQ(NewestArtists(It(), count), PlainNewestArtists(count)) << count;
    const auto head = Db().OpenRecordset("SELECT MAX(CODE) AS HEAD FROM Rapport");
    const int32_t former = It().requests.DernierCodeRapport;
    LoadNewestReportCode(It());
    EXPECT_EQ(It().requests.DernierCodeRapport,
              IsNull(head->Field(0)) ? former : AsInt(head->Field(0)));
    CountWay(It().requests.reportInMemory);
    CompareGaps();
    if (!CanWrite() || Pick(0, 3)) return;
    Own(Write());  // in a yield of the request
    CompareGaps();
  }
  std::string PurgedTo(double limit) {
    const auto count =
        Db().OpenRecordset("SELECT COUNT(*) AS N FROM Rapport WHERE DATENUM <= ?", {limit});
    const auto all = Db().OpenRecordset("SELECT COUNT(*) AS N FROM Rapport");
    return std::to_string(AsInt(count->Field(0))) + " of " + std::to_string(AsInt(all->Field(0)));
  }
  void Purge() {
    const int days = Pick(0, 3);
    Tell("purge of " + std::to_string(days));
    SCOPED_TRACE(Story());
    const LocalDateTime now = It().Now();
    const double limit = DaySerial(now.year, now.month, now.day) - days;
    const auto rest = Db().OpenRecordset(
        "SELECT COUNT(*) AS N FROM Rapport WHERE NOT DATENUM <= ? OR DATENUM IS NULL", {limit});
    PurgeReport(It(), days);
    if (It().engine.reportPurgeLimit) {
      ReadAll();
      PurgeReportOnceKnown(It());
    }
    EXPECT_EQ(PurgedTo(limit), "0 of " + std::to_string(AsInt(rest->Field(0))));
  }

  bool plain_ = false;  // no moment is one that only the base can judge
  bool fat_ = false;    // few rows stand on a page
  int minute_ = 0;      // of the day
};

TEST(KnownReportProperty, WhatIsKnownIsWhatTheBaseHolds) {
  ReportCases(17).Run();
}

}  // namespace
}  // namespace zemo
