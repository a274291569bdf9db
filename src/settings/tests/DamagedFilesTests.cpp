// Every reader over whatever a file may hold: noise, and good files cut off at every byte. None may
// crash or throw, and what comes out keeps its shape.
#include "platform/tests/RandomBytes.h"
#include "settings/GenreList.h"
#include "settings/LineLists.h"
#include "settings/WebPage.h"
#include "settings/tests/SettingsTest.h"
#include "station/SideFileText.h"

namespace zemo {
namespace {

constexpr const char* kStationFiles[] = {
    "StartStop.0",  "Topage.0",  "Exclusion.Txt", "Instrumental.Txt", "LectureBase.Txt",
    "Internet.Txt", "Genre.Txt", "Labels.Txt",    "CD.Txt",           "Categori.Ini"};
constexpr const char* kMachineFiles[] = {"ZemoPlay.Ini", "ZemoAudio.Ini", "ZemoPasseWord.Ini",
                                         "Settings.Ini"};

struct DamagedFiles : SettingsTest {
  Texts genres, labels, cds, categories;

  // All readers of one file each, with the same bytes in every file.
  void ReadAll(const std::string& bytes) {
    for (const char* name : kStationFiles) StationFileIs(name, bytes);
    for (const char* name : kMachineFiles) MachineFileIs(name, bytes);
    LoadSaveStartStop(station, "Load", 0, true);
    LoadSaveTopage(station, "Load", 0, true);
    LoadSaveExclusion(station, "Load");
    LoadSaveInstrumental(station, "Load");
    LoadReadSettingsOfBase(station);
    LoadFileRealAudio(station);
    LoadSavePlay(station, "Load");
    LoadSaveAudio(station, "Load");
    LoadSavePassword(station, "Load", lists.Password);
    LoadMachineState(station);
    LoadSaveGenres(station, "Load", genres);
    LoadSaveLabels(station, "Load", labels);
    LoadSaveCD(station, "Load", cds);
    LoadSaveCategories(station, "Load", categories);
    ExpectUntouched(bytes);
  }

  // Reading makes no file worse.
  void ExpectUntouched(const std::string& bytes) {
    for (const char* name : kStationFiles) EXPECT_EQ(StationFile(name), bytes) << name;
    for (const char* name : kMachineFiles) EXPECT_EQ(MachineFile(name), bytes) << name;
  }

