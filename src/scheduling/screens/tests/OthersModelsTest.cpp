// What others store while the window of the models is open.
#include "scheduling/screens/tests/ModelWindowFixture.h"

namespace zemo::test {
namespace {

constexpr int kSoonMs = 5000;  // at most; a look comes twice a second

TEST_F(ModelWindowTest, WhatOthersStoreShowsBesideTheHoursThatWereChanged) {
  s.Model(kSaturday, "POP", 40);
  Open();
  ClickCell("Models", 1, 9);
  Choose("MasterPourCent", "35");
  s.Sql("UPDATE Models SET TRANCHE08 = 10, TRANCHE09 = 11 WHERE GENRE = 'POP'");
  EXPECT_TRUE(QTest::qWaitFor([&] { return Cell("Models", 1, 10) == "11"; }, kSoonMs));
  EXPECT_EQ(Cell("Models", 1, 9), "35");
  EXPECT_EQ(Editor().ModelsPlace.row, 1);
  EXPECT_EQ(Editor().ModelsPlace.column, 9);
  EXPECT_TRUE(Find("LblNotSaved")->isVisible());
}

}  // namespace
}  // namespace zemo::test
