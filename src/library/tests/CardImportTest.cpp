#include "library/CardImport.h"
#include "library/ImportReport.h"
#include "library/ImportedExit.h"
#include "library/TitleInName.h"
#include "library/tests/LibraryFixture.h"
#include "platform/real/files/ImportReader.h"
#include "support/ReadAtOnce.h"

namespace zemo {

namespace {

struct CardsImported : LibraryFixture {
  test::TagTable tags;

  ImportedFile Take(const std::string& file, bool dryRun = false) {
    CardImport import(on.station, LibraryTab::kMusic, dryRun);
    while (import.ReadCardsSlice()) {
    }
    return import.Enter(ImportReader(on.opener, tags, on.soundFiles, import.Known()).Read(file));
  }
  std::string Row(const std::string& fields) {
    return on.SqlText("SELECT " + fields + " FROM Discotheque");
  }
};

}  // namespace

TEST_F(CardsImported, TagsFillTheFieldsOfTheCard) {
  const std::string file = on.MakeSound("song.mp3", 1000);
  tags.texts[file] = {.artist = "ARTIST",
                      .title = "TITLE",
                      .genre = "gold n-1",
                      .year = "1999",
                      .album = "ALBUM",
                      .composer = "COMPOSER",
                      .label = "LABEL"};
  const ImportedFile imported = Take(file);
  EXPECT_EQ(imported.result, ImportedFile::Result::kAdded);
  EXPECT_TRUE(imported.exitIsBare);
  EXPECT_EQ(Row("AUTEUR || '|' || TITRE || '|' || GENRE || '|' || ANNEE || '|' || REFERENCE || "
                "'|' || AUTEURCOMPOSITEUR || '|' || LABEL"),
            "ARTIST|TITLE|GOLD N-1|1999|ALBUM|COMPOSER|LABEL");
}

TEST_F(CardsImported, AForeignGenreIsTheStationsByTheMapElseNone) {
  on.stationFolder.Write(kGenreMapFile, "Chanson française = GOLD N-2\r\nPolka=NOT THE STATION'S");
  const std::string mapped = on.MakeSound("a.mp3", 1000);
  tags.texts[mapped].genre = "CHANSON FRANÇAISE";
  Take(mapped);
  EXPECT_EQ(Row("GENRE"), "GOLD N-2");
  for (const char* genre : {"Polka", "Unheard of", ""}) {
    on.Sql("DELETE FROM Discotheque");
    const std::string other = on.MakeSound("b.mp3", 1000);
    tags.texts[other].genre = genre;
    Take(other);
    EXPECT_EQ(Row("GENRE"), "NOGENRE") << genre;
  }
}

TEST_F(CardsImported, AnExchangeFileGoesBeforeTheTags) {
  const std::string file = on.MakeSound("song.mp3", 1000);
  tags.texts[file].artist = "OF THE TAGS";
  on.MakeFile("song.Txt", "\"OF THE FILE\",\"T\",\"POP\",\"\",\"\",0,1,0,60\r\n");
  const ImportedFile imported = Take(file);
  EXPECT_FALSE(imported.exitIsBare);
  EXPECT_EQ(Row("AUTEUR"), "OF THE FILE");
}

TEST_F(CardsImported, WithoutTagsTheNameOfTheFileIsArtistAndTitle) {
  for (const auto& [name, fields] :
       std::map<std::string, std::string>{{"ABBA - Waterloo.flac", "ABBA|Waterloo"},
                                          {"06 - ABBA - Waterloo.mp3", "ABBA|Waterloo"},
                                          {"song.flac", "song|"},
                                          {"06 song.flac", "06 song|"},
                                          {"06 - song.flac", "06 - song|"},
                                          {"a-b.wav", "a-b|"}}) {
    on.Sql("DELETE FROM Discotheque");
    Take(on.MakeSound(name, 1000));
    EXPECT_EQ(Row("AUTEUR || '|' || TITRE"), fields) << name;
  }
}

TEST_F(CardsImported, WhatTheTagsLackOfArtistAndTitleTheNameOfTheFileTells) {
  const struct {
    std::string name, artist, title, fields;
  } files[] = {{"ABBA - Waterloo.ogg", "", "OF THE TAGS", "ABBA|OF THE TAGS"},
               {"06 - ABBA - Waterloo.ogg", "", "Waterloo", "ABBA|Waterloo"},
               {"Waterloo - ABBA.ogg", "", "WATERLOO", "ABBA|WATERLOO"},
               {"06.ogg", "", "Waterloo", "Waterloo|Waterloo"},
               {"06 Agnetha.ogg", "", "Waterloo", "Agnetha|Waterloo"},
               {"ABBA - Waterloo.mp3", "OF THE TAGS", "", "OF THE TAGS|Waterloo"},
               {"Waterloo - ABBA.mp3", "ABBA", "", "ABBA|Waterloo"},
               {"1-06 Waterloo.mp3", "ABBA", "", "ABBA|Waterloo"},
               {"ABBA.mp3", "ABBA", "", "ABBA|"},
               {"06.mp3", "ABBA", "", "ABBA|"}};
  for (const auto& [name, artist, title, fields] : files) {
    on.Sql("DELETE FROM Discotheque");
    const std::string file = on.MakeSound(name, 1000);
    tags.texts[file].artist = artist;
    tags.texts[file].title = title;
    Take(file);
    EXPECT_EQ(Row("AUTEUR || '|' || TITRE"), fields) << name;
  }
}

TEST(TitleInName, ATrackNumberIsNoneWhereItMayBeTheArtistsName) {
  for (const auto& [name, told] :
       std::map<std::string, std::string>{{"50 Cent - In Da Club", "50 Cent|In Da Club"},
                                          {"311 - Down", "311|Down"},
                                          {"99.9 FM", "|99.9 FM"},
                                          {"7-Eleven", "|7-Eleven"},
                                          {"1999", "|1999"},
                                          {"06. Waterloo", "|Waterloo"},
                                          {"6_Waterloo", "|Waterloo"},
                                          {"006 Waterloo", "|Waterloo"},
                                          {"1-06 ABBA - Waterloo", "ABBA|Waterloo"},
                                          {"12", "|"}}) {
    const TitleInName title = ReadTitleInName(name);
    EXPECT_EQ(title.artist + "|" + title.title, told) << name;
  }
}

TEST_F(CardsImported, TitlesThatNoModelAsksForAreCountedByTheGenresOfTheirTags) {
  ImportReport report;
  const auto add = [&](const std::string& name, const std::string& genre) {
    const std::string file = on.MakeSound(name, 1000);
    tags.texts[file].genre = genre;
    report.Add(file, Take(file));
  };
  add("a.mp3", "Chillout");
  EXPECT_EQ(report.Notes(1),
            "1 without a genre of the station's, which no model asks for (see ImportGenres.Txt): "
            "Chillout 1\n");
  add("b.mp3", "");
  add("c.mp3", "gold n-1");
  add("d.mp3", "");
  EXPECT_EQ(report.Notes(1),
            "3 without a genre of the station's, which no model asks for (see ImportGenres.Txt): "
            "none 2, Chillout 1\n");
  EXPECT_EQ(ImportReport().Notes(1), "");
}

TEST_F(CardsImported, ALineOfTheMapThatNamesNoGenreOfTheStationsIsToldOnceWithItsNumber) {
  on.stationFolder.Write(kGenreMapFile, "Chanson = gold n-2\r\n\r\nPolka=MARCHES\r\nValse=\r\n");
  ImportReport report;
  report.TakeUnknownGenres(CardImport(on.station, LibraryTab::kMusic, false).UnknownGenres());
  EXPECT_EQ(report.Notes(1),
            "ImportGenres.Txt, line 3: the station has no genre MARCHES\n"
            "ImportGenres.Txt, line 4: the station has no genre \n");
  EXPECT_TRUE(CardImport(on.station, LibraryTab::kJingles, false).UnknownGenres().empty());
}

TEST_F(CardsImported, AFileInWhichHardlyAnythingIsHeardIsAddedAndNamedAtTheEnd) {
  ImportReport report;
  const std::string silent = on.MakeSound("silent.mp3", 61000),
                    song = on.MakeSound("song.mp3", 1000);
  on.opener.silent.insert(silent);
  for (const std::string& file : {on.MakeSound("short.mp3", 999), song, silent})
    report.Add(file, Take(file));
  EXPECT_EQ(report.Counts(1), "3 added, 0 known already, 0 refused");
  const std::string notes = report.Notes(1);
  EXPECT_EQ(notes.substr(notes.find('\n') + 1),
            "2 with less than a second of sound: short.mp3 (card 1), silent.mp3 (card 3)\n");
}

TEST_F(CardsImported, ATextThatIsTooLongIsCutAndNamed) {
  const std::string file = on.MakeSound("song.mp3", 1000);
  tags.texts[file].album = "Twenty characters and more";
  const ImportedFile imported = Take(file);
  EXPECT_EQ(ImportRemark(imported, 1), "album cut to its field");
  EXPECT_EQ(ImportRemark(imported, 0), "album coupé à la longueur du champ");
  EXPECT_EQ(Row("REFERENCE"), "Twenty characters");
}

TEST_F(CardsImported, WordsAreCutBehindOneInTheSecondHalfElseWhereTheFieldEnds) {
  EXPECT_EQ(CutAtWord("short", 5), "short");
  EXPECT_EQ(CutAtWord("one two three", 9), "one two");
  EXPECT_EQ(CutAtWord("one two three", 7), "one two");
  EXPECT_EQ(CutAtWord("a bcdefghijkl", 8), "a bcdefg");
  EXPECT_EQ(CutAtWord("ééééé", 3), "ééé");
}

TEST_F(CardsImported, ATrialIsRefusedWhereTheRunItselfWouldBe) {
  const std::string file = on.MakeSound("song.mp3", 1000);
  on.MakeFile("song.Txt", "\"A\",\"T\",\"POP\",\"\",\"\",70000,1,0,60\r\n");
  EXPECT_EQ(Take(file, true).result, ImportedFile::Result::kRefused);
  EXPECT_EQ(Take(file).result, ImportedFile::Result::kRefused);
}

TEST_F(CardsImported, WhatCannotBeDecodedIsRefused) {
  const ImportedFile imported = Take(on.MakeFile("broken.mp3", "no sound"));
  EXPECT_EQ(imported.result, ImportedFile::Result::kRefused);
  EXPECT_NE(imported.reason, "");
  EXPECT_EQ(Row("COUNT(*)"), "0");
}

TEST_F(CardsImported, ADryRunWritesNothing) {
  const ImportedFile imported = Take(on.MakeSound("song.mp3", 1000), true);
  EXPECT_EQ(imported.result, ImportedFile::Result::kAdded);
  EXPECT_EQ(imported.code, 1);
  EXPECT_EQ(Row("COUNT(*)"), "0");
}

TEST_F(CardsImported, TheMeasuredExitGoesIntoACardWhoseExitNobodySet) {
  const std::string file = on.MakeSound("song.mp3", 60000);
  const ImportedFile imported = Take(file);
  SoundMeasures measures;
  measures.lengthMs = 60000;
  measures.soundEndMs = 60000;
  measures.exitMs = 4200;
  const SoundFileStamp stamp = *on.soundFiles.Stamp(file);
  TakeMeasures(on.station, {imported.code, 1600, file}, stamp, measures);
  EXPECT_EQ(Row("POINTSORTIE"), "4200");
  const auto mus = on.soundFiles.Read(on.stationDir.Path() + "/song.Mus");
  ASSERT_TRUE(mus);
  EXPECT_NE(mus->find("\r\n4200,"), std::string::npos);
  on.Sql("UPDATE Discotheque SET POINTSORTIE = 900");
  TakeMeasures(on.station, {imported.code, 1600, file}, stamp, measures);
  EXPECT_EQ(Row("POINTSORTIE"), "900");
}

TEST_F(CardsImported, AMeasuredExitIsThatOfItsFileAndNotOfAnotherThatTheCardGotMeanwhile) {
  const std::string file = on.MakeSound("song.mp3", 60000);
  const ImportedFile imported = Take(file);
  on.Sql("UPDATE Discotheque SET FILENAME = '" + on.MakeSound("other.mp3", 60000) + "'");
  SoundMeasures measures;
  measures.exitMs = 4200;
  TakeMeasures(on.station, {imported.code, 1600, file}, *on.soundFiles.Stamp(file), measures);
  EXPECT_EQ(Row("POINTSORTIE"), "1600");
}

}  // namespace zemo
