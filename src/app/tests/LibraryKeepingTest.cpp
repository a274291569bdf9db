// The library's file as a run has it: when it is written, and what a start does with it.
#include <gtest/gtest.h>

#include "app/LibraryKeeping.h"
#include "support/TestStation.h"

namespace zemo::test {
namespace {

constexpr int64_t kWrittenMs = 60'000;  // two looks and the file's pieces

// Of 230 bytes each, 17 a page: some 240 pages, and more than a start reads at the first asking.
void MakeCards(TestStation& on) {
  on.Sql(
      "WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < 4000) INSERT INTO "
      "Discotheque (TITRE, FILENAME) SELECT 'TITLE ' || i, printf('%.220c', 'f') FROM n");
}

std::optional<TakenLibrary> InFile(const TestStation& on) {
  const auto file = on.machineFolder.Read(kKeptLibraryFile);
  return file ? ReadKeptLibrary(*file, on.stationFolder.Path()) : std::nullopt;
}

std::string FirstTitle(const std::optional<TakenLibrary>& library) {
  return library ? std::string(TitleOf(library->chunks.at(0)->at(0))) : "no file";
}

class KeepingTheLibrary : public testing::Test {
 protected:
  void SetUp() override {
    on.Load();
    MakeCards(on);
  }
  TestStation on;
};

TEST_F(KeepingTheLibrary, AStartKnowsItAtOnce) {
  {
    const LibraryKeeping keeping(on.station);
    on.RunUntil(kWrittenMs);
  }
  on.Sql("UPDATE Discotheque SET TITRE = 'OTHER' WHERE CODE = 1");

  TestStation next("2026-11-21 13:00:00", on.stationDir.Path());
  for (const std::string& name :
       on.machineFolder.Names())  // among them when the base was compacted
    next.machineFolder.Write(name, *on.machineFolder.Read(name));
  next.Load();
  const LibraryKeeping keeping(next.station);
  const auto known = CardsNow(next.station);
  ASSERT_TRUE(known);
  EXPECT_EQ(TitleOf(known->chunks.at(0)->at(0)), "OTHER");
  EXPECT_EQ(TitleOf(known->chunks.at(0)->at(1)), "TITLE 2");
}

TEST_F(KeepingTheLibrary, WithoutAFileOrWithADamagedOneItIsReadAsEver) {
  on.machineFolder.Write(kKeptLibraryFile, "damaged");
  const LibraryKeeping keeping(on.station);
  EXPECT_FALSE(CardsNow(on.station));  // but one slice
  on.RunUntil(kWrittenMs);
  EXPECT_TRUE(CardsNow(on.station));
  EXPECT_EQ(FirstTitle(InFile(on)), "TITLE 1");
}

TEST_F(KeepingTheLibrary, ItIsWrittenAgainWhenMuchHasChanged) {
  const LibraryKeeping keeping(on.station);
  on.RunUntil(kWrittenMs);
  Database& db = on.station.base.Db();
  db.Execute("UPDATE Discotheque SET TITRE = 'A FEW' WHERE CODE <= 170");  // ten pages
  on.RunUntil(3 * kWrittenMs);
  EXPECT_EQ(FirstTitle(InFile(on)), "TITLE 1");
  db.Execute("UPDATE Discotheque SET TITRE = 'MANY' WHERE CODE <= 2000");  // half of them
  on.RunUntil(5 * kWrittenMs);
  EXPECT_EQ(FirstTitle(InFile(on)), "MANY");
}

TEST_F(KeepingTheLibrary, AFullDiskIsToldOnceAndTriedAgainAfterAnHour) {
  on.machineFolder.writesFail = true;
  const LibraryKeeping keeping(on.station);
  const size_t before = on.LoggedTexts().size();
  on.RunUntil(30 * kWrittenMs);
  ASSERT_EQ(on.LoggedTexts().size(), before + 1);
  EXPECT_NE(on.LoggedTexts().back().find("No space left on device"), std::string::npos);
  EXPECT_FALSE(InFile(on));
  on.machineFolder.writesFail = false;
  on.RunUntil(63 * kWrittenMs);
  EXPECT_EQ(on.LoggedTexts().size(), before + 1);
  EXPECT_EQ(FirstTitle(InFile(on)), "TITLE 1");
}

TEST_F(KeepingTheLibrary, AFileThatCannotBeReadCostsTheStartNothing) {
  on.machineFolder.unreadable = kKeptLibraryFile;
  const LibraryKeeping keeping(on.station);
  on.RunUntil(1000);
  EXPECT_TRUE(on.LoggedTexts().empty());
}

TEST(KeepingASmallLibrary, ItIsReadAsFastAsAFile) {
  TestStation on;
  on.Load();
  for (int i = 0; i < 20; ++i) on.AddCard({});
  const LibraryKeeping keeping(on.station);
  on.RunUntil(2 * kWrittenMs);
  EXPECT_TRUE(CardsNow(on.station));
  EXPECT_FALSE(on.machineFolder.Exists(kKeptLibraryFile));
}

}  // namespace
}  // namespace zemo::test
