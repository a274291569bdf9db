// Generated reports, clocks and writes of everybody at any moment: whatever a request finds in
// memory of the report is what the base's queries give in that moment, and a purge takes the rows
// that its query names.
#include <gtest/gtest.h>

#include <filesystem>
#include <random>

#include "reports/KnownReport.h"
#include "reports/ReportPurge.h"
#include "scheduling/RecentReport.h"
#include "scheduling/RotationRules.h"
#include "scheduling/tests/RequestFixture.h"
#include "scheduling/tests/Stranger.h"
#include "station/BaseFiles.h"
#include "station/TimeForms.h"
#include "support/UnderSanitizer.h"

namespace zemo {
namespace {

using test::RequestStation;
using test::Stranger;

constexpr int kReportCases = test::Cases(1000);
constexpr int kCasesAReport = 25;
constexpr int kManyRows = 400;       // on some ten pages
constexpr double kClockDay = 46347;  // 21 November 2026
constexpr double kMinuteOfDay = 1.0 / (24 * 60);

class ReportCases {
 public:
  explicit ReportCases(unsigned seed) : random_(seed) { NewStation(); }

  void Run(int cases) {
    for (int i = 0; i < cases && !testing::Test::HasFailure(); ++i) {
      SCOPED_TRACE("case " + std::to_string(i));
      if (i % kCasesAReport == kCasesAReport - 1) NewStation();
      story_.clear();
      SetClock();
      for (int n = Pick(1, 6); n > 0; --n) Something();
      if (Pick(0, 2) > 0) ReadAll();
      if (Pick(0, 3) == 0) Something();
      Compare();
      if (Pick(0, 9) == 0) Purge();
    }
  }
  int FromMemory() const { return fromMemory_; }
  int FromBase() const { return fromBase_; }

 private:
  int Pick(int from, int to) { return std::uniform_int_distribution(from, to)(random_); }
  template <size_t N>
  std::string OneOf(const char* const (&texts)[N]) {
    return texts[Pick(0, static_cast<int>(N) - 1)];
  }
  Station& It() { return s_->station; }
  Database& Db() { return It().base.Db(); }

