// What the control socket's clients get of a station, on the virtual clock: the line is the test's.
// Standard settings: 2 s of buffers, PmixDef 1600; the first element begins with the first tick.
#include <gtest/gtest.h>

#include <array>
#include <deque>
#include <nlohmann/json.hpp>

#include "app/ControlServer.h"
#include "platform/BaseLink.h"
#include "support/TestStation.h"

namespace zemo::test {
namespace {

using nlohmann::json;

constexpr int64_t kSettledMs = 4000;  // the first drain of a stopped output is over by then

// What the server said, and to whom.
struct Told {
  std::deque<ControlRequest> requests;
  std::vector<std::pair<ControlClient, std::string>> answers;
  std::array<std::vector<std::string>, kControlChannels> published;
  std::array<bool, kControlChannels> listened{};
};

class LineOfTest : public ControlLine {
 public:
  explicit LineOfTest(Told& told) : told_(told) {}
  bool Take(ControlRequest& request) override {
    if (told_.requests.empty()) return false;
    request = told_.requests.front();
    told_.requests.pop_front();
    return true;
  }
  void Answer(ControlClient client, std::string_view line) override {
    told_.answers.emplace_back(client, line);
  }
  void Listen(ControlClient, ControlChannel channel) override {
    told_.listened[static_cast<size_t>(channel)] = true;
  }
  void Publish(ControlChannel channel, std::string_view line) override {
    told_.published[static_cast<size_t>(channel)].emplace_back(line);
  }
  bool IsListenedTo(ControlChannel channel) const override {
    return told_.listened[static_cast<size_t>(channel)];
  }
  ControlFigures Figures() const override {
    return {.clients = 3, .accepted = 9, .cuts = {0, 1, 2}};
  }

 private:
  Told& told_;
};

// A server that does not answer, with writes that it has still to take.
class SilentServer : public BaseLink {
 public:
  BaseLinkState State() const override { return {.reachable = false, .waiting = 12}; }
  void GoesOnAir() override {}
};

class ControlOfStation : public testing::Test {
 protected:
  void SetUp() override {
    on.Load();
    space.station = "/stations/one";
    space.stationBytes = 5000000000;
    server.SetLine(std::make_unique<LineOfTest>(told));
    on.listener = [this](const Event& event) { server.OnEvent(event); };
  }
  void TearDown() override { on.listener = nullptr; }

  // Of a client's line, given at that moment.
  void Say(int64_t atMs, ControlClient client, const std::string& line) {
    on.At(atMs, [this, client, line] {
      const auto understood = words.Understand(line);
      ASSERT_EQ(understood.answer, "");
      Arrive({client, understood.forLogic});
    });
  }
  void Go(int64_t atMs, ControlClient client) {
    on.At(atMs, [this, client] { Arrive({client, ""}); });
  }
  std::string AnswerAt(size_t at) const {
    return at < told.answers.size() ? told.answers[at].second : "(none)";
  }
  const std::vector<std::string>& Published(ControlChannel channel) const {
    return told.published[static_cast<size_t>(channel)];
  }
  // A title of a minute on air, and another behind it.
  void PlayTwo() {
    for (const char* title : {"ONE", "TWO"}) {
      on.AppendCard(on.AddCard({.lengthMs = 60000, .artist = "ARTIST", .title = title}));
    }
    on.Start();
  }

  TestStation on;
  FreeSpace space;
  JsonWords words{space};
  Told told;
  int outputAsked = 0;
  SoundHealth health{.output = "file air.wav", .heard = true, .device = false, .peakLeft = 0.5F};
  ControlServer server{on.station,
                       {.output = [this] { return ++outputAsked, health; }, .space = space}};

