// A station's day on the virtual clock, with its base on a real server: three machines, each on a
// replica of its own, one on air, one at which production stores things, one that reads the report.
// The server is killed, restarted and cut all day. Saturday from midnight on.
#include <gtest/gtest.h>

#include <filesystem>

#include "app/ServerLink.h"
#include "reports/ReportScreen.h"
#include "store/CarryOver.h"
#include "store/Database.h"
#include "store/DatabaseFiles.h"
#include "store/Recordset.h"
#include "store/RowView.h"
#include "store/Schema.h"
#include "store/postgres/PostgresDatabase.h"
#include "support/Awaited.h"
#include "support/Campaigns.h"
#include "support/TestServer.h"
#include "support/TestStation.h"

namespace zemo {
namespace {

using test::Comes;
using test::TestServer;
using test::TestStation;

constexpr const char* kMidnight = "2026-11-21 00:00:00";
constexpr int64_t kHourMs = 3600 * 1000;
constexpr int kHours = 24;

// Every row of the table with all its values, ascending.
std::string RowsOf(Database& base, const TableDef& table) {
  std::string fields;
  for (const Field& field : table.Fields) fields += (fields.empty() ? "" : ", ") + field.Name;
  std::string text;
  base.ReadRows("SELECT " + fields + " FROM " + table.Name, [&](const RowView& row) {
    for (int column = 0; column < static_cast<int>(table.Fields.size()); ++column) {
      if (row.IsNumber(column))
        text += AsText(Value(row.Real(column)));
      else
        text += row.IsNull(column) ? "(null)" : std::string(row.Text(column));
      text += '|';
    }
    text += '\n';
  });
  return text;
}

struct Machine {
  Machine(const BasePlace& server, TestStation& station)
      : link(server, folder.Path()), on(kMidnight, station.stationDir.Path(), link.Place()) {
    on.opener.lengthsMs = station.opener.lengthsMs;
  }
  Database& Base() { return on.station.base.Db(); }
  bool IsReached() const { return link.State().reachable; }
  int64_t Count(const std::string& rows) {
    return AsInt(Base().OpenRecordset("SELECT COUNT(*) FROM " + rows)->Field(0));
  }

  test::TempFolder folder;
  ServerLink link;
  TestStation on;
};

class ServerDay : public testing::Test {
 protected:
  ServerDay() : station(kMidnight) {}
  void SetUp() override {
    if (!TestServer::Get().Missing().empty()) GTEST_SKIP() << TestServer::Get().Missing();
    station.Load();
    AddMusic();
    AddSpots();
    made = TestServer::Get().NewBase();
    const BasePlace server = ServerPlace(TestServer::Get().Url(made));
    Carry(server);
    air = std::make_unique<Machine>(server, station);
    desk = std::make_unique<Machine>(server, station);
    office = std::make_unique<Machine>(server, station);
    air->on.Load();
    desk->on.localValues.Set("PCProduction", "True");
    desk->on.Load();
    office->on.localValues.Set("PCProduction", "True");
    office->on.Load();
    Report::MnuRapport_Click(office->on.station, report);
    air->on.Start();
  }
  void TearDown() override {
    TestServer::Get().Start();
    office.reset();
    desk.reset();
    air.reset();
    if (!made.empty()) TestServer::Get().Drop(made);
  }

  std::string Sound(const std::string& name, int64_t lengthMs) {
    return station.MakeSound("Sounds/" + name + ".wav", lengthMs);
  }
  void AddMusic() {
    for (int i = 0; i < 60; ++i)
      station.AddCard({.file = Sound("title" + std::to_string(i), 170000 + 1000 * i),
                       .lengthMs = 170000 + 1000 * i,
                       .artist = "ARTIST" + std::to_string(i),
                       .title = "TITLE" + std::to_string(i)});
    station.Sql("UPDATE Discotheque SET NBPASSJOUR = 100, ECARTMINUTES = 0");
    station.ModelOfOneGenre("POP");
  }
  void AddSpots() {
    for (const char* name : {"ONE", "TWO"})
      test::AddCampaign(station, {.advertiser = name,
                                  .from = "JOURNALIER",
                                  .to = "JOURNALIER",
                                  .marks = {"30"},
                                  .crosses = HalfHours(),
                                  .lengthMs = 20000,
                                  .file = Sound(name, 20000)});
  }
  static std::vector<std::string> HalfHours() {
    std::vector<std::string> moments;
    for (int hour = 0; hour < kHours; ++hour)
      moments.push_back((hour < 10 ? "0" : "") + std::to_string(hour) + ":30");
    return moments;
  }
  void Carry(const BasePlace& server) {
    const auto from = FilePlace(station.station.base.Path()).closed(std::make_shared<LockWait>());
    from->Open(false);
    const auto to = server.closed(std::make_shared<LockWait>());
    to->Open(true);
    CarryOver(*from, *to, nullptr);
  }