  void ExpectGoodShape() {
    EXPECT_LE(lists.Exclusion.size(), 80u);
    EXPECT_LE(lists.LectureBase, 32767);
    EXPECT_GE(lists.LectureBase, -32768);
    for (const auto* times : {&lists.ComboHeure, &lists.HeureArretSystem, &lists.Topage})
      for (const std::string& time : *times) {
        EXPECT_FALSE(time.empty());
        EXPECT_TRUE(IsValidUtf8(time));
        EXPECT_EQ(time.find_first_of("\r\n"), std::string::npos);
      }
    for (const auto& [from, to] : lists.Exclusion) {
      EXPECT_EQ((from + to).find_first_of("\r\n\t"), std::string::npos);
    }
    for (const auto* entries : {&genres, &labels, &cds, &categories})
      for (const std::string& entry : *entries) {
        EXPECT_TRUE(IsValidUtf8(entry));
        EXPECT_EQ(entry.find_first_of("\r\n"), std::string::npos);
      }
    EXPECT_LE(fake.errors.size(), 1u);  // one line for the one file that must hold a number
    for (const std::string& error : fake.errors)
      EXPECT_EQ(error.find("LoadLectureBase/"), 0u) << error;
    fake.errors.clear();
  }
};

TEST_F(DamagedFiles, OfAnyBytesAreRead) {
  RandomBytes random(8);
  for (int round = 0; round < 3000 && !HasFailure(); ++round) {
    ReadAll(random.Text(150));
    ExpectGoodShape();
  }
}

TEST_F(DamagedFiles, WhateverIsLoadedIsLoadedTheSameOnceSaved) {
  RandomBytes random(9);
  for (int round = 0; round < 2000 && !HasFailure(); ++round) {
    ReadAll(random.Text(100));
    const EngineLists before = lists;
    LoadSaveStartStop(station, "Save", 0, true);
    LoadSaveTopage(station, "Save", 0, true);
    LoadSaveExclusion(station, "Save");
    LoadSaveInstrumental(station, "Save");
    LoadSaveAudio(station, "Save");
    LoadSaveStartStop(station, "Load", 0, true);
    LoadSaveTopage(station, "Load", 0, true);
    LoadSaveExclusion(station, "Load");
    LoadSaveInstrumental(station, "Load");
    LoadSaveAudio(station, "Load");
    ASSERT_EQ(lists.ComboHeure, before.ComboHeure) << round;
    ASSERT_EQ(lists.HeureArretSystem, before.HeureArretSystem) << round;
    ASSERT_EQ(lists.Topage, before.Topage) << round;
    ASSERT_EQ(lists.Exclusion, before.Exclusion) << round;
    ASSERT_EQ(lists.Instru, before.Instru) << round;
    ASSERT_EQ(lists.AudioOutID, before.AudioOutID) << round;
  }
}

TEST_F(DamagedFiles, CutOffAtAnyByteAreRead) {
  const std::string good[] = {"\"START\",\"06:00\"\r\n\"STOP\",\"12:00-F\"\r\n",
                              "06:00\t09:00\r\n18:00\t20:30\r\n",
                              "#TRUE#,\"s\xC3\xA9same\"\r\n",
                              "15\r\n\"/* Param\xE8tre\"\r\n",
                              "INSTRUMENTAL\r\n\xC9T\xC9\r\nPOP\r\n",
                              "D:\\air.htm\r\non air:\r\n - \r\nBANNER\r\n",
                              "#TRUE#\r\n#FALSE#\r\n#TRUE#\r\n",
                              "2,-1\r\n",
                              "\xEF\xBB\xBFPCProduction=True\r\nXRapport=20\r\n"};
  for (const std::string& bytes : good)
    for (size_t length = 0; length <= bytes.size(); ++length) {
      ReadAll(bytes.substr(0, length));
      ExpectGoodShape();
    }
}

TEST_F(DamagedFiles, AStartTimeCutShortLosesNothingBeforeIt) {
  const std::string first = "\"START\",\"06:00\"\r\n", second = "\"STOP\",\"12:00-F\"\r\n";
  for (size_t length = 0; length <= second.size(); ++length) {
    StationFileIs("StartStop.0", first + second.substr(0, length));
    LoadSaveStartStop(station, "Load", 0, true);
    ASSERT_EQ(lists.ComboHeure, Texts{"06:00"}) << length;
  }
  EXPECT_EQ(lists.HeureArretSystem, Texts{"12:00-F"});
}

// Each reader alone over a file that is missing, empty, or cannot be read.
struct Reader {
  const char* file;
  bool machine;
  bool silent;  // its faults are swallowed
  void (*load)(DamagedFiles& test);
};
const Reader kReaders[] = {
    {"StartStop.0", false, false,
     [](DamagedFiles& t) { LoadSaveStartStop(t.station, "Load", 0, true); }},
    {"Topage.0", false, false, [](DamagedFiles& t) { LoadSaveTopage(t.station, "Load", 0, true); }},
    {"Exclusion.Txt", false, false, [](DamagedFiles& t) { LoadSaveExclusion(t.station, "Load"); }},
    {"Instrumental.Txt", false, false,
     [](DamagedFiles& t) { LoadSaveInstrumental(t.station, "Load"); }},
    {"LectureBase.Txt", false, false, [](DamagedFiles& t) { LoadReadSettingsOfBase(t.station); }},
    {"Internet.Txt", false, false, [](DamagedFiles& t) { LoadFileRealAudio(t.station); }},
    {"Genre.Txt", false, false,
     [](DamagedFiles& t) { LoadSaveGenres(t.station, "Load", t.genres); }},
    {"Labels.Txt", false, false,
     [](DamagedFiles& t) { LoadSaveLabels(t.station, "Load", t.labels); }},
    {"Categori.Ini", false, false,
     [](DamagedFiles& t) { LoadSaveCategories(t.station, "Load", t.categories); }},
    {"CD.Txt", false, false, [](DamagedFiles& t) { LoadSaveCD(t.station, "Load", t.cds); }},
    {"ZemoPlay.Ini", true, true, [](DamagedFiles& t) { LoadSavePlay(t.station, "Load"); }},
    {"ZemoAudio.Ini", true, false, [](DamagedFiles& t) { LoadSaveAudio(t.station, "Load"); }},
    {"ZemoPasseWord.Ini", true, false,
     [](DamagedFiles& t) { LoadSavePassword(t.station, "Load", t.lists.Password); }}};

TEST_F(DamagedFiles, ThatCannotBeReadCostOneLineAndAreNotWritten) {
  for (const Reader& reader : kReaders) {
    fake.errors.clear();
    MemoryFolder& folder = reader.machine ? fake.machineFolder : fake.stationFolder;
    folder.files = {{reader.file, "what is kept"}};
    folder.readsFail = true;
    reader.load(*this);
    folder.readsFail = false;
    EXPECT_EQ(fake.errors.size(), reader.silent ? 0u : 1u) << reader.file;
    EXPECT_EQ(folder.Read(reader.file), "what is kept");
  }
}

TEST_F(DamagedFiles, ThatAreMissingCostNoLine) {
  for (const Reader& reader : kReaders) {
    reader.load(*this);
    EXPECT_EQ(fake.errors, Texts{}) << reader.file;
  }
  EXPECT_EQ(fake.stationFolder.files.size(), 2u);  // genres and the reading limit are made
  EXPECT_TRUE(fake.machineFolder.files.empty());
}

TEST_F(DamagedFiles, ThatAreEmptyStayEmpty) {
  for (const Reader& reader : kReaders) {
    fake.errors.clear();
    MemoryFolder& folder = reader.machine ? fake.machineFolder : fake.stationFolder;
    folder.files = {{reader.file, ""}};
    reader.load(*this);
    EXPECT_EQ(folder.Read(reader.file), "") << reader.file;
    EXPECT_EQ(fake.errors.size(), std::string(reader.file) == "LectureBase.Txt" ? 1u : 0u)
        << reader.file;
  }
}

TEST_F(DamagedFiles, PagesOfAnyBytesAreWrittenWithoutLosingALine) {
  RandomBytes random(10);
  for (int round = 0; round < 2000 && !HasFailure(); ++round) {
    const std::string page = random.Text(200);
    fake.soundFiles.files["page"] = page;
    fake.soundFiles.files["a.JPG"] = "";
    fake.soundFiles.files["a.Net"] = random.Text(30);
    StationFileIs("Internet.Txt", "page\r\n" + random.Text(6) + "\r\n-\r\n" + random.Text(6));
    LoadFileRealAudio(station);
    SaveInfoRealAudio(station, "Anna", "a.wav");
    const auto before = SplitLines(DecodeSideFile(page));
    const auto after = SplitLines(DecodeSideFile(fake.soundFiles.files["page"]));
    ASSERT_EQ(after.size(), before.size()) << round;
  }
  EXPECT_TRUE(fake.errors.empty());
}

}  // namespace
}  // namespace zemo
