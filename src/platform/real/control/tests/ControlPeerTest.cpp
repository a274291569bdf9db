// What is borne of one client, on a clock of the test's own.
#include <gtest/gtest.h>
#include <sys/socket.h>
#include <unistd.h>

#include "platform/real/control/ControlPeer.h"

namespace zemo {
namespace {

using std::chrono::milliseconds;

struct PeerOfTest : testing::Test {
  void SetUp() override {
    int ends[2];
    ASSERT_EQ(socketpair(AF_UNIX, SOCK_STREAM | SOCK_NONBLOCK, 0, ends), 0);
    client = ends[1];
    peer = std::make_unique<ControlPeer>(1, ends[0], bounds, begun);
  }
  void TearDown() override { close(client); }
  void Says(const std::string& text) const {
    ASSERT_EQ(send(client, text.data(), text.size(), 0), static_cast<ssize_t>(text.size()));
  }
  // Serves a line as a request, where one may be served at that time, ms from the beginning.
  bool AsksAt(int ms) {
    const ControlTime now = begun + milliseconds(ms);
    if (!peer->NextLine(now)) return false;
    peer->TakeLine(now);
    peer->Asked();
    return true;
  }
  bool IsCutAt(int ms) const { return peer->ToBeCut(begun + milliseconds(ms)).has_value(); }

  // Four lines at once, five a second, five without an answer; a flood lasts 500 ms.
  ControlBounds bounds{
      .unanswered = 5, .linesASecond = 5, .linesAtOnce = 4, .flood = milliseconds(500)};
  const ControlTime begun{};
  int client = -1;
  std::unique_ptr<ControlPeer> peer;
};

TEST_F(PeerOfTest, WhoGoesOnBeyondItsShareIsCutAtTheEndOfItsTime) {
  Says("1\n2\n3\n4\n5\n6\n7\n8\n");
  for (int line = 1; line <= 4; ++line) ASSERT_TRUE(AsksAt(0));
  EXPECT_FALSE(AsksAt(0));  // slowed from here on
  for (const int ms : {200, 400}) {
    peer->Answered();
    EXPECT_TRUE(AsksAt(ms));
    EXPECT_FALSE(AsksAt(ms));
  }
  EXPECT_FALSE(IsCutAt(499));
  EXPECT_TRUE(IsCutAt(500));
}

// Five of its requests wait for their answers: nothing more is read, and whether it pauses cannot
// be seen.
TEST_F(PeerOfTest, TheTimeInWhichItWaitsForItsAnswersIsNoFlood) {
  Says("1\n2\n3\n4\n5\n6\n");
  for (int line = 1; line <= 4; ++line) ASSERT_TRUE(AsksAt(0));
  EXPECT_FALSE(AsksAt(0));
  ASSERT_TRUE(AsksAt(200));
  EXPECT_FALSE(AsksAt(210));
  EXPECT_FALSE(IsCutAt(3000));
  peer->Answered();
  EXPECT_TRUE(AsksAt(3000));
  EXPECT_FALSE(IsCutAt(3000));
}

}  // namespace
}  // namespace zemo
