// Generated libraries, clocks and writes of everybody at any moment: whatever a request finds in
// memory is what the base's query gives in that moment, and so are the pools made of it and the
// rows that a search lists.
#include <gtest/gtest.h>

#include <algorithm>

#include "library/KnownCards.h"
#include "scheduling/FitCards.h"
#include "scheduling/GenreSupply.h"
#include "scheduling/LibrarySearch.h"
#include "scheduling/RequestFrame.h"
#include "scheduling/tests/CandidateReading.h"
#include "scheduling/tests/KnownTableCases.h"
#include "scheduling/tests/SearchReading.h"

namespace zemo {
namespace {

using test::PlainCards;
using test::PlainPool;
using test::SeePool;

constexpr int kManyCards = 150;  // on some twenty pages
constexpr int kSmallSlice = 9;   // rows, so that passes take several

class CardCases : public test::KnownTableCases {
 public:
  explicit CardCases(unsigned seed)
      : KnownTableCases(seed, {.table = "Discotheque",
                               .casesAStation = 40,
                               .mostHappens = 4,
                               .moreKinds = 0,
                               .readAhead = ReadCardsAhead}) {}

 private:
  void Forget() override { It().knownCards = std::make_shared<KnownCards>(kSmallSlice); }
  void Fill() override {
    plain_ = Pick(0, 1) == 1;
    Fixture().SetCnf("DecalDiff", std::max(Pick(-2, 3), 0));
    Fixture().SetCnf("EcartArtiste", Pick(0, 4));
    Fixture().Report("artist b", 46000, "POP");
    ForeignRows(Pick(0, 2) ? Pick(0, 40) : kManyCards, [this](int) { return Insertion(); });
  }
  void BeginCase() override {
    // Near the broadcasts of the cards, at their hours.
    static constexpr int kHours[] = {0, 7, 10, 12, 23};
    const bool near = Pick(0, 4) > 0;
    SetClock({2026, near ? 11 : Pick(10, 12), near ? Pick(20, 23) : Pick(1, 28), kHours[Pick(0, 4)],
              Pick(0, 59), Pick(0, 59), 0});
    PrepareRules(It());
    used_ = {};
    if (Pick(0, 1)) used_.Add(Pick(1, 30));
  }

  // --- values ---

