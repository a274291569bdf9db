// The requests of the control socket: read, refused and packed.
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "app/ControlWords.h"

namespace zemo {
namespace {

using Words = std::vector<std::string>;
using What = ControlAsk::What;

ControlWords::Understood Understood(const std::string& line) {
  FreeSpace space;
  return JsonWords(space).Understand(line);
}
ControlAsk Asked(const std::string& line) {
  const auto understood = Understood(line);
  EXPECT_EQ(understood.answer, "") << line;
  return UnpackedAsk(understood.forLogic);
}
// The answer that a line gets at once.
std::string Refusal(const std::string& line) {
  const auto understood = Understood(line);
  EXPECT_EQ(understood.forLogic, "") << line;
  return understood.answer;
}

TEST(ControlWords, AreReadWithTheirId) {
  EXPECT_EQ(Asked(R"({"do":"status"})").what, What::kStatus);
  EXPECT_EQ(Asked(R"({"do":"status"})").id, "null");
  EXPECT_EQ(Asked(R"({"id":12,"do":"metrics"})").what, What::kMetrics);
  EXPECT_EQ(Asked(R"({"id":12,"do":"metrics"})").id, "12");
  EXPECT_EQ(Asked(R"({"id":"a \"b\"","do":"watch"})").id, R"("a \"b\"")");
  EXPECT_EQ(Asked(R"({"do":"watch"})").what, What::kWatchEvents);
  EXPECT_EQ(Asked(R"({"do":"watch","status":false})").what, What::kWatchEvents);
  EXPECT_EQ(Asked(R"({"do":"watch","status":true})").what, What::kWatchStatus);
}

TEST(ControlWords, OfAnOrderAreItsNameAndItsArguments) {
  const ControlAsk ask =
      Asked(R"({"id":1,"do":"order","order":"save","args":["l'été \"a\"","","",0]})");
  EXPECT_EQ(ask.what, What::kOrder);
  EXPECT_EQ(ask.words, (Words{"save", "l'été \"a\"", "", "", "0"}));
  EXPECT_EQ(Asked(R"({"do":"order","order":"next"})").words, Words{"next"});
}

TEST(ControlWords, ThatMeanNothingAreAnsweredAtOnce) {
  const std::string noRequest =
      R"({"id":null,"error":"a request is a JSON object on a line of its own"})";
  for (const char* line : {"", "next", "[1]", "{", "\xff", "{\"do\":\"status\"} {}"})
    EXPECT_EQ(Refusal(line), noRequest) << line;
  EXPECT_EQ(Refusal(R"({"id":3})"), R"({"id":3,"error":"\"do\" is missing, or no text"})");
  EXPECT_EQ(Refusal(R"({"id":3,"do":"fly"})"),
            R"({"id":3,"error":"\"do\" is status, metrics, watch or order"})");
  EXPECT_EQ(Refusal(R"({"id":[],"do":"status"})"),
            R"({"id":null,"error":"\"id\" is a text or a number"})");
  EXPECT_EQ(Refusal(R"({"do":"status","id":")" + std::string(63, 'i') + "\"}"),
            R"({"id":null,"error":"\"id\" is longer than 64 characters"})");
}

TEST(ControlWords, OfAnOrderThatThereIsNotAreAnsweredAtOnce) {
  EXPECT_EQ(Refusal(R"({"do":"order","order":"nxet"})"),
            R"({"id":null,"error":"unknown order 'nxet'"})");
  EXPECT_EQ(Refusal(R"({"do":"order","order":"move","args":["1"]})"),
            R"({"id":null,"error":"cannot be read, expected: move ROW ROW"})");
  EXPECT_EQ(Refusal(R"({"do":"order","order":"move","args":"1 2"})"),
            R"({"id":null,"error":"\"args\" is no list"})");
  EXPECT_EQ(Refusal(R"({"do":"order","order":"move","args":[1,1.5]})"),
            R"({"id":null,"error":"\"args\" are texts and whole numbers"})");
  EXPECT_EQ(Refusal(R"({"do":"order","order":"local","args":["a\u0000","b"]})"),
            R"({"id":null,"error":"a zero character in \"args\""})");
  EXPECT_EQ(Refusal(R"({"do":"order","order":"sql","args":["DELETE FROM Cnf"]})"),
            R"({"id":null,"error":"only a simulation has the order sql"})");
  EXPECT_EQ(Refusal(R"({"do":"order","order":"kill"})"),
            R"({"id":null,"error":"only a simulation has the order kill"})");
  EXPECT_NE(Refusal(R"({"do":"order","order":"preview","args":["2026-12-24"]})").find("the clock"),
            std::string::npos);
}

// A whole line of open brackets, and the longest line that comes through.
TEST(ControlWords, MayBeAsDeepAndAsLongAsALineIs) {
  EXPECT_NE(Refusal(std::string(64 * 1024, '[')), "");
  const std::string open = R"({"do":"order","order":"local","args":["Name",")";
  const std::string line = open + std::string(64 * 1024 - open.size() - 3, 'v') + "\"]}";
  const auto understood = Understood(line);
  EXPECT_FALSE(understood.forLogic.empty());
  EXPECT_LE(understood.forLogic.size(), line.size() + ControlWords::kMostLonger);
}

TEST(ControlWords, BeginWithTheirVersion) {
  FreeSpace space;
  space.station = "/stations/l'été";
  const auto greeting = nlohmann::json::parse(JsonWords(space).Greeting());
  EXPECT_EQ(greeting["zemo"], 1);
  EXPECT_EQ(greeting["station"], "/stations/l'été");
  EXPECT_FALSE(greeting["version"].get<std::string>().empty());
}

TEST(ControlWords, FindTheRoomOnTheDisksOfTheFolders) {
  FreeSpace space;
  space.station = std::filesystem::temp_directory_path().string();
  space.machine = "/no/such/folder";
  JsonWords(space).EverySecond();
  EXPECT_GT(space.stationBytes, 0);
  EXPECT_EQ(space.machineBytes, -1);
}

}  // namespace
}  // namespace zemo
