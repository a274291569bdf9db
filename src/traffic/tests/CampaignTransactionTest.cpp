// Campaigns that come and go in numbers: what a lock, a fault or a crash in the middle leaves, and
// what others may do meanwhile. Locks are another process's, in real time.
#include <algorithm>
#include <fstream>

#include "engine/BaseMaintenance.h"
#include "settings/SideFiles.h"
#include "support/BaseFaults.h"
#include "support/WatchedLoop.h"
#include "traffic/CampaignImport.h"
#include "traffic/CampaignPurge.h"
#include "traffic/tests/CampaignFixture.h"

namespace zemo::test {
namespace {

std::string LineOf(const std::string& soundFile, const std::string& advertiser) {
  return "01/11/2026\t20/11/2026\t07\t20\t00\t15\t30\t45\t\t\t\t\t" + soundFile + "\t15000\t" +
         advertiser + "\tFUN\t\t20\tAnne\tTrue\r\n";
}

std::string ManyLines(int count) {
  std::string lines;
  for (int i = 1; i <= count; ++i)
    lines += LineOf("/pubs/" + std::to_string(i) + ".wav", "A" + std::to_string(i));
  return lines;
}

// A second station on the same base, whose yields are watched.
class ManyCampaigns : public testing::Test {
 protected:
  ManyCampaigns()
      : loop(s.loop),
        station(Platform{s.loop, loop, s.sound, s.stationFolder, s.machineFolder, s.soundFiles,
                         s.lengths, s.localValues, s.clipboard, s.messages, s.keyboard, s.system,
                         s.automaton, s.joystick}) {
    s.station.base.Close();
    station.base.OpenOrCreateDatabase();
    SetSideFileNames(station);
    station.base.OpenAllTables();
    loop.onYield = [this] { OnYield(++yields); };
  }
  void Export(const std::string& lines) { s.MakeFile("ExportPubs.Txt", lines); }
  bool ExportIsThere() const { return s.stationFolder.Exists("ExportPubs.Txt"); }
  int Campaigns() { return ValInt(s.SqlText("SELECT COUNT(*) FROM GrillePub")); }
  std::string Log() const { return s.File("Messages.Txt"); }
  // Transactions that were stored in the base so far: the counter in the file's head.
  unsigned Stored() const {
    std::ifstream file(station.base.Path(), std::ios::binary);
    file.seekg(24);
    unsigned count = 0;
    for (int i = 0; i < 4; ++i) count = count * 256 + static_cast<unsigned>(file.get());
    return count;
  }