  // Small slices, so that passes take several; pages of one mark, or some of them.
  void Keep() {
    It().knownReport =
        std::make_shared<KnownReport>(KnownReport::Sizes{.window = Pick(0, 2) ? 24 : 200,
                                                         .sliceCodes = 40,
                                                         .runBits = Pick(0, 1) ? 2 : 7,
                                                         .slicePages = 2});
  }
  void NewStation() {
    stranger_.reset();
    plain_ = Pick(0, 3) > 0;
    fat_ = Pick(0, 1) == 1;
    s_ = std::make_unique<RequestStation>();
    stranger_ = std::make_unique<Stranger>(It().base.Path());
    Keep();
    Rows(Pick(0, 1) ? Pick(0, 60) : kManyRows);
  }
  // In the order of their moments, as the air makes them.
  void Rows(int count) {
    stranger_->Do("BEGIN");
    for (int n = count; n > 0; --n) stranger_->Do(Insertion(std::to_string(kClockDay - n / 100.0)));
    stranger_->Do("COMMIT");
  }
  // Mostly it goes on, so that the rows come in the order of their moments.
  void SetClock() {
    minute_ = (minute_ + Pick(1, 5)) % (24 * 60);
    LocalDateTime now{2026, 11, 21, minute_ / 60, minute_ % 60, Pick(0, 59), 0};
    if (Pick(0, 14) == 0) now = {2026, 11, Pick(18, 23), Pick(0, 23), Pick(0, 59), 0, 0};
    s_->loop.SetWallClock(now);
    It().base.CheckCnf();
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
  std::string Write() {
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

  void Own(const std::string& sql) {
    story_ += "own: " + sql + "\n";
    try {
      Db().Execute(sql);
    } catch (const StoreError&) {
      // A value that the schema refuses: nothing is stored.
    }
  }
  void Foreign(const std::string& sql) {
    story_ += "foreign: " + sql + "\n";
    stranger_->Do(sql);
  }
  void ReadAll() {
    story_ += "read\n";
    while (ReadReportAhead(It())) {
    }
  }
  void Something() {
    switch (Pick(0, 13)) {
      case 0:
      case 1:
      case 2:
        return Own(Write());
      case 3:
      case 4:
        return Foreign(Write());
      case 5: {
        story_ += "transaction\n";
        Db().BeginTrans();
        Own(Write());
        if (Pick(0, 1)) ReadReportAhead(It());
        if (Pick(0, 1)) Compare();
        Own(Write());
        if (Pick(0, 1)) return Db().CommitTrans();
        story_ += "rolled back\n";
        return Db().RollbackTrans();
      }
      case 6:
        Foreign("BEGIN");
        Foreign(Write());
        if (Pick(0, 1)) ReadReportAhead(It());
        Compare(/*canWrite=*/false);
        return Foreign(Pick(0, 1) ? "COMMIT" : "ROLLBACK");
      case 7:
        if (Pick(0, 4) == 0) return OpenAgain();
        if (Pick(0, 4) == 0) return PutAnotherBase();
        return Cursor();
      case 8:
        story_ += "many rows\n";
        return Rows(Pick(0, 70));
      case 9:
        return BackAndForth();
      default:
        ReadReportAhead(It());
    }
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
    Compare();
    Foreign("UPDATE Rapport SET " + before + where);
    if (Pick(0, 1)) ReadAll();
    Compare();
  }
  void Cursor() {
    story_ += "cursor\n";
    const auto row = It().base.Table("Rapport");
    if (row->Eof()) return;
    if (Pick(0, 1)) row->MoveLast();
    if (Pick(0, 3) == 0) return row->Delete();
    row->Edit();
    row->Set("AUTEUR", std::string("Rare"));
    row->Set("DATENUM", kClockDay + 0.25);
    row->Update();
  }
  void OpenAgain() {
    story_ += "opened again\n";
    It().base.Close();
    if (Pick(0, 1)) Foreign(Write());
    OpenBaseAgain(It());
  }
  // Under the name of the one that is open.
  void PutAnotherBase() {
    story_ += "replaced\n";
    const std::string path = It().base.Path();
    std::filesystem::copy_file(path, path + ".copy");
    stranger_ = std::make_unique<Stranger>(path + ".copy");
    Foreign(Write());
    std::filesystem::rename(path + ".copy", path);
    if (Pick(0, 1)) ReadReportAhead(It());
    EXPECT_TRUE(OpenLostBase(It()));
    Keep();
    stranger_ = std::make_unique<Stranger>(path);
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
  void Compare(bool canWrite = true) {
    SCOPED_TRACE(story_);
    const int count = Pick(0, 9) ? Pick(1, 12) : Pick(1, 60);
    EXPECT_EQ(NewestArtists(It(), count), PlainNewestArtists(count)) << count;
    const auto head = Db().OpenRecordset("SELECT MAX(CODE) AS HEAD FROM Rapport");
    const int32_t former = It().requests.DernierCodeRapport;
    LoadNewestReportCode(It());
    EXPECT_EQ(It().requests.DernierCodeRapport,
              IsNull(head->Field(0)) ? former : AsInt(head->Field(0)));
    ++(It().requests.reportInMemory ? fromMemory_ : fromBase_);
    CompareGaps();
    if (!canWrite || Db().InTransaction() || Pick(0, 3)) return;
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
    SCOPED_TRACE(story_ + "purge of " + std::to_string(days));
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

  std::mt19937 random_;
  std::unique_ptr<RequestStation> s_;
  std::unique_ptr<Stranger> stranger_;
  bool plain_ = false;  // no moment is one that only the base can judge
  bool fat_ = false;    // few rows stand on a page
  int minute_ = 0;      // of the day
  std::string story_;
  int fromMemory_ = 0, fromBase_ = 0;
};

TEST(KnownReportProperty, WhatIsKnownIsWhatTheBaseHolds) {
  ReportCases cases(17);
  cases.Run(kReportCases);
  // Both ways were gone often.
  EXPECT_GT(cases.FromMemory(), kReportCases / 3);
  EXPECT_GT(cases.FromBase(), kReportCases / 10);
}

}  // namespace
}  // namespace zemo
