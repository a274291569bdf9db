// A new user: a new station, given a folder of music as people have it, and its first hour.
#include <gtest/gtest.h>

#include <map>
#include <nlohmann/json.hpp>
#include <string>

#include "app/tests/BlackBox.h"
#include "trial/MusicFolder.h"

namespace zemo {
namespace {

using Json = nlohmann::json;

class Trial : public BlackBox {
 protected:
  void SetUp() override {
    BlackBox::SetUp();
    std::filesystem::create_directory(root_ / "music");
    music = test::MakeMusicFolder(Path("music"));
    ASSERT_EQ(Run("new radio").status, 0);
    Put("radio/ImportGenres.Txt", "Chillout = GOLD N-3\n");
  }
  std::string Sql(const std::string& query) const {
    return Shell("sqlite3 radio/Triskin.MDB \"" + query + "\"").out;
  }
  std::string NamesOfTags(const std::string& file) const {
    return Sql("SELECT AUTEUR || '|' || TITRE FROM Discotheque WHERE FILENAME = '" +
               Path("music/Tags/" + file) + "'");
  }
  void ImportTakesWhatIsSound() const;
  void TheCardsSayWhatTheTagsSay() const;
  void CheckFindsFaultWithDamageAlone() const;
  void AnHourPlaysWithoutAGapOrAFault() const;

  test::MusicFolder music;
};

void Trial::ImportTakesWhatIsSound() const {
  const Result result = Run("import --station radio --machine machine --json music");
  EXPECT_EQ(result.status, 1);  // some were refused
  // Names of 8 bits are written with what stands for an unreadable letter.
  std::map<std::string, std::string> results;
  for (const Json& file : Json::parse(result.out)) {
    results[file["file"].get<std::string>().substr(Path("music/").size())] = file["result"];
    EXPECT_EQ(file["result"] == "refused" && file["reason"] == "", false) << file;
  }
  EXPECT_EQ(results.size(), music.good.size() + music.bad.size() + music.doubtful.size());
  for (const std::string& file : music.good)
    if (file.find('\xE9') == std::string::npos) {
      EXPECT_EQ(results[file], "added") << file;
    }
  for (const std::string& file : music.bad) EXPECT_EQ(results[file], "refused") << file;
  EXPECT_EQ(Sql("SELECT COUNT(*) FROM Discotheque WHERE HEX(FILENAME) LIKE '%636166E9206F66%'"),
            "1\n");  // "caf\xE9 of"
  const Result again = Run("import --station radio --machine machine music/Albums");
  EXPECT_EQ(LinesOf(again.out).back(), "0 added, 32 known already, 0 refused");
}

void Trial::TheCardsSayWhatTheTagsSay() const {
  const std::map<std::string, std::string> names = {
      {"utf-16.mp3", "Жанна|東京"},
      {"latin-1.mp3", "Françoise|Été"},
      {"said to be latin-1.mp3", "Björk|said to be latin-1"},
      {"old.mp3", "Old artist|Old title"},
      {"lines.mp3", "lines|One  Two Three"},
      {"empty.mp3", "empty|"},
      {"none.flac", "none|"},
      {"long.mp3", "long|" + std::string(40, 'x')},
      {"frame longer than the tag.mp3", "frame longer than the tag|"}};
  for (const auto& [file, expected] : names) EXPECT_EQ(NamesOfTags(file), expected + "\n") << file;
  EXPECT_EQ(
      Sql("SELECT AUTEUR || '|' || TITRE || '|' || GENRE FROM Discotheque WHERE TITRE = 'Song "
          "3'"),
      "Artist 3|Song 3|GOLD N-3\n");
  EXPECT_EQ(Sql("SELECT DUREE FROM Discotheque WHERE TITRE = 'The whole concert'"), "7200000\n");
  // Each was listened to; of what is damaged some cannot be.
  EXPECT_EQ(
      Sql("SELECT FILENAME FROM Discotheque WHERE FILENAME NOT LIKE '%/Damage/%' AND FILENAME "
          "NOT IN (SELECT CHEMIN FROM Mesures)"),
      "");
}

void Trial::CheckFindsFaultWithDamageAlone() const {
  for (const std::string& line : LinesOf(Run("check radio --machine machine").out)) {
    if (line.ends_with("(warning)") || line.find(" errors, ") != std::string::npos) continue;
    const bool damaged = line.find(" a hole - ") != std::string::npos ||
                         line.find(" half - ") != std::string::npos ||
                         line.find(" zeros behind - ") != std::string::npos;
    EXPECT_TRUE(damaged) << line;
  }
}

void Trial::AnHourPlaysWithoutAGapOrAFault() const {
  const Result result =
      Run("simulate --station radio --machine machine --from '2026-11-23 10:00:00' --for 60m");
  EXPECT_EQ(result.status, 0) << result.err;
  EXPECT_EQ(result.err, "");
  size_t starts = 0;
  for (const std::string& line : LinesOf(result.out)) {
    const Json event = Json::parse(line);
    const std::string name = event["event"];
    if (name == "start") ++starts;
    EXPECT_TRUE(name != "error" && name != "message" && name != "emergency") << line;
    // The very first moment alone is silent.
    if (name == "silence") {
      EXPECT_EQ(event["at"].get<std::string>().substr(0, 19), "2026-11-23T10:00:00");
    }
  }
  EXPECT_GE(starts, 20U);
  EXPECT_FALSE(std::filesystem::exists(root_ / "radio/Messages.Txt"));
}

TEST_F(Trial, AFolderOfEverythingBecomesAStationThatPlays) {
  ImportTakesWhatIsSound();
  TheCardsSayWhatTheTagsSay();
  CheckFindsFaultWithDamageAlone();
  AnHourPlaysWithoutAGapOrAFault();
}

}  // namespace
}  // namespace zemo
