// `zemoradio why` from outside: its answers, its exit statuses, and that it touches nothing.
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "BlackBox.h"

namespace zemo {
namespace {

using Json = nlohmann::json;

class Why : public BlackBox {
 protected:
  static std::string Asking(const std::string& more) {
    return "why --station station --machine machine " + more;
  }
  void Sql(const std::string& statement) const {
    Put("order", "+0 sql " + statement + "\n");
    const Result done =
        Run("simulate --station station --in-place --no-start --for 0 --script order --trace made");
    ASSERT_EQ(done.status, 0) << done.err;
  }
  void ExpectError(const Result& result, const std::string& text) const {
    EXPECT_EQ(result.out, "");
    EXPECT_EQ(result.err, "zemoradio: " + text + "\n");
  }
};

TEST_F(Why, WrongUsageIsStatusTwo) {
  for (const char* arguments : {"", "--code 1 --report 2", "--report 2 --at '2026-11-21 10:00:00'",
                                "--code one", "--code 1 --at noon", "--code 99999999999"}) {
    const Result result = Run(Asking(arguments));
    EXPECT_EQ(result.status, 2) << arguments;
    EXPECT_EQ(LinesOf(result.err).size(), 1U) << arguments;
  }
}

TEST_F(Why, AMachineFolderThatIsNotThereYetIsToldAndCostsNothing) {
  MakeStation({60});
  const std::string told =
      "zemoradio: there is no machine folder other yet: going on air makes it\n";
  const Result answer = Run("why --station station --machine other --code 1");
  EXPECT_EQ(answer.status, 0);
  EXPECT_EQ(answer.err, told);
  const Result check = Run("check --station station --machine other");
  EXPECT_EQ(check.err, told);
  EXPECT_EQ(check.out, Run("check --station station --machine machine").out);
}

TEST_F(Why, WhatIsNotThereIsStatusOne) {
  Result result = Run("why --station nowhere --machine machine --code 1");
  EXPECT_EQ(result.status, 1);
  ExpectError(result, "there is no station folder nowhere");
  result = Run(Asking("--code 1"));
  EXPECT_EQ(result.status, 1);
  ExpectError(result,
              "there is no base in station: neither a Triskin.MDB nor a Base.Ini that names one on "
              "a server");
  MakeStation({10}, true);
  result = Run(Asking("--code 7"));
  EXPECT_EQ(result.status, 1);
  ExpectError(result, "there is no music card 7");
  result = Run(Asking("--report 7"));
  EXPECT_EQ(result.status, 1);
  ExpectError(result, "the report has no row 7");
}

TEST_F(Why, ATitleThatMayPlaySaysSo) {
  MakeStation({10}, true);
  const Result result = Run(Asking("--code 1 --at '2026-11-21 10:00:00'"));
  EXPECT_EQ(result.status, 0) << result.err;
  EXPECT_EQ(result.out,
            "may play\n  card 1: Artist 1 - Title 1 (GOLD, NATIONAL), 2026-11-21 10:00:00\n");
}

TEST_F(Why, EveryReasonIsALineWithItsMomentAndTheLastLineIsForAllOfThem) {
  MakeStation({10}, true);
  Sql("UPDATE Discotheque SET ECARTMINUTES = 90, DIFFUSION01 = '21/11/2026 à 09:00', TRANCHE06 = "
      "'000000000001111111111111'");
  std::filesystem::remove(root_ / "station/title1.wav");
  const Result result = Run(Asking("--code 1 --at '2026-11-21 10:00:00'"));
  EXPECT_EQ(result.status, 0) << result.err;
  EXPECT_EQ(result.out,
            "may not play\n  card 1: Artist 1 - Title 1 (GOLD, NATIONAL), 2026-11-21 10:00:00\n"
            "  minutes: too few minutes since last play 90 > 60; from 2026-11-21 10:30:00\n"
            "  hours: not allowed at 10h on a Saturday (TRANCHE06); from 2026-11-21 11:00:00\n"
            "  file: no sound file " +
                Path("station/title1.wav") +
                "; when the file is there\n"
                "it may play: from 2026-11-21 11:00:00, and when the file is there\n");
}

TEST_F(Why, AsJsonTheAnswerIsOneObject) {
  MakeStation({10}, true);
  Sql("UPDATE Discotheque SET NBPASSJOUR = 0");
  const Result result = Run(Asking("--json --code 1 --at '2026-11-21 10:00:00'"));
  ASSERT_EQ(LinesOf(result.out).size(), 1U) << result.err;
  EXPECT_EQ(Json::parse(result.out), (Json{{"code", 1},
                                           {"at", "2026-11-21T10:00:00"},
                                           {"may_play", false},
                                           {"from", nullptr},
                                           {"artist", "Artist 1"},
                                           {"title", "Title 1"},
                                           {"genre", "GOLD"},
                                           {"variety", "NATIONAL"},
                                           {"file", Path("station/title1.wav")},
                                           {"reasons", Json::array({{{"test", "rotation"},
                                                                     {"words", "Rotation = 0"},
                                                                     {"from", nullptr},
                                                                     {"after", ""},
                                                                     {"never", true}}})}}));
}

TEST_F(Why, AskingLeavesTheStationAndTheMachineAsTheyWere) {
  MakeStation({10}, true);
  const auto station = Files("station"), machine = Files("machine");
  EXPECT_EQ(Run(Asking("--code 1")).status, 0);
  EXPECT_EQ(Files("station"), station);
  EXPECT_EQ(Files("machine"), machine);
  EXPECT_TRUE(Files("tmp").empty());
}

// A minute of air: 20 s a title, and the first request gives all three.
TEST_F(Why, AnElementOfTheReportTellsTheRequestThatBroughtIt) {
  MakeStation({20, 20, 20}, true);
  Sql("UPDATE Variete SET POURCENT = 100");
  const Result aired = Run(
      "simulate --station station --machine machine --in-place --from '2026-11-21 10:00:00' --for "
      "1m --trace aired");
  ASSERT_EQ(aired.status, 0) << aired.err;
  std::map<int, std::string> titles;  // by CODE of the report
  for (const std::string& line : LinesOf(ReadText(root_ / "aired"))) {
    const Json event = Json::parse(line);
    if (event["event"] == "report") titles[event["CODE"]] = event["TITRE"];
  }
  ASSERT_GE(titles.size(), 2U);
  for (const auto& [code, title] : titles) {
    const Result result = Run(Asking("--json --report " + std::to_string(code)));
    ASSERT_EQ(result.status, 0) << result.err;
    const Json answer = Json::parse(result.out);
    EXPECT_EQ(answer["brought_by_request"], true) << result.out;
    EXPECT_EQ(answer["choice"]["title"], title);
    EXPECT_EQ(answer["choice"]["percent"], 100);
    EXPECT_EQ(answer["request"]["kind"], "percentage");
    EXPECT_EQ(answer["request"]["hour"], 10);
    EXPECT_EQ(answer["request"]["weekday"], 6);
  }
  const Result told = Run(Asking("--report " + std::to_string(titles.begin()->first)));
  EXPECT_EQ(LinesOf(told.out).at(0), "brought by a request");
  EXPECT_NE(told.out.find("request of Saturday 21 November 2026, 10:00:00, for"), std::string::npos)
      << told.out;
  EXPECT_NE(told.out.find("GOLD was to have 100 per cent of the "), std::string::npos) << told.out;
}

// A minute on a private copy, of which nothing stays but the trace and the choices.
TEST_F(Why, AnElementOfASimulationIsExplainedByItsChoices) {
  MakeStation({20, 20, 20}, true);
  Sql("UPDATE Variete SET POURCENT = 100");
  const std::string simulate = "simulate --station station --from '2026-11-21 10:00:00' --for 1m ";
  ASSERT_EQ(Run(simulate + "--trace plain").status, 0);
  const auto station = Files("station");
  const Result aired = Run(simulate + "--trace aired --choices choices");
  ASSERT_EQ(aired.status, 0) << aired.err;
  EXPECT_EQ(ReadText(root_ / "aired"), ReadText(root_ / "plain")) << "the trace stays as it is";
  EXPECT_EQ(Files("station"), station);
  int rows = 0;
  for (const std::string& line : LinesOf(ReadText(root_ / "aired"))) {
    const Json event = Json::parse(line);
    if (event["event"] != "report" || event["GENRE"] != "GOLD") continue;
    ++rows;
    const Result result =
        Run("why --json --choices choices --report " + std::to_string(event["CODE"].get<int>()));
    ASSERT_EQ(result.status, 0) << result.err;
    const Json answer = Json::parse(result.out);
    EXPECT_EQ(answer["title"], event["TITRE"]);
    EXPECT_EQ(answer["date"], event["LADATE"]);
    EXPECT_EQ(answer["time"], event["HEURE"]);
    EXPECT_EQ(answer["brought_by_request"], true) << result.out;
    EXPECT_EQ(answer["choice"]["title"], event["TITRE"]);
    EXPECT_EQ(answer["request"]["kind"], "percentage");
    EXPECT_EQ(answer["request"]["candidates"], 3);
    EXPECT_EQ(answer["choice"]["percent"], 100);
  }
  EXPECT_GE(rows, 2);
  const Result told = Run("why --choices choices --report 1");
  EXPECT_EQ(LinesOf(told.out).at(0), "brought by a request");
  const Result unknown = Run("why --choices choices --report 99");
  EXPECT_EQ(unknown.status, 1);
  ExpectError(unknown, "the report has no row 99");
}

TEST_F(Why, OfASimulationWithoutAnOrderNothingIsTakenForARequests) {
  MakeStation({20}, false);
  Put("orders", "+0 insert music 1\n+0 start\n");
  const Result aired =
      Run("simulate --station station --no-start --from '2026-11-21 10:00:00' --for 10s --script "
          "orders "
          "--trace aired --choices choices");
  ASSERT_EQ(aired.status, 0) << aired.err;
  EXPECT_EQ(LinesOf(Run("why --choices choices --report 1").out).at(0), "no request known");
}

TEST_F(Why, ChoicesThatAreNotThereOrCannotBeWrittenAreStatusOne) {
  MakeStation({10}, true);
  Result result = Run("why --choices nothing --report 1");
  EXPECT_EQ(result.status, 1);
  ExpectError(result, "there is no file nothing");
  result = Run("simulate --station station --for 1 --trace t --choices none/choices");
  EXPECT_EQ(result.status, 1);
  ExpectError(result, "cannot write the choices to none/choices");
}

TEST_F(Why, ALossOfPowerLeavesTheChoicesUpToIt) {
  MakeStation({20, 20}, true);
  Put("orders", "+5 kill\n");
  const Result aired = Run(
      "simulate --station station --from '2026-11-21 10:00:00' --for 1m --script orders --trace t "
      "--choices choices");
  EXPECT_EQ(aired.status, 137);
  EXPECT_EQ(LinesOf(Run("why --choices choices --report 1").out).at(0), "brought by a request");
}

TEST_F(Why, AnElementThatNoRequestBroughtSaysSo) {
  MakeStation({20}, false);
  Put("orders", "+0 insert music 1\n+0 start\n");
  const Result aired =
      Run("simulate --station station --machine machine --in-place --no-start --from '2026-11-21 "
          "10:00:00' --for 10s --script orders --trace aired");
  ASSERT_EQ(aired.status, 0) << aired.err;
  const Result result = Run(Asking("--report 1"));
  EXPECT_EQ(result.status, 0) << result.err;
  EXPECT_EQ(LinesOf(result.out).at(0), "no request known");
}

// What is chosen twice: a row that came after the title's own is not the request's.
TEST_F(Why, AChoiceIsThatOfTheTitlesFirstRowAfterIt) {
  MakeStation({20}, true);
  Put("machine/Choices.Txt",
      "{\"at\":\"2026-11-21T10:00:00\",\"kind\":\"percentage\",\"hour\":10,\"weekday\":6,"
      "\"minutes\":30,"
      "\"candidates\":1,\"offered\":1,\"refused\":0,\"refusals\":[],\"titles\":[{\"code\":1,"
      "\"artist\":"
      "\"Artist 1\",\"title\":\"Title 1\",\"genre\":\"GOLD\",\"variety\":\"NATIONAL\",\"place\":1,"
      "\"percent\":100,\"share_before\":0,\"share_after\":2,\"budget_s\":900}]}\r\n{\"half");
  // 46347 is 21 November 2026; 10:00:05 and 11:00.
  for (const char* moment : {"46346.9", "46347.41672454", "46347.45833333"})
    Sql(std::string(
            "INSERT INTO Rapport (AUTEUR, TITRE, GENRE, DATENUM) VALUES ('Artist 1', 'Title "
            "1', 'GOLD', ") +
        moment + ")");
  std::string told;
  for (int code = 1; code <= 3; ++code)
    told += LinesOf(Run(Asking("--report " + std::to_string(code))).out).at(0) + "\n";
  EXPECT_EQ(told, "no request known\nbrought by a request\nno request known\n");
}

TEST_F(Why, ChoicesOfMoreThanFourMegabytesAreNotRead) {
  MakeStation({10}, true);
  Put("machine/Choices.Txt", "");
  std::filesystem::resize_file(root_ / "machine/Choices.Txt", (4 << 20) + 1);
  const Result result = Run(Asking("--report 1"));
  EXPECT_EQ(result.status, 1);
  ExpectError(result, "Choices.Txt is larger than 4 MB: it is not read");
}

// A week of a busy station's choices is longer than what one on air keeps.
TEST_F(Why, ChoicesOfASimulationAreReadUpToSixtyFourMegabytes) {
  std::string choices = "{\"report\":2,\"title\":\"" + std::string(5 << 20, 'x') + "\"}\n";
  choices +=
      "{\"report\":1,\"artist\":\"A\",\"title\":\"T\",\"genre\":\"G\",\"date\":\"21/11/2026\","
      "\"time\":\"10:00:00\",\"moment\":46347.5}\n";
  Put("choices", choices);
  const Result told = Run("why --choices choices --report 1");
  EXPECT_EQ(told.status, 0) << told.err;
  EXPECT_EQ(LinesOf(told.out).at(0), "no request known");
  std::filesystem::resize_file(root_ / "choices", (64 << 20) + 1);
  const Result refused = Run("why --choices choices --report 1");
  EXPECT_EQ(refused.status, 1);
  ExpectError(refused, "choices is larger than 64 MB: it is not read");
}

}  // namespace
}  // namespace zemo