  std::string TextValue(const std::string& column) {
    static constexpr const char* kGenres[] = {
        "'POP'",           "'pop'",  "'Pop '", "'ROCK'",    "'ÉTÉ'",    "'été'",
        "'ete'",           "''",     "NULL",   "x'504F50'", "'L''ETE'", "12",
        "'PO' || char(0)", "'ſoul'", "'SOUL'", "'ROCK'",    "'POP'"};
    static constexpr const char* kHours[] = {"'111111111111111111111111'",
                                             "'000000000000111111111111'",
                                             "'111111111111000000000000'",
                                             "''",
                                             "NULL",
                                             "'1'",
                                             "'ééééééééééé1111111'",
                                             "'1*?%_1*?%_1*?%_1*?%_1*?%_1'",
                                             "'11111' || char(0) || '111111111111111111'",
                                             "'111111111111111111111111'"};
    static constexpr const char* kDates[] = {"'21/11/2026 à 10:05'",
                                             "'20/11/2026 à 23:59'",
                                             "'05/10/2026 à 00:00'",
                                             "''",
                                             "NULL",
                                             "'  '",
                                             "'29/02/2024 à 07:30'",
                                             "'21/11/2026 à 10h5'",
                                             "'21/11/2026'",
                                             "''",
                                             "''",
                                             "'21/11/1826 à 10:05'",
                                             "'15/12/2026 à 12:00'",
                                             "'1/11/2026 à 10:05'"};
    static constexpr const char* kNames[] = {"'Artist A'", "'ARTIST A'",   "'artist b'", "''",
                                             "NULL",       "'  '",         "'Élan'",     "'élan'",
                                             "x'41FF42'",  "' Artist A '", "x'41C3'"};
    static constexpr const char* kTitles[] = {"'bTitre'", "x'A9C3A9'", "'Été'", "'a'", "''"};
    static constexpr const char* kDays[] = {"''", "NULL", "'0101'", "'1231'", "'  '", "'1115'"};
    static constexpr const char* kVarieties[] = {"'NATIONAL'", "'INTERNATIONAL'", "NULL", "'nat'"};
    if (!plain_ && Pick(0, 200) == 0) return "printf('%.600c', 'é')";  // 1200 bytes
    if (column == "GENRE") return OneOf(kGenres);
    if (column == "TITRE" && Pick(0, 3) == 0) return OneOf(kTitles);
    if (column.starts_with("TRANCHE"))
      return !plain_ && Pick(0, 150) == 0 ? "x'313131313131313131313131'" : OneOf(kHours);
    if (column.starts_with("DIFFUSION")) return Pick(0, 3) ? "''" : OneOf(kDates);
    if (column == "AUTEUR") return OneOf(kNames);
    if (column.starts_with("MMJJ")) return Pick(0, 3) ? "''" : OneOf(kDays);
    if (column == "VARIETE") return OneOf(kVarieties);
    return Pick(0, 9) ? "'" + column + std::to_string(Pick(1, 50)) + "'" : "NULL";
  }
  std::string NumberValue(const std::string& column) {
    static constexpr const char* kOdd[] = {"NULL",  "-1",           "0",     "'abc'", "2.5", "'12'",
                                           "99999", "123456789012", "x'41'", "-9e999"};
    if (Pick(0, 9) == 0) return plain_ ? "NULL" : OneOf(kOdd);
    if (column == "LASTDIFF") return std::to_string(46200 + Pick(0, 20)) + ".5";
    if (column == "ECARTMINUTES") return std::to_string(Pick(0, 300));
    if (column == "DUREE") return std::to_string(Pick(1, 400) * 1000);
    return std::to_string(Pick(0, 3));
  }
  std::string Column() {
    static constexpr const char* kColumns[] = {
        "LASTDIFF",     "DUREE",       "NBPASSJOUR",  "ECARTMINUTES", "ECARTJOURS",
        "ECARTARTISTE", "POINTSORTIE", "INTRO",       "AUTEUR",       "TITRE",
        "GENRE",        "VARIETE",     "FILENAME",    "MMJJDebut",    "MMJJFin",
        "TRANCHE01",    "TRANCHE06",   "DIFFUSION01", "DIFFUSION08"};
    return OneOf(kColumns);
  }
  std::string ValueFor(const std::string& column) {
    static constexpr const char* kNumbers[] = {"LASTDIFF",     "DUREE",      "NBPASSJOUR",
                                               "ECARTMINUTES", "ECARTJOURS", "ECARTARTISTE",
                                               "POINTSORTIE",  "INTRO"};
    const bool number =
        std::find(std::begin(kNumbers), std::end(kNumbers), column) != std::end(kNumbers);
    return number ? NumberValue(column) : TextValue(column);
  }
  std::string Insertion() {
    std::string fields =
                    "LASTDIFF, DUREE, NBPASSJOUR, ECARTMINUTES, ECARTJOURS, ECARTARTISTE, "
                    "AUTEUR, TITRE, GENRE, VARIETE, FILENAME, MMJJDebut, MMJJFin",
                values = NumberValue("LASTDIFF") + ", " + NumberValue("DUREE") + ", " +
                         NumberValue("NBPASSJOUR");
    for (const char* gap : {"ECARTMINUTES", "ECARTJOURS", "ECARTARTISTE"})
      values += std::string(", ") + (Pick(0, 2) ? "0" : NumberValue(gap));
    for (const char* text :
         {"AUTEUR", "TITRE", "GENRE", "VARIETE", "FILENAME", "MMJJDebut", "MMJJFin"})
      values += ", " + TextValue(text);
    for (int day = 1; day <= 7; ++day) {
      fields += ", TRANCHE" + TwoDigits(day);
      values += ", " + TextValue("TRANCHE");
    }
    for (int last = 1; last <= kDiffusions; ++last) {
      fields += ", DIFFUSION" + TwoDigits(last);
      values += ", " + TextValue("DIFFUSION");
    }
    return "INSERT INTO Discotheque (" + fields + ") VALUES (" + values + ")";
  }
  std::string Write() override {
    const std::string code = std::to_string(Pick(1, Pick(0, 1) ? 60 : kManyCards));
    switch (Pick(0, 12)) {
      case 12: {
        // Whole pages.
        const int first = Pick(1, kManyCards);
        return "DELETE FROM Discotheque WHERE CODE BETWEEN " + std::to_string(first) + " AND " +
               std::to_string(first + Pick(0, 30));
      }
      case 0:
        return "DELETE FROM Discotheque WHERE CODE = " + code;
      case 1:
        return Pick(0, 5) ? "DELETE FROM Discotheque WHERE CODE % 9 = 4"
                          : "DELETE FROM Discotheque";
      case 2:
        return "UPDATE OR REPLACE Discotheque SET CODE = CODE + 17 WHERE CODE = " + code;
      case 3:
        return "UPDATE Toph SET SURIMPRESSION = SURIMPRESSION + 1";
      case 4: {
        const std::string column = Column();
        return "UPDATE Discotheque SET " + column + " = " + ValueFor(column) + " WHERE CODE % " +
               std::to_string(Pick(1, 4)) + " = 0";
      }
      case 5:
      case 6:
      case 7:
        return Insertion();
      default: {
        const std::string column = Column();
        return "UPDATE Discotheque SET " + column + " = " + ValueFor(column) +
               " WHERE CODE = " + code;
      }
    }
  }

