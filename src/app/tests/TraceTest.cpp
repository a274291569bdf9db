// The trace's lines, as text.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <limits>
#include <sstream>
#include <stdexcept>

#include "app/Trace.h"
#include "platform/Clock.h"

namespace zemo {
namespace {

constexpr const char* kAt = "2026-11-21T10:00:00.000";
const std::string kHead = R"({"at":"2026-11-21T10:00:00.000","event":)";

std::string LineOf(EventValue value) {
  return TraceLine(Event{"e", {{"v", std::move(value)}}}, kAt).substr(kHead.size());
}

struct FixedClock : Clock {
  LocalDateTime LocalNow() const override {
    return {
        .year = 2026, .month = 1, .day = 2, .hour = 3, .minute = 4, .second = 5, .millisecond = 6};
  }
  int64_t MonotonicMs() const override { return 0; }
};

class TraceFile : public testing::Test {
 protected:
  void SetUp() override {
    std::string path = (std::filesystem::temp_directory_path() / "trace-XXXXXX").string();
    ASSERT_NE(mkdtemp(path.data()), nullptr);
    folder_ = path;
  }
  void TearDown() override { std::filesystem::remove_all(folder_); }
  std::string Content() const {
    std::ifstream file(folder_ / "t");
    std::ostringstream text;
    text << file.rdbuf();
    return text.str();
  }

  std::filesystem::path folder_;
  FixedClock clock_;
};

TEST(TraceLines, MembersStandInTheirOrderBehindTheMomentAndTheName) {
  EXPECT_EQ(TraceLine(Event{"engine", {{"running", true}, {"automatic", false}}}, kAt),
            kHead + R"("engine","running":true,"automatic":false})");
  EXPECT_EQ(TraceLine(Event{"kill", {}}, kAt), kHead + R"("kill"})");
}

TEST(TraceLines, WholeNumbersHaveNoPoint) {
  EXPECT_EQ(LineOf(int64_t{-20}), R"("e","v":-20})");
  EXPECT_EQ(LineOf(1600.0), R"("e","v":1600})");
  EXPECT_EQ(LineOf(-0.0), R"("e","v":0})");
  EXPECT_EQ(LineOf(0.5), R"("e","v":0.5})");
}

TEST(TraceLines, ARealNumberHasAllTheDigitsToComeBackTheSame) {
  EXPECT_EQ(LineOf(46347.416666666664), R"("e","v":46347.416666666664})");
  EXPECT_EQ(LineOf(0.1), R"("e","v":0.1})");
}

TEST(TraceLines, WhatIsNoNumberIsNull) {
  EXPECT_EQ(LineOf(std::numeric_limits<double>::quiet_NaN()), R"("e","v":null})");
  EXPECT_EQ(LineOf(std::numeric_limits<double>::infinity()), R"("e","v":null})");
}

TEST(TraceLines, QuotesBackslashesAndControlsAreEscaped) {
  EXPECT_EQ(LineOf(std::string("a\"b\\c\nd\te\rf\x01g\x7fh")),
            R"("e","v":"a\"b\\c\nd\te\rf\u0001g\u007fh"})");
  EXPECT_EQ(LineOf(std::string("x\0y", 3)), R"("e","v":"x\u0000y"})");
}

TEST(TraceLines, WellFormedUtf8StaysAsItIs) {
  const std::string text = "é € 𝄞 \xED\x9F\xBF \xF4\x8F\xBF\xBF";
  EXPECT_EQ(LineOf(text), R"("e","v":")" + text + "\"}");
}

TEST(TraceLines, EveryByteThatIsNoUtf8IsReplaced) {
  const std::string mark = "\xEF\xBF\xBD";
  const auto shown = [&](const std::string& marks) { return R"("e","v":"a)" + marks + "b\"}"; };
  EXPECT_EQ(LineOf(std::string("a\xE9"
                               "b")),
            shown(mark));  // Latin-1
  EXPECT_EQ(LineOf(std::string("a\xC0\xAF"
                               "b")),
            shown(mark + mark));  // overlong
  EXPECT_EQ(LineOf(std::string("a\xED\xA0\x80"
                               "b")),
            shown(mark + mark + mark));  // surrogate
  EXPECT_EQ(LineOf(std::string("a\xF5\x80\x80\x80"
                               "b")),
            shown(mark + mark + mark + mark));
  EXPECT_EQ(LineOf(std::string("a\x80"
                               "b")),
            shown(mark));
  EXPECT_EQ(LineOf(std::string("\xE2\x82")), R"("e","v":")" + mark + mark + "\"}");  // cut short
}

