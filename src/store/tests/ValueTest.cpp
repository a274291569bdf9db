// Readings of stored values, and values in SQL.
#include <gtest/gtest.h>

#include <limits>

#include "store/SqlText.h"
#include "store/Value.h"

namespace zemo {
namespace {

TEST(StoredValue, NullReadsAsNothingAtAll) {
  EXPECT_EQ(AsText(Value{}), "");
  EXPECT_EQ(AsInt(Value{}), 0);
  EXPECT_EQ(AsReal(Value{}), 0.0);
  EXPECT_FALSE(AsBool(Value{}));
}

TEST(StoredValue, AWholeRealHasNoDecimalPointAsText) {
  EXPECT_EQ(AsText(Value{38000.0}), "38000");
  EXPECT_EQ(AsText(Value{1e14}), "100000000000000");
  EXPECT_EQ(AsText(Value{-0.0}), "0");
  EXPECT_EQ(AsText(Value{38000.5}), "38000.5");
  EXPECT_EQ(AsText(Value{0.1}), "0.1");
}

TEST(StoredValue, RealsBecomeTheNearestEvenInteger) {
  EXPECT_EQ(AsInt(Value{2.5}), 2);
  EXPECT_EQ(AsInt(Value{3.5}), 4);
  EXPECT_EQ(AsInt(Value{-2.5}), -2);
  EXPECT_EQ(AsInt(Value{2.51}), 3);
}

TEST(StoredValue, RealsBeyondTheIntegersGiveTheLastOne) {
  EXPECT_EQ(AsInt(Value{1e300}), std::numeric_limits<int64_t>::max());
  EXPECT_EQ(AsInt(Value{-1e300}), std::numeric_limits<int64_t>::min());
}

TEST(StoredValue, TextReadsAsANumberOnlyWhenAllOfItIsOne) {
  EXPECT_EQ(AsInt(Value{std::string(" 42 ")}), 42);
  EXPECT_EQ(AsInt(Value{std::string("+7")}), 7);
  EXPECT_EQ(AsInt(Value{std::string("12 min")}), 0);
  EXPECT_EQ(AsInt(Value{std::string("inf")}), 0);
  EXPECT_EQ(AsReal(Value{std::string("1.25")}), 1.25);
  EXPECT_FALSE(ReadsAsNumber(Value{std::string("")}));
  EXPECT_FALSE(ReadsAsNumber(Value{std::string("nan")}));
  EXPECT_TRUE(ReadsAsNumber(Value{std::string("-3e2")}));
}

TEST(StoredValue, AnyNumberButZeroIsTrue) {
  EXPECT_TRUE(AsBool(Value{int64_t{-1}}));
  EXPECT_TRUE(AsBool(Value{int64_t{1}}));
  EXPECT_TRUE(AsBool(Value{0.4}));
  EXPECT_FALSE(AsBool(Value{int64_t{0}}));
  EXPECT_FALSE(AsBool(Value{std::string("0")}));
}

TEST(SqlText, ApostrophesAreDoubled) {
  EXPECT_EQ(SqlQuoted("L'été d'hier"), "L''été d''hier");
  EXPECT_EQ(SqlQuoted("\"x\""), "\"x\"");
}

TEST(SqlText, NumbersHaveAPointAndComeBackTheSame) {
  EXPECT_EQ(SqlNumber(38000), "38000");
  EXPECT_EQ(SqlNumber(38353.5), "38353.5");
  const double moment = 38353.0 + 1.0 / 3.0;
  EXPECT_EQ(std::stod(SqlNumber(moment)), moment);
  EXPECT_EQ(SqlNumber(std::numeric_limits<double>::quiet_NaN()), "NULL");
}

}  // namespace
}  // namespace zemo
