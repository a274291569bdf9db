#include <gtest/gtest.h>

#include "app/ForecastTrace.h"

namespace zemo {
namespace {

constexpr const char* kAt = R"({"at":"2026-11-21T12:)";

class Forecasted : public testing::Test {
 protected:
  void Take(const std::string& time, const std::string& members) {
    trace.Take(kAt + time + "\"," + members + "}");
  }
  const ForecastLine& Line(size_t index) { return trace.Lines().at(index); }
  ForecastTrace trace;
};

TEST_F(Forecasted, AStartIsAnElementWithItsLength) {
  Take("00:00.100",
       R"("event":"start","code":7,"title":"ABBA  WATERLOO","length_ms":185000,"slot":0)");
  ASSERT_EQ(trace.Lines().size(), 1u);
  EXPECT_EQ(Line(0).at, "12:00:00");
  EXPECT_EQ(Line(0).kind, ForecastKind::kElement);
  EXPECT_EQ(Line(0).code, 7);
  EXPECT_EQ(Line(0).text, "ABBA  WATERLOO");
  EXPECT_EQ(Line(0).lengthMs, 185000);
}

TEST_F(Forecasted, BreaksPipsListsAndFaultsAreTold) {
  Take("30:00.000", R"("event":"break","moment":"12:30","type":"Rubriques","rows":2)");
  Take("59:58.000", R"("event":"overlay","reason":"pip","file":"/pip.wav")");
  Take("59:58.500", R"("event":"overlay","reason":"jingle","file":"/j.wav")");
  Take("59:59.000", R"("event":"list","title":"EVENING","code":3)");
  Take("59:59.100", R"("event":"skip","file":"/lost.wav","reason":"missing")");
  Take("59:59.200", R"("event":"error","where":"PlayWave","number":5,"text":"bad")");
  ASSERT_EQ(trace.Lines().size(), 5u);
  EXPECT_EQ(Line(0).kind, ForecastKind::kBreak);
  EXPECT_EQ(Line(0).code, -4);
  EXPECT_EQ(Line(1).kind, ForecastKind::kPip);
  EXPECT_EQ(Line(2).kind, ForecastKind::kList);
  EXPECT_EQ(Line(3).reason, "missing");
  EXPECT_EQ(Line(4).text, "PlayWave: bad");
}

TEST_F(Forecasted, AGapIsASilenceOfASecondOrMore) {
  Take("10:00.000", R"("event":"silence","state":"begin")");
  Take("10:00.900", R"("event":"silence","state":"end")");
  EXPECT_TRUE(trace.Lines().empty());
  Take("20:00.000", R"("event":"silence","state":"begin")");
  Take("21:30.000", R"("event":"silence","state":"end")");
  ASSERT_EQ(trace.Lines().size(), 1u);
  EXPECT_EQ(Line(0).kind, ForecastKind::kGap);
  EXPECT_EQ(Line(0).at, "12:20:00");
  EXPECT_EQ(Line(0).lengthMs, 90000);
}

TEST_F(Forecasted, ASilenceToTheEndIsTold) {
  Take("50:00.000", R"("event":"silence","state":"begin")");
  trace.End();
  ASSERT_EQ(trace.Lines().size(), 1u);
  EXPECT_EQ(Line(0).at, "12:50:00");
  EXPECT_EQ(Line(0).lengthMs, 0);
}

TEST_F(Forecasted, WhatIsNoTraceLineIsPassedOver) {
  trace.Take("zemoradio: oh");
  trace.Take("[1]");
  trace.Take("");
  EXPECT_TRUE(trace.Lines().empty());
}

}  // namespace
}  // namespace zemo
