#include <gtest/gtest.h>

#include "station/BrowseList.h"

namespace zemo {
namespace {

TEST(PackedRows, GiveEachCellBackAlsoEmptyAndVeryLongOnes) {
  PackedRows rows;
  const std::string longText(300000, 'x');  // more than a block
  rows.Add({"Zoé", "", "L'île"}, 7);
  rows.Add({longText, "b"}, 8);
  for (int i = 0; i < 5000; ++i) rows.Add({"ARTIST " + std::to_string(i), "SONG"}, 100 + i);
  ASSERT_EQ(rows.Count(), 5002U);
  EXPECT_EQ(rows.Cell(0, 0), "Zoé");
  EXPECT_EQ(rows.Cell(0, 1), "");
  EXPECT_EQ(rows.Cell(0, 2), "L'île");
  EXPECT_EQ(rows.Cell(0, 11), "");
  EXPECT_EQ(rows.Code(0), 7);
  EXPECT_EQ(rows.Cell(1, 0), longText);
  EXPECT_EQ(rows.Cell(1, 1), "b");
  EXPECT_EQ(rows.Cell(5001, 0), "ARTIST 4999");
  EXPECT_EQ(rows.Code(5001), 5099);
}

BrowseRow Row(const std::string& text, int32_t code) {
  return {{text}, code};
}

TEST(BrowsedRows, CountAGenerationForOtherRowsAndNoneForRowsAtTheEnd) {
  BrowsedRows rows = {Row("A", 1), Row("B", 2), Row("C", 3)};
  uint64_t before = rows.Generation();
  rows.Reorder({2, 0, 1});
  EXPECT_EQ(rows.Cell(0, 0), "C");
  EXPECT_EQ(rows.Code(2), 2);
  EXPECT_GT(rows.Generation(), before);
  before = rows.Generation();
  rows = {Row("D", 4)};
  EXPECT_GT(rows.Generation(), before);
  EXPECT_EQ(rows[0].cells[0], "D");
  before = rows.Generation();
  rows.clear();
  EXPECT_TRUE(rows.empty());
  EXPECT_GT(rows.Generation(), before);
  auto texts = std::make_shared<PackedRows>();
  texts->Add({"E"}, 5);
  texts->Add({"F"}, 6);
  rows.Show(texts);
  EXPECT_TRUE(rows.empty());
  before = rows.Generation();
  rows.Append(1);
  EXPECT_EQ(rows.Cell(0, 0), "F");
  auto now = std::make_shared<PackedRows>();
  now->Add({"F as it reads now"}, 6);
  rows.Renew(now, {0});
  EXPECT_EQ(rows.Cell(0, 0), "F as it reads now");
  EXPECT_EQ(rows.Generation(), before);
}

}  // namespace
}  // namespace zemo