  void Change(Recordset& row) override {
    row.Set("DIFFUSION01", std::string("19/11/2026 à 12:30"));
    row.Set("LASTDIFF", 46345.25);
  }

  // --- both ways ---

  CardsWanted Wanted() {
    static constexpr const char* kNames[] = {"POP", "pop", "ROCK",  "ÉTÉ", "été",
                                             "",    "12",  "L'ETE", "soul"};
    CardsWanted wanted;
    for (int n = Pick(1, 3); n > 0; --n) wanted.genres.push_back(OneOf(kNames));
    if (Pick(0, 4)) wanted.hour = {{CurrentWeekday(It().Now()), It().Now().hour}};
    return wanted;
  }
  void Compare() override {
    const auto order =
        Pick(0, 1) ? CandidateCards::Order::kLastdiff : CandidateCards::Order::kPassesThenLastdiff;
    const CardsWanted wanted = Wanted();
    CountWay(CardsNow(It()).has_value());
    const CandidateCards cards(It(), wanted, order);
    const auto plain = PlainCards(It(), wanted, order);
    test::ExpectSame(cards, plain);
    const auto seen = SeePool(It(), cards, used_), expected = PlainPool(It(), plain, used_);
    EXPECT_EQ(seen.pool, expected.pool);
    EXPECT_EQ(seen.cut, expected.cut);
    EXPECT_EQ(seen.offered, expected.offered);
    EXPECT_EQ(seen.lines, expected.lines);
    EXPECT_EQ(seen.fault, expected.fault);
    CompareSearch();
    CompareFitting();
    CompareSupply();
  }
  // By the cards in memory and by the base's rows alone.
  void CompareSupply() {
    GenreSupply supply(It().Now()), plain(It().Now());
    while (!supply.Complete()) supply.ReadSlice(Db(), CardsListedAlready(It()));
    while (!plain.Complete()) plain.ReadSlice(Db(), std::nullopt);
    ASSERT_EQ(supply.Genres().size(), plain.Genres().size());
    for (const auto& [name, genre] : plain.Genres()) {
      ASSERT_TRUE(supply.Genres().contains(name)) << name;
      const GenreSupply::Genre& known = supply.Genres().at(name);
      EXPECT_EQ(known.titles, genre.titles) << name;
      EXPECT_EQ(known.days, genre.days) << name;
    }
    for (int code = 1; code <= 60; ++code) EXPECT_EQ(supply.GenreOf(code), plain.GenreOf(code));
  }
  void CompareFitting() {
    const int64_t aboveMs = Pick(-1, 400) * 1000;
    const CardsWanted wanted = Wanted();
    EXPECT_EQ(LongestRested(It(), wanted, aboveMs),
              test::PlainLongestRested(It(), wanted, aboveMs));
    std::vector<int32_t> codes;
    for (int n = Pick(0, 12); n > 0; --n) codes.push_back(Pick(-2, 60));
    EXPECT_EQ(RowsOfCards(It(), codes), test::PlainRowsOfCards(It(), codes));
  }
  void CompareSearch() {
    static constexpr const char* kTexts[] = {"*",      "artist a", "tist",     "TITRE1", "BTITRE",
                                             "ÉLA",    "élan",     "a artist", "éét",    "AÉÉ",
                                             "ist bT", "AT",       "   "};
    static constexpr const char* kPatterns[] = {"*", "p?p", "ÉT?", "", "1*", "*o*", "L'été"};
    BrowsedRows& found = It().browse.ListRech.rows;
    found.clear();
    if (Pick(0, 1)) {
      const std::string typed = It().browse.Rech = OneOf(kTexts);
      OnAir::Rech_Change(It());
      const bool enough = typed == "*" || CharacterCount(Trim(typed)) >= 3;
      test::ExpectSameRows(found,
                           enough ? test::PlainTextSearch(It(), typed) : std::vector<BrowseRow>());
    } else {
      const std::string pattern = OneOf(kPatterns);
      OnAir::RechGenre_Click(It(), pattern);
      test::ExpectSameRows(found, test::PlainGenreSearch(It(), pattern));
    }
  }

  TitlesInUse used_;
  bool plain_ = false;  // no value of the station's is one that only the base can judge
};

TEST(KnownCardsProperty, WhatIsKnownIsWhatTheBaseHolds) {
  CardCases(17).Run();
}

}  // namespace
}  // namespace zemo
