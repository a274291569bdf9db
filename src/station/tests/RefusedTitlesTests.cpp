#include <gtest/gtest.h>

#include "station/RefusedTitles.h"

namespace zemo {
namespace {

using Lines = std::vector<std::string>;

struct Made {
  RefusedTitles titles;
  int made = 0;
  void Later(size_t count, const std::string& text) {
    titles.AddLater(count, [this, text](size_t at) {
      ++made;
      return text + std::to_string(at);
    });
  }
};

TEST(RefusedTitles, LinesForLaterCountAndAreMadeWhenTheyAreRead) {
  Made m;
  m.titles.Add("first");
  m.Later(3, "later ");
  EXPECT_EQ(m.titles.Count(), 4U);
  EXPECT_EQ(m.made, 0);
  EXPECT_EQ(m.titles.Some(0, 2), (Lines{"first", "later 0"}));
  EXPECT_EQ(m.made, 1);
  const Lines all = {"first", "later 0", "later 1", "later 2"};
  EXPECT_EQ(m.titles.All(), all);
  EXPECT_EQ(m.titles.All(), all);
  EXPECT_EQ(m.made, 4);  // three more, once
  EXPECT_EQ(m.titles.Count(), 4U);
}

TEST(RefusedTitles, SomeAreAsManyAsThereAre) {
  Made m;
  m.titles.Add("first");
  m.Later(1, "later ");
  EXPECT_EQ(m.titles.Some(1, 20), Lines{"later 0"});
  EXPECT_EQ(m.titles.Some(2, 20), Lines{});
  EXPECT_EQ(m.titles.Some(9, 20), Lines{});
}

TEST(RefusedTitles, WhatFollowsStandsBehindThem) {
  Made m;
  m.Later(1, "a");
  m.titles.Add("between");
  m.Later(2, "b");
  EXPECT_EQ(m.titles.All(), (Lines{"a0", "between", "b0", "b1"}));
}

TEST(RefusedTitles, ClearedThereAreNone) {
  Made m;
  m.titles.Add("first");
  m.Later(1, "later ");
  m.titles.Clear();
  EXPECT_EQ(m.titles.Count(), 0U);
  EXPECT_EQ(m.titles.All(), Lines{});
  EXPECT_EQ(m.made, 0);
}

}  // namespace
}  // namespace zemo