 private:
  void Arrive(const ControlRequest& request) {
    told.requests.push_back(request);
    server.Arrival()();
  }
};

TEST_F(ControlOfStation, CarriesOutAnOrderAtOnceWhereTheMomentIsFree) {
  PlayTwo();
  Say(5000, 4, R"({"id":"a","do":"order","order":"mode","args":["live"]})");
  on.RunUntil(5010);
  ASSERT_EQ(told.answers.size(), 1u);
  EXPECT_EQ(told.answers[0].first, 4u);
  EXPECT_EQ(AnswerAt(0), R"({"id":"a","ok":true})");
  EXPECT_FALSE(on.station.engine.IsAutomatic);
}

TEST_F(ControlOfStation, TellsWhyAnOrderCouldNotBeCarriedOut) {
  Say(kSettledMs, 1, R"({"id":7,"do":"order","order":"load","args":[3]})");
  on.RunUntil(kSettledMs + 10);
  EXPECT_EQ(AnswerAt(0), R"({"id":7,"error":"there is no stored list 3"})");
}

// The first title began at 100 ms; its exit point comes at 58500, and the overlap ends with its
// file at 60100. An order is not carried out from half a second before the one up to the other.
TEST_F(ControlOfStation, AnOrderWaitsWhileAnElementBegins) {
  PlayTwo();
  Say(58200, 1, R"({"id":1,"do":"order","order":"mode","args":["live"]})");
  on.RunUntil(60050);
  EXPECT_TRUE(told.answers.empty());
  EXPECT_TRUE(on.station.engine.IsAutomatic);
  EXPECT_EQ(on.Starts().size(), 2u);
  on.RunUntil(60150);
  EXPECT_EQ(AnswerAt(0), R"({"id":1,"ok":true})");
  EXPECT_FALSE(on.station.engine.IsAutomatic);
}

TEST_F(ControlOfStation, OrdersOfOneMomentAreCarriedOutOneAfterTheOtherInTheirOrder) {
  on.At(kSettledMs, [this] {
    for (const char* line :
         {R"({"id":1,"do":"order","order":"mode","args":["live"]})",
          R"({"id":2,"do":"order","order":"mode","args":["auto"]})",
          R"({"id":3,"do":"order","order":"check","args":["CheckNoJingle","on"]})"})
      told.requests.push_back({1, words.Understand(line).forLogic});
    server.Arrival()();
  });
  on.RunUntil(kSettledMs + 10);
  EXPECT_EQ(told.answers.size(), 1u);
  on.RunUntil(kSettledMs + 100);
  ASSERT_EQ(told.answers.size(), 3u);
  for (int at = 0; at < 3; ++at)
    EXPECT_EQ(json::parse(AnswerAt(static_cast<size_t>(at)))["id"], at + 1);
  EXPECT_TRUE(on.station.engine.IsAutomatic);
  EXPECT_TRUE(on.station.engine.CheckNoJingle);
}

// Twenty clients ask at one moment: four are answered then, and four every 20 ms, so that a tick
// comes between.
TEST_F(ControlOfStation, RequestsOfOneMomentAreServedFewAtATime) {
  on.At(kSettledMs, [&] {
    for (ControlClient client = 1; client <= 20; ++client)
      told.requests.push_back({client, words.Understand(R"({"do":"metrics"})").forLogic});
    server.Arrival()();
  });
  on.RunUntil(kSettledMs + 10);
  EXPECT_EQ(told.answers.size(), 4u);
  on.RunUntil(kSettledMs + 50);
  EXPECT_EQ(told.answers.size(), 12u);
  on.RunUntil(kSettledMs + 90);
  ASSERT_EQ(told.answers.size(), 20u);
  for (ControlClient client = 1; client <= 20; ++client)
    EXPECT_EQ(told.answers[client - 1].first, client);
  Say(kSettledMs + 200, 21, R"({"do":"metrics"})");
  on.RunUntil(kSettledMs + 210);
  EXPECT_EQ(told.answers.size(), 21u);
}

// The picture of a long list takes milliseconds.
TEST_F(ControlOfStation, WhoAskForTheStatusAtOneMomentGetOnePicture) {
  outputAsked = 0;
  on.At(kSettledMs, [&] {
    for (ControlClient client = 1; client <= 3; ++client)
      told.requests.push_back({client, words.Understand(R"({"do":"status"})").forLogic});
    server.Arrival()();
  });
  on.RunUntil(kSettledMs + 10);
  ASSERT_EQ(told.answers.size(), 3u);
  EXPECT_EQ(told.answers[2].second, told.answers[0].second);
  EXPECT_EQ(outputAsked, 1);
  Say(kSettledMs + 20, 1, R"({"do":"status"})");
  on.RunUntil(kSettledMs + 30);
  EXPECT_EQ(outputAsked, 2);
}

TEST_F(ControlOfStation, AnOrderThatFindsNoMomentIsRefusedAndNeverCarriedOut) {
  std::optional<MainTimerHold> hold;
  on.At(1000, [&] { hold.emplace(on.station); });
  Say(2000, 1, R"({"id":1,"do":"order","order":"mode","args":["live"]})");
  on.At(13000, [&] { hold.reset(); });
  on.RunUntil(11900);
  EXPECT_TRUE(told.answers.empty());
  on.RunUntil(12100);
  EXPECT_EQ(
      AnswerAt(0),
      R"({"id":1,"error":"the air had no free moment for it within 10 s; it was not carried out"})");
  on.RunUntil(20000);
  EXPECT_TRUE(on.station.engine.IsAutomatic);
  EXPECT_EQ(told.answers.size(), 1u);
}

TEST_F(ControlOfStation, AnOrderOfOneWhoHasGoneIsForgotten) {
  std::optional<MainTimerHold> hold;
  on.At(1000, [&] { hold.emplace(on.station); });
  Say(2000, 1, R"({"do":"order","order":"mode","args":["live"]})");
  Say(2000, 2, R"({"do":"order","order":"check","args":["CheckNoJingle","on"]})");
  Go(3000, 1);
  on.At(4000, [&] { hold.reset(); });
  on.RunUntil(5000);
  EXPECT_TRUE(on.station.engine.IsAutomatic);
  EXPECT_TRUE(on.station.engine.CheckNoJingle);
  ASSERT_EQ(told.answers.size(), 1u);
  EXPECT_EQ(told.answers[0].first, 2u);
}

TEST_F(ControlOfStation, TheEventsAreTheLinesOfATrace) {
  Say(1000, 1, R"({"id":1,"do":"watch"})");
  Say(4500, 2, R"({"id":2,"do":"order","order":"mode","args":["live"]})");
  on.RunUntil(5000);
  EXPECT_EQ(AnswerAt(0), R"({"id":1,"ok":true})");
  const auto& events = Published(ControlChannel::kEvents);
  const std::string line =
      R"({"at":"2026-11-21T12:00:04.500","event":"engine","running":false,"automatic":false})";
  EXPECT_EQ(std::count(events.begin(), events.end(), line), 1);
  EXPECT_TRUE(Published(ControlChannel::kStatus).empty());
}

// At 12:00:10.000 nine seconds and 900 ms of the first title are read; it is heard to its end 2 s
// of buffers behind that, and the second one is planned where its exit point is heard.
TEST_F(ControlOfStation, TheStatusIsWhatTheMainScreenShows) {
  PlayTwo();
  Say(10050, 1, R"({"id":"s","do":"status"})");
  on.RunUntil(10060);
  const json answer = json::parse(AnswerAt(0));
  EXPECT_EQ(answer["id"], "s");
  const json& status = answer["status"];
  EXPECT_EQ(status["at"], "2026-11-21T12:00:10.050");
  EXPECT_EQ(status["station"], "/stations/one");
  EXPECT_EQ(status["on_air"], true);
  EXPECT_EQ(status["mode"], "auto");
  EXPECT_EQ(status["lamp"], "unheard");  // a file takes the air
  EXPECT_EQ(status["output"], "file air.wav");
  EXPECT_EQ(status["levels"]["left_db"], -6.0);
  EXPECT_EQ(status["levels"]["right_db"], -100.0);
  const json& element = status["element"];
  EXPECT_EQ(element["code"], 1);
  EXPECT_EQ(element["title"], "ARTIST  ONE");
  EXPECT_EQ(element["position_ms"], 9900);
  EXPECT_EQ(element["length_ms"], 60000);
  EXPECT_EQ(element["remaining_ms"], 60000 - 9900 + 2000);
  EXPECT_EQ(element["exit_ms"], 1600);
  EXPECT_EQ(status["next"]["code"], 2);
  EXPECT_EQ(status["next"]["due"], "12:01:00");
  EXPECT_EQ(status["list_rows"], 1);
  ASSERT_EQ(status["list"].size(), 1u);
  EXPECT_EQ(status["list"][0]["title"], "ARTIST  TWO");
  EXPECT_EQ(status["list"][0]["due"], "12:01:00");
  EXPECT_EQ(status["health"][3],
            (json{{"name", "disk"}, {"text", "5,0 Go"}, {"severity", "good"}, {"age_s", 0}}));
  EXPECT_EQ(status["lights"]["contacts"], json({false, false, false, false}));
}

TEST_F(ControlOfStation, WhereNothingPlaysTheStatusHasNoElement) {
  Say(1000, 1, R"({"do":"status"})");
  on.RunUntil(1010);
  const json status = json::parse(AnswerAt(0))["status"];
  EXPECT_EQ(json::parse(AnswerAt(0))["id"], nullptr);
  EXPECT_EQ(status["lamp"], "stopped");
  EXPECT_EQ(status["element"], nullptr);
  EXPECT_EQ(status["next"], nullptr);
  EXPECT_EQ(status["break"], nullptr);
  EXPECT_EQ(status["list"], json::array());
}

// What plays moves with each tick; without it only what counts seconds does.
TEST_F(ControlOfStation, ThePictureIsPushedWhenItChangedAndTenTimesASecondAtMost) {
  PlayTwo();
  Say(1000, 1, R"({"id":1,"do":"watch","status":true})");
  on.RunUntil(6050);
  const auto& pictures = Published(ControlChannel::kStatus);
  EXPECT_EQ(AnswerAt(0), R"({"id":1,"ok":true})");
  EXPECT_GE(pictures.size(), 45u);
  EXPECT_LE(pictures.size(), 50u);
  EXPECT_EQ(json::parse(pictures.back())["status"]["element"]["code"], 1);
  EXPECT_TRUE(Published(ControlChannel::kEvents).empty());
}

TEST_F(ControlOfStation, AtRestThePictureIsPushedOnceASecond) {
  Say(1000, 1, R"({"id":1,"do":"watch","status":true})");
  on.RunUntil(11050);
  EXPECT_GE(Published(ControlChannel::kStatus).size(), 10u);
  EXPECT_LE(Published(ControlChannel::kStatus).size(), 21u);
  const size_t before = Published(ControlChannel::kStatus).size();
  told.listened = {};
  on.RunUntil(20000);
  EXPECT_EQ(Published(ControlChannel::kStatus).size(), before);
}

TEST_F(ControlOfStation, TheMetricsAreTheFiguresOfThatMoment) {
  PlayTwo();
  health.underruns = 4;
  health.losses = 2;
  SilentServer link;
  on.station.platform.baseLink = &link;
  health.lateFrames = 66150;  // a second and a half
  on.station.engine.lateStarts.Count(0.12);
  on.station.engine.lateStarts.Count(30);
  Say(10050, 1, R"({"id":1,"do":"metrics"})");
  on.RunUntil(10060);
  on.station.platform.baseLink = nullptr;
  const std::string text = "\n" + json::parse(AnswerAt(0))["metrics"].get<std::string>();
  for (const char* row : {"zemoradio_on_air 1",
                          "zemoradio_automatic 1",
                          "zemoradio_uptime_seconds 10.05",
                          "zemoradio_element_position_seconds 9.9",
                          "zemoradio_element_length_seconds 60",
                          "zemoradio_list_elements 1",
                          "zemoradio_output_heard 1",
                          "zemoradio_output_is_device 0",
                          "zemoradio_output_underruns_total 4",
                          "zemoradio_output_device_losses_total 2",
                          "zemoradio_output_late_seconds_total 1.5",
                          "zemoradio_base_open 1",
                          "zemoradio_base_unwritten_rows 0",
                          "zemoradio_base_server_reachable 0",
                          "zemoradio_base_server_waiting_writes 12",
                          "zemoradio_base_waits_total 0",
                          "zemoradio_disk_free_bytes{folder=\"station\"} 5e+09",
                          "zemoradio_disk_free_bytes{folder=\"machine\"} -1",
                          "zemoradio_control_clients 3",
                          "zemoradio_control_accepted_total 9",
                          "zemoradio_control_cut_offs_total{reason=\"number\"} 1",
                          "zemoradio_control_cut_offs_total{reason=\"slow\"} 2",
                          "zemoradio_start_lateness_seconds_bucket{le=\"0.1\"} 0",
                          "zemoradio_start_lateness_seconds_bucket{le=\"0.15\"} 1",
                          "zemoradio_start_lateness_seconds_bucket{le=\"20\"} 1",
                          "zemoradio_start_lateness_seconds_bucket{le=\"+Inf\"} 2",
                          "zemoradio_start_lateness_seconds_sum 30.12",
                          "zemoradio_start_lateness_seconds_count 2"})
    EXPECT_NE(text.find("\n" + std::string(row) + "\n"), std::string::npos) << row << text;
}

// Each name has its help and its kind ahead of it, once.
TEST_F(ControlOfStation, TheMetricsAreOfTheFormThatPrometheusReads) {
  Say(1000, 1, R"({"id":1,"do":"metrics"})");
  on.RunUntil(1010);
  std::istringstream lines(json::parse(AnswerAt(0))["metrics"].get<std::string>());
  std::set<std::string> heads;
  std::string line, helped, name, kind;
  while (std::getline(lines, line)) {
    std::istringstream of(line);
    std::string mark, what;
    of >> mark >> what;
    if (what == "HELP") {
      of >> helped;
      EXPECT_TRUE(heads.insert(helped).second) << line;
    } else if (what == "TYPE") {
      of >> name >> kind;
      EXPECT_EQ(name, helped);
      EXPECT_TRUE(kind == "gauge" || kind == "counter" || kind == "histogram") << line;
      EXPECT_EQ(kind == "counter", name.ends_with("_total")) << line;
    } else {
      EXPECT_TRUE(mark.starts_with(name)) << line;
      EXPECT_TRUE(name.starts_with("zemoradio_"));
    }
  }
  EXPECT_GE(heads.size(), 25u);
}

}  // namespace
}  // namespace zemo::test