TEST(TraceLines, ListsRowsAndNamedValuesAreArraysAndAnObject) {
  EXPECT_EQ(LineOf(std::vector<int32_t>{12, -1, 7}), R"("e","v":[12,-1,7]})");
  EXPECT_EQ(LineOf(std::vector<int32_t>{}), R"("e","v":[]})");
  EXPECT_EQ(LineOf(Rows{{"a", ""}, {}}), R"("e","v":[["a",""],[]]})");
  const NamedValues flags{{"IsRunning", true},
                          {"MixPointMs", 1600.0},
                          {"RunningPlaylistName", std::string("Matin")},
                          {"Codes", std::vector<int32_t>{3, -1}}};
  EXPECT_EQ(
      LineOf(flags),
      R"("e","v":{"IsRunning":true,"MixPointMs":1600,"RunningPlaylistName":"Matin","Codes":[3,-1]}})");
}

TEST_F(TraceFile, EveryEventIsALineWithTheMomentOfTheClock) {
  {
    Trace trace((folder_ / "t").string(), clock_);
    trace.OnEvent(Event{"silence", {{"state", std::string("begin")}}});
    trace.OnEvent(Event{"fade", {{"slot", int64_t{0}}, {"ms", int64_t{1600}}}});
  }
  EXPECT_EQ(Content(), R"({"at":"2026-01-02T03:04:05.006","event":"silence","state":"begin"})"
                       "\n"
                       R"({"at":"2026-01-02T03:04:05.006","event":"fade","slot":0,"ms":1600})"
                       "\n");
}

TEST_F(TraceFile, AFlushLeavesNothingBehindInTheProcess) {
  Trace trace((folder_ / "t").string(), clock_);
  trace.OnEvent(Event{"kill", {}});
  trace.Flush();
  EXPECT_EQ(Content(), R"({"at":"2026-01-02T03:04:05.006","event":"kill"})"
                       "\n");
}

TEST_F(TraceFile, ALongTraceLosesNothing) {
  constexpr int kEvents = 20'000;
  {
    Trace trace((folder_ / "t").string(), clock_);
    for (int i = 0; i < kEvents; ++i) trace.OnEvent(Event{"n", {{"i", int64_t{i}}}});
  }
  std::istringstream lines(Content());
  std::string line;
  int count = 0;
  while (std::getline(lines, line)) {
    ASSERT_EQ(line,
              R"({"at":"2026-01-02T03:04:05.006","event":"n","i":)" + std::to_string(count) + "}");
    ++count;
  }
  EXPECT_EQ(count, kEvents);
}

TEST_F(TraceFile, AFileThatCannotBeMadeIsAnError) {
  EXPECT_THROW(Trace((folder_ / "no" / "t").string(), clock_), std::runtime_error);
}

TEST_F(TraceFile, AReaderThatLeftIsHeardOfOnceAndIsNoFault) {
  signal(SIGPIPE, SIG_IGN);
  const std::string pipe = (folder_ / "pipe").string();
  ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
  const int reader = open(pipe.c_str(), O_RDONLY | O_NONBLOCK);
  Trace trace(pipe, clock_);
  int left = 0;
  trace.readerLeft = [&left] { ++left; };
  close(reader);
  for (int i = 0; i < 2; ++i) {
    trace.OnEvent({"loop", {}});
    EXPECT_NO_THROW(trace.Flush());
  }
  EXPECT_EQ(left, 1);
}

TEST_F(TraceFile, LostLinesAreToldByTheFlushAndNotByTheEvent) {
  if (!std::filesystem::exists("/dev/full")) GTEST_SKIP() << "no /dev/full on this system";
  Trace trace("/dev/full", clock_);
  EXPECT_NO_THROW(trace.OnEvent(Event{"kill", {}}));
  EXPECT_THROW(trace.Flush(), std::runtime_error);
  EXPECT_THROW(trace.Flush(), std::runtime_error);
}

}  // namespace
}  // namespace zemo
