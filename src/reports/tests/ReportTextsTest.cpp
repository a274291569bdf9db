// The report screen's words in the four languages.
#include <gtest/gtest.h>

#include <set>
#include <string>

#include "reports/ReportScreen.h"
#include "reports/ReportTexts.h"
#include "station/OperatorWords.h"

namespace zemo {
namespace {

TEST(ReportTexts, EachNameStandsOnceWithAWordInEachLanguage) {
  std::set<std::string> names;
  for (const Word& word : ReportCaptions()) {
    EXPECT_TRUE(names.insert(word.name).second) << word.name;
    for (const char* text : word.texts) {
      ASSERT_NE(text, nullptr) << word.name;
      EXPECT_STRNE(text, "") << word.name;
    }
  }
}

TEST(ReportTexts, EachColumnHasItsHead) {
  const auto heads = [](const std::string& list) {
    int count = 0;
    for (const Word& word : ReportCaptions()) count += std::string(word.name).starts_with(list);
    return count;
  };
  EXPECT_EQ(heads("ListRap."), RapCol::kCount);
  EXPECT_EQ(heads("ListStat."), StatCol::kCount);
}

TEST(ReportTexts, TheMessageOfAnEmptyListIsShownInTheOperatorsLanguage) {
  EXPECT_EQ(InOperatorsWords(Report::kNothingListed, 0), "Vous n'avez rien dans la liste");
  EXPECT_EQ(InOperatorsWords(Report::kNothingListed, 1), "There is nothing in the list");
}

}  // namespace
}  // namespace zemo
