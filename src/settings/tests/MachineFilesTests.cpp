// What the machine remembers: running flag, audio outputs, lock, and whether it writes reports.
#include "settings/tests/SettingsTest.h"

namespace zemo {
namespace {

using RunningFlag = SettingsTest;

TEST_F(RunningFlag, IsWrittenAsOneBoolean) {
  station.engine.IsRunning = true;
  EXPECT_FALSE(LoadSavePlay(station, "Save"));
  EXPECT_EQ(MachineFile("ZemoPlay.Ini"), "#TRUE#\r\n");
  station.engine.IsRunning = false;
  LoadSavePlay(station, "save");
  EXPECT_EQ(MachineFile("ZemoPlay.Ini"), "#FALSE#\r\n");
}

TEST_F(RunningFlag, SaysAfterAPowerLossThatTheMachineWasOnAir) {
  MachineFileIs("ZEMOPLAY.INI", "#TRUE#\r\n");
  EXPECT_TRUE(LoadSavePlay(station, "LOAD"));
  EXPECT_FALSE(station.engine.IsRunning);  // the start is the caller's
}

TEST_F(RunningFlag, LeavesTheMachineIdleWhenItSaysNothingElse) {
  EXPECT_FALSE(LoadSavePlay(station, "Load"));
  for (const char* bytes : {"", "#FALSE#\r\n", "0", "?", "\"\"", "\r\n"}) {
    MachineFileIs("ZemoPlay.Ini", bytes);
    EXPECT_FALSE(LoadSavePlay(station, "Load")) << bytes;
  }
}

TEST_F(RunningFlag, ThatCannotBeReadLeavesTheMachineIdle) {
  MachineFileIs("ZemoPlay.Ini", "#TRUE#\r\n");
  fake.machineFolder.readsFail = true;
  EXPECT_FALSE(LoadSavePlay(station, "Load"));
  EXPECT_TRUE(fake.errors.empty());
}

TEST_F(RunningFlag, ThatCannotBeWrittenIsTold) {
  MachineFileIs("ZemoPlay.Ini", "#TRUE#\r\n");
  fake.machineFolder.writesFail = true;
  LoadSavePlay(station, "Save");
  ASSERT_EQ(fake.errors.size(), 1U);
  EXPECT_EQ(MachineFile("ZemoPlay.Ini"), "#TRUE#\r\n");
}

using AudioOutputs = SettingsTest;

TEST_F(AudioOutputs, AreTwoNumbers) {
  lists.AudioOutID = 2;
  lists.AudioOutPFLID = -1;
  LoadSaveAudio(station, "Save");
  EXPECT_EQ(MachineFile("ZemoAudio.Ini"), "2,-1\r\n");
  lists.AudioOutID = lists.AudioOutPFLID = 9;
  LoadSaveAudio(station, "Load");
  EXPECT_EQ(lists.AudioOutID, 2);
  EXPECT_EQ(lists.AudioOutPFLID, -1);
}

TEST_F(AudioOutputs, MayStandOnTwoLinesAndInQuotes) {
  MachineFileIs("ZemoAudio.Ini", "\"0\"\r\n1\r\n");
  LoadSaveAudio(station, "Load");
  EXPECT_EQ(lists.AudioOutID, 0);
  EXPECT_EQ(lists.AudioOutPFLID, 1);
  EXPECT_TRUE(fake.desktop.shown.empty());
}

TEST_F(AudioOutputs, StayAsTheyAreWithoutAFile) {
  LoadSaveAudio(station, "Load");
  EXPECT_EQ(lists.AudioOutID, -1);
  EXPECT_EQ(lists.AudioOutPFLID, -1);
  EXPECT_TRUE(fake.desktop.shown.empty());
}

TEST_F(AudioOutputs, ThatCannotBeReadShowAnAlertAndStayAsTheyAre) {
  const std::vector<std::pair<std::string, std::string>> alert = {
      {"Alerte", "Erreur de séléction de sortie audio"}};
  for (const char* bytes : {"", "1\r\n", "1,speakers\r\n", "x,1\r\n"}) {
    fake.desktop.shown.clear();
    MachineFileIs("ZemoAudio.Ini", bytes);
    LoadSaveAudio(station, "Load");
    EXPECT_EQ(fake.desktop.shown, alert) << bytes;
    EXPECT_EQ(lists.AudioOutID, -1) << bytes;
  }
  fake.desktop.shown.clear();
  fake.machineFolder.readsFail = true;
  LoadSaveAudio(station, "Load");
  EXPECT_EQ(fake.desktop.shown, alert);
  EXPECT_EQ(fake.errors, Texts{"LoadSaveAudio/75/ZemoAudio.Ini: Input/output error"});
}

using Lock = SettingsTest;

TEST_F(Lock, WithAPasswordIsStoredInPlainTextAtOnce) {
  std::string password = "sésame, ouvre-\"toi\"";
  LoadSavePassword(station, "Save", password);
  EXPECT_TRUE(lists.Locked);
  EXPECT_EQ(MachineFile("ZemoPasseWord.Ini"), "#TRUE#,\"s\xE9same, ouvre-\"\"toi\"\"\"\r\n");
  EXPECT_TRUE(fake.machineFolder.secrets.contains("ZemoPasseWord.Ini"));
  lists.Locked = false;
  lists.Password.clear();
  std::string read;
  LoadSavePassword(station, "Load", read);
  EXPECT_TRUE(lists.Locked);
  EXPECT_EQ(lists.Password, "sésame, ouvre-\"toi\"");
  EXPECT_EQ(read, lists.Password);
}

TEST_F(Lock, OpensWithTheEmptyPassword) {
  lists.Locked = true;
  lists.Password = "x";
  std::string password;
  LoadSavePassword(station, "Save", password);
  EXPECT_FALSE(lists.Locked);
  EXPECT_EQ(MachineFile("ZemoPasseWord.Ini"), "#FALSE#,\"\"\r\n");
}

TEST_F(Lock, IsReadFromTheStationWhereTheMachineHasNone) {
  StationFileIs("ZemoPasseWord.Ini", "#TRUE#,\"station\"\r\n");
  LoadSavePassword(station, "Load", lists.Password);
  EXPECT_TRUE(lists.Locked);
  EXPECT_EQ(lists.Password, "station");
  std::string none;
  LoadSavePassword(station, "Save", none);  // unlocked on this machine, and so it stays
  LoadSavePassword(station, "Load", lists.Password);
  EXPECT_FALSE(lists.Locked);
  EXPECT_EQ(StationFile("ZemoPasseWord.Ini"), "#TRUE#,\"station\"\r\n");
}

TEST_F(Lock, IsOffWithoutAFile) {
  std::string password = "old";
  LoadSavePassword(station, "Load", password);
  EXPECT_FALSE(lists.Locked);
  EXPECT_EQ(password, "");
}

TEST_F(Lock, LoadsIntoItsOwnList) {
  MachineFileIs("ZemoPasseWord.Ini", "#TRUE#\r\n\"abc\"\r\n");
  LoadSavePassword(station, "Load", lists.Password);
  EXPECT_TRUE(lists.Locked);
  EXPECT_EQ(lists.Password, "abc");
}

TEST_F(Lock, OpensOnlyWithItsPassword) {
  EXPECT_TRUE(LockOpensWith(station, ""));
  EXPECT_TRUE(LockOpensWith(station, "anything"));
  lists.Locked = true;
  lists.Password = "abc";
  EXPECT_FALSE(LockOpensWith(station, ""));
  EXPECT_FALSE(LockOpensWith(station, "ABC"));
  EXPECT_TRUE(LockOpensWith(station, "abc"));
}

TEST_F(Lock, StaysAsItIsWhenItsFileCannotBeRead) {
  lists.Locked = true;
  lists.Password = "abc";
  fake.machineFolder.readsFail = true;
  std::string password;
  LoadSavePassword(station, "Load", password);
  EXPECT_TRUE(lists.Locked);
  EXPECT_EQ(lists.Password, "abc");
  EXPECT_EQ(fake.errors, Texts{"LSPasseWord/75/ZemoPasseWord.Ini: Input/output error"});
}

using MachineState = SettingsTest;

TEST_F(MachineState, AnOrdinaryMachineWritesReports) {
  LoadMachineState(station);
  EXPECT_FALSE(station.engine.ReportsDisabled);
  EXPECT_FALSE(station.engine.PCProduction);
  EXPECT_FALSE(station.notices.noReport);
  EXPECT_EQ(station.notices.ticker, "");
}

TEST_F(MachineState, TheMarkerFileStopsReportsAndShowsItsBanner) {
  MachineFileIs("norapport.TXT", "");
  LoadMachineState(station);
  EXPECT_TRUE(station.engine.ReportsDisabled);
  EXPECT_FALSE(station.engine.PCProduction);
  EXPECT_TRUE(station.notices.noReport);
  EXPECT_EQ(station.notices.ticker, "NO RAPPORT  -  RAPPORT DISABLE  -  NO RAPPORT");
}

TEST_F(MachineState, AProductionMachineWritesNoReportsAndShowsNoBanner) {
  MachineFileIs("Settings.Ini", "PCProduction=True\r\n");
  LoadMachineState(station);
  EXPECT_TRUE(station.engine.ReportsDisabled);
  EXPECT_TRUE(station.engine.PCProduction);
  EXPECT_EQ(station.notices.ticker, "");
}

TEST_F(MachineState, FollowsTheProductionMarkAtOnceButForTheMarkerFile) {
  MachineFileIs("Settings.Ini", "PCProduction=True\r\n");
  LoadMachineState(station);
  fake.localValues.Set("PCProduction", "False");
  LoadMachineState(station);
  EXPECT_FALSE(station.engine.ReportsDisabled);
  MachineFileIs("NoRapport.txt", "");
  LoadMachineState(station);
  EXPECT_TRUE(station.engine.ReportsDisabled);
}

}  // namespace
}  // namespace zemo
