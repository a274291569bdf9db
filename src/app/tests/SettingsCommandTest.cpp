// `zemoradio settings` from outside.
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "BlackBox.h"

namespace zemo {
namespace {

using Json = nlohmann::json;

class Settings : public BlackBox {
 protected:
  Result Settle(const std::string& more) const {
    return Run("settings --station station --machine machine " + more);
  }
  Json Listed() const { return Json::parse(Settle("list --json").out); }
};

TEST_F(Settings, AreSetAndReadBackAndSeenByTheEngine) {
  MakeStation({10});
  EXPECT_EQ(Settle("get PmixDef").out, "1600\n");
  const Result set = Settle("set EnchDef 1800");
  EXPECT_EQ(set.status, 0) << set.err;
  EXPECT_EQ(set.out + set.err, "");
  EXPECT_EQ(Settle("get enchdef").out, "1800\n");
  Put("order", "+0 insert music 1\n");
  Run("simulate --station station --from '2026-11-21 12:00:00' --for 5 --script order --trace air");
  EXPECT_NE(ReadText(root_ / "air").find("\"mix_ms\":1800"), std::string::npos);
}

TEST_F(Settings, ListTellsMeaningUnitRangeAndDefault) {
  MakeStation({});
  const Result list = Settle("list");
  EXPECT_EQ(list.status, 0) << list.err;
  EXPECT_NE(list.out.find("HsFadeOut = 1600 ms\n    length of a fade-out\n"
                          "    FadeOut; 0 to 32767, default 1600\n"),
            std::string::npos);
  EXPECT_EQ(Settle("").out, list.out);
  const Json json = Listed();
  ASSERT_EQ(json.size(), 79U);
  EXPECT_EQ(json[0]["name"], "EnchDef");
  EXPECT_EQ(json[0]["store"], "PmixDef");
  EXPECT_EQ(json[0]["value"], "1600");
  EXPECT_EQ(json[0]["unit"], "ms");
  EXPECT_EQ(json[0]["lowest"], 0);
  EXPECT_EQ(json[0]["highest"], 32767);
  EXPECT_EQ(json[0]["default"], "1600");
  EXPECT_EQ(Json::parse(Settle("get --json FadeOut").out)["name"], "HsFadeOut");
}

TEST_F(Settings, ATextMayBeEmptyOrBeginWithADash) {
  MakeStation({});
  EXPECT_EQ(Settle("set TexteV 'on air'").status, 0);
  EXPECT_EQ(Settle("get TexteV").out, "on air\n");
  EXPECT_EQ(Settle("set TexteV ''").status, 0);
  EXPECT_EQ(Settle("get TexteV").out, "\n");
  EXPECT_EQ(Settle("set -- TexteV -x").status, 0);
  EXPECT_EQ(Settle("get TexteV").out, "-x\n");
  EXPECT_EQ(Settle("set PlayCombo -1").status, 0);
}

TEST_F(Settings, WhatCannotBeTakenIsStatusTwoAndOneLine) {
  MakeStation({});
  const auto before = Files("station");
  for (const char* arguments :
       {"set EnchDef 99999", "set EnchDef soon", "set Nothing 1", "get Nothing", "set JingleCode 1",
        "set EnchDef", "get", "turn EnchDef", "set Topage.0 noon", "get PmixDef 1"}) {
    const Result result = Settle(arguments);
    EXPECT_EQ(result.status, 2) << arguments;
    EXPECT_EQ(result.out, "") << arguments;
    ExpectOneError(result.err);
  }
  EXPECT_EQ(Settle("set EnchDef 99999").err,
            "zemoradio: EnchDef: \"99999\" is outside 0 to 32767 ms\n");
  EXPECT_EQ(Files("station"), before);
}

TEST_F(Settings, WhatIsNotThereOrCannotBeReadIsStatusOne) {
  Result result = Settle("list");
  EXPECT_EQ(result.status, 1);
  EXPECT_EQ(result.err,
            "zemoradio: there is no base in station: neither a Triskin.MDB nor a Base.Ini that "
            "names one on a server\n");
  result = Run("settings --station nowhere --machine machine list");
  EXPECT_EQ(result.status, 1);
  EXPECT_EQ(result.err, "zemoradio: there is no station folder nowhere\n");
  MakeStation({});
  std::filesystem::create_directory(root_ / "station/Topage.3");
  result = Settle("set Topage.3 08:00");
  EXPECT_EQ(result.status, 1);
  ExpectOneError(result.err);
  EXPECT_TRUE(std::filesystem::is_directory(root_ / "station/Topage.3"));
}

TEST_F(Settings, ReadingLeavesTheStationAsItWas) {
  MakeStation({});
  const auto station = Files("station"), machine = Files("machine");
  EXPECT_EQ(Settle("list").status, 0);
  EXPECT_EQ(Settle("get Topage.0").status, 0);
  EXPECT_EQ(Files("station"), station);
  EXPECT_EQ(Files("machine"), machine);
}

TEST_F(Settings, MayBeAskedWithTheFoldersBehind) {
  MakeStation({});
  EXPECT_EQ(Run("settings get PmixDef --station station --machine machine").out, "1600\n");
}

}  // namespace
}  // namespace zemo
