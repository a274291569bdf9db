// The order of a French dictionary, case of accented letters, and patterns.
#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "store/Collation.h"

namespace zemo {
namespace {

int Sign(int value) {
  return (value > 0) - (value < 0);
}

TEST(FrenchOrder, AccentsDoNotMoveALetterAwayFromItsPlainOne) {
  EXPECT_LT(CompareFrenchOrder("école", "edam"), 0);
  EXPECT_LT(CompareFrenchOrder("Éa", "ez"), 0);
  EXPECT_GT(CompareFrenchOrder("zèbre", "École"), 0);
  EXPECT_LT(CompareFrenchOrder("Ça", "cb"), 0);
}

TEST(FrenchOrder, CaseMakesNoDifference) {
  EXPECT_EQ(CompareFrenchOrder("ABBA", "abba"), 0);
  EXPECT_EQ(CompareFrenchOrder("ÉTÉ", "été"), 0);
  EXPECT_EQ(CompareFrenchOrder("ŒUVRE", "œuvre"), 0);
  EXPECT_EQ(CompareFrenchOrder("ŸŽ", "ÿž"), 0);
}

TEST(FrenchOrder, WordsOfTheSameLettersAreSetApartByTheirLastAccent) {
  std::vector<std::string> words = {"côté", "coté", "côte", "cote"};
  std::sort(words.begin(), words.end(),
            [](const auto& a, const auto& b) { return CompareFrenchOrder(a, b) < 0; });
  EXPECT_EQ(words, (std::vector<std::string>{"cote", "côte", "coté", "côté"}));
}

TEST(FrenchOrder, LigaturesStandAmongTheirTwoLetters) {
  EXPECT_LT(CompareFrenchOrder("odeur", "œuf"), 0);
  EXPECT_LT(CompareFrenchOrder("œuf", "of"), 0);
  EXPECT_GT(CompareFrenchOrder("œuf", "oeuf"), 0);
  EXPECT_LT(CompareFrenchOrder("æ", "af"), 0);
}

TEST(FrenchOrder, AnAccentWrittenAsAMarkOfItsOwnCountsAsAnAccent) {
  EXPECT_LT(CompareFrenchOrder("e\xCC\x81t", "eu"), 0);
  EXPECT_GT(CompareFrenchOrder("e\xCC\x81", "e"), 0);
}

TEST(FrenchOrder, AShorterTextComesFirst) {
  EXPECT_LT(CompareFrenchOrder("", "a"), 0);
  EXPECT_LT(CompareFrenchOrder("été", "étés"), 0);
  EXPECT_EQ(CompareFrenchOrder("", ""), 0);
}

TEST(FrenchOrder, IsAnOrderForAnyBytes) {
  const std::vector<std::string> texts = {
      "",      "a", "\xC3", "\xC3\xA9", "\xE9",      "\xF0\x9F", "e",           "É",
      "z\xFF", "œ", "oe",   "\xCC\x81", "e\xCC\x81", "OÈ",       "\xED\xA0\x80"};
  for (const auto& a : texts) {
    for (const auto& b : texts) {
      EXPECT_EQ(Sign(CompareFrenchOrder(a, b)), -Sign(CompareFrenchOrder(b, a))) << a << ' ' << b;
      for (const auto& c : texts) {
        if (CompareFrenchOrder(a, b) <= 0 && CompareFrenchOrder(b, c) <= 0) {
          EXPECT_LE(CompareFrenchOrder(a, c), 0) << a << ' ' << b << ' ' << c;
        }
      }
    }
  }
}

TEST(FrenchCase, EqualsCapitalsAndSmallLettersButNotAccents) {
  EXPECT_EQ(CompareFrenchCase("Édith PIAF", "édith piaf"), 0);
  EXPECT_NE(CompareFrenchCase("édith", "edith"), 0);
  EXPECT_EQ(CompareFrenchCase("ŁÓDŹ", "łódź"), 0);
  EXPECT_EQ(CompareFrenchCase("ΑΩ БЯ", "αω бя"), 0);
  EXPECT_NE(CompareFrenchCase("×", "÷"), 0);
  EXPECT_NE(CompareFrenchCase("été", "étés"), 0);
}

TEST(Pattern, StarStandsForAnyCharactersAndQuestionMarkForOne) {
  EXPECT_TRUE(MatchesPattern("", "*"));
  EXPECT_TRUE(MatchesPattern("Téléphone", "t?l*e"));
  EXPECT_FALSE(MatchesPattern("tl", "t?l"));
  EXPECT_TRUE(MatchesPattern("abcabd", "*abd"));
  EXPECT_FALSE(MatchesPattern("abcabd", "*abc"));
  EXPECT_TRUE(MatchesPattern("aXbXc", "a*b*c"));
  EXPECT_FALSE(MatchesPattern("", "?"));
  EXPECT_FALSE(MatchesPattern("a", ""));
  EXPECT_TRUE(MatchesPattern("", ""));
}

TEST(Pattern, AccentedLettersMatchInEitherCaseAndCountAsOneCharacter) {
  EXPECT_TRUE(MatchesPattern("ÉTÉ", "été"));
  EXPECT_TRUE(MatchesPattern("été", "?t?"));
  EXPECT_FALSE(MatchesPattern("ete", "été"));
}

TEST(Pattern, PercentUnderscoreAndBracketsAreThemselves) {
  EXPECT_TRUE(MatchesPattern("100%", "100%"));
  EXPECT_FALSE(MatchesPattern("1000", "100%"));
  EXPECT_FALSE(MatchesPattern("axb", "a_b"));
  EXPECT_TRUE(MatchesPattern("[a]#", "[a]#"));
}

}  // namespace
}  // namespace zemo