  // What befalls the server at a third of that hour.
  void Trouble(int hour) const {
    if (hour % 6 == 1) TestServer::Get().Stop();
    if (hour % 6 == 3) TestServer::Get().Start();
    if (hour % 6 == 5)
      TestServer::Get().Ask(made,
                            "SELECT count(pg_terminate_backend(pid)) FROM pg_stat_activity WHERE "
                            "application_name = 'zemoradio'");
  }
  // At two thirds.
  void Produce(int hour) {
    const std::string number = std::to_string(hour);
    desk->Base().Execute("INSERT INTO Discotheque(TITRE, AUTEUR, GENRE) VALUES(?, 'DESK', 'WORD')",
                         {"DESK" + number});
    desk->Base().Execute("UPDATE Discotheque SET COMMENTAIRE = ? WHERE TITRE = ?",
                         {"seen at " + number, "TITLE" + number});
  }
  // Everybody has what the desk stored, where the server is there.
  void WaitForProduction(int hour) {
    if (!desk->IsReached() || hour % 6 == 1 || hour % 6 == 2) return;
    const std::string row = "Discotheque WHERE TITRE = 'DESK" + std::to_string(hour) + "'";
    EXPECT_TRUE(Comes([&] { return air->Count(row) == 1 && office->Count(row) == 1; })) << hour;
  }
  void ReadReport() {
    report.LblDate = "21/11/2026";
    report.LblDateFin = "21/11/2026";
    Report::VoirRapport(office->on.station, report);
  }

  TestStation station;  // as it was before it had a server
  std::string made;
  std::unique_ptr<Machine> air, desk, office;
  ReportEditor report;
};

TEST_F(ServerDay, EveryRowOfTheDayIsOnTheServerOnceAndAllMachinesAreAlike) {
  size_t mostRead = 0;
  for (int hour = 0; hour < kHours; ++hour) {
    air->on.RunUntil(hour * kHourMs + kHourMs / 3);
    Trouble(hour);
    air->on.RunUntil(hour * kHourMs + 2 * kHourMs / 3);
    Produce(hour);
    WaitForProduction(hour);
    air->on.RunUntil((hour + 1) * kHourMs - 1000);
    desk->on.RunUntil((hour + 1) * kHourMs - 1000);
    office->on.RunUntil((hour + 1) * kHourMs - 1000);
    ReadReport();
    EXPECT_GE(report.ListRap.Count(), mostRead) << hour;
    mostRead = report.ListRap.Count();
  }
  for (Machine* machine : {air.get(), desk.get(), office.get()})
    EXPECT_TRUE(Comes([&] { return machine->IsReached() && machine->link.State().waiting == 0; }));

  const std::vector<test::Seen> reported = air->on.Events("report");
  std::string titles;
  for (const test::Seen& row : reported) titles += row["TITRE"] + '\n';
  EXPECT_EQ(TestServer::Get().Ask(made,
                                  "SELECT string_agg(\"TITRE\" || chr(10), '' ORDER BY \"CODE\") "
                                  "FROM \"Rapport\""),
            titles);
  // Titles of 170 to 229 s: 24 hours of them, and 48 spots.
  EXPECT_GE(reported.size(), 24U * 3600 / 229);
  EXPECT_EQ(air->on.Events("break").size(), 24U);
  EXPECT_EQ(TestServer::Get().Ask(made,
                                  "SELECT count(*) || ' ' || count(DISTINCT \"TITRE\") FROM "
                                  "\"Discotheque\" WHERE \"AUTEUR\" = 'DESK'"),
            "24 24");
  const auto server =
      ClosedPostgresDatabase(TestServer::Get().Url(made), std::make_shared<LockWait>());
  server->Open(false);
  for (const TableDef& table : SchemaTables()) {
    const std::string rows = RowsOf(*server, table);
    for (Machine* machine : {air.get(), desk.get(), office.get()}) {
      Comes([&] { return RowsOf(machine->Base(), table) == rows; });
      EXPECT_EQ(RowsOf(machine->Base(), table), rows) << table.Name;
    }
  }
  EXPECT_FALSE(std::filesystem::exists(air->folder.Path() + "/RefusedRows.Txt"));
  ReadReport();
  EXPECT_EQ(report.ListRap.Count(), reported.size());
}

}  // namespace
}  // namespace zemo