  BaseFaults base;  // ahead of the station, whose base it may fail
  CampaignStation s;
  WatchedLoop loop;
  Station station;
  int yields = 0;
  std::function<void(int)> OnYield = [](int) {};
};

// --- the import ---

TEST_F(ManyCampaigns, ComeInAsOneTransaction) {
  Export(ManyLines(300));
  const unsigned before = Stored();
  ImportExportedCampaigns(station);
  EXPECT_EQ(Stored() - before, 1U);
  EXPECT_EQ(Campaigns(), 300);
  EXPECT_EQ(yields, 0);
}

TEST_F(ManyCampaigns, ComeInSlicesOfWhichNoneHoldsTheBase) {
  Export(ManyLines(1200));
  OnYield = [&](int) {
    EXPECT_EQ(Campaigns(), 0);
    s.Set("PmixDef", "100");  // of another process: waits in vain where a transaction is open
  };
  ImportExportedCampaigns(station);
  EXPECT_EQ(yields, 2);  // behind 500 and 1000 lines
  EXPECT_EQ(Campaigns(), 1200);
  EXPECT_EQ(s.SqlText("SELECT group_concat(ANNONCEUR, ' ') FROM (SELECT ANNONCEUR FROM GrillePub "
                      "WHERE CODE IN (1, 600, 1200) ORDER BY CODE)"),
            "A1 A600 A1200");
}

TEST_F(ManyCampaigns, OfWhichNoneCanBeStoredLeaveNoneAndTheFile) {
  Export(LineOf("/1.wav", "ONE") + LineOf("/2.wav", "TWO"));
  station.GPubJour.SetCell(0, 53, "21/11/26");
  base.Arm(BasePoint::kLockToCommit, BaseFault::kLocked);
  EXPECT_THROW(ImportExportedCampaigns(station),
               StoreError);  // at the commit: somebody still reads
  EXPECT_TRUE(ExportIsThere());
  EXPECT_EQ(station.GPubJour.Cell(0, 53), "21/11/26");
  base.Disarm();
  EXPECT_EQ(Campaigns(), 0);
  ImportExportedCampaigns(station);
  EXPECT_EQ(Campaigns(), 2);
  EXPECT_FALSE(ExportIsThere());
}

TEST_F(ManyCampaigns, OfALockedBaseAreTakenAtTheNextElement) {
  Export(ManyLines(2));
  base.Arm(BasePoint::kLockToRead, BaseFault::kLocked);
  TakeDroppedBase(station);
  EXPECT_TRUE(ExportIsThere());
  EXPECT_NE(Log().find("SurveilleNewBase\t3260\t"), std::string::npos) << Log();
  base.Disarm();
  EXPECT_EQ(Campaigns(), 0);
  TakeDroppedBase(station);
  EXPECT_EQ(Campaigns(), 2);
  EXPECT_FALSE(ExportIsThere());
}

// The file cannot go behind the commit, as after a crash between the two.
TEST_F(ManyCampaigns, OfAFileThatIsTooLargeToBeOneAreLeftAndToldOnce) {
  Export(LineOf("/pubs/1.wav", std::string(5 << 20, 'x')));
  for (int i = 0; i < 3; ++i) ImportExportedCampaigns(station);
  EXPECT_TRUE(ExportIsThere());
  EXPECT_EQ(Campaigns(), 0);
  const std::string log = Log();
  EXPECT_NE(log.find("ExportPubs.Txt is larger than 4 MB"), std::string::npos) << log;
  EXPECT_EQ(std::count(log.begin(), log.end(), '\n'), 1) << log;
}

TEST_F(ManyCampaigns, ALineThatIsRefusedDoesNotFillTheLog) {
  Export(LineOf("/pubs/1.wav", std::string(1 << 20, 'x')));
  ImportExportedCampaigns(station);
  EXPECT_EQ(Campaigns(), 0);
  EXPECT_LT(Log().size(), 500U);
}

TEST_F(ManyCampaigns, AreNotAddedTwiceWhileTheirFileCannotGo) {
  // Twins, and a name with a blank, which no name in the table is ever the same as.
  const std::string lines = LineOf("/1.wav", "ONE") + LineOf("/1.wav", "TWIN") +
                            LineOf("/2.wav ", "BLANK") + LineOf("", "NONE");
  Export(lines);
  s.stationFolder.removesFail = true;
  for (int element = 0; element < 3; ++element) {
    TakeDroppedBase(station);
    EXPECT_EQ(Campaigns(), 4) << element;
    EXPECT_TRUE(ExportIsThere());
  }
  s.stationFolder.removesFail = false;
  TakeDroppedBase(station);
  EXPECT_EQ(Campaigns(), 4);
  EXPECT_FALSE(ExportIsThere());
  // The same file in earnest: only the name with the blank is new again.
  Export(lines);
  TakeDroppedBase(station);
  EXPECT_EQ(Campaigns(), 5);
}

TEST_F(ManyCampaigns, WhoseFileCannotGoHaveTheGridComposedOnce) {
  Export(ManyLines(1));
  s.stationFolder.removesFail = true;
  TakeDroppedBase(station);
  EXPECT_EQ(station.GPubJour.Cell(0, 53), "");
  station.GPubJour.SetCell(0, 53, "21/11/26");  // composed
  TakeDroppedBase(station);
  EXPECT_EQ(station.GPubJour.Cell(0, 53), "21/11/26");
}

TEST_F(ManyCampaigns, WrittenAnewMeanwhileAreTakenAtTheNextElement) {
  Export(ManyLines(600));
  OnYield = [&](int) { Export(LineOf("/new.wav", "NEW")); };
  TakeDroppedBase(station);
  EXPECT_EQ(Campaigns(), 600);
  EXPECT_TRUE(ExportIsThere());
  TakeDroppedBase(station);
  EXPECT_EQ(Campaigns(), 601);
  EXPECT_FALSE(ExportIsThere());
}

// --- the purge ---

class EndedCampaigns : public ManyCampaigns {
 protected:
  void SetUp() override {
    Export(ManyLines(500));  // all ended yesterday
    ImportExportedCampaigns(station);
    yields = 0;
  }
};

TEST_F(EndedCampaigns, GoInSlicesOfWhichNoneHoldsTheBase) {
  std::vector<int> left;  // what stands in the table while the campaigns are kept, by slice
  OnYield = [&](int) {
    if (!left.empty() && left.back() == Campaigns()) return;
    left.push_back(Campaigns());
    s.Set("PmixDef", std::to_string(100 + left.size()));
  };
  const unsigned before = Stored();
  PurgeEndedCampaigns(station);
  EXPECT_EQ(left, (std::vector<int>{500, 300, 100}));
  EXPECT_EQ(Stored() - before, 3U + 3U);  // with the three of the yields
  EXPECT_EQ(yields, 500);                 // the files of each wait for the disk
  EXPECT_EQ(Campaigns(), 0);
}

TEST_F(EndedCampaigns, ThatWereGivenANewEndMeanwhileStay) {
  OnYield = [&](int) { s.Sql("UPDATE GrillePub SET CAMPAGNEFIN = '30/11/2026' WHERE CODE = 450"); };
  PurgeEndedCampaigns(station);
  EXPECT_EQ(s.SqlText("SELECT group_concat(CODE) FROM GrillePub"), "450");
}

TEST_F(EndedCampaigns, ThatWereChangedBehindTheirKeepingStay) {
  OnYield = [&](int yield) {
    if (yield == 60) s.Sql("UPDATE GrillePub SET ANNONCEUR = 'New' WHERE CODE = 50");
  };
  PurgeEndedCampaigns(station);
  EXPECT_EQ(s.SqlText("SELECT group_concat(CODE) FROM GrillePub"), "50");
  OnYield = [](int) {};
  PurgeEndedCampaigns(station);
  EXPECT_EQ(Campaigns(), 0);
  EXPECT_NE(s.File("EndedCampaigns/50.Txt").find("\"New\""), std::string::npos);
}

TEST_F(EndedCampaigns, OfALockedBaseGoAtTheNextComposition) {
  base.Arm(BasePoint::kLockToWrite, BaseFault::kLocked);
  PurgeEndedCampaigns(station);
  EXPECT_NE(Log().find("SuppresionPub\t3260\t"), std::string::npos) << Log();
  base.Disarm();
  EXPECT_EQ(Campaigns(), 500);
  PurgeEndedCampaigns(station);
  EXPECT_EQ(Campaigns(), 0);
}

}  // namespace
}  // namespace zemo::test
